#include "array_generator.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace ksvsim::tools {
namespace {

using nlohmann::json;

// Modulo instead of std::uniform_int_distribution: the latter differs
// between standard libraries, and the same seed must give the same array.
class Random {
public:
    explicit Random(uint64_t seed) : engine_(seed) {}
    uint64_t below(uint64_t bound) { return engine_() % bound; }
    unsigned percent() { return static_cast<unsigned>(below(100)); }

private:
    std::mt19937_64 engine_;
};

struct DriveKind {
    int type;
    unsigned speedKrpm;
    unsigned capacity;
    uint64_t blocks;
    unsigned chunklets;
    int connector;
    unsigned mediaType;
    const char* vendor;
    const char* model;
    std::array<const char*, 2> firmware;
};

const DriveKind kFast{1, 15, 450, 879097968, 419, 1, 1, "SEAGATE", "ST3450857FC", {"4.0", "4.02"}};
const DriveKind kMedium{2, 10, 600,       1172123568,        558,
                        1, 1,  "HITACHI", "HUS156060VLF400", {"4.02", "4.1"}};
const DriveKind kSolidState{4, 0, 400,    781422768,         372,
                            3, 2, "STEC", "Z16IZF2E-400UCU", {"3.1", "3.12"}};
const DriveKind kNearline{5, 7, 2000,      3907029168,     1862,
                          2, 1, "SEAGATE", "ST2000NM0001", {"2.1", "2.10"}};

// Even cages hold rotating disks, four to a magazine; odd cages hold one
// disk per magazine, solid-state in the first four.
struct CageLayout {
    int type;
    unsigned magazines;
    unsigned disksPerMagazine;
};
const CageLayout kRotatingCage{2, 10, 4};
const CageLayout kMixedCage{7, 24, 1};

enum Tier { kRotatingTier, kNearlineTier, kSolidStateTier, kTierCount };

struct Disk {
    unsigned id = 0;
    std::string cage;
    unsigned cageIndex = 0;
    int cageType = 0;
    unsigned magazine = 0;
    unsigned position = 0;
    const DriveKind* kind = nullptr;
    bool absent = false;
    unsigned usedChunklets = 0;
};

std::string hex16(uint64_t value) {
    char text[17];
    std::snprintf(text, sizeof text, "%016" PRIX64, value);
    return text;
}

std::string lpidText(unsigned node, unsigned slot, unsigned port) {
    return std::to_string(node) + ":" + std::to_string(slot) + ":" + std::to_string(port);
}

uint64_t portWwn(unsigned node, unsigned port) {
    return 0x2000000200AC0000ULL | uint64_t{node} << 8 | port;
}

class Generator {
public:
    explicit Generator(const GeneratorOptions& options)
        : options_(options), random_(options.seed),
          nodes_(options.disks > 960 || options.quadPort ? 4u : 2u),
          systemId_(1300000 + static_cast<uint32_t>(options.seed % 100000)) {
        if (options.disks == 0) {
            throw std::invalid_argument("an array needs at least one disk");
        }
    }

    json build() {
        json document;
        document["description"] = "Generated array: " + std::to_string(options_.disks) +
                                  " disks, " + std::to_string(options_.volumes) +
                                  " volumes, seed " + std::to_string(options_.seed) + ".";
        document["system"] = system();
        document["users"] = users();
        document["trustedAccounts"] = json::array({"@server"});
        document["ports"] = ports();
        document["cages"] = placeDisks();
        document["volumes"] = volumes();
        document["disks"] = disks();
        return document;
    }

private:
    json system() const {
        return {{"name", "KSV-GEN-" + std::to_string(options_.seed)},
                {"id", systemId_},
                {"type", 8},
                {"hostName", "ksv-gen.example.net"},
                {"ipv4", "192.0.2.20"},
                {"ipv6", "2001:db8::20"},
                {"quadPort", options_.quadPort},
                {"nodes", nodes_}};
    }

    static json users() {
        return json::array(
            {{{"name", "admin"}, {"password", "admin-pw"}, {"operations", {"*"}}},
             {{"name", "monitor"}, {"password", "monitor-pw"}, {"operations", json::array()}},
             {{"name", "guest"}, {"password", "guest-pw"}, {"cimAccess", false}}});
    }

    json ports() const {
        json list = json::array();
        for (unsigned node = 0; node < nodes_; ++node) {
            for (unsigned port = 1; port <= 2; ++port) {
                list.push_back({{"type", "fc"},
                                {"wwn", hex16(portWwn(node, port))},
                                {"lpid", lpidText(node, 2, port)}});
            }
            list.push_back(
                {{"type", "iscsi"},
                 {"name", "iqn.2000-05.net.example:ksv-gen." + std::to_string(node) + ".3.1"},
                 {"lpid", lpidText(node, 3, 1)}});
        }
        return list;
    }

    json placeDisks() {
        json cages = json::array();
        for (unsigned cageIndex = 0; disks_.size() < options_.disks; ++cageIndex) {
            const CageLayout& layout = cageIndex % 2 == 0 ? kRotatingCage : kMixedCage;
            const std::string name = "cage" + std::to_string(cageIndex);
            json magazines = json::array();
            for (unsigned magazine = 0; magazine < layout.magazines; ++magazine) {
                magazines.push_back({{"position", magazine}});
                for (unsigned position = 0; position < layout.disksPerMagazine; ++position) {
                    addDisk(name, cageIndex, layout, magazine, position);
                }
            }
            cages.push_back({{"name", name}, {"type", layout.type}, {"magazines", magazines}});
        }
        return cages;
    }

    void addDisk(const std::string& cage, unsigned cageIndex, const CageLayout& layout,
                 unsigned magazine, unsigned position) {
        if (disks_.size() == options_.disks) {
            return;
        }
        Disk disk;
        disk.id = static_cast<unsigned>(disks_.size());
        disk.cage = cage;
        disk.cageIndex = cageIndex;
        disk.cageType = layout.type;
        disk.magazine = magazine;
        disk.position = position;
        if (layout.type == kRotatingCage.type) {
            disk.kind = random_.percent() < 60 ? &kFast : &kMedium;
        } else {
            disk.kind = magazine < 4 ? &kSolidState : &kNearline;
        }
        disk.absent = disk.id % 640 == 639;
        if (!disk.absent) {
            tiers_[tierOf(*disk.kind)].push_back(disk.id);
        }
        disks_.push_back(disk);
    }

    static Tier tierOf(const DriveKind& kind) {
        if (&kind == &kSolidState) {
            return kSolidStateTier;
        }
        return &kind == &kNearline ? kNearlineTier : kRotatingTier;
    }

    Tier pickTier() {
        const unsigned roll = random_.percent();
        const Tier wanted = roll < 70 ? kRotatingTier : roll < 90 ? kNearlineTier : kSolidStateTier;
        if (!tiers_[wanted].empty()) {
            return wanted;
        }
        for (int tier = 0; tier < kTierCount; ++tier) {
            if (!tiers_[tier].empty()) {
                return static_cast<Tier>(tier);
            }
        }
        throw std::invalid_argument("every disk of the array is absent");
    }

    // The next free chunklet on the tier's disks, from 'cursor' on; wide
    // striping places consecutive chunklets on consecutive disks.
    json allocateChunklet(const std::vector<unsigned>& tier, std::size_t& cursor) {
        for (std::size_t tried = 0; tried < tier.size(); ++tried, ++cursor) {
            Disk& disk = disks_[tier[cursor % tier.size()]];
            if (disk.usedChunklets < disk.kind->chunklets) {
                ++cursor;
                return json::array({disk.id, disk.usedChunklets++});
            }
        }
        throw std::invalid_argument("the volumes need more chunklets than the disks hold");
    }

    json run(const std::vector<unsigned>& tier, std::size_t& cursor, uint64_t length) {
        json entries = json::array();
        for (uint64_t i = 0; i < length; ++i) {
            entries.push_back(allocateChunklet(tier, cursor));
        }
        return entries;
    }

    int pickKind() {
        const unsigned roll = random_.percent();
        return roll < 80 ? 1 : roll < 90 ? 3 : roll < 95 ? 2 : 4;
    }

    json volume(unsigned id) {
        static constexpr uint64_t kUserRunLengths[] = {4, 8, 16, 32, 64, 128};
        const std::vector<unsigned>& tier = tiers_[pickTier()];
        std::size_t cursor = random_.below(tier.size());
        json runs = json::array();
        runs.push_back(run(tier, cursor, 2 + random_.below(3)));
        runs.push_back(run(tier, cursor, random_.percent() < 30 ? 2 + random_.below(7) : 0));
        runs.push_back(run(tier, cursor, kUserRunLengths[random_.below(6)]));
        char wwn[33];
        std::snprintf(wwn, sizeof wwn, "60002AC0%08" PRIX32 "%016" PRIX64, systemId_,
                      uint64_t{id} + 1);
        json volume = {{"id", id},
                       {"name", "vv." + std::to_string(id)},
                       {"wwn", wwn},
                       {"kind", pickKind()},
                       {"runs", runs}};
        if (random_.below(50) == 0) {
            volume["excludedDisks"] = json::array({runs[2][0][0]});
        }
        return volume;
    }

    json volumes() {
        json list = json::array();
        for (unsigned id = 0; id < options_.volumes; ++id) {
            list.push_back(volume(id));
        }
        return list;
    }

    json paths(const Disk& disk) {
        const unsigned first = 2 * (disk.cageIndex % (nodes_ / 2));
        const uint16_t alpa = static_cast<uint16_t>(0xE8 - disk.magazine * 4 - disk.position);
        const bool primaryOnA = disk.id % 2 == 0;
        json paths = {{"A", loop(first, 1, alpa, primaryOnA)},
                      {"B", loop(first + 1, 1, alpa, !primaryOnA)}};
        if (options_.quadPort) {
            paths["A1"] = loop(first, 2, alpa, false);
            paths["B1"] = loop(first + 1, 2, alpa, false);
            if (disk.id % 7 == 3) {
                paths["A1"].erase("lpid");
            }
        }
        return paths;
    }

    static json loop(unsigned node, unsigned port, uint16_t alpa, bool primary) {
        return {{"state", 4},
                {"alpa", alpa},
                {"portWwn", hex16(portWwn(node, port))},
                {"lpid", lpidText(node, 2, port)},
                {"primary", primary}};
    }

    json enclosure(const Disk& disk) {
        if (disk.cageType == kRotatingCage.type) {
            return {{"ledState", 1}};
        }
        return {{"esiPresent", true}, {"esiState", 1}};
    }

    json disk(const Disk& disk) {
        const DriveKind& kind = *disk.kind;
        char wwn[17];
        std::snprintf(wwn, sizeof wwn, "5000C5%02X%08X",
                      static_cast<unsigned>(options_.seed & 0xFF), disk.id);
        json record = {{"id", disk.id},
                       {"wwn", wwn},
                       {"cage", disk.cage},
                       {"magazine", disk.magazine},
                       {"position", disk.position}};
        if (disk.absent) {
            record.update({{"absent", true}, {"cimOpStatus", 13}, {"healthState", 30}});
            return record;
        }
        const unsigned spare = kind.chunklets / 10;
        const unsigned freeChunklets = kind.chunklets - spare - disk.usedChunklets;
        record.update(
            {{"type", kind.type},
             {"speed", kind.speedKrpm},
             {"capacity", kind.capacity},
             {"mediaType", kind.mediaType},
             {"connectorType", kind.connector},
             {"numBlocks", kind.blocks},
             {"consumedBlocks", kind.blocks / kind.chunklets * (kind.chunklets - freeChunklets)},
             {"temperature", 28 + random_.below(12)},
             {"paths", paths(disk)},
             {"manufacturer",
              {{"vendor", kind.vendor},
               {"model", kind.model},
               {"serial", "GS" + hex16(uint64_t{disk.id} * 7919 + options_.seed).substr(8)}}},
             {"firmware", {{"version", kind.firmware[random_.below(2)]}, {"actual", 1}}},
             {"chunks",
              {{"normal", {{"usedOK", disk.usedChunklets}, {"unusedFree", freeChunklets}}},
               {"spare", {{"unusedFree", spare}}},
               {"free", freeChunklets}}},
             {"enclosure", enclosure(disk)}});
        if (kind.type == kSolidState.type) {
            record["wearLevelRemain"] = 90 + random_.below(10);
        }
        return record;
    }

    json disks() {
        json list = json::array();
        for (const Disk& entry : disks_) {
            list.push_back(disk(entry));
        }
        return list;
    }

    const GeneratorOptions options_;
    Random random_;
    const unsigned nodes_;
    const uint32_t systemId_;
    std::vector<Disk> disks_;
    std::array<std::vector<unsigned>, kTierCount> tiers_;
};

} // namespace

json generateArray(const GeneratorOptions& options) {
    return Generator(options).build();
}

} // namespace ksvsim::tools
