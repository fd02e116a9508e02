#include "KSV_SystemDiskProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_SystemDiskProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_SystemDiskProvider",
    {"-->KSV_SystemDiskProvider::associators\n",
     "KSV_SystemDiskProvider::associators: objectName = %s; associationClass = %s; resultClass = "
     "%s \n",
     "KSV_SystemDiskProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_SystemDiskProvider::associators\n"},
    {"-->KSV_SystemDiskProvider::associatorNames\n",
     "KSV_SystemDiskProvider::associatorNames: objectName = %s; associationClass = %s; resultClass "
     "= %s \n",
     "KSV_SystemDiskProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_SystemDiskProvider::associatorNames\n"},
    {"-->KSV_SystemDiskProvider::references\n",
     "KSV_SystemDiskProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_SystemDiskProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemDiskProvider::references\n"},
    {"-->KSV_SystemDiskProvider::referenceNames\n",
     "KSV_SystemDiskProvider::references: objectName = %s; resultClass = %s",
     "KSV_SystemDiskProvider::referenceNames: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemDiskProvider::referenceNames\n"},
    {"-->KSV_SystemDiskProvider::getInstance() \n",
     "<-- KSV_SystemDiskProvider::getInstance()\n\n"},
    "KSV_SystemDiskProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_SystemDiskProvider::enumerateInstances() \n",
     "<-- KSV_SystemDiskProvider::enumerateInstances() \n"},
    {"--> KSV_SystemDiskProvider::enumerateInstanceNames() \n",
     "<-- KSV_SystemDiskProvider::enumerateInstanceNames() \n"}};

// The enumeration of names is traced with the lines of _getInstances, as this provider always
// has.
const KSV_WalkTexts WALKS = {
    {"-->KSV_SystemDiskProvider::_getRelatedInstances: className = %s \n",
     "<--KSV_SystemDiskProvider::_getRelatedInstances\n"},
    {"-->KSV_SystemDiskProvider::_getRelatedInstanceNames: className = %s \n",
     "<--KSV_SystemDiskProvider::_getRelatedInstanceNames\n"},
    {"-->KSV_SystemDiskProvider::_getInstances\n", "<--KSV_SystemDiskProvider::_getInstances\n"},
    {"-->KSV_SystemDiskProvider::_getInstances\n", "<--KSV_SystemDiskProvider::_getInstances\n"}};

// GroupComponent is the system, PartComponent a disk.
const KSV_AssociationRules RULES = {
    "GroupComponent",
    "PartComponent",
    "CIM_SystemDevice",
    {"CIM_System", "CIM_ComputerSystem", "CIM_LogicalDevice", "CIM_MediaAccessDevice",
     "CIM_DiskDrive"},
    true,
    {KSV_EndTest::REJECT, {"CIM_ComputerSystem", "CIM_System"}},
    {KSV_EndTest::REJECT, {"CIM_DiskDrive", "CIM_MediaAccessDevice", "CIM_LogicalDevice"}}};

} // namespace

KSV_SystemDiskProvider::KSV_SystemDiskProvider() : _isQuadPort(0) {}

KSV_SystemDiskProvider::~KSV_SystemDiskProvider() {}

void KSV_SystemDiskProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_SystemDiskProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_SystemDisk");
    _sysClassName = CIMName("KSV_StorageSystem");
    _ddClassNames.append(CIMName("KSV_DiskDrive"));
    _sysObjectPath = KSV_Common::getSystemObjectPath(_cimom);
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _isQuadPort = KSV_Common::isQuadPortSystem(cimom);
    log_message(4, "<-- KSV_SystemDiskProvider::initialize(cimom)\n)");
}

void KSV_SystemDiskProvider::terminate() {
    delete this;
}

void KSV_SystemDiskProvider::associators(
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

void KSV_SystemDiskProvider::associatorNames(const OperationContext& context,
                                             const CIMObjectPath& objectName,
                                             const CIMName& associationClass,
                                             const CIMName& resultClass, const String& role,
                                             const String& resultRole,
                                             ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName, context); });
}

void KSV_SystemDiskProvider::references(const OperationContext& context,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role, const Boolean includeQualifiers,
                                        const Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList,
                                        ObjectResponseHandler& handler) {
    _association().referencesFrom(_sysObjectPath, context, objectName, resultClass, role,
                                  includeQualifiers, includeClassOrigin, propertyList, handler,
                                  [&] { return _referencedDisks(objectName, context); });
}

void KSV_SystemDiskProvider::referenceNames(const OperationContext& context,
                                            const CIMObjectPath& objectName,
                                            const CIMName& resultClass, const String& role,
                                            ObjectPathResponseHandler& handler) {
    _association().referenceNamesFrom(_sysObjectPath, context, objectName, resultClass, role,
                                      handler,
                                      [&] { return _referencedDisks(objectName, context); });
}

void KSV_SystemDiskProvider::getInstance(const OperationContext& context,
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

void KSV_SystemDiskProvider::enumerateInstances(const OperationContext& context,
                                                const CIMObjectPath&,
                                                const Boolean includeQualifiers,
                                                const Boolean includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_SystemDiskProvider::enumerateInstanceNames(const OperationContext& context,
                                                    const CIMObjectPath&,
                                                    ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
}

void KSV_SystemDiskProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                            const CIMInstance&, const Boolean,
                                            const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_SystemDiskProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                            const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_SystemDiskProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                            ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

KSV_Association KSV_SystemDiskProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_sysClassName), _ddClassNames, _cimom,
                           _hostAddr);
}

KSV_SystemDevices KSV_SystemDiskProvider::_systemDevices() {
    return KSV_SystemDevices(WALKS, _cimom, _sysClassName, _sysObjectPath, _ddClassNames);
}

Array<CIMInstance> KSV_SystemDiskProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const KSV_DiskDriveProvider drives;
    return _systemDevices().related(
        objectName, context, includeQualifiers, includeClassOrigin, propertyList, "KSV_DiskDrive",
        [&](const CIMClass& diskClass, const api_Disk_t& disk) {
            return drives.build_instance(diskClass, disk, _hostAddr, _systemName, _isQuadPort);
        });
}

Array<CIMObjectPath>
KSV_SystemDiskProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                 const OperationContext& context) {
    return _systemDevices().relatedNames(objectName, [&] {
        return _getRelatedInstances(objectName, context, false, false, CIMPropertyList());
    });
}

Array<CIMObjectPath> KSV_SystemDiskProvider::_referencedDisks(const CIMObjectPath& objectName,
                                                              const OperationContext& context) {
    return _systemDevices().referenced(
        objectName, [&] { return _getRelatedInstanceNames(objectName, context); });
}

Array<CIMInstance> KSV_SystemDiskProvider::_getInstances(const String& deviceID,
                                                         bool includeQualifiers,
                                                         bool includeClassOrigin,
                                                         const CIMPropertyList& propertyList) {
    const KSV_DiskDriveProvider drives;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(_sysObjectPath, drives.buildObjectPath("KSV_DiskDrive", _hostAddr,
                                                                       disk.deviceID, _systemName));
        });
}

PEGASUS_NAMESPACE_END
