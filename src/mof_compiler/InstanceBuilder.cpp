#include "mof_compiler/InstanceBuilder.h"

#include <map>

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMProperty.h>

#include "mof_compiler/MofValues.h"

namespace ksv::mof {

using namespace Pegasus;

namespace {

class InstanceResolution {
public:
    InstanceResolution(const NamespaceStore& store, const ast::Instance& declaration)
        : _store(store), _declaration(declaration), _class(instantiableClass()) {}

    CIMInstance run() const {
        std::map<std::string, CIMValue> values = givenValues();
        CIMInstance instance(_class.getClassName());
        for (Uint32 i = 0; i < _class.getPropertyCount(); ++i)
            instance.addProperty(instanceProperty(_class.getProperty(i), values));
        checkKeys(instance);
        CIMObjectPath path = instance.buildPath(_class);
        path.setNameSpace(_store.name);
        instance.setPath(path);
        return instance;
    }

private:
    const NamespaceStore& _store;
    const ast::Instance& _declaration;
    const CIMClass& _class;

    const CIMClass& instantiableClass() const {
        const CIMClass* found = _store.findClass(_declaration.className);
        if (found == nullptr)
            throw MofError(_declaration.location, "instance of class " + _declaration.className +
                                                      ", which is not defined in namespace " +
                                                      utf8(_store.name.getString()));
        if (found->isAbstract())
            throw MofError(_declaration.location, "class " + _declaration.className +
                                                      " is abstract and cannot have instances");
        return *found;
    }

    CIMObjectPath resolveAlias(const ast::Literal& alias) const {
        auto found = _store.aliases.find(foldName(alias.text));
        if (found == _store.aliases.end())
            throw MofError(alias.location, "alias $" + alias.text + " is not defined");
        return found->second;
    }

    // The values written in the declaration, keyed by folded property name.
    std::map<std::string, CIMValue> givenValues() const {
        std::map<std::string, CIMValue> values;
        AliasResolver aliases = [this](const ast::Literal& alias) { return resolveAlias(alias); };
        for (const ast::PropertyValue& given : _declaration.values) {
            Uint32 index = _class.findProperty(CIMName(given.name.c_str()));
            if (index == PEG_NOT_FOUND)
                throw MofError(given.location, "class " + _declaration.className +
                                                   " has no property " + given.name);
            CIMConstProperty property = _class.getProperty(index);
            CIMValue value =
                literalToValue(given.value, property.getType(), property.isArray(), aliases);
            if (property.getArraySize() != 0 && !value.isNull() &&
                value.getArraySize() != property.getArraySize())
                throw MofError(given.location, "property " + given.name + " takes exactly " +
                                                   std::to_string(property.getArraySize()) +
                                                   " elements");
            if (!values.emplace(foldName(given.name), value).second)
                throw MofError(given.location, "property " + given.name + " is given twice");
        }
        return values;
    }

    static CIMProperty instanceProperty(const CIMConstProperty& declared,
                                        const std::map<std::string, CIMValue>& values) {
        auto given = values.find(foldName(declared.getName()));
        bool isGiven = given != values.end();
        return CIMProperty(declared.getName(), isGiven ? given->second : declared.getValue(),
                           declared.getArraySize(), declared.getReferenceClassName(),
                           declared.getClassOrigin(), !isGiven);
    }

    void checkKeys(const CIMInstance& instance) const {
        Array<CIMName> keys;
        _class.getKeyNames(keys);
        for (Uint32 i = 0; i < keys.size(); ++i) {
            CIMConstProperty key = instance.getProperty(instance.findProperty(keys[i]));
            if (key.getValue().isNull())
                throw MofError(_declaration.location, "instance of " + _declaration.className +
                                                          " has no value for key property " +
                                                          utf8(keys[i].getString()));
        }
    }
};

} // namespace

CIMInstance buildInstance(const NamespaceStore& store, const ast::Instance& declaration) {
    return InstanceResolution(store, declaration).run();
}

} // namespace ksv::mof
