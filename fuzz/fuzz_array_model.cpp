// Array models (JSON) through the simulator's loader; an accepted model is then read through the
// library calls the providers make first.
#include <ksvapi.h>
#include <ksvapi_sim.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void readDisks() {
    api_DiskList_t list{};
    if (api_getSystemDisks(API_ALL_DISKS, &list) == API_OK)
        std::free(list.disks);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (ksvsim::loadModelText(std::string(reinterpret_cast<const char*>(data), size), "fuzz"))
        return 0;
    api_SystemInfo_t info{};
    api_getSystemInfo(&info);
    readDisks();
    return 0;
}
