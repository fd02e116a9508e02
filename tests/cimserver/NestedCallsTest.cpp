// Providers calling back into the server, through CIMOMHandle and CIMClient::connectLocal(),
// with a single worker thread: the nested calls must run on the calling thread.
#include <gtest/gtest.h>

#include "TestServer.h"

using namespace Pegasus;
using ksv::test::devicePath;
using ksv::test::kTestNamespace;
using ksv::test::pathOf;

namespace {

Uint32 uint32Property(const CIMInstance& instance, const char* name) {
    Uint32 value = 0;
    instance.getProperty(instance.findProperty(name)).getValue().get(value);
    return value;
}

class NestedCallsTest : public ::testing::Test {
protected:
    ksv::test::TestServer server{1};
    std::unique_ptr<CIMClient> client = server.client();
};

TEST_F(NestedCallsTest, NestedCallsFromInitializeAndOperationsComplete) {
    CIMInstance nested = client->getInstance(kTestNamespace, pathOf("KSV_TestNested", "nested"));
    EXPECT_EQ(uint32Property(nested, "GadgetsAtStart"), 2u);
    EXPECT_EQ(uint32Property(nested, "ViaHandle"), 3u);
    EXPECT_EQ(uint32Property(nested, "ViaClient"), 3u);
}

TEST_F(NestedCallsTest, AssociationProviderReadsTheFarEndThroughTheServer) {
    EXPECT_EQ(client->associators(kTestNamespace, devicePath("dev-2")).size(), 1u);
    EXPECT_EQ(client->enumerateInstances(kTestNamespace, "KSV_TestLink").size(), 3u);
}

TEST_F(NestedCallsTest, ConnectLocalInTheServersProcessReachesThatServer) {
    CIMClient local;
    local.connectLocal();
    EXPECT_EQ(local.enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(), 3u);
}

} // namespace
