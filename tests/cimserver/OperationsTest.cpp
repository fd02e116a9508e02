// Each CIM operation through the project's CIMClient, over HTTP, against the running server: how
// operations find their providers, and what the server does to what providers return.
#include <gtest/gtest.h>

#include "Probes.h"
#include "TestServer.h"

#include <algorithm>
#include <functional>
#include <set>

namespace ksv::test {
namespace {

using namespace Pegasus;

class OperationsTest : public ::testing::Test {
protected:
    TestServer server;
    std::unique_ptr<CIMClient> client = server.client();
};

std::vector<std::string> sortedIds(const Array<CIMObjectPath>& paths) {
    std::vector<std::string> ids;
    for (Uint32 i = 0; i < paths.size(); ++i)
        ids.push_back(std::string(paths[i].getKeyBindings()[0].getValue().getCString()));
    std::sort(ids.begin(), ids.end());
    return ids;
}

TEST_F(OperationsTest, ClassOperationsAndAssociationsOfAClassAnswerFromTheRepository) {
    CIMClass device = client->getClass(kTestNamespace, "KSV_TestDevice", false);
    EXPECT_EQ(device.getSuperClassName(), CIMName("KSV_TestElement"));
    EXPECT_NE(device.findProperty("Id"), PEG_NOT_FOUND);
    EXPECT_NE(device.findMethod("Reset"), PEG_NOT_FOUND);
    CIMClass localOnly = client->getClass(kTestNamespace, "KSV_TestDevice", true);
    EXPECT_EQ(localOnly.findProperty("Id"), PEG_NOT_FOUND);
    EXPECT_EQ(client->enumerateClassNames(kTestNamespace, "KSV_TestElement", false).size(), 2u);
    EXPECT_EQ(client->enumerateClasses(kTestNamespace, "KSV_TestElement", true).size(), 2u);
    EXPECT_EQ(client->enumerateInstances("root/PG_InterOp", "PG_ProviderModule").size(), 2u)
        << "registration instances come from the repository";
    // So do the associations of a class.
    const CIMObjectPath deviceClass(String(), CIMNamespaceName(), "KSV_TestDevice");
    Array<CIMObjectPath> far = client->associatorNames(kTestNamespace, deviceClass);
    ASSERT_EQ(far.size(), 1u);
    EXPECT_EQ(far[0].getClassName(), CIMName("KSV_TestGadget"));
    Array<CIMObject> classes = client->associators(kTestNamespace, deviceClass);
    ASSERT_EQ(classes.size(), 1u);
    EXPECT_TRUE(classes[0].isClass());
    Array<CIMObject> associations = client->references(kTestNamespace, deviceClass);
    ASSERT_EQ(associations.size(), 1u);
    EXPECT_EQ(associations[0].getClassName(), CIMName("KSV_TestLink"));
    EXPECT_EQ(client->referenceNames(kTestNamespace, deviceClass, CIMName(), "Member").size(), 0u);
}

TEST_F(OperationsTest, AssociationOperationsReachTheAssociationProvider) {
    Array<CIMObject> gadgets = client->associators(kTestNamespace, devicePath("dev-1"));
    ASSERT_EQ(gadgets.size(), 1u);
    EXPECT_EQ(gadgets[0].getClassName(), CIMName("KSV_TestGadget"));
    EXPECT_EQ(gadgets[0].getPath().getNameSpace(), kTestNamespace);
    EXPECT_NE(gadgets[0].getPath().getHost().size(), 0u);
    EXPECT_EQ(sortedIds(client->associatorNames(kTestNamespace, gadgetPath("g-0"))),
              (std::vector<std::string>{"dev-0", "dev-2"}));
    Array<CIMObject> links = client->references(kTestNamespace, gadgetPath("g-1"));
    ASSERT_EQ(links.size(), 1u);
    EXPECT_EQ(links[0].getClassName(), CIMName("KSV_TestLink"));
    EXPECT_EQ(client->referenceNames(kTestNamespace, devicePath("dev-0")).size(), 1u);
    EXPECT_EQ(
        client->referenceNames(kTestNamespace, devicePath("dev-0"), CIMName(), "Member").size(),
        0u);

    // With an association class: only that class's providers are asked.
    EXPECT_EQ(client->associatorNames(kTestNamespace, devicePath("dev-0"), "KSV_TestLink").size(),
              1u);
    EXPECT_EQ(client->referenceNames(kTestNamespace, devicePath("dev-0"), "KSV_TestLink").size(),
              1u);
    EXPECT_EQ(client->associatorNames(kTestNamespace, devicePath("dev-0"), "KSV_TestGadget").size(),
              0u);
    // Without one, only associations that refer to the object's class are asked.
    unsigned before = ksvtest_count(KSVTEST_OPERATIONS);
    EXPECT_EQ(client->referenceNames(kTestNamespace, pathOf("KSV_TestFaulty", "x")).size(), 0u);
    EXPECT_EQ(ksvtest_count(KSVTEST_OPERATIONS), before);
}

// Provider exceptions keep their message; an unloadable module fails only its own classes.
TEST_F(OperationsTest, FailuresCarryTheirCimStatus) {
    Array<CIMParamValue> wrong;
    wrong.append(CIMParamValue("Delay", CIMValue(String("soon")), false));
    Array<CIMParamValue> out;
    auto faulty = [this](const char* id) {
        return [this, id] { client->getInstance(kTestNamespace, pathOf("KSV_TestFaulty", id)); };
    };
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { client->enumerateInstances("root/nowhere", "KSV_TestDevice"); },
         "CIM_ERR_INVALID_NAMESPACE"},
        {[&] { client->enumerateInstances(kTestNamespace, "KSV_NoSuchClass"); },
         "CIM_ERR_INVALID_CLASS"},
        {[&] { client->getClass(kTestNamespace, "KSV_NoSuchClass"); }, "CIM_ERR_NOT_FOUND"},
        {[&] { client->getInstance(kTestNamespace, devicePath("dev-9")); }, "CIM_ERR_NOT_FOUND"},
        {[&] { client->deleteInstance(kTestNamespace, gadgetPath("g-0")); },
         "CIM_ERR_NOT_SUPPORTED"},
        {[&] { client->getProperty(kTestNamespace, devicePath("dev-0"), "Nope"); },
         "CIM_ERR_NO_SUCH_PROPERTY"},
        {[&] { client->associators(kTestNamespace, devicePath("dev-0"), "Nope"); },
         "CIM_ERR_INVALID_PARAMETER"},
        {[&] { client->invokeMethod(kTestNamespace, devicePath("dev-0"), "Explode", {}, out); },
         "CIM_ERR_METHOD_NOT_FOUND"},
        {[&] { client->invokeMethod(kTestNamespace, devicePath("dev-0"), "Reset", wrong, out); },
         "CIM_ERR_INVALID_PARAMETER"},
        {faulty("cim"), "CIM_ERR_NOT_FOUND"},
        {faulty("int"), "CIM_ERR_FAILED"},
        {faulty("denied"), "CIM_ERR_ACCESS_DENIED: KSV_TestFaulty: Insufficient privilege"},
        {faulty("std"),
         "CIM_ERR_FAILED: KSV_TestFaultyProvider.getInstance: the faulty provider broke"},
        {[&] { client->enumerateInstances(kTestNamespace, "KSV_TestOrphan"); },
         "CIM_ERR_FAILED: KSV_TestMissingModule"},
    };
    for (const auto& [call, expected] : cases)
        EXPECT_EQ(cimErrorOf(call).rfind(expected, 0), 0u) << cimErrorOf(call);
    EXPECT_EQ(client->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(), 3u);
}

std::multiset<std::string> servedAs(const Array<CIMInstance>& instances) {
    std::multiset<std::string> classes;
    for (Uint32 i = 0; i < instances.size(); ++i)
        classes.insert(stringProperty(instances[i], "ServedAs"));
    return classes;
}

TEST_F(OperationsTest, BaseClassEnumerationReachesEachSubclassProviderUnderItsOwnClass) {
    Array<CIMInstance> deep = client->enumerateInstances(kTestNamespace, "KSV_TestElement", true);
    EXPECT_EQ(servedAs(deep),
              (std::multiset<std::string>{"KSV_TestDevice", "KSV_TestDevice", "KSV_TestDevice",
                                          "KSV_TestGadget", "KSV_TestGadget"}));
    EXPECT_EQ(client->enumerateInstanceNames(kTestNamespace, "KSV_TestElement").size(), 5u);
    EXPECT_EQ(stringProperty(deep[0], "Color"), "grey");
    // A shallow one keeps only the requested class's properties.
    Array<CIMInstance> shallow =
        client->enumerateInstances(kTestNamespace, "KSV_TestElement", false);
    ASSERT_EQ(shallow.size(), deep.size());
    for (Uint32 i = 0; i < shallow.size(); ++i) {
        EXPECT_EQ(shallow[i].findProperty("Size"), PEG_NOT_FOUND);
        EXPECT_EQ(shallow[i].findProperty("Weight"), PEG_NOT_FOUND);
        EXPECT_NE(shallow[i].findProperty("Name"), PEG_NOT_FOUND);
    }
}

TEST_F(OperationsTest, PropertyListsAndQualifiersAreAppliedToProviderResults) {
    Array<CIMName> names;
    names.append("Weight");
    Array<CIMInstance> gadgets = client->enumerateInstances(
        kTestNamespace, "KSV_TestGadget", true, false, false, false, CIMPropertyList(names));
    ASSERT_EQ(gadgets.size(), 2u);
    EXPECT_EQ(gadgets[0].getPropertyCount(), 1u);
    EXPECT_EQ(gadgets[0].getQualifierCount(), 0u);
    EXPECT_TRUE(gadgets[0].getProperty(0).getClassOrigin().isNull());
    Array<CIMInstance> whole = client->enumerateInstances(
        kTestNamespace, "KSV_TestGadget", true, false, true, true, CIMPropertyList(names));
    EXPECT_EQ(whole[0].getQualifierCount(), 1u);
    EXPECT_EQ(whole[0].getProperty(0).getClassOrigin(), CIMName("KSV_TestGadget"));

    // Each flag on its own: qualifiers without class origins, then the other way round.
    CIMInstance qualified =
        client->getInstance(kTestNamespace, gadgetPath("g-0"), false, true, false);
    EXPECT_EQ(qualified.getQualifierCount(), 1u);
    EXPECT_TRUE(qualified.getProperty(qualified.findProperty("Weight")).getClassOrigin().isNull());
    CIMInstance origins =
        client->getInstance(kTestNamespace, gadgetPath("g-0"), false, false, true);
    EXPECT_EQ(origins.getQualifierCount(), 0u);
    EXPECT_EQ(origins.getProperty(origins.findProperty("Weight")).getClassOrigin(),
              CIMName("KSV_TestGadget"));

    Array<CIMObject> empty =
        client->associators(kTestNamespace, devicePath("dev-0"), CIMName(), CIMName(), String(),
                            String(), false, false, CIMPropertyList(Array<CIMName>()));
    ASSERT_EQ(empty.size(), 1u);
    EXPECT_EQ(empty[0].getPropertyCount(), 0u);
}

} // namespace
} // namespace ksv::test
