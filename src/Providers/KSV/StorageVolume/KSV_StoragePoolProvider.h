// Provider of the array's storage pools, class KSV_StoragePool in root/ksv: the primordial pool
// of all usable disks, and one concrete pool per disk technology that usable disks have.
#ifndef KSV_StoragePoolProvider_h
#define KSV_StoragePoolProvider_h

#include "KSV_ReadOnlyInstanceProvider.h"

PEGASUS_NAMESPACE_BEGIN

struct KSV_PoolRecord {
    String poolID; // "primordial", "all-FC", "all-NL" or "all-SSD"
    Boolean primordial;
    Uint64 totalManagedSpace;     // bytes of the member disks
    Uint64 remainingManagedSpace; // bytes of their free chunklets
};

class KSV_StoragePoolProvider : public KSV_ReadOnlyInstanceProvider<KSV_PoolRecord> {
public:
    KSV_StoragePoolProvider();

    // Reads the array's identity; the provider cannot serve without it.
    void initialize(CIMOMHandle& cimom) override;

    // //<hostAddr>/root/ksv:KSV_StoragePool with the one string key
    //   InstanceID = instanceID ("QUANOR:primordial" for the primordial pool)
    static CIMObjectPath buildInstanceName(const String& instanceID, const String& hostAddr);

    // The pools that the present disks make, primordial first, then "all-FC", "all-NL" and
    // "all-SSD" as far as usable disks of that technology exist. A disk is usable while its
    // health is at most 19, as for the primordial pool's components.
    static std::vector<KSV_PoolRecord> poolsOf(const std::vector<api_Disk_t>& presentDisks);

private:
    std::vector<KSV_PoolRecord> _readRecords(const CIMName& className) const override;
    CIMObjectPath _pathOf(const KSV_PoolRecord& pool) const override;
    void _describe(CIMInstance& instance, const KSV_PoolRecord& pool) const override;

    String _hostAddr;
};

PEGASUS_NAMESPACE_END

#endif
