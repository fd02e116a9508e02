// KSV_DiskDrive over arrays/disk-mappings.json: every property mapping, the object path, what
// getInstance reads and matches, and the locate LED through modifyInstance of LocationIndicator.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDriveProvider.h"

namespace ksv::test {
namespace {

const char* const ROTATING_ON_CAGE_1 = "5000CCA01A2B3C4F-id-7";    // cage-t1 magazine 0, LED lit
const char* const SOLID_STATE_ON_CAGE_3 = "5001517A0B1C2D30-id-8"; // cage-t3 magazine 0
const char* const NEARLINE_ON_CAGE_4 = "5000C500A1B2C3D5-id-9";
const char* const UNKNOWN_ON_CAGE_6 = "5000CCA000000003-id-10";
const char* const ROTATING_ON_CAGE_2 = "5000CCA000000004-id-11";
const char* const ABSENT = "5000CCA000000005-id-12";
const char* const UNKNOWN_DISK = "5000CCA0FFFFFFFF-id-99";

class DiskDriveProviderTest : public MappingArrayTest {
protected:
    // The properties of the one instance getInstance finds for the disk.
    std::string properties(const std::string& deviceID, const std::string& names) {
        const std::vector<CIMInstance> found = provider.getInstance(devicePath(deviceID)).delivered;
        return found.size() == 1 ? render(found[0], names) : "not one";
    }

    DiskProvider provider{harness, "KSV_DiskDriveProvider", "KSV_DiskDrive"};
};

struct Mapping {
    const char* disk;
    const char* names;
    const char* expected;
};

// Cage type 1 is reported as 2 and the capacity product wraps in 32 bits (4294968 * 1000);
// unknown error counts keep the class default. Solid-state disks report wear instead of speed
// (RPM 0 although the record has a speed); nearline and unknown technologies override the
// connector's interconnect. The LED word is read for cage types 1, 2, 3 and 5, enclosure
// services at offset 4 for types 3 to 5 and at offset 0 for types 6 to 8. A primary path
// without a port is none.
const Mapping MAPPINGS[] = {
    {ROTATING_ON_CAGE_1,
     "SystemCreationClassName SystemName CreationClassName DeviceID Position ID CageType Name "
     "ElementName MaxMediaSize ChunkSize DefaultBlockSize MaxBlockSize MinBlockSize "
     "OperationalStatus OtherOperationalStatus Availability Capabilities HealthState DeviceType "
     "LocationIndicator FormFactor Encryption Temperature IsLDAllocateable StateOnLoopA "
     "StateOnLoopB AlpaOnLoopA AlpaOnLoopB MediaType",
     "SystemCreationClassName=KSV_StorageSystem SystemName=KSV-MAP "
     "CreationClassName=KSV_DiskDrive DeviceID=5000CCA01A2B3C4F-id-7 Position=3 ID=7 CageType=2 "
     "Name=5000CCA01A2B3C4F ElementName=rotating-fc MaxMediaSize=704 ChunkSize=268435456 "
     "DefaultBlockSize=520 MaxBlockSize=520 MinBlockSize=520 OperationalStatus=[2] "
     "OtherOperationalStatus=7 Availability=3 Capabilities=[2 3 4 9] HealthState=5 DeviceType=1 "
     "LocationIndicator=2 FormFactor=2 Encryption=1 Temperature=41 IsLDAllocateable=FALSE "
     "StateOnLoopA=4 StateOnLoopB=2 AlpaOnLoopA=224 AlpaOnLoopB=220 MediaType=1"},
    {ROTATING_ON_CAGE_1,
     "ChunksNormalUsedOK ChunksNormalUsedFail ChunksNormalUnusedFree ChunksNormalUnusedUninit "
     "ChunksNormalUnusedFail ChunksSpareUsedOK ChunksSpareUsedFail ChunksSpareUnusedFree "
     "ChunksSpareUnusedUninit ChunksSpareUnusedFail CorrectableReadErrors "
     "UncorrectableReadErrors CorrectableWriteErrors UncorrectableWriteErrors",
     "ChunksNormalUsedOK=11 ChunksNormalUsedFail=12 ChunksNormalUnusedFree=13 "
     "ChunksNormalUnusedUninit=14 ChunksNormalUnusedFail=15 ChunksSpareUsedOK=21 "
     "ChunksSpareUsedFail=22 ChunksSpareUnusedFree=23 ChunksSpareUnusedUninit=24 "
     "ChunksSpareUnusedFail=25 CorrectableReadErrors=null UncorrectableReadErrors=3 "
     "CorrectableWriteErrors=4 UncorrectableWriteErrors=null"},
    {SOLID_STATE_ON_CAGE_3,
     "DeviceType DiskType InterconnectType Availability OperationalStatus WearLevelRemain "
     "DiskSpeed RPM MaxMediaSize CageType SystemLED IsESI ESIState",
     "DeviceType=4 DiskType=3 InterconnectType=5 Availability=10 OperationalStatus=[3] "
     "WearLevelRemain=88 DiskSpeed=null RPM=0 MaxMediaSize=450000 CageType=3 SystemLED=9 "
     "IsESI=TRUE ESIState=4"},
    {NEARLINE_ON_CAGE_4,
     "DeviceType DiskType InterconnectType Availability OperationalStatus WearLevelRemain "
     "DiskSpeed RPM MaxMediaSize CageType SystemLED IsESI ESIState InitiatorPortA "
     "InitiatorPortB PrimaryPortPath",
     "DeviceType=5 DiskType=1 InterconnectType=1 Availability=4 OperationalStatus=[6] "
     "WearLevelRemain=null DiskSpeed=7 RPM=7000 MaxMediaSize=2000000 CageType=4 SystemLED=null "
     "IsESI=FALSE ESIState=null InitiatorPortA=[0:1:2] InitiatorPortB=[2:3:4] "
     "PrimaryPortPath=2:3:4"},
    {UNKNOWN_ON_CAGE_6,
     "DeviceType DiskType InterconnectType Availability CageType SystemLED IsESI ESIState "
     "InitiatorPortA InitiatorPortB PrimaryPortPath",
     "DeviceType=9 DiskType=0 InterconnectType=0 Availability=2 CageType=6 SystemLED=null "
     "IsESI=TRUE ESIState=2 InitiatorPortA=[] InitiatorPortB=[] PrimaryPortPath=null"},
    {ROTATING_ON_CAGE_2, "DiskType InterconnectType CageType SystemLED IsESI ESIState",
     "DiskType=2 InterconnectType=6 CageType=2 SystemLED=1 IsESI=null ESIState=null"},
    {ROTATING_ON_CAGE_1,
     "CageType SystemLED IsESI ESIState InitiatorPortA InitiatorPortB "
     "PrimaryPortPath",
     "CageType=2 SystemLED=6 IsESI=null ESIState=null InitiatorPortA=[1:6:1] "
     "InitiatorPortB=[0:2:1] PrimaryPortPath=1:6:1"}};

TEST_F(DiskDriveProviderTest, RecordFieldsMapToProperties) {
    for (const Mapping& mapping : MAPPINGS)
        EXPECT_EQ(properties(mapping.disk, mapping.names), mapping.expected) << mapping.disk;
}

TEST_F(DiskDriveProviderTest, QuadPortSystemsKeepAPlaceForEachPathWithoutAPort) {
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
    DiskProvider quadPort(harness, "KSV_DiskDriveProvider", "KSV_DiskDrive");
    const std::vector<CIMInstance> instances = quadPort.enumerateInstances().delivered;
    ASSERT_EQ(instances.size(), 2u);
    const std::string names = "InitiatorPortA InitiatorPortB PrimaryPortPath";
    EXPECT_EQ(render(instances[0], names),
              "InitiatorPortA=[0:2:1 0] InitiatorPortB=[1:2:1 1:3:1] PrimaryPortPath=1:3:1");
    EXPECT_EQ(render(instances[1], names),
              "InitiatorPortA=[0 4:0:7] InitiatorPortB=[7:15:7 0] PrimaryPortPath=4:0:7");

    // The builder shared with the associations takes its identity from its arguments, not from
    // the provider (initialized over the array without quad ports).
    api_DiskList_t list{};
    ASSERT_EQ(api_getSystemDisks(API_ALL_DISKS, &list), API_OK);
    const CIMInstance built = provider.as<KSV_DiskDriveProvider>()->build_instance(
        harness.shippedClasses().getClass("root/ksv", "KSV_DiskDrive", false, true, true),
        list.disks[0], "other-host", "OTHER", Uint8(1));
    free(list.disks);
    EXPECT_EQ(render(built, "SystemName InitiatorPortA"),
              "SystemName=OTHER InitiatorPortA=[0:2:1 0]");
    EXPECT_EQ(render(built.getPath()),
              "other-host root/ksv:KSV_DiskDrive CreationClassName=KSV_DiskDrive "
              "DeviceID=5000CCA0000000A0-id-0 SystemCreationClassName=KSV_StorageSystem "
              "SystemName=OTHER");
}

TEST_F(DiskDriveProviderTest, NamesNeedNoClassAndListThePresentDisksAsInstancesDo) {
    const std::vector<CIMObjectPath> names = provider.enumerateInstanceNames().delivered;
    EXPECT_TRUE(harness.calls("getClass").empty());
    const std::vector<CIMInstance> instances = provider.enumerateInstances().delivered;
    ASSERT_EQ(instances.size(), 5u);
    EXPECT_EQ(names, pathsOf(instances));
    EXPECT_EQ(render(names[1]),
              "ksv-map.example.net root/ksv:KSV_DiskDrive CreationClassName=KSV_DiskDrive "
              "DeviceID=5001517A0B1C2D30-id-8 SystemCreationClassName=KSV_StorageSystem "
              "SystemName=KSV-MAP");
    EXPECT_EQ(render(instances[4], "DeviceID"), std::string("DeviceID=") + ROTATING_ON_CAGE_2);
}

TEST_F(DiskDriveProviderTest, GetInstanceReadsOneDiskAndMatchesAllKeysButTheHost) {
    ksvsim::clearCalls();
    EXPECT_EQ(provider.getInstance(devicePath(SOLID_STATE_ON_CAGE_3)).delivered.size(), 1u);
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
    EXPECT_EQ(provider.getInstance(otherHostAndOrder).delivered.size(), 1u);

    const std::string notFound = "CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.";
    EXPECT_EQ(failureOf([&] {
                  provider.getInstance(devicePath(ROTATING_ON_CAGE_2, "KSV_DiskDrive", "X"));
              }),
              notFound + ROTATING_ON_CAGE_2);
    for (const char* missing : {ABSENT, UNKNOWN_DISK})
        EXPECT_EQ(failureOf([&] { provider.getInstance(devicePath(missing)); }),
                  notFound + missing);
    ksvsim::clearCalls();
    EXPECT_EQ(
        failureOf([&] {
            provider.getInstance(pathOf("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}}));
        }),
        "CIM_ERR_INVALID_PARAMETER: KSV_DiskDriveProvider DeviceID key not found.");
    EXPECT_EQ(arrayCalls(), Strings{"api_ksvOpenForCimserver(admin)"});
}

CIMInstance modification(std::initializer_list<std::pair<const char*, CIMValue>> properties) {
    CIMInstance instance("KSV_DiskDrive");
    for (const auto& [name, value] : properties)
        instance.addProperty(CIMProperty(name, value));
    return instance;
}

class DiskDriveLocateTest : public DiskDriveProviderTest {
protected:
    // The library calls the modification made after the user gate; the handler stays unused.
    Strings modify(const CIMObjectPath& path, const CIMInstance& modified,
                   const CIMPropertyList& properties = CIMPropertyList(),
                   const std::string& user = "admin") {
        ksvsim::clearCalls();
        RecordingResponseHandler handler;
        provider.as<KSV_DiskDriveProvider>()->modifyInstance(ProviderHarness::context(user), path,
                                                             modified, false, properties, handler);
        EXPECT_TRUE(handler.events().empty());
        Strings calls = arrayCalls();
        calls.erase(calls.begin());
        return calls;
    }
    Strings turn(const std::string& deviceID, Uint16 location) {
        return modify(devicePath(deviceID),
                      modification({{"LocationIndicator", CIMValue(location)}}));
    }
    // The error of a modification that must be refused before any array call.
    std::string refusal(const CIMObjectPath& path, const CIMInstance& modified,
                        const std::string& user = "admin") {
        const std::string error =
            failureOf([&] { modify(path, modified, CIMPropertyList(), user); });
        EXPECT_EQ(arrayCalls().size(), 1u) << error << ": only the user gate may be asked";
        return error;
    }
    std::string location(const std::string& deviceID) {
        return properties(deviceID, "LocationIndicator");
    }
};

TEST_F(DiskDriveLocateTest, OnAndOffSwitchTheMagazineUnlessTheLedIsAlreadyOff) {
    const Strings readDark = {"api_deReferenceDiskDeviceID(5001517A0B1C2D30-id-8)",
                              "cim_sem_wait()", "api_getSystemDisks(5001517A0B1C2D30)",
                              "cim_sem_post()"};
    EXPECT_EQ(turn(SOLID_STATE_ON_CAGE_3, 3), readDark);
    Strings switchOn = readDark;
    for (const char* call :
         {"cim_sem_wait()", "api_locateMagazine(cage-t3:0:255)", "cim_sem_post()"})
        switchOn.push_back(call);
    EXPECT_EQ(turn(SOLID_STATE_ON_CAGE_3, 2), switchOn);
    EXPECT_EQ(location(SOLID_STATE_ON_CAGE_3), "LocationIndicator=2");
    EXPECT_EQ(turn(ROTATING_ON_CAGE_1, 3).at(5), "api_locateMagazine(cage-t1:0:1)");
    EXPECT_EQ(location(ROTATING_ON_CAGE_1), "LocationIndicator=3");

    // A failure is only logged; the traces name another provider on entry.
    ksvsim::forceResult("api_locateMagazine", API_E_NOT_FOUND, 1);
    ksvsim::clearCapturedLog();
    EXPECT_NO_THROW(turn(SOLID_STATE_ON_CAGE_3, 2));
    EXPECT_EQ(logTexts(2), Strings{"KSV_DiskDriveProvider::ModifyInstance: problem setting "
                                   "locate magazine led for cage cage-t3 magazine 0"});
    const Strings traces = logTexts(4);
    EXPECT_EQ(traces.front(), "-->KSV_BatteryProvider::modifyInstance()\n");
    EXPECT_EQ(traces.back(), "<--KSV_DiskDriveProvider::modifyInstance()\n");
}

TEST_F(DiskDriveLocateTest, InvalidRequestsAreRefusedBeforeTheArrayIsRead) {
    const CIMInstance on = modification({{"LocationIndicator", CIMValue(Uint16(2))}});
    for (const CIMValue& value : {CIMValue(Uint16(4)), CIMValue(Uint16(0)),
                                  CIMValue(CIMTYPE_UINT16, false), CIMValue(Uint32(2))}) {
        EXPECT_EQ(refusal(devicePath(SOLID_STATE_ON_CAGE_3),
                          modification({{"LocationIndicator", value}})),
                  "CIM_ERR_INVALID_PARAMETER: Invalid parameter: LocationIndicator may only be "
                  "on set to on(2) or off(3).");
    }
    EXPECT_EQ(refusal(devicePath(SOLID_STATE_ON_CAGE_3),
                      modification({{"LocationIndicator", CIMValue(Uint16(2))},
                                    {"ElementName", CIMValue(String("x"))}})),
              "CIM_ERR_INVALID_PARAMETER: Invalid parameter: ElementName");
    EXPECT_EQ(refusal(devicePath(SOLID_STATE_ON_CAGE_3), on, "guest"),
              "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
    EXPECT_EQ(refusal(devicePath(SOLID_STATE_ON_CAGE_3, "KSV_DiskStorageExtent"), on),
              "CIM_ERR_NOT_SUPPORTED: KSV_DiskDriveProvider Invalid class "
              "nameKSV_DiskStorageExtent");
    EXPECT_EQ(refusal(pathOf("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}}), on),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskDriveProvider DeviceID key not found.");

    // The property list chooses what is examined.
    const CIMInstance withName = modification(
        {{"ElementName", CIMValue(String("x"))}, {"LocationIndicator", CIMValue(Uint16(2))}});
    EXPECT_TRUE(modify(devicePath(SOLID_STATE_ON_CAGE_3), withName, listOf({})).empty());
    EXPECT_TRUE(
        modify(devicePath(SOLID_STATE_ON_CAGE_3), withName, listOf({"Temperature"})).empty());
    EXPECT_TRUE(modify(devicePath(SOLID_STATE_ON_CAGE_3), modification({})).empty());
    EXPECT_EQ(location(SOLID_STATE_ON_CAGE_3), "LocationIndicator=3");
    modify(devicePath(SOLID_STATE_ON_CAGE_3), withName,
           listOf({"Temperature", "LocationIndicator"}));
    EXPECT_EQ(location(SOLID_STATE_ON_CAGE_3), "LocationIndicator=2");
}

TEST_F(DiskDriveLocateTest, AbsentOrUnknownDiskIsNotFoundAndNoLedIsTouched) {
    for (const char* deviceID : {ABSENT, UNKNOWN_DISK}) {
        EXPECT_EQ(failureOf([&] { turn(deviceID, 2); }),
                  std::string("CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.") +
                      deviceID);
        for (const std::string& call : arrayCalls()) {
            EXPECT_EQ(call.find("api_locateMagazine"), std::string::npos);
            EXPECT_NE(call, "api_getSystemDisks(-10)") << "an unknown disk must not read all";
        }
    }
}

} // namespace
} // namespace ksv::test
