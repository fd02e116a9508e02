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

void KSV_DiskPackageRealizesProvider::associatorNames(const OperationContext& context,
                                                      const CIMObjectPath& objectName,
                                                      const CIMName& associationClass,
                                                      const CIMName& resultClass,
                                                      const String& role, const String& resultRole,
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
void KSV_DiskPackageRealizesProvider::references(
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
    const bool fromPackage = objectName.getClassName().equal(_ddpClassName);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        associations.append(_buildAssociationInstance(
            fromPackage ? farEnds[i] : objectName, fromPackage ? objectName : farEnds[i],
            includeQualifiers, includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskPackageRealizesProvider::referenceNames(const OperationContext& context,
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
    const bool fromPackage = objectName.getClassName().equal(_ddpClassName);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        associations.append(_buildAssociationName(fromPackage ? farEnds[i] : objectName,
                                                  fromPackage ? objectName : farEnds[i]));
    }
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_DiskPackageRealizesProvider::getInstance(const OperationContext& context,
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

void KSV_DiskPackageRealizesProvider::enumerateInstances(const OperationContext& context,
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

void KSV_DiskPackageRealizesProvider::enumerateInstanceNames(const OperationContext& context,
                                                             const CIMObjectPath&,
                                                             ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
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

CIMObjectPath
KSV_DiskPackageRealizesProvider::_buildAssociationName(const CIMObjectPath& diskPath,
                                                       const CIMObjectPath& packagePath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "Antecedent", "Dependent", packagePath,
                                      diskPath, _hostAddr, KSV_AssociationShape::NAMESPACE);
}

CIMInstance KSV_DiskPackageRealizesProvider::_buildAssociationInstance(
    const CIMObjectPath& diskPath, const CIMObjectPath& packagePath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "Antecedent", "Dependent", packagePath,
                                          diskPath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

// A package's Tag holds its disk's DeviceID, so either end names the disk record to read.
Array<CIMInstance> KSV_DiskPackageRealizesProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskPackageRealizesProvider::_getRelatedInstance: className = %s \n", className);
    const bool fromPackage = className.equal(_ddpClassName);
    const String deviceID =
        KSV_Common::getStringProperty(objectName, fromPackage ? "Tag" : "DeviceID");
    if (deviceID.size() == 0) {
        throw CIMInvalidParameterException(
            ClassName + (fromPackage ? " Tag key not found." : " DeviceID key not found."));
    }
    Array<CIMInstance> related;
    if (KSV_Common::isPartOfArray(className, _ddClassNames)) {
        const CIMClass packageClass = KSV_AssociationShape::storedClass(
            _cimom, _ddpClassName, includeQualifiers, includeClassOrigin, propertyList);
        KSV_AssociationShape::forPresentDisk(deviceID, [&](const api_Disk_t& disk) {
            related.append(
                KSV_DiskDrivePackageProvider().build_instance(packageClass, disk, _hostAddr));
        });
    } else if (fromPackage) {
        const CIMClass diskClass = KSV_AssociationShape::storedClass(
            _cimom, "KSV_DiskDrive", includeQualifiers, includeClassOrigin, propertyList);
        KSV_AssociationShape::forPresentDisk(deviceID, [&](const api_Disk_t& disk) {
            related.append(KSV_DiskDriveProvider().build_instance(diskClass, disk, _hostAddr,
                                                                  _systemName, _isQuadPort));
        });
    }
    log_message(4, "<--KSV_DiskPackageRealizesProvider::_getRelatedInstance\n");
    return related;
}

Array<CIMObjectPath>
KSV_DiskPackageRealizesProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName) {
    KSV_AssociationShape::traceClass(
        "-->KSV_DiskPackageRealizesProvider::_getRelatedInstanceName: className = %s \n",
        objectName.getClassName());
    const Array<CIMObjectPath> related = KSV_AssociationShape::pathsOf(
        _getRelatedInstances(objectName, false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskPackageRealizesProvider::_getRelatedInstanceName\n");
    return related;
}

Array<CIMInstance>
KSV_DiskPackageRealizesProvider::_getInstances(const String& deviceID, bool includeQualifiers,
                                               bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_DiskPackageRealizesProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskDriveProvider drives;
    const KSV_DiskDrivePackageProvider packages;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            associations.append(_buildAssociationInstance(
                drives.buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName),
                packages.buildObjectPath(_hostAddr, disk.deviceID), includeQualifiers,
                includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_DiskPackageRealizesProvider::_getInstances\n");
    return associations;
}

Array<CIMObjectPath> KSV_DiskPackageRealizesProvider::_getInstanceNames() {
    log_message(4, "-->KSV_DiskPackageRealizesProvider::_getInstanceNames\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_DiskPackageRealizesProvider::_getInstanceNames\n");
    return names;
}

bool KSV_DiskPackageRealizesProvider::_invalidParms(const CIMObjectPath& objectName,
                                                    const String& role, const String& resultRole,
                                                    const CIMName& resultClass,
                                                    const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, KSV_AssociationShape::classList(_ddpClassName),
                                   _ddClassNames};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
