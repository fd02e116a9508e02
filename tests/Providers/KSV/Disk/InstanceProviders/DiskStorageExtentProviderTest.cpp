// KSV_DiskStorageExtent: the primordial extent of every present disk, with the library's sizes
// as reported, named by the same DeviceID as its disk drive.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

namespace ksv::test {
namespace {

CIMObjectPath extentPath(const std::string& deviceID, const std::string& systemName = "KSV-MAP") {
    return pathOf("KSV_DiskStorageExtent", {{"SystemCreationClassName", "KSV_StorageSystem"},
                                            {"SystemName", systemName},
                                            {"CreationClassName", "KSV_DiskStorageExtent"},
                                            {"DeviceID", deviceID}});
}

class DiskStorageExtentProviderTest : public ArrayTest {
protected:
    DiskStorageExtentProviderTest() : ArrayTest("disk-mappings.json") {}

    InitializedProvider<KSV_DiskStorageExtentProvider> provider{harness};
};

TEST_F(DiskStorageExtentProviderTest, ExtentsCarryTheDiskSizesAndStatusUnchanged) {
    const Answer extents = enumerate(provider, "KSV_DiskStorageExtent");
    ASSERT_EQ(extents.instances.size(), 5u);
    const std::string names = "SystemCreationClassName SystemName CreationClassName DeviceID "
                              "Access BlockSize NumberOfBlocks ConsumableBlocks OperationalStatus "
                              "Primordial HealthState ExtentDiscriminator ExtentStatus";
    EXPECT_EQ(render(extents.instances[0], names),
              "SystemCreationClassName=KSV_StorageSystem SystemName=KSV-MAP "
              "CreationClassName=KSV_DiskStorageExtent DeviceID=5000CCA01A2B3C4F-id-7 Access=3 "
              "BlockSize=520 NumberOfBlocks=1000 ConsumableBlocks=900 OperationalStatus=[2] "
              "Primordial=TRUE HealthState=5 ExtentDiscriminator=[SNIA:Pool Component "
              "SNIA:DiskDrive] ExtentStatus=[2]");
    EXPECT_EQ(render(extents.instances[1], "BlockSize OperationalStatus HealthState"),
              "BlockSize=512 OperationalStatus=[3] HealthState=10");
    EXPECT_EQ(render(extents.instances[3], "BlockSize NumberOfBlocks ConsumableBlocks"),
              "BlockSize=4096 NumberOfBlocks=0 ConsumableBlocks=0");
}

TEST_F(DiskStorageExtentProviderTest, ExtentsAreNamedLikeTheirDisks) {
    InitializedProvider<KSV_DiskDriveProvider> drives(harness);
    const Answer extents = enumerate(provider, "KSV_DiskStorageExtent");
    const Answer disks = enumerate(drives, "KSV_DiskDrive");
    ASSERT_EQ(extents.instances.size(), disks.instances.size());
    for (size_t i = 0; i < disks.instances.size(); i++) {
        EXPECT_EQ(render(extents.instances[i], "SystemName DeviceID"),
                  render(disks.instances[i], "SystemName DeviceID"));
    }
    EXPECT_EQ(render(extents.paths[1]), "ksv-map.example.net root/ksv:KSV_DiskStorageExtent "
                                        "CreationClassName=KSV_DiskStorageExtent "
                                        "DeviceID=5001517A0B1C2D30-id-8 "
                                        "SystemCreationClassName=KSV_StorageSystem "
                                        "SystemName=KSV-MAP");
}

TEST_F(DiskStorageExtentProviderTest, GetInstanceReadsTheNamedDiskAndChecksEveryKey) {
    ksvsim::clearCalls();
    EXPECT_EQ(get(provider, extentPath("5001517A0B1C2D30-id-8")).instances.size(), 1u);
    EXPECT_EQ(arrayCalls().at(3), "api_getSystemDisks(5001517A0B1C2D30)");
    const std::string notFound =
        "CIM_ERR_NOT_FOUND: KSV_DiskStorageExtentProvider CIM Object not found.";
    EXPECT_EQ(cimErrorOf([&] { get(provider, extentPath("5001517A0B1C2D30-id-8", "OTHER")); }),
              notFound + "5001517A0B1C2D30-id-8");
    EXPECT_EQ(cimErrorOf([&] { get(provider, extentPath("5000CCA000000005-id-12")); }),
              notFound + "5000CCA000000005-id-12");
    // No key check of its own: a path without DeviceID is simply not found.
    EXPECT_EQ(cimErrorOf([&] {
                  get(provider, pathOf("KSV_DiskStorageExtent", {{"SystemName", "KSV-MAP"}}));
              }),
              notFound);
}

} // namespace
} // namespace ksv::test
