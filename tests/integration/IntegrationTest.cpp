#include "IntegrationTest.h"

#include <cstdio>

namespace ksv::test {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");

namespace {

const char SYSTEM_NAME[] = "KSV-IT1";

CIMObjectPath pathOf(const char* className,
                     std::initializer_list<std::pair<const char*, std::string>> keys) {
    Array<CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(CIMKeyBinding(name, value.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName(), className, bindings);
}

std::string deviceID(int disk) {
    char text[32];
    std::snprintf(text, sizeof text, "5000C5000000100%d-id-%d", disk, disk);
    return text;
}

CIMObjectPath logicalDevicePath(const char* className, const std::string& id) {
    return pathOf(className, {{"SystemCreationClassName", "KSV_StorageSystem"},
                              {"SystemName", SYSTEM_NAME},
                              {"CreationClassName", className},
                              {"DeviceID", id}});
}

} // namespace

CIMObjectPath diskPath(int disk) {
    return logicalDevicePath("KSV_DiskDrive", deviceID(disk));
}

CIMObjectPath extentPath(int disk) {
    return logicalDevicePath("KSV_DiskStorageExtent", deviceID(disk));
}

CIMObjectPath packagePath(int disk) {
    return pathOf("KSV_DiskDrivePackage",
                  {{"CreationClassName", "KSV_DiskDrivePackage"}, {"Tag", deviceID(disk)}});
}

CIMObjectPath identityPath(const std::string& version) {
    return pathOf("KSV_DiskSoftwareIdentity", {{"InstanceID", "QUANOR:" + version}});
}

CIMObjectPath systemPath() {
    return pathOf("KSV_StorageSystem",
                  {{"CreationClassName", "KSV_StorageSystem"}, {"Name", SYSTEM_NAME}});
}

CIMObjectPath poolPath(const std::string& poolID) {
    return pathOf("KSV_StoragePool", {{"InstanceID", "QUANOR:" + poolID}});
}

CIMObjectPath volumePath(int volume) {
    char wwn[40];
    std::snprintf(wwn, sizeof wwn, "60002AC00000000000000000004200%02d", volume);
    return logicalDevicePath("KSV_StorageVolume", wwn);
}

CIMObjectPath magazinePath(const std::string& className, const std::string& tag) {
    return pathOf(className.c_str(), {{"CreationClassName", className}, {"Tag", tag}});
}

CIMObjectPath cachePath() {
    return pathOf("KSV_InternalCache", {{"InstanceID", "localhost-InternalCache"}});
}

bool isNamedBy(const CIMInstance& instance, const CIMObjectPath& name) {
    if (!instance.getClassName().equal(name.getClassName()))
        return false;
    const Array<CIMKeyBinding>& keys = name.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        const Uint32 index = instance.findProperty(keys[i].getName());
        if (index == PEG_NOT_FOUND ||
            instance.getProperty(index).getValue().toString() != keys[i].getValue())
            return false;
    }
    return true;
}

std::string bareText(CIMObjectPath path) {
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return text(path.toString());
}

std::unique_ptr<ServerProcess> IntegrationTest::_server;
std::string IntegrationTest::_startFailure;

void IntegrationTest::SetUpTestSuite() {
    try {
        _server = std::make_unique<ServerProcess>(ServerOptions{
            std::string(KSV_SOURCE_DIR) + "/tests/integration/arrays/integration.json", {}, 4, {}});
    } catch (const std::exception& error) {
        _startFailure = error.what();
    }
}

// A server that does not exit cleanly on SIGTERM (a crash, a sanitizer's report) fails the suite.
void IntegrationTest::TearDownTestSuite() {
    if (_server) {
        EXPECT_EQ(_server->stop(), 0) << _server->output();
        _server.reset();
    }
}

void IntegrationTest::SetUp() {
    ASSERT_TRUE(_server) << _startFailure;
}

} // namespace ksv::test
