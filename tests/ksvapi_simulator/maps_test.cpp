// Chunklet maps in both directions.
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

} // namespace
} // namespace ksvsim::testing
