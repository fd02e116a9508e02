// A disk's own objects tied together: its package (KSV_DiskPackageRealizes), its firmware
// identity (KSV_DiskSoftware), its extent (KSV_DiskPresent) and its package's magazine
// (KSV_MagazineContainer). Each request about one end names disk records by one key.
#include "AssociationTestSupport.h"

namespace ksv::test {
namespace {

class DiskComponentTest : public ::testing::Test {
protected:
    std::vector<CIMObjectPath> disks(std::initializer_list<const char*> deviceIDs) const {
        std::vector<CIMObjectPath> result;
        for (const char* deviceID : deviceIDs)
            result.push_back(paths.disk(deviceID));
        return result;
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
};

TEST_F(DiskComponentTest, PackageAndDiskNameEachOther) {
    RunningProvider realizes(harness, "KSV_DiskPackageRealizesProvider");
    EXPECT_TRUE(
        sameObjects(realizes.associatorNames(paths.disk(D0)).delivered, {paths.package(D0)}));
    const std::vector<CIMObject> disk = realizes.associators(paths.package(D1)).delivered;
    EXPECT_TRUE(sameObjects(pathsOf(disk), {paths.disk(D1)}));

    // The far end must exist: an absent disk has no association, even by its own path.
    EXPECT_TRUE(realizes.associatorNames(paths.package(D3)).delivered.empty());
    EXPECT_TRUE(realizes.referenceNames(paths.disk(D3)).delivered.empty());
    EXPECT_TRUE(realizes.associatorNames(ModelPaths::path("CIM_Chassis", {{"DeviceID", D0}}))
                    .delivered.empty());

    // Package first, whichever end asks.
    for (const CIMObjectPath& end : {paths.disk(D0), paths.package(D0)}) {
        const std::vector<CIMObjectPath> names = realizes.referenceNames(end).delivered;
        ASSERT_EQ(names.size(), 1u);
        EXPECT_EQ(keyNames(names[0]), (std::vector<std::string>{"Antecedent", "Dependent"}));
        EXPECT_TRUE(KSV_Common::matchObjectPath(endOf(names[0], "Antecedent"), paths.package(D0)));
        EXPECT_TRUE(KSV_Common::matchObjectPath(endOf(names[0], "Dependent"), paths.disk(D0)));
    }
}

TEST_F(DiskComponentTest, MissingKeysFailEveryRequestOfPackageMagazineAndExtent) {
    const CIMObjectPath diskWithoutID =
        ModelPaths::path("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}});
    const CIMObjectPath packageWithoutTag =
        ModelPaths::path("KSV_DiskDrivePackage", {{"CreationClassName", "KSV_DiskDrivePackage"}});
    const CIMObjectPath magazineWithoutTag =
        ModelPaths::path("KSV_Magazine", {{"CreationClassName", "KSV_Magazine"}});
    const CIMObjectPath unrelated = ModelPaths::path("CIM_Chassis", {{"Tag", D0}});
    struct Case {
        const char* provider;
        CIMObjectPath objectName;
        const char* message;
    };
    const Case cases[] = {
        {"KSV_DiskPackageRealizesProvider", diskWithoutID,
         "KSV_DiskPackageRealizesProvider DeviceID key not found."},
        {"KSV_DiskPackageRealizesProvider", packageWithoutTag,
         "KSV_DiskPackageRealizesProvider Tag key not found."},
        {"KSV_DiskPackageRealizesProvider", unrelated,
         "KSV_DiskPackageRealizesProvider DeviceID key not found."},
        {"KSV_DiskPresentProvider", unrelated, "KSV_DiskPresentProvider DeviceID key not found."},
        {"KSV_MagazineContainerProvider", magazineWithoutTag,
         "KSV_MagazineContainerProvider Tag key not found."}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        RunningProvider provider(harness, c.provider);
        const auto failure = std::make_pair(CIM_ERR_INVALID_PARAMETER, std::string(c.message));
        EXPECT_EQ(failureOf([&] { provider.associators(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.associatorNames(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.references(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.referenceNames(c.objectName); }), failure);
    }
}

TEST_F(DiskComponentTest, IdentityRunsOnEveryDiskWhoseVersionItContains) {
    RunningProvider software(harness, "KSV_DiskSoftwareProvider");
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.identity("4.02")).delivered, disks({D0, D1})));
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.identity("4.0")).delivered, disks({D0})));
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.identity("2.10")).delivered, disks({D4, D5})));
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.identity("2.1")).delivered, disks({D4})));
    // A disk names only the identity of its own version; no version, no identity.
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.disk(D0)).delivered, {paths.identity("4.0")}));
    EXPECT_TRUE(software.associatorNames(paths.disk(D2)).delivered.empty());

    std::vector<CIMObjectPath> expected;
    for (const auto& disk : {std::make_pair(D0, "4.0"), std::make_pair(D1, "4.02"),
                             std::make_pair(D4, "2.1"), std::make_pair(D5, "2.10")}) {
        expected.push_back(paths.association("KSV_DiskSoftware", "Antecedent",
                                             paths.identity(disk.second), "Dependent",
                                             paths.disk(disk.first)));
    }
    EXPECT_TRUE(sameObjects(software.enumerateInstanceNames().delivered, expected));
}

TEST_F(DiskComponentTest, FirmwareKeysThatAreMissingAreOnlyLogged) {
    RunningProvider software(harness, "KSV_DiskSoftwareProvider");
    const CIMObjectPath identityWithoutID = ModelPaths::path("KSV_DiskSoftwareIdentity", {});
    const RecordingObjectHandler answer = software.associators(identityWithoutID);
    EXPECT_EQ(answer.events(), (std::vector<std::string>{"processing", "complete"}));
    EXPECT_EQ(harness.logTexts(3), std::vector<std::string>{" InstanceID key not found."});
    harness.clearLog();
    EXPECT_TRUE(software.referenceNames(ModelPaths::path("KSV_DiskDrive", {})).delivered.empty());
    EXPECT_EQ(harness.logTexts(3), std::vector<std::string>{" DeviceID key not found."});
}

TEST_F(DiskComponentTest, DiskAndExtentNameEachOtherWithTheDiskFirst) {
    RunningProvider present(harness, "KSV_DiskPresentProvider");
    EXPECT_TRUE(
        sameObjects(pathsOf(present.associators(paths.disk(D2)).delivered), {paths.extent(D2)}));
    EXPECT_TRUE(
        sameObjects(pathsOf(present.associators(paths.extent(D2)).delivered), {paths.disk(D2)}));
    EXPECT_TRUE(present.associatorNames(paths.extent(D3)).delivered.empty());
    const std::vector<CIMObjectPath> names = present.referenceNames(paths.extent(D4)).delivered;
    ASSERT_EQ(names.size(), 1u);
    EXPECT_TRUE(KSV_Common::matchObjectPath(
        names[0], paths.association("KSV_DiskPresent", "Antecedent", paths.disk(D4), "Dependent",
                                    paths.extent(D4))));
    EXPECT_EQ(keyNames(names[0]), (std::vector<std::string>{"Antecedent", "Dependent"}));
}

TEST_F(DiskComponentTest, MagazineHoldsThePackagesOfItsPresentDisks) {
    RunningProvider container(harness, "KSV_MagazineContainerProvider");
    EXPECT_TRUE(
        sameObjects(container.associatorNames(paths.magazine("KSV_Magazine", "cage0:0")).delivered,
                    {paths.package(D0), paths.package(D1)}));
    EXPECT_TRUE(
        sameObjects(container.associatorNames(paths.magazine("KSV_Magazine", "cage0:1")).delivered,
                    {paths.package(D2)}));

    // A package's magazine is the server's instance: a bay for the bay cage.
    harness.server().clearCalls();
    const std::vector<CIMObject> magazine = container.associators(paths.package(D0)).delivered;
    EXPECT_TRUE(sameObjects(pathsOf(magazine), {paths.magazine("KSV_Magazine", "cage0:0")}));
    EXPECT_EQ(harness.server().calls("getInstance").size(), 1u);
    EXPECT_TRUE(sameObjects(container.associatorNames(paths.package(D4)).delivered,
                            {paths.magazine("KSV_DiskBay", "cage1:0")}));

    const std::vector<CIMObjectPath> names = container.referenceNames(paths.package(D1)).delivered;
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(keyNames(names[0]), (std::vector<std::string>{"GroupComponent", "PartComponent"}));
    EXPECT_TRUE(KSV_Common::matchObjectPath(endOf(names[0], "GroupComponent"),
                                            paths.magazine("KSV_Magazine", "cage0:0")));
    EXPECT_TRUE(KSV_Common::matchObjectPath(endOf(names[0], "PartComponent"), paths.package(D1)));
}

TEST_F(DiskComponentTest, MagazineTheServerCannotProduceIsLeftOut) {
    RunningProvider container(harness, "KSV_MagazineContainerProvider");
    ASSERT_TRUE(harness.server().removeInstance(CIMNamespaceName("root/ksv"),
                                                paths.magazine("KSV_Magazine", "cage0:0")));
    const RecordingObjectHandler answer = container.associators(paths.package(D0));
    EXPECT_EQ(answer.events(), (std::vector<std::string>{"processing", "complete"}));
    EXPECT_TRUE(container.references(paths.package(D0)).delivered.empty());

    // Enumeration names the magazine from the disk record without asking the server.
    harness.server().clearCalls();
    const std::vector<CIMObjectPath> all = container.enumerateInstanceNames().delivered;
    EXPECT_EQ(all.size(), 5u);
    EXPECT_TRUE(KSV_Common::matchObjectPath(endOf(all.front(), "GroupComponent"),
                                            paths.magazine("KSV_Magazine", "cage0:0")));
    EXPECT_TRUE(harness.server().calls("getInstance").empty());
}

} // namespace
} // namespace ksv::test
