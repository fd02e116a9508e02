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

const KSV_WalkTexts WALKS = {
    {"-->KSV_DiskSoftwareProvider::_getRelatedInstances: className = %s \n",
     "<--KSV_DiskSoftwareProvider::_getRelatedInstances\n"},
    {"-->KSV_DiskSoftwareProvider::_getRelatedInstanceNames: className = %s \n",
     "<--KSV_DiskSoftwareProvider::_getRelatedInstanceNames\n"},
    {"-->KSV_DiskSoftwareProvider::_getInstances\n",
     "<--KSV_DiskSoftwareProvider::_getInstances\n"},
    {"-->KSV_DiskSoftwareProvider::_getInstanceNames\n",
     "<--KSV_DiskSoftwareProvider::_getInstanceNames\n"}};

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
    _association().associators(context, objectName, associationClass, resultClass, role, resultRole,
                               handler, [&] {
                                   return _getRelatedInstances(objectName, includeQualifiers,
                                                               includeClassOrigin, propertyList);
                               });
}

void KSV_DiskSoftwareProvider::associatorNames(const OperationContext& context,
                                               const CIMObjectPath& objectName,
                                               const CIMName& associationClass,
                                               const CIMName& resultClass, const String& role,
                                               const String& resultRole,
                                               ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName); });
}

// The far end must exist: a disk without firmware version has no association.
void KSV_DiskSoftwareProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().references(context, objectName, resultClass, role, includeQualifiers,
                              includeClassOrigin, propertyList, handler,
                              [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskSoftwareProvider::referenceNames(const OperationContext& context,
                                              const CIMObjectPath& objectName,
                                              const CIMName& resultClass, const String& role,
                                              ObjectPathResponseHandler& handler) {
    _association().referenceNames(context, objectName, resultClass, role, handler,
                                  [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskSoftwareProvider::getInstance(const OperationContext& context,
                                           const CIMObjectPath& instanceReference,
                                           const Boolean includeQualifiers,
                                           const Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList,
                                           InstanceResponseHandler& handler) {
    _association().getInstance(context, instanceReference, handler, [&] {
        return _getInstances(
            KSV_AssociationShape::referencedKey(instanceReference, "Dependent", "DeviceID"),
            includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_DiskSoftwareProvider::enumerateInstances(const OperationContext& context,
                                                  const CIMObjectPath&,
                                                  const Boolean includeQualifiers,
                                                  const Boolean includeClassOrigin,
                                                  const CIMPropertyList& propertyList,
                                                  InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_DiskSoftwareProvider::enumerateInstanceNames(const OperationContext& context,
                                                      const CIMObjectPath&,
                                                      ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
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

KSV_Association KSV_DiskSoftwareProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_sftwClassName), _ddClassNames, _cimom,
                           _hostAddr);
}

// A missing key is only logged: unlike the package association, the answer is empty, not an
// error.
Array<CIMInstance>
KSV_DiskSoftwareProvider::_getRelatedInstances(const CIMObjectPath& objectName,
                                               bool includeQualifiers, bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(WALKS.relatedInstances.entry, className);
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
    log_message(4, "%s", WALKS.relatedInstances.exit);
    return related;
}

Array<CIMInstance> KSV_DiskSoftwareProvider::_identityOf(const String& deviceID,
                                                         bool includeQualifiers,
                                                         bool includeClassOrigin,
                                                         const CIMPropertyList& propertyList) {
    const CIMClass identityClass = KSV_DiskProviderSupport::storedClass(
        _cimom, _sftwClassName, includeQualifiers, includeClassOrigin, propertyList);
    Array<CIMInstance> identities;
    KSV_DiskList::forFirstPresentDisk(
        KSV_DiskList::selectorOf(deviceID),
        [&](const api_Disk_t& disk) {
            return disk.fwVersion[0] != '\0' && KSV_DiskList::hasDeviceID(disk, deviceID);
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
    const CString versionText = version.getCString();
    const KSV_DiskDriveProvider drives;
    return KSV_DiskProviderSupport::describeDisksWhere(
        _cimom, "KSV_DiskDrive", includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return disk.fwVersion[0] != '\0' && std::strstr(versionText, disk.fwVersion) != nullptr;
        },
        [&](const CIMClass& diskClass, const api_Disk_t& disk) {
            return drives.build_instance(diskClass, disk, _hostAddr, _systemName, _isQuadPort);
        });
}

Array<CIMObjectPath>
KSV_DiskSoftwareProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    return KSV_AssociationShape::relatedNames(WALKS.relatedInstanceNames, objectName, [&] {
        return _getRelatedInstances(objectName, false, false, CIMPropertyList());
    });
}

// Disks without a firmware version run no identity. Disks sharing a version each have their
// own association to that one identity.
Array<CIMInstance> KSV_DiskSoftwareProvider::_getInstances(const String& deviceID,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    const KSV_DiskDriveProvider drives;
    const KSV_DiskSoftwareIdentityProvider identities;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [](const api_Disk_t& disk) { return disk.fwVersion[0] != '\0'; },
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(
                identities.buildObjectPath(_hostAddr, identities.makeInstanceID(disk.fwVersion)),
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName));
        });
}

PEGASUS_NAMESPACE_END
