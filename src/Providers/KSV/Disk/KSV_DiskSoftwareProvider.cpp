#include "KSV_DiskSoftwareProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"

#include <cstring>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskSoftwareProvider");

namespace {

// Two lines carry another provider's name; log readers know them by it.
const KSV_AssociationTexts TEXTS = {
    "KSV_DiskSoftwareProvider",
    {"-->KSV_DiskSoftwareProvider::associators\n",
     "KSV_DiskSoftwareProvider::associators: objectName = %s; associationClass = %s; resultClass = "
     "%s \n",
     "KSV_DiskSoftwareProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_DiskSoftwareProvider::associators\n"},
    {"-->KSV_DiskSoftwareProvider::associatorNames\n",
     "KSV_FCALCardInDriveCageProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_DiskSoftwareProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_DiskSoftwareProvider::associatorNames\n"},
    {"-->KSV_DiskSoftwareProvider::references\n",
     "KSV_DiskSoftwareProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_DiskSoftwareProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_DiskSoftwareProvider::references\n"},
    {"-->KSV_DiskSoftwareProvider::referenceNames\n",
     "KSV_DiskSoftwareProvider::references: objectName = %s; resultClass = %s",
     "KSV_DiskSoftwareProvider::referenceNames: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_DiskSoftwareProvider::referenceNames\n"},
    {"-->KSV_DiskSoftwareProvider::getInstance() \n",
     "<-- KSV_DiskSoftwareProvider::getInstance()\n\n"},
    "KSV_FCALCardInDriveCageProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_DiskSoftwareProvider::enumerateInstances() \n",
     "<-- KSV_DiskSoftwareProvider::enumerateInstances() \n"},
    {"--> KSV_DiskSoftwareProvider::enumerateInstanceNames() \n",
     "<-- KSV_DiskSoftwareProvider::enumerateInstanceNames() \n"}};

// Antecedent is the firmware identity, Dependent the disk. A result class naming the object's
// own end is answered with the far end, as for the disk's package.
const KSV_AssociationRules RULES = {"Antecedent",
                                    "Dependent",
                                    "CIM_ElementSoftwareIdentity",
                                    {"CIM_DiskDrive", "CIM_SoftwareIdentity"},
                                    false,
                                    {KSV_EndTest::NONE, {}},
                                    {KSV_EndTest::NONE, {}}};

} // namespace

KSV_DiskSoftwareProvider::KSV_DiskSoftwareProvider() : _isQuadPort(0) {}

KSV_DiskSoftwareProvider::~KSV_DiskSoftwareProvider() {}

void KSV_DiskSoftwareProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskSoftwareProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_DiskSoftware");
    _ddClassNames.append(CIMName("KSV_DiskDrive"));
    _sftwClassName = CIMName("KSV_DiskSoftwareIdentity");
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _isQuadPort = KSV_Common::isQuadPortSystem(cimom);
    log_message(4, "<-- KSV_DiskSoftwareProvider::initialize(cimom)\n)");
}

void KSV_DiskSoftwareProvider::terminate() {
    delete this;
}

void KSV_DiskSoftwareProvider::associators(
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

void KSV_DiskSoftwareProvider::associatorNames(const OperationContext& context,
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

// The far end must exist: a disk without firmware version has no association.
void KSV_DiskSoftwareProvider::references(
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
    const bool fromIdentity = objectName.getClassName().equal(_sftwClassName);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        associations.append(_buildAssociationInstance(
            fromIdentity ? farEnds[i] : objectName, fromIdentity ? objectName : farEnds[i],
            includeQualifiers, includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskSoftwareProvider::referenceNames(const OperationContext& context,
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
    const bool fromIdentity = objectName.getClassName().equal(_sftwClassName);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++)
        associations.append(_buildAssociationName(fromIdentity ? farEnds[i] : objectName,
                                                  fromIdentity ? objectName : farEnds[i]));
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskSoftwareProvider::getInstance(const OperationContext& context,
                                           const CIMObjectPath& instanceReference,
                                           const Boolean includeQualifiers,
                                           const Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList,
                                           InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.getInstance.entry, TEXTS, context);
    KSV_AssociationShape::requireTwoKeys(TEXTS, instanceReference);
    const String deviceID =
        KSV_AssociationShape::referencedKey(instanceReference, "Dependent", "DeviceID");
    KSV_AssociationShape::deliverRequested(
        TEXTS, _getInstances(deviceID, includeQualifiers, includeClassOrigin, propertyList),
        instanceReference, handler);
}

void KSV_DiskSoftwareProvider::enumerateInstances(const OperationContext& context,
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

void KSV_DiskSoftwareProvider::enumerateInstanceNames(const OperationContext& context,
                                                      const CIMObjectPath&,
                                                      ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
}

void KSV_DiskSoftwareProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, const Boolean,
                                              const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskSoftwareProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskSoftwareProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                              ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMObjectPath
KSV_DiskSoftwareProvider::_buildAssociationName(const CIMObjectPath& diskPath,
                                                const CIMObjectPath& identityPath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "Antecedent", "Dependent", identityPath,
                                      diskPath, _hostAddr, KSV_AssociationShape::NAMESPACE);
}

CIMInstance KSV_DiskSoftwareProvider::_buildAssociationInstance(
    const CIMObjectPath& diskPath, const CIMObjectPath& identityPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "Antecedent", "Dependent", identityPath,
                                          diskPath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

// A missing key is only logged: unlike the package association, the answer is empty, not an
// error.
Array<CIMInstance>
KSV_DiskSoftwareProvider::_getRelatedInstances(const CIMObjectPath& objectName,
                                               bool includeQualifiers, bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskSoftwareProvider::_getRelatedInstances: className = %s \n", className);
    const bool fromIdentity = className.equal(_sftwClassName);
    const String searchText = fromIdentity
                                  ? KSV_Common::extractFromInstanceID(
                                        KSV_Common::getStringProperty(objectName, "InstanceID"))
                                  : KSV_Common::getStringProperty(objectName, "DeviceID");
    Array<CIMInstance> related;
    if (searchText.size() == 0) {
        log_message(3, "%s",
                    fromIdentity ? " InstanceID key not found." : " DeviceID key not found.");
    } else if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        related = _identityOf(searchText, includeQualifiers, includeClassOrigin, propertyList);
    } else if (fromIdentity) {
        related = _disksRunning(searchText, includeQualifiers, includeClassOrigin, propertyList);
    }
    log_message(4, "<--KSV_DiskSoftwareProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMInstance> KSV_DiskSoftwareProvider::_identityOf(const String& deviceID,
                                                         bool includeQualifiers,
                                                         bool includeClassOrigin,
                                                         const CIMPropertyList& propertyList) {
    const CIMClass identityClass = KSV_AssociationShape::storedClass(
        _cimom, _sftwClassName, includeQualifiers, includeClassOrigin, propertyList);
    Array<CIMInstance> identities;
    KSV_AssociationShape::forFirstPresentDisk(
        KSV_DiskList::selectorOf(deviceID),
        [&](const api_Disk_t& disk) {
            return disk.fwVersion[0] != '\0' && KSV_AssociationShape::hasDeviceID(disk, deviceID);
        },
        [&](const api_Disk_t& disk) {
            identities.append(
                KSV_DiskSoftwareIdentityProvider().build_instance(identityClass, disk, _hostAddr));
        });
    return identities;
}

// Every disk whose version text lies inside the identity's version: "4.0" disks also run the
// "4.02" identity. Clients have always been answered this way.
Array<CIMInstance> KSV_DiskSoftwareProvider::_disksRunning(const String& version,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    const CIMClass diskClass = KSV_AssociationShape::storedClass(
        _cimom, "KSV_DiskDrive", includeQualifiers, includeClassOrigin, propertyList);
    const CString versionText = version.getCString();
    const KSV_DiskDriveProvider drives;
    Array<CIMInstance> disks;
    KSV_AssociationShape::forEachPresentDisk(API_ALL_DISKS, [&](const api_Disk_t& disk) {
        if (disk.fwVersion[0] != '\0' && std::strstr(versionText, disk.fwVersion) != nullptr)
            disks.append(
                drives.build_instance(diskClass, disk, _hostAddr, _systemName, _isQuadPort));
    });
    return disks;
}

Array<CIMObjectPath>
KSV_DiskSoftwareProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskSoftwareProvider::_getRelatedInstanceNames: className = %s \n",
        objectName.getClassName());
    const Array<CIMObjectPath> related = KSV_AssociationShape::pathsOf(
        _getRelatedInstances(objectName, false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskSoftwareProvider::_getRelatedInstanceNames\n");
    return related;
}

// Disks without a firmware version run no identity. Disks sharing a version each have their
// own association to that one identity.
Array<CIMInstance> KSV_DiskSoftwareProvider::_getInstances(const String& deviceID,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_DiskSoftwareProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskDriveProvider drives;
    const KSV_DiskSoftwareIdentityProvider identities;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            if (disk.fwVersion[0] == '\0')
                return;
            const CIMObjectPath identityPath =
                identities.buildObjectPath(_hostAddr, identities.makeInstanceID(disk.fwVersion));
            associations.append(_buildAssociationInstance(
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName),
                identityPath, includeQualifiers, includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_DiskSoftwareProvider::_getInstances\n");
    return associations;
}

Array<CIMObjectPath> KSV_DiskSoftwareProvider::_getInstanceNames() {
    log_message(4, "-->KSV_DiskSoftwareProvider::_getInstanceNames\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskSoftwareProvider::_getInstanceNames\n");
    return names;
}

bool KSV_DiskSoftwareProvider::_invalidParms(const CIMObjectPath& objectName, const String& role,
                                             const String& resultRole, const CIMName& resultClass,
                                             const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, KSV_AssociationShape::classList(_sftwClassName),
                                   _ddClassNames};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
