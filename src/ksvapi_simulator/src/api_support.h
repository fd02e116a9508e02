// Small helpers shared by the library functions.
#ifndef KSVSIM_API_SUPPORT_H
#define KSVSIM_API_SUPPORT_H

#include <cstdlib>
#include <string>

namespace ksvsim::detail {

// Text of an argument for the call log; NULL becomes "".
inline std::string argumentText(const char* text) {
    return text != nullptr ? text : "";
}

// An array the caller releases with free(); NULL for an empty array.
template <typename T>
T* allocateZeroed(std::size_t count) {
    return count == 0 ? nullptr : static_cast<T*>(std::calloc(count, sizeof(T)));
}

} // namespace ksvsim::detail

#endif // KSVSIM_API_SUPPORT_H
