// System identity, addresses and controller ports.
#include "api_support.h"
#include "call_registry.h"
#include "identifiers.h"
#include "model_store.h"

#include "ksvapi.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

using namespace ksvsim::detail;

namespace {

// Writes the normalised text of 'address' and answers its family.
template <typename Address>
int normalise(int family, const char* text, char* normalized) {
    Address address{};
    char buffer[API_IP_TEXT_SIZE];
    if (inet_pton(family, text, &address) != 1 ||
        inet_ntop(family, &address, buffer, sizeof buffer) == nullptr) {
        return -1;
    }
    std::memcpy(normalized, buffer, std::strlen(buffer) + 1);
    return family;
}

template <typename Match>
int findPortLpid(Match&& match, uint16_t* lpid) {
    return ModelStore::instance().read([&](const Model& model) -> int {
        const auto port = std::find_if(model.ports.begin(), model.ports.end(), match);
        if (port == model.ports.end()) {
            return API_E_NOT_FOUND;
        }
        *lpid = port->lpid;
        return API_OK;
    });
}

} // namespace

extern "C" {

int api_getSystemInfo(api_SystemInfo_t* info) {
    return tracedCall("api_getSystemInfo", "", [info]() -> int {
        if (info == nullptr) {
            return API_E_INVALID;
        }
        ModelStore::instance().read([info](const Model& model) {
            const SystemIdentity& system = model.system;
            std::memset(info, 0, sizeof *info);
            copyText(info->name, system.name);
            copyText(info->hostName, system.hostName);
            info->id = system.id;
            info->type = system.type;
            info->isQuadPort = system.quadPort ? 1 : 0;
        });
        return API_OK;
    });
}

int getNumberOfNodes(void) {
    return tracedCall("getNumberOfNodes", "", []() -> int {
        return ModelStore::instance().read([](const Model& model) { return model.system.nodes; });
    });
}

int api_getSystemDualIP(api_DualIP_t* addresses) {
    return tracedCall("api_getSystemDualIP", "", [addresses]() -> int {
        if (addresses == nullptr) {
            return API_E_INVALID;
        }
        ModelStore::instance().read([addresses](const Model& model) {
            std::memset(addresses, 0, sizeof *addresses);
            addresses->ipv4 = model.system.ipv4;
            addresses->addrCount = 2;
            if (model.system.hasIpv6) {
                addresses->ipv6 = model.system.ipv6;
                addresses->addrCount = 3;
            }
        });
        return API_OK;
    });
}

int validateConvertIP(const char* text, char* normalized) {
    return tracedCall("validateConvertIP", argumentText(text), [&]() -> int {
        if (text == nullptr || normalized == nullptr) {
            return -1;
        }
        const int family = normalise<in_addr>(AF_INET, text, normalized);
        return family != -1 ? family : normalise<in6_addr>(AF_INET6, text, normalized);
    });
}

int api_getFCPortLPID(uint64_t portWwn, uint16_t* lpid) {
    return tracedCall("api_getFCPortLPID", formatWwn64(portWwn), [&]() -> int {
        if (lpid == nullptr) {
            return API_E_INVALID;
        }
        return findPortLpid(
            [portWwn](const Port& port) { return !port.isIscsi && port.wwn == portWwn; }, lpid);
    });
}

int api_getiSCSIPortLPID(const char* iscsiName, uint16_t* lpid) {
    return tracedCall("api_getiSCSIPortLPID", argumentText(iscsiName), [&]() -> int {
        if (iscsiName == nullptr || lpid == nullptr) {
            return API_E_INVALID;
        }
        const std::string name = iscsiName;
        return findPortLpid(
            [&name](const Port& port) { return port.isIscsi && port.iscsiName == name; }, lpid);
    });
}

int api_convertStrLPIDtoPortID(const char* text, uint16_t* portId) {
    return tracedCall("api_convertStrLPIDtoPortID", argumentText(text), [&]() -> int {
        if (text == nullptr || portId == nullptr || !parseLpid(text, *portId)) {
            return API_E_INVALID;
        }
        return API_OK;
    });
}

} // extern "C"
