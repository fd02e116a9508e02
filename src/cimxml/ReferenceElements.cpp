#include <cimxml/detail/PropertyTags.h>
#include <cimxml/detail/ReferenceElements.h>

#include <cstdint>
#include <cstring>

namespace ksv::cimxml::detail {

using namespace Pegasus;

namespace {

// Four UTF-16 units at a time, mixed by a multiply: paths run to hundreds of units, and a
// unit-by-unit hash would cost more than the lookup saves.
std::uint64_t mix(std::uint64_t hash, const String& text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.getChar16Data());
    const std::size_t length = text.size() * sizeof(Char16);
    hash ^= length;
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
    return hash;
}

std::size_t unitBytes(const String& text) {
    return text.size() * sizeof(Char16);
}

} // namespace

std::size_t PathText::hash(const String& text) {
    return std::size_t(mix(0, text));
}

bool PathText::equal(const String& x, const String& y) {
    return String::equal(x, y);
}

std::size_t PathText::bytes(const String& text) {
    return unitBytes(text);
}

std::size_t PathParts::hash(const CIMObjectPath& path) {
    std::uint64_t hash = mix(0, path.getHost());
    hash = mix(hash, path.getNameSpace().getString());
    hash = mix(hash, path.getClassName().getString());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        hash = mix(hash + keys[i].getType(), keys[i].getName().getString());
        hash = mix(hash, keys[i].getValue());
    }
    return std::size_t(hash);
}

bool PathParts::equal(const CIMObjectPath& x, const CIMObjectPath& y) {
    const Array<CIMKeyBinding>& xKeys = x.getKeyBindings();
    const Array<CIMKeyBinding>& yKeys = y.getKeyBindings();
    if (xKeys.size() != yKeys.size() || !String::equal(x.getHost(), y.getHost()) ||
        !String::equal(x.getNameSpace().getString(), y.getNameSpace().getString()) ||
        !String::equal(x.getClassName().getString(), y.getClassName().getString()))
        return false;
    for (Uint32 i = 0; i < xKeys.size(); i++) {
        if (xKeys[i].getType() != yKeys[i].getType() ||
            !String::equal(xKeys[i].getName().getString(), yKeys[i].getName().getString()) ||
            !String::equal(xKeys[i].getValue(), yKeys[i].getValue()))
            return false;
    }
    return true;
}

// The path's text is held by the key, unless the instance it came from still holds it too.
std::size_t PathParts::bytes(const CIMObjectPath& path) {
    std::size_t total = unitBytes(path.getHost()) + unitBytes(path.getNameSpace().getString()) +
                        unitBytes(path.getClassName().getString());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        total += unitBytes(keys[i].getName().getString()) + unitBytes(keys[i].getValue()) + 64;
    return total;
}

bool PropertyTags::Key::operator==(const Key& other) const {
    return name == other.name && referenceClass == other.referenceClass && origin == other.origin &&
           arraySize == other.arraySize && type == other.type && isArray == other.isArray &&
           propagated == other.propagated;
}

std::size_t PropertyTags::_home(const void* identity) {
    // Texts and properties are at least 8-byte aligned, so the low bits of their addresses say
    // nothing.
    const std::uint64_t hash =
        (reinterpret_cast<std::uintptr_t>(identity) >> 3) * 0x9E3779B97F4A7C15ULL;
    return std::size_t(hash >> 40);
}

const std::string* PropertyTags::find(const Key& key) const {
    // By the name alone: the properties of a class differ in it.
    return _tags.find(key, _home(key.name));
}

void PropertyTags::remember(const Key& key, const CIMName& name, const CIMName& referenceClass,
                            const CIMName& origin, std::string_view tag) {
    _tags.remember(key, _home(key.name), Names{name, referenceClass, origin}, tag);
}

const std::string* PropertyTags::findShared(const SharedKey& key) const {
    return _shared.find(key, _home(key.property));
}

void PropertyTags::rememberShared(const SharedKey& key, std::shared_ptr<const void> keeper,
                                  std::string_view text) {
    _shared.remember(key, _home(key.property), std::move(keeper), text);
}

const std::string* PropertyTags::findDeclared(const DeclaredKey& key) const {
    return _declared.find(key, _home(key.declaration));
}

void PropertyTags::rememberDeclared(const DeclaredKey& key, std::shared_ptr<const void> keeper,
                                    std::string_view tag) {
    _declared.remember(key, _home(key.declaration), std::move(keeper), tag);
}

const std::string* KeyBindingElements::find(Uint32 position, const CIMKeyBinding& binding) const {
    if (position >= kPositions)
        return nullptr;
    const Written& written = _written[position];
    if (written.element.empty() || written.type != binding.getType() ||
        !String::equal(written.value, binding.getValue()) ||
        !String::equal(written.name, binding.getName().getString()))
        return nullptr;
    return &written.element;
}

void KeyBindingElements::remember(Uint32 position, const CIMKeyBinding& binding,
                                  std::string_view element) {
    if (position >= kPositions)
        return;
    Written& written = _written[position];
    written.name = binding.getName().getString();
    written.value = binding.getValue();
    written.type = binding.getType();
    written.element.assign(element);
}

} // namespace ksv::cimxml::detail
