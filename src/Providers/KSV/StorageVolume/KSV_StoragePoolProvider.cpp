#include "KSV_StoragePoolProvider.h"

#include "KSV_InternalCacheService.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_StoragePoolProvider");

namespace {

// Above this health value a disk's space is not usable (CIM "Major failure" and worse).
const int USABLE_HEALTH_LIMIT = 19;

// The primordial pool, then the concrete pools of the disk technologies.
const char* const POOL_IDS[] = {"primordial", "all-FC", "all-NL", "all-SSD"};

// The index in POOL_IDS of a disk technology's concrete pool; 0 for a technology without one.
size_t concretePoolOf(int diskType) {
    switch (diskType) {
    case 1:
    case 2:
        return 1;
    case 5:
        return 2;
    case 4:
        return 3;
    }
    return 0;
}

void addDisk(KSV_PoolRecord& pool, const api_Disk_t& disk) {
    pool.totalManagedSpace += disk.blockSize * disk.numBlocks;
    pool.remainingManagedSpace += Uint64(disk.freeChunks) * disk.chunkSize;
}

} // namespace

KSV_StoragePoolProvider::KSV_StoragePoolProvider()
    : KSV_ReadOnlyInstanceProvider<KSV_PoolRecord>(ClassName, {"KSV_StoragePool"}) {}

void KSV_StoragePoolProvider::initialize(CIMOMHandle& cimom) {
    KSV_ReadOnlyInstanceProvider<KSV_PoolRecord>::initialize(cimom);
    _hostAddr = KSV_InternalCacheService::withSystemInfo(ClassName).getSystemHostName();
}

CIMObjectPath KSV_StoragePoolProvider::buildInstanceName(const String& instanceID,
                                                         const String& hostAddr) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", instanceID, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, CIMNamespaceName("root/ksv"), CIMName("KSV_StoragePool"), keys);
}

std::vector<KSV_PoolRecord>
KSV_StoragePoolProvider::poolsOf(const std::vector<api_Disk_t>& presentDisks) {
    std::vector<KSV_PoolRecord> pools;
    for (const char* poolID : POOL_IDS)
        pools.push_back({poolID, pools.empty(), 0, 0});
    std::vector<bool> used(pools.size(), false);
    used[0] = true; // the primordial pool exists even without usable disks
    for (const api_Disk_t& disk : presentDisks) {
        if (disk.healthState > USABLE_HEALTH_LIMIT)
            continue;
        addDisk(pools[0], disk);
        const size_t concrete = concretePoolOf(disk.type_);
        if (concrete != 0) {
            addDisk(pools[concrete], disk);
            used[concrete] = true;
        }
    }
    std::vector<KSV_PoolRecord> existing;
    for (size_t i = 0; i < pools.size(); i++) {
        if (used[i])
            existing.push_back(pools[i]);
    }
    return existing;
}

std::vector<KSV_PoolRecord> KSV_StoragePoolProvider::_readRecords(const CIMName&) const {
    std::vector<api_Disk_t> disks;
    if (!KSV_readPresentDisks(disks))
        return {};
    return poolsOf(disks);
}

CIMObjectPath KSV_StoragePoolProvider::_pathOf(const KSV_PoolRecord& pool) const {
    return buildInstanceName("QUANOR:" + pool.poolID, _hostAddr);
}

void KSV_StoragePoolProvider::_describe(CIMInstance& instance, const KSV_PoolRecord& pool) const {
    KSV_Common::setPropertyValue(instance, "PoolID", pool.poolID);
    KSV_Common::setPropertyValue(instance, "ElementName", pool.poolID);
    KSV_Common::setPropertyValue(instance, "Primordial", pool.primordial);
    KSV_Common::setPropertyValue(instance, "TotalManagedSpace", pool.totalManagedSpace);
    KSV_Common::setPropertyValue(instance, "RemainingManagedSpace", pool.remainingManagedSpace);
}

PEGASUS_NAMESPACE_END
