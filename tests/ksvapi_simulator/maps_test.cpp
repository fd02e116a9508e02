// Chunklet maps in both directions, volume records and WWN texts.
#include "simulator_test_support.h"

#include <utility>

namespace ksvsim::testing {
namespace {

class ChunkletMaps : public SimulatorTest {};

using Chunklet = std::pair<int32_t, uint16_t>; // disk id, chunklet number

std::vector<Chunklet> chunklets(const api_MapVVtoCh_t& volume) {
    std::vector<Chunklet> entries;
    for (uint32_t i = 0; i < volume.chunkletCount; ++i) {
        entries.emplace_back(volume.chunklets[i].diskId, volume.chunklets[i].chunklet);
    }
    return entries;
}

// Volume names and chunklet counts of one disk's entries.
std::vector<std::pair<std::string, uint32_t>> volumesOn(const api_MapPDtoVV_t& disk) {
    std::vector<std::pair<std::string, uint32_t>> uses;
    for (uint32_t i = 0; i < disk.volumeCount; ++i) {
        uses.emplace_back(disk.volumes[i].name, disk.volumes[i].chunkletCount);
    }
    return uses;
}

TEST_F(ChunkletMaps, AllVolumesWithTheirThreeRuns) {
    api_MapsVVtoCh_t maps{};
    ASSERT_EQ(api_getMapsVVtoCh("", &maps), API_OK);
    ASSERT_EQ(maps.count, 4u);
    const api_MapVVtoCh_t& admin = maps.volumes[0];
    EXPECT_EQ(admin.wwnHigh, 0x60002AC000000000u);
    EXPECT_EQ(admin.wwnLow, 0x0000000000010F2Au);
    EXPECT_EQ(admin.firstRunLength, 2u);
    EXPECT_EQ(admin.secondRunLength, 0u);
    EXPECT_EQ(admin.thirdRunLength, 3u);
    EXPECT_EQ(admin.chunkletCount, 5u);
    EXPECT_EQ(chunklets(admin), (std::vector<Chunklet>{{0, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 0}}));
    EXPECT_EQ(admin.chunklets[4].diskWwn, 0x5000CCA01A2B3C42u);
    const api_MapVVtoCh_t& db01 = maps.volumes[1];
    EXPECT_EQ(db01.volumeId, 1u);
    EXPECT_EQ(db01.firstRunLength + db01.secondRunLength + db01.thirdRunLength, db01.chunkletCount);
    api_freeMapsVVtoCh(&maps);
    EXPECT_EQ(maps.count, 0u);
    EXPECT_EQ(maps.volumes, nullptr);
}

TEST_F(ChunkletMaps, OneVolumeByName) {
    api_MapsVVtoCh_t maps{};
    ASSERT_EQ(api_getMapsVVtoCh("db01.snap", &maps), API_OK);
    ASSERT_EQ(maps.count, 1u);
    EXPECT_EQ(maps.volumes[0].volumeId, 2u);
    EXPECT_EQ(chunklets(maps.volumes[0]), (std::vector<Chunklet>{{4, 2}, {5, 2}}));
    api_freeMapsVVtoCh(&maps);
    EXPECT_EQ(api_getMapsVVtoCh("db02", &maps), API_E_NOT_FOUND);
    EXPECT_EQ(maps.count, 0u);
    EXPECT_EQ(maps.volumes, nullptr);
}

TEST_F(ChunkletMaps, DiskMapsFollowOnlyTheThirdRun) {
    const std::pair<uint32_t, std::vector<std::pair<std::string, uint32_t>>> expected[] = {
        {0, {{"admin", 1}, {"db01", 2}}},
        {2, {{"admin", 1}, {"db01.copy", 3}}}, // db01 uses disk 2 only in its second run
        {4, {{"db01", 1}, {"db01.copy", 1}}},  // so does db01.snap
        {5, {{"db01", 1}, {"db01.snap", 1}}},
    };
    for (const auto& [diskId, uses] : expected) {
        api_MapsPDtoVV_t maps{};
        ASSERT_EQ(api_getMapsPDtoVV(diskId, &maps), API_OK);
        ASSERT_EQ(maps.count, 1u);
        EXPECT_EQ(maps.disks[0].diskId, diskId);
        EXPECT_EQ(volumesOn(maps.disks[0]), uses) << "disk " << diskId;
        api_freeMapsPDtoVV(&maps);
    }
}

TEST_F(ChunkletMaps, DiskMapEntriesNameTheVolumeAndItsExclusion) {
    api_MapsPDtoVV_t maps{};
    ASSERT_EQ(api_getMapsPDtoVV(5, &maps), API_OK);
    const api_MapPDtoVV_t& disk = maps.disks[0];
    EXPECT_STREQ(disk.deviceID, "5000C500A1B2C3D5-id-5");
    ASSERT_EQ(disk.volumeCount, 2u);
    EXPECT_STREQ(disk.volumes[0].wwn, "60002AC0000000000000000100010F2A");
    EXPECT_EQ(disk.volumes[0].volumeId, 1u);
    EXPECT_EQ(disk.volumes[0].excluded, 1) << "db01 excludes disk 5";
    EXPECT_EQ(disk.volumes[1].excluded, 0);
    api_freeMapsPDtoVV(&maps);
}

TEST_F(ChunkletMaps, AllPresentDisksOrNone) {
    api_MapsPDtoVV_t maps{};
    ASSERT_EQ(api_getMapsPDtoVV(API_ALL_DISK_IDS, &maps), API_OK);
    ASSERT_EQ(maps.count, 5u);
    EXPECT_EQ(maps.disks[3].diskId, 4u);
    EXPECT_EQ(volumesOn(maps.disks[3]).size(), 2u);
    api_freeMapsPDtoVV(&maps);
    ASSERT_EQ(api_getMapsPDtoVV(3, &maps), API_OK) << "an absent disk holds no volumes";
    EXPECT_EQ(maps.disks[0].volumeCount, 0u);
    EXPECT_EQ(maps.disks[0].volumes, nullptr);
    api_freeMapsPDtoVV(&maps);
    EXPECT_EQ(api_getMapsPDtoVV(77, &maps), API_E_NOT_FOUND);
    EXPECT_EQ(maps.count, 0u);
}

TEST_F(ChunkletMaps, VolumeWwnTextRoundTrip) {
    char text[API_WWN_TEXT_SIZE];
    ASSERT_EQ(api_wwnIntToString(0x60002AC000000000, 0xABCDEF, text, sizeof text), API_OK);
    EXPECT_STREQ(text, "60002AC0000000000000000000ABCDEF");
    uint64_t high = 0;
    uint64_t low = 0;
    ASSERT_EQ(api_wwnStringToInt("60002ac0000000000000000000abcdef", &high, &low), API_OK);
    EXPECT_EQ(high, 0x60002AC000000000u);
    EXPECT_EQ(low, 0xABCDEFu);
    EXPECT_EQ(api_wwnIntToString(1, 2, text, API_WWN_TEXT_SIZE - 1), API_E_INVALID);
}

TEST_F(ChunkletMaps, MalformedVolumeWwnLeavesWordsAlone) {
    for (const char* text : {"", "60002AC0", "60002AC0000000000000000000ABCDEF0",
                             "60002AC0000000000000000000ABCDEG"}) {
        uint64_t high = 0xFFFFFFFFFFFFFFF6;
        uint64_t low = 0;
        EXPECT_EQ(api_wwnStringToInt(text, &high, &low), API_E_INVALID) << text;
        EXPECT_EQ(high, 0xFFFFFFFFFFFFFFF6) << text;
        EXPECT_EQ(low, 0u) << text;
    }
}

class VolumeRecords : public SimulatorTest {};

TEST_F(VolumeRecords, AllVolumesWithTheirKinds) {
    api_VVList_t list{};
    ASSERT_EQ(api_getVVs(nullptr, &list), API_OK);
    ASSERT_EQ(list.count, 4u);
    const std::pair<const char*, int> expected[] = {{"admin", API_VV_BASE},
                                                    {"db01", API_VV_BASE},
                                                    {"db01.snap", API_VV_VIRTUAL_COPY},
                                                    {"db01.copy", API_VV_PHYSICAL_COPY}};
    for (uint32_t i = 0; i < list.count; ++i) {
        EXPECT_STREQ(list.vvs[i].name, expected[i].first);
        EXPECT_EQ(list.vvs[i].kind, expected[i].second) << expected[i].first;
    }
    std::free(list.vvs);
}

TEST_F(VolumeRecords, OneVolumeByWwnTextOrName) {
    for (const char* key : {"60002ac0000000000000000200010f2a", "db01.snap"}) {
        api_VVList_t list{};
        ASSERT_EQ(api_getVVs(key, &list), API_OK) << key;
        ASSERT_EQ(list.count, 1u);
        EXPECT_STREQ(list.vvs[0].name, "db01.snap");
        EXPECT_STREQ(list.vvs[0].wwn, "60002AC0000000000000000200010F2A");
        EXPECT_EQ(list.vvs[0].wwnLow, 0x200010F2Au);
        std::free(list.vvs);
    }
    api_VVList_t list{};
    EXPECT_EQ(api_getVVs("60002AC0000000000000000900010F2A", &list), API_E_NOT_FOUND);
    EXPECT_EQ(list.count, 0u);
}

} // namespace
} // namespace ksvsim::testing
