// Text forms of the array's identifiers: disk DeviceIDs, WWNs, port
// locations.
#ifndef KSVSIM_IDENTIFIERS_H
#define KSVSIM_IDENTIFIERS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace ksvsim::detail {

// "%016X-id-%d": the WWN as 16 upper-case hexadecimal digits, "-id-", the id.
std::string formatDiskDeviceId(uint64_t wwn, int32_t id);
bool parseDiskDeviceId(std::string_view text, uint64_t& wwn, int32_t& id);

// Exactly 16 hexadecimal digits of either case; written in upper case.
bool parseWwn64(std::string_view text, uint64_t& wwn);
std::string formatWwn64(uint64_t wwn);

// Exactly 32 hexadecimal digits of either case, first word first.
bool parseWwn128(std::string_view text, uint64_t& high, uint64_t& low);
std::string formatWwn128(uint64_t high, uint64_t low);

// "node:slot:port" with node 0-7, slot 0-15, port 0-7, packed as node in
// bits 7-9, slot in bits 3-6 and port in bits 0-2.
bool parseLpid(std::string_view text, uint16_t& lpid);

// Copies text into a fixed array, cut to fit, always NUL-terminated.
template <std::size_t N>
void copyText(char (&target)[N], std::string_view text) {
    const std::size_t length = text.size() < N ? text.size() : N - 1;
    std::memcpy(target, text.data(), length);
    std::memset(target + length, 0, N - length);
}

} // namespace ksvsim::detail

#endif // KSVSIM_IDENTIFIERS_H
