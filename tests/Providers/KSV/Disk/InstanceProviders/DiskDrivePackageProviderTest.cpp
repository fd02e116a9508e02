// KSV_DiskDrivePackage: one package per present disk, keyed by the disk's DeviceID as Tag, with
// the manufacturing data as stored.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDrivePackageProvider.h"

namespace ksv::test {
namespace {

const char* const NEARLINE_DISK = "5000C500A1B2C3D5-id-9";

CIMObjectPath packagePath(const std::string& tag) {
    return pathOf("KSV_DiskDrivePackage",
                  {{"CreationClassName", "KSV_DiskDrivePackage"}, {"Tag", tag}});
}

class DiskDrivePackageProviderTest : public ArrayTest {
protected:
    DiskDrivePackageProviderTest() : ArrayTest("disk-mappings.json") {}

    InitializedProvider<KSV_DiskDrivePackageProvider> provider{harness};
};

TEST_F(DiskDrivePackageProviderTest, PackagesOfThePresentDisksWithTheirManufacturingData) {
    const Answer packages = enumerate(provider, "KSV_DiskDrivePackage");
    EXPECT_EQ(enumerateNames(provider, "KSV_DiskDrivePackage").paths, packages.paths);
    ASSERT_EQ(packages.instances.size(), 5u);
    EXPECT_EQ(render(packages.instances[2],
                     "CreationClassName Tag Manufacturer Model SerialNumber ElementName"),
              "CreationClassName=KSV_DiskDrivePackage Tag=5000C500A1B2C3D5-id-9 "
              "Manufacturer=HITACHI Model=HUS724020ALS640 SerialNumber= Z1P0 ABCD  "
              "ElementName=null");
    EXPECT_EQ(render(packages.paths[2]), "ksv-map.example.net root/ksv:KSV_DiskDrivePackage "
                                         "CreationClassName=KSV_DiskDrivePackage "
                                         "Tag=5000C500A1B2C3D5-id-9");
}

TEST_F(DiskDrivePackageProviderTest, GetInstanceMatchesAnyKeyOrderAndNameCase) {
    ksvsim::clearCalls();
    const CIMObjectPath reordered =
        pathOf("KSV_DiskDrivePackage",
               {{"tag", NEARLINE_DISK}, {"CREATIONCLASSNAME", "KSV_DiskDrivePackage"}});
    const Answer answer = get(provider, reordered);
    ASSERT_EQ(answer.instances.size(), 1u);
    EXPECT_EQ(answer.instances[0].getPath(), packagePath(NEARLINE_DISK));
    // A package path has no DeviceID: all disks are read and the path match picks the package.
    EXPECT_EQ(arrayCalls().at(2), "api_getSystemDisks(-10)");
}

TEST_F(DiskDrivePackageProviderTest, MissingUnknownAndAbsentTagsAreRefused) {
    EXPECT_EQ(cimErrorOf([&] {
                  get(provider, pathOf("KSV_DiskDrivePackage",
                                       {{"CreationClassName", "KSV_DiskDrivePackage"}}));
              }),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskDrivePackageProvider Tag key not found.");
    for (const char* tag : {"5000CCA000000005-id-12", "no-such-disk"}) {
        EXPECT_EQ(cimErrorOf([&] { get(provider, packagePath(tag)); }),
                  std::string("CIM_ERR_NOT_FOUND: KSV_DiskDrivePackageProvider CIM Object not "
                              "found.") +
                      tag);
    }
}

} // namespace
} // namespace ksv::test
