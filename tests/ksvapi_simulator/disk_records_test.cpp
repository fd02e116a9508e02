// DeviceIDs and the magazine locate LED, as read through the library. How each record field
// reaches a property is the disk providers' suite's to show.
#include "simulator_test_support.h"

#include <map>

namespace ksvsim::testing {
namespace {

class DiskRecords : public SimulatorTest {};

TEST_F(DiskRecords, MalformedDeviceIdsAreNotParsed) {
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
TEST_F(DiskRecords, DeviceIdOfOneDiskIsFoundOnlyWhilePresent) {
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
    for (const api_Disk_t& disk : readDisks()) {
        states[disk.id] = (disk.u.locate.flags & API_DISK_LOCATE_LIT) != 0;
    }
    return states;
}

TEST_F(DiskRecords, LocateSwitchesEveryDiskOfOneMagazineOnly) {
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

} // namespace
} // namespace ksvsim::testing
