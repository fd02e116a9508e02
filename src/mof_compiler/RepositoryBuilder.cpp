#include "mof_compiler/RepositoryBuilder.h"

#include <array>
#include <strings.h>
#include <utility>

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMScope.h>

#include "mof_compiler/ClassBuilder.h"
#include "mof_compiler/InstanceBuilder.h"
#include "mof_compiler/MofValues.h"
#include "mof_compiler/QualifierResolver.h"

namespace ksv::mof {

using namespace Pegasus;

namespace {

CIMScope scopeOf(const ast::QualifierDeclaration& declaration) {
    static const std::array<std::pair<const char*, const CIMScope*>, 8> keywords = {{
        {"class", &CIMScope::CLASS},
        {"association", &CIMScope::ASSOCIATION},
        {"indication", &CIMScope::INDICATION},
        {"property", &CIMScope::PROPERTY},
        {"reference", &CIMScope::REFERENCE},
        {"method", &CIMScope::METHOD},
        {"parameter", &CIMScope::PARAMETER},
        {"any", &CIMScope::ANY},
    }};
    CIMScope scope;
    for (const std::string& word : declaration.scopes) {
        bool known = false;
        for (const auto& [keyword, value] : keywords) {
            if (strcasecmp(keyword, word.c_str()) == 0) {
                scope.addScope(*value);
                known = true;
            }
        }
        if (!known)
            throw MofError(declaration.location, "unknown scope '" + word +
                                                     "' in the declaration of qualifier " +
                                                     declaration.name);
    }
    return scope;
}

CIMQualifierDecl qualifierDeclarationOf(const ast::QualifierDeclaration& declaration) {
    const ast::DataType& type = declaration.type;
    CIMType cimType = *cimTypeFromName(type.name);
    CIMValue value = declaration.defaultValue
                         ? literalToValue(*declaration.defaultValue, cimType, type.isArray)
                         : CIMValue(cimType, type.isArray, type.arraySize);
    // What the declaration does not say stays EnableOverride, ToSubclass.
    CIMFlavor flavor =
        applyFlavorKeywords(CIMFlavor::DEFAULTS, declaration.flavors, declaration.location,
                            "the declaration of qualifier " + declaration.name);
    return CIMQualifierDecl(CIMName(declaration.name.c_str()), value, scopeOf(declaration), flavor,
                            type.arraySize);
}

[[noreturn]] void alreadyDefined(const SourceLocation& location, const std::string& what,
                                 const SourceLocation& first) {
    throw MofError(location, what + " is already defined at " + first.toString());
}

} // namespace

NamespaceStore& RepositoryBuilder::storeFor(const CIMNamespaceName& nameSpace) {
    NamespaceStore& store = _namespaces[foldName(nameSpace)];
    if (store.name.isNull())
        store.name = nameSpace;
    return store;
}

void RepositoryBuilder::declareQualifier(const CIMNamespaceName& nameSpace,
                                         const ast::QualifierDeclaration& declaration) {
    NamespaceStore& store = storeFor(nameSpace);
    std::string key = foldName(declaration.name);
    auto existing = store.qualifiers.find(key);
    if (existing != store.qualifiers.end())
        alreadyDefined(declaration.location, "qualifier " + declaration.name,
                       existing->second.location);
    store.qualifiers.emplace(
        key, Defined<CIMQualifierDecl>{qualifierDeclarationOf(declaration), declaration.location});
}

void RepositoryBuilder::defineClass(const CIMNamespaceName& nameSpace,
                                    const ast::Class& declaration) {
    NamespaceStore& store = storeFor(nameSpace);
    std::string key = foldName(declaration.name);
    auto existing = store.classes.find(key);
    if (existing != store.classes.end())
        alreadyDefined(declaration.location, "class " + declaration.name,
                       existing->second.location);
    CIMClass resolved = buildClass(store, declaration);
    store.classes.emplace(key, Defined<CIMClass>{resolved, declaration.location});
    store.classOrder.push_back(key);
    if (!declaration.superClass.empty())
        store.subclasses[foldName(declaration.superClass)].push_back(key);
}

void RepositoryBuilder::createInstance(const CIMNamespaceName& nameSpace,
                                       const ast::Instance& declaration) {
    NamespaceStore& store = storeFor(nameSpace);
    CIMInstance instance = buildInstance(store, declaration);
    for (const auto& existing : store.instances) {
        if (existing.definition.getPath().identical(instance.getPath()))
            alreadyDefined(declaration.location, "instance " + utf8(instance.getPath().toString()),
                           existing.location);
    }
    if (!declaration.alias.empty() &&
        !store.aliases.emplace(foldName(declaration.alias), instance.getPath()).second)
        throw MofError(declaration.location, "alias $" + declaration.alias + " is already used");
    store.instances.push_back(Defined<CIMInstance>{instance, declaration.location});
}

ClassRepository RepositoryBuilder::snapshot() const {
    return ClassRepository(_namespaces);
}

} // namespace ksv::mof
