#include "cimserver/CimServer.h"

#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Client/CIMXmlClientBackend.h>
#include <ksvapi.h>

#include "cimserver/InteropProvider.h"
#include "cimserver/ProviderRegistration.h"
#include "cimserver/RepositoryLoader.h"
#include "cimserver/ServerLog.h"
#include "cimserver/ServerStatus.h"
#include "cimserver/SimulatedArray.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace ksv::server {

namespace {

// Long enough that a client's next request finds the pages of its last response still there.
constexpr std::chrono::milliseconds kIdleBeforeReturningMemory{1000};

void warn(const std::string& text) {
    log_message(KSV_LOG_WARNING, "%s", text.c_str());
}

mof::ClassRepository compileRepository(const ServerConfig& config) {
    configureServerLog(config.logLevel, config.logSink);
    std::vector<std::string> warnings;
    mof::ClassRepository repository = loadRepository(config, warnings);
    for (const std::string& warning : warnings)
        warn(warning);
    return repository;
}

Pegasus::String localHostName() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0)
        return "localhost";
    return name;
}

bool checkPassword(const std::string& user, const std::string& password) {
    return api_checkUserPassword(user.c_str(), password.c_str()) == API_OK;
}

BuiltInModules builtInModules(const mof::ClassRepository& repository,
                              const Pegasus::String& hostName) {
    return {{kInteropModuleLocation,
             [&repository, hostName](const Pegasus::String& name) -> Pegasus::CIMProvider* {
                 if (name != kInteropProviderName)
                     return nullptr;
                 return new InteropProvider(repository, hostName);
             }}};
}

// Every connection may have a request waiting for a worker.
std::size_t queueCapacity(const ServerConfig& config) {
    return std::max<std::size_t>(config.http.maxConnections, config.threads);
}

} // namespace

CimServer::CimServer(const ServerConfig& config)
    : _config(config), _repository(compileRepository(config)),
      _serverHandle(std::make_shared<ServerHandleBackend>()),
      _providers(readProviderRegistration(
                     _repository, Pegasus::CIMNamespaceName(config.registrationNamespace.c_str())),
                 config.providerDirectories, Pegasus::CIMOMHandle(_serverHandle), &warn,
                 builtInModules(_repository, localHostName())),
      _dispatcher(_repository, _providers, localHostName()), _enumerations(config.enumerations),
      _responseMemory(config.maxResponseBytes,
                      std::chrono::seconds(config.http.requestTimeoutSeconds),
                      kIdleBeforeReturningMemory),
      _cimXml(_dispatcher, _enumerations, _responseMemory),
      _workers(config.threads, queueCapacity(config)),
      _http(
          config.http, _workers,
          [this](HttpRequest& request, ResponseStream& response) {
              _cimXml.process(request, response);
          },
          &checkPassword) {}

// Unlike stop(), waits as long as provider calls run: only then may the providers go.
CimServer::~CimServer() {
    if (stop())
        return;
    _enumerations.shutdown(std::nullopt);
    _workers.stop(std::nullopt);
    terminateProviders();
}

void CimServer::start() {
    _serverHandle->attach(_dispatcher);
    Pegasus::CIMOMHandleBackend::setDefault(_serverHandle);
    std::shared_ptr<ServerHandleBackend> serverHandle = _serverHandle;
    Pegasus::CIMClientConnector::setLocal(
        [serverHandle] { return std::make_unique<LocalClientConnection>(serverHandle); });
    _running = true;
    _startedAt = std::chrono::steady_clock::now();
    _http.serveStatusPage([this] { return status(); });
    _http.start();
}

std::string CimServer::status() const {
    return statusPage({std::chrono::duration_cast<std::chrono::seconds>(
                           std::chrono::steady_clock::now() - _startedAt),
                       _http.requestsServed(), _http.openConnections(), residentKilobytes(),
                       arrayInUse()});
}

bool CimServer::stop() {
    if (_stopped)
        return _terminated;
    _stopped = true;
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::seconds(_config.shutdownGraceSeconds);
    _http.stopAccepting();
    if (!_http.waitUntilIdle(deadline))
        warn("shutdown: abandoning requests still in progress");
    // Providers still delivering into open enumerations are stopped before the workers go.
    const auto atLeastASecond =
        std::max(deadline, std::chrono::steady_clock::now() + std::chrono::seconds(1));
    bool workersDone = _enumerations.shutdown(atLeastASecond);
    _http.stop();
    workersDone = _workers.stop(atLeastASecond) && workersDone;
    if (_running) {
        // connectLocal() reaches a server through its socket again.
        Pegasus::CIMClientConnector::setLocal(&Pegasus::CIMXmlClientConnector::connectLocal);
        Pegasus::CIMOMHandleBackend::resetDefault();
    }
    if (!workersDone) {
        log_message(KSV_LOG_ERROR, "shutdown: provider calls still running; providers are not "
                                   "terminated");
        return false;
    }
    terminateProviders();
    return true;
}

void CimServer::terminateProviders() {
    _terminated = true;
    _serverHandle->detach();
    for (const std::string& provider : _providers.terminateAll())
        log_message(KSV_LOG_ERROR, "shutdown: %s is still in use", provider.c_str());
}

} // namespace ksv::server
