#include <Pegasus/Common/String.h>
#include <Pegasus/Common/StringReserve.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif
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

// The fold is a template argument so that it is inlined: key bindings are sorted by
// comparing their names each time a path is made.
template <Uint16 (*fold)(Uint16)>
int compareUnits(const Char16* p1, size_t n1, const Char16* p2, size_t n2) {
    const size_t n = std::min(n1, n2);
    for (size_t i = 0; i < n; i++) {
        if (p1[i] == p2[i])
            continue;
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

// Whether one String alone holds the text; the shared empty text counts no
// holders, so it never is.
template <class Rep>
bool isSoleHolder(const Rep* rep) {
    return rep->refs.load(std::memory_order_acquire) == 1;
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

// Constant-initialised, so static Strings of any library may use it.
String::EmptyRep String::_empty = {{{0}, 0, 0}, Char16()};

// Built before the other static objects of the library, which may copy it.
const String String::EMPTY __attribute__((init_priority(101)));

String::Rep* String::_allocate(Uint32 capacity) {
    void* memory = ::operator new(sizeof(Rep) + (size_t(capacity) + 1) * sizeof(Char16));
    Rep* rep = new (memory) Rep{{1}, 0, capacity};
    _unitsOf(rep)[0] = Char16(0);
    return rep;
}

// The holder of the only reference is the only one who can change the count,
// so it frees the text without an atomic read-modify-write.
void String::_release(Rep* rep) {
    if (rep == _emptyRep())
        return;
    if (isSoleHolder(rep) || rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        rep->~Rep();
        ::operator delete(rep);
    }
}

void String::_reserveOwn(Uint32 capacity) {
    if (isSoleHolder(_rep) && _rep->capacity >= capacity)
        return;
    Rep* rep = _allocate(std::max(capacity, _length()));
    std::memcpy(_unitsOf(rep), _units(), (size_t(_length()) + 1) * sizeof(Char16));
    rep->size = _length();
    _release(_rep);
    _rep = rep;
}

// Appending grows the room geometrically, so a String built unit by unit
// costs a logarithmic number of allocations.
void String::_reserveToAppend(Uint32 n) {
    if (n > PEG_NOT_FOUND - 1 - _length())
        throw std::bad_alloc();
    const Uint32 needed = _length() + n;
    const Uint32 doubled = _rep->capacity > (PEG_NOT_FOUND >> 1) ? needed : _rep->capacity * 2;
    _reserveOwn(_rep->capacity >= needed ? needed : std::max(needed, doubled));
}

void String::_setLength(Uint32 n) {
    _rep->size = n;
    _units()[n] = Char16(0);
}

String::String() : _rep(_emptyRep()) {}

String::String(const String& str, Uint32 n) : _rep(_emptyRep()) {
    if (n > str.size())
        throw IndexOutOfBoundsException();
    assign(str.getChar16Data(), n);
}

String::String(const Char16* str) : _rep(_emptyRep()) {
    assign(str);
}

String::String(const Char16* str, Uint32 n) : _rep(_emptyRep()) {
    assign(str, n);
}

String::String(const char* str) : _rep(_emptyRep()) {
    assign(str);
}

String::String(const char* str, Uint32 n) : _rep(_emptyRep()) {
    assign(str, n);
}

String& String::operator=(const String& str) {
    _retain(str._rep);
    _release(_rep);
    _rep = str._rep;
    return *this;
}

String& String::operator=(String&& str) noexcept {
    if (this != &str) {
        _release(_rep);
        _rep = str._rep;
        str._rep = _emptyRep();
    }
    return *this;
}

String& String::assign(const String& str) {
    return *this = str;
}

String& String::assign(const Char16* str) {
    checkNotNull(str);
    return assign(str, Uint32(char16Length(str)));
}

// Text of its own with room enough is overwritten in place.
String& String::assign(const Char16* str, Uint32 n) {
    checkNotNull(str);
    if (n != 0 && isSoleHolder(_rep) && _rep->capacity >= n) {
        std::memmove(_units(), str, size_t(n) * sizeof(Char16));
        _setLength(n);
        return *this;
    }
    Rep* rep = n == 0 ? _emptyRep() : _allocate(n);
    if (n != 0) {
        std::memcpy(_unitsOf(rep), str, size_t(n) * sizeof(Char16));
        rep->size = n;
        _unitsOf(rep)[n] = Char16(0);
    }
    _release(_rep);
    _rep = rep;
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
    return *this = std::move(decoded);
}

void String::clear() {
    _release(_rep);
    _rep = _emptyRep();
}

void String::reserveCapacity(Uint32 capacity) {
    _reserveOwn(std::max(capacity, _rep->capacity));
}

CString String::getCString() const {
    return CString(encodeUtf8(getChar16Data(), _length()));
}

Char16& String::operator[](Uint32 index) {
    if (index >= _length())
        throw IndexOutOfBoundsException();
    _reserveOwn(_rep->capacity);
    return _units()[index];
}

const Char16 String::operator[](Uint32 index) const {
    // Reading the position just past the end yields the terminating null.
    if (index > _length())
        throw IndexOutOfBoundsException();
    return getChar16Data()[index];
}

String& String::append(const Char16& c) {
    const Char16 unit = c;
    _reserveToAppend(1);
    _units()[_length()] = unit;
    _setLength(_length() + 1);
    return *this;
}

String& String::append(const Char16* str, Uint32 n) {
    checkNotNull(str);
    const Char16* own = getChar16Data();
    if (str >= own && str <= own + _length()) {
        const String copy(str, n);
        return append(copy.getChar16Data(), n);
    }
    _reserveToAppend(n);
    std::memcpy(_units() + _length(), str, size_t(n) * sizeof(Char16));
    _setLength(_length() + n);
    return *this;
}

String& String::append(const String& str) {
    // Appending to nothing shares the other text, as a copy would.
    if (_rep == _emptyRep())
        return *this = str;
    if (str._rep == _rep) {
        const String copy(str.getChar16Data(), str.size());
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
    if (n == 0)
        return;
    _reserveOwn(_rep->capacity);
    Char16* units = _units();
    std::memmove(units + index, units + index + n,
                 (size_t(_length()) - index - n) * sizeof(Char16));
    _setLength(_length() - n);
}

String String::subString(Uint32 index, Uint32 n) const {
    // Deliberately forgiving: a start past the end gives an empty string and
    // a length past the end is cut short.
    if (index >= _length())
        return String();
    if (index == 0 && n >= _length())
        return *this;
    return String(getChar16Data() + index, std::min(n, _length() - index));
}

Uint32 String::find(Char16 c) const {
    return find(0, c);
}

Uint32 String::find(Uint32 index, Char16 c) const {
    if (index > _length())
        throw IndexOutOfBoundsException();
    const Char16* begin = getChar16Data();
    const Char16* end = begin + _length();
    const Char16* found = std::find(begin + index, end, c);
    return found == end ? PEG_NOT_FOUND : Uint32(found - begin);
}

Uint32 String::find(const String& s) const {
    // An empty pattern is never found.
    if (s.size() == 0)
        return PEG_NOT_FOUND;
    const Char16* begin = getChar16Data();
    const Char16* end = begin + _length();
    const Char16* found = std::search(begin, end, s.getChar16Data(), s.getChar16Data() + s.size());
    return found == end ? PEG_NOT_FOUND : Uint32(found - begin);
}

Uint32 String::reverseFind(Char16 c) const {
    const Char16* units = getChar16Data();
    for (Uint32 i = _length(); i > 0; i--) {
        if (units[i - 1] == c)
            return i - 1;
    }
    return PEG_NOT_FOUND;
}

void String::toLower() {
    if (_length() == 0)
        return;
    _reserveOwn(_rep->capacity);
    Char16* units = _units();
    for (Uint32 i = 0; i < _length(); i++)
        units[i] = asciiLower(units[i]);
}

void String::toUpper() {
    if (_length() == 0)
        return;
    _reserveOwn(_rep->capacity);
    Char16* units = _units();
    for (Uint32 i = 0; i < _length(); i++)
        units[i] = asciiUpper(units[i]);
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

namespace {

// Widens the ASCII run at the start of `bytes` into `out`, sixteen bytes at a
// time, and returns its length: the text providers give is almost all ASCII.
size_t widenAsciiRun(const Uint8* bytes, size_t n, Char16* out) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; i + 16 <= n; i += 16) {
        const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
        if (_mm_movemask_epi8(sixteen) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(sixteen, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(sixteen, zero));
    }
#endif
    return i;
}

} // namespace

// No sequence gives more code units than it has bytes, so the room for n
// units is enough. On bad input the text is left as it was.
void String::_appendUtf8(const char* str, size_t n) {
    if (n == 0)
        return;
    if (n > PEG_NOT_FOUND - 1)
        throw std::bad_alloc();
    const Uint8* bytes = reinterpret_cast<const Uint8*>(str);
    _reserveToAppend(Uint32(n));
    Char16* out = _units() + _length();
    const size_t ascii = widenAsciiRun(bytes, n, out);
    out += ascii;
    for (size_t i = ascii; i < n;) {
        // Most text is ASCII, which needs no decoding.
        if (bytes[i] < 0x80) {
            *out++ = Char16(bytes[i++]);
            continue;
        }
        const int length = sequenceLength(bytes[i]);
        if (!isWellFormed(bytes + i, n - i, length)) {
            _units()[_length()] = Char16(0);
            throwBadUtf8(str, n, i);
        }
        const Uint32 code = decodeCodePoint(bytes + i, length);
        if (code >= 0x10000) {
            *out++ = Char16(Uint16(0xD800 + ((code - 0x10000) >> 10)));
            *out++ = Char16(Uint16(0xDC00 + ((code - 0x10000) & 0x3FF)));
        } else {
            *out++ = Char16(Uint16(code));
        }
        i += size_t(length);
    }
    _setLength(Uint32(out - _units()));
}

int String::compare(const String& s1, const String& s2, Uint32 n) {
    return compareUnits<noFold>(s1.getChar16Data(), std::min(n, s1.size()), s2.getChar16Data(),
                                std::min(n, s2.size()));
}

int String::compare(const String& s1, const String& s2) {
    return compareUnits<noFold>(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size());
}

int String::compareNoCase(const String& s1, const String& s2) {
    return compareUnits<asciiLower>(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size());
}

Boolean String::equal(const String& s1, const String& s2) {
    return s1._rep == s2._rep ||
           (s1.size() == s2.size() &&
            std::memcmp(s1.getChar16Data(), s2.getChar16Data(), s1.size() * sizeof(Char16)) == 0);
}

// Names are looked up by this, mostly among others of other lengths or spelt the same way.
Boolean String::equalNoCase(const String& s1, const String& s2) {
    if (s1._rep == s2._rep)
        return true;
    const Uint32 n = s1.size();
    if (n != s2.size())
        return false;
    const Char16* p1 = s1.getChar16Data();
    const Char16* p2 = s2.getChar16Data();
    // Names are mostly looked up as they are spelled: comparing all units at once settles that.
    if (std::memcmp(p1, p2, size_t(n) * sizeof(Char16)) == 0)
        return true;
    for (Uint32 i = 0; i < n; i++) {
        if (p1[i] != p2[i] && asciiLower(p1[i]) != asciiLower(p2[i]))
            return false;
    }
    return true;
}

//------------------------------------------------------------------------------
// StringReserve
//------------------------------------------------------------------------------

namespace {

// References taken at once for the copies of a reserve.
constexpr Uint32 kReservedCopies = 256;

} // namespace

StringReserve::StringReserve(String text) : _text(std::move(text)) {}

StringReserve::StringReserve(StringReserve&& other) noexcept
    : _text(std::move(other._text)), _prepaid(std::exchange(other._prepaid, 0)) {}

StringReserve& StringReserve::operator=(StringReserve&& other) noexcept {
    if (this != &other) {
        _giveBack();
        _text = std::move(other._text);
        _prepaid = std::exchange(other._prepaid, 0);
    }
    return *this;
}

StringReserve::~StringReserve() {
    _giveBack();
}

void StringReserve::_takeReferences() {
    _text._rep->refs.fetch_add(kReservedCopies, std::memory_order_relaxed);
    _prepaid = kReservedCopies;
}

// The reserve's own reference stays, so the text outlives this step.
void StringReserve::_giveBack() noexcept {
    if (_prepaid != 0)
        _text._rep->refs.fetch_sub(_prepaid, std::memory_order_relaxed);
    _prepaid = 0;
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
