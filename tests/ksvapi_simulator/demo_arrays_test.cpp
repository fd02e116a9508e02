// The demo arrays and generated arrays, read through the library.
#include "simulator_test_support.h"

#include "array_generator.h"

#include <map>
#include <set>

namespace ksvsim::testing {
namespace {

class DemoArray : public SimulatorTest {};

TEST_F(DemoArray, VolumeMapsAgreeWithTheDisks) {
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("demo.json")));
    std::map<int32_t, uint64_t> wwnById;
    for (const api_Disk_t& disk : readDisks()) {
        wwnById[static_cast<int32_t>(disk.id)] = disk.wwn;
    }
    api_MapsVVtoCh_t maps{};
    ASSERT_EQ(api_getMapsVVtoCh(nullptr, &maps), API_OK);
    ASSERT_EQ(maps.count, 10u);
    std::map<uint32_t, uint32_t> thirdRunChunkletsByDisk;
    std::size_t widestSpread = 0;
    for (uint32_t v = 0; v < maps.count; ++v) {
        const api_MapVVtoCh_t& volume = maps.volumes[v];
        std::set<int32_t> userDisks;
        for (uint32_t i = 0; i < volume.chunkletCount; ++i) {
            const api_MapCh_t& entry = volume.chunklets[i];
            EXPECT_EQ(entry.diskWwn, wwnById.at(entry.diskId));
            if (i >= volume.firstRunLength + volume.secondRunLength) {
                userDisks.insert(entry.diskId);
                ++thirdRunChunkletsByDisk[static_cast<uint32_t>(entry.diskId)];
            }
        }
        widestSpread = std::max(widestSpread, userDisks.size());
    }
    EXPECT_GE(widestSpread, 20u);
    api_freeMapsVVtoCh(&maps);

    api_MapsPDtoVV_t diskMaps{};
    ASSERT_EQ(api_getMapsPDtoVV(API_ALL_DISK_IDS, &diskMaps), API_OK);
    std::map<uint32_t, uint32_t> fromDiskMaps;
    for (uint32_t d = 0; d < diskMaps.count; ++d) {
        for (uint32_t i = 0; i < diskMaps.disks[d].volumeCount; ++i) {
            fromDiskMaps[diskMaps.disks[d].diskId] += diskMaps.disks[d].volumes[i].chunkletCount;
        }
    }
    EXPECT_EQ(fromDiskMaps, thirdRunChunkletsByDisk);
    api_freeMapsPDtoVV(&diskMaps);
}

class OtherArrays : public SimulatorTest {};

TEST_F(OtherArrays, GeneratedArrayLoadsWithEveryDiskAndVolume) {
    tools::GeneratorOptions options;
    options.disks = 500;
    options.volumes = 300;
    options.quadPort = true;
    const auto error = ksvsim::loadModelText(tools::generateArray(options).dump(), "generated");
    ASSERT_FALSE(error) << error->describe();
    EXPECT_EQ(readDisks().size(), 500u);
    api_VVList_t list{};
    ASSERT_EQ(api_getVVs("", &list), API_OK);
    EXPECT_EQ(list.count, 300u);
    std::free(list.vvs);
    api_SystemInfo_t info{};
    ASSERT_EQ(api_getSystemInfo(&info), API_OK);
    EXPECT_EQ(info.isQuadPort, 1);
}

} // namespace
} // namespace ksvsim::testing
