#include "KSV_SystemExtentProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskStorageExtentProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_SystemExtentProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_SystemExtentProvider",
    {"-->KSV_SystemExtentProvider::associators\n",
     "KSV_SystemExtentProvider::associators: objectName = %s; associationClass = %s; resultClass = "
     "%s \n",
     "KSV_SystemExtentProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_SystemExtentProvider::associators\n"},
    {"-->KSV_SystemExtentProvider::associatorNames\n",
     "KSV_SystemExtentProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_SystemExtentProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_SystemExtentProvider::associatorNames\n"},
    {"-->KSV_SystemExtentProvider::references\n",
     "KSV_SystemExtentProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_SystemExtentProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemExtentProvider::references\n"},
    {"-->KSV_SystemExtentProvider::referenceNames\n",
     "KSV_SystemExtentProvider::references: objectName = %s; resultClass = %s",
     "KSV_SystemExtentProvider::referenceNames: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemExtentProvider::referenceNames\n"},
    {"-->KSV_SystemExtentProvider::getInstance() \n",
     "<-- KSV_SystemExtentProvider::getInstance()\n\n"},
    "KSV_SystemExtentProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_SystemExtentProvider::enumerateInstances() \n",
     "<-- KSV_SystemExtentProvider::enumerateInstances() \n"},
    {"--> KSV_SystemExtentProvider::enumerateInstanceNames() \n",
     "<-- KSV_SystemExtentProvider::enumerateInstanceNames() \n"}};

// The enumeration of names is traced with the lines of _getInstances, as this provider always
// has.
const KSV_WalkTexts WALKS = {
    {"-->KSV_SystemExtentProvider::_getRelatedInstances: className = %s \n",
     "<--KSV_SystemExtentProvider::_getRelatedInstances\n"},
    {"-->KSV_SystemExtentProvider::_getRelatedInstanceNames: className = %s \n",
     "<--KSV_SystemExtentProvider::_getRelatedInstanceNames\n"},
    {"-->KSV_SystemExtentProvider::_getInstances\n",
     "<--KSV_SystemExtentProvider::_getInstances\n"},
    {"-->KSV_SystemExtentProvider::_getInstances\n",
     "<--KSV_SystemExtentProvider::_getInstances\n"}};

// GroupComponent is the system, PartComponent an extent. Unlike the disk association, a
// generic result class must name the far end itself ("CIM_System" is refused).
const KSV_AssociationRules RULES = {
    "GroupComponent",
    "PartComponent",
    "CIM_SystemDevice",
    {"CIM_ComputerSystem", "CIM_LogicalDevice", "CIM_StorageExtent"},
    false,
    {KSV_EndTest::ACCEPT_ONLY, {"CIM_LogicalDevice", "CIM_StorageExtent", "KSV_DiskStorageExtent"}},
    {KSV_EndTest::ACCEPT_ONLY, {"CIM_ComputerSystem", "KSV_StorageSystem"}}};

} // namespace

KSV_SystemExtentProvider::KSV_SystemExtentProvider() {}

KSV_SystemExtentProvider::~KSV_SystemExtentProvider() {}

void KSV_SystemExtentProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_SystemExtentProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_SystemExtent");
    _sysClassName = CIMName("KSV_StorageSystem");
    _extClassName = CIMName("KSV_DiskStorageExtent");
    _sysObjectPath = KSV_Common::getSystemObjectPath(_cimom);
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    log_message(4, "<-- KSV_SystemExtentProvider::initialize(cimom)\n)");
}

void KSV_SystemExtentProvider::terminate() {
    delete this;
}

void KSV_SystemExtentProvider::associators(
    const OperationContext& context, const CIMObjectPath& objectName,
    const CIMName& associationClass, const CIMName& resultClass, const String& role,
    const String& resultRole, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().associators(
        context, objectName, associationClass, resultClass, role, resultRole, handler, [&] {
            return _getRelatedInstances(objectName, context, includeQualifiers, includeClassOrigin,
                                        propertyList);
        });
}

void KSV_SystemExtentProvider::associatorNames(const OperationContext& context,
                                               const CIMObjectPath& objectName,
                                               const CIMName& associationClass,
                                               const CIMName& resultClass, const String& role,
                                               const String& resultRole,
                                               ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName, context); });
}

void KSV_SystemExtentProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().referencesFrom(_sysObjectPath, context, objectName, resultClass, role,
                                  includeQualifiers, includeClassOrigin, propertyList, handler,
                                  [&] { return _referencedExtents(objectName, context); });
}

void KSV_SystemExtentProvider::referenceNames(const OperationContext& context,
                                              const CIMObjectPath& objectName,
                                              const CIMName& resultClass, const String& role,
                                              ObjectPathResponseHandler& handler) {
    _association().referenceNamesFrom(_sysObjectPath, context, objectName, resultClass, role,
                                      handler,
                                      [&] { return _referencedExtents(objectName, context); });
}

void KSV_SystemExtentProvider::getInstance(const OperationContext& context,
                                           const CIMObjectPath& instanceReference,
                                           const Boolean includeQualifiers,
                                           const Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList,
                                           InstanceResponseHandler& handler) {
    _association().getInstance(context, instanceReference, handler, [&] {
        return _getInstances(
            KSV_AssociationShape::referencedKey(instanceReference, "PartComponent", "DeviceID"),
            includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_SystemExtentProvider::enumerateInstances(const OperationContext& context,
                                                  const CIMObjectPath&,
                                                  const Boolean includeQualifiers,
                                                  const Boolean includeClassOrigin,
                                                  const CIMPropertyList& propertyList,
                                                  InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_SystemExtentProvider::enumerateInstanceNames(const OperationContext& context,
                                                      const CIMObjectPath&,
                                                      ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
}

void KSV_SystemExtentProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, const Boolean,
                                              const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_SystemExtentProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_SystemExtentProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                              ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

KSV_Association KSV_SystemExtentProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_sysClassName),
                           KSV_AssociationShape::classList(_extClassName), _cimom, _hostAddr);
}

KSV_SystemDevices KSV_SystemExtentProvider::_systemDevices() {
    return KSV_SystemDevices(WALKS, _cimom, _sysClassName, _sysObjectPath,
                             KSV_AssociationShape::classList(_extClassName));
}

Array<CIMInstance> KSV_SystemExtentProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const KSV_DiskStorageExtentProvider extents;
    return _systemDevices().related(
        objectName, context, includeQualifiers, includeClassOrigin, propertyList, _extClassName,
        [&](CIMClass& extentClass, const api_Disk_t& disk) {
            return extents.buildInstance(&disk, _systemName, _hostAddr, extentClass);
        });
}

Array<CIMObjectPath>
KSV_SystemExtentProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                   const OperationContext& context) {
    return _systemDevices().relatedNames(objectName, [&] {
        return _getRelatedInstances(objectName, context, false, false, CIMPropertyList());
    });
}

Array<CIMObjectPath> KSV_SystemExtentProvider::_referencedExtents(const CIMObjectPath& objectName,
                                                                  const OperationContext& context) {
    return _systemDevices().referenced(
        objectName, [&] { return _getRelatedInstanceNames(objectName, context); });
}

Array<CIMInstance> KSV_SystemExtentProvider::_getInstances(const String& deviceID,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    const KSV_DiskStorageExtentProvider extents;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(_sysObjectPath,
                                extents.buildObjectPath(_hostAddr, disk.deviceID, _systemName));
        });
}

PEGASUS_NAMESPACE_END
