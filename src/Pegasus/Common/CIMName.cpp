#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/StringReserve.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isAsciiLetterOrUnderscore(Uint16 c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool isAsciiDigit(Uint16 c) {
    return c >= '0' && c <= '9';
}

// Non-ASCII characters up to U+FFEF are accepted anywhere in a name.
bool isNameExtension(Uint16 c) {
    return c >= 0x0080 && c <= 0xFFEF;
}

bool canStartName(Uint16 c) {
    return isAsciiLetterOrUnderscore(c) || isNameExtension(c);
}

bool canContinueName(Uint16 c) {
    return canStartName(c) || isAsciiDigit(c);
}

// Whether units[begin, end) is one legal CIM name.
bool isLegalName(const Char16* units, Uint32 begin, Uint32 end) {
    if (begin == end || !canStartName(units[begin]))
        return false;
    for (Uint32 i = begin + 1; i < end; i++) {
        if (!canContinueName(units[i]))
            return false;
    }
    return true;
}

// Providers name the same few properties and namespaces over and over, mostly from literals. The
// ASCII names last made on each thread are kept, so that making one again shares its text instead
// of decoding and allocating it anew, and a CIMName made again skips checking it. Each hash picks
// a pair of places and a miss replaces the one used less recently: with one place per hash, two
// names of one instance that collide would evict each other forever.
constexpr size_t kRecentNamePairs = 256;
// A literal comes back at the same address: where the text at an address was last found is kept
// by the address, so that a name made again is neither measured nor hashed.
constexpr unsigned kRecentAddressBits = 9;
struct RecentName {
    // The name as given too, so that a name made again is recognized by comparing bytes.
    std::string ascii;
    StringReserve text;
    // Whether the text was found a legal CIMName; namespace names are kept here too.
    bool legalName = false;
};
struct RecentAddress {
    const char* address = nullptr;
    // The place of the text last found there, among the places.
    Uint32 place = 0;
};
struct RecentNames {
    RecentName places[2 * kRecentNamePairs];
    // Per pair, the place found or made last.
    Uint8 lastUsed[kRecentNamePairs] = {};
    RecentAddress byAddress[size_t(1) << kRecentAddressBits];
};
thread_local RecentNames recentNames;
// The same, reached without the check that the names were constructed on this thread, which
// every access to them would make: this pointer needs no construction. The initial-exec model
// reads it without a call, and a pointer fits the room the loader keeps for libraries loaded late.
[[gnu::tls_model("initial-exec")]] thread_local RecentNames* constructedRecentNames = nullptr;

bool spells(const RecentName& recent, const char* name, size_t n) {
    return recent.ascii.size() == n && std::memcmp(recent.ascii.data(), name, n) == 0;
}

// Mixes eight bytes at a time: a name is hashed on every lookup, and byte by byte that was most
// of the cost of one made again.
Uint64 mixedIn(Uint64 hash, Uint64 word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ull;
    return hash ^ (hash >> 32);
}

// The kept place of an ASCII name found by its text, made now if it was not kept; null for other
// texts.
RecentName* recentNameByText(RecentNames& kept, const char* name) {
    const size_t n = std::strlen(name);
    Uint64 hash = n;
    Uint64 anyHighBit = 0;
    size_t i = 0;
    for (; i + sizeof(Uint64) <= n; i += sizeof(Uint64)) {
        Uint64 word;
        std::memcpy(&word, name + i, sizeof(word));
        anyHighBit |= word;
        hash = mixedIn(hash, word);
    }
    Uint64 rest = 0;
    std::memcpy(&rest, name + i, n - i);
    anyHighBit |= rest;
    hash = mixedIn(hash, rest);
    if ((anyHighBit & 0x8080808080808080ull) != 0)
        return nullptr;
    const size_t pair = hash % kRecentNamePairs;
    RecentName* places = &kept.places[2 * pair];
    Uint8& last = kept.lastUsed[pair];
    if (!spells(places[last], name, n)) {
        last ^= 1;
        if (!spells(places[last], name, n))
            places[last] = RecentName{std::string(name, n), StringReserve(String(name, Uint32(n)))};
    }
    return &places[last];
}

// The kept place of an ASCII name not found by its address, kept by the address now: out of line,
// so that a name found by its address takes a short path.
[[gnu::noinline]] RecentName* recentNameFirstSeen(RecentNames& kept, RecentAddress& seen,
                                                  const char* name) {
    RecentName* place = recentNameByText(kept, name);
    if (place)
        seen = RecentAddress{name, Uint32(place - kept.places)};
    return place;
}

// The kept place of an ASCII name, made now if it was not kept; null for other texts. The text
// at a known address is compared all the same, since the address may hold another text by now.
RecentName* recentName(const char* name) {
    if (name == nullptr)
        return nullptr;
    if (!constructedRecentNames)
        constructedRecentNames = &recentNames;
    RecentNames& kept = *constructedRecentNames;
    const Uint64 address = Uint64(reinterpret_cast<uintptr_t>(name));
    RecentAddress& seen =
        kept.byAddress[(address * 0x9E3779B97F4A7C15ull) >> (64 - kRecentAddressBits)];
    if (seen.address == name) {
        // Marked used before the text is compared: on a miss, the slow path marks the place it
        // takes in its pair anyway, and a mark elsewhere only picks which place goes next.
        kept.lastUsed[seen.place / 2] = Uint8(seen.place % 2);
        RecentName* place = &kept.places[seen.place];
        if (std::strcmp(place->ascii.c_str(), name) == 0)
            return place;
    }
    return recentNameFirstSeen(kept, seen, name);
}

String nameText(const char* name) {
    RecentName* recent = recentName(name);
    return recent ? recent->text.copy() : String(name);
}

const String& checkedLegal(const String& text) {
    if (!CIMName::legal(text))
        throw InvalidNameException(text);
    return text;
}

String legalNameText(const char* name) {
    RecentName* recent = recentName(name);
    if (!recent)
        return checkedLegal(String(name));
    if (!recent->legalName) {
        checkedLegal(recent->text.text());
        recent->legalName = true;
    }
    return recent->text.copy();
}

} // namespace

//------------------------------------------------------------------------------
// CIMName
//------------------------------------------------------------------------------

CIMName::CIMName() = default;

CIMName::CIMName(const String& name) : cimName(checkedLegal(name)) {}

CIMName::CIMName(const char* name) : cimName(legalNameText(name)) {}

CIMName& CIMName::operator=(const CIMName& name) = default;

CIMName& CIMName::operator=(const String& name) {
    if (!legal(name))
        throw InvalidNameException(name);
    cimName = name;
    return *this;
}

CIMName& CIMName::operator=(const char* name) {
    return *this = String(name);
}

const String& CIMName::getString() const {
    return cimName;
}

Boolean CIMName::isNull() const {
    return cimName.size() == 0;
}

void CIMName::clear() {
    cimName.clear();
}

Boolean CIMName::equal(const CIMName& name) const {
    return String::equalNoCase(cimName, name.cimName);
}

Boolean CIMName::equal(const char* name) const {
    return String::equalNoCase(cimName, String(name));
}

Boolean CIMName::legal(const String& name) {
    return isLegalName(name.getChar16Data(), 0, name.size());
}

Boolean operator==(const CIMName& name1, const CIMName& name2) {
    return name1.equal(name2);
}

Boolean operator!=(const CIMName& name1, const CIMName& name2) {
    return !name1.equal(name2);
}

//------------------------------------------------------------------------------
// CIMNamespaceName
//------------------------------------------------------------------------------

namespace {

// Validates and drops the one leading '/' that is tolerated.
String checkedNamespaceName(const String& name) {
    if (!CIMNamespaceName::legal(name))
        throw InvalidNamespaceNameException(name);
    if (name[0] == '/')
        return name.subString(1);
    return name;
}

} // namespace

CIMNamespaceName::CIMNamespaceName() = default;

CIMNamespaceName::CIMNamespaceName(const String& name)
    : cimNamespaceName(checkedNamespaceName(name)) {}

CIMNamespaceName::CIMNamespaceName(const char* name) : CIMNamespaceName(nameText(name)) {}

CIMNamespaceName& CIMNamespaceName::operator=(const CIMNamespaceName& name) = default;

CIMNamespaceName& CIMNamespaceName::operator=(const String& name) {
    cimNamespaceName = checkedNamespaceName(name);
    return *this;
}

CIMNamespaceName& CIMNamespaceName::operator=(const char* name) {
    return *this = String(name);
}

const String& CIMNamespaceName::getString() const {
    return cimNamespaceName;
}

Boolean CIMNamespaceName::isNull() const {
    return cimNamespaceName.size() == 0;
}

void CIMNamespaceName::clear() {
    cimNamespaceName.clear();
}

Boolean CIMNamespaceName::equal(const CIMNamespaceName& name) const {
    return String::equalNoCase(cimNamespaceName, name.cimNamespaceName);
}

Boolean CIMNamespaceName::equal(const char* name) const {
    return String::equalNoCase(cimNamespaceName, String(name));
}

Boolean CIMNamespaceName::legal(const String& name) {
    const Char16* units = name.getChar16Data();
    const Uint32 length = name.size();
    Uint32 begin = (length > 0 && units[0] == '/') ? 1 : 0;
    for (;;) {
        Uint32 end = begin;
        while (end < length && units[end] != '/')
            end++;
        if (!isLegalName(units, begin, end))
            return false;
        if (end == length)
            return true;
        begin = end + 1;
    }
}

Boolean operator==(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return name1.equal(name2);
}

Boolean operator!=(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return !name1.equal(name2);
}

PEGASUS_NAMESPACE_END
