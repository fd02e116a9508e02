#include "cimserver/ServerConfig.h"

#include <CLI/CLI.hpp>
#include <Pegasus/Client/CIMXmlClientBackend.h>
#include <ksvapi.h>

#include "cimserver/SimulatedArray.h"
#include "mof_compiler/NamespaceStore.h"

#include <sstream>

namespace ksv::server {

namespace {

std::vector<std::string> splitPathList(const std::string& list) {
    std::vector<std::string> parts;
    std::istringstream stream(list);
    for (std::string part; std::getline(stream, part, ':');) {
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

void addListenOptions(CLI::App& app, HttpSettings& http) {
    app.add_option("--address", http.listenAddress,
                   "IP address to listen on for CIM-XML over HTTP and HTTPS (0.0.0.0: every "
                   "interface); empty for none")
        ->capture_default_str();
    app.add_option("--port", http.port, "TCP port; 0 lets the system choose")
        ->capture_default_str();
    app.add_option("--socket", http.socketPath, "local Unix socket to listen on; empty for none")
        ->capture_default_str();
    app.add_option("--max-connections", http.maxConnections,
                   "connections served at once; more are answered 503")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--max-connections-per-address", http.maxConnectionsPerAddress,
                   "connections from one IP address at once; more are closed")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--request-timeout", http.requestTimeoutSeconds,
                   "seconds a connection may stay silent while its request is awaited or read")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--connection-timeout", http.connectionTimeoutSeconds,
                   "seconds a connection may stay silent while its response is sent")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--request-deadline", http.requestDeadlineSeconds,
                   "seconds a request may take to arrive whole, headers and body, however steadily "
                   "it trickles in; later, its connection is closed")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--max-request-size", http.maxRequestBytes,
                   "largest request body in bytes; larger ones are answered 413")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
}

void addTlsOptions(CLI::App& app, HttpSettings& http) {
    app.add_option("--enable-http", http.httpEnabled, "serve CIM-XML over plain HTTP on --port")
        ->capture_default_str();
    app.add_option("--enable-https", http.https.enabled,
                   "serve CIM-XML over HTTPS on --https-port; needs --ssl-certificate and "
                   "--ssl-key")
        ->capture_default_str();
    app.add_option("--https-port", http.https.port, "TCP port for HTTPS; 0 lets the system choose")
        ->capture_default_str();
    app.add_option("--ssl-certificate", http.https.certificateFile,
                   "PEM file of the server's certificate");
    app.add_option("--ssl-key", http.https.keyFile, "PEM file of the server's private key");
    app.add_option("--ssl-client-certificate", http.https.clientCertificates,
                   "USER=FILE: a client presenting the PEM certificate in FILE, or one it "
                   "issued, is USER without a password; repeatable");
    app.add_option("--refuse-basic-over-http", http.refuseBasicOverHttp,
                   "answer 403 to requests with a password over plain HTTP")
        ->capture_default_str();
}

void addContentOptions(CLI::App& app, ServerConfig& config) {
    app.add_option("--array-model", config.arrayModel,
                   "JSON model of the simulated array; the built-in one when not given");
    app.add_option("--mof-dir", config.mofDirectory,
                   "directory of relative MOF paths and of included MOF files")
        ->capture_default_str();
    app.add_option("--mof", config.mofFiles, "[NAMESPACE=]FILE: MOF to load, in order")
        ->capture_default_str();
    app.add_option("--registration", config.registrationFiles,
                   "MOF with provider registration instances, loaded into the registration "
                   "namespace");
    app.add_option("--registration-namespace", config.registrationNamespace,
                   "namespace holding the provider registration")
        ->capture_default_str();
    app.add_option("--provider-dir", config.providerDirectories,
                   "directory holding provider modules (lib<Location>.so); repeatable")
        ->capture_default_str();
}

void addRuntimeOptions(CLI::App& app, ServerConfig& config) {
    app.add_option("--threads", config.threads, "worker threads serving requests")
        ->capture_default_str()
        ->check(CLI::Range(1u, 1024u));
    app.add_option("--max-response-memory", config.maxResponseBytes,
                   "bytes of heap the responses in flight may take together (0: no ceiling); a "
                   "request arriving above it waits up to request-timeout seconds, then is "
                   "refused with CIM_ERR_SERVER_LIMITS_EXCEEDED")
        ->capture_default_str();
    app.add_option("--shutdown-grace", config.shutdownGraceSeconds,
                   "seconds shutdown waits for requests in progress")
        ->capture_default_str();
    app.add_option("--log-level", config.logLevel,
                   "highest level logged: 1 fatal, 2 error, 3 warning, 4 trace")
        ->check(CLI::Range(1, 4));
    app.add_option("--log-sink", config.logSink, "stderr, syslog, file:PATH or none");
}

void addEnumerationOptions(CLI::App& app, EnumerationLimits& limits) {
    app.add_option("--max-enumerations", limits.maxContexts,
                   "open enumerations of the pull operations, all users together")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--enumeration-held-results", limits.heldResults,
                   "results an open enumeration holds until its client pulls them")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--enumeration-timeout", limits.defaultTimeoutSeconds,
                   "seconds an unused enumeration stays open when the client names no time-out")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--max-enumeration-timeout", limits.maxTimeoutSeconds,
                   "the longest time-out a client may ask for an enumeration, in seconds")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--max-object-count", limits.maxObjectCount,
                   "the most results one pull operation may ask for")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
}

} // namespace

ServerConfig defaultServerConfig() {
    ServerConfig config;
    config.http.socketPath = mof::utf8(Pegasus::CIMXmlClientConnector::localSocketPath());
    config.mofDirectory = KSV_CIMSERVER_MOF_DIR;
    config.mofFiles = {"standalone.mof"};
    config.providerDirectories = splitPathList(KSV_CIMSERVER_PROVIDER_DIRS);
    return config;
}

ParsedCommandLine parseCommandLine(int argc, const char* const* argv) {
    ServerConfig config = defaultServerConfig();
    CLI::App app("CIM server: CIM-XML over HTTP and HTTPS for the storage array's provider modules",
                 "ksv-cimserver");
    app.set_config("--config", "", "configuration file (TOML or INI; keys are option names)");
    addListenOptions(app, config.http);
    addTlsOptions(app, config.http);
    addContentOptions(app, config);
    addRuntimeOptions(app, config);
    addEnumerationOptions(app, config.enumerations);
    ParsedCommandLine parsed;
    // Not from a configuration file, which the service's server reads too.
    app.add_flag("--status", parsed.statusQuery,
                 "print how the server listening on the socket is, then exit")
        ->configurable(false);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        parsed.exitCode = app.exit(error, output, output);
        parsed.output = output.str();
        return parsed;
    }
    parsed.config = std::move(config);
    return parsed;
}

std::optional<std::string> configureArray(const ServerConfig& config) {
    if (!arrayIsSimulated()) {
        // The same configuration serves both libraries.
        if (!config.arrayModel.empty())
            log_message(KSV_LOG_WARNING,
                        "--array-model ignored: the array's own libksvapi is in use");
        return std::nullopt;
    }
    if (config.logLevel)
        ksvsim::setLogLevel(*config.logLevel);
    if (config.logSink) {
        if (std::optional<std::string> error = ksvsim::setLogSink(*config.logSink))
            return "--log-sink: " + *error;
    }
    if (!config.arrayModel.empty()) {
        if (std::optional<ksvsim::ModelError> error = ksvsim::loadModelFile(config.arrayModel))
            return "--array-model: " + error->describe();
    }
    return std::nullopt;
}

} // namespace ksv::server
