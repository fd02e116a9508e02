#include <Pegasus/Common/HostLocatorCheck.h>

#include <arpa/inet.h>
#include <net/if.h>
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

const Uint32 MAX_PORT_NUMBER = 65535;

bool isAsciiDigit(Uint16 c) {
    return c >= '0' && c <= '9';
}

bool isAsciiLetter(Uint16 c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Four dot-separated decimal octets of one to three digits, each up to 255.
bool isIPv4Address(const String& text) {
    const Uint32 n = text.size();
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

// Dot-separated labels of letters, digits, '-' and '_' that do not start with
// '-'; the last label must not be all digits.
bool isHostName(const String& text) {
    const Uint32 n = text.size();
    Uint32 i = 0;
    bool lastLabelNumeric = true;
    for (;;) {
        if (i >= n || !(isAsciiLetter(text[i]) || isAsciiDigit(text[i]) || text[i] == '_'))
            return false;
        lastLabelNumeric = true;
        while (i < n && (isAsciiLetter(text[i]) || isAsciiDigit(text[i]) || text[i] == '-' ||
                         text[i] == '_')) {
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

bool isAscii(const String& text) {
    for (Uint32 i = 0; i < text.size(); i++) {
        if (text[i] > 127)
            return false;
    }
    return true;
}

// Link-local addresses are usable only with the zone (interface) named.
bool isIPv6Address(const String& text) {
    if (!isAscii(text) || text.find(Char16(':')) == PEG_NOT_FOUND)
        return false;
    std::string address(static_cast<const char*>(text.getCString()));
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
bool isPort(const String& text) {
    Uint64 value = 0;
    for (Uint32 i = 0; i < text.size(); i++) {
        if (!isAsciiDigit(text[i]))
            return false;
        value = value * 10 + (text[i] - '0');
        if (value > MAX_PORT_NUMBER)
            return false;
    }
    return true;
}

// The rest after the address: nothing, or ':' and a port.
bool isPortSuffix(const String& text, Uint32 start) {
    if (start == text.size())
        return true;
    return text[start] == ':' && isPort(text.subString(start + 1));
}

} // namespace

Boolean isValidHostLocator(const String& text) {
    if (text.size() == 0)
        return false;
    if (text[0] == '[') {
        const Uint32 close = text.find(Char16(']'));
        if (close == PEG_NOT_FOUND)
            return false;
        const String address = text.subString(1, close - 1);
        // Only an IPv6 address may be put in brackets.
        if (isIPv4Address(address) || isHostName(address) || !isIPv6Address(address))
            return false;
        return isPortSuffix(text, close + 1);
    }
    const Uint32 colon = text.find(Char16(':'));
    const String address = text.subString(0, colon);
    if (!isIPv4Address(address) && !isHostName(address))
        return false;
    return colon == PEG_NOT_FOUND || isPortSuffix(text, colon);
}

PEGASUS_NAMESPACE_END
