#include <cimxml/Elements.h>
#include <cimxml/detail/XmlText.h>

#include <cctype>

namespace ksv::cimxml {
namespace detail {

namespace {

void appendCodePoint(std::string& out, Pegasus::Uint32 code) {
    if (code < 0x80) {
        out += char(code);
    } else if (code < 0x800) {
        out += char(0xC0 | (code >> 6));
        out += char(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += char(0xE0 | (code >> 12));
        out += char(0x80 | ((code >> 6) & 0x3F));
        out += char(0x80 | (code & 0x3F));
    } else {
        out += char(0xF0 | (code >> 18));
        out += char(0x80 | ((code >> 12) & 0x3F));
        out += char(0x80 | ((code >> 6) & 0x3F));
        out += char(0x80 | (code & 0x3F));
    }
}

void appendCharacterReference(std::string& out, Pegasus::Uint16 code) {
    out += "&#";
    appendInteger(out, unsigned(code));
    out += ';';
}

void appendEscapedAscii(std::string& out, Pegasus::Uint16 c) {
    switch (c) {
    case '&':
        out += "&amp;";
        return;
    case '<':
        out += "&lt;";
        return;
    case '>':
        out += "&gt;";
        return;
    case '"':
        out += "&quot;";
        return;
    case '\'':
        out += "&apos;";
        return;
    default:
        break;
    }
    // Controls, tab and line ends included, as references: a reader would normalize them.
    if (c < 0x20 || c == 0x7F) {
        appendCharacterReference(out, c);
    } else {
        out += char(c);
    }
}

bool isHighSurrogate(Pegasus::Uint16 unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(Pegasus::Uint16 unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Length of the UTF-8 sequence led by `lead`, 0 for a byte that cannot lead one.
int sequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return 2;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return 4;
    }
    return 0;
}

// The code point of a sequence of the given length, or -1 when it is overlong, a surrogate,
// beyond U+10FFFF or has a bad continuation byte.
long decodeSequence(const unsigned char* bytes, int length) {
    static const Pegasus::Uint32 minimum[] = {0, 0, 0x80, 0x800, 0x10000};
    Pegasus::Uint32 code = length == 1 ? bytes[0] : bytes[0] & (0x7F >> length);
    for (int i = 1; i < length; i++) {
        if ((bytes[i] & 0xC0) != 0x80) {
            return -1;
        }
        code = (code << 6) | (bytes[i] & 0x3F);
    }
    if (code < minimum[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return -1;
    }
    return long(code);
}

// Printable ASCII other than markup characters and the space, copied as it is.
constexpr bool isPlainAscii(unsigned unit) {
    return unit > 0x20 && unit < 0x7F && unit != '&' && unit != '<' && unit != '>' && unit != '"' &&
           unit != '\'';
}

struct PlainTable {
    bool plain[0x80] = {};
    constexpr PlainTable() {
        for (unsigned unit = 0; unit < 0x80; unit++)
            plain[unit] = isPlainAscii(unit);
    }
};
constexpr PlainTable kPlain;

bool isPlain(Pegasus::Uint16 unit) {
    return (unit < 0x80) & kPlain.plain[unit & 0x7F];
}

// Length of the plain run at the start of `units`. Eight units are tested per branch: almost
// all text is plain, and a branch per unit cost more than the test itself.
size_t plainRun(const Pegasus::Char16* units, size_t count) {
    size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        bool special = false;
        for (size_t k = 0; k < 8; k++)
            special |= !isPlain(units[i + k]);
        if (special)
            break;
    }
    while (i < count && isPlain(units[i]))
        i++;
    return i;
}

// The run is narrowed straight into the output, which grows once per run.
void appendPlainRun(std::string& out, const Pegasus::Char16* units, size_t length) {
    const size_t start = out.size();
    out.resize(start + length);
    char* to = &out[start];
    for (size_t k = 0; k < length; k++)
        to[k] = char(Pegasus::Uint16(units[k]));
}

} // namespace

// Spaces are written as OpenPegasus writes them: a leading or trailing space, which readers trim,
// and a space after a space, which some readers collapse, as references.
void appendEscapedUnits(std::string& out, const Pegasus::Char16* units, size_t count) {
    size_t i = 0;
    bool rawSpaceBefore = false;
    while (i < count) {
        const size_t length = plainRun(units + i, count - i);
        if (length > 0) {
            appendPlainRun(out, units + i, length);
            i += length;
            rawSpaceBefore = false;
            if (i == count)
                break;
        }
        const Pegasus::Uint16 unit = units[i++];
        if (unit == ' ') {
            const bool raw = i > 1 && i < count && !rawSpaceBefore;
            out += raw ? " " : "&#32;";
            rawSpaceBefore = raw;
            continue;
        }
        rawSpaceBefore = false;
        if (unit < 0x80) {
            appendEscapedAscii(out, unit);
        } else if (isHighSurrogate(unit) && i < count && isLowSurrogate(units[i])) {
            const Pegasus::Uint16 low = units[i++];
            appendCodePoint(out,
                            0x10000 + ((Pegasus::Uint32(unit) - 0xD800) << 10) + (low - 0xDC00));
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            appendCodePoint(out, 0xFFFD);
        } else {
            appendCodePoint(out, unit);
        }
    }
}

bool utf8ToString(std::string_view utf8, Pegasus::String& out) {
    std::u16string units;
    units.reserve(utf8.size());
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    for (size_t i = 0; i < utf8.size();) {
        const int length = sequenceLength(bytes[i]);
        if (length == 0 || size_t(length) > utf8.size() - i) {
            return false;
        }
        const long code = decodeSequence(bytes + i, length);
        if (code < 0) {
            return false;
        }
        if (code >= 0x10000) {
            units += char16_t(0xD800 + ((code - 0x10000) >> 10));
            units += char16_t(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            units += char16_t(code);
        }
        i += size_t(length);
    }
    out.assign(reinterpret_cast<const Pegasus::Char16*>(units.data()),
               Pegasus::Uint32(units.size()));
    return true;
}

std::string_view trimXmlSpace(std::string_view text) {
    while (!text.empty() && isXmlSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isXmlSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool equalsNoCase(std::string_view text, std::string_view lowerKeyword) {
    if (text.size() != lowerKeyword.size()) {
        return false;
    }
    for (size_t i = 0; i < text.size(); i++) {
        if (std::tolower(static_cast<unsigned char>(text[i])) != lowerKeyword[i]) {
            return false;
        }
    }
    return true;
}

} // namespace detail

void appendEscaped(std::string& out, const Pegasus::String& text) {
    detail::appendEscapedUnits(out, text.getChar16Data(), text.size());
}

void appendEscaped(std::string& out, std::string_view utf8) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    size_t i = 0;
    if (!utf8.empty() && detail::trimXmlSpace(utf8).empty()) {
        detail::appendCharacterReference(out, bytes[0]);
        i = 1;
    }
    while (i < utf8.size()) {
        const int length = detail::sequenceLength(bytes[i]);
        if (length == 1) {
            detail::appendEscapedAscii(out, bytes[i++]);
        } else if (length > 1 && size_t(length) <= utf8.size() - i &&
                   detail::decodeSequence(bytes + i, length) >= 0) {
            out.append(utf8.data() + i, size_t(length));
            i += size_t(length);
        } else {
            detail::appendCodePoint(out, 0xFFFD);
            i++;
        }
    }
}

} // namespace ksv::cimxml
