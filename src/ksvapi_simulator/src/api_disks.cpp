// Disk records, DeviceID lists and the magazine locate LED.
#include "api_support.h"
#include "call_registry.h"
#include "identifiers.h"
#include "model_store.h"

#include "ksvapi.h"

using namespace ksvsim::detail;

namespace {

std::string selectorText(int64_t selector) {
    if (selector == API_ALL_DISKS) {
        return std::to_string(selector);
    }
    return formatWwn64(static_cast<uint64_t>(selector));
}

int copyDisks(const Model& model, int64_t selector, api_DiskList_t& list) {
    const api_Disk_t* first = model.disks.data();
    std::size_t count = model.disks.size();
    if (selector != API_ALL_DISKS) {
        const auto found = model.diskByWwn.find(static_cast<uint64_t>(selector));
        if (found == model.diskByWwn.end()) {
            return API_E_NOT_FOUND;
        }
        first += found->second;
        count = 1;
    }
    if (count == 0) {
        return API_OK;
    }
    list.disks = allocateCopy(first, count);
    if (list.disks == nullptr) {
        return API_E_NO_MEMORY;
    }
    list.count = static_cast<uint32_t>(count);
    return API_OK;
}

void fillDeviceIdEntry(const Model& model, std::size_t disk, api_DiskDeviceID_t& entry) {
    entry.diskId = model.disks[disk].id;
    copyText(entry.deviceID, model.disks[disk].deviceID);
    entry.status = model.extentStatus[disk];
}

int listDeviceIds(const Model& model, uint32_t diskId, api_DiskDeviceIDList_t& list) {
    std::vector<std::size_t> selected;
    if (diskId == API_ALL_DISK_IDS) {
        for (std::size_t i = 0; i < model.disks.size(); ++i) {
            if (!model.disks[i].isAbsent) {
                selected.push_back(i);
            }
        }
    } else {
        const auto found = model.diskById.find(diskId);
        if (found == model.diskById.end() || model.disks[found->second].isAbsent) {
            return API_E_NOT_FOUND;
        }
        selected.push_back(found->second);
    }
    if (selected.empty()) {
        return API_OK;
    }
    list.entries = allocateZeroed<api_DiskDeviceID_t>(selected.size());
    if (list.entries == nullptr) {
        return API_E_NO_MEMORY;
    }
    for (std::size_t i = 0; i < selected.size(); ++i) {
        fillDeviceIdEntry(model, selected[i], list.entries[i]);
    }
    list.count = static_cast<uint32_t>(selected.size());
    return API_OK;
}

int setLocateLed(Model& model, const std::string& cageName, uint16_t magPosition, bool lit) {
    const auto magazine = model.magazines.find({cageName, magPosition});
    if (magazine == model.magazines.end()) {
        return API_E_NOT_FOUND;
    }
    for (std::size_t disk : magazine->second) {
        uint8_t& flags = model.disks[disk].u.locate.flags;
        flags = lit ? (flags | API_DISK_LOCATE_LIT) : (flags & ~API_DISK_LOCATE_LIT);
    }
    return API_OK;
}

} // namespace

extern "C" {

int api_getSystemDisks(int64_t selector, api_DiskList_t* list) {
    if (list != nullptr) {
        *list = api_DiskList_t{};
    }
    return tracedCall("api_getSystemDisks", selectorText(selector), [&]() -> int {
        if (list == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read(
            [&](const Model& model) { return copyDisks(model, selector, *list); });
    });
}

int api_deReferenceDiskDeviceID(const char* deviceID, int64_t* selector, uint32_t* diskId) {
    return tracedCall("api_deReferenceDiskDeviceID", argumentText(deviceID), [&]() -> int {
        if (deviceID == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read([&](const Model& model) -> int {
            const auto found = model.diskByDeviceId.find(deviceID);
            if (found == model.diskByDeviceId.end()) {
                return API_E_NOT_FOUND;
            }
            const api_Disk_t& disk = model.disks[found->second];
            if (selector != nullptr) {
                *selector = static_cast<int64_t>(disk.wwn);
            }
            if (diskId != nullptr) {
                *diskId = disk.id;
            }
            return API_OK;
        });
    });
}

int getDiskDeviceIDs(uint32_t diskId, api_DiskDeviceIDList_t* list) {
    if (list != nullptr) {
        *list = api_DiskDeviceIDList_t{};
    }
    return tracedCall("getDiskDeviceIDs", std::to_string(diskId), [&]() -> int {
        if (list == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read(
            [&](const Model& model) { return listDeviceIds(model, diskId, *list); });
    });
}

void freeDiskDeviceIDs(api_DiskDeviceIDList_t* list) {
    recordCall("freeDiskDeviceIDs");
    if (list != nullptr) {
        std::free(list->entries);
        *list = api_DiskDeviceIDList_t{};
    }
}

int api_locateMagazine(const char* cageName, uint16_t magPosition, int value) {
    const std::string cage(argumentText(cageName));
    const std::string argument =
        cage + ":" + std::to_string(magPosition) + ":" + std::to_string(value);
    return tracedCall("api_locateMagazine", argument, [&]() -> int {
        if (cageName == nullptr || (value != API_LOCATE_ON && value != API_LOCATE_OFF)) {
            return API_E_INVALID;
        }
        return ModelStore::instance().update([&](Model& model) {
            return setLocateLed(model, cage, magPosition, value == API_LOCATE_ON);
        });
    });
}

} // extern "C"
