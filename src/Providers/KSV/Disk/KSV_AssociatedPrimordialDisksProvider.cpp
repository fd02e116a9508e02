#include "KSV_AssociatedPrimordialDisksProvider.h"

#include <KSV_Common.h>

#include "KSV_AssociationShape.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskStorageExtentProvider.h"
#include "StorageVolume/KSV_StoragePoolProvider.h"

#include <new>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_AssociatedPrimordialDisksProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_AssociatedPrimordialDisksProvider",
    {"-->KSV_AssociatedPrimordialDisksProvider::associators\n",
     "KSV_AssociatedPrimordialDisksProvider::associators: objectName = %s; associationClass = %s; "
     "resultClass = %s \n",
     "KSV_AssociatedPrimordialDisksProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_AssociatedPrimordialDisksProvider::associators\n"},
    {"-->KSV_AssociatedPrimordialDisksProvider::associatorNames\n",
     "KSV_AssociatedPrimordialDisksProvider::associatorNames: objectName = %s; associationClass = "
     "%s; resultClass = %s \n",
     "KSV_AssociatedPrimordialDisksProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_AssociatedPrimordialDisksProvider::associatorNames\n"},
    {"-->KSV_AssociatedPrimordialDisksProvider::references\n",
     "KSV_AssociatedPrimordialDisksProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_AssociatedPrimordialDisksProvider::references: invalid params: role = %s, resultClass = "
     "%s \n",
     "<--KSV_AssociatedPrimordialDisksProvider::references\n"},
    {"-->KSV_AssociatedPrimordialDisksProvider::referenceNames\n",
     "KSV_AssociatedPrimordialDisksProvider::references: objectName = %s; resultClass = %s",
     "KSV_AssociatedPrimordialDisksProvider::referenceNames: invalid params: role = %s, "
     "resultClass = %s \n",
     "<--KSV_AssociatedPrimordialDisksProvider::referenceNames\n"},
    {"-->KSV_AssociatedPrimordialDisksProvider::getInstance() \n",
     "<-- KSV_AssociatedPrimordialDisksProvider::getInstance()\n\n"},
    "KSV_AssociatedPrimordialDisksProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_AssociatedPrimordialDisksProvider::enumerateInstances() \n",
     "<-- KSV_AssociatedPrimordialDisksProvider::enumerateInstances() \n"},
    {"--> KSV_AssociatedPrimordialDisksProvider::enumerateInstanceNames() \n",
     "<-- KSV_AssociatedPrimordialDisksProvider::enumerateInstanceNames() \n"}};

// GroupComponent is the primordial pool, PartComponent a disk's extent. As for the system's
// devices, a result class that cannot name the far end is refused: the pool is no extent and an
// extent no pool.
const KSV_AssociationRules RULES = {"GroupComponent",
                                    "PartComponent",
                                    "CIM_AssociatedComponentExtent",
                                    {"CIM_StoragePool", "CIM_StorageExtent"},
                                    true,
                                    {KSV_EndTest::REJECT, {"CIM_StoragePool"}},
                                    {KSV_EndTest::REJECT, {"CIM_StorageExtent"}}};

const char PRIMORDIAL_POOL_ID[] = "QUANOR:primordial";

// Disks whose health or extent status is above this are not usable for the pool.
const int HIGHEST_USABLE_HEALTH = 19;

cim_handler_u handlerOf(ObjectResponseHandler& handler) {
    cim_handler_u held;
    held.objectHandler = &handler;
    return held;
}

cim_handler_u handlerOf(ObjectPathResponseHandler& handler) {
    cim_handler_u held;
    held.objectPathHandler = &handler;
    return held;
}

cim_handler_u handlerOf(InstanceResponseHandler& handler) {
    cim_handler_u held;
    held.instanceHandler = &handler;
    return held;
}

bool isUsable(const api_Disk_t& disk) {
    return disk.healthState <= HIGHEST_USABLE_HEALTH;
}

// The DeviceIDs of the usable disks' extents, released exactly once.
class DiskDeviceIDs {
public:
    DiskDeviceIDs() : _list(), _released(false) {}
    ~DiskDeviceIDs() { release(); }
    DiskDeviceIDs(const DiskDeviceIDs&) = delete;
    DiskDeviceIDs& operator=(const DiskDeviceIDs&) = delete;

    int read(Uint32 diskId) {
        return KSV_Common::callUnderSemaphore([&] { return getDiskDeviceIDs(diskId, &_list); });
    }
    void release() {
        if (!_released)
            freeDiskDeviceIDs(&_list);
        _released = true;
    }
    Uint32 size() const { return _list.count; }
    const api_DiskDeviceID_t& operator[](Uint32 index) const { return _list.entries[index]; }

private:
    api_DiskDeviceIDList_t _list;
    bool _released;
};

} // namespace

KSV_AssociatedPrimordialDisksProvider::KSV_AssociatedPrimordialDisksProvider()
    : _intHashTable(nullptr), _stringHashTable(nullptr), _maxInstCount(0) {}

KSV_AssociatedPrimordialDisksProvider::~KSV_AssociatedPrimordialDisksProvider() {}

void KSV_AssociatedPrimordialDisksProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_AssociatedPrimordialDisksProvider::initialize(cimom)\n)");
    _intHashTable = nullptr;
    _stringHashTable = nullptr;
    _cimom = cimom;
    _assoClassName = CIMName("KSV_AssociatedPrimordialDisks");
    _poolClassName = CIMName("KSV_StoragePool");
    _extClassName = CIMName("KSV_DiskStorageExtent");
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _maxInstCount = KSV_Common::getInstanceThreshold(150);
    _intHashTable = create_int_hashtable(2048, 0.75);
    _stringHashTable = create_string_hashtable(2048, 0.75);
    set_invalid_value(_stringHashTable, 0);
    log_message(4, "<-- KSV_AssociatedPrimordialDisksProvider::initialize(cimom)\n)");
}

void KSV_AssociatedPrimordialDisksProvider::terminate() {
    if (_intHashTable)
        delete_hashtable(_intHashTable);
    if (_stringHashTable)
        delete_hashtable(_stringHashTable);
    delete this;
}

void KSV_AssociatedPrimordialDisksProvider::associators(
    const OperationContext& context, const CIMObjectPath& objectName,
    const CIMName& associationClass, const CIMName& resultClass, const String& role,
    const String& resultRole, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().serve(
        context, {KSVCIM_ASSOCIATORS, objectName, associationClass, resultClass, role, resultRole},
        [&] {
            _getRelatedInstances(objectName, context, includeQualifiers, includeClassOrigin,
                                 propertyList, KSVCIM_ASSOCIATORS, handlerOf(handler));
        });
}

void KSV_AssociatedPrimordialDisksProvider::associatorNames(
    const OperationContext& context, const CIMObjectPath& objectName,
    const CIMName& associationClass, const CIMName& resultClass, const String& role,
    const String& resultRole, ObjectPathResponseHandler& handler) {
    _association().serve(
        context,
        {KSVCIM_ASSOCIATORNAMES, objectName, associationClass, resultClass, role, resultRole}, [&] {
            _getRelatedInstances(objectName, context, false, false, CIMPropertyList(),
                                 KSVCIM_ASSOCIATORNAMES, handlerOf(handler));
        });
}

void KSV_AssociatedPrimordialDisksProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().serve(context,
                         {KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
                          resultClass, role, String::EMPTY},
                         [&] {
                             _getRelatedInstances(objectName, context, includeQualifiers,
                                                  includeClassOrigin, propertyList,
                                                  KSVCIM_REFERENCES, handlerOf(handler));
                         });
}

void KSV_AssociatedPrimordialDisksProvider::referenceNames(const OperationContext& context,
                                                           const CIMObjectPath& objectName,
                                                           const CIMName& resultClass,
                                                           const String& role,
                                                           ObjectPathResponseHandler& handler) {
    _association().serve(context,
                         {KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(),
                          resultClass, role, String::EMPTY},
                         [&] {
                             _getRelatedInstances(objectName, context, false, false,
                                                  CIMPropertyList(), KSVCIM_REFERENCENAMES,
                                                  handlerOf(handler));
                         });
}

void KSV_AssociatedPrimordialDisksProvider::getInstance(const OperationContext& context,
                                                        const CIMObjectPath& instanceReference,
                                                        const Boolean includeQualifiers,
                                                        const Boolean includeClassOrigin,
                                                        const CIMPropertyList& propertyList,
                                                        InstanceResponseHandler& handler) {
    KSV_AssociationShape::enter(TEXTS.getInstance.entry, TEXTS, context);
    KSV_AssociationShape::requireTwoKeys(TEXTS, instanceReference);
    const Uint32 delivered =
        _getInstances(instanceReference, context, includeQualifiers, includeClassOrigin,
                      propertyList, KSVCIM_GETINSTANCE, handlerOf(handler));
    if (delivered == 0)
        throw CIMObjectNotFoundException(ClassName + " CIM Object not found.");
    log_message(4, "%s", TEXTS.getInstance.exit);
}

void KSV_AssociatedPrimordialDisksProvider::enumerateInstances(const OperationContext& context,
                                                               const CIMObjectPath&,
                                                               const Boolean includeQualifiers,
                                                               const Boolean includeClassOrigin,
                                                               const CIMPropertyList& propertyList,
                                                               InstanceResponseHandler& handler) {
    _association().streamInstances(
        context, ClassName + "::enumerateInstances - Operation failed: ", [&] {
            _getInstances(CIMObjectPath(), context, includeQualifiers, includeClassOrigin,
                          propertyList, KSVCIM_ENUMERATEINSTANCES, handlerOf(handler));
        });
}

void KSV_AssociatedPrimordialDisksProvider::enumerateInstanceNames(
    const OperationContext& context, const CIMObjectPath&, ObjectPathResponseHandler& handler) {
    _association().streamInstanceNames(
        context, ClassName + "::enumerateInstanceNames - Operation failed: ", [&] {
            _getInstances(CIMObjectPath(), context, false, false, CIMPropertyList(),
                          KSVCIM_ENUMERATEINSTANCENAMES, handlerOf(handler));
        });
}

void KSV_AssociatedPrimordialDisksProvider::modifyInstance(const OperationContext&,
                                                           const CIMObjectPath&, const CIMInstance&,
                                                           const Boolean, const CIMPropertyList&,
                                                           ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_AssociatedPrimordialDisksProvider::createInstance(const OperationContext&,
                                                           const CIMObjectPath&, const CIMInstance&,
                                                           ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_AssociatedPrimordialDisksProvider::deleteInstance(const OperationContext&,
                                                           const CIMObjectPath&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

KSV_Association KSV_AssociatedPrimordialDisksProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_poolClassName),
                           KSV_AssociationShape::classList(_extClassName), _cimom, _hostAddr);
}

// Both ends are named as this provider names them, from the disk record and the pool's
// identifier, so that either end answers the very associations that enumeration lists.
void KSV_AssociatedPrimordialDisksProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList, cim_method_e method,
    cim_handler_u handler) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_AssociatedPrimordialDisksProvider::_getRelatedInstances: className = %s \n",
        className);
    KSV_Common::handleProcessing(handler, method);
    const bool fromExtent = className.equal(_extClassName);
    const String key =
        KSV_Common::getStringProperty(objectName, fromExtent ? "DeviceID" : "InstanceID");
    if (key.size() == 0) {
        throw CIMInvalidParameterException(
            ClassName + (fromExtent ? " DeviceID key not found." : " InstanceID key not found."));
    }
    const CIMObjectPath poolPath =
        KSV_StoragePoolProvider::buildInstanceName(PRIMORDIAL_POOL_ID, _hostAddr);
    {
        // The records are released before the response completes.
        KSV_DiskList disks;
        disks.read(fromExtent ? KSV_DiskList::selectorOf(key) : API_ALL_DISKS);
        if (fromExtent) {
            _deliverPoolOf(key, disks, poolPath, context, includeQualifiers, includeClassOrigin,
                           propertyList, method, handler);
        } else if (className.equal(_poolClassName) && String::equal(key, PRIMORDIAL_POOL_ID)) {
            _deliverExtentsOf(disks, poolPath, includeQualifiers, includeClassOrigin, propertyList,
                              method, handler);
        }
    }
    KSV_Common::handleComplete(handler, method);
    log_message(4, "<--KSV_AssociatedPrimordialDisksProvider::_getRelatedInstances\n");
}

void KSV_AssociatedPrimordialDisksProvider::_deliverPoolOf(
    const String& deviceID, const KSV_DiskList& disks, const CIMObjectPath& poolPath,
    const OperationContext& context, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList, cim_method_e method, cim_handler_u handler) {
    for (Uint32 i = 0; i < disks.size(); i++) {
        const api_Disk_t& disk = disks[i];
        if (disk.isAbsent || !isUsable(disk) || !KSV_DiskList::hasDeviceID(disk, deviceID))
            continue;
        const CIMInstance pool =
            _cimom.getInstance(context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), poolPath,
                               false, includeQualifiers, includeClassOrigin, propertyList);
        const CIMObjectPath extentPath =
            KSV_DiskStorageExtentProvider().buildObjectPath(_hostAddr, disk.deviceID, _systemName);
        _deliverRelated(pool, extentPath, poolPath, includeQualifiers, includeClassOrigin,
                        propertyList, method, handler);
        return;
    }
}

void KSV_AssociatedPrimordialDisksProvider::_deliverExtentsOf(
    const KSV_DiskList& disks, const CIMObjectPath& poolPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList, cim_method_e method,
    cim_handler_u handler) {
    CIMClass extentClass = KSV_DiskProviderSupport::storedClass(
        _cimom, _extClassName, includeQualifiers, includeClassOrigin, propertyList);
    const KSV_DiskStorageExtentProvider extents;
    for (Uint32 i = 0; i < disks.size(); i++) {
        if (disks[i].isAbsent || !isUsable(disks[i]))
            continue;
        const CIMInstance extent =
            extents.buildInstance(&disks[i], _systemName, _hostAddr, extentClass);
        _deliverRelated(extent, extent.getPath(), poolPath, includeQualifiers, includeClassOrigin,
                        propertyList, method, handler);
    }
}

void KSV_AssociatedPrimordialDisksProvider::_deliverRelated(
    const CIMInstance& farEnd, const CIMObjectPath& extentPath, const CIMObjectPath& poolPath,
    bool includeQualifiers, bool includeClassOrigin, const CIMPropertyList& propertyList,
    cim_method_e method, cim_handler_u handler) {
    switch (method) {
    case KSVCIM_ASSOCIATORS:
        handler.objectHandler->deliver(CIMObject(farEnd));
        break;
    case KSVCIM_ASSOCIATORNAMES:
        handler.objectPathHandler->deliver(farEnd.getPath());
        break;
    case KSVCIM_REFERENCES:
        handler.objectHandler->deliver(CIMObject(_association().build(
            poolPath, extentPath, includeQualifiers, includeClassOrigin, propertyList)));
        break;
    case KSVCIM_REFERENCENAMES:
        handler.objectPathHandler->deliver(_association().buildName(poolPath, extentPath));
        break;
    default:
        break;
    }
}

// The extents come from the library's list of usable disks. A request narrowed to one pair
// reads only that disk; a pair whose pool is not the primordial one has no instance.
Uint32 KSV_AssociatedPrimordialDisksProvider::_getInstances(
    const CIMObjectPath& objectPath, const OperationContext&, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList, cim_method_e method,
    cim_handler_u handler) {
    log_message(4, "-->KSV_AssociatedPrimordialDisksProvider::_getInstances\n");
    DiskDeviceIDs deviceIDs;
    KSV_Common::handleProcessing(handler, method);
    Uint32 delivered = 0;
    try {
        CIMObjectPath poolPath;
        Uint32 diskId = API_ALL_DISK_IDS;
        if (objectPath.getClassName().isNull()) {
            poolPath = KSV_StoragePoolProvider::buildInstanceName(PRIMORDIAL_POOL_ID, _hostAddr);
        } else {
            diskId = _requestedDiskId(objectPath);
            poolPath = _requestedPool(objectPath);
        }
        const int result = deviceIDs.read(diskId);
        const KSV_DiskStorageExtentProvider extents;
        const KSV_Association primordialDisks = _association();
        const KSV_Common::PathMatcher requested(objectPath);
        for (Uint32 i = 0; i < deviceIDs.size() && !poolPath.getClassName().isNull(); i++) {
            if (deviceIDs[i].status > HIGHEST_USABLE_HEALTH)
                continue;
            const CIMInstance association = primordialDisks.build(
                poolPath, extents.buildObjectPath(_hostAddr, deviceIDs[i].deviceID, _systemName),
                includeQualifiers, includeClassOrigin, propertyList);
            if (method == KSVCIM_GETINSTANCE) {
                if (requested.matches(association.getPath())) {
                    handler.instanceHandler->deliver(association);
                    delivered++;
                    break;
                }
            } else if (method == KSVCIM_ENUMERATEINSTANCES) {
                handler.instanceHandler->deliver(association);
                delivered++;
            } else {
                handler.objectPathHandler->deliver(association.getPath());
                delivered++;
            }
        }
        deviceIDs.release();
        log_message(4, "<--KSV_AssociatedPrimordialDisksProvider::_getInstances\n");
        if (result == API_E_NO_MEMORY || result == API_E_LIST_TOO_BIG)
            throw std::bad_alloc();
    } catch (...) {
        deviceIDs.release();
        log_message(2,
                    "<--KSV_AssociatedPrimordialDisksProvider::_getInstances: exception thrown "
                    "while building instances, # of "
                    "instances assembled so far = %u\n",
                    delivered);
        throw;
    }
    KSV_Common::handleComplete(handler, method);
    return delivered;
}

// The id of the disk whose extent the PartComponent reference names; every disk when it names
// none the library knows.
Uint32 KSV_AssociatedPrimordialDisksProvider::_requestedDiskId(const CIMObjectPath& objectPath) {
    Uint32 diskId = API_ALL_DISK_IDS;
    const String deviceID =
        KSV_AssociationShape::referencedKey(objectPath, "PartComponent", "DeviceID");
    if (deviceID.size() != 0) {
        int64_t wwn = API_ALL_DISKS;
        api_deReferenceDiskDeviceID(deviceID.getCString(), &wwn, &diskId);
    }
    return diskId;
}

// The GroupComponent reference when it names the primordial pool; an empty path otherwise.
CIMObjectPath
KSV_AssociatedPrimordialDisksProvider::_requestedPool(const CIMObjectPath& objectPath) {
    const CIMObjectPath poolPath(KSV_Common::getStringProperty(objectPath, "GroupComponent"));
    return KSV_Common::isPoolPath(poolPath, PRIMORDIAL_POOL_ID) ? poolPath : CIMObjectPath();
}

PEGASUS_NAMESPACE_END
