#include "KSV_MagazineContainerProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "DriveCage/KSV_MagazineProvider.h"
#include "KSV_DiskDrivePackageProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_MagazineContainerProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_MagazineContainerProvider",
    {"-->KSV_MagazineContainerProvider::associators\n",
     "KSV_MagazineContainerProvider::associators: objectName = %s; associationClass=%s; "
     "resultClass=%s \n",
     "KSV_MagazineContainerProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_MagazineContainerProvider::associators\n"},
    {"-->KSV_MagazineContainerProvider::associatorNames\n",
     "KSV_MagazineContainerProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass=%s \n",
     "KSV_MagazineContainerProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_MagazineContainerProvider::associatorNames\n"},
    {"-->KSV_MagazineContainerProvider::references\n",
     "KSV_MagazineContainerProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_MagazineContainerProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_MagazineContainerProvider::references\n"},
    {"-->KSV_MagazineContainerProvider::referenceNames\n",
     "KSV_MagazineContainerProvider::references: objectName = %s; resultClass = %s",
     "KSV_MagazineContainerProvider::referenceNames: invalid params: role = %s, resultClass = %s "
     "\n",
     "<--KSV_MagazineContainerProvider::referenceNames\n"},
    {"-->KSV_MagazineContainerProvider::getInstance() \n",
     "<-- KSV_MagazineContainerProvider::getInstance()\n\n"},
    "KSV_MagazineContainerProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_MagazineContainerProvider::enumerateInstances() \n",
     "<-- KSV_MagazineContainerProvider::enumerateInstances() \n"},
    {"--> KSV_MagazineContainerProvider::enumerateInstanceNames() \n",
     "<-- KSV_MagazineContainerProvider::enumerateInstanceNames() \n"}};

// GroupComponent is the magazine, PartComponent a disk's package. A result class naming the
// object's own end is answered with the far end, as for the disk's package.
const KSV_AssociationRules RULES = {
    "GroupComponent",        "PartComponent", "CIM_Container",
    {"CIM_PhysicalPackage"}, false,           {KSV_EndTest::NONE, {}},
    {KSV_EndTest::NONE, {}}};

} // namespace

KSV_MagazineContainerProvider::KSV_MagazineContainerProvider() {}

KSV_MagazineContainerProvider::~KSV_MagazineContainerProvider() {}

void KSV_MagazineContainerProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_MagazineContainerProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_MagazineContainer");
    _ddpClassName = CIMName("KSV_DiskDrivePackage");
    _magClassNames.append(CIMName("KSV_Magazine"));
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    log_message(4, "<-- KSV_MagazineContainerProvider::initialize(cimom)\n)");
}

void KSV_MagazineContainerProvider::terminate() {
    delete this;
}

void KSV_MagazineContainerProvider::associators(
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

void KSV_MagazineContainerProvider::associatorNames(const OperationContext& context,
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

// The far end must exist: a package whose magazine the server does not know has no association.
void KSV_MagazineContainerProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
        resultClass,       role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "references"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> farEnds = _getRelatedInstanceNames(objectName, context);
    const bool fromPackage = objectName.getClassName().equal(_ddpClassName);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        associations.append(_buildAssociationInstance(
            fromPackage ? objectName : farEnds[i], fromPackage ? farEnds[i] : objectName,
            includeQualifiers, includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_MagazineContainerProvider::referenceNames(const OperationContext& context,
                                                   const CIMObjectPath& objectName,
                                                   const CIMName& resultClass, const String& role,
                                                   ObjectPathResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(),
        resultClass,           role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "referenceNames"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> farEnds = _getRelatedInstanceNames(objectName, context);
    const bool fromPackage = objectName.getClassName().equal(_ddpClassName);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++)
        associations.append(_buildAssociationName(fromPackage ? objectName : farEnds[i],
                                                  fromPackage ? farEnds[i] : objectName));
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_MagazineContainerProvider::getInstance(const OperationContext& context,
                                                const CIMObjectPath& instanceReference,
                                                const Boolean includeQualifiers,
                                                const Boolean includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.getInstance.entry, TEXTS, context);
    KSV_AssociationShape::requireTwoKeys(TEXTS, instanceReference);
    const String deviceID =
        KSV_AssociationShape::referencedKey(instanceReference, "PartComponent", "Tag");
    KSV_AssociationShape::deliverRequested(
        TEXTS, _getInstances(deviceID, includeQualifiers, includeClassOrigin, propertyList),
        instanceReference, handler);
}

void KSV_MagazineContainerProvider::enumerateInstances(const OperationContext& context,
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

void KSV_MagazineContainerProvider::enumerateInstanceNames(const OperationContext& context,
                                                           const CIMObjectPath&,
                                                           ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
}

void KSV_MagazineContainerProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                                   const CIMInstance&, const Boolean,
                                                   const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_MagazineContainerProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                                   const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_MagazineContainerProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                                   ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMObjectPath
KSV_MagazineContainerProvider::_buildAssociationName(const CIMObjectPath& packagePath,
                                                     const CIMObjectPath& magazinePath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "GroupComponent", "PartComponent",
                                      magazinePath, packagePath, _hostAddr,
                                      KSV_AssociationShape::NAMESPACE);
}

CIMInstance KSV_MagazineContainerProvider::_buildAssociationInstance(
    const CIMObjectPath& packagePath, const CIMObjectPath& magazinePath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "GroupComponent", "PartComponent",
                                          magazinePath, packagePath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

// A magazine's Tag is the parentDeviceID of its disks; a package's Tag is its disk's DeviceID.
Array<CIMInstance> KSV_MagazineContainerProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_MagazineContainerProvider::_getRelatedInstances: className = %s \n", className);
    const String tag = KSV_Common::getStringProperty(objectName, "Tag");
    if (tag.size() == 0)
        throw CIMInvalidParameterException(ClassName + " Tag key not found.");
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _magClassNames)) {
        related = _packagesIn(tag, includeQualifiers, includeClassOrigin, propertyList);
    } else if (className.equal(_ddpClassName)) {
        related =
            _magazineHolding(tag, context, includeQualifiers, includeClassOrigin, propertyList);
    }
    log_message(4, "<--KSV_MagazineContainerProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMInstance> KSV_MagazineContainerProvider::_packagesIn(const String& magazineTag,
                                                              bool includeQualifiers,
                                                              bool includeClassOrigin,
                                                              const CIMPropertyList& propertyList) {
    const CIMClass packageClass = KSV_AssociationShape::storedClass(
        _cimom, _ddpClassName, includeQualifiers, includeClassOrigin, propertyList);
    const KSV_DiskDrivePackageProvider packages;
    Array<CIMInstance> packagesIn;
    KSV_AssociationShape::forEachPresentDisk(API_ALL_DISKS, [&](const api_Disk_t& disk) {
        if (String::equal(magazineTag, disk.parentDeviceID))
            packagesIn.append(packages.build_instance(packageClass, disk, _hostAddr));
    });
    return packagesIn;
}

// The magazine belongs to the drive-cage module: the server answers for it. A magazine it cannot
// produce is left out, so that one missing magazine does not fail a walk over all packages.
Array<CIMInstance> KSV_MagazineContainerProvider::_magazineHolding(
    const String& packageTag, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    Array<CIMInstance> magazines;
    KSV_AssociationShape::forPresentDisk(packageTag, [&](const api_Disk_t& disk) {
        const CIMObjectPath magazinePath = KSV_MagazineProvider::buildObjectPath(
            KSV_MagazineProvider::_getCIMName(disk.cageType), _hostAddr, disk.parentDeviceID);
        try {
            magazines.append(_cimom.getInstance(
                context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), magazinePath, false,
                includeQualifiers, includeClassOrigin, propertyList));
        } catch (...) {
        }
    });
    return magazines;
}

Array<CIMObjectPath>
KSV_MagazineContainerProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                        const OperationContext& context) {
    KSV_AssociationShape::traceClass(
        "-->KSV_MagazineContainerProvider::_getRelatedInstanceNames: className = %s \n",
        objectName.getClassName());
    const Array<CIMObjectPath> related = KSV_AssociationShape::pathsOf(
        _getRelatedInstances(objectName, context, false, false, CIMPropertyList()));
    log_message(4, "<--KSV_MagazineContainerProvider::_getRelatedInstanceNames\n");
    return related;
}

// The magazine's path is built from the disk record alone; the server is not asked for it.
Array<CIMInstance>
KSV_MagazineContainerProvider::_getInstances(const String& deviceID, bool includeQualifiers,
                                             bool includeClassOrigin,
                                             const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_MagazineContainerProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskDrivePackageProvider packages;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            const CIMObjectPath magazinePath = KSV_MagazineProvider::buildObjectPath(
                KSV_MagazineProvider::_getCIMName(disk.cageType), _hostAddr, disk.parentDeviceID);
            associations.append(_buildAssociationInstance(
                packages.buildObjectPath(_hostAddr, disk.deviceID), magazinePath, includeQualifiers,
                includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_MagazineContainerProvider::_getInstances\n");
    return associations;
}

Array<CIMObjectPath> KSV_MagazineContainerProvider::_getInstanceNames() {
    log_message(4, "-->KSV_MagazineContainerProvider::_getInstanceNames\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_MagazineContainerProvider::_getInstanceNames\n");
    return names;
}

bool KSV_MagazineContainerProvider::_invalidParms(const CIMObjectPath& objectName,
                                                  const String& role, const String& resultRole,
                                                  const CIMName& resultClass,
                                                  const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, _magClassNames,
                                   KSV_AssociationShape::classList(_ddpClassName)};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
