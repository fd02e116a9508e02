#include <Pegasus/Common/CIMObjectPath.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/IntegerText.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

// The key binding kind that carries values of a CIM type; embedded objects
// cannot be keys.
CIMKeyBinding::Type keyBindingTypeOf(const CIMValue& value) {
    if (value.isArray())
        throw TypeMismatchException();
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_CHAR16:
    case CIMTYPE_STRING:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    case CIMTYPE_REFERENCE:
        return CIMKeyBinding::REFERENCE;
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        throw TypeMismatchException();
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

template <class T>
CIMValue unsignedValue(const String& text) {
    Uint64 number;
    if (!parseUnsignedInteger(text.getCString(), number) || number > std::numeric_limits<T>::max())
        throw TypeMismatchException();
    return CIMValue(T(number));
}

template <class T>
CIMValue signedValue(const String& text) {
    Sint64 number;
    if (!parseSignedInteger(text.getCString(), number) || number < std::numeric_limits<T>::min() ||
        number > std::numeric_limits<T>::max())
        throw TypeMismatchException();
    return CIMValue(T(number));
}

Real64 realNumber(const String& text) {
    const CString utf8 = text.getCString();
    const char* begin = utf8;
    char* end = nullptr;
    errno = 0;
    const Real64 number = std::strtod(begin, &end);
    if (end == begin || *end != '\0' || errno == ERANGE || !std::isfinite(number))
        throw TypeMismatchException();
    return number;
}

CIMValue booleanValue(const String& text) {
    if (String::equalNoCase(text, "TRUE"))
        return CIMValue(true);
    if (String::equalNoCase(text, "FALSE"))
        return CIMValue(false);
    throw TypeMismatchException();
}

CIMValue numericValue(const String& text, CIMType type) {
    switch (type) {
    case CIMTYPE_UINT8:
        return unsignedValue<Uint8>(text);
    case CIMTYPE_UINT16:
        return unsignedValue<Uint16>(text);
    case CIMTYPE_UINT32:
        return unsignedValue<Uint32>(text);
    case CIMTYPE_UINT64:
        return unsignedValue<Uint64>(text);
    case CIMTYPE_SINT8:
        return signedValue<Sint8>(text);
    case CIMTYPE_SINT16:
        return signedValue<Sint16>(text);
    case CIMTYPE_SINT32:
        return signedValue<Sint32>(text);
    case CIMTYPE_SINT64:
        return signedValue<Sint64>(text);
    case CIMTYPE_REAL32:
        return CIMValue(Real32(realNumber(text)));
    case CIMTYPE_REAL64:
        return CIMValue(realNumber(text));
    default:
        throw TypeMismatchException();
    }
}

// The binding's text read as a value of the given type; throws when the
// binding is of another kind or its text does not fit the type.
CIMValue valueOfBinding(const CIMKeyBinding& binding, CIMType type) {
    if (keyBindingTypeOf(CIMValue(type, false)) != binding.getType())
        throw TypeMismatchException();
    const String& text = binding.getValue();
    switch (type) {
    case CIMTYPE_CHAR16:
        return CIMValue(text[0]);
    case CIMTYPE_STRING:
        return CIMValue(text);
    case CIMTYPE_DATETIME:
        return CIMValue(CIMDateTime(text));
    case CIMTYPE_REFERENCE:
        return CIMValue(CIMObjectPath(text));
    case CIMTYPE_BOOLEAN:
        return booleanValue(text);
    default:
        return numericValue(text, type);
    }
}

} // namespace

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const CIMValue& value)
    : _name(name), _type(keyBindingTypeOf(value)) {
    _value = value.toString();
}

Boolean CIMKeyBinding::equal(CIMValue value) {
    if (value.isArray())
        return false;
    try {
        return value.equal(valueOfBinding(*this, value.getType()));
    } catch (const Exception&) {
        return false;
    }
}

PEGASUS_NAMESPACE_END
