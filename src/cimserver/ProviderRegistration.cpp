#include "cimserver/ProviderRegistration.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include "mof_compiler/NamespaceStore.h"

#include <algorithm>

namespace ksv::server {

using Pegasus::Array;
using Pegasus::CIMConstInstance;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMValue;
using Pegasus::String;
using Pegasus::Uint16;
using Pegasus::Uint32;

namespace {

std::string describe(const CIMConstInstance& instance) {
    return mof::utf8(instance.getPath().toString());
}

// The value of a property, or nothing when the instance lacks it or it is null.
std::optional<CIMValue> valueOf(const CIMConstInstance& instance, const char* propertyName) {
    Uint32 index = instance.findProperty(CIMName(propertyName));
    if (index == PEG_NOT_FOUND)
        return std::nullopt;
    CIMValue value = instance.getProperty(index).getValue();
    if (value.isNull())
        return std::nullopt;
    return value;
}

template <typename T>
std::optional<T> typedValueOf(const CIMConstInstance& instance, const char* propertyName) {
    std::optional<CIMValue> value = valueOf(instance, propertyName);
    if (!value)
        return std::nullopt;
    T typed;
    try {
        value->get(typed);
    } catch (const Pegasus::Exception&) {
        throw RegistrationError(describe(instance) + ": property " + propertyName +
                                " has the wrong type");
    }
    return typed;
}

std::string requiredString(const CIMConstInstance& instance, const char* propertyName) {
    std::optional<String> value = typedValueOf<String>(instance, propertyName);
    if (!value || value->size() == 0)
        throw RegistrationError(describe(instance) + ": property " + propertyName + " is required");
    return mof::utf8(*value);
}

Array<CIMInstance> instancesOf(const mof::ClassRepository& repository,
                               const CIMNamespaceName& nameSpace, const char* className) {
    if (!repository.nameSpaceExists(nameSpace) ||
        !repository.isSubclassOf(nameSpace, CIMName(className), CIMName(className)))
        return Array<CIMInstance>();
    return repository.enumerateInstances(nameSpace, CIMName(className));
}

std::vector<ProviderType> hostedTypes(const Array<Uint16>& values) {
    std::vector<ProviderType> types;
    for (Uint32 i = 0; i < values.size(); ++i) {
        auto type = static_cast<ProviderType>(values[i]);
        if (type == ProviderType::Instance || type == ProviderType::Association ||
            type == ProviderType::Method)
            types.push_back(type);
    }
    return types;
}

std::optional<std::vector<CIMName>> methodNames(const CIMConstInstance& instance) {
    std::optional<Array<String>> names = typedValueOf<Array<String>>(instance, "SupportedMethods");
    if (!names)
        return std::nullopt;
    std::vector<CIMName> result;
    for (Uint32 i = 0; i < names->size(); ++i)
        result.emplace_back((*names)[i]);
    return result;
}

CapabilityRegistration readCapability(const CIMConstInstance& instance) {
    CapabilityRegistration capability;
    capability.moduleName = requiredString(instance, "ProviderModuleName");
    capability.providerName = requiredString(instance, "ProviderName");
    capability.className = CIMName(requiredString(instance, "ClassName").c_str());
    std::optional<Array<String>> namespaces = typedValueOf<Array<String>>(instance, "Namespaces");
    if (!namespaces || namespaces->size() == 0)
        throw RegistrationError(describe(instance) + ": property Namespaces is required");
    for (Uint32 i = 0; i < namespaces->size(); ++i)
        capability.namespaces.emplace_back((*namespaces)[i]);
    std::optional<Array<Uint16>> types = typedValueOf<Array<Uint16>>(instance, "ProviderType");
    if (!types)
        throw RegistrationError(describe(instance) + ": property ProviderType is required");
    capability.types = hostedTypes(*types);
    capability.supportedMethods = methodNames(instance);
    return capability;
}

} // namespace

bool CapabilityRegistration::serves(ProviderType type) const {
    return std::find(types.begin(), types.end(), type) != types.end();
}

ProviderRegistration readProviderRegistration(const mof::ClassRepository& repository,
                                              const CIMNamespaceName& nameSpace) {
    ProviderRegistration registration;
    Array<CIMInstance> modules = instancesOf(repository, nameSpace, "PG_ProviderModule");
    for (Uint32 i = 0; i < modules.size(); ++i) {
        registration.modules.push_back(
            {requiredString(modules[i], "Name"), requiredString(modules[i], "Location")});
    }
    Array<CIMInstance> providers = instancesOf(repository, nameSpace, "PG_Provider");
    for (Uint32 i = 0; i < providers.size(); ++i) {
        registration.providers.push_back({requiredString(providers[i], "ProviderModuleName"),
                                          requiredString(providers[i], "Name")});
    }
    Array<CIMInstance> capabilities = instancesOf(repository, nameSpace, "PG_ProviderCapabilities");
    for (Uint32 i = 0; i < capabilities.size(); ++i)
        registration.capabilities.push_back(readCapability(capabilities[i]));
    return registration;
}

} // namespace ksv::server
