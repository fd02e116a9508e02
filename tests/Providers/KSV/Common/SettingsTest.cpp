// The storage settings: RAID levels and redundancy pairs, setting identifiers, the allocation-unit
// bounds of a dynamic pool, and fillInRAIDProperties: which properties each kind of identifier
// receives, their values, and the captions and names.
#include "ProviderTestSupport.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>

namespace ksv::test {
namespace {

// The simulated array starts as the built-in two-node model; log lines are captured.
class SimulatedArrayTest : public ::testing::Test {
protected:
    void SetUp() override {
        ksvsim::reset();
        ksvsim::setLogCapture(true);
    }
    void TearDown() override { ksvsim::reset(); }

    // One cage and one disk: only the node count matters here.
    static void loadArrayWithNodes(int nodes) {
        const std::string model =
            R"({"system": {"name": "KSV-T", "id": 7, "hostName": "t.example.net",
                           "ipv4": "192.0.2.20", "nodes": )" +
            std::to_string(nodes) + R"(},
                "cages": [{"name": "c0", "type": 1, "magazines": [{"position": 0}]}],
                "disks": [{"id": 0, "wwn": "5000CCA01A2B3C40", "cage": "c0", "magazine": 0,
                           "position": 0}]})";
        const auto error = ksvsim::loadModelText(model, "nodes");
        ASSERT_FALSE(error) << error->describe();
    }
};

TEST(RaidLevels, MappingTableHoldsTheFourLevelsInSearchOrder) {
    std::ostringstream rows;
    for (const KSV_Common::RaidMapping& r : KSV_Common::raidMappingTable) {
        rows << r.raidType << ":" << r.packageRedundancy << ":" << r.dataRedundancy << ":"
             << r.noSinglePointOfFailure << ":" << r.extentStripeLengthDefault << ":"
             << r.userDataStripeDepthDefaultFCNL << ":" << r.userDataStripeDepthDefaultSSD << " ";
    }
    EXPECT_EQ(rows.str(), "0:1:1:0:1:262144:32768 10:2:2:1:2:262144:32768 "
                          "50:2:1:1:2:131072:65536 60:3:1:1:2:65536:65536 ");
}

TEST(RaidLevels, OnlyTheFourLevelsHaveNames) {
    std::string names;
    for (int level : {0, 10, 50, 60, 5, 1, 99, -1})
        names += text(KSV_Common::getRaidTypeStr(level)) + ",";
    EXPECT_EQ(names, "RAID0,RAID10,RAID50,RAID60,,,,,");
}

TEST(RaidLevels, RedundancyPairsMapToLevels) {
    // Rows: package redundancy 0 to 4; columns: data redundancy 0 to 3.
    const int expected[5][4] = {
        {99, 99, 99, 99}, {99, 0, 99, 99}, {99, 50, 10, 10}, {99, 60, 10, 10}, {99, 60, 10, 10}};
    for (Uint16 package = 0; package < 5; package++) {
        for (Uint16 data = 0; data < 4; data++) {
            EXPECT_EQ(KSV_Common::returnRAIDType(package, data), expected[package][data])
                << "package " << package << ", data " << data;
        }
    }
    EXPECT_EQ(KSV_Common::returnRAIDType(65535, 1), 60);
    EXPECT_EQ(KSV_Common::returnRAIDType(65535, 65535), 10);
    EXPECT_EQ(KSV_Common::returnRAIDType(1, 65535), 99);
}

// Pairs chosen so that taking package before data changes the answer.
TEST(RaidLevels, IsSameRaidTakesDataRedundancyFirst) {
    EXPECT_TRUE(KSV_Common::isSameRAID(1, 2, 1, 2));  // 50 and 50
    EXPECT_FALSE(KSV_Common::isSameRAID(1, 2, 1, 3)); // 50 and 60
    EXPECT_FALSE(KSV_Common::isSameRAID(2, 1, 1, 2)); // none and 50
    EXPECT_TRUE(KSV_Common::isSameRAID(0, 0, 2, 1));  // none and none
    EXPECT_TRUE(KSV_Common::isSameRAID(50, 1, 2));
    EXPECT_TRUE(KSV_Common::isSameRAID(60, 1, 3));
    EXPECT_FALSE(KSV_Common::isSameRAID(50, 2, 1));
    EXPECT_TRUE(KSV_Common::isSameRAID(99, 2, 1));
}

TEST(SettingIdentifiers, AreRecognisedAsCaseSensitiveSubstrings) {
    // L legacy volume fixed, D dynamic pool fixed, d generated default, g generated goal.
    const struct {
        const char* instanceID;
        const char* kinds;
    } cases[] = {
        {"QUANOR:StorageSetting:RAID0", "L"},
        {"setting QUANOR:StorageSetting:RAID10 of all-FC", "L"},
        {"QUANOR:StorageSetting:RAID5", ""},
        {"quanor:storagesetting:raid10", ""},
        {"x-QUANOR:DynamicStoragePoolSetting:RAID60-primordial", "D"},
        {"QUANOR:DynamicStoragePoolSetting:RAID1", ""},
        {"QUANOR:GenDefSetting-all-SSD:7", "d"},
        {"QUANOR:GenGoalSetting-all-NL", "g"},
        {"QUANOR:GenGoalSetting-all-SAS", ""},
        {"QUANOR:GenDefSetting-DSP-cpg1", ""},
        {"QUANOR:StorageCapabilities:all-FC", ""},
    };
    for (const auto& c : cases) {
        const String id(c.instanceID);
        std::string kinds;
        kinds += KSV_Common::isLegacyVolumeFixedSettingFromConcretePoolCap(id) ? "L" : "";
        kinds += KSV_Common::isDSPFixedSettingFromConcreteOrPrimordialPoolCap(id) ? "D" : "";
        kinds += KSV_Common::isGenDefSettingFromConcretePoolCap(id) ? "d" : "";
        kinds += KSV_Common::isGenGoalSettingFromConcretePoolCap(id) ? "g" : "";
        EXPECT_EQ(kinds, c.kinds) << c.instanceID;
        EXPECT_EQ(KSV_Common::isFixedSettingFromConcretePoolCap(id), kinds == "L" || kinds == "D")
            << c.instanceID;
        EXPECT_EQ(KSV_Common::isGenSettingFromConcretePoolCap(id), kinds == "d" || kinds == "g")
            << c.instanceID;
    }
}

using AllocationUnits = SimulatedArrayTest;

TEST_F(AllocationUnits, GrowByEightGibibytesPerNodePairUpToEightNodes) {
    const Uint64 GiB = 1073741824ull;
    // Node counts beyond what a model holds, or unreadable, are forced.
    const struct {
        int nodes;
        bool forced;
        Uint64 min;
    } cases[] = {{1, false, 8 * GiB},  {2, false, 8 * GiB},  {3, false, 16 * GiB},
                 {4, false, 16 * GiB}, {5, false, 24 * GiB}, {6, false, 24 * GiB},
                 {7, false, 32 * GiB}, {8, false, 32 * GiB}, {-1, true, 8 * GiB},
                 {9, true, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE("nodes " + std::to_string(c.nodes));
        if (c.forced)
            ksvsim::forceResult("getNumberOfNodes", c.nodes);
        else
            loadArrayWithNodes(c.nodes);
        Uint64 max = 1, min = 1, def = 1; // beyond eight nodes min and def stay as passed
        KSV_Common::getDSPAllocUnitBoundaryValues(max, min, def);
        EXPECT_EQ(max, 2197949513728ull);
        EXPECT_EQ(min, c.min);
        EXPECT_EQ(def, c.min == 1 ? 1 : 4 * c.min);
        ksvsim::clearForcedResults();
    }
}

// Every test class holds every property fillInRAIDProperties may write, so a property that
// lands in the wrong kind of instance shows; a value of the wrong type fails the write.
const struct {
    CIMType type;
    const char* names;
} kClassProperties[] = {
    {CIMTYPE_STRING, "InstanceID Caption ElementName"},
    {CIMTYPE_UINT16,
     "DataRedundancyMax DataRedundancyMin DataRedundancyGoal DataRedundancyDefault "
     "PackageRedundancyMax PackageRedundancyMin PackageRedundancyGoal PackageRedundancyDefault "
     "ExtentStripeLengthMin ParityLayout ParityLayoutDefault ParitySetSize HighAvailability "
     "SpaceLimitWarningThreshold SpaceLimitWarningThresholdDefault LowSpaceWarningThreshold "
     "LowSpaceWarningThresholdDefault ChangeableType TemplateType TemplateForVolumeType "
     "ThinProvisionedPoolType TemplateVolumeRaidType TemplateVolumeDeviceType DiskType "
     "ElementType"},
    {CIMTYPE_UINT64, "UserDataStripeDepth UserDataStripeDepthMin UserDataStripeDepthMax "
                     "UserDataStripeDepthDefault SpaceLimit DSPSnapSpaceGrowWarning AllocationUnit "
                     "AllocationUnitMax AllocationUnitMin AllocationUnitDefault"},
    {CIMTYPE_UINT32, "GeometrySectorsPerTrack GeometryHeadsPerCylinder GeometrySectorSize Policy"},
    {CIMTYPE_BOOLEAN,
     "NoSinglePointOfFailure NoSinglePointOfFailureDefault ThinlyProvisioned SpaceLimitSupported"},
};

// Settings hold delta reservations as uint8, capabilities as uint16.
CIMClass makeClass(const char* className) {
    CIMClass cimClass{CIMName(className)};
    auto add = [&cimClass](const char* names, CIMType type) {
        std::istringstream words(names);
        for (std::string name; words >> name;)
            cimClass.addProperty(CIMProperty(CIMName(name.c_str()), CIMValue(type, false)));
    };
    for (const auto& group : kClassProperties)
        add(group.names, group.type);
    const bool capabilities = std::string(className).find("Capabilities") != std::string::npos;
    add("DeltaReservationMax DeltaReservationMin DeltaReservationGoal DeltaReservationDefault",
        capabilities ? CIMTYPE_UINT16 : CIMTYPE_UINT8);
    return cimClass;
}

CIMInstance filled(const char* className, const char* instanceID, int raidType) {
    CIMInstance instance = KSV_Common::buildInstanceSkeleton(makeClass(className));
    KSV_Common::fillInRAIDProperties(instance, "192.0.2.20", instanceID, "n", raidType);
    return instance;
}

std::string textOf(const CIMInstance& instance, const char* name) {
    return text(instance.getProperty(instance.findProperty(name)).getValue().toString());
}

// The properties after the three texts that hold a value, in class order.
std::string valuesOf(const CIMInstance& instance) {
    std::string values;
    for (Uint32 i = 3; i < instance.getPropertyCount(); i++) {
        const CIMConstProperty property = instance.getProperty(i);
        if (!property.getValue().isNull()) {
            values += (values.empty() ? "" : " ") + text(property.getName().getString()) + "=" +
                      text(property.getValue().toString());
        }
    }
    return values;
}

struct Scenario {
    const char* className;
    const char* instanceID;
    int raidType;
    const char* caption;
    const char* elementName; // as built from "n"
    const char* values;
};

const Scenario kScenarios[] = {
    {"KSV_StorageSetting", "QUANOR:StorageSetting:RAID50:all-FC", 50,
     "Fixed StorageSetting that can be used to create a default fully-provisioned RAID 50 "
     "StorageVolume from all-FC pool.",
     "n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyGoal=1 PackageRedundancyMax=2 "
     "PackageRedundancyMin=2 PackageRedundancyGoal=2 ExtentStripeLengthMin=2 ParityLayout=2 "
     "ParitySetSize=4 HighAvailability=2 ChangeableType=0 TemplateType=1 TemplateForVolumeType=1 "
     "TemplateVolumeRaidType=50 TemplateVolumeDeviceType=1 UserDataStripeDepth=131072 "
     "UserDataStripeDepthMin=131072 UserDataStripeDepthMax=131072 GeometrySectorsPerTrack=304 "
     "GeometryHeadsPerCylinder=8 GeometrySectorSize=512 Policy=0 NoSinglePointOfFailure=TRUE "
     "ThinlyProvisioned=FALSE DeltaReservationMax=100 DeltaReservationMin=0 "
     "DeltaReservationGoal=0"},
    {"KSV_StorageSetting", "QUANOR:DynamicStoragePoolSetting:RAID60:primordial", 60,
     "Fixed StorageSetting that can be used to create a default RAID 60 DynamicStoragePool from "
     "primordial extents.",
     "n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyGoal=1 PackageRedundancyMax=5 "
     "PackageRedundancyMin=3 PackageRedundancyGoal=3 ExtentStripeLengthMin=2 ParityLayout=2 "
     "ParitySetSize=8 HighAvailability=2 SpaceLimitWarningThreshold=0 LowSpaceWarningThreshold=0 "
     "ChangeableType=0 TemplateType=1 ThinProvisionedPoolType=4 UserDataStripeDepth=65536 "
     "UserDataStripeDepthMin=65536 UserDataStripeDepthMax=65536 SpaceLimit=0 "
     "DSPSnapSpaceGrowWarning=0 AllocationUnit=34359738368 AllocationUnitMax=2197949513728 "
     "AllocationUnitMin=8589934592 NoSinglePointOfFailure=TRUE DeltaReservationMax=100 "
     "DeltaReservationMin=0 DeltaReservationGoal=0"},
    {"KSV_VolumeSetting", "QUANOR:ThinProvisionedVolumeSetting from DynamicStoragePool db_cpg", 10,
     "Fixed StorageSetting that can be used to create a default thinly-provisioned volume that "
     "allocates from a DynamicStoragePool db_cpg",
     "n",
     "DataRedundancyMax=4 DataRedundancyMin=2 DataRedundancyGoal=2 PackageRedundancyMax=4 "
     "PackageRedundancyMin=2 PackageRedundancyGoal=2 ExtentStripeLengthMin=2 ParityLayout=1 "
     "ChangeableType=0 TemplateType=1 TemplateForVolumeType=2 TemplateVolumeRaidType=10 "
     "UserDataStripeDepth=262144 UserDataStripeDepthMin=262144 UserDataStripeDepthMax=262144 "
     "GeometrySectorsPerTrack=304 GeometryHeadsPerCylinder=8 GeometrySectorSize=512 Policy=0 "
     "NoSinglePointOfFailure=TRUE ThinlyProvisioned=TRUE DeltaReservationMax=100 "
     "DeltaReservationMin=0 DeltaReservationGoal=0"},
    {"KSV_StorageCapabilities", "QUANOR:StorageCapabilities:all-SSD", 0,
     "StorageCapacities of all-SSD pool.", "CapabilitiesForDynamicStoragePool:n",
     "DataRedundancyMax=4 DataRedundancyMin=1 DataRedundancyDefault=1 PackageRedundancyMax=5 "
     "PackageRedundancyMin=1 PackageRedundancyDefault=1 ParityLayoutDefault=1 "
     "SpaceLimitWarningThresholdDefault=0 LowSpaceWarningThresholdDefault=0 DiskType=3 "
     "ElementType=2 UserDataStripeDepthDefault=32768 AllocationUnitMax=2197949513728 "
     "AllocationUnitMin=8589934592 AllocationUnitDefault=34359738368 NoSinglePointOfFailure=FALSE "
     "NoSinglePointOfFailureDefault=FALSE SpaceLimitSupported=TRUE DeltaReservationMax=100 "
     "DeltaReservationMin=0 DeltaReservationDefault=0"},
    // Level 60 keeps its own bounds; an identifier with more around it is not widened.
    {"KSV_DeltaReplicaStorageCapabilities", "QUANOR:StorageCapabilities:primordial", 60,
     "StorageCapacities of primordial pool.", "CapabilitiesForDeltaReplicaStoragePool:n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyDefault=1 PackageRedundancyMax=5 "
     "PackageRedundancyMin=3 PackageRedundancyDefault=3 ParityLayoutDefault=2 "
     "SpaceLimitWarningThresholdDefault=0 LowSpaceWarningThresholdDefault=0 ElementType=5 "
     "UserDataStripeDepthDefault=65536 AllocationUnitMax=2197949513728 "
     "AllocationUnitMin=8589934592 AllocationUnitDefault=34359738368 NoSinglePointOfFailure=TRUE "
     "NoSinglePointOfFailureDefault=TRUE SpaceLimitSupported=TRUE DeltaReservationMax=100 "
     "DeltaReservationMin=0 DeltaReservationDefault=0"},
    {"KSV_StorageCapabilities", "pool QUANOR:StorageCapabilities:all-FC", 50,
     "StorageCapacities of all-FC pool.", "CapabilitiesForDynamicStoragePool:n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyDefault=1 PackageRedundancyMax=2 "
     "PackageRedundancyMin=2 PackageRedundancyDefault=2 ParityLayoutDefault=2 "
     "SpaceLimitWarningThresholdDefault=0 LowSpaceWarningThresholdDefault=0 DiskType=2 "
     "ElementType=2 UserDataStripeDepthDefault=131072 AllocationUnitMax=2197949513728 "
     "AllocationUnitMin=8589934592 AllocationUnitDefault=34359738368 NoSinglePointOfFailure=TRUE "
     "NoSinglePointOfFailureDefault=TRUE SpaceLimitSupported=TRUE DeltaReservationMax=100 "
     "DeltaReservationMin=0 DeltaReservationDefault=0"},
    // A concrete pool's generated setting follows its class: a volume, a pool, or neither.
    {"KSV_VolumeSetting", "QUANOR:GenGoalSetting-all-SSD", 0,
     "StorageSetting generated from fixed StorageCapabilities.", "n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyGoal=1 PackageRedundancyMax=1 "
     "PackageRedundancyMin=1 PackageRedundancyGoal=1 ExtentStripeLengthMin=1 ParityLayout=1 "
     "HighAvailability=2 ChangeableType=1 TemplateType=3 TemplateForVolumeType=1 "
     "TemplateVolumeRaidType=0 TemplateVolumeDeviceType=4 UserDataStripeDepth=32768 "
     "UserDataStripeDepthMin=32768 UserDataStripeDepthMax=32768 GeometrySectorsPerTrack=304 "
     "GeometryHeadsPerCylinder=8 GeometrySectorSize=512 Policy=0 NoSinglePointOfFailure=FALSE "
     "ThinlyProvisioned=FALSE DeltaReservationMax=100 DeltaReservationMin=0 "
     "DeltaReservationGoal=0"},
    {"KSV_StorageSetting", "QUANOR:GenDefSetting-all-NL", 10,
     "StorageSetting generated from fixed StorageCapabilities.", "n",
     "DataRedundancyMax=4 DataRedundancyMin=2 DataRedundancyGoal=2 PackageRedundancyMax=4 "
     "PackageRedundancyMin=2 PackageRedundancyGoal=2 ExtentStripeLengthMin=2 ParityLayout=1 "
     "HighAvailability=2 SpaceLimitWarningThreshold=0 LowSpaceWarningThreshold=0 "
     "ChangeableType=1 TemplateType=2 ThinProvisionedPoolType=4 DiskType=1 "
     "UserDataStripeDepth=262144 UserDataStripeDepthMin=262144 UserDataStripeDepthMax=262144 "
     "SpaceLimit=0 DSPSnapSpaceGrowWarning=0 AllocationUnit=34359738368 "
     "AllocationUnitMax=2197949513728 AllocationUnitMin=8589934592 NoSinglePointOfFailure=TRUE "
     "DeltaReservationMax=100 DeltaReservationMin=0 DeltaReservationGoal=0"},
    {"CIM_StorageSetting", "QUANOR:GenDefSetting-all-NL", 99,
     "StorageSetting generated from fixed StorageCapabilities.", "n",
     "DataRedundancyMax=0 DataRedundancyMin=0 DataRedundancyGoal=0 PackageRedundancyMax=0 "
     "PackageRedundancyMin=0 PackageRedundancyGoal=0 NoSinglePointOfFailure=FALSE "
     "DeltaReservationMax=100 DeltaReservationMin=0 DeltaReservationGoal=0"},
    {"KSV_StorageSetting", "QUANOR:GenGoalSetting-DSP-cpg1", 50,
     "StorageSetting generated from StorageCapabilities associated to a DynamicStoragePool.", "n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyGoal=1 PackageRedundancyMax=2 "
     "PackageRedundancyMin=2 PackageRedundancyGoal=2 ExtentStripeLengthMin=2 ParityLayout=2 "
     "ParitySetSize=4 ChangeableType=1 TemplateType=3 TemplateForVolumeType=1 "
     "TemplateVolumeRaidType=50 UserDataStripeDepth=131072 UserDataStripeDepthMin=131072 "
     "UserDataStripeDepthMax=131072 GeometrySectorsPerTrack=304 GeometryHeadsPerCylinder=8 "
     "GeometrySectorSize=512 Policy=0 NoSinglePointOfFailure=TRUE ThinlyProvisioned=FALSE "
     "DeltaReservationMax=100 DeltaReservationMin=0 DeltaReservationGoal=0"},
    {"KSV_StorageSetting", "KSV:SomethingElse", 0, "", "n",
     "DataRedundancyMax=1 DataRedundancyMin=1 DataRedundancyGoal=1 PackageRedundancyMax=1 "
     "PackageRedundancyMin=1 PackageRedundancyGoal=1 NoSinglePointOfFailure=FALSE "
     "DeltaReservationMax=100 DeltaReservationMin=0 DeltaReservationGoal=0"},
};

using RaidProperties = SimulatedArrayTest;

TEST_F(RaidProperties, EachKindOfIdentifierGetsItsPropertySet) {
    for (const Scenario& s : kScenarios) {
        SCOPED_TRACE(std::string(s.className) + " " + s.instanceID);
        const CIMInstance instance = filled(s.className, s.instanceID, s.raidType);
        EXPECT_EQ(textOf(instance, "InstanceID"), s.instanceID);
        EXPECT_EQ(textOf(instance, "Caption"), s.caption);
        EXPECT_EQ(textOf(instance, "ElementName"), s.elementName);
        EXPECT_EQ(valuesOf(instance), s.values);
    }
}

TEST_F(RaidProperties, CaptionsOfFixedSettingsNameTheirPool) {
    const struct {
        const char* instanceID;
        const char* caption;
    } cases[] = {
        {"QUANOR:StorageSetting:RAID10", "Fixed StorageSetting that can be used to create a "
                                         "default fully-provisioned RAID 10 StorageVolume."},
        {"QUANOR:DynamicStoragePoolSetting:RAID10:all-NL",
         "Fixed StorageSetting that can be used to create a default RAID 10 DynamicStoragePool "
         "from all-NL pool."},
        {"QUANOR:FullyProvisionedVolumeSetting from DynamicStoragePool cpg 2",
         "Fixed StorageSetting that can be used to create a default fully-provisioned volume "
         "that allocates from a DynamicStoragePool cpg 2"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(textOf(filled("KSV_StorageSetting", c.instanceID, 10), "Caption"), c.caption);
}

TEST_F(RaidProperties, AllocationUnitsFollowTheNodeCount) {
    loadArrayWithNodes(6);
    const CIMInstance instance =
        filled("KSV_StorageSetting", "QUANOR:DynamicStoragePoolSetting:RAID10:all-FC", 10);
    EXPECT_EQ(textOf(instance, "AllocationUnitMin"), "25769803776");
    EXPECT_EQ(textOf(instance, "AllocationUnit"), "103079215104");
}

TEST_F(RaidProperties, PropertiesTheClassLacksAreNotAddedAndThePathIsSet) {
    CIMClass narrow{CIMName("KSV_StorageSetting")};
    narrow.addProperty(CIMProperty(CIMName("ParityLayout"), CIMValue(CIMTYPE_UINT16, false)));
    CIMInstance instance = KSV_Common::buildInstanceSkeleton(narrow);
    ksvsim::clearCapturedLog();
    KSV_Common::fillInRAIDProperties(instance, "192.0.2.20", "QUANOR:StorageSetting:RAID50", "n",
                                     50);
    EXPECT_EQ(instance.getPropertyCount(), 1u);
    EXPECT_EQ(textOf(instance, "ParityLayout"), "2");
    EXPECT_EQ(
        text(instance.getPath().toString()),
        "//192.0.2.20/root/ksv:KSV_StorageSetting.InstanceID=\"QUANOR:StorageSetting:RAID50\"");
    const std::vector<ksvsim::LogLine> expected = {
        {4, "-->KSV_Common::fillInRAIDProperties, instanceID = QUANOR:StorageSetting:RAID50 \n"},
        {4, "<--KSV_Common::fillInRAIDProperties "}};
    EXPECT_EQ(ksvsim::capturedLog(), expected);
}

} // namespace
} // namespace ksv::test
