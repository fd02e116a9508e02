#include "CIMValue.h"

#include <cstdio>
#include <type_traits>
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
    CIMType type = CIMTYPE_BOOLEAN;
    bool isArray = false;
    bool isNull = true;
    // Element count reported for a null array.
    Uint32 nullArraySize = 0;
    Payload payload;
};

namespace {

std::shared_ptr<const CIMValueRep> makeNull(CIMType type, Boolean isArray, Uint32 arraySize) {
    if (type < CIMTYPE_BOOLEAN || type > CIMTYPE_INSTANCE)
        throw TypeMismatchException();
    auto rep = std::make_shared<CIMValueRep>();
    rep->type = type;
    rep->isArray = isArray;
    rep->nullArraySize = isArray ? arraySize : 0;
    return rep;
}

const std::shared_ptr<const CIMValueRep>& nullBoolean() {
    static const std::shared_ptr<const CIMValueRep> rep = makeNull(CIMTYPE_BOOLEAN, false, 0);
    return rep;
}

template <class T>
std::shared_ptr<const CIMValueRep> makeValue(const T& x) {
    auto rep = std::make_shared<CIMValueRep>();
    rep->type = CIMTypeOf<T>::value;
    rep->isArray = IsArray<T>::value;
    rep->isNull = false;
    rep->payload.template emplace<T>(ownCopy(x));
    return rep;
}

template <class T>
void readValue(const CIMValueRep& rep, T& x) {
    if (rep.type != CIMTypeOf<T>::value || rep.isArray != IsArray<T>::value)
        throw TypeMismatchException();
    if (!rep.isNull)
        x = ownCopy(std::get<T>(rep.payload));
}

} // namespace

CIMValue::CIMValue() : _rep(nullBoolean()) {}

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 arraySize)
    : _rep(makeNull(type, isArray, arraySize)) {}

CIMValue::CIMValue(Boolean x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Uint8 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Sint8 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Uint16 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Sint16 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Uint32 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Sint32 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Uint64 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Sint64 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Real32 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(Real64 x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Char16& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const String& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const CIMDateTime& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const CIMObjectPath& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const CIMObject& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const CIMInstance& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Boolean>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Uint8>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Sint8>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Uint16>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Sint16>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Uint32>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Sint32>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Uint64>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Sint64>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Real32>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Real64>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<Char16>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<String>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<CIMDateTime>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<CIMObjectPath>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<CIMObject>& x) : _rep(makeValue(x)) {}
CIMValue::CIMValue(const Array<CIMInstance>& x) : _rep(makeValue(x)) {}

CIMValue::CIMValue(const CIMValue& x) = default;

CIMValue::~CIMValue() = default;

CIMValue& CIMValue::operator=(const CIMValue& x) = default;

void CIMValue::assign(const CIMValue& x) {
    _rep = x._rep;
}

void CIMValue::clear() {
    _rep = nullBoolean();
}

Boolean CIMValue::typeCompatible(const CIMValue& x) const {
    return _rep->type == x._rep->type && _rep->isArray == x._rep->isArray;
}

Boolean CIMValue::isArray() const {
    return _rep->isArray;
}

Boolean CIMValue::isNull() const {
    return _rep->isNull;
}

Uint32 CIMValue::getArraySize() const {
    if (_rep->isNull)
        return _rep->nullArraySize;
    return std::visit([](const auto& payload) { return payloadArraySize(payload); }, _rep->payload);
}

CIMType CIMValue::getType() const {
    return _rep->type;
}

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    _rep = makeNull(type, isArray, arraySize);
}

void CIMValue::set(Boolean x) {
    _rep = makeValue(x);
}
void CIMValue::set(Uint8 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Sint8 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Uint16 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Sint16 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Uint32 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Sint32 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Uint64 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Sint64 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Real32 x) {
    _rep = makeValue(x);
}
void CIMValue::set(Real64 x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Char16& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const String& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const CIMDateTime& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const CIMObjectPath& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const CIMObject& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const CIMInstance& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Boolean>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Uint8>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Sint8>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Uint16>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Sint16>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Uint32>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Sint32>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Uint64>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Sint64>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Real32>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Real64>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<Char16>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<String>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<CIMDateTime>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<CIMObjectPath>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<CIMObject>& x) {
    _rep = makeValue(x);
}
void CIMValue::set(const Array<CIMInstance>& x) {
    _rep = makeValue(x);
}

void CIMValue::get(Boolean& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Uint8& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Sint8& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Uint16& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Sint16& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Uint32& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Sint32& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Uint64& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Sint64& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Real32& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Real64& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Char16& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(String& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(CIMDateTime& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(CIMObjectPath& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(CIMObject& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(CIMInstance& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Boolean>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Uint8>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Sint8>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Uint16>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Sint16>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Uint32>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Sint32>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Uint64>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Sint64>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Real32>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Real64>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<Char16>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<String>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<CIMDateTime>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<CIMObjectPath>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<CIMObject>& x) const {
    readValue(*_rep, x);
}
void CIMValue::get(Array<CIMInstance>& x) const {
    readValue(*_rep, x);
}

Boolean CIMValue::equal(const CIMValue& x) const {
    if (!typeCompatible(x) || _rep->isNull != x._rep->isNull)
        return false;
    if (_rep->isNull)
        return true;
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
    std::visit([&text](const auto& payload) { appendPayloadText(text, payload); }, _rep->payload);
    return text;
}

Boolean operator==(const CIMValue& x, const CIMValue& y) {
    return x.equal(y);
}

Boolean operator!=(const CIMValue& x, const CIMValue& y) {
    return !x.equal(y);
}

PEGASUS_NAMESPACE_END
