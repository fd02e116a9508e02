#include <Pegasus/Common/HostLocatorCheck.h>

#include <arpa/inet.h>
#include <net/if.h>
#include <algorithm>
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

const Uint32 MAX_PORT_NUMBER = 65535;

// A part of the text, read in place: a path's host is checked each time a path is made, so
// the check copies nothing.
struct Units {
    const Char16* data;
    Uint32 size;

    Uint16 operator[](Uint32 i) const { return data[i]; }
    Units part(Uint32 begin, Uint32 end) const { return {data + begin, end - begin}; }
    Uint32 find(Uint16 c) const { return Uint32(std::find(data, data + size, Char16(c)) - data); }
};

bool isAsciiDigit(Uint16 c) {
    return c >= '0' && c <= '9';
}

bool isAsciiLetter(Uint16 c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Four dot-separated decimal octets of one to three digits, each up to 255.
bool isIPv4Address(Units text) {
    const Uint32 n = text.size;
    Uint32 i = 0;
    for (int octet = 0; octet < 4; octet++) {
        if (octet > 0) {
            if (i >= n || text[i] != '.')
                return false;
            i++;
        }
        Uint32 value = 0;
        Uint32 digits = 0;
        while (i < n && isAsciiDigit(text[i]) && digits < 4) {
            value = value * 10 + (text[i] - '0');
            i++;
            digits++;
        }
        if (digits == 0 || digits > 3 || value > 255)
            return false;
    }
    return i == n;
}

bool isLabelStart(Uint16 c) {
    return isAsciiLetter(c) || isAsciiDigit(c) || c == '_';
}

// Dot-separated labels of letters, digits, '-' and '_' that do not start with
// '-'; the last label must not be all digits.
bool isHostName(Units text) {
    const Uint32 n = text.size;
    Uint32 i = 0;
    bool lastLabelNumeric = true;
    for (;;) {
        if (i >= n || !isLabelStart(text[i]))
            return false;
        lastLabelNumeric = true;
        while (i < n && (isLabelStart(text[i]) || text[i] == '-')) {
            if (!isAsciiDigit(text[i]))
                lastLabelNumeric = false;
            i++;
        }
        if (i < n && text[i] == '.') {
            i++;
            continue;
        }
        return i == n && !lastLabelNumeric;
    }
}

// Link-local addresses are usable only with the zone (interface) named.
bool isIPv6Address(Units text) {
    const bool ascii =
        std::all_of(text.data, text.data + text.size, [](Char16 c) { return Uint16(c) <= 127; });
    if (!ascii || text.find(':') == text.size)
        return false;
    std::string address(text.data, text.data + text.size);
    const bool linkLocal = address.size() >= 4 && (address[0] == 'f' || address[0] == 'F') &&
                           (address[1] == 'e' || address[1] == 'E') && address[2] == '8' &&
                           address[3] == '0';
    if (linkLocal) {
        const size_t percent = address.find('%');
        if (percent == std::string::npos ||
            if_nametoindex(address.substr(percent + 1).c_str()) == 0)
            return false;
        address.erase(percent);
    }
    unsigned char binary[16];
    return inet_pton(AF_INET6, address.c_str(), binary) == 1;
}

// Digits only, nothing at all meaning the port is left unspecified.
bool isPort(Units text) {
    Uint64 value = 0;
    for (Uint32 i = 0; i < text.size; i++) {
        if (!isAsciiDigit(text[i]))
            return false;
        value = value * 10 + (text[i] - '0');
        if (value > MAX_PORT_NUMBER)
            return false;
    }
    return true;
}

// The rest after the address: nothing, or ':' and a port.
bool isPortSuffix(Units text, Uint32 start) {
    if (start == text.size)
        return true;
    return text[start] == ':' && isPort(text.part(start + 1, text.size));
}

} // namespace

namespace {

bool isValidLocatorText(Units text) {
    if (text.size == 0)
        return false;
    if (text[0] == '[') {
        const Uint32 close = text.find(']');
        if (close == text.size)
            return false;
        const Units address = text.part(1, close);
        // Only an IPv6 address may be put in brackets.
        if (isIPv4Address(address) || isHostName(address) || !isIPv6Address(address))
            return false;
        return isPortSuffix(text, close + 1);
    }
    const Uint32 colon = text.find(':');
    const Units address = text.part(0, colon);
    if (!isIPv4Address(address) && !isHostName(address))
        return false;
    return colon == text.size || isPortSuffix(text, colon);
}

} // namespace

// Every path a provider makes carries the same host: the host last found valid on a thread is
// kept, and the same text is not checked again.
Boolean isValidHostLocator(const String& host) {
    thread_local String lastValid;
    if (host.size() != 0 && String::equal(host, lastValid))
        return true;
    if (!isValidLocatorText({host.getChar16Data(), host.size()}))
        return false;
    lastValid = host;
    return true;
}

PEGASUS_NAMESPACE_END
