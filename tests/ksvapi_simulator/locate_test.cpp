// The locate LED of a magazine.
#include "simulator_test_support.h"

#include <map>

namespace ksvsim::testing {
namespace {

class LocateMagazine : public SimulatorTest {};

// Disk id -> locate LED lit, for every disk of the active model.
std::map<uint32_t, bool> locateStates() {
    std::map<uint32_t, bool> states;
    for (const api_Disk_t& disk : readDisks()) {
        states[disk.id] = (disk.u.locate.flags & API_DISK_LOCATE_LIT) != 0;
    }
    return states;
}

TEST_F(LocateMagazine, OnLightsEveryDiskOfThatMagazineOnly) {
    auto expected = locateStates();
    ASSERT_EQ(expected,
              (std::map<uint32_t, bool>{
                  {0, false}, {1, false}, {2, true}, {3, false}, {4, false}, {5, false}}));
    ASSERT_EQ(api_locateMagazine("cage0", 0, API_LOCATE_ON), API_OK);
    expected[0] = expected[1] = true;
    EXPECT_EQ(locateStates(), expected);
}

TEST_F(LocateMagazine, OffClearsTheMagazineAndKeepsOtherFlags) {
    ASSERT_EQ(api_locateMagazine("cage0", 1, API_LOCATE_OFF), API_OK);
    const auto disks = readDisks();
    EXPECT_EQ(disks[2].u.locate.flags, 0);
    EXPECT_EQ(disks[2].u.ledState, 3u) << "the LED state word is not touched";
    ASSERT_EQ(api_locateMagazine("cage0", 1, API_LOCATE_OFF), API_OK) << "already off";
    ASSERT_EQ(api_locateMagazine("cage1", 0, API_LOCATE_ON), API_OK);
    const api_Disk_t ssd = readDisks()[4];
    EXPECT_EQ(ssd.u.locate.flags, API_DISK_LOCATE_LIT);
    EXPECT_EQ(ssd.u.esiAt0.present, 1) << "enclosure services are not touched";
    EXPECT_EQ(ssd.u.esiAt0.state, 1u);
}

TEST_F(LocateMagazine, EmptyMagazineIsFound) {
    EXPECT_EQ(api_locateMagazine("cage1", 2, API_LOCATE_ON), API_OK);
}

TEST_F(LocateMagazine, UnknownMagazineOrValueChangesNothing) {
    const auto before = locateStates();
    EXPECT_EQ(api_locateMagazine("cage9", 0, API_LOCATE_ON), API_E_NOT_FOUND);
    EXPECT_EQ(api_locateMagazine("cage0", 2, API_LOCATE_ON), API_E_NOT_FOUND);
    EXPECT_EQ(api_locateMagazine(nullptr, 0, API_LOCATE_ON), API_E_INVALID);
    for (int value : {0, 2, 3, 254, 256, -1}) {
        EXPECT_EQ(api_locateMagazine("cage0", 0, value), API_E_INVALID) << value;
    }
    EXPECT_EQ(locateStates(), before);
}

TEST_F(LocateMagazine, LoadingAModelRestoresItsLedStates) {
    ASSERT_EQ(api_locateMagazine("cage0", 0, API_LOCATE_ON), API_OK);
    ksvsim::useBuiltInModel();
    EXPECT_FALSE(locateStates()[0]);
}

} // namespace
} // namespace ksvsim::testing
