// What the disk instance provider tests share: a provider initialized against the harness over
// a chosen array, the read operations run through recording handlers, and compact renderings of
// instances, paths, errors and the library's call log.
#ifndef KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H
#define KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include "ProviderHarness.h"
#include "RecordingHandlers.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace ksv::test {

using namespace Pegasus;
using Strings = std::vector<std::string>;

inline std::string text(const String& value) {
    return std::string(value.getCString());
}

// "Name=value ..." of the named properties: "null" for a null value, arrays as "[a b]".
// Property types are fixed by the class, so the text identifies the value.
inline std::string render(const CIMInstance& instance, const std::string& names) {
    std::istringstream words(names);
    std::string name;
    std::string rendered;
    while (words >> name) {
        const Uint32 index = instance.findProperty(CIMName(name.c_str()));
        std::string value = "absent";
        if (index != PEG_NOT_FOUND) {
            const CIMValue cimValue = instance.getProperty(index).getValue();
            value = cimValue.isNull() ? "null" : text(cimValue.toString());
            if (!cimValue.isNull() && cimValue.isArray())
                value = "[" + value.substr(0, value.empty() ? 0 : value.size() - 1) + "]";
        }
        rendered += (rendered.empty() ? "" : " ") + name + "=" + value;
    }
    return rendered;
}

// "host root/ksv:Class Key=value ..." with the keys sorted by name.
inline std::string render(const CIMObjectPath& path) {
    std::map<std::string, std::string> keys;
    for (Uint32 i = 0; i < path.getKeyBindings().size(); i++) {
        const CIMKeyBinding& key = path.getKeyBindings()[i];
        keys[text(key.getName().getString())] = text(key.getValue());
    }
    std::string rendered = text(path.getHost()) + " " + text(path.getNameSpace().getString()) +
                           ":" + text(path.getClassName().getString());
    for (const auto& [name, value] : keys)
        rendered += " " + name + "=" + value;
    return rendered;
}

inline CIMObjectPath pathOf(const std::string& className,
                            const std::vector<std::pair<std::string, std::string>>& keys,
                            const std::string& host = "ksv-map.example.net") {
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

// Library calls since the last clearArrayCalls(), "function(argument)".
inline Strings arrayCalls() {
    Strings calls;
    for (const ksvsim::CallRecord& call : ksvsim::calls())
        calls.push_back(call.function + "(" + call.argument + ")");
    return calls;
}

// A provider initialized against the harness's server as the CIM server does it, and
// terminated (it deletes itself) with this object.
template <typename Provider>
class InitializedProvider {
public:
    explicit InitializedProvider(ProviderHarness& harness, Provider* created = new Provider)
        : _provider(created) {
        CIMOMHandle cimom = harness.cimom();
        _provider->initialize(cimom);
    }
    ~InitializedProvider() { _provider->terminate(); }
    InitializedProvider(const InitializedProvider&) = delete;
    InitializedProvider& operator=(const InitializedProvider&) = delete;
    Provider* operator->() const { return _provider; }
    operator Provider*() const { return _provider; }

private:
    Provider* _provider;
};

// The read operations on behalf of a user, with the handler's events.
struct Answer {
    std::vector<CIMInstance> instances;
    std::vector<CIMObjectPath> paths;
    Strings events;
};

inline Answer enumerate(CIMInstanceProvider* provider, const std::string& className,
                        const std::string& user = "admin") {
    RecordingInstanceHandler handler;
    provider->enumerateInstances(ProviderHarness::context(user),
                                 CIMObjectPath(String(), "root/ksv", className.c_str()), false,
                                 false, CIMPropertyList(), handler);
    std::vector<CIMObjectPath> paths;
    for (const CIMInstance& instance : handler.delivered)
        paths.push_back(instance.getPath());
    return {handler.delivered, paths, handler.events()};
}

inline Answer enumerateNames(CIMInstanceProvider* provider, const std::string& className,
                             const std::string& user = "admin") {
    RecordingObjectPathHandler handler;
    provider->enumerateInstanceNames(ProviderHarness::context(user),
                                     CIMObjectPath(String(), "root/ksv", className.c_str()),
                                     handler);
    return {{}, handler.delivered, handler.events()};
}

inline Answer get(CIMInstanceProvider* provider, const CIMObjectPath& path,
                  const std::string& user = "admin") {
    RecordingInstanceHandler handler;
    provider->getInstance(ProviderHarness::context(user), path, false, false, CIMPropertyList(),
                          handler);
    return {handler.delivered, {}, handler.events()};
}

// A harness whose array is replaced by one made for these tests (arrays/<file>) before any
// provider is initialized.
class ArrayTest : public ::testing::Test {
protected:
    explicit ArrayTest(const std::string& arrayFile) {
        const std::string path =
            std::string(KSV_SOURCE_DIR) + "/tests/Providers/KSV/Disk/InstanceProviders/arrays/";
        if (const auto error = ksvsim::loadModelFile(path + arrayFile))
            ADD_FAILURE() << error->describe();
    }
    static void loadArrayText(const std::string& json) {
        if (const auto error = ksvsim::loadModelText(json))
            ADD_FAILURE() << error->describe();
    }

    ProviderHarness harness{"small.json"};
};

} // namespace ksv::test

#endif
