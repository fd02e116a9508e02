// Utilities: the instance cap, date-time conversions, random names, node pairs, identifiers,
// the system's addresses and controller-port conversions.
#include "KSV_Common.h"

#include <arpa/inet.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

// A date-time field of 'width' digits at 'start' of the text, read as a number.
int dateTimeField(const char* text, size_t start, size_t width) {
    const size_t length = strlen(text);
    if (start >= length)
        return 0;
    return atoi(std::string(text + start, std::min(width, length - start)).c_str());
}

long localOffsetMinutes(time_t t) {
    struct tm local;
    localtime_r(&t, &local);
    return local.tm_gmtoff / 60;
}

struct RandomSource {
    std::mutex lock;
    bool seeded = false;
    struct random_data state = {};
    char stateBuffer[256] = {};
};

RandomSource& randomSource() {
    static RandomSource source;
    return source;
}

// The system's addresses, asked of the library until it answers once.
struct AddressCache {
    std::mutex lock;
    String ipv4;
    String ipv6;
};

AddressCache& addressCache() {
    static AddressCache cache;
    return cache;
}

void fetchSystemAddresses(AddressCache& cache) {
    api_DualIP_t addresses;
    memset(&addresses, 0, sizeof(addresses));
    if (api_getSystemDualIP(&addresses) != 0)
        return;
    char text[128] = "";
    if (inet_ntop(AF_INET, &addresses.ipv4, text, sizeof(text)))
        cache.ipv4 = text;
    if (addresses.addrCount > 2 && inet_ntop(AF_INET6, &addresses.ipv6, text, sizeof(text)))
        cache.ipv6 = text;
}

} // namespace

Uint32 KSV_Common::getInstanceThreshold(Uint32 maxInstScale) {
    struct rlimit limit;
    const Uint64 softLimit = getrlimit(RLIMIT_AS, &limit) == 0 ? Uint64(limit.rlim_cur) : 0;
    const Uint32 megabytes = static_cast<Uint32>(softLimit / 1000000);
    log_message(4, "soft limit = %u, maxInstScale factor = %u\n", megabytes, maxInstScale);
    return instanceThresholdFor(softLimit, maxInstScale);
}

// Both the megabytes and the product wrap at 32 bits; the caps in use were derived with
// exactly this arithmetic.
Uint32 KSV_Common::instanceThresholdFor(Uint64 softLimitBytes, Uint32 maxInstScale) {
    const Uint32 megabytes = static_cast<Uint32>(softLimitBytes / 1000000);
    return megabytes * maxInstScale;
}

CIMDateTime KSV_Common::getCIMDateTime(time_t t) {
    struct tm local;
    localtime_r(&t, &local);
    const long offset = local.tm_gmtoff / 60;
    char text[64];
    snprintf(text, sizeof(text), "%04d%02d%02d%02d%02d%02d.%06d%c%03ld", local.tm_year + 1900,
             local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, 0,
             offset < 0 ? '-' : '+', labs(offset));
    return CIMDateTime(String(text));
}

time_t KSV_Common::getDateTime(const CIMDateTime& dateTime) {
    const String text = dateTime.toString();
    struct tm fields;
    if (_formatDateTime(text.getCString(), &fields) < 1)
        return 0;
    const time_t t = mktime(&fields);
    if (t == time_t(-1))
        throw DateTimeOutOfRangeException(text);
    return t;
}

int KSV_Common::_formatDateTime(const char* text, struct tm* out) {
    char copy[26] = "";
    strncpy(copy, text, 25);
    memset(out, 0, sizeof(*out));
    const int year = dateTimeField(copy, 0, 4);
    if (year == 0)
        return 0;
    out->tm_year = year - 1900;
    if (year < 0 || out->tm_year < 0)
        return -1;
    out->tm_mon = dateTimeField(copy, 4, 2) - 1;
    out->tm_mday = dateTimeField(copy, 6, 2);
    out->tm_hour = dateTimeField(copy, 8, 2);
    out->tm_min = dateTimeField(copy, 10, 2);
    out->tm_sec = dateTimeField(copy, 12, 2);
    const bool anyNegative = out->tm_mon < 0 || out->tm_mday < 0 || out->tm_hour < 0 ||
                             out->tm_min < 0 || out->tm_sec < 0;
    return anyNegative ? -1 : 1;
}

String KSV_Common::getTimeZone() {
    const long minutes = localOffsetMinutes(time(nullptr));
    char label[32];
    snprintf(label, sizeof(label), "GMT%c%ld", minutes < 1 ? '-' : '+', labs(minutes) / 60);
    return String(label);
}

void KSV_Common::generate_random_string(char* str, Uint32 len) {
    if (len == 0 || str == nullptr) {
        printf("Assertion failed: %s\n", "len > 0 && str != NULL");
        fflush(stdout);
        ksv_panic("Assertion point: file: %s, line: %d\n", "KSV_Common", 5332);
    }
    static const char alphabet[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    RandomSource& source = randomSource();
    std::lock_guard<std::mutex> guard(source.lock);
    if (!source.seeded) {
        initstate_r(static_cast<unsigned>(time(nullptr)), source.stateBuffer,
                    sizeof(source.stateBuffer), &source.state);
        source.seeded = true;
    }
    for (Uint32 i = 0; i + 1 < len; i++) {
        int32_t r = 0;
        random_r(&source.state, &r);
        str[i] = alphabet[r % 63];
    }
    str[len - 1] = '\0';
}

int KSV_Common::getNodePairIndex(int node) {
    return (node >= 0 && node <= 7) ? node / 2 : -1;
}

String KSV_Common::extractFromInstanceID(const String& instanceID) {
    const Uint32 start = instanceID.find("QUANOR:");
    if (start == PEG_NOT_FOUND)
        return String();
    return instanceID.subString(start + 7);
}

String KSV_Common::getSystemIPAddr(int ipType) {
    if (ipType != 1 && ipType != 2) {
        log_message(2, "KSV_Common, getSystemIPAddr: Invalid IP type parameter!\n");
        return String();
    }
    AddressCache& cache = addressCache();
    std::lock_guard<std::mutex> guard(cache.lock);
    if (cache.ipv4.size() == 0)
        fetchSystemAddresses(cache);
    return ipType == 1 ? cache.ipv4 : cache.ipv6;
}

Uint16 KSV_Common::getPortLPID(Uint64 portWWN) {
    Uint16 lpid = 0;
    api_getFCPortLPID(portWWN, &lpid);
    return lpid;
}

Uint16 KSV_Common::getPortLPID(String& iscsiName) {
    const std::string name = std::string(iscsiName.getCString()).substr(0, 223);
    Uint16 lpid = 0;
    api_getiSCSIPortLPID(name.c_str(), &lpid);
    return lpid;
}

std::pair<Uint32, Uint16*> KSV_Common::getPortIDs(Array<String> lpids) {
    Uint16* portIDs = new Uint16[lpids.size()];
    for (Uint32 i = 0; i < lpids.size(); i++) {
        portIDs[i] = 0;
        api_convertStrLPIDtoPortID(lpids[i].getCString(), &portIDs[i]);
    }
    return std::make_pair(lpids.size(), portIDs);
}

Uint16 KSV_Common::getPortOperationalStatus(api_port_status_t status) {
    switch (status) {
    case API_PORT_CONFIG_WAIT:
    case API_PORT_OFFLINE:
        return 10; // Stopped
    case API_PORT_ALPA_WAIT:
    case API_PORT_LOGIN_WAIT:
    case API_PORT_LINK_INIT:
    case API_PORT_INIT_WAIT:
    case API_PORT_NEGOTIATING:
        return 8; // Starting
    case API_PORT_READY:
        return 2; // OK
    case API_PORT_LOSS_SYNC:
        return 13; // Lost Communication
    case API_PORT_ERROR:
    case API_PORT_COMM_ERROR:
    case API_PORT_CRITICAL_ERROR:
        return 6; // Error
    case API_PORT_FAILED:
        return 7; // Non-Recoverable Error
    default:
        return 0; // Unknown
    }
}

Uint16 KSV_Common::getPortHealthState(api_port_status_t status) {
    switch (status) {
    case API_PORT_CONFIG_WAIT:
    case API_PORT_ALPA_WAIT:
    case API_PORT_LOGIN_WAIT:
    case API_PORT_READY:
    case API_PORT_LOSS_SYNC:
    case API_PORT_LINK_INIT:
    case API_PORT_INIT_WAIT:
    case API_PORT_NEGOTIATING:
        return 5; // OK
    case API_PORT_ERROR:
    case API_PORT_COMM_ERROR:
        return 20; // Major failure
    case API_PORT_CRITICAL_ERROR:
        return 25; // Critical failure
    case API_PORT_OFFLINE:
        return 10; // Degraded/Warning
    case API_PORT_FAILED:
        return 30; // Non-recoverable error
    default:
        return 0; // Unknown
    }
}

PEGASUS_NAMESPACE_END
