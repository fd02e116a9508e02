// Load run of the CIM server over loopback:
//
//   cimserver_load [--clients 32] [--seconds 600] [--max-requests N] [--faults] [--hostile]
//   cimserver_load --url http://127.0.0.1:PORT/cimom --server-pid PID [--until-server-stops]
//
// Without --url the server runs in this process over the demo array (--array-model to choose
// another), so that --faults can make the array library fail: for the middle third of the run
// cim_sem_wait times out and library calls fail at random, then the run checks that the server
// recovers. --hostile adds clients that hang up mid-answer, readers that stall, connections
// that never send a request, and a request trickled in a byte a second. Each client mixes
// enumerations of every class, associators and references from both ends, getInstance, LED changes
// through ModifyInstance, a refused user, a wrong password, malformed requests and an oversized
// key. The run prints requests per second, latency percentiles, outcomes by kind and the server's
// memory over time, and fails when any answer was not as meant, the server took a semaphore it did
// not give back, or memory kept growing.
#include <CLI/CLI.hpp>
#include <curl/curl.h>
#include <ksvapi.h>
#include <ksvapi_sim.h>

#include "LoadClient.h"
#include "LoadReport.h"
#include "cimserver/CimServer.h"
#include "cimserver/ServerConfig.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

using namespace ksv::load;
using Clock = std::chrono::steady_clock;

namespace {

struct Options {
    std::string url;
    int serverPid = 0;
    std::string arrayModel = KSV_SOURCE_DIR "/examples/arrays/demo.json";
    unsigned clients = 32;
    unsigned seconds = 600;
    std::uint64_t maxRequests = 0;
    bool faults = false;
    bool hostile = false;
    bool untilServerStops = false;
    // Users of the array model: one it admits to everything, one it refuses.
    std::string user = "admin";
    std::string password = "Adm1n-pw";
    std::string refusedUser = "auditor";
    std::string refusedPassword = "aud1t-pw";
};

constexpr auto kRequestTimeout = std::chrono::seconds(60);
// Answers this long after the faults stop may still carry them.
constexpr auto kFaultSettling = std::chrono::seconds(2);

const char* const kClasses[] = {
    "KSV_DiskDrive",
    "KSV_DiskDrivePackage",
    "KSV_DiskSoftwareIdentity",
    "KSV_DiskStorageExtent",
    "KSV_SystemDisk",
    "KSV_SystemExtent",
    "KSV_DiskPackageRealizes",
    "KSV_AssociatedPrimordialDisks",
    "KSV_VolumeBasedOnDiskExtent",
    "KSV_DiskSoftware",
    "KSV_DiskPresent",
    "KSV_MagazineContainer",
    "KSV_StorageSystem",
    "KSV_StorageVolume",
    "KSV_StoragePool",
    "KSV_DiskBay",
    "KSV_Magazine",
};

// ---- The server and the run's clock ----------------------------------------------------------

struct Run {
    Options options;
    std::string url;
    Clock::time_point start = Clock::now();
    std::atomic<bool> stopping{false};
    std::atomic<std::uint64_t> sent{0};
    std::atomic<bool> faultsOn{false};
    std::atomic<Clock::rep> faultsEnded{0};

    double elapsed() const { return std::chrono::duration<double>(Clock::now() - start).count(); }
    bool over() {
        if (stopping)
            return true;
        const bool done = elapsed() >= options.seconds ||
                          (options.maxRequests != 0 && sent >= options.maxRequests);
        if (done)
            stopping = true;
        return done;
    }
    bool underFaults(Clock::time_point began) const {
        return faultsOn ||
               Clock::now() - Clock::time_point(Clock::duration(faultsEnded)) < kFaultSettling ||
               began < Clock::time_point(Clock::duration(faultsEnded));
    }
};

double residentMegabytes(int pid) {
    std::ifstream status(pid == 0 ? "/proc/self/status"
                                  : "/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stod(line.substr(6)) / 1024.0;
    }
    return 0;
}

// ---- The mix of requests ---------------------------------------------------------------------

std::string instanceNameOf(LoadClient& client, const Options& options,
                           const std::string& className) {
    Request request{"names", "EnumerateInstanceNames",
                    intrinsicCall("EnumerateInstanceNames", classNameParameter(className)),
                    options.user, options.password};
    return firstInstanceName(client.send(request, kRequestTimeout).body);
}

Request ledChange(const std::string& disk, int state) {
    const std::string instance =
        "<VALUE.NAMEDINSTANCE>" + disk +
        "<INSTANCE CLASSNAME=\"KSV_DiskDrive\"><PROPERTY NAME=\"LocationIndicator\" "
        "TYPE=\"uint16\"><VALUE>" +
        std::to_string(state) + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
    const std::string properties = "<VALUE.ARRAY><VALUE>LocationIndicator</VALUE></VALUE.ARRAY>";
    return {"modifyInstance LocationIndicator=" + std::to_string(state), "ModifyInstance",
            intrinsicCall("ModifyInstance", parameter("ModifiedInstance", instance) +
                                                parameter("PropertyList", properties))};
}

void addAssociationRequests(std::vector<Request>& mix, const std::string& end,
                            const std::string& endClass) {
    for (const char* method : {"Associators", "References", "AssociatorNames", "ReferenceNames"})
        mix.push_back({std::string(method) + " of " + endClass, method,
                       intrinsicCall(method, parameter("ObjectName", end))});
}

std::vector<Request> requestMix(const std::string& url, const Options& options) {
    LoadClient client(url);
    std::vector<Request> mix;
    for (const char* className : kClasses)
        mix.push_back({std::string("enumerateInstances ") + className, "EnumerateInstances",
                       intrinsicCall("EnumerateInstances", classNameParameter(className))});
    const std::string disk = instanceNameOf(client, options, "KSV_DiskDrive");
    for (const char* endClass : {"KSV_DiskDrive", "KSV_StorageSystem", "KSV_DiskDrivePackage",
                                 "KSV_DiskStorageExtent", "KSV_DiskSoftwareIdentity"}) {
        const std::string end = instanceNameOf(client, options, endClass);
        mix.push_back({std::string("getInstance ") + endClass, "GetInstance",
                       intrinsicCall("GetInstance", parameter("InstanceName", end))});
        addAssociationRequests(mix, end, endClass);
    }
    mix.push_back(ledChange(disk, 2));
    mix.push_back(ledChange(disk, 3));
    mix.push_back(
        {"malformed XML", "EnumerateInstances", "<CIM><MESSAGE>", "", "", Expect::BadRequest});
    mix.push_back(
        {"getInstance 64 KiB DeviceID", "GetInstance",
         intrinsicCall("GetInstance",
                       parameter("InstanceName", withDeviceID(disk, std::string(65536, 'D')))),
         "", "", Expect::LimitExceeded});
    for (Request& request : mix) {
        request.user = options.user;
        request.password = options.password;
    }
    Request refused = mix.front();
    refused.name = "refused user";
    refused.user = options.refusedUser;
    refused.password = options.refusedPassword;
    refused.expect = Expect::AccessDenied;
    mix.push_back(refused);
    Request wrongPassword = mix.front();
    wrongPassword.name = "wrong password";
    wrongPassword.password = "not-the-password";
    wrongPassword.expect = Expect::Unauthorized;
    mix.push_back(wrongPassword);
    if (options.hostile) {
        Request hangUp = mix.front();
        hangUp.name = "hang up mid-answer";
        hangUp.hangUpEarly = true;
        hangUp.expect = Expect::Aborted;
        mix.push_back(hangUp);
    }
    return mix;
}

// ---- Clients -----------------------------------------------------------------------------------

Tally runClient(Run& run, const std::vector<Request>& mix, unsigned seed) {
    LoadClient client(run.url);
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::size_t> pick(0, mix.size() - 1);
    Tally tally;
    while (!run.over()) {
        ++run.sent;
        const Request& request = mix[pick(random)];
        const Clock::time_point began = Clock::now();
        const Answer answer = client.send(request, kRequestTimeout);
        tally.latenciesMs.push_back(
            std::chrono::duration<double, std::milli>(Clock::now() - began).count());
        const std::string kind = request.name + ": " + outcomeOf(answer);
        if (run.options.untilServerStops && answer.httpStatus == 0 && !request.hangUpEarly) {
            run.stopping = true; // the server went away, as it was told to
            break;
        }
        if (meets(answer, request.expect))
            ++tally.expected[kind];
        else if (run.underFaults(began))
            ++tally.underFaults[kind];
        else
            ++tally.unexpected[kind];
    }
    return tally;
}

// ---- Faults and hostile clients -----------------------------------------------------------------

// The middle third of the run: semaphore time-outs and failures of the calls the providers
// make, a few calls at a time.
void injectFaults(Run& run) {
    struct Fault {
        const char* function;
        int result;
    };
    const Fault faults[] = {{"cim_sem_wait", API_E_SEM_TIMEOUT},
                            {"api_getSystemDisks", API_E_NO_MEMORY},
                            {"getDiskDeviceIDs", API_E_NO_MEMORY},
                            {"api_getMapsPDtoVV", API_E_LIST_TOO_BIG},
                            {"api_getVVs", API_E_NO_MEMORY},
                            {"api_ksvOpenForCimserver", API_E_DENIED},
                            {"api_deReferenceDiskDeviceID", API_E_NOT_FOUND}};
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> pick(0, std::size(faults) - 1);
    const double from = run.options.seconds / 3.0, to = 2 * run.options.seconds / 3.0;
    while (!run.over() && run.elapsed() < from)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    run.faultsOn = true;
    while (!run.over() && run.elapsed() < to) {
        const Fault& fault = faults[pick(random)];
        ksvsim::forceResult(fault.function, fault.result, 1 + static_cast<int>(random() % 3));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ksvsim::clearForcedResults();
    run.faultsEnded = Clock::now().time_since_epoch().count();
    run.faultsOn = false;
}

int connectTo(std::uint16_t port) {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

// True when the server closes the connection within the time.
bool closedByServer(int fd, std::chrono::seconds within) {
    pollfd ready{fd, POLLIN, 0};
    char byte;
    return poll(&ready, 1, static_cast<int>(within.count() * 1000)) == 1 &&
           recv(fd, &byte, 1, 0) <= 0;
}

struct HostileCounts {
    std::atomic<unsigned> idleClosed{0}, idleLeftOpen{0}, stalledReaders{0};
    std::atomic<unsigned> tricklesCut{0}, tricklesLeftOpen{0};
};

// Connections that never send anything must be closed by the server's request time-out.
void holdIdleConnections(Run& run, std::uint16_t port, unsigned requestTimeout,
                         HostileCounts& counts) {
    while (!run.over()) {
        std::vector<int> idle;
        for (int i = 0; i < 16; i++)
            idle.push_back(connectTo(port));
        for (int fd : idle) {
            if (fd < 0)
                continue;
            (closedByServer(fd, std::chrono::seconds(requestTimeout + 5)) ? counts.idleClosed
                                                                          : counts.idleLeftOpen)++;
            close(fd);
        }
    }
}

// Asks for the largest answer and reads none of it for a while.
void stallReading(Run& run, std::uint16_t port, const Request& request, HostileCounts& counts) {
    const std::string head =
        "POST /cimom HTTP/1.1\r\nHost: localhost\r\n" +
        basicAuthorization(request.user, request.password) +
        "\r\nCIMOperation: MethodCall\r\nCIMMethod: " + request.cimMethod +
        "\r\nCIMObject: root%2Fksv\r\nContent-Length: " + std::to_string(request.body.size()) +
        "\r\n\r\n";
    while (!run.over()) {
        int fd = connectTo(port);
        if (fd >= 0) {
            ::send(fd, head.data(), head.size(), MSG_NOSIGNAL);
            ::send(fd, request.body.data(), request.body.size(), MSG_NOSIGNAL);
            for (int i = 0; i < 150 && !run.over(); i++)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            close(fd);
            ++counts.stalledReaders;
        }
    }
}

// Sends a request a byte a second, never silent for a whole request time-out: the request
// deadline must close it.
void trickleRequest(Run& run, std::uint16_t port, unsigned deadline, HostileCounts& counts) {
    const std::string head = "POST /cimom HTTP/1.1\r\nHost: localhost\r\nX-Trickle: ";
    while (!run.over()) {
        int fd = connectTo(port);
        if (fd < 0)
            continue;
        const auto giveUp = Clock::now() + std::chrono::seconds(deadline + 3);
        bool closed = false;
        for (std::size_t i = 0; !closed && !run.over() && Clock::now() < giveUp; i++) {
            ::send(fd, i < head.size() ? &head[i] : "x", 1, MSG_NOSIGNAL);
            closed = closedByServer(fd, std::chrono::seconds(1));
        }
        if (closed || !run.over())
            (closed ? counts.tricklesCut : counts.tricklesLeftOpen)++;
        close(fd);
    }
}

// ---- The run
// -------------------------------------------------------------------------------------

std::unique_ptr<ksv::server::CimServer> startServer(const Options& options,
                                                    ksv::server::ServerConfig& config) {
    config = ksv::server::defaultServerConfig();
    config.arrayModel = options.arrayModel;
    config.http.listenAddress = "127.0.0.1";
    config.http.port = 0;
    config.http.socketPath.clear();
    // Every client of the run comes from the loopback address. A client that hangs up holds its
    // next connection while the server is still closing the last one, and the hostile clients
    // hold up to 19 more: with less room, a connection over the limit was closed as it came, and
    // its request failed at random.
    config.http.maxConnectionsPerAddress = 2 * options.clients + 24;
    config.http.maxConnections = 2 * options.clients + 32;
    config.logLevel = 1;
    // Short enough for trickled requests to be cut off within a short run.
    config.http.requestDeadlineSeconds = 15;
    if (std::optional<std::string> error = ksv::server::configureArray(config))
        throw std::runtime_error(*error);
    auto server = std::make_unique<ksv::server::CimServer>(config);
    server->start();
    return server;
}

int parseOptions(int argc, char** argv, Options& options) {
    CLI::App app{"Load run of the CIM server over loopback"};
    app.add_option("--url", options.url, "a running server's CIM-XML URL; else one in-process");
    app.add_option("--server-pid", options.serverPid, "its process, whose memory is sampled");
    app.add_option("--array-model", options.arrayModel, "array model of the in-process server")
        ->capture_default_str();
    app.add_option("--clients", options.clients, "clients at once")->capture_default_str();
    app.add_option("--seconds", options.seconds, "length of the run")->capture_default_str();
    app.add_option("--max-requests", options.maxRequests, "stop after this many; 0: no limit");
    app.add_flag("--faults", options.faults, "array library failures in the middle third");
    app.add_flag("--hostile", options.hostile, "hang-ups, stalled readers, idle connections");
    app.add_option("--user", options.user, "a user the array admits")->capture_default_str();
    app.add_option("--password", options.password, "its password")->capture_default_str();
    app.add_option("--refused-user", options.refusedUser, "a user the array refuses")
        ->capture_default_str();
    app.add_option("--refused-password", options.refusedPassword, "its password")
        ->capture_default_str();
    app.add_flag("--until-server-stops", options.untilServerStops,
                 "end quietly when the server goes away (it is being shut down)");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    if (options.faults && !options.url.empty()) {
        std::fprintf(stderr, "--faults needs the in-process server\n");
        return 2;
    }
    return -1;
}

std::uint16_t portOf(const std::string& url) {
    const std::size_t colon = url.rfind(':');
    return static_cast<std::uint16_t>(std::stoi(url.substr(colon + 1)));
}

} // namespace

int main(int argc, char** argv) {
    Run run;
    if (int exitCode = parseOptions(argc, argv, run.options); exitCode >= 0)
        return exitCode;
    curl_global_init(CURL_GLOBAL_ALL);
    ksv::server::ServerConfig config;
    std::unique_ptr<ksv::server::CimServer> server;
    run.url = run.options.url;
    if (run.url.empty()) {
        server = startServer(run.options, config);
        run.url = "http://127.0.0.1:" + std::to_string(server->httpPort()) + "/cimom";
    }
    const std::vector<Request> mix = requestMix(run.url, run.options);
    std::printf("%u clients, %zu kinds of request, %u s against %s\n", run.options.clients,
                mix.size(), run.options.seconds, run.url.c_str());
    std::fflush(stdout);
    run.start = Clock::now();

    std::vector<std::thread> threads;
    std::vector<Tally> tallies(run.options.clients);
    for (unsigned i = 0; i < run.options.clients; i++)
        threads.emplace_back([&, i] { tallies[i] = runClient(run, mix, 1000 + i); });
    if (run.options.faults)
        threads.emplace_back([&] { injectFaults(run); });
    HostileCounts hostile;
    if (run.options.hostile) {
        const std::uint16_t port = portOf(run.url);
        const unsigned requestTimeout = server ? config.http.requestTimeoutSeconds : 10;
        const unsigned deadline = server ? config.http.requestDeadlineSeconds : 60;
        // The settings by value: the threads outlive this block.
        threads.emplace_back([&run, &hostile, port, requestTimeout] {
            holdIdleConnections(run, port, requestTimeout, hostile);
        });
        threads.emplace_back(
            [&run, &hostile, port, deadline] { trickleRequest(run, port, deadline, hostile); });
        for (int i = 0; i < 2; i++)
            threads.emplace_back(
                [&run, &hostile, &mix, port] { stallReading(run, port, mix.front(), hostile); });
    }
    MemorySamples memory;
    const double sampleEvery = std::max(1.0, run.options.seconds / 30.0);
    while (!run.over()) {
        memory.emplace_back(run.elapsed(), residentMegabytes(run.options.serverPid));
        for (double slept = 0; slept < sampleEvery && !run.over(); slept += 0.1)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    const double seconds = run.elapsed();
    for (std::thread& thread : threads)
        thread.join();
    if (!run.options.untilServerStops)
        memory.emplace_back(run.elapsed(), residentMegabytes(run.options.serverPid));

    Tally total;
    for (const Tally& tally : tallies)
        total.merge(tally);
    printReport(total, seconds, memory);
    bool passed = total.unexpectedCount() == 0 && memoryLevelsOff(memory);
    if (run.options.hostile) {
        std::printf("idle connections         %u closed by the server, %u left open\n",
                    hostile.idleClosed.load(), hostile.idleLeftOpen.load());
        std::printf("stalled readers          %u\n", hostile.stalledReaders.load());
        std::printf("trickled requests        %u cut off at the deadline, %u left open\n",
                    hostile.tricklesCut.load(), hostile.tricklesLeftOpen.load());
        passed = passed && hostile.idleLeftOpen == 0 && hostile.tricklesLeftOpen == 0;
    }
    if (server) {
        std::printf("semaphore                %s, %u posts it had not taken\n",
                    ksvsim::semaphoreHeld() ? "HELD" : "free", ksvsim::semaphoreMisuseCount());
        passed = passed && !ksvsim::semaphoreHeld() && ksvsim::semaphoreMisuseCount() == 0;
        server->stop();
    }
    std::printf("%s\n", passed ? "PASSED" : "FAILED");
    curl_global_cleanup();
    return passed ? 0 : 1;
}
