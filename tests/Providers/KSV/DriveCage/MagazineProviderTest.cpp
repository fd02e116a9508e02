// The magazine provider: the magazines and drive bays that hold the array's present disks,
// served under the paths that the magazine-container association builds from disk records.
#include "DriveCage/KSV_MagazineProvider.h"

#include "ProviderHarness.h"
#include "ProviderModule.h"
#include "RecordingHandlers.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace ksv::test {
namespace {

using namespace Pegasus;
using Strings = std::vector<std::string>;

std::string text(const String& value) {
    return std::string(value.getCString());
}

std::string errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const CIMException& error) {
        return std::string(cimStatusCodeToString(error.getCode())) + ": " +
               text(error.getMessage());
    }
    return "no exception";
}

class MagazineProviderTest : public ::testing::Test {
protected:
    MagazineProviderTest()
        : module(KSV_DRIVE_CAGE_MODULE), provider(dynamic_cast<CIMInstanceProvider*>(
                                             module.createProvider("KSV_MagazineProvider"))) {
        CIMOMHandle cimom = harness.cimom();
        provider->initialize(cimom);
    }
    ~MagazineProviderTest() override { provider->terminate(); }

    std::vector<CIMObjectPath> names(const char* className, const std::string& user = "admin") {
        RecordingObjectPathHandler handler;
        provider->enumerateInstanceNames(ProviderHarness::context(user),
                                         CIMObjectPath(String(), "root/ksv", className), handler);
        return handler.delivered;
    }

    std::vector<CIMInstance> instances(const char* className) {
        RecordingInstanceHandler handler;
        provider->enumerateInstances(ProviderHarness::context(),
                                     CIMObjectPath(String(), "root/ksv", className), false, false,
                                     CIMPropertyList(), handler);
        return handler.delivered;
    }

    CIMInstance get(const CIMObjectPath& path, const std::string& user = "admin") {
        RecordingInstanceHandler handler;
        provider->getInstance(ProviderHarness::context(user), path, false, false, CIMPropertyList(),
                              handler);
        EXPECT_EQ(handler.events(), Strings({"processing", "deliver", "complete"}));
        return handler.delivered.at(0);
    }

    // The magazine path of every present disk, as the disk module's association builds it.
    std::set<std::string> magazinesOfPresentDisks() {
        api_DiskList_t disks = {0, nullptr};
        api_getSystemDisks(API_ALL_DISKS, &disks);
        std::set<std::string> paths;
        for (Uint32 i = 0; i < disks.count; i++) {
            const api_Disk_t& disk = disks.disks[i];
            if (!disk.isAbsent) {
                paths.insert(text(KSV_MagazineProvider::buildObjectPath(
                                      KSV_MagazineProvider::_getCIMName(disk.cageType),
                                      "ksv-d7.example.net", disk.parentDeviceID)
                                      .toString()));
            }
        }
        free(disks.disks);
        return paths;
    }

    ProviderHarness harness;
    ProviderModule module;
    CIMInstanceProvider* provider;
};

TEST_F(MagazineProviderTest, ServesTheMagazineOfEveryPresentDiskOnceUnderItsClass) {
    std::set<std::string> served;
    for (const char* className : {"KSV_Magazine", "KSV_DiskBay"}) {
        for (const CIMObjectPath& path : names(className)) {
            EXPECT_TRUE(path.getClassName().equal(className)) << text(path.toString());
            EXPECT_TRUE(served.insert(text(path.toString())).second) << text(path.toString());
        }
    }
    EXPECT_EQ(served, magazinesOfPresentDisks());
    EXPECT_EQ(names("KSV_Magazine").size(), 17u);
    EXPECT_EQ(names("KSV_DiskBay").size(), 8u);
}

TEST_F(MagazineProviderTest, AMagazineWhoseOnlyDiskIsAbsentIsNotServed) {
    for (const CIMObjectPath& path : names("KSV_Magazine"))
        EXPECT_EQ(text(path.toString()).find("KSV-D7-DC1-M7"), std::string::npos);
    const CIMObjectPath emptied = KSV_MagazineProvider::buildObjectPath(
        "KSV_Magazine", "ksv-d7.example.net", "KSV-D7-DC1-M7");
    EXPECT_EQ(errorOf([&] { get(emptied); }),
              "CIM_ERR_NOT_FOUND: KSV_MagazineProvider CIM Object not found.");
}

TEST_F(MagazineProviderTest, InstancesCarryTheirKeysAndTheirPlaceInTheCage) {
    const std::vector<CIMInstance> bays = instances("KSV_DiskBay");
    ASSERT_FALSE(bays.empty());
    const CIMInstance& first = bays[0];
    EXPECT_EQ(text(first.getPath().toString()),
              "//ksv-d7.example.net/root/ksv:KSV_DiskBay.CreationClassName=\"KSV_DiskBay\","
              "Tag=\"KSV-D7-DC3-M0\"");
    const auto property = [&](const char* name) {
        return text(first.getProperty(first.findProperty(name)).getValue().toString());
    };
    EXPECT_EQ(property("Tag"), "KSV-D7-DC3-M0");
    EXPECT_EQ(property("CreationClassName"), "KSV_DiskBay");
    EXPECT_EQ(property("ElementName"), "cage3:0");
    EXPECT_TRUE(get(first.getPath()).getPath().identical(first.getPath()));
}

TEST_F(MagazineProviderTest, GetInstanceNeedsTheClassThatTheCageTypeGives) {
    const CIMObjectPath bayAsMagazine = KSV_MagazineProvider::buildObjectPath(
        "KSV_Magazine", "ksv-d7.example.net", "KSV-D7-DC3-M0");
    EXPECT_EQ(errorOf([&] { get(bayAsMagazine); }),
              "CIM_ERR_NOT_FOUND: KSV_MagazineProvider CIM Object not found.");
}

TEST_F(MagazineProviderTest, RefusesOtherUsersAndClasses) {
    EXPECT_EQ(errorOf([&] { names("KSV_Magazine", "auditor"); }),
              "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
    EXPECT_EQ(errorOf([&] {
                  get(KSV_MagazineProvider::buildObjectPath("KSV_DiskBay", "h", "KSV-D7-DC3-M0"),
                      "auditor");
              }),
              "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
    EXPECT_EQ(errorOf([&] { names("KSV_DiskDrivePackage"); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_MagazineProvider Invalid class nameKSV_DiskDrivePackage");
    EXPECT_EQ(module.createProvider("KSV_Magazine"), nullptr);
}

} // namespace
} // namespace ksv::test
