#ifndef KSV_CIMXML_DETAIL_PROPERTYTAGS_H
#define KSV_CIMXML_DETAIL_PROPERTYTAGS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace ksv::cimxml::detail {

/// The start tags of the properties one response writes. The instances of a response share their
/// class's names and origins, so a tag is found by the identity of those texts, cheaper to
/// compare than the texts; each entry holds on to its texts, so that no other text can take their
/// place while it lasts. A tag is looked for in a few slots from its home; when they are all
/// taken, it replaces what is at home, which bounds the table.
class PropertyTags {
public:
    struct Key {
        const Pegasus::Char16* name = nullptr;
        const Pegasus::Char16* referenceClass = nullptr;
        const Pegasus::Char16* origin = nullptr;
        Pegasus::Uint32 arraySize = 0;
        Pegasus::CIMType type = Pegasus::CIMTYPE_BOOLEAN;
        bool isArray = false;
        bool propagated = false;

        Key() = default;
        Key(const Pegasus::CIMName& name, const Pegasus::CIMName& referenceClass,
            const Pegasus::CIMName& origin, Pegasus::Uint32 arraySize, Pegasus::CIMType type,
            bool isArray, bool propagated)
            : name(name.getString().getChar16Data()),
              referenceClass(referenceClass.getString().getChar16Data()),
              origin(origin.getString().getChar16Data()), arraySize(arraySize), type(type),
              isArray(isArray), propagated(propagated) {}
        bool operator==(const Key& other) const;
    };

    /// The tag written for the key, or null.
    const std::string* find(const Key& key) const;
    /// The names are those the key was made from.
    void remember(const Key& key, const Pegasus::CIMName& name,
                  const Pegasus::CIMName& referenceClass, const Pegasus::CIMName& origin,
                  std::string_view tag);

private:
    struct Entry {
        Key key;
        Pegasus::CIMName name;
        Pegasus::CIMName referenceClass;
        Pegasus::CIMName origin;
        std::string tag;
    };
    static constexpr std::size_t kSlots = 256;
    static constexpr std::size_t kProbes = 4;
    static std::size_t _home(const Key& key);

    std::array<Entry, kSlots> _entries;
};

} // namespace ksv::cimxml::detail

#endif
