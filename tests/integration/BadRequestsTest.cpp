// Requests that cannot be served are answered with errors, and the server goes on serving.
#include "IntegrationTest.h"

namespace ksv::test {
namespace {

class BadRequestsTest : public IntegrationTest {
protected:
    void TearDown() override {
        // Whatever came before, the server still answers.
        ASSERT_TRUE(server().running()) << server().output();
        EXPECT_EQ(client()->enumerateInstanceNames(KSV_NAMESPACE, "KSV_StorageVolume").size(), 3u);
    }
};

TEST_F(BadRequestsTest, ObjectsThatDoNotExistAreNotFound) {
    const auto admin = client();
    CIMObjectPath unknownDisk = diskPath(0);
    Array<CIMKeyBinding> keys = unknownDisk.getKeyBindings();
    keys[3] = CIMKeyBinding("DeviceID", "5000C50000009999-id-99", CIMKeyBinding::STRING);
    unknownDisk.setKeyBindings(keys);
    EXPECT_EQ(cimErrorOf([&] {
                  admin->getInstance(KSV_NAMESPACE, unknownDisk);
              }).rfind("CIM_ERR_NOT_FOUND", 0),
              0u);
    EXPECT_EQ(cimErrorOf([&] { admin->getInstance(KSV_NAMESPACE, volumePath(9)); }),
              "CIM_ERR_NOT_FOUND: KSV_StorageVolumeProvider CIM Object not found.");
    EXPECT_EQ(cimErrorOf([&] { admin->getInstance(KSV_NAMESPACE, poolPath("all-XX")); }),
              "CIM_ERR_NOT_FOUND: KSV_StoragePoolProvider CIM Object not found.");
    // The absent disk's magazine holds nothing.
    EXPECT_EQ(cimErrorOf([&] {
                  admin->getInstance(KSV_NAMESPACE, magazinePath("KSV_Magazine", "IT1-DC9-M0"));
              }),
              "CIM_ERR_NOT_FOUND: KSV_MagazineProvider CIM Object not found.");
    // The provider completes before it throws: the handler's check answers first.
    Array<CIMKeyBinding> pair;
    pair.append(CIMKeyBinding("GroupComponent", CIMValue(poolPath("primordial"))));
    pair.append(CIMKeyBinding("PartComponent", CIMValue(extentPath(2))));
    EXPECT_EQ(cimErrorOf([&] {
                  admin->getInstance(KSV_NAMESPACE,
                                     CIMObjectPath(String(), CIMNamespaceName(),
                                                   "KSV_AssociatedPrimordialDisks", pair));
              }),
              "CIM_ERR_FAILED: Too few objects delivered.");
}

TEST_F(BadRequestsTest, UnknownClassesNamespacesAndMethodsAreRefused) {
    const auto admin = client();
    EXPECT_EQ(cimErrorOf([&] { admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_NoSuchClass"); }),
              "CIM_ERR_INVALID_CLASS: KSV_NoSuchClass");
    EXPECT_EQ(cimErrorOf([&] { admin->enumerateInstanceNames("root/nowhere", "KSV_DiskDrive"); }),
              "CIM_ERR_INVALID_NAMESPACE: root/nowhere");
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", "localhost-InternalCache", CIMKeyBinding::STRING));
    Array<CIMParamValue> outputs;
    EXPECT_EQ(cimErrorOf([&] {
                  admin->invokeMethod(
                      "root/PG_Internal",
                      CIMObjectPath(String(), CIMNamespaceName(), "KSV_InternalCache", keys),
                      "GetSystemSerial", Array<CIMParamValue>(), outputs);
              }).rfind("CIM_ERR_METHOD_NOT_FOUND", 0),
              0u);
}

TEST_F(BadRequestsTest, SiblingObjectsCannotBeCreatedChangedOrDeleted) {
    const auto admin = client();
    const CIMObjectPath volume = volumePath(0);
    CIMInstance changed = admin->getInstance(KSV_NAMESPACE, volume);
    EXPECT_EQ(cimErrorOf([&] { admin->modifyInstance(KSV_NAMESPACE, changed); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_StorageVolumeProvider does not support modifyInstance.");
    EXPECT_EQ(cimErrorOf([&] { admin->deleteInstance(KSV_NAMESPACE, volume); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_StorageVolumeProvider does not support deleteInstance.");
    EXPECT_EQ(cimErrorOf([&] { admin->deleteInstance(KSV_NAMESPACE, systemPath()); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_StorageSystemProvider does not support deleteInstance.");
    CIMInstance pool("KSV_StoragePool");
    pool.addProperty(CIMProperty("InstanceID", String("QUANOR:new")));
    EXPECT_EQ(cimErrorOf([&] { admin->createInstance(KSV_NAMESPACE, pool); }),
              "CIM_ERR_NOT_SUPPORTED: KSV_StoragePoolProvider does not support createInstance.");
    EXPECT_EQ(admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_StoragePool").size(), 4u);
}

} // namespace
} // namespace ksv::test
