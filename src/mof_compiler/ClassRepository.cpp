#include "mof_compiler/ClassRepository.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/Exception.h>

#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

using namespace Pegasus;

namespace {

template <typename Element>
void removeQualifiersIf(Element& element, bool (*condition)(const CIMConstQualifier&)) {
    for (Uint32 i = element.getQualifierCount(); i-- > 0;) {
        if (condition(element.getQualifier(i)))
            element.removeQualifier(i);
    }
}

bool always(const CIMConstQualifier&) {
    return true;
}
bool isPropagated(const CIMConstQualifier& qualifier) {
    return qualifier.getPropagated() != 0;
}

void removeQualifiersOfParameters(CIMMethod& method, bool (*condition)(const CIMConstQualifier&)) {
    for (Uint32 i = 0; i < method.getParameterCount(); ++i) {
        CIMParameter parameter = method.getParameter(i);
        removeQualifiersIf(parameter, condition);
    }
}

// Removes everything the class inherits: propagated properties and methods,
// and propagated qualifiers on what remains.
void keepLocalElements(CIMClass& cimClass) {
    removeQualifiersIf(cimClass, isPropagated);
    for (Uint32 i = cimClass.getPropertyCount(); i-- > 0;) {
        CIMProperty property = cimClass.getProperty(i);
        if (property.getPropagated())
            cimClass.removeProperty(i);
        else
            removeQualifiersIf(property, isPropagated);
    }
    for (Uint32 i = cimClass.getMethodCount(); i-- > 0;) {
        CIMMethod method = cimClass.getMethod(i);
        if (method.getPropagated()) {
            cimClass.removeMethod(i);
        } else {
            removeQualifiersIf(method, isPropagated);
            removeQualifiersOfParameters(method, isPropagated);
        }
    }
}

void removeAllQualifiers(CIMClass& cimClass) {
    removeQualifiersIf(cimClass, always);
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        CIMProperty property = cimClass.getProperty(i);
        removeQualifiersIf(property, always);
    }
    for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i) {
        CIMMethod method = cimClass.getMethod(i);
        removeQualifiersIf(method, always);
        removeQualifiersOfParameters(method, always);
    }
}

void clearClassOrigins(CIMClass& cimClass) {
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i)
        cimClass.getProperty(i).setClassOrigin(CIMName());
    for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i)
        cimClass.getMethod(i).setClassOrigin(CIMName());
}

void keepListedProperties(CIMClass& cimClass, const CIMPropertyList& propertyList) {
    for (Uint32 i = cimClass.getPropertyCount(); i-- > 0;) {
        if (!propertyList.contains(cimClass.getProperty(i).getName()))
            cimClass.removeProperty(i);
    }
}

CIMClass filteredClass(const CIMClass& stored, bool localOnly, bool includeQualifiers,
                       bool includeClassOrigin, const CIMPropertyList& propertyList) {
    CIMClass result = stored.clone();
    if (localOnly)
        keepLocalElements(result);
    if (!propertyList.isNull())
        keepListedProperties(result, propertyList);
    if (!includeQualifiers)
        removeAllQualifiers(result);
    if (!includeClassOrigin)
        clearClassOrigins(result);
    return result;
}

void collectSubclasses(const NamespaceStore& store, const std::string& key, bool deep,
                       Array<CIMName>& names) {
    auto found = store.subclasses.find(key);
    if (found == store.subclasses.end())
        return;
    for (const std::string& subclass : found->second) {
        names.append(store.classes.at(subclass).definition.getClassName());
        if (deep)
            collectSubclasses(store, subclass, deep, names);
    }
}

// The instance's path as the repository compares it: no host, the store's
// namespace.
CIMObjectPath comparablePath(const CIMObjectPath& path, const NamespaceStore& store) {
    CIMObjectPath result = path;
    result.setHost(String());
    result.setNameSpace(store.name);
    return result;
}

} // namespace

ClassRepository::ClassRepository()
    : _namespaces(std::make_shared<const std::map<std::string, NamespaceStore>>()) {}

ClassRepository::ClassRepository(std::map<std::string, NamespaceStore> namespaces)
    : _namespaces(
          std::make_shared<const std::map<std::string, NamespaceStore>>(std::move(namespaces))) {}

ClassRepository::~ClassRepository() = default;

const NamespaceStore& ClassRepository::store(const CIMNamespaceName& nameSpace) const {
    auto found = _namespaces->find(foldName(nameSpace));
    if (found == _namespaces->end())
        throw CIMException(CIM_ERR_INVALID_NAMESPACE, nameSpace.getString());
    return found->second;
}

const CIMClass& ClassRepository::storedClass(const NamespaceStore& store,
                                             const CIMName& className) const {
    const CIMClass* found = store.findClass(utf8(className.getString()));
    if (found == nullptr)
        throw CIMException(CIM_ERR_NOT_FOUND, className.getString());
    return *found;
}

Array<CIMNamespaceName> ClassRepository::enumerateNameSpaces() const {
    Array<CIMNamespaceName> names;
    for (const auto& entry : *_namespaces)
        names.append(entry.second.name);
    return names;
}

bool ClassRepository::nameSpaceExists(const CIMNamespaceName& nameSpace) const {
    return _namespaces->count(foldName(nameSpace)) != 0;
}

std::vector<NamespaceSummary> ClassRepository::summary() const {
    std::vector<NamespaceSummary> result;
    for (const auto& [key, store] : *_namespaces) {
        result.push_back(NamespaceSummary{store.name, Uint32(store.qualifiers.size()),
                                          Uint32(store.classes.size()),
                                          Uint32(store.instances.size())});
    }
    return result;
}

CIMClass ClassRepository::getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                                   bool localOnly, bool includeQualifiers, bool includeClassOrigin,
                                   const CIMPropertyList& propertyList) const {
    return filteredClass(storedClass(store(nameSpace), className), localOnly, includeQualifiers,
                         includeClassOrigin, propertyList);
}

Array<CIMName> ClassRepository::enumerateClassNames(const CIMNamespaceName& nameSpace,
                                                    const CIMName& className,
                                                    bool deepInheritance) const {
    const NamespaceStore& found = store(nameSpace);
    Array<CIMName> names;
    if (className.isNull()) {
        for (const std::string& key : found.classOrder) {
            const CIMClass& cimClass = found.classes.at(key).definition;
            if (deepInheritance || cimClass.getSuperClassName().isNull())
                names.append(cimClass.getClassName());
        }
        return names;
    }
    if (found.findClass(utf8(className.getString())) == nullptr)
        throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
    collectSubclasses(found, foldName(className), deepInheritance, names);
    return names;
}

Array<CIMClass> ClassRepository::enumerateClasses(const CIMNamespaceName& nameSpace,
                                                  const CIMName& className, bool deepInheritance,
                                                  bool localOnly, bool includeQualifiers,
                                                  bool includeClassOrigin) const {
    Array<CIMName> names = enumerateClassNames(nameSpace, className, deepInheritance);
    Array<CIMClass> classes;
    for (Uint32 i = 0; i < names.size(); ++i)
        classes.append(
            getClass(nameSpace, names[i], localOnly, includeQualifiers, includeClassOrigin));
    return classes;
}

bool ClassRepository::isSubclassOf(const CIMNamespaceName& nameSpace, const CIMName& className,
                                   const CIMName& ancestor) const {
    auto found = _namespaces->find(foldName(nameSpace));
    if (found == _namespaces->end())
        return false;
    const NamespaceStore& classes = found->second;
    for (const CIMClass* current = classes.findClass(utf8(className.getString()));
         current != nullptr;) {
        if (current->getClassName() == ancestor)
            return true;
        const CIMName& superClass = current->getSuperClassName();
        current = superClass.isNull() ? nullptr : classes.findClass(utf8(superClass.getString()));
    }
    return false;
}

CIMQualifierDecl ClassRepository::getQualifier(const CIMNamespaceName& nameSpace,
                                               const CIMName& qualifierName) const {
    const CIMQualifierDecl* found = store(nameSpace).findQualifier(utf8(qualifierName.getString()));
    if (found == nullptr)
        throw CIMException(CIM_ERR_NOT_FOUND, qualifierName.getString());
    return found->clone();
}

Array<CIMQualifierDecl>
ClassRepository::enumerateQualifiers(const CIMNamespaceName& nameSpace) const {
    Array<CIMQualifierDecl> declarations;
    for (const auto& entry : store(nameSpace).qualifiers)
        declarations.append(entry.second.definition.clone());
    return declarations;
}

Array<CIMInstance> ClassRepository::enumerateInstances(const CIMNamespaceName& nameSpace,
                                                       const CIMName& className) const {
    const NamespaceStore& found = store(nameSpace);
    if (found.findClass(utf8(className.getString())) == nullptr)
        throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
    Array<CIMInstance> instances;
    for (const auto& instance : found.instances) {
        if (isSubclassOf(nameSpace, instance.definition.getClassName(), className))
            instances.append(instance.definition.clone());
    }
    return instances;
}

Array<CIMObjectPath> ClassRepository::enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                             const CIMName& className) const {
    Array<CIMInstance> instances = enumerateInstances(nameSpace, className);
    Array<CIMObjectPath> names;
    for (Uint32 i = 0; i < instances.size(); ++i)
        names.append(instances[i].getPath());
    return names;
}

CIMInstance ClassRepository::getInstance(const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& instanceName) const {
    const NamespaceStore& found = store(nameSpace);
    CIMObjectPath wanted = comparablePath(instanceName, found);
    for (const auto& instance : found.instances) {
        if (instance.definition.getPath().identical(wanted))
            return instance.definition.clone();
    }
    throw CIMException(CIM_ERR_NOT_FOUND, instanceName.toString());
}

} // namespace ksv::mof
