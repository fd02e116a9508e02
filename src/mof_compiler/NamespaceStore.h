#ifndef KSV_MOF_NAMESPACESTORE_H
#define KSV_MOF_NAMESPACESTORE_H

#include <map>
#include <string>
#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

#include "mof_compiler/MofError.h"

namespace ksv::mof {

// The lookup key of a CIM name: ASCII letters folded to lower case, as CIM
// compares names.
std::string foldName(const std::string& name);
inline std::string foldName(const char* name) {
    return foldName(std::string(name));
}
std::string foldName(const Pegasus::CIMName& name);
std::string foldName(const Pegasus::CIMNamespaceName& name);

// The name's text as UTF-8.
std::string utf8(const Pegasus::String& text);

template <typename Definition>
struct Defined {
    Definition definition;
    SourceLocation location;
};

// What one namespace holds. Classes are stored resolved: inherited features
// included, with class origins and propagated flags set.
struct NamespaceStore {
    Pegasus::CIMNamespaceName name;
    std::map<std::string, Defined<Pegasus::CIMQualifierDecl>> qualifiers;
    std::map<std::string, Defined<Pegasus::CIMClass>> classes;
    std::vector<std::string> classOrder;                        // keys, in definition order
    std::map<std::string, std::vector<std::string>> subclasses; // key -> direct subclass keys
    std::vector<Defined<Pegasus::CIMInstance>> instances;       // path set, in definition order
    std::map<std::string, Pegasus::CIMObjectPath> aliases;      // alias name (folded) -> path

    const Pegasus::CIMClass* findClass(const std::string& name) const;
    const Pegasus::CIMQualifierDecl* findQualifier(const std::string& name) const;
};

} // namespace ksv::mof

#endif
