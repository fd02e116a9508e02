#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

std::string foldName(const std::string& name) {
    std::string folded = name;
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

std::string utf8(const Pegasus::String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

std::string foldName(const Pegasus::CIMName& name) {
    return foldName(utf8(name.getString()));
}

std::string foldName(const Pegasus::CIMNamespaceName& name) {
    return foldName(utf8(name.getString()));
}

const Pegasus::CIMClass* NamespaceStore::findClass(const std::string& name) const {
    auto found = classes.find(foldName(name));
    return found == classes.end() ? nullptr : &found->second.definition;
}

const Pegasus::CIMQualifierDecl* NamespaceStore::findQualifier(const std::string& name) const {
    auto found = qualifiers.find(foldName(name));
    return found == qualifiers.end() ? nullptr : &found->second.definition;
}

} // namespace ksv::mof
