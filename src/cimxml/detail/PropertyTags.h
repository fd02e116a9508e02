#ifndef KSV_CIMXML_DETAIL_PROPERTYTAGS_H
#define KSV_CIMXML_DETAIL_PROPERTYTAGS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ksv::cimxml::detail {

/// Texts written before, found again by a key of identities rather than of the texts they stand
/// for. Each entry holds a keeper, which keeps what its key points to from being freed or changed
/// while the entry lasts, so that no other object can take its place at the same address. A key
/// is looked for in a few slots from its home; when they are all taken, it replaces what is at
/// home, which bounds the table.
template <class Key, class Keeper>
class IdentityTexts {
public:
    const std::string* find(const Key& key, std::size_t home) const {
        for (std::size_t probe = 0; probe < kProbes; probe++) {
            const Entry& entry = _entries[(home + probe) % kSlots];
            if (entry.key == key)
                return &entry.text;
        }
        return nullptr;
    }
    void remember(const Key& key, std::size_t home, Keeper keeper, std::string_view text) {
        std::size_t slot = home % kSlots;
        for (std::size_t probe = 0; probe < kProbes; probe++) {
            if (_entries[(home + probe) % kSlots].key == Key{}) {
                slot = (home + probe) % kSlots;
                break;
            }
        }
        Entry& entry = _entries[slot];
        entry.keeper = std::move(keeper);
        entry.key = key;
        entry.text.assign(text);
    }

private:
    struct Entry {
        Key key;
        Keeper keeper;
        std::string text;
    };
    static constexpr std::size_t kSlots = 256;
    static constexpr std::size_t kProbes = 4;
    std::array<Entry, kSlots> _entries;
};

/// What one response writes of properties again and again: the start tags of the properties of
/// its instances, which share their class's names and origins, found by those texts or by the
/// declaration a property shares with its class's, and whole properties that the instances leave
/// as their class has them.
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

    /// A property shared unchanged by instances of a class, as written with or without its
    /// class origin.
    struct SharedKey {
        const void* property = nullptr;
        bool classOrigin = false;
        bool operator==(const SharedKey& other) const {
            return property == other.property && classOrigin == other.classOrigin;
        }
    };
    /// Whole properties this long or shorter are kept: longer ones are rare, and cost more to
    /// keep than to write again.
    static constexpr std::size_t kLongestShared = 1024;

    /// The start tag of a property that shares a declaration with the property it was cloned
    /// from, as written with or without its class origin.
    struct DeclaredKey {
        const void* declaration = nullptr;
        Pegasus::CIMType type = Pegasus::CIMTYPE_BOOLEAN;
        bool isArray = false;
        bool classOrigin = false;
        bool operator==(const DeclaredKey& other) const {
            return declaration == other.declaration && type == other.type &&
                   isArray == other.isArray && classOrigin == other.classOrigin;
        }
    };

    const std::string* findShared(const SharedKey& key) const;
    /// The keeper keeps the property unchanged.
    void rememberShared(const SharedKey& key, std::shared_ptr<const void> keeper,
                        std::string_view text);
    const std::string* findDeclared(const DeclaredKey& key) const;
    /// The keeper keeps the declaration unchanged.
    void rememberDeclared(const DeclaredKey& key, std::shared_ptr<const void> keeper,
                          std::string_view tag);

private:
    struct Names {
        Pegasus::CIMName name;
        Pegasus::CIMName referenceClass;
        Pegasus::CIMName origin;
    };
    static std::size_t _home(const void* identity);

    IdentityTexts<Key, Names> _tags;
    IdentityTexts<SharedKey, std::shared_ptr<const void>> _shared;
    IdentityTexts<DeclaredKey, std::shared_ptr<const void>> _declared;
};

} // namespace ksv::cimxml::detail

#endif
