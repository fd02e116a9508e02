// Requests that cannot be served are answered with errors, and the server goes on serving.
#include "IntegrationTest.h"

namespace ksv::test {
namespace {

using BadRequestsTest = IntegrationTest;

TEST_F(BadRequestsTest, EachIsRefusedWithItsCimErrorAndTheServerGoesOn) {
    const auto admin = client();
    CIMObjectPath unknownDisk = diskPath(0);
    Array<CIMKeyBinding> keys = unknownDisk.getKeyBindings();
    keys[3] = CIMKeyBinding("DeviceID", "5000C50000009999-id-99", CIMKeyBinding::STRING);
    unknownDisk.setKeyBindings(keys);
    // The absent disk's extent is no pool component: the provider completes before it throws,
    // and the handler's check answers first.
    Array<CIMKeyBinding> pair;
    pair.append(CIMKeyBinding("GroupComponent", CIMValue(poolPath("primordial"))));
    pair.append(CIMKeyBinding("PartComponent", CIMValue(extentPath(2))));
    const CIMObjectPath primordialPair(String(), CIMNamespaceName(),
                                       "KSV_AssociatedPrimordialDisks", pair);
    CIMInstance pool("KSV_StoragePool");
    pool.addProperty(CIMProperty("InstanceID", String("QUANOR:new")));
    Array<CIMParamValue> outputs;
    const std::string unsupported = "CIM_ERR_NOT_SUPPORTED: KSV_";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { admin->getInstance(KSV_NAMESPACE, unknownDisk); }, "CIM_ERR_NOT_FOUND"},
        {[&] { admin->getInstance(KSV_NAMESPACE, volumePath(9)); },
         "CIM_ERR_NOT_FOUND: KSV_StorageVolumeProvider CIM Object not found."},
        {[&] { admin->getInstance(KSV_NAMESPACE, poolPath("all-XX")); },
         "CIM_ERR_NOT_FOUND: KSV_StoragePoolProvider CIM Object not found."},
        // The absent disk's magazine holds nothing.
        {[&] { admin->getInstance(KSV_NAMESPACE, magazinePath("KSV_Magazine", "IT1-DC9-M0")); },
         "CIM_ERR_NOT_FOUND: KSV_MagazineProvider CIM Object not found."},
        {[&] { admin->getInstance(KSV_NAMESPACE, primordialPair); },
         "CIM_ERR_FAILED: Too few objects delivered."},
        {[&] { admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_NoSuchClass"); },
         "CIM_ERR_INVALID_CLASS: KSV_NoSuchClass"},
        {[&] { admin->enumerateInstanceNames("root/nowhere", "KSV_DiskDrive"); },
         "CIM_ERR_INVALID_NAMESPACE: root/nowhere"},
        {[&] {
             admin->invokeMethod("root/PG_Internal", cachePath(), "GetSystemSerial", {}, outputs);
         },
         "CIM_ERR_METHOD_NOT_FOUND"},
        {[&] {
             admin->modifyInstance(KSV_NAMESPACE, admin->getInstance(KSV_NAMESPACE, volumePath(0)));
         },
         unsupported + "StorageVolumeProvider does not support modifyInstance."},
        {[&] { admin->deleteInstance(KSV_NAMESPACE, volumePath(0)); },
         unsupported + "StorageVolumeProvider does not support deleteInstance."},
        {[&] { admin->deleteInstance(KSV_NAMESPACE, systemPath()); },
         unsupported + "StorageSystemProvider does not support deleteInstance."},
        {[&] { admin->createInstance(KSV_NAMESPACE, pool); },
         unsupported + "StoragePoolProvider does not support createInstance."},
    };
    for (const auto& [call, expected] : cases) {
        const std::string error = cimErrorOf(call);
        EXPECT_EQ(error.substr(0, expected.size()), expected) << error;
    }
    ASSERT_TRUE(server().running()) << server().output();
    EXPECT_EQ(admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_StorageVolume").size(), 3u);
    EXPECT_EQ(admin->enumerateInstanceNames(KSV_NAMESPACE, "KSV_StoragePool").size(), 4u);
}

} // namespace
} // namespace ksv::test
