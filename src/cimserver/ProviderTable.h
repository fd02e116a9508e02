// The hosted providers and which of them serves what: by provider type, namespace and class,
// as the registration's capabilities say.
#ifndef KSV_CIMSERVER_PROVIDERTABLE_H
#define KSV_CIMSERVER_PROVIDERTABLE_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include "cimserver/HostedProvider.h"
#include "cimserver/ProviderRegistration.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ksv::server {

// A provider serving one class.
struct ProviderRoute {
    HostedProvider* provider = nullptr;
    Pegasus::CIMName className;
};

// Modules built into the server, by the location their registration gives.
using BuiltInModules = std::map<std::string, ProviderLibrary::Factory>;

class ProviderTable {
public:
    // Opens every registered module from `moduleDirectories`, unless it is built in. A module
    // that cannot be opened is reported through `warn`; its providers then fail each call with
    // the reason.
    ProviderTable(const ProviderRegistration& registration,
                  const std::vector<std::string>& moduleDirectories, Pegasus::CIMOMHandle cimom,
                  const std::function<void(const std::string&)>& warn,
                  const BuiltInModules& builtIns = {});
    ~ProviderTable();
    ProviderTable(const ProviderTable&) = delete;
    ProviderTable& operator=(const ProviderTable&) = delete;

    // The provider of that type registered for exactly that class; null when there is none.
    HostedProvider* find(ProviderType type, const Pegasus::CIMNamespaceName& nameSpace,
                         const Pegasus::CIMName& className) const;

    // The method provider of the class, if its capability admits the method.
    HostedProvider* findMethodProvider(const Pegasus::CIMNamespaceName& nameSpace,
                                       const Pegasus::CIMName& className,
                                       const Pegasus::CIMName& methodName) const;

    // Every class of the namespace that has a provider of that type, in registration order.
    std::vector<ProviderRoute> routes(ProviderType type,
                                      const Pegasus::CIMNamespaceName& nameSpace) const;

    // Terminates every provider; the names of those that a running call kept alive.
    std::vector<std::string> terminateAll();

private:
    struct Entry {
        ProviderType type;
        std::string nameSpaceKey;
        ProviderRoute route;
        std::optional<std::vector<Pegasus::CIMName>> supportedMethods;
    };

    void addProviders(const ProviderRegistration& registration,
                      const std::vector<std::string>& moduleDirectories, Pegasus::CIMOMHandle cimom,
                      const std::function<void(const std::string&)>& warn,
                      const BuiltInModules& builtIns);
    void addCapabilities(const ProviderRegistration& registration,
                         const std::function<void(const std::string&)>& warn);
    const Entry* findEntry(ProviderType type, const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) const;

    // Keyed by module name and provider name, folded.
    std::map<std::string, std::unique_ptr<HostedProvider>> _providers;
    std::vector<Entry> _entries;
    // Type, folded namespace and folded class name -> index into _entries.
    std::map<std::string, std::size_t> _index;
};

} // namespace ksv::server

#endif
