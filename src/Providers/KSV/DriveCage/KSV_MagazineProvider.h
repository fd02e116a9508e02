// Provider of the magazines of the array's drive cages, classes KSV_Magazine and KSV_DiskBay
// in root/ksv: one object per magazine that holds a present disk.
#ifndef KSV_MagazineProvider_h
#define KSV_MagazineProvider_h

#include "StorageVolume/KSV_ReadOnlyInstanceProvider.h"

PEGASUS_NAMESPACE_BEGIN

struct KSV_MagazineRecord {
    String className;
    String tag;         // the magazine's DeviceID, the parentDeviceID of its disks
    String elementName; // "<cage name>:<magazine position>"
};

class KSV_MagazineProvider : public KSV_ReadOnlyInstanceProvider<KSV_MagazineRecord> {
public:
    KSV_MagazineProvider();

    // Asks the internal cache for the system's host name, the host of every path.
    void initialize(CIMOMHandle& cimom) override;

    // //<hostAddr>/root/ksv:<className> with the string keys, in this order,
    //   CreationClassName = className
    //   Tag               = magazineDeviceID (the parentDeviceID of the magazine's disks)
    static CIMObjectPath buildObjectPath(const CIMName& className, const String& hostAddr,
                                         const String& magazineDeviceID);

    // The class of a magazine by its cage type: cages of types 6, 7 and 8 hold drive bays
    // ("KSV_DiskBay"); every other cage holds magazines ("KSV_Magazine").
    static CIMName _getCIMName(int cageType);

    // The magazines of the class that hold the disks, in the order of their first disk.
    static std::vector<KSV_MagazineRecord> magazinesOf(const std::vector<api_Disk_t>& presentDisks,
                                                       const CIMName& className);

private:
    std::vector<KSV_MagazineRecord> _readRecords(const CIMName& className) const override;
    CIMObjectPath _pathOf(const KSV_MagazineRecord& magazine) const override;
    void _describe(CIMInstance& instance, const KSV_MagazineRecord& magazine) const override;

    String _hostAddr;
};

PEGASUS_NAMESPACE_END

#endif
