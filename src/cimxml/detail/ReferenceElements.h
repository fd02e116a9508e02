#ifndef KSV_CIMXML_DETAIL_REFERENCEELEMENTS_H
#define KSV_CIMXML_DETAIL_REFERENCEELEMENTS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/String.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ksv::cimxml::detail {

/// Elements already written, by what they were written from, in two generations that bound the
/// memory: when the newer one is full it replaces the older, and an element still in use moves
/// up on its next hit. `Key` provides hash(), equal() and bytes() (its share of the memory).
template <class Key>
class ElementGenerations {
public:
    explicit ElementGenerations(std::size_t generationBytes) : _generationBytes(generationBytes) {}

    const std::string* find(const typename Key::Type& key) {
        const auto newer = _newer.find(key);
        if (newer != _newer.end())
            return &newer->second;
        const auto older = _older.find(key);
        if (older == _older.end())
            return nullptr;
        std::string element = std::move(older->second);
        _older.erase(older);
        return &_keep(key, std::move(element));
    }

    void remember(const typename Key::Type& key, std::string_view element) {
        _keep(key, std::string(element));
    }

private:
    struct Hash {
        std::size_t operator()(const typename Key::Type& key) const { return Key::hash(key); }
    };
    struct Equal {
        bool operator()(const typename Key::Type& x, const typename Key::Type& y) const {
            return Key::equal(x, y);
        }
    };
    using Generation = std::unordered_map<typename Key::Type, std::string, Hash, Equal>;

    const std::string& _keep(const typename Key::Type& key, std::string element) {
        // Counted with the map node's own overhead, roughly, so that short keys cannot pile up.
        const std::size_t cost = Key::bytes(key) + element.size() + 96;
        if (_newerBytes + cost > _generationBytes && !_newer.empty()) {
            _older = std::move(_newer);
            _newer = Generation();
            _newerBytes = 0;
        }
        _newerBytes += cost;
        return _newer.insert_or_assign(key, std::move(element)).first->second;
    }

    const std::size_t _generationBytes;
    Generation _newer;
    Generation _older;
    std::size_t _newerBytes = 0;
};

/// A reference key's text.
struct PathText {
    using Type = Pegasus::String;
    static std::size_t hash(const Pegasus::String& text);
    static bool equal(const Pegasus::String& x, const Pegasus::String& y);
    static std::size_t bytes(const Pegasus::String& text);
};

/// A path by the parts its element is written from, compared exactly (names as spelled).
struct PathParts {
    using Type = Pegasus::CIMObjectPath;
    static std::size_t hash(const Pegasus::CIMObjectPath& path);
    static bool equal(const Pegasus::CIMObjectPath& x, const Pegasus::CIMObjectPath& y);
    static std::size_t bytes(const Pegasus::CIMObjectPath& path);
};

/// The KEYBINDING elements of the last path written, by position. The paths of one response
/// mostly differ in one key: the system's name and the class names recur in every path, and
/// copying their elements costs a compare where writing them cost escaping name and value again.
class KeyBindingElements {
public:
    const std::string* find(Pegasus::Uint32 position, const Pegasus::CIMKeyBinding& binding) const;
    void remember(Pegasus::Uint32 position, const Pegasus::CIMKeyBinding& binding,
                  std::string_view element);

private:
    struct Written {
        // Held, so that their texts stay as they were: a shared text is copied before it changes.
        Pegasus::String name;
        Pegasus::String value;
        Pegasus::CIMKeyBinding::Type type = Pegasus::CIMKeyBinding::STRING;
        std::string element;
    };
    // Paths of more keys than this are rare; their further keys are written as they come.
    static constexpr Pegasus::Uint32 kPositions = 8;
    Written _written[kPositions];
};

/// The VALUE.REFERENCE elements of one response. A reference key holds its path as text, which
/// must be parsed to be written, and a reference property's path has its parts escaped one by
/// one; the instances of one response name the same objects over and over (an association's
/// pairs), so one response keeps what it wrote, by the key's text and by the path's parts.
class ReferenceElements {
public:
    explicit ReferenceElements(std::size_t generationBytes = 2 * 1024 * 1024)
        : byText(generationBytes), byPath(generationBytes) {}

    ElementGenerations<PathText> byText;
    ElementGenerations<PathParts> byPath;
    KeyBindingElements keyBindings;
};

} // namespace ksv::cimxml::detail

#endif
