// Each CIM operation through the project's CIMClient, over HTTP, against the running server.
#include <gtest/gtest.h>

#include "TestServer.h"

using namespace Pegasus;
using ksv::test::devicePath;
using ksv::test::gadgetPath;
using ksv::test::kTestNamespace;
using ksv::test::stringProperty;

namespace {

class OperationsTest : public ::testing::Test {
protected:
    ksv::test::TestServer server;
    std::unique_ptr<CIMClient> client = server.client();
};

std::vector<std::string> sortedIds(const Array<CIMObjectPath>& paths) {
    std::vector<std::string> ids;
    for (Uint32 i = 0; i < paths.size(); ++i)
        ids.push_back(std::string(paths[i].getKeyBindings()[0].getValue().getCString()));
    std::sort(ids.begin(), ids.end());
    return ids;
}

CIMStatusCode codeOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const CIMException& error) {
        return error.getCode();
    }
    return CIM_ERR_SUCCESS;
}

TEST_F(OperationsTest, ClassOperationsAnswerFromTheRepository) {
    CIMClass device = client->getClass(kTestNamespace, "KSV_TestDevice", false);
    EXPECT_EQ(device.getSuperClassName(), CIMName("KSV_TestElement"));
    EXPECT_NE(device.findProperty("Id"), PEG_NOT_FOUND);
    EXPECT_NE(device.findMethod("Reset"), PEG_NOT_FOUND);

    CIMClass localOnly = client->getClass(kTestNamespace, "KSV_TestDevice", true);
    EXPECT_EQ(localOnly.findProperty("Id"), PEG_NOT_FOUND);

    Array<CIMName> subclasses =
        client->enumerateClassNames(kTestNamespace, "KSV_TestElement", false);
    EXPECT_EQ(subclasses.size(), 2u);
    Array<CIMClass> classes = client->enumerateClasses(kTestNamespace, "KSV_TestElement", true);
    EXPECT_EQ(classes.size(), 2u);
}

TEST_F(OperationsTest, InstancesAreReadThroughTheirProvider) {
    CIMInstance device = client->getInstance(kTestNamespace, devicePath("dev-1"));
    EXPECT_EQ(stringProperty(device, "Id"), "dev-1");
    EXPECT_EQ(stringProperty(device, "ServedAs"), "KSV_TestDevice");

    Array<CIMInstance> devices = client->enumerateInstances(kTestNamespace, "KSV_TestDevice");
    ASSERT_EQ(devices.size(), 3u);
    EXPECT_EQ(devices[0].getPath().getKeyBindings().size(), 1u);

    EXPECT_EQ(sortedIds(client->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice")),
              (std::vector<std::string>{"dev-0", "dev-1", "dev-2"}));
}

TEST_F(OperationsTest, InstancesAreCreatedModifiedAndDeletedThroughTheirProvider) {
    CIMInstance created("KSV_TestDevice");
    created.addProperty(CIMProperty("Id", CIMValue(String("dev-new"))));
    CIMObjectPath path = client->createInstance(kTestNamespace, created);
    EXPECT_EQ(path.getKeyBindings()[0].getValue(), "dev-new");

    CIMInstance modified("KSV_TestDevice");
    modified.addProperty(CIMProperty("Color", CIMValue(String("red"))));
    modified.setPath(devicePath("dev-new"));
    client->modifyInstance(kTestNamespace, modified);
    EXPECT_EQ(stringProperty(client->getInstance(kTestNamespace, devicePath("dev-new")), "Color"),
              "red");

    client->setProperty(kTestNamespace, devicePath("dev-new"), "Color", CIMValue(String("blue")));
    CIMValue color = client->getProperty(kTestNamespace, devicePath("dev-new"), "Color");
    String text;
    color.get(text);
    EXPECT_EQ(text, "blue");

    client->deleteInstance(kTestNamespace, devicePath("dev-new"));
    EXPECT_EQ(codeOf([&] { client->getInstance(kTestNamespace, devicePath("dev-new")); }),
              CIM_ERR_NOT_FOUND);
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
}

TEST_F(OperationsTest, AssociationsOfAClassComeFromTheRepository) {
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

TEST_F(OperationsTest, MethodParametersArriveWithTheirDeclaredTypes) {
    Array<CIMParamValue> in;
    // Untyped, as DSP0200 clients may send them: the server types them from the class.
    in.append(CIMParamValue("Delay", CIMValue(String("21")), false));
    in.append(CIMParamValue("Mode", CIMValue(String("soft")), false));
    in.append(CIMParamValue("Force", CIMValue(String("true")), false));
    Array<CIMParamValue> out;
    CIMValue result = client->invokeMethod(kTestNamespace, devicePath("dev-0"), "Reset", in, out);
    Uint32 doubled = 0;
    result.get(doubled);
    EXPECT_EQ(doubled, 42u);
    ASSERT_EQ(out.size(), 1u);
    String echoed;
    out[0].getValue().get(echoed);
    EXPECT_EQ(echoed, "soft:21:forced");
}

TEST_F(OperationsTest, FailuresCarryTheirCimStatus) {
    EXPECT_EQ(codeOf([&] { client->enumerateInstances("root/nowhere", "KSV_TestDevice"); }),
              CIM_ERR_INVALID_NAMESPACE);
    EXPECT_EQ(codeOf([&] { client->enumerateInstances(kTestNamespace, "KSV_NoSuchClass"); }),
              CIM_ERR_INVALID_CLASS);
    EXPECT_EQ(codeOf([&] { client->getClass(kTestNamespace, "KSV_NoSuchClass"); }),
              CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { client->getInstance(kTestNamespace, devicePath("dev-9")); }),
              CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { client->deleteInstance(kTestNamespace, gadgetPath("g-0")); }),
              CIM_ERR_NOT_SUPPORTED);
    EXPECT_EQ(codeOf([&] { client->getProperty(kTestNamespace, devicePath("dev-0"), "Nope"); }),
              CIM_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { client->associators(kTestNamespace, devicePath("dev-0"), "Nope"); }),
              CIM_ERR_INVALID_PARAMETER);
    Array<CIMParamValue> out;
    EXPECT_EQ(codeOf([&] {
                  client->invokeMethod(kTestNamespace, devicePath("dev-0"), "Explode",
                                       Array<CIMParamValue>(), out);
              }),
              CIM_ERR_METHOD_NOT_FOUND);
    Array<CIMParamValue> wrong;
    wrong.append(CIMParamValue("Delay", CIMValue(String("soon")), false));
    EXPECT_EQ(codeOf([&] {
                  client->invokeMethod(kTestNamespace, devicePath("dev-0"), "Reset", wrong, out);
              }),
              CIM_ERR_INVALID_PARAMETER);
    EXPECT_EQ(client->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(), 3u);
}

TEST_F(OperationsTest, RegistrationInstancesAreServedFromTheRepository) {
    Array<CIMInstance> modules = client->enumerateInstances("root/PG_InterOp", "PG_ProviderModule");
    EXPECT_EQ(modules.size(), 2u);
}

} // namespace
