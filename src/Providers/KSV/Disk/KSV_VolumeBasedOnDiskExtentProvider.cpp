#include "KSV_VolumeBasedOnDiskExtentProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskText.h"

#include "KSV_AssociationShape.h"
#include "KSV_DiskStorageExtentProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_VolumeBasedOnDiskExtentProvider");

namespace {

const KSV_AssociationTexts TEXTS = {
    "KSV_VolumeBasedOnDiskExtentProvider",
    {"-->KSV_VolumeBasedOnDiskExtentProvider::associators\n",
     "KSV_VolumeBasedOnDiskExtentProvider::associators: objectName = %s; associationClass=%s; "
     "resultClass=%s \n",
     "KSV_VolumeBasedOnDiskExtentProvider::associators: invalid params: resultClass = %s \n",
     "<--KSV_VolumeBasedOnDiskExtentProvider::associators\n"},
    {"-->KSV_VolumeBasedOnDiskExtentProvider::associatorNames\n",
     "KSV_VolumeBasedOnDiskExtentProvider::associatorNames: objectName = %s; associationClass = "
     "%s; resultClass=%s \n",
     "KSV_VolumeBasedOnDiskExtentProvider::associatorNames: invalid params: associationClass=%s, "
     "resultClass=%s\n",
     "<--KSV_VolumeBasedOnDiskExtentProvider::associatorNames\n"},
    {"-->KSV_VolumeBasedOnDiskExtentProvider::references\n",
     "KSV_VolumeBasedOnDiskExtentProvider::references: objectName = %s; resultClass = %s \n",
     "KSV_VolumeBasedOnDiskExtentProvider::references: invalid params: role = %s, resultClass = %s "
     "\n",
     "<--KSV_VolumeBasedOnDiskExtentProvider::references\n"},
    {"-->KSV_VolumeBasedOnDiskExtentProvider::referenceNames\n",
     "KSV_VolumeBasedOnDiskExtentProvider::references: objectName = %s; resultClass = %s",
     "KSV_VolumeBasedOnDiskExtentProvider::referenceNames: invalid params: role = %s, resultClass "
     "= %s \n",
     "<--KSV_VolumeBasedOnDiskExtentProvider::referenceNames\n"},
    {"-->KSV_VolumeBasedOnDiskExtentProvider::getInstance() \n",
     "<-- KSV_VolumeBasedOnDiskExtentProvider::getInstance()\n\n"},
    "KSV_VolumeBasedOnDiskExtentProvider::getInstance(): Invalid number of keys (%d)\n",
    {"--> KSV_VolumeBasedOnDiskExtentProvider::enumerateInstances() \n",
     "<-- KSV_VolumeBasedOnDiskExtentProvider::enumerateInstances() \n"},
    {"--> KSV_VolumeBasedOnDiskExtentProvider::enumerateInstanceNames() \n",
     "<-- KSV_VolumeBasedOnDiskExtentProvider::enumerateInstanceNames() \n"}};

// Antecedent is the disk extent, Dependent the volume. A volume is itself a storage extent, so
// only "CIM_StorageVolume" cannot name the far end of a volume.
const KSV_AssociationRules RULES = {"Antecedent",
                                    "Dependent",
                                    "CIM_BasedOn",
                                    {"CIM_StorageExtent", "CIM_StorageVolume"},
                                    true,
                                    {KSV_EndTest::NONE, {}},
                                    {KSV_EndTest::REJECT, {"CIM_StorageVolume"}}};

// What the library's conversions leave when they cannot read a DeviceID: no chunklet has them.
const uint64_t UNKNOWN_DISK_WWN = 0xFFFFFFFFFFFFFFF6ULL;
const Sint32 UNKNOWN_DISK_ID = -2;

// A disk extent's DeviceID, as the disk providers form it from the disk's WWN and id.
String diskDeviceID(const api_MapCh_t& entry) {
    static const char separator[] = "-id-";
    char text[64];
    char* next = putWwn(text, entry.diskWwn);
    next = std::copy(separator, separator + sizeof(separator) - 1, next);
    next = putDecimal(next, text + sizeof(text), entry.diskId);
    return String(text, Uint32(next - text));
}

// The third run of a volume's chunklets holds its user data.
Uint32 userDataBegin(const api_MapVVtoCh_t& volume) {
    return std::min(volume.firstRunLength + volume.secondRunLength, volume.chunkletCount);
}

Uint32 userDataEnd(const api_MapVVtoCh_t& volume) {
    return std::min(volume.firstRunLength + volume.secondRunLength + volume.thirdRunLength,
                    volume.chunkletCount);
}

CIMObjectPath volumePathOf(const api_MapVVtoCh_t& volume, const String& systemName,
                           const String& hostAddr) {
    char wwn[API_WWN_TEXT_SIZE] = "";
    api_wwnIntToString(volume.wwnHigh, volume.wwnLow, wwn, sizeof(wwn));
    return KSV_StorageVolumeProvider::createObjectPath(wwn, systemName, hostAddr);
}

// The volumes using one disk, read under the semaphore and released once.
class DiskMaps {
public:
    DiskMaps() : _maps(), _read(false) {}
    ~DiskMaps() {
        if (_read)
            api_freeMapsPDtoVV(&_maps);
    }
    DiskMaps(const DiskMaps&) = delete;
    DiskMaps& operator=(const DiskMaps&) = delete;

    int read(Uint32 diskId) {
        _read = true;
        return KSV_Common::callUnderSemaphore([&] { return api_getMapsPDtoVV(diskId, &_maps); });
    }
    Uint32 size() const { return _maps.count; }
    const api_MapPDtoVV_t& operator[](Uint32 index) const { return _maps.disks[index]; }

private:
    api_MapsPDtoVV_t _maps;
    bool _read;
};

// Where getInstance collects and the enumeration streams.
class InstanceSink {
public:
    InstanceSink(InstanceResponseHandler* handler, Array<CIMInstance>& out,
                 const CIMObjectPath& requested, bool matchOnly)
        : _handler(handler), _out(out), _requested(requested), _matchOnly(matchOnly) {}

    void begin() {
        if (_handler)
            _handler->processing();
    }
    // False once nothing more is wanted.
    bool take(const CIMInstance& instance) {
        if (_matchOnly && !_requested.matches(instance.getPath()))
            return true;
        if (_handler)
            _handler->deliver(instance);
        else
            _out.append(instance);
        return !_matchOnly;
    }
    void end() {
        if (_handler)
            _handler->complete();
    }

private:
    InstanceResponseHandler* _handler;
    Array<CIMInstance>& _out;
    const KSV_Common::PathMatcher _requested;
    const bool _matchOnly;
};

class NameSink {
public:
    NameSink(ObjectPathResponseHandler* handler, Array<CIMObjectPath>& out)
        : _handler(handler), _out(out) {}

    void begin() {
        if (_handler)
            _handler->processing();
    }
    bool take(const CIMInstance& instance) {
        if (_handler)
            _handler->deliver(instance.getPath());
        else
            _out.append(instance.getPath());
        return true;
    }
    void end() {
        if (_handler)
            _handler->complete();
    }

private:
    ObjectPathResponseHandler* _handler;
    Array<CIMObjectPath>& _out;
};

} // namespace

// The disk and volume a request is narrowed to: the volume by its name (empty: every volume),
// the disk by its WWN.
struct KSV_VolumeBasedOnDiskExtentProvider::PairFilter {
    String volumeName;
    bool diskGiven = false;
    uint64_t diskWwn = UNKNOWN_DISK_WWN;
};

struct KSV_VolumeBasedOnDiskExtentProvider::WalkTraces {
    const char* entry;
    const char* exit;
    const char* exception;
};

// A chunklet entry of one volume record, by index.
struct KSV_VolumeBasedOnDiskExtentProvider::ChunkletPair {
    Uint32 volume;
    Uint32 chunklet;
};

// The volumes' chunklet maps, read under the semaphore and released once.
class KSV_VolumeBasedOnDiskExtentProvider::VolumeMaps {
public:
    VolumeMaps() : _maps(), _read(false) {}
    ~VolumeMaps() { release(); }
    VolumeMaps(const VolumeMaps&) = delete;
    VolumeMaps& operator=(const VolumeMaps&) = delete;

    // The named volume, or every volume for the empty name.
    int read(const String& volumeName) {
        _read = true;
        return KSV_Common::callUnderSemaphore(
            [&] { return api_getMapsVVtoCh(volumeName.getCString(), &_maps); });
    }
    void release() {
        if (_read)
            api_freeMapsVVtoCh(&_maps);
        _read = false;
    }
    Uint32 size() const { return _maps.count; }
    const api_MapVVtoCh_t& operator[](Uint32 index) const { return _maps.volumes[index]; }

    // The first record of the volume whose DeviceID (its WWN text) is given.
    const api_MapVVtoCh_t* find(const String& volumeDeviceID) const {
        uint64_t high = UNKNOWN_DISK_WWN;
        uint64_t low = 0;
        api_wwnStringToInt(volumeDeviceID.getCString(), &high, &low);
        for (Uint32 i = 0; i < _maps.count; i++) {
            if (_maps.volumes[i].wwnHigh == high && _maps.volumes[i].wwnLow == low)
                return &_maps.volumes[i];
        }
        return nullptr;
    }

private:
    api_MapsVVtoCh_t _maps;
    bool _read;
};

// What the pairs of one walk share, made once: the association's class, fetched when the first
// pair is built; each disk's extent path and Antecedent end, at the disk's first pair; the
// Dependent end of the volume whose pairs are being built. A volume's pairs come together, and
// its disks recur in many volumes.
class KSV_VolumeBasedOnDiskExtentProvider::PairBuilder {
public:
    PairBuilder(KSV_VolumeBasedOnDiskExtentProvider& provider, bool includeQualifiers,
                bool includeClassOrigin, const CIMPropertyList& propertyList)
        : _provider(provider), _includeQualifiers(includeQualifiers),
          _includeClassOrigin(includeClassOrigin), _propertyList(propertyList) {}

    CIMInstance build(const api_MapVVtoCh_t& volume, const api_MapCh_t& entry) {
        if (&volume != _volume) {
            _volumeEnd.emplace("Dependent",
                               volumePathOf(volume, _provider._systemName, _provider._hostAddr),
                               _provider._hostAddr);
            _volume = &volume;
        }
        const Disk& disk = _diskOf(entry);
        if (!_class) {
            _class = KSV_DiskProviderSupport::storedClass(
                _provider._cimom, _provider._assoClassName, _includeQualifiers, _includeClassOrigin,
                _propertyList);
        }
        CIMInstance instance =
            KSV_Common::buildAssocInstance(_provider._assoClassName, disk.end, *_volumeEnd, *_class,
                                           _provider._hostAddr, KSV_AssociationShape::NAMESPACE);
        _provider._addChunkletRange(instance, disk.path, &volume, _propertyList);
        return instance;
    }

private:
    struct Disk {
        CIMObjectPath path;
        KSV_Common::AssocEnd end;
    };
    // A disk extent's DeviceID is made of both.
    struct DiskKey {
        uint64_t wwn;
        Sint32 id;
        bool operator==(const DiskKey& other) const { return wwn == other.wwn && id == other.id; }
    };
    struct DiskKeyHash {
        size_t operator()(const DiskKey& key) const {
            return std::hash<uint64_t>()(key.wwn ^ (uint64_t(Uint32(key.id)) << 32));
        }
    };

    const Disk& _diskOf(const api_MapCh_t& entry) {
        const DiskKey key{entry.diskWwn, entry.diskId};
        auto found = _disks.find(key);
        if (found == _disks.end()) {
            const CIMObjectPath path = _extents.buildObjectPath(
                _provider._hostAddr, diskDeviceID(entry), _provider._systemName);
            found = _disks
                        .emplace(key, Disk{path, KSV_Common::AssocEnd("Antecedent", path,
                                                                      _provider._hostAddr)})
                        .first;
        }
        return found->second;
    }

    KSV_VolumeBasedOnDiskExtentProvider& _provider;
    const bool _includeQualifiers;
    const bool _includeClassOrigin;
    const CIMPropertyList& _propertyList;
    const KSV_DiskStorageExtentProvider _extents;
    std::optional<CIMClass> _class;
    std::unordered_map<DiskKey, Disk, DiskKeyHash> _disks;
    const api_MapVVtoCh_t* _volume = nullptr;
    std::optional<KSV_Common::AssocEnd> _volumeEnd;
};

KSV_VolumeBasedOnDiskExtentProvider::KSV_VolumeBasedOnDiskExtentProvider()
    : _intHashTable(nullptr), _maxInstCount(0) {}

KSV_VolumeBasedOnDiskExtentProvider::~KSV_VolumeBasedOnDiskExtentProvider() {}

void KSV_VolumeBasedOnDiskExtentProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_VolumeBasedOnDiskExtentProvider::initialize(cimom)\n)");
    _intHashTable = nullptr;
    _cimom = cimom;
    _assoClassName = CIMName("KSV_VolumeBasedOnDiskExtent");
    _diskClassName = CIMName("KSV_DiskStorageExtent");
    _volClassName = CIMName("KSV_StorageVolume");
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _maxInstCount = KSV_Common::getInstanceThreshold(110);
    _intHashTable = create_int_hashtable(2048, 0.75);
    set_invalid_value(_intHashTable, -1);
    log_message(4, "<-- KSV_VolumeBasedOnDiskExtentProvider::initialize(cimom)\n)");
}

void KSV_VolumeBasedOnDiskExtentProvider::terminate() {
    if (_intHashTable)
        delete_hashtable(_intHashTable);
    delete this;
}

void KSV_VolumeBasedOnDiskExtentProvider::associators(
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

void KSV_VolumeBasedOnDiskExtentProvider::associatorNames(
    const OperationContext& context, const CIMObjectPath& objectName,
    const CIMName& associationClass, const CIMName& resultClass, const String& role,
    const String& resultRole, ObjectPathResponseHandler& handler) {
    _association().associatorNames(context, objectName, associationClass, resultClass, role,
                                   resultRole, handler,
                                   [&] { return _getRelatedInstanceNames(context, objectName); });
}

void KSV_VolumeBasedOnDiskExtentProvider::references(
    const OperationContext& context, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeQualifiers, const Boolean includeClassOrigin,
    const CIMPropertyList& propertyList, ObjectResponseHandler& handler) {
    _association().serve(context,
                         {KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(),
                          resultClass, role, String::EMPTY},
                         [&] {
                             Array<CIMInstance> associations;
                             if (objectName.getClassName().equal(_volClassName)) {
                                 associations =
                                     _referencesOfVolume(context, objectName, includeQualifiers,
                                                         includeClassOrigin, propertyList);
                             } else if (objectName.getClassName().equal(_diskClassName)) {
                                 associations =
                                     _referencesOfDisk(context, objectName, includeQualifiers,
                                                       includeClassOrigin, propertyList);
                             }
                             KSV_AssociationShape::deliverObjects(handler, associations);
                         });
}

void KSV_VolumeBasedOnDiskExtentProvider::referenceNames(const OperationContext& context,
                                                         const CIMObjectPath& objectName,
                                                         const CIMName& resultClass,
                                                         const String& role,
                                                         ObjectPathResponseHandler& handler) {
    _association().referenceNames(context, objectName, resultClass, role, handler,
                                  [&] { return _getRelatedInstanceNames(context, objectName); });
}

void KSV_VolumeBasedOnDiskExtentProvider::getInstance(const OperationContext& context,
                                                      const CIMObjectPath& instanceReference,
                                                      const Boolean includeQualifiers,
                                                      const Boolean includeClassOrigin,
                                                      const CIMPropertyList& propertyList,
                                                      InstanceResponseHandler& handler) {
    _association().getInstance(context, instanceReference, handler, [&] {
        Array<CIMInstance> found;
        getOrDeliverInstances(context, instanceReference, includeQualifiers, includeClassOrigin,
                              propertyList, found, nullptr, 1);
        return found;
    });
}

void KSV_VolumeBasedOnDiskExtentProvider::enumerateInstances(const OperationContext& context,
                                                             const CIMObjectPath&,
                                                             const Boolean includeQualifiers,
                                                             const Boolean includeClassOrigin,
                                                             const CIMPropertyList& propertyList,
                                                             InstanceResponseHandler& handler) {
    _association().streamInstances(
        context, ClassName + "::enumerateInstances - Operation failed: ", [&] {
            Array<CIMInstance> streamed;
            getOrDeliverInstances(context, CIMObjectPath(), includeQualifiers, includeClassOrigin,
                                  propertyList, streamed, &handler, 0);
        });
}

void KSV_VolumeBasedOnDiskExtentProvider::enumerateInstanceNames(
    const OperationContext& context, const CIMObjectPath&, ObjectPathResponseHandler& handler) {
    _association().streamInstanceNames(
        context, ClassName + "::enumerateInstanceNames - Operation failed: ", [&] {
            Array<CIMObjectPath> streamed;
            getOrDeliverInstanceNames(context, CIMObjectPath(), false, false, CIMPropertyList(),
                                      streamed, &handler);
        });
}

void KSV_VolumeBasedOnDiskExtentProvider::modifyInstance(const OperationContext&,
                                                         const CIMObjectPath&, const CIMInstance&,
                                                         const Boolean, const CIMPropertyList&,
                                                         ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_VolumeBasedOnDiskExtentProvider::createInstance(const OperationContext&,
                                                         const CIMObjectPath&, const CIMInstance&,
                                                         ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_VolumeBasedOnDiskExtentProvider::deleteInstance(const OperationContext&,
                                                         const CIMObjectPath&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

void KSV_VolumeBasedOnDiskExtentProvider::_getChunkletRange(const api_MapCh_t* entries,
                                                            Uint32 count,
                                                            const String& diskDeviceID,
                                                            Uint64& start, Uint64& end) {
    uint64_t diskWwn = UNKNOWN_DISK_WWN;
    Sint32 diskId = UNKNOWN_DISK_ID;
    api_extractFromSystemDiskID(diskDeviceID.getCString(), &diskWwn, &diskId);
    start = 0;
    end = 0;
    Uint16 lowest = 0xFFFF;
    Uint16 highest = 0;
    for (Uint32 i = 0; i < count; i++) {
        if (entries[i].diskWwn != diskWwn)
            continue;
        const Uint16 chunklet = entries[i].chunklet;
        if (chunklet < lowest) {
            start = chunklet;
            lowest = chunklet;
        }
        if (chunklet > highest) {
            end = chunklet;
            highest = chunklet;
        }
    }
}

bool KSV_VolumeBasedOnDiskExtentProvider::_isAddressesNeeded(const CIMPropertyList& propertyList) {
    if (propertyList.isNull())
        return true;
    for (Uint32 i = 0; i < propertyList.size(); i++) {
        if (propertyList[i].equal("StartingAddress") || propertyList[i].equal("EndingAddress"))
            return true;
    }
    return false;
}

// The range is taken over all of the volume's chunklets, not only its user data, so that it
// covers every chunklet the volume holds on the disk.
CIMInstance KSV_VolumeBasedOnDiskExtentProvider::_buildAssociationInstance(
    const CIMObjectPath& volumePath, const CIMObjectPath& diskPath,
    const api_MapVVtoCh_t* volumeRecord, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList) {
    const CIMClass assocClass = KSV_DiskProviderSupport::storedClass(
        _cimom, _assoClassName, includeQualifiers, includeClassOrigin, propertyList);
    CIMInstance instance = KSV_Common::buildAssocInstance(
        _assoClassName, "Antecedent", "Dependent", diskPath, volumePath, assocClass, _hostAddr,
        KSV_AssociationShape::NAMESPACE);
    _addChunkletRange(instance, diskPath, volumeRecord, propertyList);
    return instance;
}

void KSV_VolumeBasedOnDiskExtentProvider::_addChunkletRange(CIMInstance& instance,
                                                            const CIMObjectPath& diskPath,
                                                            const api_MapVVtoCh_t* volumeRecord,
                                                            const CIMPropertyList& propertyList) {
    if (volumeRecord == nullptr || instance.isUninitialized() || !_isAddressesNeeded(propertyList))
        return;
    Uint64 start = 0;
    Uint64 end = 0;
    _getChunkletRange(volumeRecord->chunklets, volumeRecord->chunkletCount,
                      KSV_Common::getStringProperty(diskPath, "DeviceID"), start, end);
    static const CIMName startingAddress("StartingAddress");
    static const CIMName endingAddress("EndingAddress");
    KSV_Common::setPropertyValue(instance, startingAddress, start);
    KSV_Common::setPropertyValue(instance, endingAddress, end);
}

// Only the user data (the third run) relates a volume to a disk.
Array<String>
KSV_VolumeBasedOnDiskExtentProvider::_getUniqueDeviceIDs(const api_MapVVtoCh_t& volume) {
    Array<String> deviceIDs;
    KSV_LockedTable seenDisks(_intHashTable);
    for (Uint32 i = userDataBegin(volume); i < userDataEnd(volume); i++) {
        const api_MapCh_t& entry = volume.chunklets[i];
        try {
            const int64_t diskId = entry.diskId;
            if (hashtable_contains_key(_intHashTable, &diskId) == 1)
                continue;
            deviceIDs.append(diskDeviceID(entry));
            hashtable_put(_intHashTable, &diskId, i);
        } catch (const CIMException& e) {
            log_message(
                2, "Exception in KSV_VolumeBasedOnDiskExtentProvider::_getUniqueDeviceIDs, %s\n",
                static_cast<const char*>(e.getMessage().getCString()));
        } catch (...) {
            log_message(2, "Exception in KSV_VolumeBasedOnDiskExtentProvider::_getUniqueDeviceIDs, "
                           "Unknown error\n");
        }
    }
    seenDisks.release();
    return deviceIDs;
}

// Any class but the two ends must still name a DeviceID; it then has no far end.
Array<CIMObjectPath>
KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames(const OperationContext& context,
                                                              const CIMObjectPath& objectName) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames: className = %s \n",
        className);
    const String deviceID = KSV_Common::getStringProperty(objectName, "DeviceID");
    if (deviceID.size() == 0)
        throw CIMInvalidParameterException(ClassName + " DeviceID key not found.");
    Array<CIMObjectPath> related;
    if (className.equal(_diskClassName))
        related = _volumesOnDisk(deviceID);
    else if (className.equal(_volClassName))
        related = _disksOfVolume(context, objectName, deviceID);
    log_message(4, "<--KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames\n");
    return related;
}

Array<CIMObjectPath>
KSV_VolumeBasedOnDiskExtentProvider::_volumesOnDisk(const String& deviceID) const {
    Array<CIMObjectPath> volumes;
    int64_t diskWwn = API_ALL_DISKS;
    Uint32 diskId = API_ALL_DISK_IDS;
    KSV_Common::callUnderSemaphore(
        [&] { return api_deReferenceDiskDeviceID(deviceID.getCString(), &diskWwn, &diskId); });
    if (diskId == API_ALL_DISK_IDS)
        return volumes;
    DiskMaps maps;
    if (maps.read(diskId) != API_OK)
        return volumes;
    for (Uint32 i = 0; i < maps.size(); i++) {
        const api_MapPDtoVV_t& disk = maps[i];
        if (!String::equal(deviceID, disk.deviceID))
            continue;
        for (Uint32 j = 0; j < disk.volumeCount; j++) {
            if (disk.volumes[j].excluded == 0) {
                volumes.append(KSV_StorageVolumeProvider::createObjectPath(disk.volumes[j].wwn,
                                                                           _systemName, _hostAddr));
            }
        }
    }
    return volumes;
}

template <typename VolumeDeviceID, typename Use>
void KSV_VolumeBasedOnDiskExtentProvider::_forEachDiskOfVolume(const OperationContext& context,
                                                               const CIMObjectPath& volumePath,
                                                               VolumeDeviceID&& volumeDeviceID,
                                                               Use&& use) {
    String elementName;
    if (!_volumeElementName(context, volumePath, elementName))
        return;
    VolumeMaps maps;
    if (maps.read(elementName) != API_OK)
        return;
    const api_MapVVtoCh_t* volume = maps.find(volumeDeviceID());
    if (volume == nullptr)
        return;
    const Array<String> deviceIDs = _getUniqueDeviceIDs(*volume);
    const KSV_DiskStorageExtentProvider extents;
    for (Uint32 i = 0; i < deviceIDs.size(); i++)
        use(extents.buildObjectPath(_hostAddr, deviceIDs[i], _systemName), *volume);
}

Array<CIMObjectPath> KSV_VolumeBasedOnDiskExtentProvider::_disksOfVolume(
    const OperationContext& context, const CIMObjectPath& volumePath, const String& deviceID) {
    Array<CIMObjectPath> disks;
    _forEachDiskOfVolume(
        context, volumePath, [&] { return deviceID; },
        [&](const CIMObjectPath& diskPath, const api_MapVVtoCh_t&) { disks.append(diskPath); });
    return disks;
}

// The other end's instances come from its own provider, through the server.
Array<CIMInstance> KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstances(
    const CIMObjectPath& objectName, const OperationContext& context, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const CIMName& className = objectName.getClassName();
    KSV_AssociationShape::traceClass(
        "-->KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstances: className = %s \n",
        className);
    const Array<CIMObjectPath> farEnds = _getRelatedInstanceNames(context, objectName);
    Array<CIMInstance> related;
    if (farEnds.size() != 0) {
        const CIMName& farClass = className.equal(_diskClassName) ? _volClassName : _diskClassName;
        const Array<CIMInstance> candidates = _cimom.enumerateInstances(
            context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), farClass, false, false,
            includeQualifiers, includeClassOrigin, propertyList);
        for (Uint32 i = 0; i < farEnds.size(); i++) {
            for (Uint32 j = 0; j < candidates.size(); j++) {
                if (KSV_Common::matchObjectPath(farEnds[i], candidates[j].getPath())) {
                    related.append(candidates[j]);
                    break;
                }
            }
        }
    }
    log_message(4, "<--KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstances\n");
    return related;
}

Array<CIMInstance> KSV_VolumeBasedOnDiskExtentProvider::_referencesOfVolume(
    const OperationContext& context, const CIMObjectPath& volumePath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    Array<CIMInstance> associations;
    _forEachDiskOfVolume(
        context, volumePath, [&] { return KSV_Common::getStringProperty(volumePath, "DeviceID"); },
        [&](const CIMObjectPath& diskPath, const api_MapVVtoCh_t& volume) {
            associations.append(_buildAssociationInstance(volumePath, diskPath, &volume,
                                                          includeQualifiers, includeClassOrigin,
                                                          propertyList));
        });
    return associations;
}

// The maps are read only when the response carries the chunklet ranges.
Array<CIMInstance> KSV_VolumeBasedOnDiskExtentProvider::_referencesOfDisk(
    const OperationContext& context, const CIMObjectPath& diskPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList) {
    const Array<CIMObjectPath> volumes = _getRelatedInstanceNames(context, diskPath);
    VolumeMaps maps;
    if (_isAddressesNeeded(propertyList))
        maps.read(String());
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < volumes.size(); i++) {
        const api_MapVVtoCh_t* volume =
            maps.find(KSV_Common::getStringProperty(volumes[i], "DeviceID"));
        associations.append(_buildAssociationInstance(
            volumes[i], diskPath, volume, includeQualifiers, includeClassOrigin, propertyList));
    }
    return associations;
}

bool KSV_VolumeBasedOnDiskExtentProvider::_volumeElementName(const OperationContext& context,
                                                             const CIMObjectPath& volumePath,
                                                             String& elementName) {
    try {
        const CIMValue value = _cimom.getProperty(
            context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), volumePath, "ElementName");
        if (!value.isNull())
            value.get(elementName);
        return true;
    } catch (const Exception&) {
        log_message(4, "Exception thrown in _cimom.getProperty of StorageVolume, probably the "
                       "volume does not exist\n");
        return false;
    }
}

void KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstances(
    const OperationContext& context, const CIMObjectPath& objectPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList, Array<CIMInstance>& out,
    InstanceResponseHandler* handler, int matchOnly) {
    static const WalkTraces traces = {
        "-->KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstances\n",
        "<--KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstances\n",
        "<--KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstances: exception thrown\n"};
    InstanceSink sink(handler, out, objectPath, matchOnly != 0);
    _walkPairs(traces, context, objectPath, includeQualifiers, includeClassOrigin, propertyList,
               sink);
}

void KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstanceNames(
    const OperationContext& context, const CIMObjectPath& objectPath, bool includeQualifiers,
    bool includeClassOrigin, const CIMPropertyList& propertyList, Array<CIMObjectPath>& out,
    ObjectPathResponseHandler* handler) {
    static const WalkTraces traces = {
        "-->KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstanceNames\n",
        "<--KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstanceNames\n",
        "<--KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstanceNames: exception thrown\n"};
    NameSink sink(handler, out);
    _walkPairs(traces, context, objectPath, includeQualifiers, includeClassOrigin, propertyList,
               sink);
}

// An Antecedent key narrows the pairs to the chunklets of that disk. A Dependent key narrows
// them to that volume's maps; a volume the server does not know leaves all volumes, since the
// match of a getInstance still picks the right pair.
KSV_VolumeBasedOnDiskExtentProvider::PairFilter
KSV_VolumeBasedOnDiskExtentProvider::_requestedPairs(const OperationContext& context,
                                                     const CIMObjectPath& objectPath) {
    PairFilter filter;
    if (objectPath.getClassName().isNull())
        return filter;
    const String diskDeviceID =
        KSV_AssociationShape::referencedKey(objectPath, "Antecedent", "DeviceID");
    if (diskDeviceID.size() != 0) {
        filter.diskGiven = true;
        Sint32 diskId = UNKNOWN_DISK_ID;
        api_extractFromSystemDiskID(diskDeviceID.getCString(), &filter.diskWwn, &diskId);
    }
    const String volume = KSV_Common::getStringProperty(objectPath, "Dependent");
    if (volume.size() != 0)
        _volumeElementName(context, CIMObjectPath(volume), filter.volumeName);
    return filter;
}

template <typename Sink>
void KSV_VolumeBasedOnDiskExtentProvider::_walkPairs(
    const WalkTraces& traces, const OperationContext& context, const CIMObjectPath& objectPath,
    bool includeQualifiers, bool includeClassOrigin, const CIMPropertyList& propertyList,
    Sink& sink) {
    log_message(4, "%s", traces.entry);
    const PairFilter filter = _requestedPairs(context, objectPath);
    VolumeMaps maps;
    if (maps.read(filter.volumeName) != API_OK)
        return;
    KSV_LockedTable seenDisks(_intHashTable);
    try {
        const std::vector<ChunkletPair> pairs = _collectPairs(maps, filter);
        sink.begin();
        PairBuilder builder(*this, includeQualifiers, includeClassOrigin, propertyList);
        for (const ChunkletPair& pair : pairs) {
            const api_MapVVtoCh_t& volume = maps[pair.volume];
            if (!sink.take(builder.build(volume, volume.chunklets[pair.chunklet])))
                break;
        }
        sink.end();
    } catch (...) {
        maps.release();
        seenDisks.release();
        log_message(2, "%s", traces.exception);
        throw;
    }
    maps.release();
    seenDisks.release();
    log_message(4, "%s", traces.exit);
}

// Without a disk, each disk counts once per volume (the table holds the disks seen in the
// current volume); with a disk, each of its user-data chunklets counts. The cap applies to
// these index pairs, before any CIM object exists.
std::vector<KSV_VolumeBasedOnDiskExtentProvider::ChunkletPair>
KSV_VolumeBasedOnDiskExtentProvider::_collectPairs(const VolumeMaps& maps,
                                                   const PairFilter& filter) {
    std::vector<ChunkletPair> pairs;
    pairs.reserve(std::min(_userDataEntries(maps), _maxInstCount));
    Uint32 counted = 0;
    for (Uint32 v = 0; v < maps.size(); v++) {
        const api_MapVVtoCh_t& volume = maps[v];
        for (Uint32 c = userDataBegin(volume); c < userDataEnd(volume); c++) {
            if (!_counts(volume.chunklets[c], filter))
                continue;
            if (++counted > _maxInstCount) {
                log_message(2, "# of KSV_VolumeBasedOnDiskExtent instances exceed %u, quit\n",
                            _maxInstCount);
                throw CIMOperationFailedException("Response too big");
            }
            pairs.push_back(ChunkletPair{v, c});
        }
        hashtable_clear(_intHashTable);
    }
    return pairs;
}

// At most this many pairs: reserved at once, the pairs' list is not copied while it grows.
Uint32 KSV_VolumeBasedOnDiskExtentProvider::_userDataEntries(const VolumeMaps& maps) {
    Uint64 entries = 0;
    for (Uint32 v = 0; v < maps.size(); v++)
        entries += userDataEnd(maps[v]) - std::min(userDataBegin(maps[v]), userDataEnd(maps[v]));
    return Uint32(std::min<Uint64>(entries, UINT32_MAX));
}

bool KSV_VolumeBasedOnDiskExtentProvider::_counts(const api_MapCh_t& entry,
                                                  const PairFilter& filter) {
    if (filter.diskGiven)
        return entry.diskWwn == filter.diskWwn;
    const int64_t diskId = entry.diskId;
    if (hashtable_contains_key(_intHashTable, &diskId) == 1)
        return false;
    hashtable_put(_intHashTable, &diskId, diskId);
    return true;
}

KSV_Association KSV_VolumeBasedOnDiskExtentProvider::_association() {
    return KSV_Association(TEXTS, RULES, _assoClassName,
                           KSV_AssociationShape::classList(_diskClassName),
                           KSV_AssociationShape::classList(_volClassName), _cimom, _hostAddr);
}

PEGASUS_NAMESPACE_END
