// Encoding and decoding rates of the CIM-XML codec for the largest answers the disk providers
// give: EnumerateInstances over an array of 1,920 disks, and of the pairs of an association
// between volumes and the disks under them.

#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace Pegasus;
using ksv::cimxml::IMethodResponseWriter;
using ksv::cimxml::Operation;

namespace {

const int diskCount = 1920;

// About the properties a KSV_DiskDrive instance carries.
CIMInstance disk(int index) {
    const String deviceId(("5000C500A1B2C3D4-id-" + std::to_string(index)).c_str());
    CIMInstance instance(CIMName("KSV_DiskDrive"));
    const auto add = [&](const char* name, const CIMValue& value) {
        instance.addProperty(CIMProperty(CIMName(name), value));
    };
    add("CreationClassName", CIMValue(String("KSV_DiskDrive")));
    add("DeviceID", CIMValue(deviceId));
    add("SystemCreationClassName", CIMValue(String("KSV_StorageSystem")));
    add("SystemName", CIMValue(String("ksv-array-1234567")));
    add("ElementName", CIMValue(String(("Disk " + std::to_string(index)).c_str())));
    add("Caption", CIMValue(String("Physical disk drive")));
    add("Description", CIMValue(String("A physical disk of the array & its <magazine>")));
    add("Name", CIMValue(deviceId));
    add("BlockSize", CIMValue(Uint64(512)));
    add("NumberOfBlocks", CIMValue(Uint64(3750748848ULL)));
    add("MaxMediaSize", CIMValue(Uint64(1920383410176ULL)));
    add("Temperature", CIMValue(Sint16(38)));
    add("Utilization", CIMValue(Real64(0.4375)));
    add("Healthy", CIMValue(true));
    add("InstallDate", CIMValue(CIMDateTime("20240131120000.000000+060")));
    Array<Uint16> status;
    status.append(2);
    status.append(32768);
    add("OperationalStatus", CIMValue(status));
    Array<String> descriptions;
    descriptions.append("OK");
    descriptions.append("Normal");
    add("StatusDescriptions", CIMValue(descriptions));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KSV_DiskDrive"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("DeviceID"), deviceId, CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("SystemCreationClassName"), String("KSV_StorageSystem"),
                              CIMKeyBinding::STRING));
    keys.append(
        CIMKeyBinding(CIMName("SystemName"), String("ksv-array-1234567"), CIMKeyBinding::STRING));
    instance.setPath(CIMObjectPath(String(), CIMNamespaceName(), CIMName("KSV_DiskDrive"), keys));
    return instance;
}

const std::vector<CIMInstance>& disks() {
    static const std::vector<CIMInstance> all = [] {
        std::vector<CIMInstance> built;
        for (int i = 0; i < diskCount; i++) {
            built.push_back(disk(i));
        }
        return built;
    }();
    return all;
}

std::string encodeAll() {
    std::string body;
    IMethodResponseWriter writer(body, "1", Operation::EnumerateInstances);
    for (const CIMInstance& instance : disks()) {
        writer.writeInstance(instance);
    }
    writer.finish();
    return body;
}

void EncodeEnumerateInstancesResponse(benchmark::State& state) {
    size_t bytes = 0;
    for (auto _ : state) {
        const std::string body = encodeAll();
        bytes = body.size();
        benchmark::DoNotOptimize(body.data());
    }
    state.SetItemsProcessed(state.iterations() * diskCount);
    state.SetBytesProcessed(state.iterations() * int64_t(bytes));
    state.counters["response_bytes"] = double(bytes);
}
BENCHMARK(EncodeEnumerateInstancesResponse)->Unit(benchmark::kMillisecond);

// What a server does when it sends each instance as its provider delivers it; the bytes sent.
size_t encodeInChunks(const std::vector<CIMInstance>& instances, std::string& chunk) {
    size_t sent = 0;
    IMethodResponseWriter writer(chunk, "1", Operation::EnumerateInstances);
    for (const CIMInstance& instance : instances) {
        writer.writeInstance(instance);
        if (chunk.size() >= 64 * 1024) {
            sent += chunk.size();
            chunk.clear();
        }
    }
    writer.finish();
    sent += chunk.size();
    chunk.clear();
    return sent;
}

void EncodeStreamingInChunks(benchmark::State& state) {
    std::string chunk;
    size_t sent = 0;
    for (auto _ : state)
        sent += encodeInChunks(disks(), chunk);
    benchmark::DoNotOptimize(sent);
    state.SetItemsProcessed(state.iterations() * diskCount);
}
BENCHMARK(EncodeStreamingInChunks)->Unit(benchmark::kMillisecond);

const int volumeCount = 400;
const int disksPerVolume = 24;

CIMObjectPath volumePath(int index) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KSV_StorageVolume"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("DeviceID"),
                              String(("600508B1001C-volume-" + std::to_string(index)).c_str()),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("SystemCreationClassName"), String("KSV_StorageSystem"),
                              CIMKeyBinding::STRING));
    keys.append(
        CIMKeyBinding(CIMName("SystemName"), String("ksv-array-1234567"), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName("root/ksv"), CIMName("KSV_StorageVolume"),
                         keys);
}

// Each volume lies on a stripe of disks, so that every path recurs in many pairs.
CIMInstance pair(int volume, int slot) {
    CIMObjectPath diskPath = disks()[(volume * 7 + slot) % diskCount].getPath();
    diskPath.setNameSpace(CIMNamespaceName("root/ksv"));
    const CIMObjectPath dependent = volumePath(volume);
    CIMInstance instance(CIMName("KSV_VolumeBasedOnDiskExtent"));
    instance.addProperty(CIMProperty(CIMName("Antecedent"), CIMValue(diskPath)));
    instance.addProperty(CIMProperty(CIMName("Dependent"), CIMValue(dependent)));
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding(CIMName("Antecedent"), diskPath.toString(), CIMKeyBinding::REFERENCE));
    keys.append(
        CIMKeyBinding(CIMName("Dependent"), dependent.toString(), CIMKeyBinding::REFERENCE));
    instance.setPath(
        CIMObjectPath(String(), CIMNamespaceName(), CIMName("KSV_VolumeBasedOnDiskExtent"), keys));
    return instance;
}

void EncodeAssociationPairs(benchmark::State& state) {
    std::vector<CIMInstance> pairs;
    for (int volume = 0; volume < volumeCount; volume++) {
        for (int slot = 0; slot < disksPerVolume; slot++)
            pairs.push_back(pair(volume, slot));
    }
    std::string chunk;
    size_t sent = 0;
    for (auto _ : state)
        sent += encodeInChunks(pairs, chunk);
    state.SetItemsProcessed(state.iterations() * int64_t(pairs.size()));
    state.SetBytesProcessed(int64_t(sent));
}
BENCHMARK(EncodeAssociationPairs)->Unit(benchmark::kMillisecond);

void DecodeEnumerateInstancesResponse(benchmark::State& state) {
    const std::string body = encodeAll();
    for (auto _ : state) {
        const ksv::cimxml::OperationResponse response =
            ksv::cimxml::decodeResponse(body, Operation::EnumerateInstances, "EnumerateInstances");
        benchmark::DoNotOptimize(response.instances.size());
    }
    state.SetItemsProcessed(state.iterations() * diskCount);
    state.SetBytesProcessed(state.iterations() * int64_t(body.size()));
}
BENCHMARK(DecodeEnumerateInstancesResponse)->Unit(benchmark::kMillisecond);

void DecodeGetInstanceRequest(benchmark::State& state) {
    ksv::cimxml::OperationRequest request =
        ksv::cimxml::OperationRequest::make(Operation::GetInstance, CIMNamespaceName("root/ksv"));
    request.objectName = disks().front().getPath();
    const std::string body = ksv::cimxml::encodeRequest(request);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ksv::cimxml::decodeRequest(body).objectName);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(DecodeGetInstanceRequest)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
