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

const KSV_WalkTexts WALKS = {
    {"-->KSV_DiskPresentProvider::_getRelatedInstances: className = %s \n",
     "<--KSV_DiskPresentProvider::_getRelatedInstances\n"},
    {"-->KSV_DiskPresentProvider::_getRelatedInstanceNames: className = %s \n",
     "<--KSV_DiskPresentProvider::_getRelatedInstanceNames\n"},
    {"-->KSV_DiskPresentProvider::_getInstances\n", "<--KSV_DiskPresentProvider::_getInstances\n"},
    {"-->KSV_DiskPresentProvider::_getInstanceNames\n",
     "<--KSV_DiskPresentProvider::_getInstanceNames\n"}};

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
    _association().associators(context, objectName, associationClass, resultClass, role, resultRole,
                               handler, [&] {
                                   return _getRelatedInstances(objectName, includeQualifiers,
                                                               includeClassOrigin, propertyList);
                               });
}

void KSV_DiskPresentProvider::associatorNames(const OperationContext& context,
                                              const CIMObjectPath& objectName,
                                              const CIMName& associationClass,
                                              const CIMName& resultClass, const String& role,
                                              const String& resultRole,
                                              ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(objectName); });
}

// The far end must exist: an absent or unknown disk has no association, whatever its path.
void KSV_DiskPresentProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().references(context, objectName, resultClass, role, includeQualifiers,
                              includeClassOrigin, propertyList, handler,
                              [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskPresentProvider::referenceNames(const OperationContext& context,
                                             const CIMObjectPath& objectName,
                                             const CIMName& resultClass, const String& role,
                                             ObjectPathResponseHandler& handler) {
    _association().referenceNames(context, objectName, resultClass, role, handler,
                                  [&] { return _getRelatedInstanceNames(objectName); });
}

void KSV_DiskPresentProvider::getInstance(const OperationContext& context,
                                          const CIMObjectPath& instanceReference,
                                          const Boolean includeQualifiers,
                                          const Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList,
                                          InstanceResponseHandler& handler) {
    _association().getInstance(context, instanceReference, handler, [&] {
        return _getInstances(
            KSV_AssociationShape::referencedKey(instanceReference, "Antecedent", "DeviceID"),
            includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_DiskPresentProvider::enumerateInstances(const OperationContext& context,
                                                 const CIMObjectPath&,
                                                 const Boolean includeQualifiers,
                                                 const Boolean includeClassOrigin,
                                                 const CIMPropertyList& propertyList,
                                                 InstanceResponseHandler& handler) {
    _association().enumerateInstances(context, handler, [&] {
        return _getInstances(String(), includeQualifiers, includeClassOrigin, propertyList);
    });
}

void KSV_DiskPresentProvider::enumerateInstanceNames(const OperationContext& context,
                                                     const CIMObjectPath&,
                                                     ObjectPathResponseHandler& handler) {
    _association().enumerateInstanceNames(context, handler, WALKS.instanceNames, [&] {
        return _getInstances(String(), false, false, CIMPropertyList());
    });
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

KSV_Association KSV_DiskPresentProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName, _ddClassNames,
                           KSV_AssociationShape::classList(_extClassName), _cimom, _hostAddr);
}

// A disk and its extent share the DeviceID, so either end names the disk record to read.
Array<CIMInstance>
KSV_DiskPresentProvider::_getRelatedInstances(const CIMObjectPath& objectName,
                                              bool includeQualifiers, bool includeClassOrigin,
                                              const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(WALKS.relatedInstances.entry, className);
    const String deviceID = KSV_Common::getStringProperty(objectName, "DeviceID");
    if (deviceID.size() == 0)
        throw CIMInvalidParameterException(ClassName + " DeviceID key not found.");
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        related = KSV_DiskProviderSupport::describeDiskOf(
            _cimom, _extClassName, deviceID, includeQualifiers, includeClassOrigin, propertyList,
            [&](CIMClass& extentClass, const api_Disk_t& disk) {
                return KSV_DiskStorageExtentProvider().buildInstance(&disk, _systemName, _hostAddr,
                                                                     extentClass);
            });
    } else if (className.equal(_extClassName)) {
        related = KSV_DiskProviderSupport::describeDiskDrive(_cimom, deviceID, includeQualifiers,
                                                             includeClassOrigin, propertyList,
                                                             _hostAddr, _systemName, _isQuadPort);
    }
    log_message(4, "%s", WALKS.relatedInstances.exit);
    return related;
}

Array<CIMObjectPath>
KSV_DiskPresentProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    return KSV_AssociationShape::relatedNames(WALKS.relatedInstanceNames, objectName, [&] {
        return _getRelatedInstances(objectName, false, false, CIMPropertyList());
    });
}

Array<CIMInstance> KSV_DiskPresentProvider::_getInstances(const String& deviceID,
                                                          bool includeQualifiers,
                                                          bool includeClassOrigin,
                                                          const CIMPropertyList& propertyList) {
    const KSV_DiskDriveProvider drives;
    const KSV_DiskStorageExtentProvider extents;
    return _association().diskAssociations(
        WALKS.instances, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](const api_Disk_t& disk) {
            return KSV_EndPaths(
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName),
                extents.buildObjectPath(_hostAddr, disk.deviceID, _systemName));
        });
}

PEGASUS_NAMESPACE_END
