#include "identifiers.h"
#include "json_reader.h"
#include "model.h"

#include <arpa/inet.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <unordered_map>

namespace ksvsim::detail {
namespace {

constexpr std::size_t kShortText = 31;    // char[32] fields
constexpr std::size_t kDeviceIdText = 64; // char[65] fields
constexpr uint64_t kAllDisksSelector = static_cast<uint64_t>(int64_t{API_ALL_DISKS});

struct Cage {
    std::string name;
    int type = 0;
    std::string deviceId;
    std::map<uint16_t, std::string> magazineDeviceIds;
};

// Remembers where each key was first seen, to name both places of a clash.
class UniqueKeys {
public:
    explicit UniqueKeys(std::string what) : what_(std::move(what)) {}

    void claim(const JsonNode& node, const std::string& key) {
        const auto [existing, inserted] = seen_.emplace(key, node.pointer());
        if (!inserted) {
            node.fail(what_ + " " + key + " is already used at " + existing->second);
        }
    }

private:
    std::string what_;
    std::unordered_map<std::string, std::string> seen_;
};

// The login name of the account this process runs as; empty when the system knows none.
std::string processAccountName() {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return found != nullptr ? found->pw_name : "";
}

std::string nonEmptyText(const JsonNode& node, std::size_t maxLength) {
    std::string value = node.text(maxLength);
    if (value.empty()) {
        node.fail("text must not be empty");
    }
    return value;
}

int32_t int32Member(JsonObject& object, const char* key, int32_t fallback) {
    return static_cast<int32_t>(object.integer(key, INT32_MIN, INT32_MAX, fallback));
}

uint32_t uint32Member(JsonObject& object, const char* key, uint32_t fallback) {
    return static_cast<uint32_t>(object.unsignedInteger(key, UINT32_MAX, fallback));
}

uint64_t readDiskWwn(const JsonNode& node) {
    uint64_t wwn = 0;
    if (!node.isString() || !parseWwn64(node.text(SIZE_MAX), wwn)) {
        node.fail("expected a WWN of 16 hexadecimal digits");
    }
    if (wwn == 0 || wwn == kAllDisksSelector) {
        node.fail("WWN " + node.text(SIZE_MAX) + " is reserved");
    }
    return wwn;
}

uint16_t readLpid(const JsonNode& node) {
    if (node.isNull()) {
        return API_LPID_NONE;
    }
    uint16_t lpid = 0;
    if (!node.isString() || !parseLpid(node.text(SIZE_MAX), lpid)) {
        node.fail("expected a port location \"node:slot:port\" (node 0-7, slot 0-15, port 0-7)");
    }
    return lpid;
}

template <typename Address>
Address readAddress(const JsonNode& node, int family, const char* what) {
    Address address{};
    if (!node.isString() || inet_pton(family, node.text(SIZE_MAX).c_str(), &address) != 1) {
        node.fail(std::string("expected an ") + what + " address");
    }
    return address;
}

uint64_t readErrorCount(JsonObject& object, const char* key) {
    const auto member = object.optional(key);
    if (!member) {
        return 0;
    }
    if (member->isString()) {
        if (member->text(SIZE_MAX) != "unknown") {
            member->fail("expected a count or \"unknown\"");
        }
        return API_ERRCOUNT_UNKNOWN;
    }
    return member->unsignedInteger(UINT64_MAX - 1);
}

api_ErrCounts_t readErrorCounts(const JsonNode& node) {
    JsonObject object(node);
    api_ErrCounts_t counts{};
    counts.corrErrors = readErrorCount(object, "corrected");
    counts.uncorrErrors = readErrorCount(object, "uncorrected");
    object.finish();
    return counts;
}

api_ChunkCounts_t readChunkCounts(const JsonNode& node) {
    JsonObject object(node);
    api_ChunkCounts_t counts{};
    counts.usedOKChunks = uint32Member(object, "usedOK", 0);
    counts.usedFailChunks = uint32Member(object, "usedFail", 0);
    counts.unusedFreeChunks = uint32Member(object, "unusedFree", 0);
    counts.unusedUninitChunks = uint32Member(object, "unusedUninit", 0);
    counts.unusedFailChunks = uint32Member(object, "unusedFail", 0);
    object.finish();
    return counts;
}

void readLoop(const JsonNode& node, api_Loop_t& loop) {
    JsonObject object(node);
    loop.loopState = int32Member(object, "state", 0);
    loop.loopALPA = static_cast<uint16_t>(object.unsignedInteger("alpa", UINT16_MAX, 0));
    const auto portWwn = object.optional("portWwn");
    loop.nodePortWWN = portWwn ? readDiskWwn(*portWwn) : 0;
    const auto lpid = object.optional("lpid");
    loop.lpid = lpid ? readLpid(*lpid) : API_LPID_NONE;
    loop.isPrimary = object.boolean("primary", false);
    object.finish();
}

void readPaths(const JsonNode& node, api_Disk_t& disk) {
    JsonObject object(node);
    const std::pair<const char*, api_Loop_t*> loops[] = {
        {"A", &disk.loopA}, {"B", &disk.loopB}, {"A1", &disk.loopA1}, {"B1", &disk.loopB1}};
    for (const auto& [name, loop] : loops) {
        if (const auto member = object.optional(name)) {
            readLoop(*member, *loop);
        }
    }
    object.finish();
}

void readManufacturer(const JsonNode& node, api_DiskMfg_t& mfg) {
    JsonObject object(node);
    copyText(mfg.vendor, object.text("vendor", kShortText, ""));
    copyText(mfg.model, object.text("model", kDeviceIdText, ""));
    copyText(mfg.serial, object.text("serial", kShortText, ""));
    copyText(mfg.saleable_serial, object.text("saleableSerial", kShortText, ""));
    copyText(mfg.saleable_product, object.text("saleableProduct", kShortText, ""));
    copyText(mfg.spare_part, object.text("sparePart", kShortText, ""));
    copyText(mfg.mktg_model, object.text("marketingModel", kShortText, ""));
    copyText(mfg.asmbly_rev, object.text("assemblyRev", kShortText, ""));
    copyText(mfg.checksum, object.text("checksum", kShortText, ""));
    object.finish();
}

void readFirmware(const JsonNode& node, api_Disk_t& disk) {
    JsonObject object(node);
    copyText(disk.fwVersion, object.text("version", kShortText, ""));
    disk.fwState.actual = uint32Member(object, "actual", 0);
    disk.fwState.overall = int32Member(object, "overall", 0);
    object.finish();
}

void readChunks(const JsonNode& node, api_Disk_t& disk) {
    JsonObject object(node);
    if (const auto normal = object.optional("normal")) {
        disk.normal = readChunkCounts(*normal);
    }
    if (const auto spare = object.optional("spare")) {
        disk.spare = readChunkCounts(*spare);
    }
    disk.freeChunks = uint32Member(object, "free", 0);
    object.finish();
}

void readErrors(const JsonNode& node, api_Disk_t& disk) {
    JsonObject object(node);
    if (const auto read = object.optional("read")) {
        disk.readErr = readErrorCounts(*read);
    }
    if (const auto write = object.optional("write")) {
        disk.writeErr = readErrorCounts(*write);
    }
    object.finish();
}

bool keepsLedState(int cageType) {
    return cageType == 1 || cageType == 2 || cageType == 3 || cageType == 5;
}

// The enclosure-services block sits four bytes in for cage types 3 to 5 and
// at the start for 6 to 8; cage types 1 and 2 have none.
api_DiskEsi_t* esiBlock(api_Disk_t& disk) {
    if (disk.cageType >= 3 && disk.cageType <= 5) {
        return &disk.u.esiAt4.esi;
    }
    if (disk.cageType >= 6) {
        return &disk.u.esiAt0;
    }
    return nullptr;
}

void readEnclosure(const JsonNode& node, api_Disk_t& disk) {
    JsonObject object(node);
    const std::string cageType = "cage type " + std::to_string(disk.cageType);
    if (const auto led = object.optional("ledState")) {
        if (!keepsLedState(disk.cageType)) {
            led->fail(cageType + " keeps no LED state");
        }
        disk.u.ledState = static_cast<uint32_t>(led->unsignedInteger(UINT32_MAX));
    }
    const auto present = object.optional("esiPresent");
    const auto state = object.optional("esiState");
    api_DiskEsi_t* esi = esiBlock(disk);
    for (const auto& member : {present, state}) {
        if (member && esi == nullptr) {
            member->fail(cageType + " has no enclosure services");
        }
    }
    if (present) {
        esi->present = present->boolean() ? 1 : 0;
    }
    if (state) {
        esi->state = static_cast<uint32_t>(state->unsignedInteger(UINT32_MAX));
    }
    if (object.boolean("locateLit", false)) {
        disk.u.locate.flags |= API_DISK_LOCATE_LIT;
    }
    object.finish();
}

// Where a chunklet was first used, kept small since large models hold
// hundreds of thousands of them.
struct ChunkletPlace {
    std::size_t volume;
    std::size_t run;
    std::size_t index;

    std::string pointer() const {
        return "/volumes/" + std::to_string(volume) + "/runs/" + std::to_string(run) + "/" +
               std::to_string(index);
    }
};

class ModelReader {
public:
    explicit ModelReader(const std::string& source) : source_(source) { model_.source = source; }

    Model read(const nlohmann::json& document) {
        JsonObject top(JsonNode(document, "", source_));
        top.text("description", SIZE_MAX, "");
        readSystem(top.required("system"));
        if (const auto users = top.optional("users")) {
            readUsers(*users);
        }
        if (const auto accounts = top.optional("trustedAccounts")) {
            for (const JsonNode& account : accounts->elements()) {
                model_.trustedAccounts.push_back(nonEmptyText(account, 255));
            }
        }
        if (const auto ports = top.optional("ports")) {
            readPorts(*ports);
        }
        readCages(top.required("cages"));
        readDisks(top.required("disks"));
        if (const auto volumes = top.optional("volumes")) {
            readVolumes(*volumes);
        }
        top.finish();
        deriveDiskUse();
        return std::move(model_);
    }

private:
    void readSystem(const JsonNode& node) {
        JsonObject object(node);
        SystemIdentity& system = model_.system;
        system.name = nonEmptyText(object.required("name"), 63);
        system.id = static_cast<uint32_t>(object.required("id").unsignedInteger(UINT32_MAX));
        system.type = int32Member(object, "type", 0);
        system.hostName = nonEmptyText(object.required("hostName"), 255);
        system.ipv4 = readAddress<in_addr>(object.required("ipv4"), AF_INET, "IPv4");
        if (const auto ipv6 = object.optional("ipv6")) {
            system.hasIpv6 = true;
            system.ipv6 = readAddress<in6_addr>(*ipv6, AF_INET6, "IPv6");
        }
        system.quadPort = object.boolean("quadPort", false);
        system.nodes = static_cast<int>(object.integer("nodes", 1, 8, 2));
        object.finish();
    }

    void readUsers(const JsonNode& node) {
        UniqueKeys names("user");
        for (const JsonNode& element : node.elements()) {
            JsonObject object(element);
            User user;
            const JsonNode name = object.required("name");
            user.name = nonEmptyText(name, 63);
            names.claim(name, user.name);
            user.password = object.required("password").text(255);
            user.cimAccess = object.boolean("cimAccess", true);
            if (const auto operations = object.optional("operations")) {
                for (const JsonNode& operation : operations->elements()) {
                    user.operations.push_back(nonEmptyText(operation, 255));
                }
            }
            object.finish();
            model_.users.push_back(std::move(user));
        }
    }

    void readPorts(const JsonNode& node) {
        UniqueKeys ports("port");
        for (const JsonNode& element : node.elements()) {
            JsonObject object(element);
            Port port;
            const JsonNode type = object.required("type");
            const std::string typeName = type.text(SIZE_MAX);
            if (typeName == "fc") {
                const JsonNode wwn = object.required("wwn");
                port.wwn = readDiskWwn(wwn);
                ports.claim(wwn, formatWwn64(port.wwn));
            } else if (typeName == "iscsi") {
                const JsonNode name = object.required("name");
                port.isIscsi = true;
                port.iscsiName = nonEmptyText(name, 223);
                ports.claim(name, port.iscsiName);
            } else {
                type.fail("expected \"fc\" or \"iscsi\"");
            }
            port.lpid = readLpid(object.required("lpid"));
            object.finish();
            model_.ports.push_back(std::move(port));
        }
    }

    void readCages(const JsonNode& node) {
        UniqueKeys names("cage name");
        for (const JsonNode& element : node.elements()) {
            JsonObject object(element);
            Cage cage;
            const JsonNode name = object.required("name");
            cage.name = nonEmptyText(name, kShortText);
            names.claim(name, cage.name);
            cage.type = static_cast<int>(object.required("type").integer(1, 8));
            const auto deviceId = object.optional("deviceId");
            cage.deviceId = deviceId ? nonEmptyText(*deviceId, kDeviceIdText) : cage.name;
            deviceIds_.claim(deviceId ? *deviceId : name, cage.deviceId);
            readMagazines(object.required("magazines"), cage);
            object.finish();
            cages_.emplace(cage.name, std::move(cage));
        }
    }

    void readMagazines(const JsonNode& node, Cage& cage) {
        for (const JsonNode& element : node.elements()) {
            JsonObject object(element);
            const JsonNode positionNode = object.required("position");
            const auto position = static_cast<uint16_t>(positionNode.unsignedInteger(UINT16_MAX));
            const auto deviceId = object.optional("deviceId");
            std::string text = deviceId ? nonEmptyText(*deviceId, kDeviceIdText)
                                        : cage.deviceId + ":" + std::to_string(position);
            if (text.size() > kDeviceIdText) {
                positionNode.fail("magazine DeviceID " + text + " is longer than 64 characters");
            }
            if (cage.magazineDeviceIds.count(position) != 0) {
                positionNode.fail("magazine position " + std::to_string(position) +
                                  " appears twice in cage " + cage.name);
            }
            deviceIds_.claim(deviceId ? *deviceId : positionNode, text);
            cage.magazineDeviceIds.emplace(position, std::move(text));
            model_.magazines[{cage.name, position}];
            object.finish();
        }
    }

    void readDisks(const JsonNode& node) {
        UniqueKeys diskDeviceIds("DeviceID");
        UniqueKeys ids("disk id");
        UniqueKeys wwns("WWN");
        UniqueKeys slots("slot");
        const std::vector<JsonNode> elements = node.elements();
        model_.disks.reserve(elements.size());
        for (const JsonNode& element : elements) {
            JsonObject object(element);
            api_Disk_t disk;
            std::memset(&disk, 0, sizeof disk);
            const JsonNode id = object.required("id");
            disk.id = static_cast<uint32_t>(id.unsignedInteger(INT32_MAX));
            const JsonNode wwn = object.required("wwn");
            disk.wwn = readDiskWwn(wwn);
            const std::string deviceId =
                formatDiskDeviceId(disk.wwn, static_cast<int32_t>(disk.id));
            diskDeviceIds.claim(element, deviceId);
            ids.claim(id, std::to_string(disk.id));
            wwns.claim(wwn, formatWwn64(disk.wwn));
            copyText(disk.deviceID, deviceId);
            placeDisk(object, disk, slots);
            readDiskDetails(object, disk);
            const int32_t status = int32Member(object, "extentStatus", disk.healthState);
            object.finish();
            addDisk(disk, status);
        }
    }

    void placeDisk(JsonObject& object, api_Disk_t& disk, UniqueKeys& slots) {
        const JsonNode cageNode = object.required("cage");
        const auto cage = cages_.find(cageNode.text(SIZE_MAX));
        if (cage == cages_.end()) {
            cageNode.fail("unknown cage \"" + cageNode.text(SIZE_MAX) + "\"");
        }
        const JsonNode magazineNode = object.required("magazine");
        disk.magPosition = static_cast<uint16_t>(magazineNode.unsignedInteger(UINT16_MAX));
        const auto magazine = cage->second.magazineDeviceIds.find(disk.magPosition);
        if (magazine == cage->second.magazineDeviceIds.end()) {
            magazineNode.fail("cage " + cage->first + " has no magazine " +
                              std::to_string(disk.magPosition));
        }
        const JsonNode position = object.required("position");
        disk.position = static_cast<uint16_t>(position.unsignedInteger(UINT16_MAX));
        slots.claim(position, cage->first + ":" + std::to_string(disk.magPosition) + ":" +
                                  std::to_string(disk.position));
        disk.cageType = cage->second.type;
        copyText(disk.cageElementName, cage->first);
        copyText(disk.cageDeviceID, cage->second.deviceId);
        copyText(disk.parentDeviceID, magazine->second);
        copyText(disk.elemName, object.text("elementName", kShortText,
                                            cage->first + ":" + std::to_string(disk.magPosition) +
                                                ":" + std::to_string(disk.position)));
    }

    static void readDiskDetails(JsonObject& object, api_Disk_t& disk) {
        disk.isAbsent = object.boolean("absent", false);
        readDiskFigures(object, disk);
        readDiskStates(object, disk);
        if (const auto paths = object.optional("paths")) {
            readPaths(*paths, disk);
        }
        if (const auto manufacturer = object.optional("manufacturer")) {
            readManufacturer(*manufacturer, disk.mfg);
        }
        if (const auto firmware = object.optional("firmware")) {
            readFirmware(*firmware, disk);
        }
        if (const auto chunks = object.optional("chunks")) {
            readChunks(*chunks, disk);
        }
        if (const auto errors = object.optional("errors")) {
            readErrors(*errors, disk);
        }
        if (const auto enclosure = object.optional("enclosure")) {
            readEnclosure(*enclosure, disk);
        }
    }

    static void readDiskFigures(JsonObject& object, api_Disk_t& disk) {
        disk.type_ = int32Member(object, "type", 1);
        disk.cageSide = uint32Member(object, "cageSide", 0);
        disk.temp = static_cast<uint16_t>(object.unsignedInteger("temperature", UINT16_MAX, 30));
        disk.blockSize = object.unsignedInteger("blockSize", UINT64_MAX, 512);
        disk.numBlocks = object.unsignedInteger("numBlocks", UINT64_MAX, 0);
        disk.consumBlocks = object.unsignedInteger("consumedBlocks", UINT64_MAX, 0);
        disk.chunkSize = object.unsignedInteger("chunkSize", UINT64_MAX, uint64_t{1} << 30);
        disk.isLDAllocateable = object.boolean("allocatable", true);
        disk.speed = uint32Member(object, "speed", 0);
        disk.ad_capacity = uint32Member(object, "capacity", 0);
        disk.mediaType = uint32Member(object, "mediaType", 0);
        disk.wearlevelRemain = uint32Member(object, "wearLevelRemain", 0);
        disk.connectorType = int32Member(object, "connectorType", 1);
        disk.encryption = int32Member(object, "encryption", 0);
    }

    static void readDiskStates(JsonObject& object, api_Disk_t& disk) {
        disk.opStatus = int32Member(object, "opStatus", 1);
        disk.cimOpStatus = int32Member(object, "cimOpStatus", 2);
        disk.healthState = int32Member(object, "healthState", 5);
    }

    void addDisk(const api_Disk_t& disk, int32_t extentStatus) {
        const std::size_t index = model_.disks.size();
        model_.disks.push_back(disk);
        model_.extentStatus.push_back(extentStatus);
        model_.diskByWwn.emplace(disk.wwn, index);
        model_.diskById.emplace(disk.id, index);
        model_.diskByDeviceId.emplace(disk.deviceID, index);
        model_.magazines[{disk.cageElementName, disk.magPosition}].push_back(index);
    }

    void readVolumes(const JsonNode& node) {
        UniqueKeys ids("volume id");
        UniqueKeys names("volume name");
        UniqueKeys wwns("volume WWN");
        const std::vector<JsonNode> elements = node.elements();
        model_.volumes.reserve(elements.size());
        for (const JsonNode& element : elements) {
            JsonObject object(element);
            Volume volume;
            const JsonNode id = object.required("id");
            volume.id = static_cast<uint32_t>(id.unsignedInteger(UINT32_MAX));
            ids.claim(id, std::to_string(volume.id));
            const JsonNode name = object.required("name");
            volume.name = nonEmptyText(name, kShortText);
            names.claim(name, volume.name);
            readVolumeWwn(object.required("wwn"), volume);
            wwns.claim(element, volume.wwnText);
            volume.kind = static_cast<int>(object.integer("kind", 0, 4, API_VV_BASE));
            readRuns(object.required("runs"), volume);
            if (const auto excluded = object.optional("excludedDisks")) {
                readExcludedDisks(*excluded, volume);
            }
            object.finish();
            model_.volumeByName.emplace(volume.name, model_.volumes.size());
            model_.volumeByWwn.emplace(volume.wwnText, model_.volumes.size());
            model_.volumes.push_back(std::move(volume));
        }
    }

    static void readVolumeWwn(const JsonNode& node, Volume& volume) {
        if (!node.isString() || !parseWwn128(node.text(SIZE_MAX), volume.wwnHigh, volume.wwnLow)) {
            node.fail("expected a volume WWN of 32 hexadecimal digits");
        }
        volume.wwnText = formatWwn128(volume.wwnHigh, volume.wwnLow);
    }

    void readRuns(const JsonNode& node, Volume& volume) {
        const std::vector<JsonNode> runs = node.elements();
        if (runs.size() != 3) {
            node.fail("expected three runs of chunklets, found " + std::to_string(runs.size()));
        }
        for (std::size_t run = 0; run < runs.size(); ++run) {
            const nlohmann::json& entries = runs[run].value();
            if (!entries.is_array()) {
                runs[run].fail(std::string("expected an array, found ") + entries.type_name());
            }
            volume.runLengths[run] = static_cast<uint32_t>(entries.size());
            for (std::size_t i = 0; i < entries.size(); ++i) {
                volume.chunklets.push_back(readChunklet(runs[run], run, i));
            }
        }
    }

    // Entries are read straight from the document; a node (and its pointer)
    // is made only to report an error, which keeps large models fast.
    api_MapCh_t readChunklet(const JsonNode& run, std::size_t runIndex, std::size_t index) {
        const nlohmann::json& entry = run.value()[index];
        if (!entry.is_array() || entry.size() != 2 || !entry[0].is_number_unsigned() ||
            !entry[1].is_number_unsigned()) {
            run.element(index).fail("expected a pair [disk id, chunklet number]");
        }
        const auto disk = model_.diskById.find(
            static_cast<uint32_t>(std::min<uint64_t>(entry[0].get<uint64_t>(), UINT32_MAX)));
        if (disk == model_.diskById.end()) {
            run.element(index).fail("chunklet on unknown disk " + entry[0].dump());
        }
        const api_Disk_t& record = model_.disks[disk->second];
        if (record.isAbsent) {
            run.element(index).fail("chunklet on disk " + entry[0].dump() + ", which is absent");
        }
        if (entry[1].get<uint64_t>() > UINT16_MAX) {
            run.element(index).fail("chunklet number " + entry[1].dump() +
                                    " is out of range: expected 0 to 65535");
        }
        const auto chunklet = static_cast<uint16_t>(entry[1].get<uint64_t>());
        const uint64_t key = uint64_t{record.id} << 16 | chunklet;
        const ChunkletPlace place{model_.volumes.size(), runIndex, index};
        const auto [owner, inserted] = chunkletOwners_.emplace(key, place);
        if (!inserted) {
            run.element(index).fail("chunklet " + std::to_string(chunklet) + " of disk " +
                                    std::to_string(record.id) + " is already used at " +
                                    owner->second.pointer());
        }
        return api_MapCh_t{record.wwn, static_cast<int32_t>(record.id), chunklet, 0};
    }

    void readExcludedDisks(const JsonNode& node, Volume& volume) {
        for (const JsonNode& element : node.elements()) {
            const auto id = static_cast<uint32_t>(element.unsignedInteger(INT32_MAX));
            if (model_.diskById.count(id) == 0) {
                element.fail("unknown disk " + std::to_string(id));
            }
            volume.excludedDiskIds.push_back(id);
        }
        std::sort(volume.excludedDiskIds.begin(), volume.excludedDiskIds.end());
    }

    // The disk-to-volume maps follow from the user-data (third) runs.
    void deriveDiskUse() {
        model_.diskUse.assign(model_.disks.size(), {});
        for (std::size_t v = 0; v < model_.volumes.size(); ++v) {
            const Volume& volume = model_.volumes[v];
            const auto thirdRun =
                volume.chunklets.begin() + volume.runLengths[0] + volume.runLengths[1];
            for (auto entry = thirdRun; entry != volume.chunklets.end(); ++entry) {
                auto& uses =
                    model_.diskUse[model_.diskById.at(static_cast<uint32_t>(entry->diskId))];
                if (uses.empty() || uses.back().volume != v) {
                    uses.push_back({v, 0});
                }
                ++uses.back().chunklets;
            }
        }
    }

    const std::string& source_;
    Model model_;
    std::map<std::string, Cage> cages_;
    UniqueKeys deviceIds_{"cage or magazine DeviceID"};
    std::unordered_map<uint64_t, ChunkletPlace> chunkletOwners_;
};

} // namespace

bool Volume::excludes(uint32_t diskId) const {
    return std::binary_search(excludedDiskIds.begin(), excludedDiskIds.end(), diskId);
}

const User* Model::findUser(const std::string& name) const {
    const auto found = std::find_if(users.begin(), users.end(),
                                    [&name](const User& user) { return user.name == name; });
    return found == users.end() ? nullptr : &*found;
}

bool Model::trustsAccount(const std::string& name) const {
    for (const std::string& account : trustedAccounts) {
        if (account == name || (account == kServerAccount && name == processAccountName())) {
            return true;
        }
    }
    return false;
}

Model parseModel(const std::string& text, const std::string& source) {
    const nlohmann::json document = parseJsonText(text, source);
    return ModelReader(source).read(document);
}

} // namespace ksvsim::detail
