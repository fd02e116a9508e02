// Figures for the association providers that answer the most results, over a generated array of
// 1,920 disks and 4,096 volumes: associations per second from enumerateInstances and
// enumerateInstanceNames, the time until the first association reaches the handler, the heap a
// request holds at its peak (from the counting allocator below) and the process's peak resident
// size.
#include "array_generator.h"

#include "ProviderHarness.h"

#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi_sim.h>

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

extern "C" Pegasus::CIMProvider* PegasusCreateProvider(const Pegasus::String& providerName);

namespace {

// Heap bytes in use now, and the most in use since the last reset.
std::atomic<long long> liveBytes{0};
std::atomic<long long> peakBytes{0};

void noteAllocation(long long bytes) {
    const long long live = liveBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    long long peak = peakBytes.load(std::memory_order_relaxed);
    while (live > peak && !peakBytes.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
    }
}

void* countedAllocation(size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        throw std::bad_alloc();
    noteAllocation(static_cast<long long>(malloc_usable_size(memory)));
    return memory;
}

void countedRelease(void* memory) {
    if (memory == nullptr)
        return;
    liveBytes.fetch_sub(static_cast<long long>(malloc_usable_size(memory)),
                        std::memory_order_relaxed);
    std::free(memory);
}

} // namespace

// The plain and array forms; the library's nothrow and sized forms call them.
void* operator new(size_t size) {
    return countedAllocation(size);
}
void* operator new[](size_t size) {
    return countedAllocation(size);
}
void operator delete(void* memory) noexcept {
    countedRelease(memory);
}
void operator delete[](void* memory) noexcept {
    countedRelease(memory);
}
void operator delete(void* memory, size_t) noexcept {
    countedRelease(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    countedRelease(memory);
}

namespace {

using namespace Pegasus;
using Clock = std::chrono::steady_clock;

// Counts what it is given and notes when the first result arrived.
class Arrivals {
public:
    void arrived() {
        if (count++ == 0)
            first = Clock::now();
    }
    size_t count = 0;
    Clock::time_point first;
};

class InstanceArrivals : public InstanceResponseHandler, public Arrivals {
public:
    void processing() override {}
    void complete() override {}
    void deliver(const CIMInstance&) override { arrived(); }
    void deliver(const Array<CIMInstance>& instances) override {
        for (Uint32 i = 0; i < instances.size(); i++)
            arrived();
    }
};

class PathArrivals : public ObjectPathResponseHandler, public Arrivals {
public:
    void processing() override {}
    void complete() override {}
    void deliver(const CIMObjectPath&) override { arrived(); }
    void deliver(const Array<CIMObjectPath>& paths) override {
        for (Uint32 i = 0; i < paths.size(); i++)
            arrived();
    }
};

// The generated array, written to a temporary file at start and served behind an in-process
// server for the whole run.
class GeneratedArray {
public:
    GeneratedArray() : _harness(std::make_unique<ksv::test::ProviderHarness>("small.json")) {
        char path[] = "/tmp/ksv-association-bench-XXXXXX";
        const int descriptor = mkstemp(path);
        if (descriptor < 0)
            throw std::runtime_error("cannot create the array file");
        close(descriptor);
        _file = path;
        std::ofstream(_file)
            << ksvsim::tools::generateArray(ksvsim::tools::GeneratorOptions()).dump();
        if (const auto error = ksvsim::loadModelFile(_file))
            throw std::runtime_error(error->describe());
        // Neither trace lines nor the call log are measured here.
        ksvsim::setLogCapture(false);
    }
    ~GeneratedArray() {
        _harness.reset();
        std::remove(_file.c_str());
    }

    ksv::test::ProviderHarness& harness() { return *_harness; }

private:
    std::unique_ptr<ksv::test::ProviderHarness> _harness;
    std::string _file;
};

GeneratedArray& generatedArray() {
    static GeneratedArray array;
    return array;
}

class RunningProvider {
public:
    explicit RunningProvider(const char* name) : _provider(PegasusCreateProvider(name)) {
        CIMOMHandle cimom = generatedArray().harness().cimom();
        _provider->initialize(cimom);
    }
    ~RunningProvider() { _provider->terminate(); }
    CIMInstanceProvider& operator*() { return *dynamic_cast<CIMInstanceProvider*>(_provider); }

private:
    CIMProvider* _provider;
};

long long maxResidentKilobytes() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Runs one enumeration per iteration and reports associations per second, the time to the
// first association and the heap held at the request's peak. A first run fills the class
// store, as a running server would have it.
template <typename Handler, typename Enumerate>
void measure(benchmark::State& state, Enumerate enumerate) {
    {
        Handler warmUp;
        enumerate(warmUp);
    }
    size_t results = 0;
    double firstSeconds = 0;
    long long heldBytes = 0;
    for (auto _ : state) {
        Handler handler;
        const long long before = liveBytes.load(std::memory_order_relaxed);
        peakBytes.store(before, std::memory_order_relaxed);
        const Clock::time_point start = Clock::now();
        enumerate(handler);
        heldBytes = std::max(heldBytes, peakBytes.load(std::memory_order_relaxed) - before);
        results += handler.count;
        firstSeconds += std::chrono::duration<double>(handler.first - start).count();
        ksvsim::clearCalls();
    }
    if (results == 0) {
        state.SkipWithError("the provider delivered nothing");
        return;
    }
    state.SetItemsProcessed(static_cast<int64_t>(results));
    state.counters["pairs"] = double(results) / double(state.iterations());
    state.counters["pairs/s"] = benchmark::Counter(double(results), benchmark::Counter::kIsRate);
    state.counters["first_ms"] = 1000.0 * firstSeconds / double(state.iterations());
    state.counters["peak_heap_MB"] = double(heldBytes) / 1e6;
    state.counters["maxrss_MB"] = double(maxResidentKilobytes()) / 1e3;
}

void BM_Instances(benchmark::State& state, const char* provider, const char* className) {
    RunningProvider running(provider);
    const OperationContext context = ksv::test::ProviderHarness::context();
    const CIMObjectPath classPath(String(), CIMNamespaceName("root/ksv"), CIMName(className));
    measure<InstanceArrivals>(state, [&](InstanceArrivals& handler) {
        (*running).enumerateInstances(context, classPath, false, false, CIMPropertyList(), handler);
    });
}

void BM_Names(benchmark::State& state, const char* provider, const char* className) {
    RunningProvider running(provider);
    const OperationContext context = ksv::test::ProviderHarness::context();
    const CIMObjectPath classPath(String(), CIMNamespaceName("root/ksv"), CIMName(className));
    measure<PathArrivals>(state, [&](PathArrivals& handler) {
        (*running).enumerateInstanceNames(context, classPath, handler);
    });
}

void registerAssociation(const char* provider, const char* className) {
    benchmark::RegisterBenchmark(
        (std::string(className) + "/names").c_str(),
        [=](benchmark::State& state) { BM_Names(state, provider, className); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        (std::string(className) + "/instances").c_str(),
        [=](benchmark::State& state) { BM_Instances(state, provider, className); })
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    registerAssociation("KSV_VolumeBasedOnDiskExtentProvider", "KSV_VolumeBasedOnDiskExtent");
    registerAssociation("KSV_SystemDiskProvider", "KSV_SystemDisk");
    generatedArray();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
