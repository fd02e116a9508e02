#include "CIMValue.h"

#include <cstdio>
#include <cstring>
#include <type_traits>
#include <utility>
#include <variant>

#include "CIMInstance.h"
#include "CIMObject.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

using Payload =
    std::variant<std::monostate, Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64,
                 Sint64, Real32, Real64, Char16, String, CIMDateTime, CIMObjectPath, CIMObject,
                 CIMInstance, Array<Boolean>, Array<Uint8>, Array<Sint8>, Array<Uint16>,
                 Array<Sint16>, Array<Uint32>, Array<Sint32>, Array<Uint64>, Array<Sint64>,
                 Array<Real32>, Array<Real64>, Array<Char16>, Array<String>, Array<CIMDateTime>,
                 Array<CIMObjectPath>, Array<CIMObject>, Array<CIMInstance>>;

template <class T>
struct CIMTypeOf;

#define PEGASUS_CIMTYPE_OF(CPP_TYPE, CIM_TYPE)                                                     \
    template <>                                                                                    \
    struct CIMTypeOf<CPP_TYPE> {                                                                   \
        static constexpr CIMType value = CIM_TYPE;                                                 \
    }

PEGASUS_CIMTYPE_OF(Boolean, CIMTYPE_BOOLEAN);
PEGASUS_CIMTYPE_OF(Uint8, CIMTYPE_UINT8);
PEGASUS_CIMTYPE_OF(Sint8, CIMTYPE_SINT8);
PEGASUS_CIMTYPE_OF(Uint16, CIMTYPE_UINT16);
PEGASUS_CIMTYPE_OF(Sint16, CIMTYPE_SINT16);
PEGASUS_CIMTYPE_OF(Uint32, CIMTYPE_UINT32);
PEGASUS_CIMTYPE_OF(Sint32, CIMTYPE_SINT32);
PEGASUS_CIMTYPE_OF(Uint64, CIMTYPE_UINT64);
PEGASUS_CIMTYPE_OF(Sint64, CIMTYPE_SINT64);
PEGASUS_CIMTYPE_OF(Real32, CIMTYPE_REAL32);
PEGASUS_CIMTYPE_OF(Real64, CIMTYPE_REAL64);
PEGASUS_CIMTYPE_OF(Char16, CIMTYPE_CHAR16);
PEGASUS_CIMTYPE_OF(String, CIMTYPE_STRING);
PEGASUS_CIMTYPE_OF(CIMDateTime, CIMTYPE_DATETIME);
PEGASUS_CIMTYPE_OF(CIMObjectPath, CIMTYPE_REFERENCE);
PEGASUS_CIMTYPE_OF(CIMObject, CIMTYPE_OBJECT);
PEGASUS_CIMTYPE_OF(CIMInstance, CIMTYPE_INSTANCE);

#undef PEGASUS_CIMTYPE_OF

template <class T>
struct CIMTypeOf<Array<T>> : CIMTypeOf<T> {};

template <class T>
struct IsArray : std::false_type {};

template <class T>
struct IsArray<Array<T>> : std::true_type {};

// Embedded objects are cloned whenever they cross the value's boundary, so
// nobody outside can change what a value holds.
template <class T>
const T& ownCopy(const T& x) {
    return x;
}

CIMObject ownCopy(const CIMObject& x) {
    return x.clone();
}

CIMInstance ownCopy(const CIMInstance& x) {
    return x.clone();
}

template <class T>
Array<T> clonedElements(const Array<T>& x) {
    Array<T> copy;
    copy.reserveCapacity(x.size());
    for (Uint32 i = 0; i < x.size(); i++)
        copy.append(x[i].clone());
    return copy;
}

Array<CIMObject> ownCopy(const Array<CIMObject>& x) {
    return clonedElements(x);
}

Array<CIMInstance> ownCopy(const Array<CIMInstance>& x) {
    return clonedElements(x);
}

template <class T>
bool sameElement(const T& x, const T& y) {
    return x == y;
}

bool sameElement(const CIMObject& x, const CIMObject& y) {
    return x.identical(y);
}

bool sameElement(const CIMInstance& x, const CIMInstance& y) {
    return x.identical(y);
}

bool samePayload(std::monostate, std::monostate) {
    return true;
}

template <class T>
bool samePayload(const T& x, const T& y) {
    return sameElement(x, y);
}

template <class T>
bool samePayload(const Array<T>& x, const Array<T>& y) {
    if (x.size() != y.size())
        return false;
    for (Uint32 i = 0; i < x.size(); i++) {
        if (!sameElement(x[i], y[i]))
            return false;
    }
    return true;
}

void appendAscii(String& out, const char* text) {
    out.append(String(text));
}

void appendText(String& out, Boolean x) {
    appendAscii(out, x ? "TRUE" : "FALSE");
}

void appendText(String& out, Uint64 x) {
    char buffer[24];
    std::snprintf(buffer, sizeof(buffer), "%llu", x);
    appendAscii(out, buffer);
}

void appendText(String& out, Sint64 x) {
    char buffer[24];
    std::snprintf(buffer, sizeof(buffer), "%lld", x);
    appendAscii(out, buffer);
}

void appendText(String& out, Uint8 x) {
    appendText(out, Uint64(x));
}
void appendText(String& out, Uint16 x) {
    appendText(out, Uint64(x));
}
void appendText(String& out, Uint32 x) {
    appendText(out, Uint64(x));
}
void appendText(String& out, Sint8 x) {
    appendText(out, Sint64(x));
}
void appendText(String& out, Sint16 x) {
    appendText(out, Sint64(x));
}
void appendText(String& out, Sint32 x) {
    appendText(out, Sint64(x));
}

// Reals of both sizes print with a double's precision.
void appendText(String& out, Real64 x) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%.16e", x);
    appendAscii(out, buffer);
}

void appendText(String& out, Real32 x) {
    appendText(out, Real64(x));
}

void appendText(String& out, const Char16& x) {
    out.append(x);
}

void appendText(String& out, const String& x) {
    out.append(x);
}

void appendText(String& out, const CIMDateTime& x) {
    out.append(x.toString());
}

void appendText(String& out, const CIMObjectPath& x) {
    out.append(x.toString());
}

void appendText(String& out, const CIMObject& x) {
    out.append(x.toString());
}

void appendText(String& out, const CIMInstance& x) {
    out.append(CIMObject(x).toString());
}

void appendPayloadText(String&, std::monostate) {}

template <class T>
void appendPayloadText(String& out, const T& x) {
    appendText(out, x);
}

template <class T>
void appendPayloadText(String& out, const Array<T>& x) {
    for (Uint32 i = 0; i < x.size(); i++) {
        appendText(out, x[i]);
        out.append(Char16(' '));
    }
}

template <class T>
Uint32 payloadArraySize(const T&) {
    return 0;
}

template <class T>
Uint32 payloadArraySize(const Array<T>& x) {
    return x.size();
}

} // namespace

class CIMValueRep {
public:
    Payload payload;
};

namespace {

// The scalars a value holds itself rather than in a rep.
template <class T>
struct HeldInline : std::false_type {};

#define PEGASUS_HELD_INLINE(CPP_TYPE)                                                              \
    template <>                                                                                    \
    struct HeldInline<CPP_TYPE> : std::true_type {}

PEGASUS_HELD_INLINE(Boolean);
PEGASUS_HELD_INLINE(Uint8);
PEGASUS_HELD_INLINE(Sint8);
PEGASUS_HELD_INLINE(Uint16);
PEGASUS_HELD_INLINE(Sint16);
PEGASUS_HELD_INLINE(Uint32);
PEGASUS_HELD_INLINE(Sint32);
PEGASUS_HELD_INLINE(Uint64);
PEGASUS_HELD_INLINE(Sint64);
PEGASUS_HELD_INLINE(Real32);
PEGASUS_HELD_INLINE(Real64);
PEGASUS_HELD_INLINE(Char16);

#undef PEGASUS_HELD_INLINE

bool heldInline(CIMType type, Boolean isArray) {
    return !isArray && type != CIMTYPE_DATETIME && type != CIMTYPE_REFERENCE &&
           type != CIMTYPE_OBJECT && type != CIMTYPE_INSTANCE;
}

template <class T>
Uint64 bitsOf(const T& x) {
    static_assert(sizeof(T) <= sizeof(Uint64) && std::is_arithmetic<T>::value, "");
    Uint64 bits = 0;
    std::memcpy(&bits, &x, sizeof(T));
    return bits;
}

Uint64 bitsOf(const Char16& x) {
    return Uint16(x);
}

template <class T>
T bitsAs(Uint64 bits) {
    T x;
    std::memcpy(&x, &bits, sizeof(T));
    return x;
}

template <>
Char16 bitsAs<Char16>(Uint64 bits) {
    return Char16(Uint16(bits));
}

// Calls f with a non-null scalar held inline, typed.
template <class F>
void visitInline(CIMType type, Uint64 bits, const String& text, F&& f) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return f(bitsAs<Boolean>(bits));
    case CIMTYPE_UINT8:
        return f(bitsAs<Uint8>(bits));
    case CIMTYPE_SINT8:
        return f(bitsAs<Sint8>(bits));
    case CIMTYPE_UINT16:
        return f(bitsAs<Uint16>(bits));
    case CIMTYPE_SINT16:
        return f(bitsAs<Sint16>(bits));
    case CIMTYPE_UINT32:
        return f(bitsAs<Uint32>(bits));
    case CIMTYPE_SINT32:
        return f(bitsAs<Sint32>(bits));
    case CIMTYPE_UINT64:
        return f(bitsAs<Uint64>(bits));
    case CIMTYPE_SINT64:
        return f(bitsAs<Sint64>(bits));
    case CIMTYPE_REAL32:
        return f(bitsAs<Real32>(bits));
    case CIMTYPE_REAL64:
        return f(bitsAs<Real64>(bits));
    case CIMTYPE_CHAR16:
        return f(bitsAs<Char16>(bits));
    default:
        return f(text);
    }
}

// Integers, booleans and characters are equal when their bits are; reals compare as numbers.
bool sameInline(CIMType type, Uint64 x, Uint64 y, const String& xText, const String& yText) {
    switch (type) {
    case CIMTYPE_REAL32:
        return bitsAs<Real32>(x) == bitsAs<Real32>(y);
    case CIMTYPE_REAL64:
        return bitsAs<Real64>(x) == bitsAs<Real64>(y);
    case CIMTYPE_STRING:
        return String::equal(xText, yText);
    default:
        return x == y;
    }
}

} // namespace

template <class T>
void CIMValue::_assign(const T& x) {
    if constexpr (std::is_same<T, String>::value) {
        _rep.reset();
        _scalar = 0;
        _text = x;
    } else if constexpr (HeldInline<T>::value) {
        _rep.reset();
        _scalar = bitsOf(x);
        _text = String();
    } else {
        auto rep = std::make_shared<CIMValueRep>();
        rep->payload.template emplace<T>(ownCopy(x));
        _rep = std::move(rep);
        _scalar = 0;
        _text = String();
    }
    _type = CIMTypeOf<T>::value;
    _isArray = IsArray<T>::value;
    _isNull = false;
}

template <class T>
void CIMValue::_read(T& x) const {
    if (_type != CIMTypeOf<T>::value || _isArray != IsArray<T>::value)
        throw TypeMismatchException();
    if (_isNull)
        return;
    if constexpr (std::is_same<T, String>::value)
        x = _text;
    else if constexpr (HeldInline<T>::value)
        x = bitsAs<T>(_scalar);
    else
        x = ownCopy(std::get<T>(_rep->payload));
}

void CIMValue::_setNull(CIMType type, Boolean isArray, Uint32 arraySize) {
    if (type < CIMTYPE_BOOLEAN || type > CIMTYPE_INSTANCE)
        throw TypeMismatchException();
    _rep.reset();
    _scalar = isArray ? arraySize : 0;
    _text = String();
    _type = type;
    _isArray = isArray;
    _isNull = true;
}

CIMValue::CIMValue() = default;

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    _setNull(type, isArray, arraySize);
}

// Each type's constructor, setter and getter.
#define PEGASUS_VALUE_TYPE(T, PARAM)                                                               \
    CIMValue::CIMValue(PARAM x) {                                                                  \
        _assign(x);                                                                                \
    }                                                                                              \
    void CIMValue::set(PARAM x) {                                                                  \
        _assign(x);                                                                                \
    }                                                                                              \
    void CIMValue::get(T& x) const {                                                               \
        _read(x);                                                                                  \
    }
#define PEGASUS_VALUE_SCALAR(T) PEGASUS_VALUE_TYPE(T, T)
#define PEGASUS_VALUE_OBJECT(T) PEGASUS_VALUE_TYPE(T, const T&)
#define PEGASUS_VALUE_ARRAY(T) PEGASUS_VALUE_TYPE(Array<T>, const Array<T>&)

PEGASUS_VALUE_SCALAR(Boolean)
PEGASUS_VALUE_SCALAR(Uint8)
PEGASUS_VALUE_SCALAR(Sint8)
PEGASUS_VALUE_SCALAR(Uint16)
PEGASUS_VALUE_SCALAR(Sint16)
PEGASUS_VALUE_SCALAR(Uint32)
PEGASUS_VALUE_SCALAR(Sint32)
PEGASUS_VALUE_SCALAR(Uint64)
PEGASUS_VALUE_SCALAR(Sint64)
PEGASUS_VALUE_SCALAR(Real32)
PEGASUS_VALUE_SCALAR(Real64)
PEGASUS_VALUE_OBJECT(Char16)
PEGASUS_VALUE_OBJECT(String)
PEGASUS_VALUE_OBJECT(CIMDateTime)
PEGASUS_VALUE_OBJECT(CIMObjectPath)
PEGASUS_VALUE_OBJECT(CIMObject)
PEGASUS_VALUE_OBJECT(CIMInstance)
PEGASUS_VALUE_ARRAY(Boolean)
PEGASUS_VALUE_ARRAY(Uint8)
PEGASUS_VALUE_ARRAY(Sint8)
PEGASUS_VALUE_ARRAY(Uint16)
PEGASUS_VALUE_ARRAY(Sint16)
PEGASUS_VALUE_ARRAY(Uint32)
PEGASUS_VALUE_ARRAY(Sint32)
PEGASUS_VALUE_ARRAY(Uint64)
PEGASUS_VALUE_ARRAY(Sint64)
PEGASUS_VALUE_ARRAY(Real32)
PEGASUS_VALUE_ARRAY(Real64)
PEGASUS_VALUE_ARRAY(Char16)
PEGASUS_VALUE_ARRAY(String)
PEGASUS_VALUE_ARRAY(CIMDateTime)
PEGASUS_VALUE_ARRAY(CIMObjectPath)
PEGASUS_VALUE_ARRAY(CIMObject)
PEGASUS_VALUE_ARRAY(CIMInstance)

#undef PEGASUS_VALUE_ARRAY
#undef PEGASUS_VALUE_OBJECT
#undef PEGASUS_VALUE_SCALAR
#undef PEGASUS_VALUE_TYPE

CIMValue::CIMValue(const CIMValue& x) = default;

CIMValue::~CIMValue() = default;

CIMValue& CIMValue::operator=(const CIMValue& x) = default;

CIMValue::CIMValue(CIMValue&& x) noexcept {
    _take(x);
}

CIMValue& CIMValue::operator=(CIMValue&& x) noexcept {
    if (this != &x)
        _take(x);
    return *this;
}

void CIMValue::_take(CIMValue& x) noexcept {
    _rep = std::move(x._rep);
    _scalar = std::exchange(x._scalar, 0);
    _text = std::move(x._text);
    _type = std::exchange(x._type, CIMTYPE_BOOLEAN);
    _isArray = std::exchange(x._isArray, false);
    _isNull = std::exchange(x._isNull, true);
}

void CIMValue::assign(const CIMValue& x) {
    *this = x;
}

void CIMValue::clear() {
    _setNull(CIMTYPE_BOOLEAN, false, 0);
}

Boolean CIMValue::typeCompatible(const CIMValue& x) const {
    return _type == x._type && _isArray == x._isArray;
}

Boolean CIMValue::isArray() const {
    return _isArray;
}

Boolean CIMValue::isNull() const {
    return _isNull;
}

Uint32 CIMValue::getArraySize() const {
    if (_isNull)
        return Uint32(_scalar);
    if (!_isArray)
        return 0;
    return std::visit([](const auto& payload) { return payloadArraySize(payload); }, _rep->payload);
}

CIMType CIMValue::getType() const {
    return _type;
}

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    _setNull(type, isArray, arraySize);
}

Boolean CIMValue::equal(const CIMValue& x) const {
    if (!typeCompatible(x) || _isNull != x._isNull)
        return false;
    if (_isNull)
        return true;
    if (heldInline(_type, _isArray))
        return sameInline(_type, _scalar, x._scalar, _text, x._text);
    const Payload& other = x._rep->payload;
    return std::visit(
        [&other](const auto& mine) {
            using T = std::decay_t<decltype(mine)>;
            return samePayload(mine, std::get<T>(other));
        },
        _rep->payload);
}

String CIMValue::toString() const {
    String text;
    if (_isNull)
        return text;
    const auto append = [&text](const auto& payload) { appendPayloadText(text, payload); };
    if (heldInline(_type, _isArray))
        visitInline(_type, _scalar, _text, append);
    else
        std::visit(append, _rep->payload);
    return text;
}

Boolean operator==(const CIMValue& x, const CIMValue& y) {
    return x.equal(y);
}

Boolean operator!=(const CIMValue& x, const CIMValue& y) {
    return !x.equal(y);
}

PEGASUS_NAMESPACE_END
