// What the library reads out of array models (DeviceIDs, the magazine locate LED, volume maps,
// generated arrays) and the hash tables providers build over it. How each record field reaches
// a property is the disk providers' suite's to show.
#include "simulator_test_support.h"

#include "array_generator.h"

#include <map>
#include <memory>
#include <set>

namespace ksvsim::testing {
namespace {

class ArrayRecords : public SimulatorTest {};

TEST_F(ArrayRecords, MalformedDeviceIdsAreNotParsed) {
    for (const char* text :
         {"", "5000CCA01A2B3C40", "5000CCA01A2B3C4-id-0", "5000CCA01A2B3C40-id-",
          "5000CCA01A2B3C40-ID-1", "5000CCA01A2B3C4G-id-1", "5000CCA01A2B3C40-id-1x",
          "5000CCA01A2B3C40-id-2147483648", "5000CCA01A2B3C40-id-01"}) {
        uint64_t wwn = 0xFFFFFFFFFFFFFFF6;
        int32_t id = -2;
        EXPECT_EQ(api_extractFromSystemDiskID(text, &wwn, &id), API_E_INVALID) << text;
        EXPECT_EQ(wwn, 0xFFFFFFFFFFFFFFF6) << text;
        EXPECT_EQ(id, -2) << text;
    }
    uint64_t wwn = 0;
    int32_t id = 0;
    EXPECT_EQ(api_extractFromSystemDiskID("5000cca01a2b3c40-id--7", &wwn, &id), API_OK);
    EXPECT_EQ(wwn, 0x5000CCA01A2B3C40u);
    EXPECT_EQ(id, -7);
}

// One disk's DeviceID, asked for by id: an absent disk has none, as an unknown one has none.
TEST_F(ArrayRecords, DeviceIdOfOneDiskIsFoundOnlyWhilePresent) {
    api_DiskDeviceIDList_t list{};
    ASSERT_EQ(getDiskDeviceIDs(5, &list), API_OK);
    ASSERT_EQ(list.count, 1u);
    EXPECT_STREQ(list.entries[0].deviceID, "5000C500A1B2C3D5-id-5");
    freeDiskDeviceIDs(&list);
    EXPECT_EQ(getDiskDeviceIDs(3, &list), API_E_NOT_FOUND) << "absent disk";
    EXPECT_EQ(getDiskDeviceIDs(99, &list), API_E_NOT_FOUND);
    EXPECT_EQ(list.count, 0u);
}

// Disk id -> locate LED lit, for every disk of the active model.
std::map<uint32_t, bool> locateStates() {
    std::map<uint32_t, bool> states;
    for (const api_Disk_t& disk : readDisks())
        states[disk.id] = (disk.u.locate.flags & API_DISK_LOCATE_LIT) != 0;
    return states;
}

TEST_F(ArrayRecords, LocateSwitchesEveryDiskOfOneMagazineOnly) {
    auto expected = locateStates();
    ASSERT_EQ(expected,
              (std::map<uint32_t, bool>{
                  {0, false}, {1, false}, {2, true}, {3, false}, {4, false}, {5, false}}));
    ASSERT_EQ(api_locateMagazine("cage0", 0, API_LOCATE_ON), API_OK);
    ASSERT_EQ(api_locateMagazine("cage0", 1, API_LOCATE_OFF), API_OK);
    ASSERT_EQ(api_locateMagazine("cage1", 0, API_LOCATE_ON), API_OK);
    EXPECT_EQ(api_locateMagazine("cage1", 2, API_LOCATE_ON), API_OK) << "an empty magazine";
    expected[0] = expected[1] = expected[4] = true;
    expected[2] = expected[3] = false;
    EXPECT_EQ(locateStates(), expected);
    const auto disks = readDisks();
    EXPECT_EQ(disks[2].u.ledState, 3u) << "the LED state word is not touched";
    EXPECT_EQ(disks[4].u.esiAt0.present, 1) << "enclosure services are not touched";
    EXPECT_EQ(disks[4].u.esiAt0.state, 1u);

    ksvsim::useBuiltInModel();
    EXPECT_FALSE(locateStates()[0]) << "loading a model restores its LED states";
}

TEST_F(ArrayRecords, VolumeMapsAgreeWithTheDisks) {
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("demo.json")));
    std::map<int32_t, uint64_t> wwnById;
    for (const api_Disk_t& disk : readDisks())
        wwnById[static_cast<int32_t>(disk.id)] = disk.wwn;
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
        for (uint32_t i = 0; i < diskMaps.disks[d].volumeCount; ++i)
            fromDiskMaps[diskMaps.disks[d].diskId] += diskMaps.disks[d].volumes[i].chunkletCount;
    }
    EXPECT_EQ(fromDiskMaps, thirdRunChunkletsByDisk);
    api_freeMapsPDtoVV(&diskMaps);
}

TEST_F(ArrayRecords, GeneratedArrayLoadsWithEveryDiskAndVolume) {
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

TEST_F(ArrayRecords, IntegerKeysPointToInt64AndMissingKeysReadAsTheInvalidValue) {
    std::unique_ptr<hashtable_t, void (*)(hashtable_t*)> table(create_int_hashtable(2048, 0.75f),
                                                               delete_hashtable);
    ASSERT_TRUE(table);
    const int64_t seven = 7;
    const int64_t large = int64_t{1} << 40;
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 0);
    EXPECT_EQ(hashtable_get(table.get(), &seven), -1);
    ASSERT_EQ(hashtable_put(table.get(), &seven, 70), API_OK);
    ASSERT_EQ(hashtable_put(table.get(), &large, -5), API_OK);
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 1);
    EXPECT_EQ(hashtable_get(table.get(), &seven), 70);
    EXPECT_EQ(hashtable_get(table.get(), &large), -5);
    ASSERT_EQ(hashtable_put(table.get(), &seven, 71), API_OK);
    EXPECT_EQ(hashtable_get(table.get(), &seven), 71) << "put replaces";

    const int64_t three = 3;
    set_invalid_value(table.get(), 0);
    EXPECT_EQ(hashtable_get(table.get(), &three), 0);
    ASSERT_EQ(hashtable_put(table.get(), &three, 0), API_OK);
    EXPECT_EQ(hashtable_contains_key(table.get(), &three), 1) << "a value equal to the marker";
    hashtable_clear(table.get());
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 0);
}

} // namespace
} // namespace ksvsim::testing
