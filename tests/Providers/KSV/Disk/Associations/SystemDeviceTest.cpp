// The storage system and its devices: KSV_SystemDisk (disk drives) and KSV_SystemExtent (disk
// storage extents), which share one behaviour apart from their classes and result-class rules.
#include "AssociationTestSupport.h"

namespace ksv::test {
namespace {

struct SystemDevice {
    const char* provider;
    const char* association;
    CIMObjectPath (ModelPaths::*part)(const std::string&) const;
    const char* partClass;
};

const SystemDevice DEVICES[] = {
    {"KSV_SystemDiskProvider", "KSV_SystemDisk", &ModelPaths::disk, "KSV_DiskDrive"},
    {"KSV_SystemExtentProvider", "KSV_SystemExtent", &ModelPaths::extent, "KSV_DiskStorageExtent"}};

const char* const PRESENT_DISKS[] = {D0, D1, D2, D4, D5};

class SystemDeviceTest : public ::testing::TestWithParam<SystemDevice> {
protected:
    CIMObjectPath part(const std::string& deviceID) const {
        return (paths.*GetParam().part)(deviceID);
    }
    std::vector<CIMObjectPath> presentParts() const {
        std::vector<CIMObjectPath> parts;
        for (const char* deviceID : PRESENT_DISKS)
            parts.push_back(part(deviceID));
        return parts;
    }
    CIMObjectPath association(const std::string& deviceID,
                              const CIMObjectPath& system = CIMObjectPath()) const {
        return paths.association(GetParam().association, "GroupComponent",
                                 system.getClassName().isNull() ? paths.system() : system,
                                 "PartComponent", part(deviceID));
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
    DiskProvider provider{harness, GetParam().provider};
};

TEST_P(SystemDeviceTest, TheSystemHasEveryPresentDiskAndEachDiskTheSystem) {
    EXPECT_TRUE(sameObjects(provider.associatorNames(paths.system()).delivered, presentParts()));
    const std::vector<CIMObject> parts = provider.associators(paths.system()).delivered;
    EXPECT_TRUE(sameObjects(pathsOf(parts), presentParts()));
    EXPECT_EQ(text(parts.front().getClassName().getString()), GetParam().partClass);
    // Any path of the system class stands for the system; a disk is not looked up.
    EXPECT_TRUE(sameObjects(provider.associatorNames(paths.system("another-array")).delivered,
                            presentParts()));
    EXPECT_TRUE(
        sameObjects(provider.associatorNames(part(UNKNOWN_DISK)).delivered, {paths.system()}));
    EXPECT_TRUE(sameObjects(pathsOf(provider.associators(part(D0)).delivered), {paths.system()}));
    EXPECT_EQ(provider.associatorNames(pathOf("CIM_Chassis", {{"Tag", D0}})).events(),
              EMPTY_ANSWER);
}

TEST_P(SystemDeviceTest, ReferencesNameTheSystemFirstAndTheDiskAsGiven) {
    const std::vector<CIMObjectPath> names = provider.referenceNames(part(UNKNOWN_DISK)).delivered;
    ASSERT_EQ(names.size(), 1u);
    EXPECT_TRUE(
        joins(names[0], "GroupComponent", paths.system(), "PartComponent", part(UNKNOWN_DISK)));
    EXPECT_EQ(text(names[0].getHost()), harness.hostName());
    EXPECT_EQ(text(names[0].getClassName().getString()), GetParam().association);
    // From any path of the system class, the associations name the system itself.
    const std::vector<CIMObject> fromSystem =
        provider.references(paths.system("another-array")).delivered;
    ASSERT_EQ(fromSystem.size(), 5u);
    for (size_t i = 0; i < fromSystem.size(); i++)
        EXPECT_TRUE(joins(fromSystem[i].getPath(), "GroupComponent", paths.system(),
                          "PartComponent", part(PRESENT_DISKS[i])));
}

TEST_P(SystemDeviceTest, EnumerationAndGetInstanceCoverPresentDisksOnly) {
    std::vector<CIMObjectPath> expected;
    for (const char* deviceID : PRESENT_DISKS)
        expected.push_back(association(deviceID));
    EXPECT_TRUE(sameObjects(provider.enumerateInstanceNames().delivered, expected));
    EXPECT_TRUE(sameObjects(pathsOf(provider.enumerateInstances().delivered), expected));

    ksvsim::clearCalls();
    EXPECT_TRUE(
        sameObjects(pathsOf(provider.getInstance(association(D1)).delivered), {association(D1)}));
    // Only the requested disk is read.
    for (const std::string& call : arrayCalls()) {
        if (call.rfind("api_getSystemDisks", 0) == 0) {
            EXPECT_EQ(call, "api_getSystemDisks(5000CCA000000A01)");
        }
    }
    for (const CIMObjectPath& missing : {association(D3), association(UNKNOWN_DISK),
                                         association(D1, paths.system("another-array"))}) {
        EXPECT_EQ(failureOf([&] { provider.getInstance(missing); }),
                  std::string("CIM_ERR_NOT_FOUND: ") + GetParam().provider +
                      " CIM Object not found.");
    }
}

TEST_P(SystemDeviceTest, ArrayThatCannotBeReadGivesEmptyAnswers) {
    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY);
    EXPECT_EQ(provider.enumerateInstanceNames().events(), EMPTY_ANSWER);
    EXPECT_TRUE(provider.associatorNames(paths.system()).delivered.empty());
    EXPECT_EQ(failureOf([&] { provider.getInstance(association(D0)); }).rfind("CIM_ERR_NOT_FOUND"),
              0u);
    ksvsim::clearForcedResults();

    ksvsim::clearCalls();
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_TRUE(provider.enumerateInstances().delivered.empty());
    EXPECT_EQ(callCount("cim_sem_post"), 0u);
    EXPECT_EQ(callCount("api_getSystemDisks"), 0u);
}

INSTANTIATE_TEST_SUITE_P(BothDevices, SystemDeviceTest, ::testing::ValuesIn(DEVICES),
                         [](const auto& info) { return std::string(info.param.association); });

} // namespace
} // namespace ksv::test
