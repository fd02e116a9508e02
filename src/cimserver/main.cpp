// ksv-cimserver: the CIM server of the storage array's management stack.
#include "cimserver/CimServer.h"
#include "cimserver/ServerConfig.h"
#include "cimserver/ServerStatus.h"
#include "cimserver/SimulatedArray.h"

#include <ksvapi.h>
#include <systemd/sd-daemon.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <pthread.h>

// Read by jemalloc, which the server is linked with. One arena, so that whichever thread answers
// the next request reuses the pages the last one freed instead of faulting in fresh ones; no
// decay over time, since the server gives free pages back itself once it is idle
// (ResponseMemoryGate). Free runs may be split for requests up to 65,536 times smaller (64 by
// default): otherwise the small slabs of the next request skip the large free runs the last one
// left, and each request in a row took 5-9 MB of fresh pages until the server went idle. Huge
// pages ("thp:always") would spare page faults too but keep pages that are partly in use, so that
// the server would not shrink back after a load.
extern "C" const char* malloc_conf;
const char* malloc_conf =
    "narenas:1,dirty_decay_ms:-1,muzzy_decay_ms:-1,lg_extent_max_active_fit:16";

namespace {

// Blocked in every thread, so that only the main thread's sigwait sees them.
sigset_t handledSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    return signals;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : " ") + part;
    return text;
}

// Tells systemd how the service is when systemd runs the server; does nothing otherwise.
void notifyServiceManager(const std::string& state) {
    sd_notify(0, state.c_str());
}

// SIGHUP: the configuration is read again and what is safe to change under requests in progress
// (logging, the array model and with it the array's users) is taken over; the rest waits for a
// restart. A configuration in error changes nothing.
void reload(int argc, char** argv) {
    notifyServiceManager("RELOADING=1");
    ksv::server::ParsedCommandLine parsed = ksv::server::parseCommandLine(argc, argv);
    std::optional<std::string> error =
        parsed.config ? ksv::server::configureArray(*parsed.config) : parsed.output;
    if (error)
        log_message(KSV_LOG_ERROR, "reload refused: %s", error->c_str());
    else
        std::cout << "ksv-cimserver: reloaded; array " << ksv::server::arrayInUse() << std::endl;
    notifyServiceManager("READY=1");
}

int serve(const ksv::server::ServerConfig& config, const sigset_t& signals, int argc, char** argv) {
    ksv::server::CimServer server(config);
    server.start();
    const std::string addresses = joined(server.addresses());
    std::cout << "ksv-cimserver: ready on " << addresses << std::endl;
    notifyServiceManager("READY=1\nSTATUS=serving on " + addresses);
    int received = 0;
    while (sigwait(&signals, &received) == 0 && received == SIGHUP)
        reload(argc, argv);
    notifyServiceManager("STOPPING=1");
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
    if (parsed.statusQuery)
        return ksv::server::printStatus(parsed.config->http.socketPath, std::cout, std::cerr);
    if (std::optional<std::string> error = ksv::server::configureArray(*parsed.config)) {
        std::cerr << "ksv-cimserver: " << *error << "\n";
        return EXIT_FAILURE;
    }
    const sigset_t signals = handledSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return serve(*parsed.config, signals, argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "ksv-cimserver: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
