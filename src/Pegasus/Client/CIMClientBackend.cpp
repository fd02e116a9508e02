#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Client/CIMXmlClientBackend.h>
#include <Pegasus/Common/Exception.h>

#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include <mutex>
#include <string>
#include <utility>

PEGASUS_NAMESPACE_BEGIN

ksv::cimxml::OperationResponse CIMClientBackend::exchange(ksv::cimxml::OperationRequest request) {
    throw CIMException(CIM_ERR_NOT_SUPPORTED,
                       String(ksv::cimxml::operationName(request.operation)) +
                           " is not supported over this connection");
}

namespace {

struct ConnectorRegistry {
    std::mutex mutex;
    // The CIM-XML transport until other factories are registered.
    CIMClientConnector::LocalFactory local = &CIMXmlClientConnector::connectLocal;
    CIMClientConnector::RemoteFactory remote = &CIMXmlClientConnector::connectRemote;
};

ConnectorRegistry& registry() {
    static ConnectorRegistry instance;
    return instance;
}

template <class Factory>
void replaceFactory(Factory ConnectorRegistry::*slot, Factory factory) {
    ConnectorRegistry& shared = registry();
    std::lock_guard<std::mutex> lock(shared.mutex);
    (shared.*slot).swap(factory);
}

// A copy, so that the factory runs without the lock and may itself touch the registry.
template <class Factory>
Factory currentFactory(Factory ConnectorRegistry::*slot) {
    ConnectorRegistry& shared = registry();
    std::lock_guard<std::mutex> lock(shared.mutex);
    return shared.*slot;
}

std::unique_ptr<CIMClientBackend> requireBackend(std::unique_ptr<CIMClientBackend> backend,
                                                 const String& what) {
    if (!backend) {
        throw CannotConnectException(what + ": the connection factory returned no connection");
    }
    return backend;
}

String describeRemote(const String& host, Uint32 portNumber) {
    String text("CIMClient::connect to ");
    text.append(host);
    text.append(":");
    text.append(std::to_string(portNumber).c_str());
    return text;
}

} // namespace

CIMClientBackend::~CIMClientBackend() = default;

void CIMClientConnector::setLocal(LocalFactory factory) {
    replaceFactory(&ConnectorRegistry::local, std::move(factory));
}

void CIMClientConnector::setRemote(RemoteFactory factory) {
    replaceFactory(&ConnectorRegistry::remote, std::move(factory));
}

std::unique_ptr<CIMClientBackend> CIMClientConnector::connectLocal() {
    const String what("CIMClient::connectLocal");
    LocalFactory factory = currentFactory(&ConnectorRegistry::local);
    if (!factory) {
        throw CannotConnectException(what + ": no local connection factory is registered");
    }
    return requireBackend(factory(), what);
}

std::unique_ptr<CIMClientBackend> CIMClientConnector::connectRemote(const String& host,
                                                                    Uint32 portNumber,
                                                                    const String& userName,
                                                                    const String& password) {
    const String what = describeRemote(host, portNumber);
    RemoteFactory factory = currentFactory(&ConnectorRegistry::remote);
    if (!factory) {
        throw CannotConnectException(what + ": no remote connection factory is registered");
    }
    return requireBackend(factory(host, portNumber, userName, password), what);
}

PEGASUS_NAMESPACE_END
