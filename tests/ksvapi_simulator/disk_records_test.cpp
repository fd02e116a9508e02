// Disk records, DeviceIDs and the magazine locate LED, as read through the library.
#include "simulator_test_support.h"

#include <map>

namespace ksvsim::testing {
namespace {

using nlohmann::json;

class DiskRecords : public SimulatorTest {};

// A disk with every member set, each to a value of its own. The WWN has
// leading zeros and lower case, which the DeviceID must not keep.
const char kFullyDescribedDisk[] = R"({
  "id": 17, "wwn": "0000c5003bd7a0f1", "cage": "c0", "magazine": 1, "position": 3,
  "elementName": "front-1-3", "type": 4, "cageSide": 1, "temperature": 41, "blockSize": 520,
  "numBlocks": 781422768, "consumedBlocks": 770703360, "chunkSize": 268435456,
  "allocatable": false, "speed": 0, "capacity": 4294968, "mediaType": 2, "wearLevelRemain": 97,
  "opStatus": 6, "cimOpStatus": 3, "healthState": 10, "connectorType": 3, "encryption": 1,
  "paths": {
    "A": { "state": 4, "alpa": 232, "portWwn": "20210002AC00A001", "lpid": "1:6:1" },
    "B1": { "state": 2, "lpid": null, "primary": true }
  },
  "manufacturer": {
    "vendor": "STEC", "model": "Z16IZF2E-400UCU", "serial": "STM0001", "saleableSerial": "SS1",
    "saleableProduct": "SP1", "sparePart": "SPARE1", "marketingModel": "SSD 400GB",
    "assemblyRev": "A3", "checksum": "9C1F"
  },
  "firmware": { "version": "3.12", "actual": 70000, "overall": -1 },
  "chunks": {
    "normal": { "usedOK": 1, "usedFail": 2, "unusedFree": 3, "unusedUninit": 4, "unusedFail": 5 },
    "spare": { "usedOK": 6, "usedFail": 7, "unusedFree": 8, "unusedUninit": 9, "unusedFail": 10 },
    "free": 11
  },
  "errors": {
    "read": { "corrected": 12, "uncorrected": "unknown" },
    "write": { "corrected": "unknown", "uncorrected": 13 }
  },
  "enclosure": { "ledState": 5, "locateLit": true }
})";

TEST_F(DiskRecords, EveryFieldAndPathComesFromTheModel) {
    json model = minimalModel(2);
    model["disks"][1] = json::parse(kFullyDescribedDisk);
    model["volumes"] = json::array();
    loadModel(model);
    const auto disks = readDisks();
    ASSERT_EQ(disks.size(), 2u);
    const api_Disk_t& d = disks[1];
    EXPECT_FALSE(d.isAbsent);
    EXPECT_STREQ(d.deviceID, "0000C5003BD7A0F1-id-17");
    EXPECT_STREQ(d.parentDeviceID, "c0:1");
    EXPECT_STREQ(d.cageDeviceID, "c0");
    EXPECT_EQ(d.position, 3);
    EXPECT_EQ(d.id, 17u);
    EXPECT_STREQ(d.cageElementName, "c0");
    EXPECT_EQ(d.magPosition, 1);
    EXPECT_STREQ(d.elemName, "front-1-3");
    EXPECT_EQ(d.wwn, 0x0000C5003BD7A0F1u);
    EXPECT_EQ(d.type_, 4);
    EXPECT_EQ(d.cageType, 2);
    EXPECT_EQ(d.cageSide, 1u);
    EXPECT_EQ(d.temp, 41);
    EXPECT_EQ((std::vector<uint64_t>{d.blockSize, d.numBlocks, d.consumBlocks, d.chunkSize}),
              (std::vector<uint64_t>{520, 781422768, 770703360, 268435456}));
    EXPECT_FALSE(d.isLDAllocateable);
    EXPECT_EQ((std::vector<uint32_t>{d.speed, d.ad_capacity, d.mediaType, d.wearlevelRemain}),
              (std::vector<uint32_t>{0, 4294968, 2, 97}));
    EXPECT_EQ((std::vector<int>{d.opStatus, d.cimOpStatus, d.healthState}),
              (std::vector<int>{6, 3, 10}));
    EXPECT_EQ(
        (std::vector<std::string>{d.mfg.vendor, d.mfg.model, d.mfg.serial, d.mfg.saleable_serial,
                                  d.mfg.saleable_product, d.mfg.spare_part, d.mfg.mktg_model,
                                  d.mfg.asmbly_rev, d.mfg.checksum}),
        (std::vector<std::string>{"STEC", "Z16IZF2E-400UCU", "STM0001", "SS1", "SP1", "SPARE1",
                                  "SSD 400GB", "A3", "9C1F"}));
    EXPECT_STREQ(d.fwVersion, "3.12");
    EXPECT_EQ(d.fwState.actual, 70000u);
    EXPECT_EQ(d.fwState.overall, -1);
    EXPECT_EQ((std::vector<uint32_t>{
                  d.normal.usedOKChunks, d.normal.usedFailChunks, d.normal.unusedFreeChunks,
                  d.normal.unusedUninitChunks, d.normal.unusedFailChunks, d.spare.usedOKChunks,
                  d.spare.usedFailChunks, d.spare.unusedFreeChunks, d.spare.unusedUninitChunks,
                  d.spare.unusedFailChunks, d.freeChunks}),
              (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(d.connectorType, 3);
    EXPECT_EQ((std::vector<uint64_t>{d.readErr.corrErrors, d.readErr.uncorrErrors,
                                     d.writeErr.corrErrors, d.writeErr.uncorrErrors}),
              (std::vector<uint64_t>{12, API_ERRCOUNT_UNKNOWN, API_ERRCOUNT_UNKNOWN, 13}));
    EXPECT_EQ(d.u.ledState, 5u);
    EXPECT_EQ(d.u.locate.flags, API_DISK_LOCATE_LIT);
    EXPECT_EQ(d.encryption, 1);

    EXPECT_EQ(d.loopA.loopState, 4);
    EXPECT_EQ(d.loopA.loopALPA, 232);
    EXPECT_EQ(d.loopA.nodePortWWN, 0x20210002AC00A001u);
    EXPECT_EQ(d.loopA.lpid, 0x0B1) << "node 1, slot 6, port 1";
    EXPECT_FALSE(d.loopA.isPrimary);
    EXPECT_EQ(d.loopB1.loopState, 2);
    EXPECT_EQ(d.loopB1.lpid, API_LPID_NONE) << "a path without a port";
    EXPECT_TRUE(d.loopB1.isPrimary);
    for (const api_Loop_t* missing : {&d.loopB, &d.loopA1}) {
        EXPECT_EQ(missing->lpid, 0);
        EXPECT_EQ(missing->nodePortWWN, 0u);
        EXPECT_FALSE(missing->isPrimary);
    }
    api_DiskDeviceIDList_t list{};
    ASSERT_EQ(getDiskDeviceIDs(17, &list), API_OK);
    EXPECT_EQ(list.entries[0].diskId, 17u);
    EXPECT_STREQ(list.entries[0].deviceID, d.deviceID);
    freeDiskDeviceIDs(&list);
}

class EnclosureBlock : public SimulatorTest, public ::testing::WithParamInterface<int> {};

TEST_P(EnclosureBlock, SitsWhereTheCageTypeSays) {
    const int cageType = GetParam();
    const bool hasLed = cageType == 1 || cageType == 2 || cageType == 3 || cageType == 5;
    const bool hasEsi = cageType >= 3;
    json model = minimalModel(cageType);
    json enclosure = {{"locateLit", true}};
    if (hasLed) {
        enclosure["ledState"] = 0x0A0B0C0D;
    }
    if (hasEsi) {
        enclosure["esiPresent"] = true;
        enclosure["esiState"] = 0x77;
    }
    model["disks"][0]["enclosure"] = enclosure;
    loadModel(model);
    const api_DiskEnclosure_u u = readDisks()[0].u;
    EXPECT_EQ(u.locate.flags, API_DISK_LOCATE_LIT);
    if (hasLed) {
        EXPECT_EQ(u.ledState, 0x0A0B0C0Du);
    }
    if (hasEsi) {
        const api_DiskEsi_t& esi = cageType <= 5 ? u.esiAt4.esi : u.esiAt0;
        EXPECT_EQ(esi.present, 1);
        EXPECT_EQ(esi.state, 0x77u);
    }
}

INSTANTIATE_TEST_SUITE_P(CageTypes, EnclosureBlock, ::testing::Range(1, 9));

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

TEST_F(DiskRecords, DeviceIdListsHoldPresentDisksWithTheirStatus) {
    api_DiskDeviceIDList_t list{};
    ASSERT_EQ(getDiskDeviceIDs(API_ALL_DISK_IDS, &list), API_OK);
    ASSERT_EQ(list.count, 5u);
    const uint32_t ids[] = {0, 1, 2, 4, 5};
    const int32_t statuses[] = {5, 5, 10, 5, 25};
    for (uint32_t i = 0; i < list.count; ++i) {
        EXPECT_EQ(list.entries[i].diskId, ids[i]);
        EXPECT_EQ(list.entries[i].status, statuses[i]) << "disk " << ids[i];
    }
    EXPECT_STREQ(list.entries[3].deviceID, "5001517A0B1C2D30-id-4");
    freeDiskDeviceIDs(&list);
    EXPECT_EQ(list.count, 0u);
    EXPECT_EQ(list.entries, nullptr);

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
