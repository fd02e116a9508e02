#include "KSV_DiskPresentProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskPresentProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_DiskPresentProvider",
    {"-->KSV_DiskPresentProvider::associators\n",
     "KSV_DiskPresentProvider::associators: objectName = %s; associationClass = %s; resultClass = "
     "%s \n",
     "KSV_DiskPresentProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_DiskPresentProvider::associators\n"},
    {"-->KSV_DiskPresentProvider::associatorNames\n",
     "KSV_DiskPresentProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_DiskPresentProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_DiskPresentProvider::associatorNames\n"},
    {"-->KSV_DiskPresentProvider::references\n",
     "KSV_DiskPresentProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_DiskPresentProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_DiskPresentProvider::references\n"},
    {"-->KSV_DiskPresentProvider::referenceNames\n",
     "KSV_DiskPresentProvider::references: objectName = %s; resultClass = %s",
     "KSV_DiskPresentProvider::referenceNames: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_DiskPresentProvider::referenceNames\n"},
    {"-->KSV_DiskPresentProvider::getInstance() \n",
     "<-- KSV_DiskPresentProvider::getInstance()\n\n"},
    "KSV_DiskPresentProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_DiskPresentProvider::enumerateInstances() \n",
     "<-- KSV_DiskPresentProvider::enumerateInstances() \n"},
    {"--> KSV_DiskPresentProvider::enumerateInstanceNames() \n",
     "<-- KSV_DiskPresentProvider::enumerateInstanceNames() \n"}};

// Antecedent is the disk, Dependent its extent. Unlike the other disk associations, a result
// class that names the object's own end is refused.
const KSV_AssociationRules RULES = {"Antecedent",
                                    "Dependent",
                                    "CIM_MediaPresent",
                                    {"CIM_DiskDrive", "CIM_StorageExtent"},
                                    true,
                                    {KSV_EndTest::REJECT, {"CIM_DiskDrive"}},
                                    {KSV_EndTest::REJECT, {"CIM_StorageExtent"}}};

} // namespace

KSV_DiskPresentProvider::KSV_DiskPresentProvider() : _isQuadPort(0) {}

KSV_DiskPresentProvider::~KSV_DiskPresentProvider() {}

void KSV_DiskPresentProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskPresentProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_DiskPresent");
    _ddClassNames.append(CIMName("KSV_DiskDrive"));
    _extClassName = CIMName("KSV_DiskStorageExtent");
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _isQuadPort = KSV_Common::isQuadPortSystem(cimom);
    log_message(4, "<-- KSV_DiskPresentProvider::initialize(cimom)\n)");
}

void KSV_DiskPresentProvider::terminate() {
    delete this;
}

void KSV_DiskPresentProvider::associators(
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
        handler,
        _getRelatedInstances(objectName, includeQualifiers, includeClassOrigin, propertyList));
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskPresentProvider::associatorNames(const OperationContext& context,
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
    KSV_AssociationShape::deliverAll(handler, _getRelatedInstanceNames(objectName));
    KSV_AssociationShape::leave(TEXTS, request);
}

// The far end must exist: an absent or unknown disk has no association, whatever its path.
void KSV_DiskPresentProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
        resultClass,       role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "references"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> farEnds = _getRelatedInstanceNames(objectName);
    const bool fromExtent = objectName.getClassName().equal(_extClassName);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        associations.append(_buildAssociationInstance(
            fromExtent ? farEnds[i] : objectName, fromExtent ? objectName : farEnds[i],
            includeQualifiers, includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskPresentProvider::referenceNames(const OperationContext& context,
                                             const CIMObjectPath& objectName,
                                             const CIMName& resultClass, const String& role,
                                             ObjectPathResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(),
        resultClass,           role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "referenceNames"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> farEnds = _getRelatedInstanceNames(objectName);
    const bool fromExtent = objectName.getClassName().equal(_extClassName);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++)
        associations.append(_buildAssociationName(fromExtent ? farEnds[i] : objectName,
                                                  fromExtent ? objectName : farEnds[i]));
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskPresentProvider::getInstance(const OperationContext& context,
                                          const CIMObjectPath& instanceReference,
                                          const Boolean includeQualifiers,
                                          const Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList,
                                          InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.getInstance.entry, TEXTS, context);
    KSV_AssociationShape::requireTwoKeys(TEXTS, instanceReference);
    const String deviceID =
        KSV_AssociationShape::referencedKey(instanceReference, "Antecedent", "DeviceID");
    KSV_AssociationShape::deliverRequested(
        TEXTS, _getInstances(deviceID, includeQualifiers, includeClassOrigin, propertyList),
        instanceReference, handler);
}

void KSV_DiskPresentProvider::enumerateInstances(const OperationContext& context,
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

void KSV_DiskPresentProvider::enumerateInstanceNames(const OperationContext& context,
                                                     const CIMObjectPath&,
                                                     ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
}

void KSV_DiskPresentProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                             const CIMInstance&, const Boolean,
                                             const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskPresentProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                             const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskPresentProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                             ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMObjectPath
KSV_DiskPresentProvider::_buildAssociationName(const CIMObjectPath& diskPath,
                                               const CIMObjectPath& extentPath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "Antecedent", "Dependent", diskPath,
                                      extentPath, _hostAddr, KSV_AssociationShape::NAMESPACE);
}

CIMInstance KSV_DiskPresentProvider::_buildAssociationInstance(
    const CIMObjectPath& diskPath, const CIMObjectPath& extentPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "Antecedent", "Dependent", diskPath,
                                          extentPath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

// A disk and its extent share the DeviceID, so either end names the disk record to read.
Array<CIMInstance>
KSV_DiskPresentProvider::_getRelatedInstances(const CIMObjectPath& objectName,
                                              bool includeQualifiers, bool includeClassOrigin,
                                              const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskPresentProvider::_getRelatedInstances: className = %s \n", className);
    const String deviceID = KSV_Common::getStringProperty(objectName, "DeviceID");
    if (deviceID.size() == 0)
        throw CIMInvalidParameterException(ClassName + " DeviceID key not found.");
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        CIMClass extentClass = KSV_AssociationShape::storedClass(
            _cimom, _extClassName, includeQualifiers, includeClassOrigin, propertyList);
        KSV_AssociationShape::forPresentDisk(deviceID, [&](const api_Disk_t& disk) {
            related.append(KSV_DiskStorageExtentProvider().buildInstance(&disk, _systemName,
                                                                         _hostAddr, extentClass));
        });
    } else if (className.equal(_extClassName)) {
        const CIMClass diskClass = KSV_AssociationShape::storedClass(
            _cimom, "KSV_DiskDrive", includeQualifiers, includeClassOrigin, propertyList);
        KSV_AssociationShape::forPresentDisk(deviceID, [&](const api_Disk_t& disk) {
            related.append(KSV_DiskDriveProvider().build_instance(diskClass, disk, _hostAddr,
                                                                  _systemName, _isQuadPort));
        });
    }
    log_message(4, "<--KSV_DiskPresentProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMObjectPath>
KSV_DiskPresentProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskPresentProvider::_getRelatedInstanceNames: className = %s \n",
        objectName.getClassName());
    const Array<CIMObjectPath> related = KSV_AssociationShape::pathsOf(
        _getRelatedInstances(objectName, false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskPresentProvider::_getRelatedInstanceNames\n");
    return related;
}

Array<CIMInstance> KSV_DiskPresentProvider::_getInstances(const String& deviceID,
                                                          bool includeQualifiers,
                                                          bool includeClassOrigin,
                                                          const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_DiskPresentProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskDriveProvider drives;
    const KSV_DiskStorageExtentProvider extents;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            associations.append(_buildAssociationInstance(
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName),
                extents.buildObjectPath(_hostAddr, disk.deviceID, _systemName), includeQualifiers,
                includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_DiskPresentProvider::_getInstances\n");
    return associations;
}

Array<CIMObjectPath> KSV_DiskPresentProvider::_getInstanceNames() {
    log_message(4, "-->KSV_DiskPresentProvider::_getInstanceNames\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskPresentProvider::_getInstanceNames\n");
    return names;
}

bool KSV_DiskPresentProvider::_invalidParms(const CIMObjectPath& objectName, const String& role,
                                            const String& resultRole, const CIMName& resultClass,
                                            const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, _ddClassNames,
                                   KSV_AssociationShape::classList(_extClassName)};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
