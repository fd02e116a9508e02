#include "KSV_DiskPackageRealizesProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskPackageRealizesProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_DiskPackageRealizesProvider",
    {"-->KSV_DiskPackageRealizesProvider::associators\n",
     "KSV_DiskPackageRealizesProvider::associators: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_DiskPackageRealizesProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_DiskPackageRealizesProvider::associators\n"},
    {"-->KSV_DiskPackageRealizesProvider::associatorNames\n",
     "KSV_DiskPackageRealizesProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_DiskPackageRealizesProvider::associatorNames: invalid params: associationClass = %s, "
     "resultClass = %s\n",
     "<--KSV_DiskPackageRealizesProvider::associatorNames\n"},
    {"-->KSV_DiskPackageRealizesProvider::references\n",
     "KSV_DiskPackageRealizesProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_DiskPackageRealizesProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_DiskPackageRealizesProvider::references\n"},
    {"-->KSV_DiskPackageRealizesProvider::referenceNames\n",
     "KSV_DiskPackageRealizesProvider::references: objectName = %s; resultClass = %s",
     "KSV_DiskPackageRealizesProvider::referenceNames: invalid params: role = %s, resultClass = %s "
     "\n",
     "<--KSV_DiskPackageRealizesProvider::referenceNames\n"},
    {"-->KSV_DiskPackageRealizesProvider::getInstance() \n",
     "<-- KSV_DiskPackageRealizesProvider::getInstance()\n\n"},
    "KSV_DiskPackageRealizesProvider::getInstance(): Invalid number of keys (%d)\n",
    {"-->KSV_DiskPackageRealizesProvider::enumerateInstances()\n",
     "<-- KSV_DiskPackageRealizesProvider::enumerateInstances() \n"},
    {"--> KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n",
     "<-- KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n"}};

// The far-end walks are traced in the singular.
const KSV_WalkTexts WALKS = {
    {"-->KSV_DiskPackageRealizesProvider::_getRelatedInstance: className = %s \n",
     "<--KSV_DiskPackageRealizesProvider::_getRelatedInstance\n"},
    {"-->KSV_DiskPackageRealizesProvider::_getRelatedInstanceName: className = %s \n",
     "<--KSV_DiskPackageRealizesProvider::_getRelatedInstanceName\n"},
    {"-->KSV_DiskPackageRealizesProvider::_getInstances\n",
     "<--KSV_DiskPackageRealizesProvider::_getInstances\n"},
    {"-->KSV_DiskPackageRealizesProvider::_getInstanceNames\n",
     "<--KSV_DiskPackageRealizesProvider::_getInstanceNames\n"}};

// Antecedent is the package, Dependent the disk. Both ends belong to one disk record, so a
// result class naming the object's own end is still answered with the far end.
const KSV_AssociationRules RULES = {"Antecedent",
                                    "Dependent",
                                    "CIM_Realizes",
                                    {"CIM_DiskDrive", "CIM_PhysicalPackage"},
                                    false,
                                    {KSV_EndTest::NONE, {}},
                                    {KSV_EndTest::NONE, {}}};

} // namespace

KSV_DiskPackageRealizesProvider::KSV_DiskPackageRealizesProvider() : _isQuadPort(0) {}

KSV_DiskPackageRealizesProvider::~KSV_DiskPackageRealizesProvider() {}

void KSV_DiskPackageRealizesProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskPackageRealizesProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_DiskPackageRealizes");
    _ddClassNames.append(CIMName("KSV_DiskDrive"));
    _ddpClassName = CIMName("KSV_DiskDrivePackage");
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _isQuadPort = KSV_Common::isQuadPortSystem(cimom);
    log_message(4, "<-- KSV_DiskPackageRealizesProvider::initialize(cimom)\n)");
}

void KSV_DiskPackageRealizesProvider::terminate() {
    delete this;
}

void KSV_DiskPackageRealizesProvider::associators(
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

void KSV_DiskPackageRealizesProvider::associatorNames(const OperationContext& context,
                                                      const CIMObjectPath& objectName,
                                                      const CIMName& associationClass,
                                                      const CIMName& resultClass,
                                                      const String& role, const String& resultRole,
                                                      ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName); });
}

// The far end must exist: an absent or unknown disk has no association, whatever its path.
void KSV_DiskPackageRealizesProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().references(context, objectName, resultClass, role, includeQualifiers,
                              includeClassOrigin, propertyList, handler,
                              [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskPackageRealizesProvider::referenceNames(const OperationContext& context,
                                                     const CIMObjectPath& objectName,
                                                     const CIMName& resultClass, const String& role,
                                                     ObjectPathResponseHandler& handler) {
    _association().referenceNames(context, objectName, resultClass, role, handler,
                                  [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskPackageRealizesProvider::getInstance(const OperationContext& context,
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

void KSV_DiskPackageRealizesProvider::enumerateInstances(const OperationContext& context,
                                                         const CIMObjectPath&,
                                                         const Boolean includeQualifiers,
                                                         const Boolean includeClassOrigin,
                                                         const CIMPropertyList& propertyList,
                                                         InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_DiskPackageRealizesProvider::enumerateInstanceNames(const OperationContext& context,
                                                             const CIMObjectPath&,
                                                             ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
}

void KSV_DiskPackageRealizesProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                                     const CIMInstance&, const Boolean,
                                                     const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskPackageRealizesProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                                     const CIMInstance&,
                                                     ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskPackageRealizesProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                                     ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

KSV_Association KSV_DiskPackageRealizesProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_ddpClassName), _ddClassNames, _cimom,
                           _hostAddr);
}

// A package's Tag holds its disk's DeviceID, so either end names the disk record to read.
Array<CIMInstance> KSV_DiskPackageRealizesProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(WALKS.relatedInstances.entry, className);
    const bool fromPackage = className.equal(_ddpClassName);
    const String deviceID =
        KSV_Common::getStringProperty(objectName, fromPackage ? "Tag" : "DeviceID");
    if (deviceID.size() == 0) {
        throw CIMInvalidParameterException(
            ClassName + (fromPackage ? " Tag key not found." : " DeviceID key not found."));
    }
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        related = KSV_DiskProviderSupport::describeDiskOf(
            _cimom, _ddpClassName, deviceID, includeQualifiers, includeClassOrigin, propertyList,
            [&](const CIMClass& packageClass, const api_Disk_t& disk) {
                return KSV_DiskDrivePackageProvider().build_instance(packageClass, disk, _hostAddr);
            });
    } else if (fromPackage) {
        related = KSV_DiskProviderSupport::describeDiskDrive(_cimom, deviceID, includeQualifiers,
                                                             includeClassOrigin, propertyList,
                                                             _hostAddr, _systemName, _isQuadPort);
    }
    log_message(4, "%s", WALKS.relatedInstances.exit);
    return related;
}

Array<CIMObjectPath>
KSV_DiskPackageRealizesProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    return KSV_AssociationShape::relatedNames(WALKS.relatedInstanceNames, objectName, [&] {
        return _getRelatedInstances(objectName, false, false, CIMPropertyList());
    });
}

Array<CIMInstance>
KSV_DiskPackageRealizesProvider::_getInstances(const String& deviceID, bool includeQualifiers,
                                               bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    const KSV_DiskDriveProvider drives;
    const KSV_DiskDrivePackageProvider packages;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(
                packages.buildObjectPath(_hostAddr, disk.deviceID),
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName));
        });
}

PEGASUS_NAMESPACE_END
