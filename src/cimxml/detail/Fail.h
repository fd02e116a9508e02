#ifndef KSV_CIMXML_DETAIL_FAIL_H
#define KSV_CIMXML_DETAIL_FAIL_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>

namespace ksv::cimxml::detail {

/// A String from UTF-8 that may be malformed (it may quote input): bad bytes become U+FFFD.
Pegasus::String lossyString(std::string_view utf8);

inline std::string utf8Of(const Pegasus::String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

/// The exception's message in UTF-8.
inline std::string messageOf(const Pegasus::Exception& e) {
    return utf8Of(e.getMessage());
}

[[noreturn]] void throwCim(Pegasus::CIMStatusCode code, std::string_view message);

[[noreturn]] inline void throwInvalid(std::string_view message) {
    throwCim(Pegasus::CIM_ERR_INVALID_PARAMETER, message);
}

/// At most `limit` bytes of `text` for quoting in a message, with "..." when cut.
std::string quoted(std::string_view text, size_t limit = 80);

} // namespace ksv::cimxml::detail

#endif
