// The magazine provider: the magazines and drive bays that hold the array's present disks,
// served under the paths that the magazine-container association builds from disk records.
#include "DriveCage/KSV_MagazineProvider.h"

#include "ProviderModule.h"
#include "ProviderTestSupport.h"

#include <set>

namespace ksv::test {
namespace {

const std::string NOT_FOUND = "CIM_ERR_NOT_FOUND: KSV_MagazineProvider CIM Object not found.";

CIMObjectPath magazinePath(const CIMName& className, const char* deviceID) {
    return KSV_MagazineProvider::buildObjectPath(className, "ksv-d7.example.net", deviceID);
}

class MagazineProviderTest : public ::testing::Test {
protected:
    std::vector<CIMObjectPath> names(const char* className) {
        Query query;
        query.className = className;
        return provider.enumerateInstanceNames(query).delivered;
    }

    ProviderHarness harness;
    ProviderModule module{KSV_DRIVE_CAGE_MODULE};
    RunningProvider provider{harness, module.createProvider("KSV_MagazineProvider"), "KSV_DiskBay"};
};

TEST_F(MagazineProviderTest, ServesTheMagazineOfEveryPresentDiskOnceUnderItsClass) {
    // Drive bays take the place of magazines in cage types six to eight.
    for (int cageType = -1; cageType <= 9; cageType++) {
        EXPECT_EQ(text(KSV_MagazineProvider::_getCIMName(cageType).getString()),
                  cageType >= 6 && cageType <= 8 ? "KSV_DiskBay" : "KSV_Magazine")
            << cageType;
    }
    // The magazine path of every present disk, as the disk module's association builds it.
    api_DiskList_t disks = {0, nullptr};
    api_getSystemDisks(API_ALL_DISKS, &disks);
    std::set<std::string> expected;
    for (Uint32 i = 0; i < disks.count; i++) {
        if (!disks.disks[i].isAbsent) {
            expected.insert(
                text(magazinePath(KSV_MagazineProvider::_getCIMName(disks.disks[i].cageType),
                                  disks.disks[i].parentDeviceID)
                         .toString()));
        }
    }
    free(disks.disks);
    std::set<std::string> served;
    for (const char* className : {"KSV_Magazine", "KSV_DiskBay"}) {
        for (const CIMObjectPath& path : names(className)) {
            EXPECT_TRUE(path.getClassName().equal(className)) << text(path.toString());
            EXPECT_TRUE(served.insert(text(path.toString())).second) << text(path.toString());
        }
    }
    EXPECT_EQ(served, expected);
    EXPECT_EQ(names("KSV_Magazine").size(), 17u);
    EXPECT_EQ(names("KSV_DiskBay").size(), 8u);
    // A magazine whose only disk is absent is not served.
    EXPECT_EQ(served.count(text(magazinePath("KSV_Magazine", "KSV-D7-DC1-M7").toString())), 0u);
    EXPECT_EQ(
        failureOf([&] { provider.getInstance(magazinePath("KSV_Magazine", "KSV-D7-DC1-M7")); }),
        NOT_FOUND);
}

TEST_F(MagazineProviderTest, InstancesCarryTheirKeysAndTheirPlaceInTheCage) {
    const std::vector<CIMInstance> bays = provider.enumerateInstances().delivered;
    ASSERT_FALSE(bays.empty());
    EXPECT_EQ(text(bays[0].getPath().toString()),
              "//ksv-d7.example.net/root/ksv:KSV_DiskBay.CreationClassName=\"KSV_DiskBay\","
              "Tag=\"KSV-D7-DC3-M0\"");
    EXPECT_EQ(render(bays[0], "Tag CreationClassName ElementName"),
              "Tag=KSV-D7-DC3-M0 CreationClassName=KSV_DiskBay ElementName=cage3:0");
    const RecordingInstanceHandler fetched = provider.getInstance(bays[0].getPath());
    ASSERT_EQ(fetched.events(), Strings({"processing", "deliver", "complete"}));
    EXPECT_TRUE(fetched.delivered[0].getPath().identical(bays[0].getPath()));
    // getInstance needs the class that the cage type gives.
    EXPECT_EQ(
        failureOf([&] { provider.getInstance(magazinePath("KSV_Magazine", "KSV-D7-DC3-M0")); }),
        NOT_FOUND);
}

TEST_F(MagazineProviderTest, RefusesOtherUsersAndClasses) {
    const std::string denied = "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user";
    EXPECT_EQ(failureOf([&] { provider.enumerateInstanceNames(byUser("auditor")); }), denied);
    EXPECT_EQ(failureOf([&] {
                  provider.getInstance(magazinePath("KSV_DiskBay", "KSV-D7-DC3-M0"),
                                       byUser("auditor"));
              }),
              denied);
    EXPECT_EQ(failureOf([&] { names("KSV_DiskDrivePackage"); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_MagazineProvider Invalid class nameKSV_DiskDrivePackage");
    EXPECT_EQ(module.createProvider("KSV_Magazine"), nullptr);
}

} // namespace
} // namespace ksv::test
