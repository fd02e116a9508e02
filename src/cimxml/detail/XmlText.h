#ifndef KSV_CIMXML_DETAIL_XMLTEXT_H
#define KSV_CIMXML_DETAIL_XMLTEXT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <charconv>
#include <string>
#include <string_view>

// Text conversions between the object model's UTF-16 strings and UTF-8 XML.
namespace ksv::cimxml::detail {

/// Appends UTF-16 text as escaped UTF-8. Unpaired surrogates become U+FFFD.
void appendEscapedUnits(std::string& out, const Pegasus::Char16* units, size_t count);

/// UTF-8 from a parser (entities already resolved) as UTF-16; false for malformed UTF-8.
bool utf8ToString(std::string_view utf8, Pegasus::String& out);

/// True for the blanks XML treats as white space.
inline bool isXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimXmlSpace(std::string_view text);

/// ASCII case-insensitive comparison with a lower-case keyword.
bool equalsNoCase(std::string_view text, std::string_view lowerKeyword);

template <class Integer>
void appendInteger(std::string& out, Integer value) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof(digits), value);
    out.append(digits, result.ptr);
}

/// The shortest text that reads back as the same real ("1.0", "2.5e-07", "NaN"), at `to`,
/// which has room for kRealTextBytes; returns its end.
constexpr std::size_t kRealTextBytes = 48;
char* writeReal(char* to, Pegasus::Real64 number);
char* writeReal(char* to, Pegasus::Real32 number);

/// ASCII-only names and keywords, written without escaping.
inline void appendAscii(std::string& out, std::string_view text) {
    out.append(text.data(), text.size());
}

} // namespace ksv::cimxml::detail

#endif
