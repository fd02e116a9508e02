// Provider of the storage system as a whole, class KSV_StorageSystem in root/ksv: one instance,
// the array that this CIM server manages.
#ifndef KSV_StorageSystemProvider_h
#define KSV_StorageSystemProvider_h

#include "KSV_ReadOnlyInstanceProvider.h"

PEGASUS_NAMESPACE_BEGIN

// The array's identity as the system instance shows it.
struct KSV_SystemRecord {
    String name;
    String hostName;
    String address;
    Uint32 serialNumber;
};

class KSV_StorageSystemProvider : public KSV_ReadOnlyInstanceProvider<KSV_SystemRecord> {
public:
    KSV_StorageSystemProvider();

    // Reads the array's identity; the provider cannot serve without it.
    void initialize(CIMOMHandle& cimom) override;

    // //<hostAddr>/root/ksv:KSV_StorageSystem with the string keys, in this order,
    //   CreationClassName = "KSV_StorageSystem"
    //   Name              = systemName
    static CIMObjectPath buildObjectPath(const String& systemName, const String& hostAddr);

private:
    std::vector<KSV_SystemRecord> _readRecords(const CIMName& className) const override;
    CIMObjectPath _pathOf(const KSV_SystemRecord& system) const override;
    void _describe(CIMInstance& instance, const KSV_SystemRecord& system) const override;

    KSV_SystemRecord _system;
};

PEGASUS_NAMESPACE_END

#endif
