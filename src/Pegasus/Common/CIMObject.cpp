#include "CIMObject.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

CIMObjectRep::CIMObjectRep(Kind kind_, const CIMName& className, const CIMName& superClassName_)
    : kind(kind_), path(String(), CIMNamespaceName(), checkedName(className)),
      superClassName(superClassName_) {}

void CIMObjectRep::setPath(const CIMObjectPath& newPath) {
    checkedName(newPath.getClassName());
    // The path may change, the class of the object may not.
    if (!path.getClassName().equal(newPath.getClassName()))
        throw TypeMismatchException();
    path = newPath;
}

void CIMObjectRep::addProperty(const CIMProperty& property) {
    // A class must tell which class its reference properties refer to.
    if (isClass() && !property.isUninitialized() && property.getType() == CIMTYPE_REFERENCE &&
        property.getReferenceClassName().isNull()) {
        throw TypeMismatchException();
    }
    properties.add(property);
}

namespace {

// Methods of two classes match only with the same origin and propagation.
bool sameMethods(const CIMMemberList<CIMMethod>& x, const CIMMemberList<CIMMethod>& y) {
    if (!x.identical(y))
        return false;
    for (Uint32 i = 0; i < x.size(); i++) {
        if (!x.at(i).getClassOrigin().equal(y.at(i).getClassOrigin()) ||
            x.at(i).getPropagated() != y.at(i).getPropagated()) {
            return false;
        }
    }
    return true;
}

} // namespace

bool CIMObjectRep::identical(const CIMObjectRep& other) const {
    if (this == &other)
        return true;
    if (!path.identical(other.path) || !qualifiers.identical(other.qualifiers) ||
        !properties.identical(other.properties)) {
        return false;
    }
    if (!isClass())
        return true;
    return other.isClass() && superClassName.equal(other.superClassName) &&
           sameMethods(methods, other.methods);
}

void CIMObjectRep::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                  const CIMPropertyList& propertyList) {
    if (!includeQualifiers)
        qualifiers.clear();
    Uint32 i = 0;
    const CIMMemberList<CIMProperty>& unchanged = properties;
    while (i < properties.size()) {
        const CIMProperty& shown = unchanged.at(i);
        if (!propertyList.useThisProperty(shown.getName())) {
            properties.remove(i);
            continue;
        }
        // A property shared with other objects is cloned only when it has something to drop.
        const bool dropOrigin = !includeClassOrigin && !shown.getClassOrigin().isNull();
        const bool dropQualifiers = !includeQualifiers && shown.getQualifierCount() != 0;
        if (dropOrigin || dropQualifiers) {
            CIMPropertyDecl& decl = properties.repAt(i).ownDecl();
            if (dropOrigin)
                decl.classOrigin = CIMName();
            if (dropQualifiers)
                decl.qualifiers.clear();
        }
        i++;
    }
}

bool CIMObjectRep::isTrueQualifier(const CIMName& name) const {
    Uint32 index = qualifiers.find(name);
    if (index == PEG_NOT_FOUND)
        return false;
    const CIMValue& value = qualifiers.at(index).getValue();
    Boolean flag = false;
    if (!value.isArray() && value.getType() == CIMTYPE_BOOLEAN)
        value.get(flag);
    return flag;
}

CIMObject::CIMObject() = default;

CIMObject::CIMObject(const CIMObject& x) = default;

CIMObject::CIMObject(const CIMClass& x) : _rep(x._rep) {}

CIMObject::CIMObject(const CIMInstance& x) : _rep(x._rep) {}

CIMObject::CIMObject(std::shared_ptr<CIMObjectRep> rep) : _rep(std::move(rep)) {}

CIMObject& CIMObject::operator=(const CIMObject& x) = default;

CIMObject::~CIMObject() = default;

const CIMName& CIMObject::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMObject::getPath() const {
    return checkedRep(_rep).path;
}

void CIMObject::setPath(const CIMObjectPath& path) {
    checkedRep(_rep).setPath(path);
}

CIMObject& CIMObject::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMObject::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMQualifier CIMObject::getQualifier(Uint32 index) {
    return checkedRep(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMObject::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

void CIMObject::removeQualifier(Uint32 index) {
    checkedRep(_rep).qualifiers.remove(index);
}

Uint32 CIMObject::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

CIMObject& CIMObject::addProperty(const CIMProperty& x) {
    checkedRep(_rep).addProperty(x);
    return *this;
}

Uint32 CIMObject::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMProperty CIMObject::getProperty(Uint32 index) {
    return checkedRep(_rep).properties.at(index);
}

CIMConstProperty CIMObject::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

void CIMObject::removeProperty(Uint32 index) {
    checkedRep(_rep).properties.remove(index);
}

Uint32 CIMObject::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

CIMObject CIMObject::clone() const {
    return CIMObject(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMObject::identical(const CIMConstObject& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMObject::isUninitialized() const {
    return !_rep;
}

String CIMObject::toString() const {
    return checkedRep(_rep).toXml();
}

Boolean CIMObject::isClass() const {
    return _rep && _rep->isClass();
}

Boolean CIMObject::isInstance() const {
    return _rep && !_rep->isClass();
}

void CIMObject::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    checkedRep(_rep).instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
}

CIMConstObject::CIMConstObject() = default;

CIMConstObject::CIMConstObject(const CIMConstObject& x) = default;

CIMConstObject::CIMConstObject(const CIMObject& x) : _rep(x._rep) {}

CIMConstObject::CIMConstObject(const CIMClass& x) : _rep(x._rep) {}

CIMConstObject::CIMConstObject(const CIMInstance& x) : _rep(x._rep) {}

CIMConstObject::CIMConstObject(const CIMConstClass& x) : _rep(x._rep) {}

CIMConstObject::CIMConstObject(const CIMConstInstance& x) : _rep(x._rep) {}

CIMConstObject& CIMConstObject::operator=(const CIMConstObject& x) = default;

CIMConstObject::~CIMConstObject() = default;

const CIMName& CIMConstObject::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMConstObject::getPath() const {
    return checkedRep(_rep).path;
}

Uint32 CIMConstObject::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstObject::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMConstObject::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Uint32 CIMConstObject::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMConstProperty CIMConstObject::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

Uint32 CIMConstObject::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

CIMObject CIMConstObject::clone() const {
    return CIMObject(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMConstObject::identical(const CIMConstObject& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMConstObject::isUninitialized() const {
    return !_rep;
}

String CIMConstObject::toString() const {
    return checkedRep(_rep).toXml();
}

Boolean CIMConstObject::isClass() const {
    return _rep && _rep->isClass();
}

Boolean CIMConstObject::isInstance() const {
    return _rep && !_rep->isClass();
}

PEGASUS_NAMESPACE_END
