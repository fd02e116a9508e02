// Figures for the simulated library over a large generated array: loading
// the model and the calls the providers make most.
#include "array_generator.h"

#include "ksvapi.h"
#include "ksvapi_sim.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

const std::string& largeModelText() {
    static const std::string text = [] {
        ksvsim::tools::GeneratorOptions options; // 1920 disks, 4096 volumes
        return ksvsim::tools::generateArray(options).dump();
    }();
    return text;
}

void loadLargeModel() {
    if (const auto error = ksvsim::loadModelText(largeModelText(), "generated")) {
        throw std::runtime_error(error->describe());
    }
}

void BM_LoadLargeModel(benchmark::State& state) {
    const std::string& text = largeModelText();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ksvsim::loadModelText(text, "generated"));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_LoadLargeModel)->Unit(benchmark::kMillisecond);

void BM_ReadAllDisks(benchmark::State& state) {
    loadLargeModel();
    for (auto _ : state) {
        api_DiskList_t list{};
        benchmark::DoNotOptimize(api_getSystemDisks(API_ALL_DISKS, &list));
        std::free(list.disks);
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_ReadAllDisks)->Unit(benchmark::kMicrosecond);

void BM_ReadOneDiskByDeviceId(benchmark::State& state) {
    loadLargeModel();
    api_DiskDeviceIDList_t ids{};
    getDiskDeviceIDs(1000, &ids);
    const std::string deviceId = ids.entries[0].deviceID;
    freeDiskDeviceIDs(&ids);
    for (auto _ : state) {
        int64_t selector = API_ALL_DISKS;
        api_deReferenceDiskDeviceID(deviceId.c_str(), &selector, nullptr);
        api_DiskList_t list{};
        benchmark::DoNotOptimize(api_getSystemDisks(selector, &list));
        std::free(list.disks);
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_ReadOneDiskByDeviceId)->Unit(benchmark::kMicrosecond);

void BM_AllVolumeMaps(benchmark::State& state) {
    loadLargeModel();
    for (auto _ : state) {
        api_MapsVVtoCh_t maps{};
        benchmark::DoNotOptimize(api_getMapsVVtoCh("", &maps));
        api_freeMapsVVtoCh(&maps);
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_AllVolumeMaps)->Unit(benchmark::kMicrosecond);

void BM_AllDiskMaps(benchmark::State& state) {
    loadLargeModel();
    for (auto _ : state) {
        api_MapsPDtoVV_t maps{};
        benchmark::DoNotOptimize(api_getMapsPDtoVV(API_ALL_DISK_IDS, &maps));
        api_freeMapsPDtoVV(&maps);
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_AllDiskMaps)->Unit(benchmark::kMicrosecond);

void BM_DeviceIdList(benchmark::State& state) {
    loadLargeModel();
    for (auto _ : state) {
        api_DiskDeviceIDList_t list{};
        benchmark::DoNotOptimize(getDiskDeviceIDs(API_ALL_DISK_IDS, &list));
        freeDiskDeviceIDs(&list);
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_DeviceIdList)->Unit(benchmark::kMicrosecond);

void BM_SemaphoreRoundTrip(benchmark::State& state) {
    for (auto _ : state) {
        cim_sem_wait();
        cim_sem_post();
    }
    ksvsim::clearCalls();
}
BENCHMARK(BM_SemaphoreRoundTrip)->ThreadRange(1, 4);

// One de-duplication walk over 1920 firmware versions, as a provider does.
void BM_StringTableWalk(benchmark::State& state) {
    hashtable_t* table = create_string_hashtable(2048, 0.75f);
    const char* versions[] = {"4.0", "4.02", "4.1", "2.1", "2.10", "3.1"};
    for (auto _ : state) {
        hashtable_lock(table);
        for (int disk = 0; disk < 1920; ++disk) {
            const char* version = versions[disk % 6];
            if (hashtable_contains_key(table, version) == 0) {
                hashtable_put(table, version, disk);
            }
        }
        hashtable_clear(table);
        hashtable_unlock(table);
    }
    delete_hashtable(table);
    ksvsim::clearCalls();
}
BENCHMARK(BM_StringTableWalk)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
