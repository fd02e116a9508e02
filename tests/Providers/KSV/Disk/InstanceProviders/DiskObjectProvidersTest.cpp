// The disk's other objects over arrays/disk-mappings.json: its package (keyed by the DeviceID as
// Tag), its primordial extent (named like the disk) and the firmware identities, one per distinct
// version, de-duplicated through a table that every request must find unlocked and empty.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

namespace ksv::test {
namespace {

const char* const DISK_8 = "5001517A0B1C2D30-id-8";
const char* const NEARLINE_DISK = "5000C500A1B2C3D5-id-9";
const char* const ABSENT = "5000CCA000000005-id-12";

CIMObjectPath packagePath(const std::string& tag) {
    return pathOf("KSV_DiskDrivePackage",
                  {{"CreationClassName", "KSV_DiskDrivePackage"}, {"Tag", tag}},
                  "ksv-map.example.net");
}

using DiskObjectProvidersTest = MappingArrayTest;

TEST_F(DiskObjectProvidersTest, PackagesCarryTheManufacturingDataAndAreFoundByTag) {
    DiskProvider packages(harness, "KSV_DiskDrivePackageProvider", "KSV_DiskDrivePackage");
    const std::vector<CIMInstance> all = packages.enumerateInstances().delivered;
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(render(all[2], "CreationClassName Tag Manufacturer Model SerialNumber ElementName"),
              "CreationClassName=KSV_DiskDrivePackage Tag=5000C500A1B2C3D5-id-9 "
              "Manufacturer=HITACHI Model=HUS724020ALS640 SerialNumber= Z1P0 ABCD  "
              "ElementName=null");
    EXPECT_EQ(render(all[2].getPath()), "ksv-map.example.net root/ksv:KSV_DiskDrivePackage "
                                        "CreationClassName=KSV_DiskDrivePackage "
                                        "Tag=5000C500A1B2C3D5-id-9");

    // Any key order and name case; a package path has no DeviceID, so all disks are read and
    // the path match picks the package.
    ksvsim::clearCalls();
    const std::vector<CIMInstance> found =
        packages
            .getInstance(
                pathOf("KSV_DiskDrivePackage",
                       {{"tag", NEARLINE_DISK}, {"CREATIONCLASSNAME", "KSV_DiskDrivePackage"}}))
            .delivered;
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].getPath(), packagePath(NEARLINE_DISK));
    EXPECT_EQ(arrayCalls().at(2), "api_getSystemDisks(-10)");

    EXPECT_EQ(failureOf([&] {
                  packages.getInstance(pathOf("KSV_DiskDrivePackage",
                                              {{"CreationClassName", "KSV_DiskDrivePackage"}}));
              }),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskDrivePackageProvider Tag key not found.");
    for (const std::string tag : {ABSENT, "no-such-disk"}) {
        EXPECT_EQ(failureOf([&] { packages.getInstance(packagePath(tag)); }),
                  "CIM_ERR_NOT_FOUND: KSV_DiskDrivePackageProvider CIM Object not found." + tag);
    }
}

TEST_F(DiskObjectProvidersTest, ExtentsCarryTheDiskSizesAndStatusUnderTheDisksNames) {
    DiskProvider extents(harness, "KSV_DiskStorageExtentProvider", "KSV_DiskStorageExtent");
    DiskProvider drives(harness, "KSV_DiskDriveProvider", "KSV_DiskDrive");
    const std::vector<CIMInstance> all = extents.enumerateInstances().delivered;
    const std::vector<CIMInstance> disks = drives.enumerateInstances().delivered;
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(render(all[0],
                     "SystemCreationClassName SystemName CreationClassName DeviceID Access "
                     "BlockSize NumberOfBlocks ConsumableBlocks OperationalStatus Primordial "
                     "HealthState ExtentDiscriminator ExtentStatus"),
              "SystemCreationClassName=KSV_StorageSystem SystemName=KSV-MAP "
              "CreationClassName=KSV_DiskStorageExtent DeviceID=5000CCA01A2B3C4F-id-7 Access=3 "
              "BlockSize=520 NumberOfBlocks=1000 ConsumableBlocks=900 OperationalStatus=[2] "
              "Primordial=TRUE HealthState=5 ExtentDiscriminator=[SNIA:Pool Component "
              "SNIA:DiskDrive] ExtentStatus=[2]");
    EXPECT_EQ(render(all[1], "BlockSize OperationalStatus HealthState"),
              "BlockSize=512 OperationalStatus=[3] HealthState=10");
    EXPECT_EQ(render(all[3], "BlockSize NumberOfBlocks ConsumableBlocks"),
              "BlockSize=4096 NumberOfBlocks=0 ConsumableBlocks=0");
    for (size_t i = 0; i < all.size(); i++) {
        EXPECT_EQ(render(all[i], "SystemName DeviceID"), render(disks[i], "SystemName DeviceID"));
    }
    EXPECT_EQ(render(all[1].getPath()),
              "ksv-map.example.net root/ksv:KSV_DiskStorageExtent "
              "CreationClassName=KSV_DiskStorageExtent DeviceID=5001517A0B1C2D30-id-8 "
              "SystemCreationClassName=KSV_StorageSystem SystemName=KSV-MAP");

    ksvsim::clearCalls();
    EXPECT_EQ(extents.getInstance(devicePath(DISK_8, "KSV_DiskStorageExtent")).delivered.size(),
              1u);
    EXPECT_EQ(arrayCalls().at(3), "api_getSystemDisks(5001517A0B1C2D30)");
    const std::string notFound =
        "CIM_ERR_NOT_FOUND: KSV_DiskStorageExtentProvider CIM Object not found.";
    EXPECT_EQ(
        failureOf([&] { extents.getInstance(devicePath(DISK_8, "KSV_DiskStorageExtent", "X")); }),
        notFound + DISK_8);
    EXPECT_EQ(failureOf([&] { extents.getInstance(devicePath(ABSENT, "KSV_DiskStorageExtent")); }),
              notFound + ABSENT);
    // No key check of its own: a path without DeviceID is simply not found.
    EXPECT_EQ(failureOf([&] {
                  extents.getInstance(pathOf("KSV_DiskStorageExtent", {{"SystemName", "KSV-MAP"}}));
              }),
              notFound);
}

// An array whose disks carry the firmware versions given, disk i of vendor "V<i>".
std::string arrayWithVersions(const Strings& versions) {
    std::string disks;
    for (size_t i = 0; i < versions.size(); i++) {
        const std::string id = std::to_string(i);
        disks += (i == 0 ? "" : ",") + std::string(R"({ "id": )") + id +
                 R"(, "wwn": "5000CCA00000010)" + id +
                 R"(", "cage": "c", "magazine": 0, "position": )" + id +
                 R"(, "manufacturer": { "vendor": "V)" + id + R"(" }, "firmware": { "version": ")" +
                 versions[i] + R"(" } })";
    }
    return R"({ "system": { "name": "F", "id": 3, "hostName": "f", "ipv4": "192.0.2.7" },
                "users": [ { "name": "admin", "password": "pw" } ],
                "cages": [ { "name": "c", "type": 2, "magazines": [ { "position": 0 } ] } ],
                "disks": [ )" +
           disks + "] }";
}

TEST_F(DiskObjectProvidersTest, OneIdentityPerVersionDescribedByItsFirstDisk) {
    DiskProvider identities(harness, "KSV_DiskSoftwareIdentityProvider",
                            "KSV_DiskSoftwareIdentity");
    const auto rendered = [&](const std::string& names) {
        std::string all;
        for (const CIMInstance& identity : identities.enumerateInstances().delivered)
            all += "{" + render(identity, names) + "}";
        return all;
    };
    // "4.0" is on the first and third disk; the disk without a version and the absent disk's
    // "9.9" give none; versions are kept as stored, trailing blank included.
    ksvsim::clearCalls();
    EXPECT_EQ(rendered("InstanceID VersionString Manufacturer FirmwareStatus"),
              "{InstanceID=QUANOR:4.0 VersionString=4.0 Manufacturer=SEAGATE FirmwareStatus=1}"
              "{InstanceID=QUANOR:4.02 VersionString=4.02 Manufacturer=STEC FirmwareStatus=2}"
              "{InstanceID=QUANOR:2.10  VersionString=2.10  Manufacturer=HGST "
              "FirmwareStatus=3}");
    // The table is locked after the read and left empty for the next request.
    EXPECT_EQ(arrayCalls(),
              (Strings{"api_ksvOpenForCimserver(admin)", "cim_sem_wait()",
                       "api_getSystemDisks(-10)", "cim_sem_post()", "hashtable_lock()",
                       "hashtable_contains_key()", "hashtable_put()", "hashtable_contains_key()",
                       "hashtable_put()", "hashtable_contains_key()", "hashtable_contains_key()",
                       "hashtable_put()", "hashtable_clear()", "hashtable_unlock()"}));
    const std::vector<CIMObjectPath> names = identities.enumerateInstanceNames().delivered;
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(render(names[1]),
              "ksv-map.example.net root/ksv:KSV_DiskSoftwareIdentity InstanceID=QUANOR:4.02");

    EXPECT_EQ(
        render(identities
                   .getInstance(pathOf("KSV_DiskSoftwareIdentity", {{"InstanceID", "QUANOR:4.02"}}))
                   .delivered.at(0),
               "Manufacturer"),
        "Manufacturer=STEC");
    EXPECT_EQ(
        failureOf([&] {
            identities.getInstance(
                pathOf("KSV_DiskSoftwareIdentity", {{"InstanceID", "QUANOR:9.9"}}));
        }),
        "CIM_ERR_NOT_FOUND: KSV_DiskSoftwareIdentityProvider CIM Object not found.QUANOR:9.9");
    EXPECT_EQ(failureOf([&] {
                  identities.getInstance(pathOf("KSV_DiskSoftwareIdentity", {{"Version", "4.0"}}));
              }),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskSoftwareIdentityProvider InstanceID key not "
              "found.");

    loadArrayText(arrayWithVersions({"3.1", "2.1", "3.1", "2.10", "2.1", "3.1"}));
    EXPECT_EQ(rendered("InstanceID Manufacturer"),
              "{InstanceID=QUANOR:3.1 Manufacturer=V0}{InstanceID=QUANOR:2.1 Manufacturer=V1}"
              "{InstanceID=QUANOR:2.10 Manufacturer=V3}");
    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY, 1);
    ksvsim::clearCalls();
    EXPECT_EQ(rendered("InstanceID"), "");
    EXPECT_EQ(arrayCalls().back(), "cim_sem_post()") << "a failed read takes no table lock";
}

} // namespace
} // namespace ksv::test
