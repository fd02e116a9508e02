#include "mof_compiler/ClassBuilder.h"

#include <optional>
#include <set>

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>

#include "mof_compiler/MofValues.h"
#include "mof_compiler/QualifierResolver.h"

namespace ksv::mof {

using namespace Pegasus;

namespace {

const ast::Qualifier* findWritten(const std::vector<ast::Qualifier>& qualifiers, const char* name) {
    for (const ast::Qualifier& qualifier : qualifiers) {
        if (foldName(qualifier.name) == foldName(name))
            return &qualifier;
    }
    return nullptr;
}

// True when [Association] (or Association(true)) is written on the class.
bool declaresAssociation(const ast::Class& declaration) {
    const ast::Qualifier* written = findWritten(declaration.qualifiers, "Association");
    if (written == nullptr)
        return false;
    return !written->value ||
           (written->value->kind == ast::Literal::Kind::Boolean && written->value->boolean);
}

template <typename Element>
void addQualifiers(Element& element, const std::vector<CIMQualifier>& qualifiers) {
    for (const CIMQualifier& qualifier : qualifiers)
        element.addQualifier(qualifier);
}

class ClassResolution {
public:
    ClassResolution(const NamespaceStore& store, const ast::Class& declaration)
        : _store(store), _declaration(declaration), _resolver(store), _superClass(findSuperClass()),
          _isAssociation(declaresAssociation(declaration) ||
                         (_superClass != nullptr && _superClass->isAssociation())) {}

    CIMClass run() {
        CIMClass result(CIMName(_declaration.name.c_str()),
                        _superClass ? _superClass->getClassName() : CIMName());
        addClassQualifiers(result);
        std::vector<CIMProperty> properties = ownProperties();
        std::vector<CIMMethod> methods = ownMethods();
        addInheritedFeatures(result);
        for (const CIMProperty& property : properties)
            result.addProperty(property);
        for (const CIMMethod& method : methods)
            result.addMethod(method);
        return result;
    }

private:
    const NamespaceStore& _store;
    const ast::Class& _declaration;
    QualifierResolver _resolver;
    const CIMClass* _superClass;
    bool _isAssociation;

    const CIMClass* findSuperClass() const {
        if (_declaration.superClass.empty())
            return nullptr;
        const CIMClass* superClass = _store.findClass(_declaration.superClass);
        if (superClass == nullptr)
            throw MofError(_declaration.location, "superclass " + _declaration.superClass +
                                                      " of class " + _declaration.name +
                                                      " is not defined in namespace " +
                                                      utf8(_store.name.getString()));
        return superClass;
    }

    std::string describe(const char* kind, const std::string& name) const {
        return std::string(kind) + " " + _declaration.name + "." + name;
    }

    void addClassQualifiers(CIMClass& result) const {
        QualifiedElement element{_isAssociation ? CIMScope::ASSOCIATION : CIMScope::CLASS,
                                 _isAssociation ? "association" : "class",
                                 "class " + _declaration.name};
        std::vector<CIMConstQualifier> inherited;
        if (_superClass != nullptr)
            inherited = qualifiersOf(*_superClass);
        addQualifiers(result, _resolver.resolve(_declaration.qualifiers, element, inherited));
    }

    // Inherited properties and methods that this class does not override,
    // in the superclass's order.
    void addInheritedFeatures(CIMClass& result) const {
        if (_superClass == nullptr)
            return;
        for (Uint32 i = 0; i < _superClass->getPropertyCount(); ++i) {
            CIMConstProperty inherited = _superClass->getProperty(i);
            if (!declaresProperty(inherited.getName())) {
                CIMProperty copy = inherited.clone();
                copy.setPropagated(true);
                result.addProperty(copy);
            }
        }
        for (Uint32 i = 0; i < _superClass->getMethodCount(); ++i) {
            CIMConstMethod inherited = _superClass->getMethod(i);
            if (!declaresMethod(inherited.getName())) {
                CIMMethod copy = inherited.clone();
                copy.setPropagated(true);
                result.addMethod(copy);
            }
        }
    }

    bool declaresProperty(const CIMName& name) const {
        for (const ast::Property& property : _declaration.properties) {
            if (foldName(property.name) == foldName(name))
                return true;
        }
        return false;
    }

    bool declaresMethod(const CIMName& name) const {
        for (const ast::Method& method : _declaration.methods) {
            if (foldName(method.name) == foldName(name))
                return true;
        }
        return false;
    }

    // An element of the class that redefines an inherited one must say so
    // with Override, and Override may only name an inherited element.
    void checkOverride(const std::vector<ast::Qualifier>& qualifiers, const char* kind,
                       const std::string& name, bool inherits,
                       const SourceLocation& location) const {
        const ast::Qualifier* written = findWritten(qualifiers, "Override");
        if (!inherits) {
            if (written != nullptr)
                throw MofError(written->location,
                               describe(kind, name) + " is marked Override, but no superclass of " +
                                   _declaration.name + " has a " + kind + " named " + name);
            return;
        }
        if (written == nullptr)
            throw MofError(location, describe(kind, name) + " redefines the inherited " + kind +
                                         " without the Override qualifier");
        if (written->value && written->value->kind == ast::Literal::Kind::String &&
            foldName(written->value->text) != foldName(name))
            throw MofError(written->location, "Override on " + describe(kind, name) + " names " +
                                                  written->value->text + " instead of " + name);
    }

    void checkUnique(std::set<std::string>& seen, const std::string& name, const char* kind,
                     const SourceLocation& location) const {
        if (!seen.insert(foldName(name)).second)
            throw MofError(location, describe(kind, name) + " is declared twice");
    }

    // ---- properties ---------------------------------------------------------

    std::vector<CIMProperty> ownProperties() const {
        std::vector<CIMProperty> properties;
        std::set<std::string> seen;
        for (const ast::Property& property : _declaration.properties) {
            checkUnique(seen, property.name, "property", property.location);
            properties.push_back(buildProperty(property));
        }
        return properties;
    }

    std::optional<CIMConstProperty> inheritedProperty(const std::string& name) const {
        if (_superClass == nullptr)
            return std::nullopt;
        Uint32 index = _superClass->findProperty(CIMName(name.c_str()));
        if (index == PEG_NOT_FOUND)
            return std::nullopt;
        return _superClass->getProperty(index);
    }

    CIMProperty buildProperty(const ast::Property& declared) const {
        std::optional<CIMConstProperty> inherited = inheritedProperty(declared.name);
        checkOverride(declared.qualifiers, "property", declared.name, inherited.has_value(),
                      declared.location);
        bool isReference = !declared.type.referenceClass.empty();
        CIMType type = isReference ? CIMTYPE_REFERENCE : *cimTypeFromName(declared.type.name);
        CIMName referenceClass = isReference ? referenceClassOf(declared) : CIMName();
        if (inherited)
            checkSameType(declared, type, referenceClass, *inherited);

        QualifiedElement element{isReference ? CIMScope::REFERENCE : CIMScope::PROPERTY,
                                 isReference ? "reference" : "property",
                                 describe("property", declared.name)};
        std::vector<CIMConstQualifier> inheritedQualifiers;
        if (inherited)
            inheritedQualifiers = qualifiersOf(*inherited);
        std::vector<CIMQualifier> qualifiers =
            _resolver.resolve(declared.qualifiers, element, inheritedQualifiers);

        CIMName origin =
            inherited ? inherited->getClassOrigin() : CIMName(_declaration.name.c_str());
        CIMProperty property(CIMName(declared.name.c_str()), defaultValue(declared, type),
                             declared.type.arraySize, referenceClass, origin, false);
        addQualifiers(property, qualifiers);
        checkKey(declared, property, inherited && hasTrueQualifier(*inherited, "Key"));
        return property;
    }

    CIMName referenceClassOf(const ast::Property& declared) const {
        if (!_isAssociation)
            throw MofError(declared.location, "class " + _declaration.name +
                                                  " is no association but declares reference " +
                                                  declared.name);
        if (declared.type.isArray)
            throw MofError(declared.location, "reference " + declared.name + " cannot be an array");
        return definedClassName(declared.type.referenceClass, declared.location);
    }

    CIMName definedClassName(const std::string& name, const SourceLocation& location) const {
        const CIMClass* referenced = _store.findClass(name);
        if (referenced == nullptr)
            throw MofError(location, "class " + name + " named by a reference in class " +
                                         _declaration.name + " is not defined");
        return referenced->getClassName();
    }

    bool isSameOrSubclass(const CIMName& candidate, const CIMName& ancestor) const {
        for (const CIMClass* current = _store.findClass(utf8(candidate.getString()));
             current != nullptr;
             current = current->getSuperClassName().isNull()
                           ? nullptr
                           : _store.findClass(utf8(current->getSuperClassName().getString()))) {
            if (current->getClassName() == ancestor)
                return true;
        }
        return false;
    }

    void checkSameType(const ast::Property& declared, CIMType type, const CIMName& referenceClass,
                       const CIMConstProperty& inherited) const {
        if (inherited.getType() != type || inherited.isArray() != declared.type.isArray)
            throw MofError(declared.location,
                           describe("property", declared.name) + " is declared " +
                               describeType(type, declared.type.isArray) +
                               " but the inherited property is " +
                               describeType(inherited.getType(), inherited.isArray()));
        if (type == CIMTYPE_REFERENCE &&
            !isSameOrSubclass(referenceClass, inherited.getReferenceClassName()))
            throw MofError(declared.location,
                           describe("reference", declared.name) + " must refer to " +
                               utf8(inherited.getReferenceClassName().getString()) +
                               " or a subclass of it, not " + declared.type.referenceClass);
    }

    CIMValue defaultValue(const ast::Property& declared, CIMType type) const {
        const ast::DataType& dataType = declared.type;
        if (!declared.defaultValue)
            return CIMValue(type, dataType.isArray, dataType.arraySize);
        CIMValue value = literalToValue(*declared.defaultValue, type, dataType.isArray);
        if (dataType.arraySize != 0 && !value.isNull() &&
            value.getArraySize() != dataType.arraySize)
            throw MofError(declared.defaultValue->location,
                           "the default of " + describe("property", declared.name) + " has " +
                               std::to_string(value.getArraySize()) +
                               " elements, its array size is " +
                               std::to_string(dataType.arraySize));
        return value;
    }

    // Keys identify instances: a subclass of a keyed class cannot add keys
    // of its own, and a key holds one value.
    void checkKey(const ast::Property& declared, const CIMProperty& property,
                  bool inheritedKey) const {
        if (!hasTrueQualifier(property, "Key"))
            return;
        if (declared.type.isArray)
            throw MofError(declared.location,
                           "key " + describe("property", declared.name) + " cannot be an array");
        if (!inheritedKey && _superClass != nullptr && _superClass->hasKeys())
            throw MofError(declared.location, "class " + _declaration.name + " adds key property " +
                                                  declared.name + ", but its superclass " +
                                                  _declaration.superClass + " already has keys");
    }

    // ---- methods ------------------------------------------------------------

    std::vector<CIMMethod> ownMethods() const {
        std::vector<CIMMethod> methods;
        std::set<std::string> seen;
        for (const ast::Method& method : _declaration.methods) {
            checkUnique(seen, method.name, "method", method.location);
            methods.push_back(buildMethod(method));
        }
        return methods;
    }

    CIMConstMethod inheritedMethod(const std::string& name) const {
        if (_superClass == nullptr)
            return CIMConstMethod();
        Uint32 index = _superClass->findMethod(CIMName(name.c_str()));
        return index == PEG_NOT_FOUND ? CIMConstMethod() : _superClass->getMethod(index);
    }

    CIMMethod buildMethod(const ast::Method& declared) const {
        CIMConstMethod inherited = inheritedMethod(declared.name);
        bool inherits = !inherited.isUninitialized();
        checkOverride(declared.qualifiers, "method", declared.name, inherits, declared.location);
        CIMType returnType = *cimTypeFromName(declared.returnType);
        if (inherits && inherited.getType() != returnType)
            throw MofError(declared.location, describe("method", declared.name) + " returns " +
                                                  declared.returnType +
                                                  " but the inherited method returns " +
                                                  cimTypeToString(inherited.getType()));
        QualifiedElement element{CIMScope::METHOD, "method", describe("method", declared.name)};
        std::vector<CIMConstQualifier> inheritedQualifiers;
        if (inherits)
            inheritedQualifiers = qualifiersOf(inherited);
        CIMName origin = inherits ? inherited.getClassOrigin() : CIMName(_declaration.name.c_str());
        CIMMethod method(CIMName(declared.name.c_str()), returnType, origin, false);
        addQualifiers(method, _resolver.resolve(declared.qualifiers, element, inheritedQualifiers));
        std::set<std::string> seen;
        for (const ast::Parameter& parameter : declared.parameters) {
            checkUnique(seen, parameter.name, "parameter", parameter.location);
            method.addParameter(buildParameter(parameter, declared, inherited));
        }
        return method;
    }

    CIMParameter buildParameter(const ast::Parameter& declared, const ast::Method& owner,
                                const CIMConstMethod& inheritedMethod) const {
        const ast::DataType& dataType = declared.type;
        bool isReference = !dataType.referenceClass.empty();
        CIMType type = isReference ? CIMTYPE_REFERENCE : *cimTypeFromName(dataType.name);
        CIMName referenceClass =
            isReference ? definedClassName(dataType.referenceClass, declared.location) : CIMName();
        CIMParameter parameter(CIMName(declared.name.c_str()), type, dataType.isArray,
                               dataType.arraySize, referenceClass);
        std::vector<CIMConstQualifier> inheritedQualifiers;
        if (!inheritedMethod.isUninitialized()) {
            Uint32 index = inheritedMethod.findParameter(CIMName(declared.name.c_str()));
            if (index != PEG_NOT_FOUND)
                inheritedQualifiers = qualifiersOf(inheritedMethod.getParameter(index));
        }
        QualifiedElement element{CIMScope::PARAMETER, "parameter",
                                 "parameter " + declared.name + " of " +
                                     describe("method", owner.name)};
        addQualifiers(parameter,
                      _resolver.resolve(declared.qualifiers, element, inheritedQualifiers));
        return parameter;
    }
};

} // namespace

CIMClass buildClass(const NamespaceStore& store, const ast::Class& declaration) {
    return ClassResolution(store, declaration).run();
}

} // namespace ksv::mof
