// The server's configuration: command line, optionally with a configuration file whose keys are
// the long option names (see ksv-cimserver.conf).
#ifndef KSV_CIMSERVER_SERVERCONFIG_H
#define KSV_CIMSERVER_SERVERCONFIG_H

#include "cimserver/EnumerationContexts.h"
#include "cimserver/HttpFrontEnd.h"

#include <optional>
#include <string>
#include <vector>

namespace ksv::server {

struct ServerConfig {
    HttpSettings http;
    // Empty: the simulator's built-in array.
    std::string arrayModel;
    // Relative MOF paths are taken from here; it is also searched for included files.
    std::string mofDirectory;
    // "[NAMESPACE=]FILE", compiled in order; without a namespace, root/ksv until the file's own
    // namespace pragma.
    std::vector<std::string> mofFiles;
    // Compiled after mofFiles, into registrationNamespace.
    std::vector<std::string> registrationFiles;
    std::string registrationNamespace = "root/PG_InterOp";
    // Searched in order for lib<Location>.so of each provider module.
    std::vector<std::string> providerDirectories;
    // Unset: as the simulator's environment (KSV_LOG_LEVEL, KSV_LOG_SINK) says.
    std::optional<int> logLevel;
    std::optional<std::string> logSink;
    unsigned threads = 8;
    // Heap the responses in flight may take together; 0 for no ceiling.
    std::size_t maxResponseBytes = std::size_t(1) << 30;
    // How long shutdown waits for requests in progress before abandoning them.
    unsigned shutdownGraceSeconds = 10;
    // Open enumerations of the pull operations.
    EnumerationLimits enumerations;
};

// The defaults: the source tree's MOF and the build's provider modules.
ServerConfig defaultServerConfig();

struct ParsedCommandLine {
    // Set when the server should run.
    std::optional<ServerConfig> config;
    // --status: ask the server on the configured socket how it is, instead of running one.
    bool statusQuery = false;
    // Otherwise: the exit code and what to print (help, or the error).
    int exitCode = 0;
    std::string output;
};

ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

// Loads the array model and sets up logging of the simulated array library; the error, if any.
// Also what a running server takes over when told to reload: only these settings are safe to
// change under requests in progress.
std::optional<std::string> configureArray(const ServerConfig& config);

} // namespace ksv::server

#endif
