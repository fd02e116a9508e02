// What a client may change, the locate LED of a disk's magazine, and what it may not.
#include "IntegrationTest.h"

namespace ksv::integration {
namespace {

const Uint16 LED_ON = 2;
const Uint16 LED_OFF = 3;

class LocateLedTest : public IntegrationTest {
protected:
    Uint16 led(CIMClient& client, int disk) {
        const CIMInstance instance = client.getInstance(KSV_NAMESPACE, diskPath(disk));
        Uint16 value = 0;
        instance.getProperty(instance.findProperty("LocationIndicator")).getValue().get(value);
        return value;
    }

    void switchLed(CIMClient& client, int disk, Uint16 value) {
        CIMInstance modified("KSV_DiskDrive");
        modified.addProperty(CIMProperty("LocationIndicator", value));
        modified.setPath(diskPath(disk));
        Array<CIMName> changed;
        changed.append("LocationIndicator");
        client.modifyInstance(KSV_NAMESPACE, modified, false, CIMPropertyList(changed));
    }
};

// The LED belongs to the magazine: disks 3 and 4 share one.
TEST_F(LocateLedTest, ModifyInstanceSwitchesTheMagazinesLedOnAndOff) {
    const auto admin = client();
    ASSERT_EQ(led(*admin, 3), LED_OFF);
    switchLed(*admin, 3, LED_ON);
    EXPECT_EQ(led(*admin, 3), LED_ON);
    EXPECT_EQ(led(*admin, 4), LED_ON);
    EXPECT_EQ(led(*admin, 0), LED_OFF);
    switchLed(*admin, 4, LED_OFF);
    EXPECT_EQ(led(*admin, 3), LED_OFF);
    EXPECT_EQ(led(*admin, 4), LED_OFF);
}

TEST_F(LocateLedTest, OnlyOnAndOffAreAccepted) {
    const auto admin = client();
    EXPECT_EQ(cimErrorOf([&] { switchLed(*admin, 0, 4); }),
              "CIM_ERR_INVALID_PARAMETER: Invalid parameter: LocationIndicator may only be on "
              "set to on(2) or off(3).");
    EXPECT_EQ(led(*admin, 0), LED_OFF);
}

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
