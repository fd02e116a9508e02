#include "CIMParameter.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

CIMParameterRep::CIMParameterRep(const CIMName& name_, CIMType type_, Boolean isArray_,
                                 Uint32 arraySize_, const CIMName& referenceClassName_)
    : name(checkedName(name_)), type(type_), isArray(isArray_), arraySize(arraySize_),
      referenceClassName(referenceClassName_) {
    if (arraySize != 0 && !isArray)
        throw TypeMismatchException();
    // A reference parameter names the class it refers to; no other does.
    if (referenceClassName.isNull() == (type == CIMTYPE_REFERENCE))
        throw TypeMismatchException();
}

namespace {

bool identicalParameters(const CIMParameterRep& x, const CIMParameterRep& y) {
    return &x == &y || (x.name.equal(y.name) && x.type == y.type &&
                        x.referenceClassName.equal(y.referenceClassName) &&
                        x.qualifiers.identical(y.qualifiers));
}

std::shared_ptr<CIMParameterRep> cloneOf(const std::shared_ptr<CIMParameterRep>& rep) {
    return std::make_shared<CIMParameterRep>(checkedRep(rep));
}

} // namespace

CIMParameter::CIMParameter() = default;

CIMParameter::CIMParameter(const CIMParameter& x) = default;

CIMParameter::CIMParameter(const CIMName& name, CIMType type, Boolean isArray, Uint32 arraySize,
                           const CIMName& referenceClassName)
    : _rep(std::make_shared<CIMParameterRep>(name, type, isArray, arraySize, referenceClassName)) {}

CIMParameter::CIMParameter(std::shared_ptr<CIMParameterRep> rep) : _rep(std::move(rep)) {}

CIMParameter::~CIMParameter() = default;

CIMParameter& CIMParameter::operator=(const CIMParameter& x) = default;

const CIMName& CIMParameter::getName() const {
    return checkedRep(_rep).name;
}

void CIMParameter::setName(const CIMName& name) {
    CIMParameterRep& rep = checkedRep(_rep);
    checkRenameAllowed(rep.owners, rep.name, checkedName(name), "parameter");
    rep.name = name;
}

Boolean CIMParameter::isArray() const {
    return checkedRep(_rep).isArray;
}

Uint32 CIMParameter::getArraySize() const {
    return checkedRep(_rep).arraySize;
}

const CIMName& CIMParameter::getReferenceClassName() const {
    return checkedRep(_rep).referenceClassName;
}

CIMType CIMParameter::getType() const {
    return checkedRep(_rep).type;
}

CIMParameter& CIMParameter::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep).qualifiers.add(x);
    return *this;
}

Uint32 CIMParameter::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMQualifier CIMParameter::getQualifier(Uint32 index) {
    return checkedRep(_rep).qualifiers.at(index);
}

void CIMParameter::removeQualifier(Uint32 index) {
    checkedRep(_rep).qualifiers.remove(index);
}

CIMConstQualifier CIMParameter::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMParameter::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Boolean CIMParameter::isUninitialized() const {
    return !_rep;
}

Boolean CIMParameter::identical(const CIMConstParameter& x) const {
    return identicalParameters(checkedRep(_rep), checkedRep(x._rep));
}

CIMParameter CIMParameter::clone() const {
    return CIMParameter(cloneOf(_rep));
}

CIMConstParameter::CIMConstParameter() = default;

CIMConstParameter::CIMConstParameter(const CIMConstParameter& x) = default;

CIMConstParameter::CIMConstParameter(const CIMParameter& x) : _rep(x._rep) {}

CIMConstParameter::CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray,
                                     Uint32 arraySize, const CIMName& referenceClassName)
    : _rep(std::make_shared<CIMParameterRep>(name, type, isArray, arraySize, referenceClassName)) {}

CIMConstParameter::~CIMConstParameter() = default;

CIMConstParameter& CIMConstParameter::operator=(const CIMConstParameter& x) = default;

CIMConstParameter& CIMConstParameter::operator=(const CIMParameter& x) {
    _rep = x._rep;
    return *this;
}

const CIMName& CIMConstParameter::getName() const {
    return checkedRep(_rep).name;
}

Boolean CIMConstParameter::isArray() const {
    return checkedRep(_rep).isArray;
}

Uint32 CIMConstParameter::getArraySize() const {
    return checkedRep(_rep).arraySize;
}

const CIMName& CIMConstParameter::getReferenceClassName() const {
    return checkedRep(_rep).referenceClassName;
}

CIMType CIMConstParameter::getType() const {
    return checkedRep(_rep).type;
}

Uint32 CIMConstParameter::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstParameter::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMConstParameter::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Boolean CIMConstParameter::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstParameter::identical(const CIMConstParameter& x) const {
    return identicalParameters(checkedRep(_rep), checkedRep(x._rep));
}

CIMParameter CIMConstParameter::clone() const {
    return CIMParameter(cloneOf(_rep));
}

PEGASUS_NAMESPACE_END
