#ifndef KSV_CIMXML_DETAIL_REFERENCEELEMENTS_H
#define KSV_CIMXML_DETAIL_REFERENCEELEMENTS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ksv::cimxml::detail {

/// The VALUE.REFERENCE elements written for reference keys, by the key's text. A reference key
/// holds its path as text, which must be parsed to be written; the instances of one response
/// name the same objects over and over (an association's pairs), so one response keeps what it
/// wrote. Two generations bound the memory: when the newer one is full it replaces the older,
/// and an element still in use moves up on its next hit.
class ReferenceElements {
public:
    explicit ReferenceElements(std::size_t generationBytes = 2 * 1024 * 1024)
        : _generationBytes(generationBytes) {}

    /// The element written for `path`, or null.
    const std::string* find(const Pegasus::String& path);
    void remember(const Pegasus::String& path, std::string_view element);

private:
    struct Hash {
        std::size_t operator()(const Pegasus::String& text) const;
    };
    using Generation = std::unordered_map<Pegasus::String, std::string, Hash>;

    const std::string& _keep(const Pegasus::String& path, std::string element);

    const std::size_t _generationBytes;
    Generation _newer;
    Generation _older;
    std::size_t _newerBytes = 0;
};

} // namespace ksv::cimxml::detail

#endif
