#include "cimserver/ProviderTable.h"

#include "mof_compiler/NamespaceStore.h"

#include <algorithm>

namespace ksv::server {

using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;

namespace {

std::string providerKey(const std::string& moduleName, const std::string& providerName) {
    return mof::foldName(moduleName) + "/" + mof::foldName(providerName);
}

std::string routeKey(ProviderType type, const std::string& nameSpaceKey, const CIMName& className) {
    return std::to_string(static_cast<int>(type)) + " " + nameSpaceKey + ":" +
           mof::foldName(className);
}

using Libraries = std::map<std::string, std::shared_ptr<const ProviderLibrary>>;

std::shared_ptr<const ProviderLibrary> openModule(const std::string& location,
                                                  const std::vector<std::string>& directories,
                                                  const BuiltInModules& builtIns) {
    auto builtIn = builtIns.find(location);
    if (builtIn != builtIns.end())
        return std::make_shared<const ProviderLibrary>("built-in " + location, builtIn->second);
    return std::make_shared<const ProviderLibrary>(location, directories);
}

} // namespace

ProviderTable::ProviderTable(const ProviderRegistration& registration,
                             const std::vector<std::string>& moduleDirectories,
                             Pegasus::CIMOMHandle cimom,
                             const std::function<void(const std::string&)>& warn,
                             const BuiltInModules& builtIns) {
    addProviders(registration, moduleDirectories, std::move(cimom), warn, builtIns);
    addCapabilities(registration, warn);
}

ProviderTable::~ProviderTable() = default;

void ProviderTable::addProviders(const ProviderRegistration& registration,
                                 const std::vector<std::string>& moduleDirectories,
                                 Pegasus::CIMOMHandle cimom,
                                 const std::function<void(const std::string&)>& warn,
                                 const BuiltInModules& builtIns) {
    std::map<std::string, const ModuleRegistration*> modules;
    for (const ModuleRegistration& module : registration.modules)
        modules.emplace(mof::foldName(module.name), &module);
    Libraries libraries;
    std::map<std::string, std::string> loadErrors;
    for (const ProviderNameRegistration& provider : registration.providers) {
        const std::string moduleKey = mof::foldName(provider.moduleName);
        auto module = modules.find(moduleKey);
        if (module == modules.end()) {
            warn("provider " + provider.providerName + " names an unregistered module " +
                 provider.moduleName);
            continue;
        }
        if (libraries.count(moduleKey) == 0 && loadErrors.count(moduleKey) == 0) {
            try {
                libraries.emplace(
                    moduleKey, openModule(module->second->location, moduleDirectories, builtIns));
            } catch (const ModuleLoadError& error) {
                loadErrors.emplace(moduleKey, error.what());
                warn("provider module " + provider.moduleName +
                     " cannot be loaded: " + error.what());
            }
        }
        auto library = libraries.find(moduleKey);
        _providers.emplace(
            providerKey(provider.moduleName, provider.providerName),
            std::make_unique<HostedProvider>(provider.providerName, provider.moduleName,
                                             library != libraries.end() ? library->second : nullptr,
                                             loadErrors[moduleKey], cimom));
    }
}

void ProviderTable::addCapabilities(const ProviderRegistration& registration,
                                    const std::function<void(const std::string&)>& warn) {
    for (const CapabilityRegistration& capability : registration.capabilities) {
        auto provider =
            _providers.find(providerKey(capability.moduleName, capability.providerName));
        if (provider == _providers.end()) {
            warn("capability for " + mof::utf8(capability.className.getString()) +
                 " names an unregistered provider " + capability.providerName);
            continue;
        }
        for (const CIMNamespaceName& nameSpace : capability.namespaces) {
            for (ProviderType type : capability.types) {
                const std::string nameSpaceKey = mof::foldName(nameSpace);
                const std::string key = routeKey(type, nameSpaceKey, capability.className);
                if (_index.count(key) != 0) {
                    warn("class " + mof::utf8(capability.className.getString()) +
                         " has more than one provider; " + capability.providerName + " is ignored");
                    continue;
                }
                _index.emplace(key, _entries.size());
                _entries.push_back({type,
                                    nameSpaceKey,
                                    {provider->second.get(), capability.className},
                                    capability.supportedMethods});
            }
        }
    }
}

const ProviderTable::Entry* ProviderTable::findEntry(ProviderType type,
                                                     const CIMNamespaceName& nameSpace,
                                                     const CIMName& className) const {
    auto found = _index.find(routeKey(type, mof::foldName(nameSpace), className));
    return found == _index.end() ? nullptr : &_entries[found->second];
}

HostedProvider* ProviderTable::find(ProviderType type, const CIMNamespaceName& nameSpace,
                                    const CIMName& className) const {
    const Entry* entry = findEntry(type, nameSpace, className);
    return entry != nullptr ? entry->route.provider : nullptr;
}

HostedProvider* ProviderTable::findMethodProvider(const CIMNamespaceName& nameSpace,
                                                  const CIMName& className,
                                                  const CIMName& methodName) const {
    const Entry* entry = findEntry(ProviderType::Method, nameSpace, className);
    if (entry == nullptr)
        return nullptr;
    if (!entry->supportedMethods)
        return entry->route.provider;
    const std::vector<CIMName>& methods = *entry->supportedMethods;
    bool admitted = std::any_of(methods.begin(), methods.end(),
                                [&](const CIMName& name) { return name.equal(methodName); });
    return admitted ? entry->route.provider : nullptr;
}

std::vector<ProviderRoute> ProviderTable::routes(ProviderType type,
                                                 const CIMNamespaceName& nameSpace) const {
    const std::string nameSpaceKey = mof::foldName(nameSpace);
    std::vector<ProviderRoute> result;
    for (const Entry& entry : _entries) {
        if (entry.type == type && entry.nameSpaceKey == nameSpaceKey)
            result.push_back(entry.route);
    }
    return result;
}

std::vector<std::string> ProviderTable::terminateAll() {
    std::vector<std::string> stillRunning;
    for (auto& [key, provider] : _providers) {
        if (!provider->terminate())
            stillRunning.push_back(provider->name());
    }
    return stillRunning;
}

} // namespace ksv::server
