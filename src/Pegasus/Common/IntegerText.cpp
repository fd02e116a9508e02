#include <Pegasus/Common/IntegerText.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

const Uint64 MAX_UINT64 = ~Uint64(0);

bool isDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexDigitValue(char c) {
    if (isDecimalDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool parseDecimal(const char* p, Uint64& value) {
    value = 0;
    if (!isDecimalDigit(*p))
        return false;
    if (*p == '0')
        return p[1] == '\0';
    for (; *p; p++) {
        if (!isDecimalDigit(*p))
            return false;
        const Uint64 digit = Uint64(*p - '0');
        if (value > (MAX_UINT64 - digit) / 10)
            return false;
        value = value * 10 + digit;
    }
    return true;
}

bool parseHexadecimal(const char* p, Uint64& value) {
    value = 0;
    if (p[0] != '0' || (p[1] != 'x' && p[1] != 'X') || p[2] == '\0')
        return false;
    for (p += 2; *p; p++) {
        const int digit = hexDigitValue(*p);
        if (digit < 0 || (value >> 60) != 0)
            return false;
        value = (value << 4) | Uint64(digit);
    }
    return true;
}

} // namespace

Boolean parseUnsignedInteger(const char* text, Uint64& value) {
    if (!text)
        return false;
    return parseDecimal(text, value) || parseHexadecimal(text, value);
}

Boolean parseSignedInteger(const char* text, Sint64& value) {
    value = 0;
    if (!text)
        return false;
    const bool negative = *text == '-';
    if (negative || *text == '+')
        text++;
    Uint64 magnitude = 0;
    if (!parseUnsignedInteger(text, magnitude))
        return false;
    const Uint64 limit = negative ? Uint64(1) << 63 : (Uint64(1) << 63) - 1;
    if (magnitude > limit)
        return false;
    value = negative ? Sint64(0 - magnitude) : Sint64(magnitude);
    return true;
}

PEGASUS_NAMESPACE_END
