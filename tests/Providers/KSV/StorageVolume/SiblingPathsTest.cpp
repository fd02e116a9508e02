// The volume and pool paths that the disk module's associations point at.
#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include <gtest/gtest.h>

#include <string>

namespace ksv::test {
namespace {

using namespace Pegasus;

std::string text(const String& value) {
    return std::string(value.getCString());
}

TEST(SiblingPaths, VolumeIsNamedByTheSystemAndItsWwnOnTheSystemsHost) {
    const CIMObjectPath volume = KSV_StorageVolumeProvider::createObjectPath(
        "60002AC0000000000000000A00015F3C", "KSV-D7", "ksv-d7.example.net");
    EXPECT_EQ(
        text(volume.toString()),
        "//ksv-d7.example.net/root/ksv:KSV_StorageVolume."
        "CreationClassName=\"KSV_StorageVolume\",DeviceID=\"60002AC0000000000000000A00015F3C\","
        "SystemCreationClassName=\"KSV_StorageSystem\",SystemName=\"KSV-D7\"");
    for (Uint32 i = 0; i < volume.getKeyBindings().size(); i++)
        EXPECT_EQ(volume.getKeyBindings()[i].getType(), CIMKeyBinding::STRING);
}

TEST(SiblingPaths, PoolIsNamedByItsInstanceID) {
    EXPECT_EQ(text(KSV_StoragePoolProvider::buildInstanceName("QUANOR:primordial", "h").toString()),
              "//h/root/ksv:KSV_StoragePool.InstanceID=\"QUANOR:primordial\"");
}

} // namespace
} // namespace ksv::test
