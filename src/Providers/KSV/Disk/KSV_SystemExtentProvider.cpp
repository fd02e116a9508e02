#include "KSV_SystemExtentProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskStorageExtentProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_SystemExtentProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_SystemExtentProvider",
    {"-->KSV_SystemExtentProvider::associators\n",
     "KSV_SystemExtentProvider::associators: objectName = %s; associationClass = %s; resultClass = "
     "%s \n",
     "KSV_SystemExtentProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_SystemExtentProvider::associators\n"},
    {"-->KSV_SystemExtentProvider::associatorNames\n",
     "KSV_SystemExtentProvider::associatorNames: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_SystemExtentProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_SystemExtentProvider::associatorNames\n"},
    {"-->KSV_SystemExtentProvider::references\n",
     "KSV_SystemExtentProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_SystemExtentProvider::references: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemExtentProvider::references\n"},
    {"-->KSV_SystemExtentProvider::referenceNames\n",
     "KSV_SystemExtentProvider::references: objectName = %s; resultClass = %s",
     "KSV_SystemExtentProvider::referenceNames: invalid params: role = %s, resultClass = %s \n",
     "<--KSV_SystemExtentProvider::referenceNames\n"},
    {"-->KSV_SystemExtentProvider::getInstance() \n",
     "<-- KSV_SystemExtentProvider::getInstance()\n\n"},
    "KSV_SystemExtentProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_SystemExtentProvider::enumerateInstances() \n",
     "<-- KSV_SystemExtentProvider::enumerateInstances() \n"},
    {"--> KSV_SystemExtentProvider::enumerateInstanceNames() \n",
     "<-- KSV_SystemExtentProvider::enumerateInstanceNames() \n"}};

// GroupComponent is the system, PartComponent an extent. Unlike the disk association, a
// generic result class must name the far end itself ("CIM_System" is refused).
const KSV_AssociationRules RULES = {
    "GroupComponent",
    "PartComponent",
    "CIM_SystemDevice",
    {"CIM_ComputerSystem", "CIM_LogicalDevice", "CIM_StorageExtent"},
    false,
    {KSV_EndTest::ACCEPT_ONLY, {"CIM_LogicalDevice", "CIM_StorageExtent", "KSV_DiskStorageExtent"}},
    {KSV_EndTest::ACCEPT_ONLY, {"CIM_ComputerSystem", "KSV_StorageSystem"}}};

} // namespace

KSV_SystemExtentProvider::KSV_SystemExtentProvider() {}

KSV_SystemExtentProvider::~KSV_SystemExtentProvider() {}

void KSV_SystemExtentProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_SystemExtentProvider::initialize(cimom)\n)");
    _cimom = cimom;
    _assoClassName = CIMName("KSV_SystemExtent");
    _sysClassName = CIMName("KSV_StorageSystem");
    _extClassName = CIMName("KSV_DiskStorageExtent");
    _sysObjectPath = KSV_Common::getSystemObjectPath(_cimom);
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    log_message(4, "<-- KSV_SystemExtentProvider::initialize(cimom)\n)");
}

void KSV_SystemExtentProvider::terminate() {
    delete this;
}

void KSV_SystemExtentProvider::associators(
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

void KSV_SystemExtentProvider::associatorNames(const OperationContext& context,
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

void KSV_SystemExtentProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
        resultClass,       role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "references"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> extents = _referencedExtents(objectName, context);
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < extents.size(); i++) {
        associations.append(_buildAssociationInstance(extents[i], includeQualifiers,
                                                      includeClassOrigin, propertyList));
    }
    KSV_AssociationShape::deliverObjects(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemExtentProvider::referenceNames(const OperationContext& context,
                                              const CIMObjectPath& objectName,
                                              const CIMName& resultClass, const String& role,
                                              ObjectPathResponseHandler& handler) {
    const KSV_AssociationRequest request{
        KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(),
        resultClass,           role,       String::EMPTY};
    KSV_AssociationShape::enter(TEXTS, context, request);
    if (_invalidParms(objectName, role, String(), resultClass, "referenceNames"))
        return KSV_AssociationShape::reject(TEXTS, request);
    const Array<CIMObjectPath> extents = _referencedExtents(objectName, context);
    Array<CIMObjectPath> associations;
    for (Uint32 i = 0; i < extents.size(); i++)
        associations.append(_buildAssociationName(extents[i]));
    KSV_AssociationShape::deliverAll(handler, associations);
    KSV_AssociationShape::leave(TEXTS, request);
}

void KSV_SystemExtentProvider::getInstance(const OperationContext& context,
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

void KSV_SystemExtentProvider::enumerateInstances(const OperationContext& context,
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

void KSV_SystemExtentProvider::enumerateInstanceNames(const OperationContext& context,
                                                      const CIMObjectPath&,
                                                      ObjectPathResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.enumerateInstanceNames.entry, TEXTS, context);
    KSV_AssociationShape::deliverAll(handler, _getInstanceNames());
    log_message(4, "%s", TEXTS.enumerateInstanceNames.exit);
}

void KSV_SystemExtentProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, const Boolean,
                                              const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_SystemExtentProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                              const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_SystemExtentProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                              ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMObjectPath
KSV_SystemExtentProvider::_buildAssociationName(const CIMObjectPath& extentPath) const {
    return KSV_Common::buildAssocPath(_assoClassName, "GroupComponent", "PartComponent",
                                      _sysObjectPath, extentPath, _hostAddr,
                                      KSV_AssociationShape::NAMESPACE);
}

CIMInstance
KSV_SystemExtentProvider::_buildAssociationInstance(const CIMObjectPath& extentPath,
                                                    bool includeQualifiers, bool includeClassOrigin,
                                                    const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_AssociationShape::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_assoClassName, "GroupComponent", "PartComponent",
                                          _sysObjectPath, extentPath, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

Array<CIMInstance> KSV_SystemExtentProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_SystemExtentProvider::_getRelatedInstances: className = %s \n", className);
    Array<CIMInstance> related;
    if (className.equal(_extClassName)) {
        related = _cimom.enumerateInstances(
            context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), _sysClassName, false, false,
            includeQualifiers, includeClassOrigin, propertyList);
    } else if (className.equal(_sysClassName)) {
        // Any path of the system class stands for this system: its keys are not compared.
        CIMClass extentClass = KSV_AssociationShape::storedClass(
            _cimom, _extClassName, includeQualifiers, includeClassOrigin, propertyList);
        const KSV_DiskStorageExtentProvider extents;
        KSV_AssociationShape::forEachPresentDisk(API_ALL_DISKS, [&](const api_Disk_t& disk) {
            related.append(extents.buildInstance(&disk, _systemName, _hostAddr, extentClass));
        });
    }
    log_message(4, "<--KSV_SystemExtentProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMObjectPath>
KSV_SystemExtentProvider::_getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                   const OperationContext& context) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_SystemExtentProvider::_getRelatedInstanceNames: className = %s \n", className);
    Array<CIMObjectPath> related;
    if (className.equal(_extClassName)) {
        related.append(_sysObjectPath);
    } else if (className.equal(_sysClassName)) {
        related = KSV_AssociationShape::pathsOf(
            _getRelatedInstances(objectName, context, false, false, CIMPropertyList()));
    }
    log_message(4, "<--KSV_SystemExtentProvider::_getRelatedInstanceNames\n");
    return related;
}

Array<CIMObjectPath> KSV_SystemExtentProvider::_referencedExtents(const CIMObjectPath& objectName,
                                                                  const OperationContext& context) {
    // An extent's association is built from its path as given: the extent is not looked up.
    if (objectName.getClassName().equal(_extClassName))
        return Array<CIMObjectPath>(&objectName, 1);
    if (objectName.getClassName().equal(_sysClassName))
        return _getRelatedInstanceNames(objectName, context);
    return Array<CIMObjectPath>();
}

Array<CIMInstance> KSV_SystemExtentProvider::_getInstances(const String& deviceID,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    log_message(4, "-->KSV_SystemExtentProvider::_getInstances\n");
    Array<CIMInstance> associations;
    const KSV_DiskStorageExtentProvider extents;
    KSV_AssociationShape::forEachPresentDisk(
        KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
            const CIMObjectPath extentPath =
                extents.buildObjectPath(_hostAddr, disk.deviceID, _systemName);
            associations.append(_buildAssociationInstance(extentPath, includeQualifiers,
                                                          includeClassOrigin, propertyList));
        });
    log_message(4, "<--KSV_SystemExtentProvider::_getInstances\n");
    return associations;
}

// Traced with the lines of _getInstances, as this provider always has.
Array<CIMObjectPath> KSV_SystemExtentProvider::_getInstanceNames() {
    log_message(4, "-->KSV_SystemExtentProvider::_getInstances\n");
    const Array<CIMObjectPath> names =
        KSV_AssociationShape::pathsOf(_getInstances(String(), false, false, CIMPropertyList()));
    log_message(4, "<--KSV_SystemExtentProvider::_getInstances\n");
    return names;
}

bool KSV_SystemExtentProvider::_invalidParms(const CIMObjectPath& objectName, const String& role,
                                             const String& resultRole, const CIMName& resultClass,
                                             const String& operationName) const {
    const KSV_AssociationEnds ends{_assoClassName, KSV_AssociationShape::classList(_sysClassName),
                                   KSV_AssociationShape::classList(_extClassName)};
    return RULES.rejects(ends, objectName.getClassName(), role, resultRole, resultClass,
                         operationName);
}

PEGASUS_NAMESPACE_END
