#include "CIMQualifier.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

CIMQualifierRep::CIMQualifierRep(const CIMName& name_, const CIMValue& value_,
                                 const CIMFlavor& flavor_, Boolean propagated_)
    : name(checkedName(name_)), value(value_), flavor(flavor_), propagated(propagated_) {}

namespace {

bool identicalQualifiers(const CIMQualifierRep& x, const CIMQualifierRep& y) {
    return &x == &y || (x.name.equal(y.name) && x.value == y.value && x.flavor.equal(y.flavor) &&
                        x.propagated == y.propagated);
}

std::shared_ptr<CIMQualifierRep> cloneOf(const std::shared_ptr<CIMQualifierRep>& rep) {
    return std::make_shared<CIMQualifierRep>(checkedRep(rep));
}

} // namespace

CIMQualifier::CIMQualifier() = default;

CIMQualifier::CIMQualifier(const CIMQualifier& x) = default;

CIMQualifier::CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor,
                           Boolean propagated)
    : _rep(std::make_shared<CIMQualifierRep>(name, value, flavor, propagated)) {}

CIMQualifier::CIMQualifier(std::shared_ptr<CIMQualifierRep> rep) : _rep(std::move(rep)) {}

CIMQualifier::~CIMQualifier() = default;

CIMQualifier& CIMQualifier::operator=(const CIMQualifier& x) = default;

const CIMName& CIMQualifier::getName() const {
    return checkedRep(_rep).name;
}

void CIMQualifier::setName(const CIMName& name) {
    CIMQualifierRep& rep = checkedRep(_rep);
    checkRenameAllowed(rep.owners, rep.name, checkedName(name), "qualifier");
    rep.name = name;
}

CIMType CIMQualifier::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMQualifier::isArray() const {
    return checkedRep(_rep).value.isArray();
}

const CIMValue& CIMQualifier::getValue() const {
    return checkedRep(_rep).value;
}

void CIMQualifier::setValue(const CIMValue& value) {
    checkedRep(_rep).value = value;
}

void CIMQualifier::setFlavor(const CIMFlavor& flavor) {
    checkedRep(_rep).flavor = flavor;
}

void CIMQualifier::unsetFlavor(const CIMFlavor& flavor) {
    checkedRep(_rep).flavor.removeFlavor(flavor);
}

const CIMFlavor& CIMQualifier::getFlavor() const {
    return checkedRep(_rep).flavor;
}

Uint32 CIMQualifier::getPropagated() const {
    return checkedRep(_rep).propagated ? 1 : 0;
}

void CIMQualifier::setPropagated(Boolean propagated) {
    checkedRep(_rep).propagated = propagated;
}

Boolean CIMQualifier::isUninitialized() const {
    return !_rep;
}

Boolean CIMQualifier::identical(const CIMConstQualifier& x) const {
    return identicalQualifiers(checkedRep(_rep), checkedRep(x._rep));
}

CIMQualifier CIMQualifier::clone() const {
    return CIMQualifier(cloneOf(_rep));
}

CIMConstQualifier::CIMConstQualifier() = default;

CIMConstQualifier::CIMConstQualifier(const CIMConstQualifier& x) = default;

CIMConstQualifier::CIMConstQualifier(const CIMQualifier& x) : _rep(x._rep) {}

CIMConstQualifier::CIMConstQualifier(const CIMName& name, const CIMValue& value,
                                     const CIMFlavor& flavor, Boolean propagated)
    : _rep(std::make_shared<CIMQualifierRep>(name, value, flavor, propagated)) {}

CIMConstQualifier::~CIMConstQualifier() = default;

CIMConstQualifier& CIMConstQualifier::operator=(const CIMConstQualifier& x) = default;

CIMConstQualifier& CIMConstQualifier::operator=(const CIMQualifier& x) {
    _rep = x._rep;
    return *this;
}

const CIMName& CIMConstQualifier::getName() const {
    return checkedRep(_rep).name;
}

CIMType CIMConstQualifier::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMConstQualifier::isArray() const {
    return checkedRep(_rep).value.isArray();
}

const CIMValue& CIMConstQualifier::getValue() const {
    return checkedRep(_rep).value;
}

const CIMFlavor& CIMConstQualifier::getFlavor() const {
    return checkedRep(_rep).flavor;
}

Uint32 CIMConstQualifier::getPropagated() const {
    return checkedRep(_rep).propagated ? 1 : 0;
}

Boolean CIMConstQualifier::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstQualifier::identical(const CIMConstQualifier& x) const {
    return identicalQualifiers(checkedRep(_rep), checkedRep(x._rep));
}

CIMQualifier CIMConstQualifier::clone() const {
    return CIMQualifier(cloneOf(_rep));
}

PEGASUS_NAMESPACE_END
