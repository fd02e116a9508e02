// What a client may not change: the objects of the sibling modules.
#include "IntegrationTest.h"

namespace ksv::integration {
namespace {

class ReadOnlyClassesTest : public IntegrationTest {};

TEST_F(ReadOnlyClassesTest, SiblingObjectsCannotBeCreatedChangedOrDeleted) {
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
} // namespace ksv::integration
