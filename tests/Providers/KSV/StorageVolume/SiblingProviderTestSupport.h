// What the sibling provider tests share: providers created through their module's entry point
// and initialized against the harness, the read operations run through recording handlers,
// and compact renderings of paths, properties, errors and the library's calls.
#ifndef KSV_TESTS_SIBLINGPROVIDERTESTSUPPORT_H
#define KSV_TESTS_SIBLINGPROVIDERTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include "ProviderHarness.h"
#include "ProviderModule.h"
#include "RecordingHandlers.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ksv::test {

using namespace Pegasus;
using Strings = std::vector<std::string>;

inline std::string text(const String& value) {
    return std::string(value.getCString());
}

// "Class Key=value ..." with the keys sorted by name; hosts and namespaces are checked apart.
inline std::string render(const CIMObjectPath& path) {
    std::map<std::string, std::string> keys;
    for (Uint32 i = 0; i < path.getKeyBindings().size(); i++) {
        const CIMKeyBinding& key = path.getKeyBindings()[i];
        keys[text(key.getName().getString())] = text(key.getValue());
    }
    std::string rendered = text(path.getClassName().getString());
    for (const auto& [name, value] : keys)
        rendered += " " + name + "=" + value;
    return rendered;
}

inline Strings render(const std::vector<CIMObjectPath>& paths) {
    Strings rendered;
    for (const CIMObjectPath& path : paths)
        rendered.push_back(render(path));
    return rendered;
}

// A property's value as text: "absent", "null", or the value (arrays as the values each followed by
// a blank).
inline std::string valueOf(const CIMInstance& instance, const char* name) {
    const Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND)
        return "absent";
    const CIMValue value = instance.getProperty(index).getValue();
    return value.isNull() ? "null" : text(value.toString());
}

inline CIMObjectPath pathOf(const std::string& className,
                            const std::vector<std::pair<std::string, std::string>>& keys,
                            const std::string& host = "elsewhere.example.net") {
    Array<CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(CIMKeyBinding(name.c_str(), value.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(host.c_str(), "root/ksv", className.c_str(), bindings);
}

// "CIM_ERR_...: <message>" of the CIM error the operation throws, or what else happened.
inline std::string cimErrorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const CIMException& error) {
        return std::string(cimStatusCodeToString(error.getCode())) + ": " +
               text(error.getMessage());
    } catch (...) {
        return "another exception";
    }
    return "no exception";
}

// Library calls since the last ksvsim::clearCalls(), "function(argument)".
inline Strings arrayCalls() {
    Strings calls;
    for (const ksvsim::CallRecord& call : ksvsim::calls())
        calls.push_back(call.function + "(" + call.argument + ")");
    return calls;
}

// A provider made by a module's PegasusCreateProvider and initialized against the harness as
// the CIM server does it; terminated (it deletes itself) with this object.
template <typename Provider>
class ModuleProvider {
public:
    ModuleProvider(const std::string& modulePath, const char* providerName,
                   ProviderHarness& harness)
        : _module(modulePath),
          _provider(dynamic_cast<Provider*>(_module.createProvider(providerName))) {
        if (_provider == nullptr)
            throw std::runtime_error(std::string(providerName) + " is not served");
        CIMOMHandle cimom = harness.cimom();
        _provider->initialize(cimom);
    }
    ~ModuleProvider() { _provider->terminate(); }
    ModuleProvider(const ModuleProvider&) = delete;
    ModuleProvider& operator=(const ModuleProvider&) = delete;
    Provider* operator->() const { return _provider; }

private:
    ProviderModule _module;
    Provider* _provider;
};

struct Answer {
    std::vector<CIMInstance> instances;
    std::vector<CIMObjectPath> paths;
    Strings events;
};

inline Answer enumerate(CIMInstanceProvider& provider, const std::string& className,
                        const std::string& user = "admin",
                        const CIMPropertyList& propertyList = CIMPropertyList()) {
    RecordingInstanceHandler handler;
    provider.enumerateInstances(ProviderHarness::context(user),
                                CIMObjectPath(String(), "root/ksv", className.c_str()), false,
                                false, propertyList, handler);
    std::vector<CIMObjectPath> paths;
    for (const CIMInstance& instance : handler.delivered)
        paths.push_back(instance.getPath());
    return {handler.delivered, paths, handler.events()};
}

inline Answer enumerateNames(CIMInstanceProvider& provider, const std::string& className,
                             const std::string& user = "admin") {
    RecordingObjectPathHandler handler;
    provider.enumerateInstanceNames(ProviderHarness::context(user),
                                    CIMObjectPath(String(), "root/ksv", className.c_str()),
                                    handler);
    return {{}, handler.delivered, handler.events()};
}

inline Answer get(CIMInstanceProvider& provider, const CIMObjectPath& path,
                  const std::string& user = "admin",
                  const CIMPropertyList& propertyList = CIMPropertyList()) {
    RecordingInstanceHandler handler;
    provider.getInstance(ProviderHarness::context(user), path, false, false, propertyList, handler);
    return {handler.delivered, {}, handler.events()};
}

const Strings kDeliveredOnce = {"processing", "deliver", "complete"};

} // namespace ksv::test

#endif
