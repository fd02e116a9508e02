#include "cimserver/InteropProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/Exception.h>

#include <utility>

namespace ksv::server {

using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::CIMProperty;
using Pegasus::CIMValue;
using Pegasus::OperationContext;
using Pegasus::String;

namespace {

const char kObjectManagerClass[] = "CIM_ObjectManager";
const char kNamespaceClass[] = "CIM_Namespace";
const char kConformsClass[] = "CIM_ElementConformsToProfile";
const char kProfileClass[] = "CIM_RegisteredProfile";
const char kSystemClass[] = "CIM_ComputerSystem";
// The Array profile's central instance: the array's storage system.
const char kArrayProfileName[] = "Array";
const char kStorageSystemNamespace[] = "root/ksv";
const char kStorageSystemClass[] = "KSV_StorageSystem";
const char kSchemaVersion[] = "2.41.0";
const Pegasus::Uint16 kClassTypeCim = 2;
const Pegasus::Uint16 kClassInfoUnknown = 0;

// Paths name the same object when class and keys agree, wherever they were taken.
bool sameObject(CIMObjectPath x, CIMObjectPath y) {
    for (CIMObjectPath* path : {&x, &y}) {
        path->setHost(String());
        path->setNameSpace(CIMNamespaceName());
    }
    return x.identical(y);
}

bool matchesRole(const CIMName& property, const String& role) {
    return role.size() == 0 || String::equalNoCase(property.getString(), role);
}

String stringProperty(const CIMInstance& instance, const char* name) {
    Pegasus::Uint32 index = instance.findProperty(name);
    String text;
    if (index != Pegasus::PEG_NOT_FOUND && !instance.getProperty(index).getValue().isNull())
        instance.getProperty(index).getValue().get(text);
    return text;
}

[[noreturn]] void throwReadOnly() {
    throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED,
                                "the interop namespace is maintained by the server");
}

} // namespace

InteropProvider::InteropProvider(const mof::ClassRepository& repository, String hostName)
    : _repository(repository), _hostName(std::move(hostName)) {}

void InteropProvider::initialize(Pegasus::CIMOMHandle& cimom) {
    _cimom = cimom;
}

void InteropProvider::terminate() {
    delete this;
}

// ---- The namespace's instances -----------------------------------------------------------------

std::vector<CIMInstance> InteropProvider::instancesOf(const OperationContext& context,
                                                      const CIMNamespaceName& nameSpace,
                                                      const CIMName& className) const {
    std::vector<CIMInstance> result;
    if (className.equal(kObjectManagerClass)) {
        result.push_back(objectManager(nameSpace));
    } else if (className.equal(kNamespaceClass)) {
        result = namespaces(nameSpace);
    } else if (className.equal(kConformsClass)) {
        result = conformance(context, nameSpace);
    } else {
        Pegasus::Array<CIMInstance> defined = _repository.enumerateInstances(nameSpace, className);
        for (Pegasus::Uint32 i = 0; i < defined.size(); ++i) {
            if (defined[i].getClassName().equal(className))
                result.push_back(defined[i]);
        }
    }
    for (CIMInstance& instance : result) {
        CIMObjectPath path = instance.getPath();
        path.setNameSpace(nameSpace);
        instance.setPath(path);
    }
    return result;
}

CIMInstance InteropProvider::objectManager(const CIMNamespaceName& nameSpace) const {
    CIMInstance manager(kObjectManagerClass);
    manager.addProperty(CIMProperty("SystemCreationClassName", String(kSystemClass)));
    manager.addProperty(CIMProperty("SystemName", _hostName));
    manager.addProperty(CIMProperty("CreationClassName", String(kObjectManagerClass)));
    manager.addProperty(CIMProperty("Name", String("KSV:") + _hostName));
    manager.addProperty(CIMProperty("ElementName", String("KSV CIM server")));
    manager.addProperty(CIMProperty("Started", Pegasus::Boolean(true)));
    manager.setPath(manager.buildPath(
        _repository.getClass(nameSpace, kObjectManagerClass, false, true, false)));
    return manager;
}

std::vector<CIMInstance> InteropProvider::namespaces(const CIMNamespaceName& nameSpace) const {
    const CIMInstance manager = objectManager(nameSpace);
    const Pegasus::CIMClass namespaceClass =
        _repository.getClass(nameSpace, kNamespaceClass, false, true, false);
    std::vector<CIMInstance> result;
    Pegasus::Array<CIMNamespaceName> served = _repository.enumerateNameSpaces();
    for (Pegasus::Uint32 i = 0; i < served.size(); ++i) {
        CIMInstance entry(kNamespaceClass);
        entry.addProperty(CIMProperty("SystemCreationClassName", String(kSystemClass)));
        entry.addProperty(CIMProperty("SystemName", _hostName));
        entry.addProperty(
            CIMProperty("ObjectManagerCreationClassName", String(kObjectManagerClass)));
        entry.addProperty(CIMProperty("ObjectManagerName", stringProperty(manager, "Name")));
        entry.addProperty(CIMProperty("CreationClassName", String(kNamespaceClass)));
        entry.addProperty(CIMProperty("Name", served[i].getString()));
        entry.addProperty(CIMProperty("ClassInfo", kClassInfoUnknown));
        entry.addProperty(CIMProperty("ClassType", kClassTypeCim));
        entry.addProperty(CIMProperty("ClassTypeVersion", String(kSchemaVersion)));
        entry.setPath(entry.buildPath(namespaceClass));
        result.push_back(entry);
    }
    return result;
}

std::vector<CIMInstance> InteropProvider::conformance(const OperationContext& context,
                                                      const CIMNamespaceName& nameSpace) const {
    std::vector<CIMInstance> result;
    const CIMNamespaceName systemNamespace(kStorageSystemNamespace);
    Pegasus::Array<CIMObjectPath> systems =
        _cimom.enumerateInstanceNames(context, systemNamespace, kStorageSystemClass);
    const Pegasus::CIMClass conformsClass =
        _repository.getClass(nameSpace, kConformsClass, false, true, false);
    for (const CIMInstance& profile : instancesOf(context, nameSpace, kProfileClass)) {
        if (stringProperty(profile, "RegisteredName") != kArrayProfileName)
            continue;
        for (Pegasus::Uint32 i = 0; i < systems.size(); ++i) {
            CIMObjectPath system = systems[i];
            system.setHost(_hostName);
            system.setNameSpace(systemNamespace);
            CIMInstance conforms(kConformsClass);
            conforms.addProperty(CIMProperty("ConformantStandard", CIMValue(profile.getPath())));
            conforms.addProperty(CIMProperty("ManagedElement", CIMValue(system)));
            conforms.setPath(conforms.buildPath(conformsClass));
            result.push_back(conforms);
        }
    }
    return result;
}

// ---- Instance operations -----------------------------------------------------------------------

void InteropProvider::getInstance(const OperationContext& context,
                                  const CIMObjectPath& instanceReference, const Pegasus::Boolean,
                                  const Pegasus::Boolean, const Pegasus::CIMPropertyList&,
                                  Pegasus::InstanceResponseHandler& handler) {
    for (const CIMInstance& instance :
         instancesOf(context, instanceReference.getNameSpace(), instanceReference.getClassName())) {
        if (sameObject(instance.getPath(), instanceReference)) {
            handler.processing();
            handler.deliver(instance);
            handler.complete();
            return;
        }
    }
    throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_FOUND, instanceReference.toString());
}

void InteropProvider::enumerateInstances(const OperationContext& context,
                                         const CIMObjectPath& classReference,
                                         const Pegasus::Boolean, const Pegasus::Boolean,
                                         const Pegasus::CIMPropertyList&,
                                         Pegasus::InstanceResponseHandler& handler) {
    handler.processing();
    for (const CIMInstance& instance :
         instancesOf(context, classReference.getNameSpace(), classReference.getClassName()))
        handler.deliver(instance);
    handler.complete();
}

void InteropProvider::enumerateInstanceNames(const OperationContext& context,
                                             const CIMObjectPath& classReference,
                                             Pegasus::ObjectPathResponseHandler& handler) {
    handler.processing();
    for (const CIMInstance& instance :
         instancesOf(context, classReference.getNameSpace(), classReference.getClassName()))
        handler.deliver(instance.getPath());
    handler.complete();
}

void InteropProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                     const CIMInstance&, const Pegasus::Boolean,
                                     const Pegasus::CIMPropertyList&, Pegasus::ResponseHandler&) {
    throwReadOnly();
}

void InteropProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                     const CIMInstance&, Pegasus::ObjectPathResponseHandler&) {
    throwReadOnly();
}

void InteropProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                     Pegasus::ResponseHandler&) {
    throwReadOnly();
}

// ---- Association operations --------------------------------------------------------------------

std::vector<InteropProvider::FarEnd>
InteropProvider::farEnds(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole) const {
    std::vector<FarEnd> result;
    const CIMNamespaceName& nameSpace = objectName.getNameSpace();
    for (const CIMInstance& association : instancesOf(context, nameSpace, associationClass)) {
        for (Pegasus::Uint32 near = 0; near < association.getPropertyCount(); ++near) {
            Pegasus::CIMConstProperty nearEnd = association.getProperty(near);
            CIMObjectPath nearPath;
            if (nearEnd.getType() != Pegasus::CIMTYPE_REFERENCE ||
                !matchesRole(nearEnd.getName(), role))
                continue;
            nearEnd.getValue().get(nearPath);
            if (!sameObject(nearPath, objectName))
                continue;
            for (Pegasus::Uint32 far = 0; far < association.getPropertyCount(); ++far) {
                Pegasus::CIMConstProperty farEnd = association.getProperty(far);
                if (far == near || farEnd.getType() != Pegasus::CIMTYPE_REFERENCE ||
                    !matchesRole(farEnd.getName(), resultRole))
                    continue;
                CIMObjectPath farPath;
                farEnd.getValue().get(farPath);
                if (farPath.getNameSpace().isNull())
                    farPath.setNameSpace(nameSpace);
                if (resultClass.isNull() ||
                    _repository.isSubclassOf(farPath.getNameSpace(), farPath.getClassName(),
                                             resultClass))
                    result.push_back({association, farPath});
            }
        }
    }
    return result;
}

CIMObject InteropProvider::farObject(const OperationContext& context, const CIMObjectPath& path,
                                     const Pegasus::CIMPropertyList& propertyList) const {
    CIMInstance instance =
        _cimom.getInstance(context, path.getNameSpace(), path, false, false, false, propertyList);
    instance.setPath(path);
    return CIMObject(instance);
}

void InteropProvider::associators(const OperationContext& context, const CIMObjectPath& objectName,
                                  const CIMName& associationClass, const CIMName& resultClass,
                                  const String& role, const String& resultRole,
                                  const Pegasus::Boolean, const Pegasus::Boolean,
                                  const Pegasus::CIMPropertyList& propertyList,
                                  Pegasus::ObjectResponseHandler& handler) {
    std::vector<FarEnd> ends =
        farEnds(context, objectName, associationClass, resultClass, role, resultRole);
    handler.processing();
    for (const FarEnd& end : ends)
        handler.deliver(farObject(context, end.path, propertyList));
    handler.complete();
}

void InteropProvider::associatorNames(const OperationContext& context,
                                      const CIMObjectPath& objectName,
                                      const CIMName& associationClass, const CIMName& resultClass,
                                      const String& role, const String& resultRole,
                                      Pegasus::ObjectPathResponseHandler& handler) {
    std::vector<FarEnd> ends =
        farEnds(context, objectName, associationClass, resultClass, role, resultRole);
    handler.processing();
    for (const FarEnd& end : ends)
        handler.deliver(end.path);
    handler.complete();
}

void InteropProvider::references(const OperationContext& context, const CIMObjectPath& objectName,
                                 const CIMName& resultClass, const String& role,
                                 const Pegasus::Boolean, const Pegasus::Boolean,
                                 const Pegasus::CIMPropertyList&,
                                 Pegasus::ObjectResponseHandler& handler) {
    std::vector<FarEnd> ends = farEnds(context, objectName, resultClass, CIMName(), role, String());
    handler.processing();
    for (const FarEnd& end : ends)
        handler.deliver(CIMObject(end.association));
    handler.complete();
}

void InteropProvider::referenceNames(const OperationContext& context,
                                     const CIMObjectPath& objectName, const CIMName& resultClass,
                                     const String& role,
                                     Pegasus::ObjectPathResponseHandler& handler) {
    std::vector<FarEnd> ends = farEnds(context, objectName, resultClass, CIMName(), role, String());
    handler.processing();
    for (const FarEnd& end : ends)
        handler.deliver(end.association.getPath());
    handler.complete();
}

} // namespace ksv::server
