// Chunklet maps in both directions, volume records and WWN texts.
#include "simulator_test_support.h"

#include <tuple>
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

TEST_F(ChunkletMaps, VolumesWithTheirThreeRunsAllOrByName) {
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
    EXPECT_EQ(maps.volumes[1].volumeId, 1u);
    api_freeMapsVVtoCh(&maps);
    EXPECT_EQ(maps.count, 0u);
    EXPECT_EQ(maps.volumes, nullptr);

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
    using Use = std::tuple<std::string, uint32_t, uint8_t>; // volume, chunklets, excluded
    const std::pair<uint32_t, std::vector<Use>> expected[] = {
        {0, {{"admin", 1, 0}, {"db01", 2, 0}}},
        {2, {{"admin", 1, 0}, {"db01.copy", 3, 0}}}, // db01 uses disk 2 only in its second run
        {4, {{"db01", 1, 0}, {"db01.copy", 1, 0}}},  // so does db01.snap
        {5, {{"db01", 1, 1}, {"db01.snap", 1, 0}}},  // db01 excludes disk 5
    };
    for (const auto& [diskId, uses] : expected) {
        api_MapsPDtoVV_t maps{};
        ASSERT_EQ(api_getMapsPDtoVV(diskId, &maps), API_OK);
        ASSERT_EQ(maps.count, 1u);
        EXPECT_EQ(maps.disks[0].diskId, diskId);
        std::vector<Use> found;
        for (uint32_t i = 0; i < maps.disks[0].volumeCount; ++i) {
            const api_MapPDVolume_t& use = maps.disks[0].volumes[i];
            found.emplace_back(use.name, use.chunkletCount, use.excluded);
        }
        EXPECT_EQ(found, uses) << "disk " << diskId;
        api_freeMapsPDtoVV(&maps);
    }
    api_MapsPDtoVV_t maps{};
    ASSERT_EQ(api_getMapsPDtoVV(5, &maps), API_OK);
    EXPECT_STREQ(maps.disks[0].deviceID, "5000C500A1B2C3D5-id-5");
    EXPECT_STREQ(maps.disks[0].volumes[0].wwn, "60002AC0000000000000000100010F2A");
    EXPECT_EQ(maps.disks[0].volumes[0].volumeId, 1u);
    api_freeMapsPDtoVV(&maps);
}

TEST_F(ChunkletMaps, DiskMapsOfAllPresentDisksOrNone) {
    api_MapsPDtoVV_t maps{};
    ASSERT_EQ(api_getMapsPDtoVV(API_ALL_DISK_IDS, &maps), API_OK);
    ASSERT_EQ(maps.count, 5u);
    EXPECT_EQ(maps.disks[3].diskId, 4u);
    EXPECT_EQ(maps.disks[3].volumeCount, 2u);
    api_freeMapsPDtoVV(&maps);
    ASSERT_EQ(api_getMapsPDtoVV(3, &maps), API_OK) << "an absent disk holds no volumes";
    EXPECT_EQ(maps.disks[0].volumeCount, 0u);
    EXPECT_EQ(maps.disks[0].volumes, nullptr);
    api_freeMapsPDtoVV(&maps);
    EXPECT_EQ(api_getMapsPDtoVV(77, &maps), API_E_NOT_FOUND);
    EXPECT_EQ(maps.count, 0u);
}

TEST_F(ChunkletMaps, VolumeWwnTexts) {
    char text[API_WWN_TEXT_SIZE];
    ASSERT_EQ(api_wwnIntToString(0x60002AC000000000, 0xABCDEF, text, sizeof text), API_OK);
    EXPECT_STREQ(text, "60002AC0000000000000000000ABCDEF");
    EXPECT_EQ(api_wwnIntToString(1, 2, text, API_WWN_TEXT_SIZE - 1), API_E_INVALID);
    uint64_t high = 0;
    uint64_t low = 0;
    ASSERT_EQ(api_wwnStringToInt("60002ac0000000000000000000abcdef", &high, &low), API_OK);
    EXPECT_EQ(high, 0x60002AC000000000u);
    EXPECT_EQ(low, 0xABCDEFu);
    for (const char* malformed : {"", "60002AC0", "60002AC0000000000000000000ABCDEF0",
                                  "60002AC0000000000000000000ABCDEG"}) {
        high = 0xFFFFFFFFFFFFFFF6;
        low = 0;
        EXPECT_EQ(api_wwnStringToInt(malformed, &high, &low), API_E_INVALID) << malformed;
        EXPECT_EQ(high, 0xFFFFFFFFFFFFFFF6) << malformed;
        EXPECT_EQ(low, 0u) << malformed;
    }
}

TEST_F(ChunkletMaps, VolumeRecordsAllOrByWwnTextOrName) {
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
    for (const char* key : {"60002ac0000000000000000200010f2a", "db01.snap"}) {
        ASSERT_EQ(api_getVVs(key, &list), API_OK) << key;
        ASSERT_EQ(list.count, 1u);
        EXPECT_STREQ(list.vvs[0].name, "db01.snap");
        EXPECT_STREQ(list.vvs[0].wwn, "60002AC0000000000000000200010F2A");
        EXPECT_EQ(list.vvs[0].wwnLow, 0x200010F2Au);
        std::free(list.vvs);
    }
    EXPECT_EQ(api_getVVs("60002AC0000000000000000900010F2A", &list), API_E_NOT_FOUND);
    EXPECT_EQ(list.count, 0u);
}

} // namespace
} // namespace ksvsim::testing
