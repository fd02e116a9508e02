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
    const KSV_AssociationRequest request{KSVCIM_ASSOCIATORS, objectName, associationClass,
                                         resultClass,        role,       resultRole};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, resultRole, resultClass, "associators"))
        return KSV_AssociationShape::reject(TEXTS, request);
    KSV_AssociationShape::deliverObjects(
        handler, _getRelatedInstances(objectName, context, includeQualifiers, includeClassOrigin,
                                      propertyList));
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemDiskProvider::associatorNames(const OperationContext& context,
                                             const CIMObjectPath& objectName,
                                             const CIMName& associationClass,
                                             const CIMName& resultClass, const String& role,
                                             const String& resultRole,
                                             ObjectPathResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_ASSOCIATORNAMES, objectName, associationClass, resultClass, role, resultRole};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, resultRole, resultClass, "associatorNames"))
        return KSV_AssociationShape::reject(TEXTS, request);
    KSV_AssociationShape::deliverAll(handler, _getRelatedInstanceNames(objectName, context));
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemDiskProvider::references(const OperationContext& context,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role, const Boolean includeQualifiers,
                                        const Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList,
                                        ObjectResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
        resultClass,       role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "references"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> disks = _referencedDisks(objectName, context);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < disks.size(); i++) {
        associations.append(_buildAssociationInstance(disks[i], includeQualifiers,
                                                      includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemDiskProvider::referenceNames(const OperationContext& context,
                                            const CIMObjectPath& objectName,
                                            const CIMName& resultClass, const String& role,
                                            ObjectPathResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(),
        resultClass,           role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "referenceNames"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> disks = _referencedDisks(objectName, context);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < disks.size(); i++)
        associations.append(_buildAssociationName(disks[i]));
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemDiskProvider::getInstance(const OperationContext& context,
                                         const CIMObjectPath& instanceReference,
                                         const Boolean includeQualifiers,
                                         const Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList,
                                         InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.getInstance.entry, TEXTS, context);
    KSV_AssociationShape::requireTwoKeys(TEXTS, instanceReference);
    const String deviceID =
        KSV_AssociationShape::referencedKey(instanceReference, "PartComponent", "DeviceID");
    KSV_AssociationShape::deliverRequested(
        TEXTS, _getInstances(deviceID, includeQualifiers, includeClassOrigin, propertyList),
        instanceReference, handler);
}

void KSV_SystemDiskProvider::enumerateInstances(const OperationContext& context,
                                                const CIMObjectPath&,
                                                const Boolean includeQualifiers,
                                                const Boolean includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstances.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(
        handler, _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList));
    log_message(4, "%s", TEXTS.enumerateInstances.exit);
}

void KSV_SystemDiskProvider::enumerateInstanceNames(const OperationContext& context,
                                                    const CIMObjectPath&,
                                                    ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
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

CIMObjectPath KSV_SystemDiskProvider::_buildAssociationName(const CIMObjectPath& diskPath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "GroupComponent", "PartComponent",
                                      _sysObjectPath, diskPath, _hostAddr,
                                      KSV_AssociationShape::NAMESPACE);
}

CIMInstance KSV_SystemDiskProvider::_buildAssociationInstance(const CIMObjectPath& diskPath,
                                                              bool includeQualifiers,
                                                              bool includeClassOrigin,
                                                              const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "GroupComponent", "PartComponent",
                                          _sysObjectPath, diskPath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

Array<CIMInstance> KSV_SystemDiskProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_SystemDiskProvider::_getRelatedInstances: className = %s \n", className);
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        related = _cimom.enumerateInstances(
            context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), _sysClassName, false, false,
            includeQualifiers, includeClassOrigin, propertyList);
    } else if (className.equal(_sysClassName)) {
        // Any path of the system class stands for this system: its keys are not compared.
        const CIMClass diskClass = KSV_AssociationShape::storedClass(
            _cimom, "KSV_DiskDrive", includeQualifiers, includeClassOrigin, propertyList);
        const KSV_DiskDriveProvider drives;
        KSV_AssociationShape::forEachPresentDisk(API_ALL_DISKS, [&](const api_Disk_t& disk) {
            related.append(
                drives.build_instance(diskClass, disk, _hostAddr, _systemName, _isQuadPort));
        });
    }
    log_message(4, "<--KSV_SystemDiskProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMObjectPath>
KSV_SystemDiskProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                 const OperationContext& context) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_SystemDiskProvider::_getRelatedInstanceNames: className = %s \n", className);
    Array<CIMObjectPath> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        related.append(_sysObjectPath);
    } else if (className.equal(_sysClassName)) {
        related = KSV_AssociationShape::pathsOf(
            _getRelatedInstances(objectName, context, false, false, CIMPropertyList()));
    }
    log_message(4, "<--KSV_SystemDiskProvider::_getRelatedInstanceNames\n");
    return related;
}

Array<CIMObjectPath> KSV_SystemDiskProvider::_referencedDisks(const CIMObjectPath& objectName,
                                                              const OperationContext& context) {
    // A disk's association is built from its path as given: the disk is not looked up.
    if (KSV_Common::isPartOfArray(objectName.getClassName(), _ddClassNames))
        return Array<CIMObjectPath>(&objectName, 1);
    if (objectName.getClassName().equal(_sysClassName))
        return _getRelatedInstanceNames(objectName, context);
    return Array<CIMObjectPath>();
}

Array<CIMInstance> KSV_SystemDiskProvider::_getInstances(const String& deviceID,
                                                         bool includeQualifiers,
                                                         bool includeClassOrigin,
                                                         const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_SystemDiskProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskDriveProvider drives;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            const CIMObjectPath diskPath =
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName);
            associations.append(_buildAssociationInstance(diskPath, includeQualifiers,
                                                          includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_SystemDiskProvider::_getInstances\n");
    return associations;
}

// Traced with the lines of _getInstances, as this provider always has.
Array<CIMObjectPath> KSV_SystemDiskProvider::_getInstanceNames() {
    log_message(4, "-->KSV_SystemDiskProvider::_getInstances\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_SystemDiskProvider::_getInstances\n");
    return names;
}

bool KSV_SystemDiskProvider::_invalidParms(const CIMObjectPath& objectName, const String& role,
                                           const String& resultRole, const CIMName& resultClass,
                                           const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, KSV_AssociationShape::classList(_sysClassName),
                                   _ddClassNames};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
