// The provider registration as the repository holds it: PG_ProviderModule, PG_Provider and
// PG_ProviderCapabilities instances, read once at start-up.
#ifndef KSV_CIMSERVER_PROVIDERREGISTRATION_H
#define KSV_CIMSERVER_PROVIDERREGISTRATION_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>

#include "mof_compiler/ClassRepository.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ksv::server {

// Values of PG_ProviderCapabilities.ProviderType that this server hosts.
enum class ProviderType : Pegasus::Uint16 { Instance = 2, Association = 3, Method = 5 };

struct ModuleRegistration {
    std::string name;
    // The library's name without the "lib" prefix and the ".so" suffix.
    std::string location;
};

struct ProviderNameRegistration {
    std::string moduleName;
    std::string providerName;
};

struct CapabilityRegistration {
    std::string moduleName;
    std::string providerName;
    Pegasus::CIMName className;
    std::vector<Pegasus::CIMNamespaceName> namespaces;
    std::vector<ProviderType> types;
    // Null: every method of the class.
    std::optional<std::vector<Pegasus::CIMName>> supportedMethods;

    bool serves(ProviderType type) const;
};

struct ProviderRegistration {
    std::vector<ModuleRegistration> modules;
    std::vector<ProviderNameRegistration> providers;
    std::vector<CapabilityRegistration> capabilities;
};

// A registration instance that lacks a required property or holds a value of the wrong type.
class RegistrationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads the registration instances of `nameSpace`. A namespace or class that is absent holds
// no registration; unknown provider types are ignored, since this server hosts only some.
ProviderRegistration readProviderRegistration(const mof::ClassRepository& repository,
                                              const Pegasus::CIMNamespaceName& nameSpace);

} // namespace ksv::server

#endif
