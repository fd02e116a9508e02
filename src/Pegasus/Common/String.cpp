#include <Pegasus/Common/String.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <Pegasus/Common/InternalException.h>
#include <Pegasus/Common/MessageLoader.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

// Only the ASCII letters have a case here; every other code unit is left
// alone, so results do not depend on the locale.
Uint16 asciiLower(Uint16 c) {
    return (c >= 'A' && c <= 'Z') ? Uint16(c + ('a' - 'A')) : c;
}

Uint16 asciiUpper(Uint16 c) {
    return (c >= 'a' && c <= 'z') ? Uint16(c - ('a' - 'A')) : c;
}

void checkNotNull(const void* pointer) {
    if (!pointer)
        throw NullPointer();
}

// Length in code units of a null-terminated Char16 text.
size_t char16Length(const Char16* str) {
    size_t n = 0;
    while (Uint16(str[n]) != 0)
        n++;
    return n;
}

// Bytes of a UTF-8 sequence that a lead byte announces, 0 if it cannot lead.
int sequenceLength(Uint8 lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

// The allowed range of the byte after a lead byte; the others are 80..BF.
// Encoded surrogates (ED A0..BF) pass, so that any String survives a round
// trip through UTF-8.
bool secondByteFits(Uint8 lead, Uint8 second) {
    switch (lead) {
    case 0xE0:
        return second >= 0xA0 && second <= 0xBF;
    case 0xF0:
        return second >= 0x90 && second <= 0xBF;
    case 0xF4:
        return second >= 0x80 && second <= 0x8F;
    default:
        return second >= 0x80 && second <= 0xBF;
    }
}

bool isWellFormed(const Uint8* p, size_t available, int length) {
    if (length == 0 || size_t(length) > available)
        return false;
    if (length > 1 && !secondByteFits(p[0], p[1]))
        return false;
    for (int i = 2; i < length; i++) {
        if (p[i] < 0x80 || p[i] > 0xBF)
            return false;
    }
    return true;
}

Uint32 decodeCodePoint(const Uint8* p, int length) {
    static const Uint8 leadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    Uint32 code = p[0] & leadMask[length];
    for (int i = 1; i < length; i++)
        code = (code << 6) | (p[i] & 0x3F);
    return code;
}

// Shows where decoding failed: up to 40 bytes before the bad one as text,
// then the bad byte and up to 10 following ones in hexadecimal.
String describeBadUtf8(const char* text, size_t size, size_t index) {
    const size_t shownBefore = std::min<size_t>(index, 40);
    const size_t shownAfter = std::min<size_t>(size - index - 1, 10);
    std::string shown(text + index - shownBefore, shownBefore);
    for (size_t i = 0; i <= shownAfter; i++) {
        char hex[8];
        std::snprintf(hex, sizeof(hex), " 0x%02X", unsigned(Uint8(text[index + i])));
        shown += hex;
    }
    return String(shown.c_str());
}

[[noreturn]] void throwBadUtf8(const char* text, size_t size, size_t index) {
    MessageLoaderParms parms("Common.String.BAD_UTF8_LONG",
                             "The byte sequence starting at index $0 "
                             "is not valid UTF-8 encoding: $1",
                             Uint32(index), describeBadUtf8(text, size, index));
    throw Exception(parms);
}

void appendCodePointAsUtf8(std::string& out, Uint32 code) {
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

bool isHighSurrogate(Uint16 c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool isLowSurrogate(Uint16 c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

std::string encodeUtf8(const Char16* units, size_t n) {
    std::string out;
    out.reserve(n);
    for (size_t i = 0; i < n; i++) {
        Uint32 code = units[i];
        if (isHighSurrogate(Uint16(code)) && i + 1 < n && isLowSurrogate(units[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (Uint16(units[i + 1]) - 0xDC00);
            i++;
        }
        appendCodePointAsUtf8(out, code);
    }
    return out;
}

int compareUnits(const Char16* p1, size_t n1, const Char16* p2, size_t n2, Uint16 (*fold)(Uint16)) {
    const size_t n = std::min(n1, n2);
    for (size_t i = 0; i < n; i++) {
        const int r = int(fold(p1[i])) - int(fold(p2[i]));
        if (r)
            return r;
    }
    // Past the shorter text the comparison meets its terminating null.
    if (n1 == n2)
        return 0;
    return n1 < n2 ? -int(fold(p2[n])) : int(fold(p1[n]));
}

Uint16 noFold(Uint16 c) {
    return c;
}

} // namespace

//------------------------------------------------------------------------------
// CString
//------------------------------------------------------------------------------

CString::CString() = default;

CString::CString(const CString& cstr) = default;

CString::CString(std::string utf8) : _utf8(std::move(utf8)) {}

CString::~CString() = default;

CString& CString::operator=(const CString& cstr) = default;

CString::operator const char*() const {
    return _utf8.c_str();
}

//------------------------------------------------------------------------------
// String
//------------------------------------------------------------------------------

// Built before the other static objects of the library, which may copy it.
const String String::EMPTY __attribute__((init_priority(101)));

String::String() : _units(1) {}

String::String(const String& str) = default;

String::String(const String& str, Uint32 n) : _units(1) {
    if (n > str.size())
        throw IndexOutOfBoundsException();
    assign(str.getChar16Data(), n);
}

String::String(const Char16* str) : _units(1) {
    assign(str);
}

String::String(const Char16* str, Uint32 n) : _units(1) {
    assign(str, n);
}

String::String(const char* str) : _units(1) {
    assign(str);
}

String::String(const char* str, Uint32 n) : _units(1) {
    assign(str, n);
}

String::~String() = default;

String& String::operator=(const String& str) = default;

String& String::assign(const String& str) {
    return *this = str;
}

String& String::assign(const Char16* str) {
    checkNotNull(str);
    return assign(str, Uint32(char16Length(str)));
}

String& String::assign(const Char16* str, Uint32 n) {
    checkNotNull(str);
    std::vector<Char16> units(str, str + n);
    units.push_back(Char16(0));
    _units.swap(units);
    return *this;
}

String& String::assign(const char* str) {
    checkNotNull(str);
    return assign(str, Uint32(std::strlen(str)));
}

String& String::assign(const char* str, Uint32 n) {
    checkNotNull(str);
    String decoded;
    decoded._appendUtf8(str, n);
    _units.swap(decoded._units);
    return *this;
}

void String::clear() {
    _units.assign(1, Char16(0));
}

void String::reserveCapacity(Uint32 capacity) {
    _units.reserve(size_t(capacity) + 1);
}

CString String::getCString() const {
    return CString(encodeUtf8(_units.data(), _length()));
}

Char16& String::operator[](Uint32 index) {
    if (index >= _length())
        throw IndexOutOfBoundsException();
    return _units[index];
}

const Char16 String::operator[](Uint32 index) const {
    // Reading the position just past the end yields the terminating null.
    if (index > _length())
        throw IndexOutOfBoundsException();
    return _units[index];
}

String& String::append(const Char16& c) {
    _units.back() = c;
    _units.push_back(Char16(0));
    return *this;
}

String& String::append(const Char16* str, Uint32 n) {
    checkNotNull(str);
    _units.pop_back();
    _units.insert(_units.end(), str, str + n);
    _units.push_back(Char16(0));
    return *this;
}

String& String::append(const String& str) {
    if (&str == this) {
        const String copy(str);
        return append(copy.getChar16Data(), copy.size());
    }
    return append(str.getChar16Data(), str.size());
}

void String::remove(Uint32 index, Uint32 n) {
    if (index > _length())
        throw IndexOutOfBoundsException();
    if (n == PEG_NOT_FOUND)
        n = _length() - index;
    if (n > _length() - index)
        throw IndexOutOfBoundsException();
    _units.erase(_units.begin() + index, _units.begin() + index + n);
}

String String::subString(Uint32 index, Uint32 n) const {
    // Deliberately forgiving: a start past the end gives an empty string and
    // a length past the end is cut short.
    if (index >= _length())
        return String();
    return String(_units.data() + index, std::min(n, _length() - index));
}

Uint32 String::find(Char16 c) const {
    return find(0, c);
}

Uint32 String::find(Uint32 index, Char16 c) const {
    if (index > _length())
        throw IndexOutOfBoundsException();
    const auto end = _units.end() - 1;
    const auto found = std::find(_units.begin() + index, end, c);
    return found == end ? PEG_NOT_FOUND : Uint32(found - _units.begin());
}

Uint32 String::find(const String& s) const {
    // An empty pattern is never found.
    if (s.size() == 0)
        return PEG_NOT_FOUND;
    const auto end = _units.end() - 1;
    const auto found = std::search(_units.begin(), end, s._units.begin(), s._units.end() - 1);
    return found == end ? PEG_NOT_FOUND : Uint32(found - _units.begin());
}

Uint32 String::reverseFind(Char16 c) const {
    for (Uint32 i = _length(); i > 0; i--) {
        if (_units[i - 1] == c)
            return i - 1;
    }
    return PEG_NOT_FOUND;
}

void String::toLower() {
    for (Uint32 i = 0; i < _length(); i++)
        _units[i] = asciiLower(_units[i]);
}

void String::toUpper() {
    for (Uint32 i = 0; i < _length(); i++)
        _units[i] = asciiUpper(_units[i]);
}

void String::appendPrintf(const char* format, ...) {
    checkNotNull(format);
    va_list args;
    va_start(args, format);
    va_list measuring;
    va_copy(measuring, args);
    const int length = std::vsnprintf(nullptr, 0, format, measuring);
    va_end(measuring);
    if (length > 0) {
        std::vector<char> text(size_t(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, args);
        _appendUtf8(text.data(), size_t(length));
    }
    va_end(args);
}

void String::_appendUtf8(const char* str, size_t n) {
    const Uint8* bytes = reinterpret_cast<const Uint8*>(str);
    std::vector<Char16> units(_units.begin(), _units.end() - 1);
    units.reserve(units.size() + n + 1);
    for (size_t i = 0; i < n;) {
        const int length = sequenceLength(bytes[i]);
        if (!isWellFormed(bytes + i, n - i, length))
            throwBadUtf8(str, n, i);
        const Uint32 code = decodeCodePoint(bytes + i, length);
        if (code >= 0x10000) {
            units.push_back(Char16(Uint16(0xD800 + ((code - 0x10000) >> 10))));
            units.push_back(Char16(Uint16(0xDC00 + ((code - 0x10000) & 0x3FF))));
        } else {
            units.push_back(Char16(Uint16(code)));
        }
        i += size_t(length);
    }
    units.push_back(Char16(0));
    _units.swap(units);
}

int String::compare(const String& s1, const String& s2, Uint32 n) {
    return compareUnits(s1.getChar16Data(), std::min(n, s1.size()), s2.getChar16Data(),
                        std::min(n, s2.size()), noFold);
}

int String::compare(const String& s1, const String& s2) {
    return compareUnits(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size(), noFold);
}

int String::compareNoCase(const String& s1, const String& s2) {
    return compareUnits(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size(), asciiLower);
}

Boolean String::equal(const String& s1, const String& s2) {
    return s1._units == s2._units;
}

Boolean String::equalNoCase(const String& s1, const String& s2) {
    return s1.size() == s2.size() && compareNoCase(s1, s2) == 0;
}

String::String(const String& s1, const String& s2) : String(s1) {
    append(s2);
}

String::String(const String& s1, const char* s2) : String(s1) {
    append(s2);
}

String::String(const char* s1, const String& s2) : String(s1) {
    append(s2);
}

String& String::operator=(const char* str) {
    return assign(str);
}

Uint32 String::find(const char* s) const {
    checkNotNull(s);
    return find(String(s));
}

Boolean String::equal(const String& s1, const char* s2) {
    checkNotNull(s2);
    return equal(s1, String(s2));
}

int String::compare(const String& s1, const char* s2) {
    checkNotNull(s2);
    return compare(s1, String(s2));
}

String& String::append(const char* str) {
    checkNotNull(str);
    _appendUtf8(str, std::strlen(str));
    return *this;
}

String& String::append(const char* str, Uint32 size) {
    checkNotNull(str);
    _appendUtf8(str, size);
    return *this;
}

Boolean String::equalNoCase(const String& s1, const char* s2) {
    checkNotNull(s2);
    return equalNoCase(s1, String(s2));
}

//------------------------------------------------------------------------------
// Operators
//------------------------------------------------------------------------------

Boolean operator==(const String& str1, const String& str2) {
    return String::equal(str1, str2);
}

Boolean operator==(const String& str1, const char* str2) {
    return String::equal(str1, str2);
}

Boolean operator==(const char* str1, const String& str2) {
    return String::equal(str2, str1);
}

Boolean operator!=(const String& str1, const String& str2) {
    return !String::equal(str1, str2);
}

Boolean operator!=(const String& s1, const char* s2) {
    return !String::equal(s1, s2);
}

Boolean operator!=(const char* s1, const String& s2) {
    return !String::equal(s2, s1);
}

PEGASUS_STD(ostream) & operator<<(PEGASUS_STD(ostream) & os, const String& str) {
    return os << static_cast<const char*>(str.getCString());
}

String operator+(const String& str1, const String& str2) {
    return String(str1, str2);
}

String operator+(const String& s1, const char* s2) {
    return String(s1, s2);
}

String operator+(const char* s1, const String& s2) {
    return String(s1, s2);
}

Boolean operator<(const String& str1, const String& str2) {
    return String::compare(str1, str2) < 0;
}

Boolean operator<=(const String& str1, const String& str2) {
    return String::compare(str1, str2) <= 0;
}

Boolean operator>(const String& str1, const String& str2) {
    return String::compare(str1, str2) > 0;
}

Boolean operator>=(const String& str1, const String& str2) {
    return String::compare(str1, str2) >= 0;
}

Boolean operator<(const String& s1, const char* s2) {
    return String::compare(s1, s2) < 0;
}

Boolean operator<(const char* s1, const String& s2) {
    return String::compare(s2, s1) > 0;
}

Boolean operator>(const String& s1, const char* s2) {
    return String::compare(s1, s2) > 0;
}

Boolean operator>(const char* s1, const String& s2) {
    return String::compare(s2, s1) < 0;
}

Boolean operator<=(const String& s1, const char* s2) {
    return String::compare(s1, s2) <= 0;
}

Boolean operator<=(const char* s1, const String& s2) {
    return String::compare(s2, s1) >= 0;
}

Boolean operator>=(const String& s1, const char* s2) {
    return String::compare(s1, s2) >= 0;
}

Boolean operator>=(const char* s1, const String& s2) {
    return String::compare(s2, s1) <= 0;
}

PEGASUS_NAMESPACE_END
