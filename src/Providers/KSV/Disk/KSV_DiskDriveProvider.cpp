#include "KSV_DiskDriveProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskText.h"

#include <Pegasus/Common/Exception.h>

#include <cstdlib>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskDriveProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName DISK_DRIVE_CLASS("KSV_DiskDrive");

const KSV_TraceTexts GET_INSTANCE = {"--> KSV_DiskDriveProvider::getInstance\n",
                                     "<-- KSV_DiskDriveProvider::getInstance\n"};
const KSV_TraceTexts ENUMERATE_INSTANCES = {"--> KSV_DiskDriveProvider::enumerateInstances\n",
                                            "<-- KSV_DiskDriveProvider::enumerateInstances\n"};
const KSV_TraceTexts ENUMERATE_INSTANCE_NAMES = {
    "--> KSV_DiskDriveProvider::enumerateInstanceNames\n",
    "<-- KSV_DiskDriveProvider::enumerateInstanceNames\n"};
const CIMName LOCATION_INDICATOR("LocationIndicator");

// LocationIndicator values.
const Uint16 LOCATION_ON = 2;
const Uint16 LOCATION_OFF = 3;

// Writes one property through the typed writers; the value's type picks the CIM type, so
// every enumeration of the record is converted explicitly where it is read.
template <typename T>
void setValue(CIMInstance& instance, const char* name, const T& value) {
    KSV_Common::setPropertyValue(instance, CIMName(name), value);
}

// ---- Mappings of the disk record ------------------------------------------------------------

// Clients have always been given type 2 for the enclosures of type 1; kept for them.
Uint16 reportedCageType(int cageType) {
    return Uint16(cageType == 1 ? 2 : cageType);
}

// The product is taken in 32 bits, as clients have always been given it: it wraps for
// capacities above 4294967.
Uint64 maxMediaSize(Uint32 capacity) {
    return Uint64(Uint32(capacity * 1000u));
}

Uint16 availabilityOf(int cimOpStatus) {
    switch (cimOpStatus) {
    case 2:
        return 3; // Running/Full Power
    case 3:
        return 10; // Degraded
    case 6:
        return 4; // Warning
    default:
        return 2; // Unknown
    }
}

Uint16 interconnectTypeOf(int connectorType) {
    switch (connectorType) {
    case 1:
        return 6;
    case 2:
        return 4;
    case 3:
        return 5;
    default:
        return 0;
    }
}

bool isSolidState(const api_Disk_t& disk) {
    return disk.type_ == 4;
}

bool locateLit(const api_Disk_t& disk) {
    return (disk.u.locate.flags & API_DISK_LOCATE_LIT) != 0;
}

bool reportsLedState(int cageType) {
    return cageType == 1 || cageType == 2 || cageType == 3 || cageType == 5;
}

// The enclosure-services block of the disk's cage type; none for cage types 1 and 2.
const api_DiskEsi_t* esiBlock(const api_Disk_t& disk) {
    switch (disk.cageType) {
    case 3:
    case 4:
    case 5:
        return &disk.u.esiAt4.esi;
    case 6:
    case 7:
    case 8:
        return &disk.u.esiAt0;
    default:
        return nullptr;
    }
}

bool hasPort(const api_Loop_t& loop) {
    return loop.lpid != 0 && loop.lpid != API_LPID_NONE;
}

// "node:slot:port" of a packed port location.
String portText(Uint16 lpid) {
    char text[16];
    char* const end = text + sizeof(text);
    char* next = putDecimal(text, end, (lpid >> 7) & 0x7u);
    *next++ = ':';
    next = putDecimal(next, end, (lpid >> 3) & 0xFu);
    *next++ = ':';
    next = putDecimal(next, end, lpid & 0x7u);
    return String(text, Uint32(next - text));
}

// A quad-port system lists a path without a port as "0", so that each path keeps its place.
void appendPortPath(Array<String>& ports, const api_Loop_t& loop, Uint8 isQuadPort) {
    if (hasPort(loop))
        ports.append(portText(loop.lpid));
    else if (isQuadPort != 0)
        ports.append(String("0"));
}

// The last primary path with a port, in the order A, A1, B, B1; null when there is none.
const api_Loop_t* primaryLoop(const api_Disk_t& disk) {
    const api_Loop_t* primary = nullptr;
    for (const api_Loop_t* loop : {&disk.loopA, &disk.loopA1, &disk.loopB, &disk.loopB1}) {
        if (hasPort(*loop) && loop->isPrimary)
            primary = loop;
    }
    return primary;
}

// ---- Property groups of build_instance ------------------------------------------------------

void setIdentity(CIMInstance& instance, const api_Disk_t& disk, const String& systemName) {
    char wwnText[17];
    *putWwn(wwnText, disk.wwn) = '\0';
    setValue(instance, "SystemCreationClassName", "KSV_StorageSystem");
    setValue(instance, "SystemName", systemName);
    setValue(instance, "CreationClassName", "KSV_DiskDrive");
    setValue(instance, "DeviceID", disk.deviceID);
    setValue(instance, "Position", Uint16(disk.position));
    setValue(instance, "ID", Uint32(disk.id));
    setValue(instance, "CageType", reportedCageType(disk.cageType));
    setValue(instance, "Name", wwnText);
    setValue(instance, "ElementName", disk.elemName);
}

void setSizes(CIMInstance& instance, const api_Disk_t& disk) {
    setValue(instance, "MaxMediaSize", maxMediaSize(disk.ad_capacity));
    setValue(instance, "ChunkSize", Uint64(disk.chunkSize));
    setValue(instance, "DefaultBlockSize", Uint64(disk.blockSize));
    setValue(instance, "MaxBlockSize", Uint64(disk.blockSize));
    setValue(instance, "MinBlockSize", Uint64(disk.blockSize));
}

void setStatus(CIMInstance& instance, const api_Disk_t& disk) {
    KSV_DiskDriveProvider::_addOperationalStatus(disk, instance);
    setValue(instance, "OtherOperationalStatus", Uint16(disk.opStatus));
    setValue(instance, "Availability", availabilityOf(disk.cimOpStatus));
    Array<Uint16> capabilities;
    for (Uint16 capability : {2, 3, 4, 9})
        capabilities.append(capability);
    setValue(instance, "Capabilities", capabilities);
    setValue(instance, "HealthState", Uint16(disk.healthState));
}

// The disk technology decides the interconnect of nearline and unknown disks.
void setTechnology(CIMInstance& instance, const api_Disk_t& disk) {
    setValue(instance, "DeviceType", Uint16(disk.type_));
    setValue(instance, "InterconnectType", interconnectTypeOf(disk.connectorType));
    switch (disk.type_) {
    case 1:
    case 2:
        setValue(instance, "DiskType", Uint16(2));
        break;
    case 4:
        setValue(instance, "DiskType", Uint16(3));
        break;
    case 5:
        setValue(instance, "DiskType", Uint16(1));
        setValue(instance, "InterconnectType", Uint16(1));
        break;
    default:
        setValue(instance, "DiskType", Uint16(0));
        setValue(instance, "InterconnectType", Uint16(0));
        break;
    }
    setValue(instance, "LocationIndicator", locateLit(disk) ? LOCATION_ON : LOCATION_OFF);
    setValue(instance, "FormFactor", Uint16(2));
    setValue(instance, "Encryption", Uint16(disk.encryption));
    setValue(instance, "Temperature", Uint16(disk.temp));
    setValue(instance, "IsLDAllocateable", Boolean(disk.isLDAllocateable != 0));
}

void setLoopStates(CIMInstance& instance, const api_Disk_t& disk) {
    setValue(instance, "StateOnLoopA", Uint16(disk.loopA.loopState));
    setValue(instance, "StateOnLoopB", Uint16(disk.loopB.loopState));
    setValue(instance, "AlpaOnLoopA", Uint16(disk.loopA.loopALPA));
    setValue(instance, "AlpaOnLoopB", Uint16(disk.loopB.loopALPA));
}

void setChunkCounts(CIMInstance& instance, const api_Disk_t& disk) {
    setValue(instance, "ChunksNormalUsedOK", Uint32(disk.normal.usedOKChunks));
    setValue(instance, "ChunksNormalUsedFail", Uint32(disk.normal.usedFailChunks));
    setValue(instance, "ChunksNormalUnusedFree", Uint32(disk.normal.unusedFreeChunks));
    setValue(instance, "ChunksNormalUnusedUninit", Uint32(disk.normal.unusedUninitChunks));
    setValue(instance, "ChunksNormalUnusedFail", Uint32(disk.normal.unusedFailChunks));
    setValue(instance, "ChunksSpareUsedOK", Uint32(disk.spare.usedOKChunks));
    setValue(instance, "ChunksSpareUsedFail", Uint32(disk.spare.usedFailChunks));
    setValue(instance, "ChunksSpareUnusedFree", Uint32(disk.spare.unusedFreeChunks));
    setValue(instance, "ChunksSpareUnusedUninit", Uint32(disk.spare.unusedUninitChunks));
    setValue(instance, "ChunksSpareUnusedFail", Uint32(disk.spare.unusedFailChunks));
}

// A count the library does not know keeps the class default.
void setErrorCount(CIMInstance& instance, const char* name, Uint64 count) {
    if (count != API_ERRCOUNT_UNKNOWN)
        setValue(instance, name, count);
}

void setErrorCounts(CIMInstance& instance, const api_Disk_t& disk) {
    setErrorCount(instance, "CorrectableReadErrors", disk.readErr.corrErrors);
    setErrorCount(instance, "UncorrectableReadErrors", disk.readErr.uncorrErrors);
    setErrorCount(instance, "CorrectableWriteErrors", disk.writeErr.corrErrors);
    setErrorCount(instance, "UncorrectableWriteErrors", disk.writeErr.uncorrErrors);
}

void setSpeed(CIMInstance& instance, const api_Disk_t& disk) {
    if (isSolidState(disk)) {
        setValue(instance, "WearLevelRemain", Uint32(disk.wearlevelRemain));
        setValue(instance, "RPM", Uint32(0));
    } else {
        setValue(instance, "DiskSpeed", Uint32(disk.speed));
        setValue(instance, "RPM", Uint32(disk.speed * 1000u));
    }
    setValue(instance, "MediaType", Uint32(disk.mediaType));
}

// What the enclosure reports depends on the cage type.
void setEnclosureStates(CIMInstance& instance, const api_Disk_t& disk) {
    if (reportsLedState(disk.cageType))
        setValue(instance, "SystemLED", Uint16(disk.u.ledState));
    if (const api_DiskEsi_t* esi = esiBlock(disk)) {
        const Boolean isEsi = esi->present != 0;
        setValue(instance, "IsESI", isEsi);
        if (isEsi)
            setValue(instance, "ESIState", Uint16(esi->state));
    }
}

void setPorts(CIMInstance& instance, const api_Disk_t& disk, Uint8 isQuadPort) {
    Array<String> portsA;
    appendPortPath(portsA, disk.loopA, isQuadPort);
    appendPortPath(portsA, disk.loopA1, isQuadPort);
    Array<String> portsB;
    appendPortPath(portsB, disk.loopB, isQuadPort);
    appendPortPath(portsB, disk.loopB1, isQuadPort);
    setValue(instance, "InitiatorPortA", portsA);
    setValue(instance, "InitiatorPortB", portsB);
    if (const api_Loop_t* primary = primaryLoop(disk))
        setValue(instance, "PrimaryPortPath", portText(primary->lpid));
}

// ---- Locate LED -----------------------------------------------------------------------------

// The names of the properties a modification changes: those of the list that the instance
// has, or all of the instance's properties when there is no list.
Array<CIMName> modifiedNames(const CIMInstance& instance, const CIMPropertyList& propertyList) {
    Array<CIMName> names;
    if (propertyList.isNull()) {
        for (Uint32 i = 0; i < instance.getPropertyCount(); i++)
            names.append(instance.getProperty(i).getName());
        return names;
    }
    for (Uint32 i = 0; i < propertyList.size(); i++) {
        if (instance.findProperty(propertyList[i]) != PEG_NOT_FOUND)
            names.append(propertyList[i]);
    }
    return names;
}

// A null value, or one of another type than uint16, reads as 0 and is refused with the other
// values that are neither on nor off.
Uint16 readLocation(const CIMInstance& instance, const String& name) {
    Uint16 location = 0;
    try {
        KSV_Common::getProperty(instance, name, location);
    } catch (const TypeMismatchException&) {
        return 0;
    }
    return location;
}

// The LocationIndicator value a modification asks for (the last one given); false when it
// changes no property. Any other property, or another value than on or off, is refused.
bool requestedLocation(const CIMInstance& instance, const CIMPropertyList& propertyList,
                       Uint16& location) {
    const Array<CIMName> names = modifiedNames(instance, propertyList);
    for (Uint32 i = 0; i < names.size(); i++) {
        const String& name = names[i].getString();
        if (!names[i].equal(LOCATION_INDICATOR))
            throw CIMInvalidParameterException("Invalid parameter: " + name);
        location = readLocation(instance, name);
        if (location != LOCATION_ON && location != LOCATION_OFF) {
            throw CIMInvalidParameterException("Invalid parameter: " + name +
                                               " may only be on set to on(2) or off(3).");
        }
    }
    return names.size() != 0;
}

// A failure is only logged: the other magazines of the request are still switched.
void switchLocateLed(const api_Disk_t& disk, Uint16 location) {
    if (location == LOCATION_OFF && !locateLit(disk))
        return;
    const int value = location == LOCATION_ON ? API_LOCATE_ON : API_LOCATE_OFF;
    const int result = KSV_Common::callUnderSemaphore(
        [&] { return api_locateMagazine(disk.cageElementName, disk.magPosition, value); });
    if (result != API_OK) {
        log_message(2,
                    "KSV_DiskDriveProvider::ModifyInstance: problem setting locate magazine led "
                    "for cage %s magazine %d",
                    disk.cageElementName, disk.magPosition);
    }
}

CIMObjectNotFoundException diskNotFound(const String& deviceID) {
    return CIMObjectNotFoundException(ClassName + " CIM Object not found." + deviceID);
}

void locateDisk(const String& deviceID, Uint16 location) {
    // Only a DeviceID the library knows is read: an unknown one must not reach every disk.
    int64_t selector = API_ALL_DISKS;
    Uint32 diskId = 0;
    if (api_deReferenceDiskDeviceID(deviceID.getCString(), &selector, &diskId) != API_OK)
        throw diskNotFound(deviceID);
    Uint32 found = 0;
    KSV_DiskList::forEachPresentDisk(selector, [&](const api_Disk_t& disk) {
        switchLocateLed(disk, location);
        found++;
    });
    if (found == 0)
        throw diskNotFound(deviceID);
}

} // namespace

// ---- Shared steps of the disk providers -----------------------------------------------------

void KSV_DiskProviderSupport::checkClass(const CIMObjectPath& path, const CIMName& servedClass,
                                         const String& providerName) {
    if (!path.getClassName().equal(servedClass)) {
        throw CIMNotSupportedException(providerName + " Invalid class name" +
                                       path.getClassName().getString());
    }
}

String KSV_DiskProviderSupport::requiredKey(const CIMObjectPath& path, const String& keyName,
                                            const String& providerName) {
    const CIMName name(keyName);
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (keys[i].getName().equal(name))
            return KSV_Common::getStringProperty(path, keyName);
    }
    throw CIMInvalidParameterException(providerName + " " + keyName + " key not found.");
}

void KSV_DiskProviderSupport::deliverMatch(InstanceResponseHandler& handler,
                                           const CIMObjectPath& requestPath,
                                           const Array<CIMInstance>& instances,
                                           const String& providerName, const String& requestedKey) {
    const KSV_Common::PathMatcher requested(requestPath);
    for (Uint32 i = 0; i < instances.size(); i++) {
        if (requested.matches(instances[i].getPath())) {
            handler.processing();
            handler.deliver(instances[i]);
            handler.complete();
            return;
        }
    }
    throw CIMObjectNotFoundException(providerName + " CIM Object not found." + requestedKey);
}

CIMClass KSV_DiskProviderSupport::storedClass(CIMOMHandle& cimom, const CIMName& className,
                                              bool includeQualifiers, bool includeClassOrigin,
                                              const CIMPropertyList& propertyList) {
    return KSV_Common::getStoredCIMClass(cimom, OperationContext(), KSV_NAMESPACE, className, false,
                                         includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMInstance> KSV_DiskProviderSupport::describeDiskDrive(
    CIMOMHandle& cimom, const String& deviceID, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList, const String& hostAddr, const String& systemName,
    Uint8 isQuadPort) {
    return describeDiskOf(cimom, "KSV_DiskDrive", deviceID, includeQualifiers, includeClassOrigin,
                          propertyList, [&](const CIMClass& diskClass, const api_Disk_t& disk) {
                              return KSV_DiskDriveProvider().build_instance(
                                  diskClass, disk, hostAddr, systemName, isQuadPort);
                          });
}

KSV_LockedTable::KSV_LockedTable(hashtable_t* table) : _table(table), _held(true) {
    hashtable_lock(_table);
}

KSV_LockedTable::~KSV_LockedTable() {
    release();
}

void KSV_LockedTable::release() {
    if (!_held)
        return;
    hashtable_clear(_table);
    hashtable_unlock(_table);
    _held = false;
}

KSV_DiskList::KSV_DiskList() : _list() {}

KSV_DiskList::~KSV_DiskList() {
    release();
}

int64_t KSV_DiskList::selectorOf(const String& deviceID) {
    int64_t selector = API_ALL_DISKS;
    if (deviceID.size() != 0) {
        Uint32 diskId = 0;
        // An unknown DeviceID keeps the selector of every disk; the caller's path match
        // answers for it.
        api_deReferenceDiskDeviceID(deviceID.getCString(), &selector, &diskId);
    }
    return selector;
}

bool KSV_DiskList::hasDeviceID(const api_Disk_t& disk, const String& deviceID) {
    return String::equal(deviceID, disk.deviceID);
}

bool KSV_DiskList::read(int64_t selector) {
    release();
    // The library leaves the list empty when the read fails.
    return KSV_Common::callUnderSemaphore([&] { return api_getSystemDisks(selector, &_list); }) ==
           API_OK;
}

void KSV_DiskList::release() {
    free(_list.disks);
    _list = api_DiskList_t();
}

// ---- KSV_DiskDriveProvider ------------------------------------------------------------------

KSV_DiskDriveProvider::KSV_DiskDriveProvider() : _isQuadPort(0) {}

KSV_DiskDriveProvider::KSV_DiskDriveProvider(const CIMObjectPath&) : _isQuadPort(0) {
    throw CIMNotSupportedException(ClassName + " does not support constructor with object path.");
}

KSV_DiskDriveProvider::~KSV_DiskDriveProvider() {}

void KSV_DiskDriveProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskDriveProvider::initialize()\n");
    _cimom = cimom;
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _isQuadPort = KSV_Common::isQuadPortSystem(cimom);
    log_message(4, "-->KSV_DiskDriveProvider::initialize()\n");
}

void KSV_DiskDriveProvider::terminate() {
    delete this;
}

void KSV_DiskDriveProvider::getInstance(const OperationContext& context,
                                        const CIMObjectPath& instanceReference,
                                        const Boolean includeQualifiers,
                                        const Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList,
                                        InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::getInstance(
        ClassName, GET_INSTANCE, DISK_DRIVE_CLASS, context, instanceReference, handler,
        [&] {
            return KSV_DiskProviderSupport::requiredKey(instanceReference, "DeviceID", ClassName);
        },
        [&](const String& deviceID) {
            return _build_instances(deviceID, includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskDriveProvider::enumerateInstances(const OperationContext& context,
                                               const CIMObjectPath& classReference,
                                               const Boolean includeQualifiers,
                                               const Boolean includeClassOrigin,
                                               const CIMPropertyList& propertyList,
                                               InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(
        ClassName, ENUMERATE_INSTANCES, DISK_DRIVE_CLASS, context, classReference, handler, [&] {
            return _build_instances(String(), includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskDriveProvider::enumerateInstanceNames(const OperationContext& context,
                                                   const CIMObjectPath& classReference,
                                                   ObjectPathResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(
        ClassName, ENUMERATE_INSTANCE_NAMES, DISK_DRIVE_CLASS, context, classReference, handler,
        [&] { return _build_ref(classReference.getClassName().getString()); });
}

void KSV_DiskDriveProvider::modifyInstance(const OperationContext& context,
                                           const CIMObjectPath& instanceReference,
                                           const CIMInstance& instanceObject, const Boolean,
                                           const CIMPropertyList& propertyList, ResponseHandler&) {
    // The entry line names another provider; log readers search for it as it stands.
    log_message(4, "-->KSV_BatteryProvider::modifyInstance()\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(instanceReference, DISK_DRIVE_CLASS, ClassName);
    const String deviceID =
        KSV_DiskProviderSupport::requiredKey(instanceReference, "DeviceID", ClassName);
    Uint16 location = 0;
    if (requestedLocation(instanceObject, propertyList, location))
        locateDisk(deviceID, location);
    // The server completes the request itself when no exception leaves.
    log_message(4, "<--KSV_DiskDriveProvider::modifyInstance()\n");
}

void KSV_DiskDriveProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskDriveProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                           ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMInstance KSV_DiskDriveProvider::build_instance(CIMClass cimClass, const api_Disk_t& disk,
                                                  const String& hostAddr, const String& systemName,
                                                  const Uint8& isQuadPort) const {
    return _describeDisk(KSV_Common::buildInstanceSkeleton(cimClass), disk, hostAddr, systemName,
                         isQuadPort);
}

CIMInstance KSV_DiskDriveProvider::_describeDisk(CIMInstance instance, const api_Disk_t& disk,
                                                 const String& hostAddr, const String& systemName,
                                                 Uint8 isQuadPort) const {
    setIdentity(instance, disk, systemName);
    setSizes(instance, disk);
    setStatus(instance, disk);
    setTechnology(instance, disk);
    setLoopStates(instance, disk);
    setChunkCounts(instance, disk);
    setErrorCounts(instance, disk);
    setSpeed(instance, disk);
    setEnclosureStates(instance, disk);
    setPorts(instance, disk, isQuadPort);
    instance.setPath(buildObjectPath("KSV_DiskDrive", hostAddr, disk.deviceID, systemName));
    return instance;
}

CIMObjectPath KSV_DiskDriveProvider::buildObjectPath(CIMName className, const String& hostAddr,
                                                     const String& deviceID,
                                                     const String& systemName) const {
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding("SystemCreationClassName", "KSV_StorageSystem", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("SystemName", systemName, CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("CreationClassName", className.getString(), CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("DeviceID", deviceID, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, KSV_NAMESPACE, className, keys);
}

void KSV_DiskDriveProvider::_addOperationalStatus(const api_Disk_t& disk, CIMInstance& instance) {
    Array<Uint16> status;
    status.append(Uint16(disk.cimOpStatus));
    KSV_Common::setPropertyValue(instance, "OperationalStatus", status);
}

Array<CIMInstance> KSV_DiskDriveProvider::_build_instances(const String& deviceID,
                                                           bool includeQualifiers,
                                                           bool includeClassOrigin,
                                                           const CIMPropertyList& propertyList) {
    log_message(4, "--> KSV_DiskDriveProvider::_build_instances\n");
    const Array<CIMInstance> instances = KSV_DiskProviderSupport::describePresentDisks(
        _cimom, DISK_DRIVE_CLASS, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](CIMInstance skeleton, const api_Disk_t& disk) {
            return _describeDisk(skeleton, disk, _hostAddr, _systemName, _isQuadPort);
        });
    log_message(4, "<-- KSV_DiskDriveProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskDriveProvider::_build_ref(CIMName className) const {
    log_message(4, "--> KSV_DiskDriveProvider::_build_ref\n");
    Array<CIMObjectPath> paths;
    // Only the disk drive class has disk drive names: no other class needs the array read.
    if (className.equal(DISK_DRIVE_CLASS)) {
        paths = KSV_DiskProviderSupport::namePresentDisks([&](const api_Disk_t& disk) {
            return buildObjectPath("KSV_DiskDrive", _hostAddr, disk.deviceID, _systemName);
        });
    }
    log_message(4, "<-- KSV_DiskDriveProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
