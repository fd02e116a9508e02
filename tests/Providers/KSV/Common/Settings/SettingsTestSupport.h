// Shared by the storage-settings suites.
#ifndef KSV_TESTS_SETTINGSTESTSUPPORT_H
#define KSV_TESTS_SETTINGSTESTSUPPORT_H

#include <KSV_Common.h>
#include <ksvapi.h>
#include <ksvapi_sim.h>

#include "ProviderTestSupport.h"

#include <string>

namespace ksv::test {

// The simulated array starts as the built-in two-node model; log lines are captured.
class SimulatedArrayTest : public ::testing::Test {
protected:
    void SetUp() override {
        ksvsim::reset();
        ksvsim::setLogCapture(true);
    }
    void TearDown() override { ksvsim::reset(); }

    // One cage and one disk: only the node count matters here.
    static void loadArrayWithNodes(int nodes) {
        const std::string model =
            R"({"system": {"name": "KSV-T", "id": 7, "hostName": "t.example.net",
                           "ipv4": "192.0.2.20", "nodes": )" +
            std::to_string(nodes) + R"(},
                "cages": [{"name": "c0", "type": 1, "magazines": [{"position": 0}]}],
                "disks": [{"id": 0, "wwn": "5000CCA01A2B3C40", "cage": "c0", "magazine": 0,
                           "position": 0}]})";
        const auto error = ksvsim::loadModelText(model, "nodes");
        ASSERT_FALSE(error) << error->describe();
    }
};

} // namespace ksv::test

#endif
