// How operations find their providers, and what the server does to what providers return.
#include <gtest/gtest.h>

#include "Probes.h"
#include "TestServer.h"

using namespace Pegasus;
using ksv::test::devicePath;
using ksv::test::gadgetPath;
using ksv::test::kTestNamespace;
using ksv::test::pathOf;
using ksv::test::stringProperty;

namespace {

class RoutingTest : public ::testing::Test {
protected:
    ksv::test::TestServer server;
    std::unique_ptr<CIMClient> client = server.client();
};

std::multiset<std::string> servedAs(const Array<CIMInstance>& instances) {
    std::multiset<std::string> classes;
    for (Uint32 i = 0; i < instances.size(); ++i)
        classes.insert(stringProperty(instances[i], "ServedAs"));
    return classes;
}

CIMException failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const CIMException& error) {
        return error;
    }
    return CIMException();
}

TEST_F(RoutingTest, BaseClassEnumerationReachesEachSubclassProviderUnderItsOwnClass) {
    Array<CIMInstance> elements = client->enumerateInstances(kTestNamespace, "KSV_TestElement");
    EXPECT_EQ(servedAs(elements),
              (std::multiset<std::string>{"KSV_TestDevice", "KSV_TestDevice", "KSV_TestDevice",
                                          "KSV_TestGadget", "KSV_TestGadget"}));
    EXPECT_EQ(client->enumerateInstanceNames(kTestNamespace, "KSV_TestElement").size(), 5u);
}

TEST_F(RoutingTest, ShallowEnumerationKeepsOnlyTheRequestedClassesProperties) {
    Array<CIMInstance> deep = client->enumerateInstances(kTestNamespace, "KSV_TestElement", true);
    Array<CIMInstance> shallow =
        client->enumerateInstances(kTestNamespace, "KSV_TestElement", false);
    ASSERT_EQ(shallow.size(), deep.size());
    for (Uint32 i = 0; i < shallow.size(); ++i) {
        EXPECT_EQ(shallow[i].findProperty("Size"), PEG_NOT_FOUND);
        EXPECT_EQ(shallow[i].findProperty("Weight"), PEG_NOT_FOUND);
        EXPECT_NE(shallow[i].findProperty("Name"), PEG_NOT_FOUND);
    }
    EXPECT_EQ(stringProperty(deep[0], "Color"), "grey");
}

TEST_F(RoutingTest, PropertyListsAndQualifiersAreAppliedToProviderResults) {
    Array<CIMName> names;
    names.append("Weight");
    Array<CIMInstance> gadgets = client->enumerateInstances(
        kTestNamespace, "KSV_TestGadget", true, false, false, false, CIMPropertyList(names));
    ASSERT_EQ(gadgets.size(), 2u);
    EXPECT_EQ(gadgets[0].getPropertyCount(), 1u);
    EXPECT_EQ(gadgets[0].getQualifierCount(), 0u);

    CIMInstance plain = client->getInstance(kTestNamespace, gadgetPath("g-0"));
    EXPECT_EQ(plain.getQualifierCount(), 0u);
    EXPECT_TRUE(plain.getProperty(plain.findProperty("Weight")).getClassOrigin().isNull());
    CIMInstance full = client->getInstance(kTestNamespace, gadgetPath("g-0"), false, true, true);
    EXPECT_EQ(full.getQualifierCount(), 1u);
    EXPECT_EQ(full.getProperty(full.findProperty("Weight")).getClassOrigin(),
              CIMName("KSV_TestGadget"));

    Array<CIMObject> empty =
        client->associators(kTestNamespace, devicePath("dev-0"), CIMName(), CIMName(), String(),
                            String(), false, false, CIMPropertyList(Array<CIMName>()));
    ASSERT_EQ(empty.size(), 1u);
    EXPECT_EQ(empty[0].getPropertyCount(), 0u);
}

TEST_F(RoutingTest, AssociationClassFiltersSelectTheProviders) {
    EXPECT_EQ(client->associatorNames(kTestNamespace, devicePath("dev-0"), "KSV_TestLink").size(),
              1u);
    EXPECT_EQ(client->referenceNames(kTestNamespace, devicePath("dev-0"), "KSV_TestLink").size(),
              1u);
    // A class that exists but is no association of the object: no provider is asked.
    EXPECT_EQ(client->associatorNames(kTestNamespace, devicePath("dev-0"), "KSV_TestGadget").size(),
              0u);
    // Without a filter, only associations that refer to the object's class are asked.
    unsigned before = ksvtest_operations();
    EXPECT_EQ(client->referenceNames(kTestNamespace, pathOf("KSV_TestFaulty", "x")).size(), 0u);
    EXPECT_EQ(ksvtest_operations(), before);
}

TEST_F(RoutingTest, ProviderExceptionsBecomeTheirCimErrors) {
    auto get = [&](const char* id) {
        return failureOf(
            [&] { client->getInstance(kTestNamespace, pathOf("KSV_TestFaulty", id)); });
    };
    EXPECT_EQ(get("cim").getCode(), CIM_ERR_NOT_FOUND);
    CIMException denied = get("denied");
    EXPECT_EQ(denied.getCode(), CIM_ERR_ACCESS_DENIED);
    EXPECT_NE(denied.getMessage().find("Insufficient privilege"), PEG_NOT_FOUND);
    CIMException foreign = get("std");
    EXPECT_EQ(foreign.getCode(), CIM_ERR_FAILED);
    EXPECT_NE(foreign.getMessage().find("the faulty provider broke"), PEG_NOT_FOUND);
    EXPECT_EQ(get("int").getCode(), CIM_ERR_FAILED);
    // The server still serves.
    EXPECT_EQ(client->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(), 3u);
}

TEST_F(RoutingTest, AnUnloadableModuleFailsOnlyItsOwnClasses) {
    CIMException missing =
        failureOf([&] { client->enumerateInstances(kTestNamespace, "KSV_TestOrphan"); });
    EXPECT_EQ(missing.getCode(), CIM_ERR_FAILED);
    EXPECT_NE(missing.getMessage().find("KSV_TestMissingModule"), PEG_NOT_FOUND);
    EXPECT_EQ(client->enumerateInstances(kTestNamespace, "KSV_TestGadget").size(), 2u);
}

} // namespace
