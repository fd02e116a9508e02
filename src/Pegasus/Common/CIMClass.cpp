#include "CIMClass.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

std::shared_ptr<CIMObjectRep> newClassRep(const CIMName& className, const CIMName& superClassName) {
    return std::make_shared<CIMObjectRep>(CIMObjectRep::Kind::Class, className, superClassName);
}

const std::shared_ptr<CIMObjectRep>& classRepOf(const std::shared_ptr<CIMObjectRep>& rep) {
    if (!rep || !rep->isClass())
        throw DynamicCastFailedException();
    return rep;
}

const CIMName& associationQualifier() {
    static const CIMName name("Association");
    return name;
}

const CIMName& abstractQualifier() {
    static const CIMName name("Abstract");
    return name;
}

void collectKeyNames(const CIMObjectRep& rep, Array<CIMName>& keyNames) {
    keyNames.clear();
    for (Uint32 i = 0; i < rep.properties.size(); i++) {
        const CIMProperty& property = rep.properties.at(i);
        if (isKeyProperty(property))
            keyNames.append(property.getName());
    }
}

bool anyKey(const CIMObjectRep& rep) {
    for (Uint32 i = 0; i < rep.properties.size(); i++) {
        if (isKeyProperty(rep.properties.at(i)))
            return true;
    }
    return false;
}

// The instance's copy of a class property: qualifiers come along only when
// asked for, and so does the class origin.
CIMProperty instanceProperty(const CIMProperty& classProperty, Boolean includeQualifiers,
                             Boolean includeClassOrigin) {
    CIMProperty property =
        includeQualifiers
            ? classProperty.clone()
            : CIMProperty(classProperty.getName(), classProperty.getValue(),
                          classProperty.getArraySize(), classProperty.getReferenceClassName(),
                          classProperty.getClassOrigin(), classProperty.getPropagated());
    if (!includeClassOrigin)
        property.setClassOrigin(CIMName());
    return property;
}

} // namespace

CIMClass::CIMClass() = default;

CIMClass::CIMClass(const CIMClass& x) = default;

CIMClass::CIMClass(const CIMObject& x) : _rep(classRepOf(x._rep)) {}

CIMClass::CIMClass(const CIMName& className, const CIMName& superClassName)
    : _rep(newClassRep(className, superClassName)) {}

CIMClass::CIMClass(std::shared_ptr<CIMObjectRep> rep) : _rep(std::move(rep)) {}

CIMClass& CIMClass::operator=(const CIMClass& x) = default;

CIMClass::~CIMClass() = default;

Boolean CIMClass::isAssociation() const {
    return checkedRep(_rep).isTrueQualifier(associationQualifier());
}

Boolean CIMClass::isAbstract() const {
    return checkedRep(_rep).isTrueQualifier(abstractQualifier());
}

const CIMName& CIMClass::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMClass::getPath() const {
    return checkedRep(_rep).path;
}

void CIMClass::setPath(const CIMObjectPath& path) {
    checkedRep(_rep).setPath(path);
}

const CIMName& CIMClass::getSuperClassName() const {
    return checkedRep(_rep).superClassName;
}

void CIMClass::setSuperClassName(const CIMName& superClassName) {
    checkedRep(_rep).superClassName = superClassName;
}

CIMClass& CIMClass::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMClass::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMQualifier CIMClass::getQualifier(Uint32 index) {
    return checkedRep(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMClass::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

void CIMClass::removeQualifier(Uint32 index) {
    checkedRep(_rep).qualifiers.remove(index);
}

Uint32 CIMClass::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

CIMClass& CIMClass::addProperty(const CIMProperty& x) {
    checkedRep(_rep).addProperty(x);
    return *this;
}

Uint32 CIMClass::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMProperty CIMClass::getProperty(Uint32 index) {
    return checkedRep(_rep).properties.at(index);
}

CIMConstProperty CIMClass::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

void CIMClass::removeProperty(Uint32 index) {
    checkedRep(_rep).properties.remove(index);
}

Uint32 CIMClass::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

CIMClass& CIMClass::addMethod(const CIMMethod& x) {
    checkedRep(_rep).methods.add(x);
    return *this;
}

Uint32 CIMClass::findMethod(const CIMName& name) const {
    return checkedRep(_rep).methods.find(name);
}

CIMMethod CIMClass::getMethod(Uint32 index) {
    return checkedRep(_rep).methods.at(index);
}

CIMConstMethod CIMClass::getMethod(Uint32 index) const {
    return constRep(_rep).methods.at(index);
}

void CIMClass::removeMethod(Uint32 index) {
    checkedRep(_rep).methods.remove(index);
}

Uint32 CIMClass::getMethodCount() const {
    return checkedRep(_rep).methods.size();
}

void CIMClass::getKeyNames(Array<CIMName>& keyNames) const {
    collectKeyNames(checkedRep(_rep), keyNames);
}

Boolean CIMClass::hasKeys() const {
    return anyKey(checkedRep(_rep));
}

CIMClass CIMClass::clone() const {
    return CIMClass(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMClass::identical(const CIMConstClass& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMClass::isUninitialized() const {
    return !_rep;
}

CIMInstance CIMClass::buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList) const {
    const CIMObjectRep& rep = checkedRep(_rep);
    CIMInstance instance(rep.path.getClassName());
    CIMObjectRep& instanceRep = *instance._rep;
    if (includeQualifiers)
        instanceRep.qualifiers.appendAllOf(rep.qualifiers);
    // Whole copies of the class properties are shared with the class until either changes.
    if (includeQualifiers && includeClassOrigin && propertyList.isNull()) {
        instanceRep.properties.appendAllOf(rep.properties);
        return instance;
    }
    for (Uint32 i = 0; i < rep.properties.size(); i++) {
        const CIMProperty& classProperty = rep.properties.at(i);
        if (!propertyList.useThisProperty(classProperty.getName()))
            continue;
        if (includeQualifiers && includeClassOrigin)
            instanceRep.properties.appendCopyOf(classProperty);
        else
            instanceRep.properties.add(
                instanceProperty(classProperty, includeQualifiers, includeClassOrigin));
    }
    return instance;
}

CIMConstClass::CIMConstClass() = default;

CIMConstClass::CIMConstClass(const CIMConstClass& x) = default;

CIMConstClass::CIMConstClass(const CIMClass& x) : _rep(x._rep) {}

CIMConstClass::CIMConstClass(const CIMObject& x) : _rep(classRepOf(x._rep)) {}

CIMConstClass::CIMConstClass(const CIMConstObject& x) : _rep(classRepOf(x._rep)) {}

CIMConstClass::CIMConstClass(const CIMName& className, const CIMName& superClassName)
    : _rep(newClassRep(className, superClassName)) {}

CIMConstClass& CIMConstClass::operator=(const CIMConstClass& x) = default;

CIMConstClass& CIMConstClass::operator=(const CIMClass& x) {
    _rep = x._rep;
    return *this;
}

CIMConstClass::~CIMConstClass() = default;

Boolean CIMConstClass::isAssociation() const {
    return checkedRep(_rep).isTrueQualifier(associationQualifier());
}

Boolean CIMConstClass::isAbstract() const {
    return checkedRep(_rep).isTrueQualifier(abstractQualifier());
}

const CIMName& CIMConstClass::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMConstClass::getPath() const {
    return checkedRep(_rep).path;
}

const CIMName& CIMConstClass::getSuperClassName() const {
    return checkedRep(_rep).superClassName;
}

Uint32 CIMConstClass::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstClass::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMConstClass::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Uint32 CIMConstClass::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMConstProperty CIMConstClass::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

Uint32 CIMConstClass::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

Uint32 CIMConstClass::findMethod(const CIMName& name) const {
    return checkedRep(_rep).methods.find(name);
}

CIMConstMethod CIMConstClass::getMethod(Uint32 index) const {
    return constRep(_rep).methods.at(index);
}

Uint32 CIMConstClass::getMethodCount() const {
    return checkedRep(_rep).methods.size();
}

void CIMConstClass::getKeyNames(Array<CIMName>& keyNames) const {
    collectKeyNames(checkedRep(_rep), keyNames);
}

Boolean CIMConstClass::hasKeys() const {
    return anyKey(checkedRep(_rep));
}

CIMClass CIMConstClass::clone() const {
    return CIMClass(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMConstClass::identical(const CIMConstClass& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMConstClass::isUninitialized() const {
    return !_rep;
}

PEGASUS_NAMESPACE_END
