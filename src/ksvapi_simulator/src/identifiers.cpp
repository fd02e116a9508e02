#include "identifiers.h"

#include <cinttypes>
#include <cstdio>
#include <limits>

namespace ksvsim::detail {
namespace {

int hexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

bool parseHexDigits(std::string_view text, uint64_t& value) {
    uint64_t result = 0;
    for (char c : text) {
        const int digit = hexDigitValue(c);
        if (digit < 0) {
            return false;
        }
        result = result << 4 | static_cast<uint64_t>(digit);
    }
    value = result;
    return true;
}

// A decimal number without sign or leading zeros (but "0"), at most 'max'.
bool parseBoundedDecimal(std::string_view text, uint64_t max, uint64_t& value) {
    if (text.empty() || (text.size() > 1 && text[0] == '0')) {
        return false;
    }
    uint64_t result = 0;
    for (char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
        result = result * 10 + static_cast<uint64_t>(c - '0');
        if (result > max) {
            return false;
        }
    }
    value = result;
    return true;
}

bool parseInt32(std::string_view text, int32_t& value) {
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) {
        text.remove_prefix(1);
    }
    const uint64_t limit = negative ? uint64_t{1} << 31 : std::numeric_limits<int32_t>::max();
    uint64_t magnitude = 0;
    if (!parseBoundedDecimal(text, limit, magnitude)) {
        return false;
    }
    value = static_cast<int32_t>(negative ? -static_cast<int64_t>(magnitude)
                                          : static_cast<int64_t>(magnitude));
    return true;
}

} // namespace

std::string formatDiskDeviceId(uint64_t wwn, int32_t id) {
    char text[40];
    std::snprintf(text, sizeof text, "%016" PRIX64 "-id-%d", wwn, id);
    return text;
}

bool parseDiskDeviceId(std::string_view text, uint64_t& wwn, int32_t& id) {
    constexpr std::string_view separator = "-id-";
    if (text.size() <= 16 + separator.size() || text.substr(16, separator.size()) != separator) {
        return false;
    }
    uint64_t parsedWwn = 0;
    int32_t parsedId = 0;
    if (!parseWwn64(text.substr(0, 16), parsedWwn) ||
        !parseInt32(text.substr(16 + separator.size()), parsedId)) {
        return false;
    }
    wwn = parsedWwn;
    id = parsedId;
    return true;
}

bool parseWwn64(std::string_view text, uint64_t& wwn) {
    return text.size() == 16 && parseHexDigits(text, wwn);
}

std::string formatWwn64(uint64_t wwn) {
    char text[17];
    std::snprintf(text, sizeof text, "%016" PRIX64, wwn);
    return text;
}

bool parseWwn128(std::string_view text, uint64_t& high, uint64_t& low) {
    uint64_t first = 0;
    uint64_t second = 0;
    if (text.size() != 32 || !parseHexDigits(text.substr(0, 16), first) ||
        !parseHexDigits(text.substr(16), second)) {
        return false;
    }
    high = first;
    low = second;
    return true;
}

std::string formatWwn128(uint64_t high, uint64_t low) {
    char text[33];
    std::snprintf(text, sizeof text, "%016" PRIX64 "%016" PRIX64, high, low);
    return text;
}

bool parseLpid(std::string_view text, uint16_t& lpid) {
    const std::size_t first = text.find(':');
    const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second == std::string_view::npos) {
        return false;
    }
    uint64_t node = 0;
    uint64_t slot = 0;
    uint64_t port = 0;
    if (!parseBoundedDecimal(text.substr(0, first), 7, node) ||
        !parseBoundedDecimal(text.substr(first + 1, second - first - 1), 15, slot) ||
        !parseBoundedDecimal(text.substr(second + 1), 7, port)) {
        return false;
    }
    lpid = static_cast<uint16_t>(node << 7 | slot << 3 | port);
    return true;
}

} // namespace ksvsim::detail
