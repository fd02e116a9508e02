#include <cimxml/detail/ReferenceElements.h>

#include <cstdint>
#include <cstring>
#include <utility>

namespace ksv::cimxml::detail {

std::size_t ReferenceElements::Hash::operator()(const Pegasus::String& text) const {
    // Four UTF-16 units at a time, mixed by a multiply: paths run to hundreds of units, and a
    // unit-by-unit hash would cost more than the lookup saves.
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.getChar16Data());
    const std::size_t length = text.size() * sizeof(Pegasus::Char16);
    std::uint64_t hash = length;
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= length; i += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, sizeof word);
        hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
        hash ^= hash >> 29;
    }
    for (; i < length; i++) {
        hash = (hash ^ bytes[i]) * 0x100000001B3ULL;
    }
    return std::size_t(hash);
}

const std::string* ReferenceElements::find(const Pegasus::String& path) {
    const auto newer = _newer.find(path);
    if (newer != _newer.end())
        return &newer->second;
    const auto older = _older.find(path);
    if (older == _older.end())
        return nullptr;
    std::string element = std::move(older->second);
    _older.erase(older);
    return &_keep(path, std::move(element));
}

void ReferenceElements::remember(const Pegasus::String& path, std::string_view element) {
    _keep(path, std::string(element));
}

const std::string& ReferenceElements::_keep(const Pegasus::String& path, std::string element) {
    // Counted with the map node's own overhead, roughly, so that short paths cannot pile up.
    const std::size_t cost = path.size() * sizeof(Pegasus::Char16) + element.size() + 96;
    if (_newerBytes + cost > _generationBytes && !_newer.empty()) {
        _older = std::move(_newer);
        _newer = Generation();
        _newerBytes = 0;
    }
    _newerBytes += cost;
    return _newer.insert_or_assign(path, std::move(element)).first->second;
}

} // namespace ksv::cimxml::detail
