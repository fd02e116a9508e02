// Providers calling back into the server, through CIMOMHandle and CIMClient::connectLocal(),
// with a single worker thread: the nested calls must run on the calling thread.
#include <gtest/gtest.h>

#include "TestServer.h"

namespace ksv::test {
namespace {

using namespace Pegasus;

Uint32 uint32Property(const CIMInstance& instance, const char* name) {
    Uint32 value = 0;
    instance.getProperty(instance.findProperty(name)).getValue().get(value);
    return value;
}

TEST(NestedCallsTest, NestedCallsOnASingleWorkerComplete) {
    TestServer server(1);
    std::unique_ptr<CIMClient> client = server.client();
    CIMInstance nested = client->getInstance(kTestNamespace, pathOf("KSV_TestNested", "nested"));
    EXPECT_EQ(uint32Property(nested, "GadgetsAtStart"), 2u) << "from initialize";
    EXPECT_EQ(uint32Property(nested, "ViaHandle"), 3u);
    EXPECT_EQ(uint32Property(nested, "ViaClient"), 3u);
    // The association provider reads the devices and the far end through the server.
    EXPECT_EQ(client->associators(kTestNamespace, devicePath("dev-2")).size(), 1u);
}

} // namespace
} // namespace ksv::test
