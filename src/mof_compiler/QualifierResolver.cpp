#include "mof_compiler/QualifierResolver.h"

#include <set>
#include <strings.h>

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

#include "mof_compiler/MofValues.h"

namespace ksv::mof {

using namespace Pegasus;

namespace {

// A flavor as the three independent choices MOF lets one make.
struct FlavorChoice {
    bool overridable = true;
    bool toSubclass = true;
    bool translatable = false;

    static FlavorChoice of(const CIMFlavor& flavor) {
        FlavorChoice choice;
        choice.overridable = !flavor.hasFlavor(CIMFlavor::DISABLEOVERRIDE);
        choice.toSubclass = !flavor.hasFlavor(CIMFlavor::RESTRICTED);
        choice.translatable = flavor.hasFlavor(CIMFlavor::TRANSLATABLE);
        return choice;
    }

    CIMFlavor toFlavor() const {
        CIMFlavor flavor;
        flavor.addFlavor(overridable ? CIMFlavor::ENABLEOVERRIDE : CIMFlavor::DISABLEOVERRIDE);
        flavor.addFlavor(toSubclass ? CIMFlavor::TOSUBCLASS : CIMFlavor::RESTRICTED);
        if (translatable)
            flavor.addFlavor(CIMFlavor::TRANSLATABLE);
        return flavor;
    }
};

bool keywordIs(const std::string& word, const char* keyword) {
    return strcasecmp(word.c_str(), keyword) == 0;
}

const CIMConstQualifier* findInherited(const std::vector<CIMConstQualifier>& inherited,
                                       const std::string& name) {
    for (const CIMConstQualifier& qualifier : inherited) {
        if (foldName(qualifier.getName()) == foldName(name))
            return &qualifier;
    }
    return nullptr;
}

CIMValue valueOf(const ast::Qualifier& qualifier, const CIMQualifierDecl& declaration) {
    if (qualifier.value)
        return literalToValue(*qualifier.value, declaration.getType(), declaration.isArray());
    if (declaration.getType() == CIMTYPE_BOOLEAN && !declaration.isArray())
        return CIMValue(Boolean(true));
    return declaration.getValue();
}

bool writesEnableOverride(const ast::Qualifier& qualifier) {
    for (const std::string& word : qualifier.flavors) {
        if (keywordIs(word, "EnableOverride"))
            return true;
    }
    return false;
}

} // namespace

CIMFlavor applyFlavorKeywords(const CIMFlavor& base, const std::vector<std::string>& keywords,
                              const SourceLocation& location, const std::string& owner) {
    FlavorChoice choice = FlavorChoice::of(base);
    for (const std::string& word : keywords) {
        if (keywordIs(word, "EnableOverride"))
            choice.overridable = true;
        else if (keywordIs(word, "DisableOverride"))
            choice.overridable = false;
        else if (keywordIs(word, "ToSubclass"))
            choice.toSubclass = true;
        else if (keywordIs(word, "Restricted"))
            choice.toSubclass = false;
        else if (keywordIs(word, "Translatable"))
            choice.translatable = true;
        else
            throw MofError(location, "unknown flavor '" + word + "' of " + owner);
    }
    return choice.toFlavor();
}

std::vector<CIMQualifier>
QualifierResolver::resolve(const std::vector<ast::Qualifier>& own, const QualifiedElement& element,
                           const std::vector<CIMConstQualifier>& inherited) const {
    std::vector<CIMQualifier> resolved;
    std::set<std::string> written;
    for (const ast::Qualifier& qualifier : own) {
        if (!written.insert(foldName(qualifier.name)).second)
            throw MofError(qualifier.location, "qualifier " + qualifier.name +
                                                   " appears twice on " + element.description);
        resolved.push_back(resolveOne(qualifier, element, inherited));
    }
    std::vector<CIMQualifier> propagated;
    for (const CIMConstQualifier& parent : inherited) {
        bool restated = written.count(foldName(parent.getName())) != 0;
        if (!restated && FlavorChoice::of(parent.getFlavor()).toSubclass) {
            CIMQualifier copy = parent.clone();
            copy.setPropagated(true);
            propagated.push_back(copy);
        }
    }
    propagated.insert(propagated.end(), resolved.begin(), resolved.end());
    return propagated;
}

CIMQualifier QualifierResolver::resolveOne(const ast::Qualifier& qualifier,
                                           const QualifiedElement& element,
                                           const std::vector<CIMConstQualifier>& inherited) const {
    const CIMQualifierDecl* declaration = _store.findQualifier(qualifier.name);
    if (declaration == nullptr)
        throw MofError(qualifier.location, "qualifier " + qualifier.name +
                                               " is not declared in namespace " +
                                               utf8(_store.name.getString()));
    if (!declaration->getScope().hasScope(element.scope))
        throw MofError(qualifier.location, "qualifier " + qualifier.name +
                                               " is not allowed in scope " + element.kind +
                                               " (on " + element.description + ")");
    CIMValue value = valueOf(qualifier, *declaration);

    const CIMConstQualifier* parent = findInherited(inherited, qualifier.name);
    const CIMFlavor& baseFlavor = parent ? parent->getFlavor() : declaration->getFlavor();
    FlavorChoice base = FlavorChoice::of(baseFlavor);
    CIMFlavor flavor = applyFlavorKeywords(baseFlavor, qualifier.flavors, qualifier.location,
                                           "qualifier " + qualifier.name);
    if (!base.overridable && writesEnableOverride(qualifier))
        throw MofError(qualifier.location, "qualifier " + qualifier.name +
                                               " has flavor DisableOverride and cannot be made "
                                               "overridable on " +
                                               element.description);
    if (parent && !base.overridable && base.toSubclass && !(parent->getValue() == value))
        throw MofError(qualifier.location,
                       "qualifier " + qualifier.name + " on " + element.description +
                           " changes the inherited value, but it has flavor DisableOverride");
    return CIMQualifier(declaration->getName(), value, flavor);
}

} // namespace ksv::mof
