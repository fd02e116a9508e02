// Chunklet maps between volumes and disks, volume records and WWN texts.
#include "api_support.h"
#include "call_registry.h"
#include "identifiers.h"
#include "model_store.h"

#include "ksvapi.h"

#include <algorithm>
#include <cctype>
#include <cstring>

using namespace ksvsim::detail;

namespace {

// Each map set is one allocation: the records, then the entries they point
// to, so that releasing it is a single free(). The records are zeroed, and the
// entries only when 'zeroEntries' says that their filler leaves bytes unwritten:
// zeroing a large block makes the allocator hand out fresh pages, which the
// copy then faults in one by one.
template <typename Record, typename Entry>
void* allocateMapBlock(std::size_t records, std::size_t entries, Record*& first, Entry*& firstEntry,
                       bool zeroEntries) {
    static_assert(sizeof(Record) % alignof(Entry) == 0, "entries follow the records");
    const std::size_t recordBytes = records * sizeof(Record);
    const std::size_t size = recordBytes + entries * sizeof(Entry);
    void* block = size == 0 ? nullptr : std::malloc(size);
    if (block != nullptr) {
        std::memset(block, 0, zeroEntries ? size : recordBytes);
    }
    first = static_cast<Record*>(block);
    firstEntry = block == nullptr ? nullptr : reinterpret_cast<Entry*>(first + records);
    return block;
}

void fillVolumeRecord(const Volume& volume, api_MapVVtoCh_t& record, api_MapCh_t* entries) {
    record.wwnHigh = volume.wwnHigh;
    record.wwnLow = volume.wwnLow;
    record.volumeId = volume.id;
    record.firstRunLength = volume.runLengths[0];
    record.secondRunLength = volume.runLengths[1];
    record.thirdRunLength = volume.runLengths[2];
    record.chunkletCount = static_cast<uint32_t>(volume.chunklets.size());
    record.chunklets = volume.chunklets.empty() ? nullptr : entries;
    std::copy(volume.chunklets.begin(), volume.chunklets.end(), entries);
}

int copyVolumeMaps(const Model& model, const std::string& name, api_MapsVVtoCh_t& maps) {
    std::vector<const Volume*> selected;
    if (name.empty()) {
        for (const Volume& volume : model.volumes) {
            selected.push_back(&volume);
        }
    } else {
        const auto found = model.volumeByName.find(name);
        if (found == model.volumeByName.end()) {
            return API_E_NOT_FOUND;
        }
        selected.push_back(&model.volumes[found->second]);
    }
    std::size_t chunklets = 0;
    for (const Volume* volume : selected) {
        chunklets += volume->chunklets.size();
    }
    api_MapVVtoCh_t* records = nullptr;
    api_MapCh_t* entries = nullptr;
    // The entries are copied whole from the model.
    if (allocateMapBlock(selected.size(), chunklets, records, entries, false) == nullptr &&
        !selected.empty()) {
        return API_E_NO_MEMORY;
    }
    for (std::size_t i = 0; i < selected.size(); ++i) {
        fillVolumeRecord(*selected[i], records[i], entries);
        entries += selected[i]->chunklets.size();
    }
    maps.volumes = records;
    maps.count = static_cast<uint32_t>(selected.size());
    return API_OK;
}

void fillDiskRecord(const Model& model, std::size_t disk, api_MapPDtoVV_t& record,
                    api_MapPDVolume_t* entries) {
    const api_Disk_t& source = model.disks[disk];
    const auto& uses = model.diskUse[disk];
    copyText(record.deviceID, source.deviceID);
    record.diskId = source.id;
    record.volumeCount = static_cast<uint32_t>(uses.size());
    record.volumes = uses.empty() ? nullptr : entries;
    for (const DiskVolumeUse& use : uses) {
        const Volume& volume = model.volumes[use.volume];
        copyText(entries->wwn, volume.wwnText);
        copyText(entries->name, volume.name);
        entries->excluded = volume.excludes(source.id) ? 1 : 0;
        entries->volumeId = volume.id;
        entries->chunkletCount = use.chunklets;
        ++entries;
    }
}

int copyDiskMaps(const Model& model, uint32_t diskId, api_MapsPDtoVV_t& maps) {
    std::vector<std::size_t> selected;
    if (diskId == API_ALL_DISK_IDS) {
        for (std::size_t i = 0; i < model.disks.size(); ++i) {
            if (!model.disks[i].isAbsent) {
                selected.push_back(i);
            }
        }
    } else {
        const auto found = model.diskById.find(diskId);
        if (found == model.diskById.end()) {
            return API_E_NOT_FOUND;
        }
        selected.push_back(found->second);
    }
    std::size_t uses = 0;
    for (std::size_t disk : selected) {
        uses += model.diskUse[disk].size();
    }
    api_MapPDtoVV_t* records = nullptr;
    api_MapPDVolume_t* entries = nullptr;
    if (allocateMapBlock(selected.size(), uses, records, entries, true) == nullptr &&
        !selected.empty()) {
        return API_E_NO_MEMORY;
    }
    for (std::size_t i = 0; i < selected.size(); ++i) {
        fillDiskRecord(model, selected[i], records[i], entries);
        entries += model.diskUse[selected[i]].size();
    }
    maps.disks = records;
    maps.count = static_cast<uint32_t>(selected.size());
    return API_OK;
}

void fillVV(const Volume& volume, api_VV_t& vv) {
    vv.id = volume.id;
    vv.kind = volume.kind;
    copyText(vv.name, volume.name);
    copyText(vv.wwn, volume.wwnText);
    vv.wwnHigh = volume.wwnHigh;
    vv.wwnLow = volume.wwnLow;
}

const Volume* findVolume(const Model& model, std::string key) {
    const auto byName = model.volumeByName.find(key);
    if (byName != model.volumeByName.end()) {
        return &model.volumes[byName->second];
    }
    std::transform(key.begin(), key.end(), key.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const auto byWwn = model.volumeByWwn.find(key);
    return byWwn == model.volumeByWwn.end() ? nullptr : &model.volumes[byWwn->second];
}

int copyVVs(const Model& model, const std::string& key, api_VVList_t& list) {
    std::vector<const Volume*> selected;
    if (key.empty()) {
        for (const Volume& volume : model.volumes) {
            selected.push_back(&volume);
        }
    } else if (const Volume* volume = findVolume(model, key)) {
        selected.push_back(volume);
    } else {
        return API_E_NOT_FOUND;
    }
    if (selected.empty()) {
        return API_OK;
    }
    list.vvs = allocateZeroed<api_VV_t>(selected.size());
    if (list.vvs == nullptr) {
        return API_E_NO_MEMORY;
    }
    for (std::size_t i = 0; i < selected.size(); ++i) {
        fillVV(*selected[i], list.vvs[i]);
    }
    list.count = static_cast<uint32_t>(selected.size());
    return API_OK;
}

} // namespace

extern "C" {

int api_getMapsVVtoCh(const char* volumeName, api_MapsVVtoCh_t* maps) {
    if (maps != nullptr) {
        *maps = api_MapsVVtoCh_t{};
    }
    const std::string name(argumentText(volumeName));
    return tracedCall("api_getMapsVVtoCh", name, [&]() -> int {
        if (maps == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read(
            [&](const Model& model) { return copyVolumeMaps(model, name, *maps); });
    });
}

void api_freeMapsVVtoCh(api_MapsVVtoCh_t* maps) {
    recordCall("api_freeMapsVVtoCh");
    if (maps != nullptr) {
        std::free(maps->volumes);
        *maps = api_MapsVVtoCh_t{};
    }
}

int api_getMapsPDtoVV(uint32_t diskId, api_MapsPDtoVV_t* maps) {
    if (maps != nullptr) {
        *maps = api_MapsPDtoVV_t{};
    }
    return tracedCall("api_getMapsPDtoVV", std::to_string(diskId), [&]() -> int {
        if (maps == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read(
            [&](const Model& model) { return copyDiskMaps(model, diskId, *maps); });
    });
}

void api_freeMapsPDtoVV(api_MapsPDtoVV_t* maps) {
    recordCall("api_freeMapsPDtoVV");
    if (maps != nullptr) {
        std::free(maps->disks);
        *maps = api_MapsPDtoVV_t{};
    }
}

int api_extractFromSystemDiskID(const char* deviceID, uint64_t* wwn, int32_t* diskId) {
    return tracedCall("api_extractFromSystemDiskID", argumentText(deviceID), [&]() -> int {
        uint64_t parsedWwn = 0;
        int32_t parsedId = 0;
        if (deviceID == nullptr || wwn == nullptr || diskId == nullptr ||
            !parseDiskDeviceId(deviceID, parsedWwn, parsedId)) {
            return API_E_INVALID;
        }
        *wwn = parsedWwn;
        *diskId = parsedId;
        return API_OK;
    });
}

int api_wwnStringToInt(const char* text, uint64_t* high, uint64_t* low) {
    return tracedCall("api_wwnStringToInt", argumentText(text), [&]() -> int {
        if (text == nullptr || high == nullptr || low == nullptr ||
            !parseWwn128(text, *high, *low)) {
            return API_E_INVALID;
        }
        return API_OK;
    });
}

int api_wwnIntToString(uint64_t high, uint64_t low, char* text, size_t size) {
    return tracedCall("api_wwnIntToString", "", [&]() -> int {
        if (text == nullptr || size < API_WWN_TEXT_SIZE) {
            return API_E_INVALID;
        }
        const std::string formatted = formatWwn128(high, low);
        std::memcpy(text, formatted.c_str(), formatted.size() + 1);
        return API_OK;
    });
}

int api_getVVs(const char* volumeKey, api_VVList_t* list) {
    if (list != nullptr) {
        *list = api_VVList_t{};
    }
    const std::string key(argumentText(volumeKey));
    return tracedCall("api_getVVs", key, [&]() -> int {
        if (list == nullptr) {
            return API_E_INVALID;
        }
        return ModelStore::instance().read(
            [&](const Model& model) { return copyVVs(model, key, *list); });
    });
}

} // extern "C"
