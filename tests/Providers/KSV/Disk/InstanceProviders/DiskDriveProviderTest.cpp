// KSV_DiskDrive over arrays/disk-mappings.json, which holds one disk per mapping branch: every
// property mapping, the object path, and what getInstance reads and matches.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDriveProvider.h"

namespace ksv::test {
namespace {

const char* const ROTATING_ON_CAGE_1 = "5000CCA01A2B3C4F-id-7";
const char* const SOLID_STATE_ON_CAGE_3 = "5001517A0B1C2D30-id-8";
const char* const NEARLINE_ON_CAGE_4 = "5000C500A1B2C3D5-id-9";
const char* const UNKNOWN_ON_CAGE_6 = "5000CCA000000003-id-10";
const char* const ROTATING_ON_CAGE_2 = "5000CCA000000004-id-11";
const char* const ABSENT = "5000CCA000000005-id-12";

CIMObjectPath diskPath(const std::string& deviceID, const std::string& systemName = "KSV-MAP") {
    return pathOf("KSV_DiskDrive", {{"SystemCreationClassName", "KSV_StorageSystem"},
                                    {"SystemName", systemName},
                                    {"CreationClassName", "KSV_DiskDrive"},
                                    {"DeviceID", deviceID}});
}

class DiskDriveProviderTest : public ArrayTest {
protected:
    DiskDriveProviderTest() : ArrayTest("disk-mappings.json") {}

    std::string properties(const std::string& deviceID, const std::string& names) {
        const Answer answer = get(provider, diskPath(deviceID));
        return answer.instances.size() == 1 ? render(answer.instances[0], names) : "not one";
    }

    InitializedProvider<KSV_DiskDriveProvider> provider{harness};
};

TEST_F(DiskDriveProviderTest, RecordFieldsMapToProperties) {
    // Cage type 1 is reported as 2; the capacity product wraps in 32 bits (4294968 * 1000).
    EXPECT_EQ(properties(ROTATING_ON_CAGE_1,
                         "SystemCreationClassName SystemName CreationClassName DeviceID Position "
                         "ID CageType Name ElementName MaxMediaSize ChunkSize DefaultBlockSize "
                         "MaxBlockSize MinBlockSize OperationalStatus OtherOperationalStatus "
                         "Availability Capabilities HealthState DeviceType LocationIndicator "
                         "FormFactor Encryption Temperature IsLDAllocateable StateOnLoopA "
                         "StateOnLoopB AlpaOnLoopA AlpaOnLoopB MediaType"),
              "SystemCreationClassName=KSV_StorageSystem SystemName=KSV-MAP "
              "CreationClassName=KSV_DiskDrive DeviceID=5000CCA01A2B3C4F-id-7 Position=3 ID=7 "
              "CageType=2 Name=5000CCA01A2B3C4F ElementName=rotating-fc MaxMediaSize=704 "
              "ChunkSize=268435456 DefaultBlockSize=520 MaxBlockSize=520 MinBlockSize=520 "
              "OperationalStatus=[2] OtherOperationalStatus=7 Availability=3 "
              "Capabilities=[2 3 4 9] HealthState=5 DeviceType=1 LocationIndicator=2 "
              "FormFactor=2 Encryption=1 Temperature=41 IsLDAllocateable=FALSE StateOnLoopA=4 "
              "StateOnLoopB=2 AlpaOnLoopA=224 AlpaOnLoopB=220 MediaType=1");
}

TEST_F(DiskDriveProviderTest, ChunkCountsInOrderAndUnknownErrorCountsUnset) {
    EXPECT_EQ(properties(ROTATING_ON_CAGE_1,
                         "ChunksNormalUsedOK ChunksNormalUsedFail ChunksNormalUnusedFree "
                         "ChunksNormalUnusedUninit ChunksNormalUnusedFail ChunksSpareUsedOK "
                         "ChunksSpareUsedFail ChunksSpareUnusedFree ChunksSpareUnusedUninit "
                         "ChunksSpareUnusedFail CorrectableReadErrors UncorrectableReadErrors "
                         "CorrectableWriteErrors UncorrectableWriteErrors"),
              "ChunksNormalUsedOK=11 ChunksNormalUsedFail=12 ChunksNormalUnusedFree=13 "
              "ChunksNormalUnusedUninit=14 ChunksNormalUnusedFail=15 ChunksSpareUsedOK=21 "
              "ChunksSpareUsedFail=22 ChunksSpareUnusedFree=23 ChunksSpareUnusedUninit=24 "
              "ChunksSpareUnusedFail=25 CorrectableReadErrors=null UncorrectableReadErrors=3 "
              "CorrectableWriteErrors=4 UncorrectableWriteErrors=null");
}

TEST_F(DiskDriveProviderTest, TechnologyDecidesSpeedDiskTypeAndInterconnect) {
    const std::string names = "DeviceType DiskType InterconnectType Availability "
                              "OperationalStatus WearLevelRemain DiskSpeed RPM MaxMediaSize";
    // Solid-state: wear instead of speed, RPM 0 although the record has a speed of 5.
    EXPECT_EQ(properties(SOLID_STATE_ON_CAGE_3, names),
              "DeviceType=4 DiskType=3 InterconnectType=5 Availability=10 "
              "OperationalStatus=[3] WearLevelRemain=88 DiskSpeed=null RPM=0 "
              "MaxMediaSize=450000");
    // Nearline and unknown technologies override the connector's interconnect (2 and 1).
    EXPECT_EQ(properties(NEARLINE_ON_CAGE_4, names),
              "DeviceType=5 DiskType=1 InterconnectType=1 Availability=4 OperationalStatus=[6] "
              "WearLevelRemain=null DiskSpeed=7 RPM=7000 MaxMediaSize=2000000");
    EXPECT_EQ(properties(UNKNOWN_ON_CAGE_6, "DeviceType DiskType InterconnectType Availability"),
              "DeviceType=9 DiskType=0 InterconnectType=0 Availability=2");
    EXPECT_EQ(properties(ROTATING_ON_CAGE_2, "DiskType InterconnectType"),
              "DiskType=2 InterconnectType=6");
}

TEST_F(DiskDriveProviderTest, EnclosureBlockIsReadByCageType) {
    // LED word for cage types 1, 2, 3, 5; enclosure services at offset 4 for types 3 to 5, at
    // offset 0 for types 6 to 8, and not reported for types 1 and 2.
    const std::string names = "CageType SystemLED IsESI ESIState";
    EXPECT_EQ(properties(ROTATING_ON_CAGE_1, names),
              "CageType=2 SystemLED=6 IsESI=null ESIState=null");
    EXPECT_EQ(properties(ROTATING_ON_CAGE_2, names),
              "CageType=2 SystemLED=1 IsESI=null ESIState=null");
    EXPECT_EQ(properties(SOLID_STATE_ON_CAGE_3, names),
              "CageType=3 SystemLED=9 IsESI=TRUE ESIState=4");
    EXPECT_EQ(properties(NEARLINE_ON_CAGE_4, names),
              "CageType=4 SystemLED=null IsESI=FALSE ESIState=null");
    EXPECT_EQ(properties(UNKNOWN_ON_CAGE_6, names),
              "CageType=6 SystemLED=null IsESI=TRUE ESIState=2");
}

TEST_F(DiskDriveProviderTest, PortPathsAndTheLastPrimaryPath) {
    const std::string names = "InitiatorPortA InitiatorPortB PrimaryPortPath";
    EXPECT_EQ(properties(ROTATING_ON_CAGE_1, names),
              "InitiatorPortA=[1:6:1] InitiatorPortB=[0:2:1] PrimaryPortPath=1:6:1");
    EXPECT_EQ(properties(NEARLINE_ON_CAGE_4, names),
              "InitiatorPortA=[0:1:2] InitiatorPortB=[2:3:4] PrimaryPortPath=2:3:4");
    // A primary path without a port is none; the lists are set though empty.
    EXPECT_EQ(properties(UNKNOWN_ON_CAGE_6, names),
              "InitiatorPortA=[] InitiatorPortB=[] PrimaryPortPath=null");

    loadArrayText(R"({
      "system": { "name": "KSV-Q", "id": 1, "hostName": "q", "ipv4": "192.0.2.5", "quadPort": true },
      "users": [ { "name": "admin", "password": "pw" } ],
      "cages": [ { "name": "cage0", "type": 2, "magazines": [ { "position": 0 } ] } ],
      "disks": [
        { "id": 0, "wwn": "5000CCA0000000A0", "cage": "cage0", "magazine": 0, "position": 0,
          "paths": { "A": { "lpid": "0:2:1" }, "B": { "lpid": "1:2:1" },
                     "B1": { "lpid": "1:3:1", "primary": true } } },
        { "id": 1, "wwn": "5000CCA0000000A1", "cage": "cage0", "magazine": 0, "position": 1,
          "paths": { "A1": { "lpid": "4:0:7", "primary": true }, "B": { "lpid": "7:15:7" } } }
      ] })");
    InitializedProvider<KSV_DiskDriveProvider> quadPort(harness);
    const Answer answer = enumerate(quadPort, "KSV_DiskDrive");
    ASSERT_EQ(answer.instances.size(), 2u);
    EXPECT_EQ(render(answer.instances[0], names),
              "InitiatorPortA=[0:2:1 0] InitiatorPortB=[1:2:1 1:3:1] PrimaryPortPath=1:3:1");
    EXPECT_EQ(render(answer.instances[1], names),
              "InitiatorPortA=[0 4:0:7] InitiatorPortB=[7:15:7 0] PrimaryPortPath=4:0:7");
}

TEST_F(DiskDriveProviderTest, EnumerationsListPresentDisksAndNamesMatchInstances) {
    const Answer names = enumerateNames(provider, "KSV_DiskDrive");
    EXPECT_TRUE(harness.server().calls("getClass").empty()) << "names need no class";
    const Answer instances = enumerate(provider, "KSV_DiskDrive");
    ASSERT_EQ(instances.paths.size(), 5u);
    EXPECT_EQ(names.paths, instances.paths);
    EXPECT_EQ(render(names.paths[1]),
              "ksv-map.example.net root/ksv:KSV_DiskDrive CreationClassName=KSV_DiskDrive "
              "DeviceID=5001517A0B1C2D30-id-8 SystemCreationClassName=KSV_StorageSystem "
              "SystemName=KSV-MAP");
    EXPECT_EQ(render(instances.instances[4], "DeviceID"),
              std::string("DeviceID=") + ROTATING_ON_CAGE_2);
}

TEST_F(DiskDriveProviderTest, GetInstanceReadsOneDiskAndMatchesAllKeysButTheHost) {
    harness.clearArrayCalls();
    EXPECT_EQ(get(provider, diskPath(SOLID_STATE_ON_CAGE_3)).instances.size(), 1u);
    EXPECT_EQ(arrayCalls(),
              (Strings{"api_ksvOpenForCimserver(admin)",
                       "api_deReferenceDiskDeviceID(5001517A0B1C2D30-id-8)", "cim_sem_wait()",
                       "api_getSystemDisks(5001517A0B1C2D30)", "cim_sem_post()"}));

    const CIMObjectPath otherHostAndOrder =
        pathOf("ksv_diskdrive",
               {{"deviceid", ROTATING_ON_CAGE_2},
                {"SystemName", "KSV-MAP"},
                {"CreationClassName", "KSV_DiskDrive"},
                {"SystemCreationClassName", "KSV_StorageSystem"}},
               "192.0.2.40");
    EXPECT_EQ(get(provider, otherHostAndOrder).instances.size(), 1u);
    EXPECT_EQ(
        cimErrorOf([&] { get(provider, diskPath(ROTATING_ON_CAGE_2, "X")); }),
        "CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.5000CCA000000004-id-11");
}

TEST_F(DiskDriveProviderTest, AbsentUnknownAndKeylessDisksAreRefused) {
    EXPECT_EQ(cimErrorOf([&] { get(provider, diskPath(ABSENT)); }),
              std::string("CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.") +
                  ABSENT);
    EXPECT_EQ(
        cimErrorOf([&] { get(provider, diskPath("5000CCA0FFFFFFFF-id-99")); }),
        "CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.5000CCA0FFFFFFFF-id-99");
    harness.clearArrayCalls();
    EXPECT_EQ(cimErrorOf([&] {
                  get(provider, pathOf("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}}));
              }),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskDriveProvider DeviceID key not found.");
    EXPECT_EQ(arrayCalls(), Strings{"api_ksvOpenForCimserver(admin)"});
}

TEST_F(DiskDriveProviderTest, BuilderSharedWithAssociationsTakesItsIdentityFromArguments) {
    api_DiskList_t list{};
    ASSERT_EQ(api_getSystemDisks(API_ALL_DISKS, &list), API_OK);
    const CIMInstance built = provider->build_instance(
        harness.server().serveGetClass(Route::ServerHandle, "root/ksv", "KSV_DiskDrive", false,
                                       true, true, CIMPropertyList()),
        list.disks[1], "other-host", "OTHER", Uint8(1));
    free(list.disks);
    EXPECT_EQ(render(built, "SystemName InitiatorPortA"),
              "SystemName=OTHER InitiatorPortA=[0:2:1 0]");
    EXPECT_EQ(render(built.getPath()),
              "other-host root/ksv:KSV_DiskDrive CreationClassName=KSV_DiskDrive "
              "DeviceID=5001517A0B1C2D30-id-8 SystemCreationClassName=KSV_StorageSystem "
              "SystemName=OTHER");
}

} // namespace
} // namespace ksv::test
