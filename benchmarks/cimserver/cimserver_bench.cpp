// Requests per second and latency of the CIM server through CIMClient over loopback.
//
//   cimserver_bench                  the test providers; enumerations of 100 to 10000 devices
//   KSV_BENCH_ARRAY_MODEL=array.json cimserver_bench
//                                    the shipped MOF and the array's provider modules over that
//                                    model (ksvsim-generate makes a 1,920-disk one), measuring
//                                    KSV_DiskDrive (KSV_BENCH_CLASS overrides)
//
// Each iteration is one request: the time per iteration is its latency, items_per_second the
// request rate, instances_per_second what enumerations carry. The enumerations' argument is the
// number of test devices, or 0 over an array model.
#include <benchmark/benchmark.h>

#include <ksvapi_sim.h>

#include "TestServer.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace Pegasus;
using ksv::test::kTestNamespace;

namespace {

const char* arrayModel() {
    return std::getenv("KSV_BENCH_ARRAY_MODEL");
}

CIMName measuredClass() {
    if (const char* name = std::getenv("KSV_BENCH_CLASS"))
        return CIMName(name);
    return arrayModel() != nullptr ? CIMName("KSV_DiskDrive") : CIMName("KSV_TestDevice");
}

ksv::server::ServerConfig benchmarkConfig() {
    ksv::server::ServerConfig config = ksv::test::testServerConfig(4);
    if (arrayModel() == nullptr)
        return config;
    ksv::server::ServerConfig shipped = ksv::server::defaultServerConfig();
    shipped.http.listenAddress = "127.0.0.1";
    shipped.http.port = 0;
    shipped.threads = 4;
    return shipped;
}

// One server for the whole run, started by main() before the benchmarks and stopped after them.
ksv::test::TestServer* running = nullptr;

ksv::test::TestServer& server() {
    return *running;
}

void populateTestDevices(CIMClient& client, Uint32 count) {
    if (arrayModel() != nullptr)
        return;
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Count", CIMValue(count)));
    in.append(CIMParamValue("NameLength", CIMValue(Uint32(0))));
    Array<CIMParamValue> out;
    client.invokeMethod(kTestNamespace, ksv::test::devicePath("dev-0"), "Populate", in, out);
}

void BM_GetInstance(benchmark::State& state) {
    auto client = server().client();
    if (state.thread_index() == 0)
        populateTestDevices(*client, 100);
    Array<CIMObjectPath> names = client->enumerateInstanceNames(kTestNamespace, measuredClass());
    if (names.size() == 0) {
        state.SkipWithError("no instance to get");
        return;
    }
    Uint32 next = 0;
    for (auto _ : state) {
        CIMInstance instance = client->getInstance(kTestNamespace, names[next]);
        benchmark::DoNotOptimize(instance);
        next = (next + 1) % names.size();
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_EnumerateInstances(benchmark::State& state) {
    auto client = server().client();
    populateTestDevices(*client, static_cast<Uint32>(state.range(0)));
    std::size_t instances = 0;
    for (auto _ : state) {
        Array<CIMInstance> found = client->enumerateInstances(kTestNamespace, measuredClass());
        instances += found.size();
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["instances_per_second"] =
        benchmark::Counter(static_cast<double>(instances), benchmark::Counter::kIsRate);
}

void BM_EnumerateInstanceNames(benchmark::State& state) {
    auto client = server().client();
    populateTestDevices(*client, static_cast<Uint32>(state.range(0)));
    std::size_t names = 0;
    for (auto _ : state)
        names += client->enumerateInstanceNames(kTestNamespace, measuredClass()).size();
    state.SetItemsProcessed(state.iterations());
    state.counters["instances_per_second"] =
        benchmark::Counter(static_cast<double>(names), benchmark::Counter::kIsRate);
}

// Over an array model the enumerations answer what the model holds; the test providers are
// populated to each size first.
void registerBenchmarks() {
    benchmark::RegisterBenchmark("BM_GetInstance", BM_GetInstance)
        ->Threads(1)
        ->Threads(4)
        ->UseRealTime();
    const std::vector<int64_t> sizes =
        arrayModel() != nullptr ? std::vector<int64_t>{0} : std::vector<int64_t>{100, 1920, 10000};
    auto* instances = benchmark::RegisterBenchmark("BM_EnumerateInstances", BM_EnumerateInstances);
    auto* names =
        benchmark::RegisterBenchmark("BM_EnumerateInstanceNames", BM_EnumerateInstanceNames);
    for (int64_t size : sizes) {
        instances->Arg(size);
        names->Arg(size);
    }
    instances->UseRealTime();
    names->UseRealTime();
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    ksv::test::TestServer testServer(benchmarkConfig());
    if (arrayModel() != nullptr) {
        if (auto error = ksvsim::loadModelFile(arrayModel())) {
            std::fprintf(stderr, "%s\n", error->describe().c_str());
            return 1;
        }
    }
    running = &testServer;
    registerBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
