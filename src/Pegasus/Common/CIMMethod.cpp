#include "CIMMethod.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

CIMMethodRep::CIMMethodRep(const CIMName& name_, CIMType type_, const CIMName& classOrigin_,
                           Boolean propagated_)
    : name(checkedName(name_)), type(type_), classOrigin(classOrigin_), propagated(propagated_) {}

namespace {

bool identicalMethods(const CIMMethodRep& x, const CIMMethodRep& y) {
    return &x == &y ||
           (x.name.equal(y.name) && x.type == y.type && x.qualifiers.identical(y.qualifiers) &&
            x.parameters.identical(y.parameters));
}

std::shared_ptr<CIMMethodRep> cloneOf(const std::shared_ptr<CIMMethodRep>& rep) {
    return std::make_shared<CIMMethodRep>(checkedRep(rep));
}

} // namespace

CIMMethod::CIMMethod() = default;

CIMMethod::CIMMethod(const CIMMethod& x) = default;

CIMMethod::CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                     Boolean propagated)
    : _rep(std::make_shared<CIMMethodRep>(name, type, classOrigin, propagated)) {}

CIMMethod::CIMMethod(std::shared_ptr<CIMMethodRep> rep) : _rep(std::move(rep)) {}

CIMMethod::~CIMMethod() = default;

CIMMethod& CIMMethod::operator=(const CIMMethod& x) = default;

const CIMName& CIMMethod::getName() const {
    return checkedRep(_rep).name;
}

void CIMMethod::setName(const CIMName& name) {
    CIMMethodRep& rep = checkedRep(_rep);
    checkRenameAllowed(rep.owners, rep.name, checkedName(name), "method");
    rep.name = name;
}

CIMType CIMMethod::getType() const {
    return checkedRep(_rep).type;
}

void CIMMethod::setType(CIMType type) {
    checkedRep(_rep).type = type;
}

const CIMName& CIMMethod::getClassOrigin() const {
    return checkedRep(_rep).classOrigin;
}

void CIMMethod::setClassOrigin(const CIMName& classOrigin) {
    checkedRep(_rep).classOrigin = classOrigin;
}

Boolean CIMMethod::getPropagated() const {
    return checkedRep(_rep).propagated;
}

void CIMMethod::setPropagated(Boolean propagated) {
    checkedRep(_rep).propagated = propagated;
}

CIMMethod& CIMMethod::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep).qualifiers.add(x);
    return *this;
}

Uint32 CIMMethod::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMQualifier CIMMethod::getQualifier(Uint32 index) {
    return checkedRep(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMMethod::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

void CIMMethod::removeQualifier(Uint32 index) {
    checkedRep(_rep).qualifiers.remove(index);
}

Uint32 CIMMethod::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

CIMMethod& CIMMethod::addParameter(const CIMParameter& x) {
    checkedRep(_rep).parameters.add(x);
    return *this;
}

Uint32 CIMMethod::findParameter(const CIMName& name) const {
    return checkedRep(_rep).parameters.find(name);
}

CIMParameter CIMMethod::getParameter(Uint32 index) {
    return checkedRep(_rep).parameters.at(index);
}

CIMConstParameter CIMMethod::getParameter(Uint32 index) const {
    return constRep(_rep).parameters.at(index);
}

void CIMMethod::removeParameter(Uint32 index) {
    checkedRep(_rep).parameters.remove(index);
}

Uint32 CIMMethod::getParameterCount() const {
    return checkedRep(_rep).parameters.size();
}

Boolean CIMMethod::isUninitialized() const {
    return !_rep;
}

Boolean CIMMethod::identical(const CIMConstMethod& x) const {
    return identicalMethods(checkedRep(_rep), checkedRep(x._rep));
}

CIMMethod CIMMethod::clone() const {
    return CIMMethod(cloneOf(_rep));
}

CIMConstMethod::CIMConstMethod() = default;

CIMConstMethod::CIMConstMethod(const CIMConstMethod& x) = default;

CIMConstMethod::CIMConstMethod(const CIMMethod& x) : _rep(x._rep) {}

CIMConstMethod::CIMConstMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                               Boolean propagated)
    : _rep(std::make_shared<CIMMethodRep>(name, type, classOrigin, propagated)) {}

CIMConstMethod::~CIMConstMethod() = default;

CIMConstMethod& CIMConstMethod::operator=(const CIMConstMethod& x) = default;

CIMConstMethod& CIMConstMethod::operator=(const CIMMethod& x) {
    _rep = x._rep;
    return *this;
}

const CIMName& CIMConstMethod::getName() const {
    return checkedRep(_rep).name;
}

CIMType CIMConstMethod::getType() const {
    return checkedRep(_rep).type;
}

const CIMName& CIMConstMethod::getClassOrigin() const {
    return checkedRep(_rep).classOrigin;
}

Boolean CIMConstMethod::getPropagated() const {
    return checkedRep(_rep).propagated;
}

Uint32 CIMConstMethod::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstMethod::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMConstMethod::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Uint32 CIMConstMethod::findParameter(const CIMName& name) const {
    return checkedRep(_rep).parameters.find(name);
}

CIMConstParameter CIMConstMethod::getParameter(Uint32 index) const {
    return constRep(_rep).parameters.at(index);
}

Uint32 CIMConstMethod::getParameterCount() const {
    return checkedRep(_rep).parameters.size();
}

Boolean CIMConstMethod::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstMethod::identical(const CIMConstMethod& x) const {
    return identicalMethods(checkedRep(_rep), checkedRep(x._rep));
}

CIMMethod CIMConstMethod::clone() const {
    return CIMMethod(cloneOf(_rep));
}

PEGASUS_NAMESPACE_END
