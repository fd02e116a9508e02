#include "CIMInstance.h"

#include "CIMClass.h"
#include "CIMElementRep.h"
#include "CIMPropertyReader.h"
#include "InternalException.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

std::shared_ptr<CIMObjectRep> newInstanceRep(const CIMName& className) {
    return std::make_shared<CIMObjectRep>(CIMObjectRep::Kind::Instance, className, CIMName());
}

const std::shared_ptr<CIMObjectRep>& instanceRepOf(const std::shared_ptr<CIMObjectRep>& rep) {
    if (!rep || rep->isClass())
        throw DynamicCastFailedException();
    return rep;
}

CIMObjectPath pathFromKeys(const CIMObjectRep& rep, const CIMConstClass& cimClass) {
    Array<CIMName> keyNames;
    cimClass.getKeyNames(keyNames);
    Array<CIMKeyBinding> keyBindings;
    for (Uint32 i = 0; i < keyNames.size(); i++) {
        Uint32 index = rep.properties.find(keyNames[i]);
        if (index == PEG_NOT_FOUND)
            throw NoSuchProperty(keyNames[i].getString());
        keyBindings.append(CIMKeyBinding(keyNames[i], rep.properties.at(index).getValue()));
    }
    return CIMObjectPath(String(), CIMNamespaceName(), rep.path.getClassName(), keyBindings);
}

} // namespace

CIMInstance::CIMInstance() = default;

CIMInstance::CIMInstance(const CIMInstance& x) = default;

CIMInstance::CIMInstance(const CIMObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMInstance::CIMInstance(const CIMName& className) : _rep(newInstanceRep(className)) {}

CIMInstance::CIMInstance(std::shared_ptr<CIMObjectRep> rep) : _rep(std::move(rep)) {}

CIMInstance& CIMInstance::operator=(const CIMInstance& x) = default;

CIMInstance::~CIMInstance() = default;

const CIMName& CIMInstance::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMInstance::getPath() const {
    return checkedRep(_rep).path;
}

void CIMInstance::setPath(const CIMObjectPath& path) {
    checkedRep(_rep).setPath(path);
}

CIMInstance& CIMInstance::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMInstance::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMQualifier CIMInstance::getQualifier(Uint32 index) {
    return checkedRep(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMInstance::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

void CIMInstance::removeQualifier(Uint32 index) {
    checkedRep(_rep).qualifiers.remove(index);
}

Uint32 CIMInstance::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

CIMInstance& CIMInstance::addProperty(const CIMProperty& x) {
    checkedRep(_rep).addProperty(x);
    return *this;
}

Uint32 CIMInstance::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMProperty CIMInstance::getProperty(Uint32 index) {
    return checkedRep(_rep).properties.at(index);
}

CIMConstProperty CIMInstance::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

void CIMInstance::removeProperty(Uint32 index) {
    checkedRep(_rep).properties.remove(index);
}

Uint32 CIMInstance::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

CIMObjectPath CIMInstance::buildPath(const CIMConstClass& cimClass) const {
    return pathFromKeys(checkedRep(_rep), cimClass);
}

CIMInstance CIMInstance::clone() const {
    return CIMInstance(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMInstance::identical(const CIMConstInstance& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMInstance::isUninitialized() const {
    return !_rep;
}

void CIMInstance::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) {
    checkedRep(_rep).instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
}

CIMConstInstance::CIMConstInstance() = default;

CIMConstInstance::CIMConstInstance(const CIMConstInstance& x) = default;

CIMConstInstance::CIMConstInstance(const CIMInstance& x) : _rep(x._rep) {}

CIMConstInstance::CIMConstInstance(const CIMObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMConstInstance::CIMConstInstance(const CIMConstObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMConstInstance::CIMConstInstance(const CIMName& className) : _rep(newInstanceRep(className)) {}

CIMConstInstance& CIMConstInstance::operator=(const CIMConstInstance& x) = default;

CIMConstInstance& CIMConstInstance::operator=(const CIMInstance& x) {
    _rep = x._rep;
    return *this;
}

CIMConstInstance::~CIMConstInstance() = default;

const CIMName& CIMConstInstance::getClassName() const {
    return checkedRep(_rep).path.getClassName();
}

const CIMObjectPath& CIMConstInstance::getPath() const {
    return checkedRep(_rep).path;
}

Uint32 CIMConstInstance::findQualifier(const CIMName& name) const {
    return checkedRep(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstInstance::getQualifier(Uint32 index) const {
    return constRep(_rep).qualifiers.at(index);
}

Uint32 CIMConstInstance::getQualifierCount() const {
    return checkedRep(_rep).qualifiers.size();
}

Uint32 CIMConstInstance::findProperty(const CIMName& name) const {
    return checkedRep(_rep).properties.find(name);
}

CIMConstProperty CIMConstInstance::getProperty(Uint32 index) const {
    return constRep(_rep).properties.at(index);
}

Uint32 CIMConstInstance::getPropertyCount() const {
    return checkedRep(_rep).properties.size();
}

void CIMPropertyReader::readAll(const CIMConstInstance& instance, std::vector<Read>& read) {
    read.clear();
    const CIMMemberList<CIMProperty>& properties = constRep(instance._rep).properties;
    read.reserve(properties.size());
    // A borrowed declaration is kept by the sequence it is borrowed from, which sharedKeeper()
    // holds only when the instance's properties are made over it.
    const bool kept = properties.overSharedSequence();
    properties.visitAll([&read, kept](const CIMProperty& property, bool unchanged) {
        const void* declaration = kept && !unchanged ? property._rep->borrowedDecl() : nullptr;
        read.push_back(Read{&property, unchanged, declaration});
    });
}

std::shared_ptr<const void> CIMPropertyReader::sharedKeeper(const CIMConstInstance& instance) {
    return constRep(instance._rep).properties.sharedKeeper();
}

CIMObjectPath CIMConstInstance::buildPath(const CIMConstClass& cimClass) const {
    return pathFromKeys(checkedRep(_rep), cimClass);
}

CIMInstance CIMConstInstance::clone() const {
    return CIMInstance(std::make_shared<CIMObjectRep>(checkedRep(_rep)));
}

Boolean CIMConstInstance::identical(const CIMConstInstance& x) const {
    return checkedRep(_rep).identical(checkedRep(x._rep));
}

Boolean CIMConstInstance::isUninitialized() const {
    return !_rep;
}

PEGASUS_NAMESPACE_END
