// Loading array models and refusing bad ones with the place of the fault, and the rights the
// model grants its users: who may open the library, which operations and which passwords.
#include "simulator_test_support.h"

#include <functional>

#include <pwd.h>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

using nlohmann::json;

class ModelLoading : public SimulatorTest {};

TEST_F(ModelLoading, BuiltInModelIsTheSmallExample) {
    EXPECT_EQ(ksvsim::activeModelSource(), "<built-in>");
    const auto builtIn = readDisks();
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("small.json")));
    const auto fromFile = readDisks();
    ASSERT_EQ(builtIn.size(), 6u);
    ASSERT_EQ(fromFile.size(), builtIn.size());
    for (std::size_t i = 0; i < builtIn.size(); ++i)
        EXPECT_EQ(std::memcmp(&builtIn[i], &fromFile[i], sizeof(api_Disk_t)), 0) << "disk " << i;
}

TEST_F(ModelLoading, UnreadableOrBrokenSourcesAreNamedAndLeaveTheActiveModel) {
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("demo.json")));
    const auto missing = ksvsim::loadModelFile("no/such/array.json");
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->describe(), "no/such/array.json: " + missing->message);
    EXPECT_NE(missing->message.find("cannot open file"), std::string::npos);
    const auto syntax =
        ksvsim::loadModelText("{\n  \"system\": {\n    \"name\" \"x\"\n  }\n}", "bad.json");
    ASSERT_TRUE(syntax);
    // Just after the unexpected "x".
    EXPECT_EQ(syntax->describe().rfind("bad.json: line 3, column 14: syntax error", 0), 0u)
        << syntax->describe();
    EXPECT_EQ(readDisks().size(), 38u);
    EXPECT_EQ(ksvsim::activeModelSource(), examplePath("demo.json"));
}

// Ways to break the minimal model, and where and how each error must show.
TEST_F(ModelLoading, RefusedModelsNamePlaceAndFault) {
    const struct {
        std::function<void(json&)> breakModel;
        const char* place;
        const char* message;
        int cageType = 2;
    } cases[] = {
        {[](json& m) { m.erase("system"); }, "top level", "missing member \"system\""},
        {[](json& m) { m["disk"] = json::array(); }, "/disk", "unknown member \"disk\""},
        {[](json& m) { m["disks"][0]["id"] = "zero"; }, "/disks/0/id",
         "expected an integer from 0 to 2147483647, found string"},
        {[](json& m) { m["disks"][0]["wwn"] = "5000A00"; }, "/disks/0/wwn",
         "expected a WWN of 16 hexadecimal digits"},
        {[](json& m) { m["disks"][1] = m["disks"][0]; }, "/disks/1",
         "DeviceID 5000000000000A00-id-0 is already used at /disks/0"},
        {[](json& m) { m["disks"][1]["id"] = 0; }, "/disks/1/id",
         "disk id 0 is already used at /disks/0/id"},
        {[](json& m) { m["disks"][1]["magazine"] = 0; }, "/disks/1/position",
         "slot c0:0:0 is already used"},
        {[](json& m) { m["disks"][1]["cage"] = "c9"; }, "/disks/1/cage", "unknown cage \"c9\""},
        {[](json& m) { m["disks"][1]["magazine"] = 5; }, "/disks/1/magazine",
         "cage c0 has no magazine 5"},
        {[](json& m) { m["disks"][0]["elementName"] = std::string(32, 'x'); },
         "/disks/0/elementName", "longer than 31 characters"},
        {[](json& m) { m["disks"][0]["paths"]["A"]["lpid"] = "8:1:1"; }, "/disks/0/paths/A/lpid",
         "port location"},
        {[](json& m) { m["disks"][0]["enclosure"]["esiState"] = 1; }, "/disks/0/enclosure/esiState",
         "cage type 2 has no enclosure services"},
        {[](json& m) { m["disks"][0]["enclosure"]["ledState"] = 1; }, "/disks/0/enclosure/ledState",
         "cage type 7 keeps no LED state", 7},
        {[](json& m) { m["cages"][0]["magazines"][1]["position"] = 0; },
         "/cages/0/magazines/1/position", "magazine position 0 appears twice in cage c0"},
        {[](json& m) { m["system"]["ipv4"] = "192.0.2.300"; }, "/system/ipv4",
         "expected an IPv4 address"},
        {[](json& m) { m["volumes"][0]["runs"].erase(0); }, "/volumes/0/runs",
         "expected three runs of chunklets, found 2"},
        {[](json& m) { m["volumes"][0]["runs"][2][1][0] = 5; }, "/volumes/0/runs/2/1",
         "chunklet on unknown disk 5"},
        {[](json& m) { m["disks"][1]["absent"] = true; }, "/volumes/0/runs/2/1",
         "chunklet on disk 1, which is absent"},
        {[](json& m) { m["volumes"][0]["runs"][0] = m["volumes"][0]["runs"][2]; },
         "/volumes/0/runs/2/0", "chunklet 1 of disk 0 is already used at /volumes/0/runs/0/0"},
        {[](json& m) { m["volumes"][0]["runs"][2][0].erase(1); }, "/volumes/0/runs/2/0",
         "expected a pair [disk id, chunklet number]"},
        {[](json& m) { m["volumes"][0]["runs"][2][0][1] = 65536; }, "/volumes/0/runs/2/0",
         "chunklet number 65536 is out of range"},
        {[](json& m) { m["volumes"][0]["excludedDisks"][0] = 4; }, "/volumes/0/excludedDisks/0",
         "unknown disk 4"},
    };
    for (const auto& c : cases) {
        json model = minimalModel(c.cageType);
        c.breakModel(model);
        const auto error = ksvsim::loadModelText(model.dump(), "model.json");
        ASSERT_TRUE(error) << "model was accepted: " << c.place;
        EXPECT_EQ(error->source, "model.json");
        EXPECT_EQ(error->place, c.place) << error->describe();
        EXPECT_NE(error->message.find(c.message), std::string::npos) << error->describe();
    }
}

class UserRights : public SimulatorTest {};

TEST_F(UserRights, OpenGrantsUsersWithCimAccessUnlessRefused) {
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_OK);
    EXPECT_EQ(api_ksvOpenForCimserver("monitor"), API_OK);
    for (const char* denied : {"guest", "nobody", ""})
        EXPECT_EQ(api_ksvOpenForCimserver(denied), API_E_DENIED) << denied;
    EXPECT_EQ(api_ksvOpenForCimserver(nullptr), API_E_DENIED);
    ksvsim::refuseUser("admin");
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_E_DENIED);
    EXPECT_EQ(api_authorizeCIMUser("admin", "192.0.2.99", "ksv_storagesetting.modifyinstance"),
              API_E_DENIED);
    EXPECT_EQ(api_ksvOpenForCimserver("monitor"), API_OK);
    ksvsim::clearRefusedUsers();
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_OK);
    // The model trusts the account of the server that uses the library, and only that model.
    const std::string server = getpwuid(geteuid())->pw_name;
    EXPECT_EQ(api_ksvOpenForCimserver(server.c_str()), API_OK);
    ASSERT_FALSE(ksvsim::loadModelText(minimalModel().dump(), "test-model"));
    EXPECT_EQ(api_ksvOpenForCimserver(server.c_str()), API_E_DENIED);
}

TEST_F(UserRights, OperationKeysAreGrantedExactlyOrByPrefix) {
    const struct {
        const char* user;
        const char* key;
        int result;
    } cases[] = {
        {"admin", "ksv_storageconfigurationservice.deletestoragepool.deletedynamicstoragepool",
         API_OK},
        {"monitor", "ksv_storagesetting.modifyinstance", API_OK},
        {"monitor", "ksv_storagesetting.modifyinstance.more", API_E_DENIED},
        {"monitor", "ksv_replicationservice.modifyreplicasynchronization.abort ", API_OK},
        {"monitor", "ksv_replicationservicecapabilities", API_E_DENIED},
        {"monitor", "ksv_storageconfigurationservice.returntostoragepool.basevv", API_E_DENIED},
        {"guest", "ksv_storagesetting.modifyinstance", API_E_DENIED},
        {"nobody", "ksv_storagesetting.modifyinstance", API_E_DENIED},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(api_authorizeCIMUser(c.user, "192.0.2.99", c.key), c.result)
            << c.user << " " << c.key;
    }
}

TEST_F(UserRights, PasswordsAreCheckedExactly) {
    EXPECT_EQ(api_checkUserPassword("admin", "admin-pw"), API_OK);
    EXPECT_EQ(api_checkUserPassword("guest", "guest-pw"), API_OK) << "login is not CIM access";
    EXPECT_EQ(api_checkUserPassword("admin", "Admin-pw"), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("admin", ""), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("admin", nullptr), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("nobody", "admin-pw"), API_E_DENIED);
}

} // namespace

} // namespace ksvsim::testing
