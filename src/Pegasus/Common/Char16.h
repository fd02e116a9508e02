#ifndef Pegasus_Char16_h
#define Pegasus_Char16_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// One UTF-16 code unit: the element type of String and the CIM char16 type.
// A class of its own rather than Uint16 so that overloads can tell it apart.
class PEGASUS_COMMON_LINKAGE Char16 {
public:
    constexpr Char16() : _code(0) {}
    constexpr Char16(Uint16 x) : _code(x) {}
    Char16(const Char16& x) = default;
    ~Char16() = default;

    Char16& operator=(Uint16 x) {
        _code = x;
        return *this;
    }
    Char16& operator=(const Char16& x) = default;

    operator Uint16() const { return _code; }

private:
    Uint16 _code;
};

inline Boolean operator==(const Char16& x, const Char16& y) {
    return Uint16(x) == Uint16(y);
}

inline Boolean operator==(const Char16& x, char y) {
    return Uint16(x) == Uint16(Uint8(y));
}

inline Boolean operator==(char x, const Char16& y) {
    return Uint16(Uint8(x)) == Uint16(y);
}

inline Boolean operator!=(const Char16& x, const Char16& y) {
    return !(x == y);
}

inline Boolean operator!=(const Char16& x, char y) {
    return !(x == y);
}

inline Boolean operator!=(char x, const Char16& y) {
    return !(x == y);
}

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Char16_h */
