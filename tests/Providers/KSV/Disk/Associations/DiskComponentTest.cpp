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

TEST_F(DiskComponentTest, PackageAndExtentNameTheirDiskWhichNamesThemBack) {
    DiskProvider realizes(harness, "KSV_DiskPackageRealizesProvider");
    EXPECT_TRUE(
        sameObjects(realizes.associatorNames(paths.disk(D0)).delivered, {paths.package(D0)}));
    EXPECT_TRUE(
        sameObjects(pathsOf(realizes.associators(paths.package(D1)).delivered), {paths.disk(D1)}));
    // Package first, whichever end asks.
    for (const CIMObjectPath& end : {paths.disk(D0), paths.package(D0)}) {
        const std::vector<CIMObjectPath> names = realizes.referenceNames(end).delivered;
        ASSERT_EQ(names.size(), 1u);
        EXPECT_TRUE(joins(names[0], "Antecedent", paths.package(D0), "Dependent", paths.disk(D0)));
    }

    DiskProvider present(harness, "KSV_DiskPresentProvider");
    EXPECT_TRUE(
        sameObjects(pathsOf(present.associators(paths.disk(D2)).delivered), {paths.extent(D2)}));
    EXPECT_TRUE(
        sameObjects(pathsOf(present.associators(paths.extent(D2)).delivered), {paths.disk(D2)}));
    // Disk first, whichever end asks.
    for (const CIMObjectPath& end : {paths.disk(D4), paths.extent(D4)}) {
        const std::vector<CIMObjectPath> names = present.referenceNames(end).delivered;
        ASSERT_EQ(names.size(), 1u);
        EXPECT_TRUE(joins(names[0], "Antecedent", paths.disk(D4), "Dependent", paths.extent(D4)));
    }

    // The far end must exist: an absent disk has no association, even by its own path.
    EXPECT_TRUE(realizes.associatorNames(paths.package(D3)).delivered.empty());
    EXPECT_TRUE(present.associatorNames(paths.extent(D3)).delivered.empty());
    for (RunningProvider* provider : {&realizes, &present}) {
        EXPECT_TRUE(provider->referenceNames(paths.disk(D3)).delivered.empty());
        EXPECT_TRUE(
            provider->associatorNames(pathOf("CIM_Chassis", {{"DeviceID", D0}})).delivered.empty());
    }
}

TEST_F(DiskComponentTest, MissingKeysFailEveryRequestOfPackageMagazineAndExtent) {
    const CIMObjectPath unrelated = pathOf("CIM_Chassis", {{"Tag", D0}});
    struct Case {
        const char* provider;
        CIMObjectPath objectName;
        const char* message;
    };
    const Case cases[] = {
        {"KSV_DiskPackageRealizesProvider",
         pathOf("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}}),
         "KSV_DiskPackageRealizesProvider DeviceID key not found."},
        {"KSV_DiskPackageRealizesProvider",
         pathOf("KSV_DiskDrivePackage", {{"CreationClassName", "KSV_DiskDrivePackage"}}),
         "KSV_DiskPackageRealizesProvider Tag key not found."},
        {"KSV_DiskPackageRealizesProvider", unrelated,
         "KSV_DiskPackageRealizesProvider DeviceID key not found."},
        {"KSV_DiskPresentProvider", unrelated, "KSV_DiskPresentProvider DeviceID key not found."},
        {"KSV_MagazineContainerProvider",
         pathOf("KSV_Magazine", {{"CreationClassName", "KSV_Magazine"}}),
         "KSV_MagazineContainerProvider Tag key not found."}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        DiskProvider provider(harness, c.provider);
        const std::string failure = std::string("CIM_ERR_INVALID_PARAMETER: ") + c.message;
        EXPECT_EQ(failureOf([&] { provider.associators(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.associatorNames(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.references(c.objectName); }), failure);
        EXPECT_EQ(failureOf([&] { provider.referenceNames(c.objectName); }), failure);
    }
}

TEST_F(DiskComponentTest, IdentityRunsOnEveryDiskWhoseVersionItContains) {
    DiskProvider software(harness, "KSV_DiskSoftwareProvider");
    const std::pair<const char*, std::vector<CIMObjectPath>> runs[] = {{"4.02", disks({D0, D1})},
                                                                       {"4.0", disks({D0})},
                                                                       {"2.10", disks({D4, D5})},
                                                                       {"2.1", disks({D4})}};
    for (const auto& [version, running] : runs) {
        EXPECT_TRUE(
            sameObjects(software.associatorNames(paths.identity(version)).delivered, running))
            << version;
    }
    // A disk names only the identity of its own version; no version, no identity.
    EXPECT_TRUE(
        sameObjects(software.associatorNames(paths.disk(D0)).delivered, {paths.identity("4.0")}));
    EXPECT_TRUE(software.associatorNames(paths.disk(D2)).delivered.empty());
    // Identity first, from either end.
    const std::vector<CIMObjectPath> names =
        software.referenceNames(paths.identity("4.02")).delivered;
    ASSERT_EQ(names.size(), 2u);
    EXPECT_TRUE(joins(names[1], "Antecedent", paths.identity("4.02"), "Dependent", paths.disk(D1)));

    std::vector<CIMObjectPath> expected;
    for (const auto& [disk, version] : {std::make_pair(D0, "4.0"), std::make_pair(D1, "4.02"),
                                        std::make_pair(D4, "2.1"), std::make_pair(D5, "2.10")}) {
        expected.push_back(paths.association("KSV_DiskSoftware", "Antecedent",
                                             paths.identity(version), "Dependent",
                                             paths.disk(disk)));
    }
    EXPECT_TRUE(sameObjects(software.enumerateInstanceNames().delivered, expected));

    // Missing keys are only logged.
    ksvsim::clearCapturedLog();
    EXPECT_EQ(software.associators(pathOf("KSV_DiskSoftwareIdentity", {})).events(), EMPTY_ANSWER);
    EXPECT_TRUE(software.referenceNames(pathOf("KSV_DiskDrive", {})).delivered.empty());
    EXPECT_EQ(logTexts(3), (Strings{" InstanceID key not found.", " DeviceID key not found."}));
}

TEST_F(DiskComponentTest, MagazineHoldsThePackagesOfItsPresentDisks) {
    DiskProvider container(harness, "KSV_MagazineContainerProvider");
    EXPECT_TRUE(sameObjects(container.associatorNames(paths.magazine("cage0:0")).delivered,
                            {paths.package(D0), paths.package(D1)}));
    EXPECT_TRUE(sameObjects(container.associatorNames(paths.magazine("cage0:1")).delivered,
                            {paths.package(D2)}));

    // A package's magazine is the server's instance: a bay for the bay cage.
    harness.clearCalls();
    EXPECT_TRUE(sameObjects(pathsOf(container.associators(paths.package(D0)).delivered),
                            {paths.magazine("cage0:0")}));
    EXPECT_EQ(harness.calls("getInstance").size(), 1u);
    EXPECT_TRUE(sameObjects(container.associatorNames(paths.package(D4)).delivered,
                            {paths.magazine("cage1:0", "KSV_DiskBay")}));
    for (const CIMObjectPath& end : {paths.package(D1), paths.magazine("cage0:0")}) {
        const std::vector<CIMObjectPath> names = container.referenceNames(end).delivered;
        ASSERT_FALSE(names.empty());
        EXPECT_TRUE(joins(names.back(), "GroupComponent", paths.magazine("cage0:0"),
                          "PartComponent", paths.package(D1)));
    }

    // A magazine the server cannot produce is left out; enumeration names the magazine from
    // the disk record without asking the server.
    ASSERT_TRUE(harness.removeInstance(CIMNamespaceName("root/ksv"), paths.magazine("cage0:0")));
    EXPECT_EQ(container.associators(paths.package(D0)).events(), EMPTY_ANSWER);
    EXPECT_TRUE(container.references(paths.package(D0)).delivered.empty());
    harness.clearCalls();
    const std::vector<CIMObjectPath> all = container.enumerateInstanceNames().delivered;
    ASSERT_EQ(all.size(), 5u);
    EXPECT_TRUE(joins(all.front(), "GroupComponent", paths.magazine("cage0:0"), "PartComponent",
                      paths.package(D0)));
    EXPECT_TRUE(harness.calls("getInstance").empty());
}

} // namespace
} // namespace ksv::test
