// Every instance class of the module and of its sibling modules, enumerated and fetched through
// the running server.
#include "IntegrationTest.h"

#include <set>

namespace ksv::integration {
namespace {

struct ClassCase {
    const char* className;
    size_t count; // with the subclasses
    CIMObjectPath (*one)();
    const char* property; // of that one
    const char* value;
};

const ClassCase CLASSES[] = {
    {"KSV_DiskDrive", 5, [] { return diskPath(0); }, "ElementName", "cage0:0:0"},
    {"KSV_DiskDrivePackage", 5, [] { return packagePath(1); }, "SerialNumber", "IT-1"},
    {"KSV_DiskSoftwareIdentity", 3, [] { return identityPath("4.02"); }, "VersionString", "4.02"},
    {"KSV_DiskStorageExtent", 5, [] { return extentPath(3); }, "NumberOfBlocks", "800000"},
    {"KSV_StorageSystem", 1, systemPath, "ElementName", "KSV-IT1"},
    {"KSV_StoragePool", 4, [] { return poolPath("all-SSD"); }, "PoolID", "all-SSD"},
    {"KSV_StorageVolume", 3, [] { return volumePath(1); }, "ElementName", "it.logs"},
    {"KSV_Magazine", 3, [] { return magazinePath("KSV_Magazine", "IT1-DC0-M1"); }, "ElementName",
     "cage0:1"},
    {"KSV_DiskBay", 1, [] { return magazinePath("KSV_DiskBay", "IT1-DC1-M0"); }, "ElementName",
     "cage1:0"},
};

std::string valueOf(const CIMInstance& instance, const char* name) {
    const Uint32 index = instance.findProperty(name);
    return index == PEG_NOT_FOUND ? "absent"
                                  : text(instance.getProperty(index).getValue().toString());
}

// The path without host and namespace: what names the object in the namespace.
std::string bareText(CIMObjectPath path) {
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return text(path.toString());
}

std::set<std::string> bareTexts(const Array<CIMObjectPath>& paths) {
    std::set<std::string> texts;
    for (Uint32 i = 0; i < paths.size(); i++)
        texts.insert(bareText(paths[i]));
    return texts;
}

class InstanceClassTest : public IntegrationTest,
                          public ::testing::WithParamInterface<ClassCase> {};

TEST_P(InstanceClassTest, EveryEnumeratedNameCanBeFetched) {
    const auto admin = client();
    const Array<CIMObjectPath> names =
        admin->enumerateInstanceNames(KSV_NAMESPACE, GetParam().className);
    EXPECT_EQ(names.size(), GetParam().count);
    for (Uint32 i = 0; i < names.size(); i++) {
        EXPECT_TRUE(isNamedBy(admin->getInstance(KSV_NAMESPACE, names[i]), names[i]))
            << text(names[i].toString());
    }
    const Array<CIMInstance> instances =
        admin->enumerateInstances(KSV_NAMESPACE, GetParam().className);
    Array<CIMObjectPath> paths;
    for (Uint32 i = 0; i < instances.size(); i++)
        paths.append(instances[i].getPath());
    EXPECT_EQ(bareTexts(paths), bareTexts(names));
}

TEST_P(InstanceClassTest, OneObjectAndOneOfItsPropertiesAreFetchedByName) {
    const auto admin = client();
    const CIMObjectPath one = GetParam().one();
    EXPECT_EQ(valueOf(admin->getInstance(KSV_NAMESPACE, one), GetParam().property),
              GetParam().value);
    EXPECT_EQ(text(admin->getProperty(KSV_NAMESPACE, one, GetParam().property).toString()),
              GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Classes, InstanceClassTest, ::testing::ValuesIn(CLASSES),
                         [](const auto& info) { return std::string(info.param.className); });

class ArrayIdentityTest : public IntegrationTest {};

// The disk module names the system from the internal cache; the system provider must agree.
TEST_F(ArrayIdentityTest, TheDisksSystemIsTheServedSystem) {
    const auto admin = client();
    const CIMInstance disk = admin->getInstance(KSV_NAMESPACE, diskPath(4));
    const CIMInstance system = admin->getInstance(KSV_NAMESPACE, systemPath());
    EXPECT_EQ(valueOf(disk, "SystemName"), valueOf(system, "Name"));
    EXPECT_EQ(valueOf(disk, "SystemCreationClassName"), valueOf(system, "CreationClassName"));
}

TEST_F(ArrayIdentityTest, TheInternalCacheAnswersOverTheLocalSocket) {
    setenv("KSV_CIMSERVER_SOCKET", server().socketPath().c_str(), 1);
    CIMClient local;
    local.connectLocal();
    Array<CIMParamValue> outputs;
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", "localhost-InternalCache", CIMKeyBinding::STRING));
    const CIMValue returned = local.invokeMethod(
        "root/PG_Internal", CIMObjectPath(String(), CIMNamespaceName(), "KSV_InternalCache", keys),
        "GetSystemHostName", Array<CIMParamValue>(), outputs);
    EXPECT_EQ(text(returned.toString()), "0");
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_EQ(text(outputs[0].getParameterName()), "SystemHostName");
    EXPECT_EQ(text(outputs[0].getValue().toString()), "ksv-it1.example.net");
    local.disconnect();
}

} // namespace
} // namespace ksv::integration
