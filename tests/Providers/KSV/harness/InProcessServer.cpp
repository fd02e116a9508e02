#include "InProcessServer.h"

#include "cimserver/InProcessAccess.h"

#include <Pegasus/Common/CIMProperty.h>

#include <ksvapi.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <stdexcept>

namespace ksv::test {

using namespace Pegasus;

namespace {

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

// One route into the server, through the server's own in-process access: what the stand-in
// does not serve fails as it does in a server that is not running.
class RouteBackend : public ksv::server::ServerHandleBackend {
public:
    RouteBackend(InProcessServer& server, Route route) : _server(server), _route(route) {}

    CIMClass getClass(const OperationContext&, const CIMNamespaceName& nameSpace,
                      const CIMName& className, Boolean localOnly, Boolean includeQualifiers,
                      Boolean includeClassOrigin, const CIMPropertyList& propertyList) override {
        _server.enter(_route, "getClass", nameSpace, text(className.getString()));
        return _server.classes().getClass(nameSpace, className, localOnly, includeQualifiers,
                                          includeClassOrigin, propertyList);
    }
    CIMInstance getInstance(const OperationContext&, const CIMNamespaceName& nameSpace,
                            const CIMObjectPath& instanceName, Boolean, Boolean includeQualifiers,
                            Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList) override {
        _server.enter(_route, "getInstance", nameSpace, text(instanceName.toString()));
        CIMInstance instance = _server.storedInstance(nameSpace, instanceName);
        instance.instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
        return instance;
    }
    Array<CIMInstance> enumerateInstances(const OperationContext&,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean, Boolean,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) override {
        _server.enter(_route, "enumerateInstances", nameSpace, text(className.getString()));
        Array<CIMInstance> instances = _server.instancesOf(nameSpace, className);
        for (Uint32 i = 0; i < instances.size(); i++)
            instances[i].instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
        return instances;
    }
    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext&,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className) override {
        _server.enter(_route, "enumerateInstanceNames", nameSpace, text(className.getString()));
        const Array<CIMInstance> instances = _server.instancesOf(nameSpace, className);
        Array<CIMObjectPath> names;
        for (Uint32 i = 0; i < instances.size(); i++)
            names.append(instances[i].getPath());
        return names;
    }
    CIMValue getProperty(const OperationContext&, const CIMNamespaceName& nameSpace,
                         const CIMObjectPath& instanceName, const CIMName& propertyName) override {
        _server.enter(_route, "getProperty", nameSpace, text(instanceName.toString()));
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
        _server.enter(_route, "invokeMethod", nameSpace, text(methodName.getString()));
        if (!isInternalCache(nameSpace, instanceName))
            throw CIMException(CIM_ERR_NOT_SUPPORTED, instanceName.toString());
        const CacheMethod& method = cacheMethod(methodName);
        answer(method, _server.cacheAnswer(method.method, _route), outParameters);
        return CIMValue(Uint32(0));
    }

private:
    InProcessServer& _server;
    const Route _route;
};

} // namespace

InProcessServer::InProcessServer(ksv::mof::ClassRepository classes)
    : _classes(std::move(classes)) {}

void InProcessServer::putInstance(const CIMNamespaceName& nameSpace, const CIMInstance& instance) {
    CIMInstance stored = instance.clone();
    stored.setPath(bare(instance.getPath()));
    std::lock_guard<std::mutex> guard(_lock);
    std::vector<CIMInstance>& instances = _store[folded(nameSpace.getString())];
    for (CIMInstance& existing : instances) {
        if (existing.getPath().identical(stored.getPath())) {
            existing = stored;
            return;
        }
    }
    instances.push_back(stored);
}

bool InProcessServer::removeInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& path) {
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

Array<CIMInstance> InProcessServer::instancesOf(const CIMNamespaceName& nameSpace,
                                                const CIMName& className) const {
    Array<CIMInstance> result;
    std::lock_guard<std::mutex> guard(_lock);
    const auto instances = _store.find(folded(nameSpace.getString()));
    if (instances == _store.end())
        return result;
    for (const CIMInstance& instance : instances->second) {
        if (!_classes.isSubclassOf(nameSpace, instance.getClassName(), className))
            continue;
        CIMInstance copy = instance.clone();
        copy.setPath(inNamespace(instance.getPath(), nameSpace));
        result.append(copy);
    }
    return result;
}

void InProcessServer::setCacheAnswer(const std::string& method, Route route, CacheAnswer answer) {
    std::lock_guard<std::mutex> guard(_lock);
    _cacheAnswers[{folded(method.c_str()), route}] = std::move(answer);
}

void InProcessServer::failOperation(Route route, const std::string& operation, Failure failure) {
    std::lock_guard<std::mutex> guard(_lock);
    _failures[{operation, route}] = std::move(failure);
}

std::vector<ServerCall> InProcessServer::calls() const {
    std::lock_guard<std::mutex> guard(_lock);
    return _calls;
}

std::vector<ServerCall> InProcessServer::calls(const std::string& operation) const {
    std::vector<ServerCall> matching;
    for (const ServerCall& call : calls()) {
        if (call.operation == operation)
            matching.push_back(call);
    }
    return matching;
}

void InProcessServer::clearCalls() {
    std::lock_guard<std::mutex> guard(_lock);
    _calls.clear();
}

std::shared_ptr<CIMOMHandleBackend> InProcessServer::serverHandle() {
    return std::make_shared<RouteBackend>(*this, Route::ServerHandle);
}

CIMClientConnector::LocalFactory InProcessServer::localConnector() {
    return [this]() -> std::unique_ptr<CIMClientBackend> {
        return std::make_unique<ksv::server::LocalClientConnection>(
            std::make_shared<RouteBackend>(*this, Route::LocalClient));
    };
}

void InProcessServer::enter(Route route, const std::string& operation,
                            const CIMNamespaceName& nameSpace, const std::string& target) {
    Failure failure;
    bool fails = false;
    {
        std::lock_guard<std::mutex> guard(_lock);
        _calls.push_back({route, operation, text(nameSpace.getString()), target});
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

CIMInstance InProcessServer::storedInstance(const CIMNamespaceName& nameSpace,
                                            const CIMObjectPath& instanceName) const {
    const CIMObjectPath wanted = bare(instanceName);
    const Array<CIMInstance> candidates = instancesOf(nameSpace, instanceName.getClassName());
    for (Uint32 i = 0; i < candidates.size(); i++) {
        if (bare(candidates[i].getPath()).identical(wanted))
            return candidates[i];
    }
    throw CIMException(CIM_ERR_NOT_FOUND, instanceName.toString());
}

CacheAnswer InProcessServer::cacheAnswer(const std::string& method, Route route) const {
    std::lock_guard<std::mutex> guard(_lock);
    const auto found = _cacheAnswers.find({folded(method.c_str()), route});
    return found == _cacheAnswers.end() ? CacheAnswer() : found->second;
}

} // namespace ksv::test
