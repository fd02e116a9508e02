// The whole KSV_VolumeBasedOnDiskExtent enumeration of a large array, one-shot against the pull
// operations in pages of 1,000 and of 10,000, each against a fresh ksv-cimserver process:
// the time to the first results, the total time and the server's peak resident memory.
//
//   pull_bench                                    a generated 1,920-disk, 4,096-volume array
//   KSV_BENCH_ARRAY_MODEL=array.json pull_bench   that model
//
// Prints figures; the one-shot form, run last in the same run, is the baseline. The client's
// own peak memory is printed too: the one-shot client holds every instance at once.
#include <Pegasus/Client/CIMClient.h>

#include "ServerProcess.h"
#include "array_generator.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

using namespace Pegasus;
using ksv::test::ServerOptions;
using ksv::test::ServerProcess;
using ksv::test::TemporaryFile;
using Clock = std::chrono::steady_clock;

namespace {

const CIMNamespaceName kNamespace("root/ksv");
const CIMName kPairs("KSV_VolumeBasedOnDiskExtent");

long peakResidentKilobytes(const std::string& pid) {
    std::ifstream status("/proc/" + pid + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0)
            return std::stol(line.substr(6));
    }
    return 0;
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Figures {
    std::size_t instances = 0;
    double firstSeconds = 0;
    double totalSeconds = 0;
};

// pageSize 0: the one-shot EnumerateInstances.
Figures enumerate(CIMClient& client, Uint32 pageSize) {
    Figures figures;
    const Clock::time_point start = Clock::now();
    if (pageSize == 0) {
        figures.instances = client.enumerateInstances(kNamespace, kPairs).size();
        figures.firstSeconds = figures.totalSeconds = secondsSince(start);
        return figures;
    }
    CIMEnumerationContext context;
    Boolean ended = false;
    figures.instances = client
                            .openEnumerateInstances(context, ended, kNamespace, kPairs, true, false,
                                                    CIMPropertyList(), String::EMPTY, String::EMPTY,
                                                    Uint32Arg(), false, pageSize)
                            .size();
    figures.firstSeconds = secondsSince(start);
    while (!ended)
        figures.instances += client.pullInstancesWithPath(context, ended, pageSize).size();
    figures.totalSeconds = secondsSince(start);
    return figures;
}

void measure(const std::string& model, Uint32 pageSize) {
    ServerProcess server(ServerOptions{model, std::nullopt, 4, {}});
    std::unique_ptr<CIMClient> client = server.client("admin", "admin-pw");
    client->setTimeout(3600 * 1000);
    const Figures figures = enumerate(*client, pageSize);
    const long serverPeak = peakResidentKilobytes(std::to_string(server.pid()));
    const std::string form =
        pageSize == 0 ? std::string("one-shot") : "pages of " + std::to_string(pageSize);
    std::printf("%-16s %9zu instances  first %8.2f s  total %8.2f s  server peak %7.1f MB  "
                "client peak %7.1f MB\n",
                form.c_str(), figures.instances, figures.firstSeconds, figures.totalSeconds,
                serverPeak / 1024.0, peakResidentKilobytes("self") / 1024.0);
    std::fflush(stdout);
}

} // namespace

int main() {
    std::unique_ptr<TemporaryFile> generated;
    std::string model;
    if (const char* given = std::getenv("KSV_BENCH_ARRAY_MODEL")) {
        model = given;
    } else {
        generated = std::make_unique<TemporaryFile>(
            ksvsim::tools::generateArray(ksvsim::tools::GeneratorOptions()).dump());
        model = generated->path();
    }
    std::printf("KSV_VolumeBasedOnDiskExtent over %s\n", model.c_str());
    // Pulls first: the client's peak only grows, and the one-shot client's is the largest.
    for (Uint32 pageSize : {1000u, 10000u, 0u})
        measure(model, pageSize);
    return 0;
}
