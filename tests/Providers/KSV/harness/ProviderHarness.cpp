#include "ProviderHarness.h"

#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Common/CIMProperty.h>

#include "DriveCage/KSV_MagazineProvider.h"
#include "StorageVolume/KSV_InternalCacheService.h"
#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageSystemProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"
#include "cimserver/InProcessAccess.h"
#include "mof_compiler/MofCompiler.h"

#include <ksvapi.h>
#include <ksvapi_sim.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace ksv::test {

using namespace Pegasus;

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");

std::string text(const String& value) {
    return std::string(value.getCString());
}

std::string folded(const String& name) {
    std::string result = text(name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

CIMObjectPath bare(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

CIMObjectPath inNamespace(const CIMObjectPath& path, const CIMNamespaceName& nameSpace) {
    CIMObjectPath result = bare(path);
    result.setNameSpace(nameSpace);
    return result;
}

// The internal cache's methods, the output each answers through and the datum from the array.
struct CacheMethod {
    const char* method;
    const char* output;
    CIMValue (*datum)(const api_SystemInfo_t& info);
};

CIMValue systemAddress(const api_SystemInfo_t&) {
    api_DualIP_t addresses;
    std::memset(&addresses, 0, sizeof(addresses));
    api_getSystemDualIP(&addresses);
    char address[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &addresses.ipv4, address, sizeof(address));
    return CIMValue(String(address));
}

const CacheMethod CACHE_METHODS[] = {
    {"GetSystemName", "SystemName",
     [](const api_SystemInfo_t& info) { return CIMValue(String(info.name)); }},
    {"GetSystemID", "SystemID", [](const api_SystemInfo_t& info) { return CIMValue(info.id); }},
    {"IsQuadPortSystem", "IsQuadPort",
     [](const api_SystemInfo_t& info) { return CIMValue(Uint8(info.isQuadPort)); }},
    {"GetSystemType", "SystemType",
     [](const api_SystemInfo_t& info) { return CIMValue(Sint32(info.type)); }},
    {"GetSystemHostName", "SystemHostName",
     [](const api_SystemInfo_t& info) { return CIMValue(String(info.hostName)); }},
    {"GetSystemAddress", "SystemAddress", systemAddress},
};

const CacheMethod& cacheMethod(const CIMName& methodName) {
    for (const CacheMethod& method : CACHE_METHODS) {
        if (methodName.equal(CIMName(method.method)))
            return method;
    }
    throw CIMException(CIM_ERR_METHOD_NOT_FOUND, methodName.getString());
}

bool isInternalCache(const CIMNamespaceName& nameSpace, const CIMObjectPath& path) {
    return nameSpace.equal(CIMNamespaceName("root/PG_Internal")) &&
           path.getClassName().equal(CIMName("KSV_InternalCache"));
}

// The internal cache's answer, as the test set it.
void answer(const CacheMethod& method, const CacheAnswer& answer,
            Array<CIMParamValue>& outParameters) {
    api_SystemInfo_t info;
    api_getSystemInfo(&info);
    switch (answer.kind) {
    case CacheAnswer::Kind::Normal:
        outParameters.append(CIMParamValue(method.output, method.datum(info)));
        break;
    case CacheAnswer::Kind::RenamedOutput:
        outParameters.append(CIMParamValue(answer.outputName.c_str(), method.datum(info)));
        break;
    case CacheAnswer::Kind::NullOutput: {
        CIMValue nullValue;
        nullValue.setNullValue(method.datum(info).getType(), false);
        outParameters.append(CIMParamValue(method.output, nullValue));
        break;
    }
    case CacheAnswer::Kind::NoOutput:
        break;
    }
}

// Collects what a sibling module delivers.
struct RecordingInstances : InstanceResponseHandler {
    void processing() override {}
    void complete() override {}
    void deliver(const CIMInstance& instance) override { delivered.push_back(instance); }
    void deliver(const Array<CIMInstance>& more) override {
        for (Uint32 i = 0; i < more.size(); i++)
            delivered.push_back(more[i]);
    }
    std::vector<CIMInstance> delivered;
};

api_SystemInfo_t systemInfo() {
    api_SystemInfo_t info;
    if (api_getSystemInfo(&info) != 0)
        throw std::runtime_error("the simulated array has no system identity");
    return info;
}

} // namespace

// One route into the server, through the server's own in-process access: what the stand-in
// does not serve fails as it does in a server that is not running.
class ProviderHarness::RouteBackend : public ksv::server::ServerHandleBackend {
public:
    RouteBackend(ProviderHarness& server, Route route) : _server(server), _route(route) {}

    CIMClass getClass(const OperationContext&, const CIMNamespaceName& nameSpace,
                      const CIMName& className, Boolean localOnly, Boolean includeQualifiers,
                      Boolean includeClassOrigin, const CIMPropertyList& propertyList) override {
        _server.enter(_route, "getClass", className.getString());
        return ProviderHarness::shippedClasses().getClass(
            nameSpace, className, localOnly, includeQualifiers, includeClassOrigin, propertyList);
    }
    CIMInstance getInstance(const OperationContext&, const CIMNamespaceName& nameSpace,
                            const CIMObjectPath& instanceName, Boolean, Boolean includeQualifiers,
                            Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList) override {
        _server.enter(_route, "getInstance", instanceName.toString());
        CIMInstance instance = _server.storedInstance(nameSpace, instanceName);
        instance.instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
        return instance;
    }
    Array<CIMInstance> enumerateInstances(const OperationContext&,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean, Boolean,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) override {
        _server.enter(_route, "enumerateInstances", className.getString());
        Array<CIMInstance> instances = _server.instancesOf(nameSpace, className);
        for (Uint32 i = 0; i < instances.size(); i++)
            instances[i].instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
        return instances;
    }
    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext&,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className) override {
        _server.enter(_route, "enumerateInstanceNames", className.getString());
        const Array<CIMInstance> instances = _server.instancesOf(nameSpace, className);
        Array<CIMObjectPath> names;
        for (Uint32 i = 0; i < instances.size(); i++)
            names.append(instances[i].getPath());
        return names;
    }
    CIMValue getProperty(const OperationContext&, const CIMNamespaceName& nameSpace,
                         const CIMObjectPath& instanceName, const CIMName& propertyName) override {
        _server.enter(_route, "getProperty", instanceName.toString());
        const CIMInstance instance = _server.storedInstance(nameSpace, instanceName);
        const Uint32 index = instance.findProperty(propertyName);
        if (index == PEG_NOT_FOUND)
            throw CIMException(CIM_ERR_NO_SUCH_PROPERTY, propertyName.getString());
        return instance.getProperty(index).getValue();
    }
    CIMValue invokeMethod(const OperationContext&, const CIMNamespaceName& nameSpace,
                          const CIMObjectPath& instanceName, const CIMName& methodName,
                          const Array<CIMParamValue>&,
                          Array<CIMParamValue>& outParameters) override {
        _server.enter(_route, "invokeMethod", methodName.getString());
        if (!isInternalCache(nameSpace, instanceName))
            throw CIMException(CIM_ERR_NOT_SUPPORTED, instanceName.toString());
        const CacheMethod& method = cacheMethod(methodName);
        answer(method, _server.cacheAnswer(method.method, _route), outParameters);
        return CIMValue(Uint32(0));
    }

private:
    ProviderHarness& _server;
    const Route _route;
};

CIMObjectPath pathOf(const std::string& className,
                     const std::vector<std::pair<std::string, std::string>>& keys,
                     const std::string& host) {
    Array<CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(CIMKeyBinding(name.c_str(), value.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(host.c_str(), KSV_NAMESPACE, className.c_str(), bindings);
}

ProviderHarness::ProviderHarness(const std::string& model) {
    ksvsim::reset();
    ksvsim::setLogSink("none");
    ksvsim::setLogCapture(true);
    if (const auto error = ksvsim::loadModelFile(modelPath(model)))
        throw std::runtime_error(error->describe());
    CIMOMHandleBackend::setDefault(std::make_shared<RouteBackend>(*this, Route::ServerHandle));
    CIMClientConnector::setLocal([this]() -> std::unique_ptr<CIMClientBackend> {
        return std::make_unique<ksv::server::LocalClientConnection>(
            std::make_shared<RouteBackend>(*this, Route::LocalClient));
    });
    fillStore();
    // What the sibling modules cached of the array while filling the store starts afresh.
    KSV_InternalCacheService::destroy();
    clearCalls();
    ksvsim::clearCalls();
    ksvsim::clearCapturedLog();
}

ProviderHarness::~ProviderHarness() {
    CIMClientConnector::setLocal(CIMClientConnector::LocalFactory());
    CIMOMHandleBackend::resetDefault();
    KSV_InternalCacheService::destroy();
    ksvsim::reset();
}

CIMOMHandle ProviderHarness::cimom() {
    return CIMOMHandle(std::make_shared<RouteBackend>(*this, Route::ServerHandle));
}

OperationContext ProviderHarness::context(const std::string& userName) {
    OperationContext context;
    context.insert(IdentityContainer(userName.c_str()));
    return context;
}

std::string ProviderHarness::systemName() const {
    return systemInfo().name;
}

std::string ProviderHarness::hostName() const {
    return systemInfo().hostName;
}

std::string ProviderHarness::modelPath(const std::string& model) {
    return std::string(KSV_SOURCE_DIR) + "/examples/arrays/" + model;
}

const ksv::mof::ClassRepository& ProviderHarness::shippedClasses() {
    static const ksv::mof::ClassRepository classes = [] {
        ksv::mof::MofCompiler compiler;
        compiler.compileFile(std::string(KSV_SOURCE_DIR) + "/mof/standalone.mof");
        return compiler.repository();
    }();
    return classes;
}

void ProviderHarness::fillStore() {
    CIMOMHandle handle = cimom();
    const std::pair<CIMInstanceProvider*, const char*> siblings[] = {
        {new KSV_StorageSystemProvider, "KSV_StorageSystem"},
        {new KSV_StoragePoolProvider, "KSV_StoragePool"},
        {new KSV_StorageVolumeProvider, "KSV_StorageVolume"},
        {new KSV_MagazineProvider, "KSV_Magazine"},
        {new KSV_MagazineProvider, "KSV_DiskBay"}};
    for (const auto& [provider, className] : siblings) {
        provider->initialize(handle);
        RecordingInstances instances;
        provider->enumerateInstances(context(), CIMObjectPath(String(), KSV_NAMESPACE, className),
                                     false, false, CIMPropertyList(), instances);
        for (const CIMInstance& instance : instances.delivered)
            putInstance(KSV_NAMESPACE, instance);
        provider->terminate();
    }
    // No module here serves these two: their names are all that providers ask of them.
    const std::string name = systemName();
    for (const CIMObjectPath& path :
         {pathOf("KSV_SystemPackage", {{"CreationClassName", "KSV_SystemPackage"}, {"Tag", name}}),
          pathOf("KSV_StorageSystemView", {{"InstanceID", "QUANOR:" + name}})}) {
        CIMInstance instance(path.getClassName());
        instance.setPath(path);
        putInstance(KSV_NAMESPACE, instance);
    }
}

void ProviderHarness::putInstance(const CIMNamespaceName& nameSpace, const CIMInstance& instance) {
    CIMInstance stored = instance.clone();
    stored.setPath(bare(instance.getPath()));
    std::lock_guard<std::mutex> guard(_lock);
    _store[folded(nameSpace.getString())].push_back(stored);
}

bool ProviderHarness::removeInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& path) {
    std::lock_guard<std::mutex> guard(_lock);
    std::vector<CIMInstance>& instances = _store[folded(nameSpace.getString())];
    const CIMObjectPath wanted = bare(path);
    const auto removed =
        std::remove_if(instances.begin(), instances.end(), [&wanted](const CIMInstance& instance) {
            return instance.getPath().identical(wanted);
        });
    const bool found = removed != instances.end();
    instances.erase(removed, instances.end());
    return found;
}

Array<CIMInstance> ProviderHarness::instancesOf(const CIMNamespaceName& nameSpace,
                                                const CIMName& className) const {
    Array<CIMInstance> result;
    std::lock_guard<std::mutex> guard(_lock);
    const auto instances = _store.find(folded(nameSpace.getString()));
    if (instances == _store.end())
        return result;
    for (const CIMInstance& instance : instances->second) {
        if (!shippedClasses().isSubclassOf(nameSpace, instance.getClassName(), className))
            continue;
        CIMInstance copy = instance.clone();
        copy.setPath(inNamespace(instance.getPath(), nameSpace));
        result.append(copy);
    }
    return result;
}

void ProviderHarness::setCacheAnswer(const std::string& method, Route route, CacheAnswer answer) {
    std::lock_guard<std::mutex> guard(_lock);
    _cacheAnswers[{method, route}] = std::move(answer);
}

void ProviderHarness::failOperation(Route route, const std::string& operation, Failure failure) {
    std::lock_guard<std::mutex> guard(_lock);
    _failures[{operation, route}] = std::move(failure);
}

std::vector<ServerCall> ProviderHarness::calls(const std::string& operation) const {
    std::lock_guard<std::mutex> guard(_lock);
    std::vector<ServerCall> matching;
    std::copy_if(
        _calls.begin(), _calls.end(), std::back_inserter(matching),
        [&](const ServerCall& call) { return operation.empty() || call.operation == operation; });
    return matching;
}

void ProviderHarness::clearCalls() {
    std::lock_guard<std::mutex> guard(_lock);
    _calls.clear();
}

void ProviderHarness::enter(Route route, const std::string& operation, const String& target) {
    Failure failure;
    bool fails = false;
    {
        std::lock_guard<std::mutex> guard(_lock);
        _calls.push_back({route, operation, text(target)});
        const auto found = _failures.find({operation, route});
        if (found != _failures.end()) {
            failure = found->second;
            fails = true;
        }
    }
    if (!fails)
        return;
    if (failure.kind == Failure::Kind::ForeignError)
        throw std::runtime_error(failure.message);
    throw CIMException(CIM_ERR_FAILED, failure.message.c_str());
}

CIMInstance ProviderHarness::storedInstance(const CIMNamespaceName& nameSpace,
                                            const CIMObjectPath& instanceName) const {
    const CIMObjectPath wanted = bare(instanceName);
    const Array<CIMInstance> candidates = instancesOf(nameSpace, instanceName.getClassName());
    for (Uint32 i = 0; i < candidates.size(); i++) {
        if (bare(candidates[i].getPath()).identical(wanted))
            return candidates[i];
    }
    throw CIMException(CIM_ERR_NOT_FOUND, instanceName.toString());
}

CacheAnswer ProviderHarness::cacheAnswer(const std::string& method, Route route) const {
    std::lock_guard<std::mutex> guard(_lock);
    const auto found = _cacheAnswers.find({method, route});
    return found == _cacheAnswers.end() ? CacheAnswer() : found->second;
}

} // namespace ksv::test
