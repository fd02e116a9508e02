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

const KSV_WalkTexts WALKS = {
    {"-->KSV_MagazineContainerProvider::_getRelatedInstances: className = %s \n",
     "<--KSV_MagazineContainerProvider::_getRelatedInstances\n"},
    {"-->KSV_MagazineContainerProvider::_getRelatedInstanceNames: className = %s \n",
     "<--KSV_MagazineContainerProvider::_getRelatedInstanceNames\n"},
    {"-->KSV_MagazineContainerProvider::_getInstances\n",
     "<--KSV_MagazineContainerProvider::_getInstances\n"},
    {"-->KSV_MagazineContainerProvider::_getInstanceNames\n",
     "<--KSV_MagazineContainerProvider::_getInstanceNames\n"}};

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
    _association().associators(
        context, objectName, associationClass, resultClass, role, resultRole, handler, [&] {
            return _getRelatedInstances(objectName, context, includeQualifiers, includeClassOrigin,
                                        propertyList);
        });
}

void KSV_MagazineContainerProvider::associatorNames(const OperationContext& context,
                                                    const CIMObjectPath& objectName,
                                                    const CIMName& associationClass,
                                                    const CIMName& resultClass, const String& role,
                                                    const String& resultRole,
                                                    ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName, context); });
}

// The far end must exist: a package whose magazine the server does not know has no association.
void KSV_MagazineContainerProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().references(context, objectName, resultClass, role, includeQualifiers,
                              includeClassOrigin, propertyList, handler,
                              [&] { return _getRelatedInstanceNames(objectName, context); });
}

void KSV_MagazineContainerProvider::referenceNames(const OperationContext& context,
                                                   const CIMObjectPath& objectName,
                                                   const CIMName& resultClass, const String& role,
                                                   ObjectPathResponseHandler& handler) {
    _association().referenceNames(context, objectName, resultClass, role, handler,
                                  [&] { return _getRelatedInstanceNames(objectName, context); });
}

void KSV_MagazineContainerProvider::getInstance(const OperationContext& context,
                                                const CIMObjectPath& instanceReference,
                                                const Boolean includeQualifiers,
                                                const Boolean includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                InstanceResponseHandler& handler) {
    _association().getInstance(context, instanceReference, handler, [&] {
        return _getInstances(
            KSV_AssociationShape::referencedKey(instanceReference, "PartComponent", "Tag"),
            includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_MagazineContainerProvider::enumerateInstances(const OperationContext& context,
                                                       const CIMObjectPath&,
                                                       const Boolean includeQualifiers,
                                                       const Boolean includeClassOrigin,
                                                       const CIMPropertyList& propertyList,
                                                       InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_MagazineContainerProvider::enumerateInstanceNames(const OperationContext& context,
                                                           const CIMObjectPath&,
                                                           ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
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

KSV_Association KSV_MagazineContainerProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName, _magClassNames,
                           KSV_AssociationShape::classList(_ddpClassName), _cimom, _hostAddr);
}

// A magazine's Tag is the parentDeviceID of its disks; a package's Tag is its disk's DeviceID.
Array<CIMInstance> KSV_MagazineContainerProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(WALKS.relatedInstances.entry, className);
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
    log_message(4, "%s", WALKS.relatedInstances.exit);
    return related;
}

Array<CIMInstance> KSV_MagazineContainerProvider::_packagesIn(const String& magazineTag,
                                                              bool includeQualifiers,
                                                              bool includeClassOrigin,
                                                              const CIMPropertyList& propertyList) {
    const KSV_DiskDrivePackageProvider packages;
    return KSV_DiskProviderSupport::describeDisksWhere(
        _cimom, _ddpClassName, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) { return String::equal(magazineTag, disk.parentDeviceID); },
        [&](const CIMClass& packageClass, const api_Disk_t& disk) {
            return packages.build_instance(packageClass, disk, _hostAddr);
        });
}

// The magazine belongs to the drive-cage module: the server answers for it. A magazine it cannot
// produce is left out, so that one missing magazine does not fail a walk over all packages.
Array<CIMInstance> KSV_MagazineContainerProvider::_magazineHolding(
    const String& packageTag, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    Array<CIMInstance> magazines;
    KSV_DiskList::forPresentDisk(packageTag, [&](const api_Disk_t& disk) {
        const CIMObjectPath magazinePath = _magazineOf(disk);
        try {
            magazines.append(_cimom.getInstance(
                context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), magazinePath, false,
                includeQualifiers, includeClassOrigin, propertyList));
        } catch (...) {
        }
    });
    return magazines;
}

CIMObjectPath KSV_MagazineContainerProvider::_magazineOf(const api_Disk_t& disk) const {
    return KSV_MagazineProvider::buildObjectPath(KSV_MagazineProvider::_getCIMName(disk.cageType),
                                                 _hostAddr, disk.parentDeviceID);
}

Array<CIMObjectPath>
KSV_MagazineContainerProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                        const OperationContext& context) {
    return KSV_AssociationShape::relatedNames(WALKS.relatedInstanceNames, objectName, [&] {
        return _getRelatedInstances(objectName, context, false, false, CIMPropertyList());
    });
}

// The magazine's path is built from the disk record alone; the server is not asked for it.
Array<CIMInstance>
KSV_MagazineContainerProvider::_getInstances(const String& deviceID, bool includeQualifiers,
                                             bool includeClassOrigin,
                                             const CIMPropertyList& propertyList) {
    const KSV_DiskDrivePackageProvider packages;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(_magazineOf(disk),
                                packages.buildObjectPath(_hostAddr, disk.deviceID));
        });
}

PEGASUS_NAMESPACE_END
