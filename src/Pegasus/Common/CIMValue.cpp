#include "CIMValue.h"

#include <cstdio>
#include <cstring>
#include <new>
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
    // The values sharing the payload, which none of them changes.
    std::atomic<Uint32> refs{1};
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

// Scalars of the types up to CIMTYPE_STRING: the same order that CIMValue::_holdsShared() reads
// inline, so that the two cannot disagree.
bool heldInline(CIMType type, Boolean isArray) {
    return !isArray && type <= CIMTYPE_STRING;
}

// Which member of a value's union is in use.
enum class Held { Bits, Text, Rep };

Held heldAs(CIMType type, Boolean isArray, Boolean isNull) {
    if (isNull)
        return Held::Bits;
    if (!isArray && type == CIMTYPE_STRING)
        return Held::Text;
    return heldInline(type, isArray) ? Held::Bits : Held::Rep;
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

// Calls f with a non-null scalar held as bits, typed.
template <class F>
void visitBits(CIMType type, Uint64 bits, F&& f) {
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
    default:
        return f(bitsAs<Char16>(bits));
    }
}

// Integers, booleans and characters are equal when their bits are; reals compare as numbers.
bool sameBits(CIMType type, Uint64 x, Uint64 y) {
    switch (type) {
    case CIMTYPE_REAL32:
        return bitsAs<Real32>(x) == bitsAs<Real32>(y);
    case CIMTYPE_REAL64:
        return bitsAs<Real64>(x) == bitsAs<Real64>(y);
    default:
        return x == y;
    }
}

} // namespace

// What may throw is done before the value held so far is let go.
template <class T>
void CIMValue::_assign(const T& x) {
    if constexpr (std::is_same<T, String>::value) {
        String text(x);
        _release();
        new (&_text) String(std::move(text));
    } else if constexpr (HeldInline<T>::value) {
        _release();
        _scalar = bitsOf(x);
    } else {
        auto rep = std::make_unique<CIMValueRep>();
        rep->payload.template emplace<T>(ownCopy(x));
        _release();
        _rep = rep.release();
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
    _release();
    _scalar = isArray ? arraySize : 0;
    _type = type;
    _isArray = isArray;
    _isNull = true;
}

CIMValue::CIMValue() {}

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

// Into a value that holds nothing to let go, from one that holds a text or a rep.
void CIMValue::_shareHeld(const CIMValue& x) noexcept {
    if (heldAs(x._type, x._isArray, x._isNull) == Held::Text) {
        new (&_text) String(x._text);
    } else {
        _rep = x._rep;
        _rep->refs.fetch_add(1, std::memory_order_relaxed);
    }
}

// Into a value that holds nothing to let go, from one that holds a text or a rep; x's caller
// makes it a null.
void CIMValue::_takeHeld(CIMValue& x) noexcept {
    if (heldAs(x._type, x._isArray, x._isNull) == Held::Text) {
        new (&_text) String(std::move(x._text));
        x._text.~String();
    } else {
        _rep = x._rep;
    }
}

// Lets go of a text or a rep.
void CIMValue::_releaseShared() noexcept {
    if (heldAs(_type, _isArray, _isNull) == Held::Text)
        _text.~String();
    else if (_rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete _rep;
    _scalar = 0;
}

void CIMValue::assign(const CIMValue& x) {
    *this = x;
}

void CIMValue::clear() {
    _setNull(CIMTYPE_BOOLEAN, false, 0);
}

Uint32 CIMValue::getArraySize() const {
    if (_isNull)
        return Uint32(_scalar);
    if (!_isArray)
        return 0;
    return std::visit([](const auto& payload) { return payloadArraySize(payload); }, _rep->payload);
}

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    _setNull(type, isArray, arraySize);
}

Boolean CIMValue::equal(const CIMValue& x) const {
    if (!typeCompatible(x) || _isNull != x._isNull)
        return false;
    switch (heldAs(_type, _isArray, _isNull)) {
    case Held::Bits:
        return _isNull || sameBits(_type, _scalar, x._scalar);
    case Held::Text:
        return String::equal(_text, x._text);
    case Held::Rep:
        break;
    }
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
    switch (heldAs(_type, _isArray, _isNull)) {
    case Held::Bits:
        visitBits(_type, _scalar, append);
        break;
    case Held::Text:
        appendText(text, _text);
        break;
    case Held::Rep:
        std::visit(append, _rep->payload);
        break;
    }
    return text;
}

Boolean operator==(const CIMValue& x, const CIMValue& y) {
    return x.equal(y);
}

Boolean operator!=(const CIMValue& x, const CIMValue& y) {
    return !x.equal(y);
}

PEGASUS_NAMESPACE_END
