// ksv-cimserver: the CIM server of the storage array's management stack.
#include "cimserver/CimServer.h"
#include "cimserver/ServerConfig.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <pthread.h>

namespace {

// Blocked in every thread, so that only the main thread's sigwait sees them.
sigset_t shutdownSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : " ") + part;
    return text;
}

int serve(const ksv::server::ServerConfig& config, const sigset_t& signals) {
    ksv::server::CimServer server(config);
    server.start();
    std::cout << "ksv-cimserver: ready on " << joined(server.addresses()) << std::endl;
    int received = 0;
    sigwait(&signals, &received);
    if (!server.stop()) {
        // Provider code still runs; unloading it under those threads is not an option.
        std::cout.flush();
        std::_Exit(EXIT_SUCCESS);
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    ksv::server::ParsedCommandLine parsed = ksv::server::parseCommandLine(argc, argv);
    if (!parsed.config) {
        (parsed.exitCode == 0 ? std::cout : std::cerr) << parsed.output;
        return parsed.exitCode;
    }
    if (std::optional<std::string> error = ksv::server::configureArray(*parsed.config)) {
        std::cerr << "ksv-cimserver: " << *error << "\n";
        return EXIT_FAILURE;
    }
    const sigset_t signals = shutdownSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return serve(*parsed.config, signals);
    } catch (const std::exception& error) {
        std::cerr << "ksv-cimserver: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
