#include "CIMQualifierDecl.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

class CIMQualifierDeclRep {
public:
    CIMQualifierDeclRep(const CIMName& name_, const CIMValue& value_, const CIMScope& scope_,
                        const CIMFlavor& flavor_, Uint32 arraySize_)
        : name(checkedName(name_)), value(value_), scope(scope_), flavor(normalizedFlavor(flavor_)),
          arraySize(arraySize_) {}

    bool identical(const CIMQualifierDeclRep& x) const {
        return this == &x || (name.equal(x.name) && value == x.value && scope.equal(x.scope) &&
                              flavor.equal(x.flavor) && arraySize == x.arraySize);
    }

    CIMName name;
    CIMValue value;
    CIMScope scope;
    CIMFlavor flavor;
    Uint32 arraySize;

private:
    // Each propagation and override choice gets exactly one of its two
    // flags; RESTRICTED and DISABLEOVERRIDE win over their opposites.
    static CIMFlavor normalizedFlavor(CIMFlavor flavor) {
        if (flavor.hasFlavor(CIMFlavor::RESTRICTED))
            flavor.removeFlavor(CIMFlavor::TOSUBCLASS);
        else
            flavor.addFlavor(CIMFlavor::TOSUBCLASS);
        if (flavor.hasFlavor(CIMFlavor::DISABLEOVERRIDE))
            flavor.removeFlavor(CIMFlavor::ENABLEOVERRIDE);
        else
            flavor.addFlavor(CIMFlavor::ENABLEOVERRIDE);
        return flavor;
    }
};

namespace {

std::shared_ptr<CIMQualifierDeclRep> cloneOf(const std::shared_ptr<CIMQualifierDeclRep>& rep) {
    return std::make_shared<CIMQualifierDeclRep>(checkedRep(rep));
}

} // namespace

CIMQualifierDecl::CIMQualifierDecl() = default;

CIMQualifierDecl::CIMQualifierDecl(const CIMQualifierDecl& x) = default;

CIMQualifierDecl::CIMQualifierDecl(const CIMName& name, const CIMValue& value,
                                   const CIMScope& scope, const CIMFlavor& flavor, Uint32 arraySize)
    : _rep(std::make_shared<CIMQualifierDeclRep>(name, value, scope, flavor, arraySize)) {}

CIMQualifierDecl::CIMQualifierDecl(std::shared_ptr<CIMQualifierDeclRep> rep)
    : _rep(std::move(rep)) {}

CIMQualifierDecl::~CIMQualifierDecl() = default;

CIMQualifierDecl& CIMQualifierDecl::operator=(const CIMQualifierDecl& x) = default;

const CIMName& CIMQualifierDecl::getName() const {
    return checkedRep(_rep).name;
}

void CIMQualifierDecl::setName(const CIMName& name) {
    checkedRep(_rep).name = checkedName(name);
}

CIMType CIMQualifierDecl::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMQualifierDecl::isArray() const {
    return checkedRep(_rep).value.isArray();
}

const CIMValue& CIMQualifierDecl::getValue() const {
    return checkedRep(_rep).value;
}

void CIMQualifierDecl::setValue(const CIMValue& value) {
    checkedRep(_rep).value = value;
}

const CIMScope& CIMQualifierDecl::getScope() const {
    return checkedRep(_rep).scope;
}

const CIMFlavor& CIMQualifierDecl::getFlavor() const {
    return checkedRep(_rep).flavor;
}

Uint32 CIMQualifierDecl::getArraySize() const {
    return checkedRep(_rep).arraySize;
}

Boolean CIMQualifierDecl::isUninitialized() const {
    return !_rep;
}

Boolean CIMQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

CIMQualifierDecl CIMQualifierDecl::clone() const {
    return CIMQualifierDecl(cloneOf(_rep));
}

CIMConstQualifierDecl::CIMConstQualifierDecl() = default;

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMConstQualifierDecl& x) = default;

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMQualifierDecl& x) : _rep(x._rep) {}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMName& name, const CIMValue& value,
                                             const CIMScope& scope, const CIMFlavor& flavor,
                                             Uint32 arraySize)
    : _rep(std::make_shared<CIMQualifierDeclRep>(name, value, scope, flavor, arraySize)) {}

CIMConstQualifierDecl::~CIMConstQualifierDecl() = default;

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMConstQualifierDecl& x) = default;

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMQualifierDecl& x) {
    _rep = x._rep;
    return *this;
}

const CIMName& CIMConstQualifierDecl::getName() const {
    return checkedRep(_rep).name;
}

CIMType CIMConstQualifierDecl::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMConstQualifierDecl::isArray() const {
    return checkedRep(_rep).value.isArray();
}

const CIMValue& CIMConstQualifierDecl::getValue() const {
    return checkedRep(_rep).value;
}

const CIMScope& CIMConstQualifierDecl::getScope() const {
    return checkedRep(_rep).scope;
}

const CIMFlavor& CIMConstQualifierDecl::getFlavor() const {
    return checkedRep(_rep).flavor;
}

Uint32 CIMConstQualifierDecl::getArraySize() const {
    return checkedRep(_rep).arraySize;
}

Boolean CIMConstQualifierDecl::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

CIMQualifierDecl CIMConstQualifierDecl::clone() const {
    return CIMQualifierDecl(cloneOf(_rep));
}

PEGASUS_NAMESPACE_END
