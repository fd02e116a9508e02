// The CIM server as a whole: repository, providers, dispatcher, worker pool and HTTP front end,
// started and stopped together. One runs per process at a time, since providers reach it
// through the process-wide CIMOMHandle and connectLocal() defaults.
#ifndef KSV_CIMSERVER_CIMSERVER_H
#define KSV_CIMSERVER_CIMSERVER_H

#include "cimserver/CimXmlService.h"
#include "cimserver/EnumerationContexts.h"
#include "cimserver/HttpFrontEnd.h"
#include "cimserver/InProcessAccess.h"
#include "cimserver/OperationDispatcher.h"
#include "cimserver/ProviderTable.h"
#include "cimserver/ServerConfig.h"
#include "cimserver/WorkerPool.h"
#include "mof_compiler/ClassRepository.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ksv::server {

class CimServer {
public:
    // Compiles the MOF, reads the registration and opens the provider modules. Throws
    // std::exception for what keeps the server from starting.
    explicit CimServer(const ServerConfig& config);
    ~CimServer();
    CimServer(const CimServer&) = delete;
    CimServer& operator=(const CimServer&) = delete;

    // Listens and serves; ListenError when a listener cannot be opened.
    void start();
    std::vector<std::string> addresses() const { return _http.addresses(); }
    std::uint16_t httpPort() const { return _http.tcpPort(); }
    std::uint16_t httpsPort() const { return _http.httpsPort(); }
    const mof::ClassRepository& repository() const { return _repository; }
    // Uptime, requests, connections, memory and the array in use, as "name: value" lines.
    std::string status() const;

    // Stops listening, lets requests in progress finish within the grace period, abandons the
    // rest and terminates the providers. False when provider calls were still running after
    // that: their providers are left alone and the process should exit without cleanup.
    bool stop();

private:
    void terminateProviders();

    const ServerConfig _config;
    const mof::ClassRepository _repository;
    std::shared_ptr<ServerHandleBackend> _serverHandle;
    ProviderTable _providers;
    OperationDispatcher _dispatcher;
    EnumerationContexts _enumerations;
    ResponseMemoryGate _responseMemory;
    CimXmlService _cimXml;
    WorkerPool _workers;
    HttpFrontEnd _http;
    std::chrono::steady_clock::time_point _startedAt;
    bool _running = false;
    bool _stopped = false;
    bool _terminated = false;
};

} // namespace ksv::server

#endif
