#ifndef KSV_MOF_QUALIFIERRESOLVER_H
#define KSV_MOF_QUALIFIERRESOLVER_H

#include <string>
#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMScope.h>

#include "mof_compiler/MofAst.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

// The base flavor with the MOF flavor keywords (EnableOverride,
// DisableOverride, ToSubclass, Restricted, Translatable) applied in order;
// MofError at location for any other word. owner names what the flavor
// belongs to, for the message.
Pegasus::CIMFlavor applyFlavorKeywords(const Pegasus::CIMFlavor& base,
                                       const std::vector<std::string>& keywords,
                                       const SourceLocation& location, const std::string& owner);

// The kind of element a qualifier list is written on.
struct QualifiedElement {
    Pegasus::CIMScope scope;
    const char* kind;        // "class", "association", "property", ...
    std::string description; // "property CIM_Foo.Bar", for messages
};

// Turns the qualifiers written on one element into resolved qualifiers:
// each must be declared in the namespace, fit the declaration's type and
// scope and may not change a DisableOverride qualifier it inherits. The
// inherited qualifiers that propagate to subclasses and are not restated
// are added with the propagated flag set.
class QualifierResolver {
public:
    explicit QualifierResolver(const NamespaceStore& store) : _store(store) {}

    std::vector<Pegasus::CIMQualifier>
    resolve(const std::vector<ast::Qualifier>& own, const QualifiedElement& element,
            const std::vector<Pegasus::CIMConstQualifier>& inherited) const;

private:
    const NamespaceStore& _store;

    Pegasus::CIMQualifier
    resolveOne(const ast::Qualifier& qualifier, const QualifiedElement& element,
               const std::vector<Pegasus::CIMConstQualifier>& inherited) const;
};

// The qualifiers of an element (class, property, method, parameter), as
// the list that its subclass counterpart inherits.
template <typename Element>
std::vector<Pegasus::CIMConstQualifier> qualifiersOf(const Element& element) {
    std::vector<Pegasus::CIMConstQualifier> qualifiers;
    for (Pegasus::Uint32 i = 0; i < element.getQualifierCount(); ++i)
        qualifiers.push_back(element.getQualifier(i));
    return qualifiers;
}

// True when the element carries the named boolean qualifier with value true.
template <typename Element>
bool hasTrueQualifier(const Element& element, const char* name) {
    using namespace Pegasus;
    Uint32 index = element.findQualifier(CIMName(name));
    if (index == PEG_NOT_FOUND)
        return false;
    const Pegasus::CIMValue& value = element.getQualifier(index).getValue();
    Pegasus::Boolean flag = false;
    if (value.getType() == Pegasus::CIMTYPE_BOOLEAN && !value.isArray() && !value.isNull())
        value.get(flag);
    return flag;
}

} // namespace ksv::mof

#endif
