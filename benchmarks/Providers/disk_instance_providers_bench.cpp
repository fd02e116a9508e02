// Figures for the four disk instance providers over a generated 1,920-disk array: instances and
// names built per second by enumerateInstances and enumerateInstanceNames, and what each result
// costs in heap allocations (counted by the replaced global operator new below).
#include "array_generator.h"

#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskStorageExtentProvider.h"
#include "ProviderHarness.h"

#include <ksvapi_sim.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

std::atomic<size_t> allocationCount{0};
std::atomic<size_t> allocatedBytes{0};

void* countedAllocation(size_t size) {
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    allocatedBytes.fetch_add(size, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

// The plain and array forms; the nothrow forms of the library call them.
void* operator new(size_t size) {
    return countedAllocation(size);
}
void* operator new[](size_t size) {
    return countedAllocation(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace Pegasus;

class CountingInstanceHandler : public InstanceResponseHandler {
public:
    void processing() override {}
    void complete() override {}
    void deliver(const CIMInstance&) override { delivered++; }
    void deliver(const Array<CIMInstance>& instances) override { delivered += instances.size(); }
    size_t delivered = 0;
};

class CountingPathHandler : public ObjectPathResponseHandler {
public:
    void processing() override {}
    void complete() override {}
    void deliver(const CIMObjectPath&) override { delivered++; }
    void deliver(const Array<CIMObjectPath>& paths) override { delivered += paths.size(); }
    size_t delivered = 0;
};

// The generated array in a temporary file, loaded behind an in-process server for the whole run.
class GeneratedArray {
public:
    GeneratedArray() : _harness(std::make_unique<ksv::test::ProviderHarness>("small.json")) {
        char path[] = "/tmp/ksv-disk-bench-XXXXXX";
        const int descriptor = mkstemp(path);
        if (descriptor < 0)
            throw std::runtime_error("cannot create the array file");
        close(descriptor);
        _file = path;
        std::ofstream(_file)
            << ksvsim::tools::generateArray(ksvsim::tools::GeneratorOptions()).dump();
        if (const auto error = ksvsim::loadModelFile(_file))
            throw std::runtime_error(error->describe());
        // Trace lines are not the subject here: keep neither them nor an endless call log.
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

template <typename Provider>
class Initialized {
public:
    Initialized() : _provider(new Provider) {
        CIMOMHandle cimom = generatedArray().harness().cimom();
        _provider->initialize(cimom);
    }
    ~Initialized() { _provider->terminate(); }
    Provider& operator*() { return *_provider; }

private:
    Provider* _provider;
};

// Runs the operation once per iteration and reports results per second and allocations per
// result. One run beforehand fills the class store, as a running server would have it.
void measure(benchmark::State& state, const std::function<size_t()>& operation) {
    operation();
    ksvsim::clearCalls();
    size_t results = 0;
    size_t allocations = 0;
    size_t bytes = 0;
    for (auto _ : state) {
        const size_t countBefore = allocationCount.load(std::memory_order_relaxed);
        const size_t bytesBefore = allocatedBytes.load(std::memory_order_relaxed);
        results += operation();
        allocations += allocationCount.load(std::memory_order_relaxed) - countBefore;
        bytes += allocatedBytes.load(std::memory_order_relaxed) - bytesBefore;
        ksvsim::clearCalls();
    }
    if (results == 0) {
        state.SkipWithError("the provider built nothing");
        return;
    }
    state.SetItemsProcessed(int64_t(results));
    state.counters["results"] = double(results) / double(state.iterations());
    state.counters["allocs/result"] = double(allocations) / double(results);
    state.counters["bytes/result"] = double(bytes) / double(results);
}

template <typename Provider>
void BM_Instances(benchmark::State& state, const char* className) {
    Initialized<Provider> provider;
    const OperationContext context = ksv::test::ProviderHarness::context();
    const CIMObjectPath classPath(String(), CIMNamespaceName("root/ksv"), CIMName(className));
    measure(state, [&] {
        CountingInstanceHandler handler;
        (*provider).enumerateInstances(context, classPath, false, false, CIMPropertyList(),
                                       handler);
        return handler.delivered;
    });
}

template <typename Provider>
void BM_Names(benchmark::State& state, const char* className) {
    Initialized<Provider> provider;
    const OperationContext context = ksv::test::ProviderHarness::context();
    const CIMObjectPath classPath(String(), CIMNamespaceName("root/ksv"), CIMName(className));
    measure(state, [&] {
        CountingPathHandler handler;
        (*provider).enumerateInstanceNames(context, classPath, handler);
        return handler.delivered;
    });
}

template <typename Provider>
void registerClass(const char* className) {
    benchmark::RegisterBenchmark(
        (std::string(className) + "/instances").c_str(),
        [className](benchmark::State& state) { BM_Instances<Provider>(state, className); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        (std::string(className) + "/names").c_str(),
        [className](benchmark::State& state) { BM_Names<Provider>(state, className); })
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    registerClass<KSV_DiskDriveProvider>("KSV_DiskDrive");
    registerClass<KSV_DiskDrivePackageProvider>("KSV_DiskDrivePackage");
    registerClass<KSV_DiskSoftwareIdentityProvider>("KSV_DiskSoftwareIdentity");
    registerClass<KSV_DiskStorageExtentProvider>("KSV_DiskStorageExtent");
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
