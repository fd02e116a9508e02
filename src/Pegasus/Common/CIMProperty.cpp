#include "CIMProperty.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

// Properties never hold arrays of references.
void checkNotReferenceArray(const CIMValue& value) {
    if (value.isArray() && value.getType() == CIMTYPE_REFERENCE)
        throw TypeMismatchException();
}

void checkArraySize(const CIMValue& value, Uint32 arraySize) {
    if (arraySize != 0 && (!value.isArray() || value.getArraySize() != arraySize))
        throw TypeMismatchException();
}

void checkReferenceClass(const CIMValue& value, const CIMName& referenceClassName) {
    if (!referenceClassName.isNull() && value.getType() != CIMTYPE_REFERENCE)
        throw TypeMismatchException();
}

bool identicalDecls(const CIMPropertyDecl& x, const CIMPropertyDecl& y) {
    return &x == &y || (x.name.equal(y.name) && x.referenceClassName.equal(y.referenceClassName) &&
                        x.qualifiers.identical(y.qualifiers) &&
                        x.classOrigin.equal(y.classOrigin) && x.propagated == y.propagated);
}

bool identicalProperties(const CIMPropertyRep& x, const CIMPropertyRep& y) {
    return &x == &y || (x.value == y.value && identicalDecls(x.decl(), y.decl()));
}

// The property's representation, once the value is found fit for it.
CIMPropertyRep& assignableRep(const std::shared_ptr<CIMPropertyRep>& handle,
                              const CIMValue& value) {
    CIMPropertyRep& rep = checkedRep(handle);
    if (!value.typeCompatible(rep.value))
        throw TypeMismatchException();
    const Uint32 arraySize = rep.decl().arraySize;
    if (arraySize != 0 && arraySize != value.getArraySize())
        throw TypeMismatchException();
    checkNotReferenceArray(value);
    return rep;
}

std::shared_ptr<CIMPropertyRep> cloneOf(const std::shared_ptr<CIMPropertyRep>& rep) {
    return std::make_shared<CIMPropertyRep>(checkedRep(rep));
}

} // namespace

CIMPropertyDecl::CIMPropertyDecl(const CIMName& name_, Uint32 arraySize_,
                                 const CIMName& referenceClassName_, const CIMName& classOrigin_,
                                 Boolean propagated_)
    : name(name_), arraySize(arraySize_), referenceClassName(referenceClassName_),
      classOrigin(classOrigin_), propagated(propagated_) {}

// The copy's qualifiers are its own, so nothing outside can reach them yet.
CIMPropertyDecl::CIMPropertyDecl(const CIMPropertyDecl& other)
    : name(other.name), arraySize(other.arraySize), referenceClassName(other.referenceClassName),
      classOrigin(other.classOrigin), propagated(other.propagated), qualifiers(other.qualifiers) {}

bool CIMPropertyDecl::shareable() const {
    if (!_lent.load(std::memory_order_relaxed))
        return true;
    // Handles lent earlier may all be gone: then the scan need not be repeated.
    if (!qualifiers.shareable())
        return false;
    _lent.store(false, std::memory_order_relaxed);
    return true;
}

CIMPropertyRep::CIMPropertyRep(const CIMName& name_, const CIMValue& value_, Uint32 arraySize_,
                               const CIMName& referenceClassName_, const CIMName& classOrigin_,
                               Boolean propagated_)
    : value(value_), _decl(nullptr) {
    checkedName(name_);
    checkArraySize(value, arraySize_);
    checkNotReferenceArray(value);
    checkReferenceClass(value, referenceClassName_);
    _decl = new CIMPropertyDecl(name_, arraySize_, referenceClassName_, classOrigin_, propagated_);
}

CIMPropertyRep::CIMPropertyRep(const CIMPropertyRep& other)
    : value(other.value),
      _decl(other._decl->shareable() ? other._decl->share() : new CIMPropertyDecl(*other._decl)) {}

CIMPropertyRep::CIMPropertyRep(const CIMPropertyRep& other, CIMBorrowing)
    : value(other.value), _borrowed(other._decl->shareable()), _decl(other._decl) {
    if (!_borrowed)
        _decl = new CIMPropertyDecl(*other._decl);
}

CIMPropertyDecl& CIMPropertyRep::ownDecl() {
    if (_borrowed || _decl->sharedByOthers()) {
        CIMPropertyDecl* own = new CIMPropertyDecl(*_decl);
        if (!_borrowed)
            CIMPropertyDecl::release(_decl);
        _decl = own;
        _borrowed = false;
    }
    return *_decl;
}

CIMMemberList<CIMQualifier>& CIMPropertyRep::lendQualifiers() {
    CIMPropertyDecl& own = ownDecl();
    own.lendQualifiers();
    return own.qualifiers;
}

bool isKeyProperty(const CIMConstProperty& property) {
    static const CIMName key("Key");
    Uint32 index = property.findQualifier(key);
    if (index == PEG_NOT_FOUND)
        return false;
    const CIMValue& value = property.getQualifier(index).getValue();
    Boolean isKey = false;
    if (!value.isArray() && value.getType() == CIMTYPE_BOOLEAN)
        value.get(isKey);
    return isKey;
}

CIMProperty::CIMProperty() = default;

CIMProperty::CIMProperty(const CIMProperty& x) = default;

CIMProperty::CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                         const CIMName& referenceClassName, const CIMName& classOrigin,
                         Boolean propagated)
    : _rep(std::make_shared<CIMPropertyRep>(name, value, arraySize, referenceClassName, classOrigin,
                                            propagated)) {}

CIMProperty::CIMProperty(std::shared_ptr<CIMPropertyRep> rep) : _rep(std::move(rep)) {}

CIMProperty::~CIMProperty() = default;

CIMProperty& CIMProperty::operator=(const CIMProperty& x) = default;

const CIMName& CIMProperty::getName() const {
    return checkedRep(_rep).decl().name;
}

void CIMProperty::setName(const CIMName& name) {
    CIMPropertyRep& rep = checkedRep(_rep);
    checkRenameAllowed(rep.owners, rep.decl().name, checkedName(name), "property");
    rep.ownDecl().name = name;
}

const CIMValue& CIMProperty::getValue() const {
    return checkedRep(_rep).value;
}

CIMType CIMProperty::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMProperty::isArray() const {
    return checkedRep(_rep).value.isArray();
}

void CIMProperty::setValue(const CIMValue& value) {
    assignableRep(_rep, value).value = value;
}

void CIMProperty::setValue(CIMValue&& value) {
    assignableRep(_rep, value).value = std::move(value);
}

Uint32 CIMProperty::getArraySize() const {
    return checkedRep(_rep).decl().arraySize;
}

const CIMName& CIMProperty::getReferenceClassName() const {
    return checkedRep(_rep).decl().referenceClassName;
}

const CIMName& CIMProperty::getClassOrigin() const {
    return checkedRep(_rep).decl().classOrigin;
}

void CIMProperty::setClassOrigin(const CIMName& classOrigin) {
    checkedRep(_rep).ownDecl().classOrigin = classOrigin;
}

Boolean CIMProperty::getPropagated() const {
    return checkedRep(_rep).decl().propagated;
}

void CIMProperty::setPropagated(Boolean propagated) {
    checkedRep(_rep).ownDecl().propagated = propagated;
}

CIMProperty& CIMProperty::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep).lendQualifiers().add(x);
    return *this;
}

Uint32 CIMProperty::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).decl().qualifiers.find(name);
}

CIMQualifier CIMProperty::getQualifier(Uint32 index) {
    return checkedRep(_rep).lendQualifiers().at(index);
}

CIMConstQualifier CIMProperty::getQualifier(Uint32 index) const {
    return constRep(_rep).decl().qualifiers.at(index);
}

void CIMProperty::removeQualifier(Uint32 index) {
    checkedRep(_rep).ownDecl().qualifiers.remove(index);
}

Uint32 CIMProperty::getQualifierCount() const {
    return checkedRep(_rep).decl().qualifiers.size();
}

Boolean CIMProperty::identical(const CIMConstProperty& x) const {
    return identicalProperties(checkedRep(_rep), checkedRep(x._rep));
}

CIMProperty CIMProperty::clone() const {
    return CIMProperty(cloneOf(_rep));
}

Boolean CIMProperty::isUninitialized() const {
    return !_rep;
}

CIMConstProperty::CIMConstProperty() = default;

CIMConstProperty::CIMConstProperty(const CIMConstProperty& x) = default;

CIMConstProperty::CIMConstProperty(const CIMProperty& x) : _rep(x._rep) {}

CIMConstProperty::CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                                   const CIMName& referenceClassName, const CIMName& classOrigin,
                                   Boolean propagated)
    : _rep(std::make_shared<CIMPropertyRep>(name, value, arraySize, referenceClassName, classOrigin,
                                            propagated)) {}

CIMConstProperty::~CIMConstProperty() = default;

CIMConstProperty& CIMConstProperty::operator=(const CIMConstProperty& x) = default;

CIMConstProperty& CIMConstProperty::operator=(const CIMProperty& x) {
    _rep = x._rep;
    return *this;
}

const CIMName& CIMConstProperty::getName() const {
    return checkedRep(_rep).decl().name;
}

const CIMValue& CIMConstProperty::getValue() const {
    return checkedRep(_rep).value;
}

CIMType CIMConstProperty::getType() const {
    return checkedRep(_rep).value.getType();
}

Boolean CIMConstProperty::isArray() const {
    return checkedRep(_rep).value.isArray();
}

Uint32 CIMConstProperty::getArraySize() const {
    return checkedRep(_rep).decl().arraySize;
}

const CIMName& CIMConstProperty::getReferenceClassName() const {
    return checkedRep(_rep).decl().referenceClassName;
}

const CIMName& CIMConstProperty::getClassOrigin() const {
    return checkedRep(_rep).decl().classOrigin;
}

Boolean CIMConstProperty::getPropagated() const {
    return checkedRep(_rep).decl().propagated;
}

Uint32 CIMConstProperty::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).decl().qualifiers.find(name);
}

CIMConstQualifier CIMConstProperty::getQualifier(Uint32 index) const {
    return constRep(_rep).decl().qualifiers.at(index);
}

Uint32 CIMConstProperty::getQualifierCount() const {
    return checkedRep(_rep).decl().qualifiers.size();
}

Boolean CIMConstProperty::identical(const CIMConstProperty& x) const {
    return identicalProperties(checkedRep(_rep), checkedRep(x._rep));
}

CIMProperty CIMConstProperty::clone() const {
    return CIMProperty(cloneOf(_rep));
}

Boolean CIMConstProperty::isUninitialized() const {
    return !_rep;
}

PEGASUS_NAMESPACE_END
