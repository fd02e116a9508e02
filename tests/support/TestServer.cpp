#include "TestServer.h"

#include <ksvapi_sim.h>

#include "mof_compiler/NamespaceStore.h"

namespace ksv::test {

using namespace Pegasus;

const CIMNamespaceName kTestNamespace("root/ksv");

server::ServerConfig testServerConfig(unsigned threads) {
    server::ServerConfig config = server::defaultServerConfig();
    config.http.listenAddress = "127.0.0.1";
    config.http.port = 0;
    config.http.connectionTimeoutSeconds = 5;
    config.mofDirectory = KSV_SOURCE_DIR "/mof";
    config.mofFiles = {"root/ksv=" KSV_TEST_MOF_DIR "/KSV_Test.mof"};
    config.registrationFiles = {KSV_TEST_MOF_DIR "/KSV_TestRegistration.mof"};
    config.providerDirectories = {KSV_TEST_PROVIDER_DIR};
    config.threads = threads;
    config.shutdownGraceSeconds = 2;
    return config;
}

TestServer::TestServer(server::ServerConfig config) {
    ksvsim::reset();
    config.http.socketPath = socketPath();
    _server = std::make_unique<server::CimServer>(config);
    _server->start();
}

CIMValue TestServer::populate(Uint32 count, Uint32 nameLength, const std::string& target) const {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Count", CIMValue(count)));
    in.append(CIMParamValue("NameLength", CIMValue(nameLength)));
    Array<CIMParamValue> out;
    return client()->invokeMethod(kTestNamespace, devicePath(target), "Populate", in, out);
}

std::string requestBody(cimxml::Operation operation, const char* className) {
    auto request = cimxml::OperationRequest::make(operation, kTestNamespace);
    request.className = className;
    request.objectName = devicePath("dev-0");
    return cimxml::encodeRequest(request);
}

CIMObjectPath pathOf(const char* className, const std::string& id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("Id", id.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName(), className, keys);
}

CIMObjectPath devicePath(const std::string& id) {
    return pathOf("KSV_TestDevice", id);
}

CIMObjectPath gadgetPath(const std::string& id) {
    return pathOf("KSV_TestGadget", id);
}

std::string stringProperty(const CIMConstInstance& instance, const char* name) {
    Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND)
        return std::string();
    CIMValue value = instance.getProperty(index).getValue();
    if (value.isNull())
        return std::string();
    String text;
    value.get(text);
    return mof::utf8(text);
}

} // namespace ksv::test
