// RAID levels and redundancy pairs, setting identifiers, their object paths and the
// allocation-unit bounds of a dynamic pool.
#include "SettingsTestSupport.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <sstream>

namespace ksv::test {
namespace {

using namespace Pegasus;

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

TEST(SettingIdentifiers, NameTheInstanceInRootKsvOnTheSystemsAddress) {
    const CIMObjectPath path = KSV_Common::buildSettingCapObjectPath(
        "192.0.2.20", CIMName("KSV_StorageSetting"), "QUANOR:StorageSetting:RAID10");
    EXPECT_EQ(
        text(path.toString()),
        "//192.0.2.20/root/ksv:KSV_StorageSetting.InstanceID=\"QUANOR:StorageSetting:RAID10\"");
    ASSERT_EQ(path.getKeyBindings().size(), 1u);
    EXPECT_EQ(path.getKeyBindings()[0].getType(), CIMKeyBinding::STRING);
}

class AllocationUnits : public SimulatedArrayTest {};

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

} // namespace
} // namespace ksv::test
