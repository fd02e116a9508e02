// The simulated array: everything the library answers from, with the disk
// records prepared in their final layout.
#ifndef KSVSIM_MODEL_H
#define KSVSIM_MODEL_H

#include "ksvapi.h"
#include "ksvapi_sim.h"

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ksvsim::detail {

struct SystemIdentity {
    std::string name;
    uint32_t id = 0;
    int type = 0;
    std::string hostName;
    in_addr ipv4{};
    bool hasIpv6 = false;
    in6_addr ipv6{};
    bool quadPort = false;
    int nodes = 0;
};

struct User {
    std::string name;
    std::string password;
    bool cimAccess = false;
    // Operation keys granted; "*" grants all, "prefix.*" every key below.
    std::vector<std::string> operations;
};

struct Port {
    bool isIscsi = false;
    uint64_t wwn = 0;      // Fibre Channel ports
    std::string iscsiName; // iSCSI ports
    uint16_t lpid = 0;
};

struct Volume {
    uint32_t id = 0;
    std::string name;
    uint64_t wwnHigh = 0;
    uint64_t wwnLow = 0;
    std::string wwnText; // upper case
    int kind = API_VV_BASE;
    uint32_t runLengths[3] = {0, 0, 0};
    std::vector<api_MapCh_t> chunklets; // the three runs one after the other
    std::vector<uint32_t> excludedDiskIds;

    bool excludes(uint32_t diskId) const;
};

// A volume that has user data on a disk.
struct DiskVolumeUse {
    std::size_t volume;
    uint32_t chunklets;
};

struct Model {
    std::string source;
    SystemIdentity system;
    std::vector<User> users;
    // Operating-system accounts of the management server, which the library admits without a
    // user account of the array; kServerAccount stands for the account this process runs as.
    std::vector<std::string> trustedAccounts;
    std::vector<Port> ports;

    std::vector<api_Disk_t> disks;
    std::vector<int32_t> extentStatus;               // per disk
    std::vector<std::vector<DiskVolumeUse>> diskUse; // per disk, in volume order
    std::unordered_map<uint64_t, std::size_t> diskByWwn;
    std::unordered_map<uint32_t, std::size_t> diskById;
    std::unordered_map<std::string, std::size_t> diskByDeviceId;
    // (cage name, magazine position) -> disks in that magazine
    std::map<std::pair<std::string, uint16_t>, std::vector<std::size_t>> magazines;

    std::vector<Volume> volumes;
    std::unordered_map<std::string, std::size_t> volumeByName;
    std::unordered_map<std::string, std::size_t> volumeByWwn;

    const User* findUser(const std::string& name) const;
    bool trustsAccount(const std::string& name) const;
};

inline constexpr const char* kServerAccount = "@server";

// Thrown while reading a model.
class ModelFailure : public std::runtime_error {
public:
    explicit ModelFailure(ModelError error)
        : std::runtime_error(error.describe()), error_(std::move(error)) {}
    const ModelError& error() const { return error_; }

private:
    ModelError error_;
};

// Reads a model from JSON text; throws ModelFailure naming the place.
Model parseModel(const std::string& text, const std::string& source);

// The model compiled into the library.
extern const char kBuiltInModelJson[];

} // namespace ksvsim::detail

#endif // KSVSIM_MODEL_H
