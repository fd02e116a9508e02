// Small helpers shared by the library functions.
#ifndef KSVSIM_API_SUPPORT_H
#define KSVSIM_API_SUPPORT_H

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace ksvsim::detail {

// Text of an argument for the call log; NULL becomes "".
inline std::string_view argumentText(const char* text) {
    return text != nullptr ? text : "";
}

// An array the caller releases with free(); NULL for an empty array.
template <typename T>
T* allocateZeroed(std::size_t count) {
    return count == 0 ? nullptr : static_cast<T*>(std::calloc(count, sizeof(T)));
}

// A copy of records the caller releases with free(); not zeroed first, since the copy fills
// every byte.
template <typename T>
T* allocateCopy(const T* first, std::size_t count) {
    T* copy = static_cast<T*>(std::malloc(count * sizeof(T)));
    if (copy != nullptr)
        std::memcpy(copy, first, count * sizeof(T));
    return copy;
}

} // namespace ksvsim::detail

#endif // KSVSIM_API_SUPPORT_H
