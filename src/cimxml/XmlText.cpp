#include <cimxml/Elements.h>
#include <cimxml/detail/Output.h>
#include <cimxml/detail/XmlText.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ksv::cimxml {
namespace detail {

namespace {

char* writeCodePoint(char* to, Pegasus::Uint32 code) {
    if (code < 0x80) {
        *to++ = char(code);
    } else if (code < 0x800) {
        *to++ = char(0xC0 | (code >> 6));
        *to++ = char(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        *to++ = char(0xE0 | (code >> 12));
        *to++ = char(0x80 | ((code >> 6) & 0x3F));
        *to++ = char(0x80 | (code & 0x3F));
    } else {
        *to++ = char(0xF0 | (code >> 18));
        *to++ = char(0x80 | ((code >> 12) & 0x3F));
        *to++ = char(0x80 | ((code >> 6) & 0x3F));
        *to++ = char(0x80 | (code & 0x3F));
    }
    return to;
}

template <std::size_t N>
char* writeLiteral(char* to, const char (&text)[N]) {
    std::memcpy(to, text, N - 1);
    return to + N - 1;
}

// The longest any one unit or character is written: "&quot;", "&apos;", "&#127;".
constexpr std::size_t kLongestEscape = 6;

char* writeCharacterReference(char* to, Pegasus::Uint16 code) {
    to = writeLiteral(to, "&#");
    to = std::to_chars(to, to + 5, unsigned(code)).ptr;
    *to++ = ';';
    return to;
}

char* writeEscapedAscii(char* to, Pegasus::Uint16 c) {
    switch (c) {
    case '&':
        return writeLiteral(to, "&amp;");
    case '<':
        return writeLiteral(to, "&lt;");
    case '>':
        return writeLiteral(to, "&gt;");
    case '"':
        return writeLiteral(to, "&quot;");
    case '\'':
        return writeLiteral(to, "&apos;");
    default:
        break;
    }
    // Controls, tab and line ends included, as references: a reader would normalize them.
    if (c < 0x20 || c == 0x7F)
        return writeCharacterReference(to, c);
    *to++ = char(c);
    return to;
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

#if defined(__SSE2__)
// Whether each of eight units is plain, as a byte mask (two bits per unit).
unsigned plainMask(__m128i units) {
    const auto is = [&](char c) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(c)); };
    // Signed comparisons: units from 0x8000 up count as negative, so they are not plain either.
    const __m128i printable = _mm_and_si128(_mm_cmpgt_epi16(units, _mm_set1_epi16(0x20)),
                                            _mm_cmplt_epi16(units, _mm_set1_epi16(0x7F)));
    const __m128i markup = _mm_or_si128(_mm_or_si128(is('&'), is('<')),
                                        _mm_or_si128(_mm_or_si128(is('>'), is('"')), is('\'')));
    return unsigned(_mm_movemask_epi8(_mm_andnot_si128(markup, printable)));
}
#endif

// Narrows the plain run at the start of `units` into `to`, which has room for `count` bytes,
// and returns its length. Eight units are tested and copied at a time: almost all text is
// plain, and a branch per unit cost more than the work itself. Bytes copied past the run are
// overwritten by what follows it.
size_t copyPlainRun(char* to, const Pegasus::Char16* units, size_t count) {
    size_t i = 0;
#if defined(__SSE2__)
    if (count >= 8) {
        // The last eight units overlap those before them, which are copied the same again: most
        // names and values are short, and a tail unit by unit cost as much as the rest.
        for (;; i = std::min(i + 8, count - 8)) {
            const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(to + i), _mm_packus_epi16(eight, eight));
            const unsigned plain = plainMask(eight);
            if (plain != 0xFFFF)
                return i + unsigned(__builtin_ctz(~plain)) / 2;
            if (i == count - 8)
                return count;
        }
    }
#else
    for (; i + 8 <= count; i += 8) {
        bool special = false;
        for (size_t k = 0; k < 8; k++) {
            const Pegasus::Uint16 unit = units[i + k];
            special |= !isPlain(unit);
            to[i + k] = char(unit);
        }
        if (special)
            break;
    }
#endif
    while (i < count && isPlain(units[i])) {
        to[i] = char(Pegasus::Uint16(units[i]));
        i++;
    }
    return i;
}

// One unit that is not plain, or a surrogate pair, at units[i]; returns the index after it.
// Spaces are written as OpenPegasus writes them: a leading or trailing space, which readers
// trim, and a space after a space, which some readers collapse, as references.
size_t writeSpecial(char*& to, const Pegasus::Char16* units, size_t i, size_t count,
                    bool& rawSpaceBefore) {
    const Pegasus::Uint16 unit = units[i++];
    if (unit == ' ') {
        const bool raw = i > 1 && i < count && !rawSpaceBefore;
        to = raw ? writeLiteral(to, " ") : writeLiteral(to, "&#32;");
        rawSpaceBefore = raw;
        return i;
    }
    rawSpaceBefore = false;
    if (unit < 0x80) {
        to = writeEscapedAscii(to, unit);
    } else if (isHighSurrogate(unit) && i < count && isLowSurrogate(units[i])) {
        const Pegasus::Uint16 low = units[i++];
        to =
            writeCodePoint(to, 0x10000 + ((Pegasus::Uint32(unit) - 0xD800) << 10) + (low - 0xDC00));
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
        to = writeCodePoint(to, 0xFFFD);
    } else {
        to = writeCodePoint(to, unit);
    }
    return i;
}

} // namespace

void appendEscapedUnits(std::string& out, const Pegasus::Char16* units, size_t count) {
    Output output(out);
    const Output::Session session(output);
    output.escaped(units, count);
}

void Output::_grow(std::size_t bytes) {
    // Room comes in steps, so that it is made a few times per element, not once per piece; an
    // element longer than the last one doubles its room each time.
    constexpr std::size_t kLeastStep = 256;
    const std::size_t used = length();
    const std::size_t written = used - _sessionStart;
    const std::size_t size = used + std::max({bytes, kLeastStep, _lastSessionLength, written});
#if defined(__cpp_lib_string_resize_and_overwrite)
    // The room is left as it is: it is written before it is read, and cut off when the session
    // ends.
    _text.resize_and_overwrite(size, [](char*, std::size_t n) { return n; });
#else
    _text.resize(size);
#endif
    _at = _text.data() + used;
    _end = _text.data() + _text.size();
}

void Output::escaped(const Pegasus::Char16* units, std::size_t count) {
    // Room is asked for a slice at a time, so that text full of references does not ask for
    // the room of all its rest over and over.
    constexpr std::size_t kSlice = 1024;
    std::size_t i = 0;
    bool rawSpaceBefore = false;
    while (i < count) {
        const std::size_t slice = std::min(count - i, kSlice);
        char* to = room(slice);
        const std::size_t length = copyPlainRun(to, units + i, slice);
        i += length;
        advance(to + length);
        if (length > 0)
            rawSpaceBefore = false;
        if (length < slice) {
            to = room(kLongestEscape);
            i = writeSpecial(to, units, i, count, rawSpaceBefore);
            advance(to);
        }
    }
}

void Output::escaped(std::string_view utf8) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    size_t i = 0;
    if (!utf8.empty() && trimXmlSpace(utf8).empty()) {
        advance(writeCharacterReference(room(kLongestEscape), bytes[0]));
        i = 1;
    }
    while (i < utf8.size()) {
        char* to = room(kLongestEscape);
        const int length = sequenceLength(bytes[i]);
        if (length == 1) {
            to = writeEscapedAscii(to, bytes[i++]);
        } else if (length > 1 && size_t(length) <= utf8.size() - i &&
                   decodeSequence(bytes + i, length) >= 0) {
            std::memcpy(to, utf8.data() + i, size_t(length));
            to += length;
            i += size_t(length);
        } else {
            to = writeCodePoint(to, 0xFFFD);
            i++;
        }
        advance(to);
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
    detail::Output output(out);
    const detail::Output::Session session(output);
    output.escaped(utf8);
}

} // namespace ksv::cimxml
