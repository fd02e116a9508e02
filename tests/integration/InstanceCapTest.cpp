// The volume-to-disk association caps its answers by the memory the server process may use: under
// a small address-space limit an enumeration of more pairs is answered "Response too big", and the
// server goes on serving.
#include "IntegrationTest.h"

#include <sstream>

namespace ksv::test {
namespace {

// The server starts and serves in this much address space (two worker threads, each thread's
// stack reserved in full); the cap is then 108 megabytes times 110 = 11880 pairs.
const rlim_t ADDRESS_SPACE_LIMIT = 108000000;
const unsigned DISKS = 40;
const unsigned VOLUMES = 300; // each on every disk: 12000 pairs

// A model whose every volume has one chunklet of user data on every disk.
std::string wideArray() {
    std::ostringstream json;
    json << R"({"system": {"name": "KSV-CAP", "id": 1, "hostName": "ksv-cap", "ipv4": "192.0.2.9"},
               "users": [{"name": "admin", "password": "admin-pw"}],
               "cages": [{"name": "cage0", "type": 2, "magazines": [{"position": 0}]}],
               "disks": [)";
    for (unsigned disk = 0; disk < DISKS; disk++) {
        json << (disk ? "," : "") << R"({"id": )" << disk << R"(, "wwn": "5000C500000)" << std::hex
             << 0x10000 + disk << std::dec << R"(", "cage": "cage0", "magazine": 0, "position": )"
             << disk << "}";
    }
    json << R"(], "volumes": [)";
    for (unsigned volume = 0; volume < VOLUMES; volume++) {
        json << (volume ? "," : "") << R"({"id": )" << volume << R"(, "name": "v)" << volume
             << R"(", "wwn": "60002AC000000000000000000)" << std::hex << 0x1000000 + volume
             << std::dec << R"(", "runs": [[], [], [)";
        for (unsigned disk = 0; disk < DISKS; disk++)
            json << (disk ? "," : "") << "[" << disk << "," << volume << "]";
        json << "]]}";
    }
    json << "]}";
    return json.str();
}

// Without a limit the cap is far above any array here: the large arrays of the pull operations'
// suite are paged through in full.
TEST(InstanceCapEndToEnd, TooManyPairsAreAnsweredResponseTooBig) {
#ifdef KSV_ADDRESS_SANITIZER
    GTEST_SKIP() << "AddressSanitizer reserves terabytes of shadow memory: a server under an "
                    "address-space limit cannot start in this build";
#endif
    const TemporaryFile model{wideArray()};
    ServerProcess server({model.path(), ADDRESS_SPACE_LIMIT, 2, {}});
    const auto admin = server.client("admin", "admin-pw");
    for (int attempt = 0; attempt < 2; attempt++) {
        const std::string names = cimErrorOf(
            [&] { admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_VolumeBasedOnDiskExtent"); });
        EXPECT_EQ(names, "CIM_ERR_FAILED: KSV_VolumeBasedOnDiskExtentProvider::"
                         "enumerateInstanceNames - Operation failed: Response too big");
        const std::string instances = cimErrorOf(
            [&] { admin->enumerateInstances(KSV_NAMESPACE, "KSV_VolumeBasedOnDiskExtent"); });
        EXPECT_EQ(instances, "CIM_ERR_FAILED: KSV_VolumeBasedOnDiskExtentProvider::"
                             "enumerateInstances - Operation failed: Response too big");
        // One disk's volumes are far fewer than the cap.
        const CIMObjectPath extent =
            admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_DiskStorageExtent")[0];
        EXPECT_EQ(
            admin->associatorNames(KSV_NAMESPACE, extent, "KSV_VolumeBasedOnDiskExtent").size(),
            VOLUMES);
    }
    EXPECT_TRUE(server.running()) << server.output();
    EXPECT_EQ(server.stop(), 0) << server.output();
}

} // namespace
} // namespace ksv::test
