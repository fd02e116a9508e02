// Shared helpers of the simulator tests.
#ifndef KSVSIM_TEST_SUPPORT_H
#define KSVSIM_TEST_SUPPORT_H

#include "ksvapi.h"
#include "ksvapi_sim.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace ksvsim::testing {

inline std::string examplePath(const std::string& name) {
    return std::string(KSV_SOURCE_DIR) + "/examples/arrays/" + name;
}

inline std::string fileText(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// Every test starts from and leaves behind the library's initial state.
class SimulatorTest : public ::testing::Test {
protected:
    void SetUp() override { ksvsim::reset(); }
    void TearDown() override { ksvsim::reset(); }
};

// A valid model with one cage of the given type, two magazines and two
// disks (ids 0 and 1), one volume using both; tests change what they need.
inline nlohmann::json minimalModel(int cageType = 2) {
    nlohmann::json model = nlohmann::json::parse(R"({
      "system": { "name": "T1", "id": 42, "hostName": "t1.example.net", "ipv4": "192.0.2.1" },
      "cages": [ { "name": "c0", "magazines": [ { "position": 0 }, { "position": 1 } ] } ],
      "disks": [
        { "id": 0, "wwn": "5000000000000A00", "cage": "c0", "magazine": 0, "position": 0 },
        { "id": 1, "wwn": "5000000000000A01", "cage": "c0", "magazine": 1, "position": 0 }
      ],
      "volumes": [ { "id": 7, "name": "v7", "wwn": "60002AC0000000000000000000000007",
                     "runs": [ [], [], [ [0, 1], [1, 1] ] ] } ]
    })");
    model["cages"][0]["type"] = cageType;
    return model;
}

// The disks answered for a selector, copied out of the library's list.
inline std::vector<api_Disk_t> readDisks(int64_t selector = API_ALL_DISKS) {
    api_DiskList_t list{};
    const int result = api_getSystemDisks(selector, &list);
    std::vector<api_Disk_t> disks(list.disks, list.disks + list.count);
    std::free(list.disks);
    EXPECT_TRUE(result == API_OK || disks.empty());
    return disks;
}

} // namespace ksvsim::testing

#endif // KSVSIM_TEST_SUPPORT_H
