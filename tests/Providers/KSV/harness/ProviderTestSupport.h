// What the provider suites share: response handlers that record what a provider delivered, in
// order, and whether it called processing() and complete(); a provider run from initialize to
// terminate with its requests going through them, the CIM error a request ends in, compact
// renderings of paths and properties, and the simulated library's call log.
#ifndef KSV_TESTS_PROVIDERTESTSUPPORT_H
#define KSV_TESTS_PROVIDERTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <KSV_Common.h>
#include <ksvapi_sim.h>

#include "cimserver/ProviderLibrary.h"

#include "ProviderHarness.h"
#include "OnThreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace ksv::test {

using namespace Pegasus;
using Strings = std::vector<std::string>;

inline std::string text(const String& value) {
    return std::string(value.getCString());
}

inline CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> list;
    for (const char* name : names)
        list.append(name);
    return CIMPropertyList(list);
}

// Records "processing", "deliver" (once per delivered result) and "complete", as they happened.
template <typename Handler>
class RecordingResponse : public Handler {
public:
    void processing() override { _events.push_back("processing"); }
    void complete() override { _events.push_back("complete"); }
    const Strings& events() const { return _events; }

protected:
    Strings _events;
};

using RecordingResponseHandler = RecordingResponse<ResponseHandler>;

template <typename Handler, typename Result>
class RecordingHandler : public RecordingResponse<Handler> {
public:
    void deliver(const Result& result) override {
        if (delivered.size() + 1 == failingDelivery)
            throw std::runtime_error("client went away");
        this->_events.push_back("deliver");
        delivered.push_back(result);
    }
    void deliver(const Array<Result>& results) override {
        for (Uint32 i = 0; i < results.size(); i++)
            deliver(results[i]);
    }

    std::vector<Result> delivered;
    // The delivery with this number fails, as for a client that went away; 0 for none.
    size_t failingDelivery = 0;
};

using RecordingInstanceHandler = RecordingHandler<InstanceResponseHandler, CIMInstance>;
using RecordingObjectPathHandler = RecordingHandler<ObjectPathResponseHandler, CIMObjectPath>;
using RecordingObjectHandler = RecordingHandler<ObjectResponseHandler, CIMObject>;

// "CIM_ERR_...: <message>" of the CIM error the request throws, or what else happened.
inline std::string failureOf(const std::function<void()>& request) {
    try {
        request();
    } catch (const CIMException& error) {
        return std::string(cimStatusCodeToString(error.getCode())) + ": " +
               text(error.getMessage());
    } catch (...) {
        return "another exception";
    }
    return "no exception";
}

// Library calls since the log was last cleared, "function(argument)".
inline Strings arrayCalls() {
    Strings calls;
    for (const ksvsim::CallRecord& call : ksvsim::calls())
        calls.push_back(call.function + "(" + call.argument + ")");
    return calls;
}

// Texts of the simulator's captured log lines at the level.
inline Strings logTexts(int level) {
    Strings texts;
    for (const ksvsim::LogLine& line : ksvsim::capturedLog()) {
        if (line.level == level)
            texts.push_back(line.text);
    }
    return texts;
}

inline size_t callCount(const std::string& function) {
    const std::vector<ksvsim::CallRecord> calls = ksvsim::calls();
    return static_cast<size_t>(std::count_if(
        calls.begin(), calls.end(), [&](const auto& call) { return call.function == function; }));
}

template <typename Object>
std::vector<CIMObjectPath> pathsOf(const std::vector<Object>& objects) {
    std::vector<CIMObjectPath> paths;
    for (const Object& object : objects)
        paths.push_back(object.getPath());
    return paths;
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

// "Name=value ..." of the named properties: "absent", "null", arrays as "[a b]".
inline std::string render(const CIMInstance& instance, const std::string& names) {
    std::istringstream words(names);
    std::string rendered;
    for (std::string name; words >> name;) {
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

// The optional parts of a request.
struct Query {
    const char* resultClass = nullptr;
    const char* role = "";
    const char* resultRole = "";
    CIMPropertyList propertyList;
    std::string user = "admin";
    // The class an enumeration names, when not the one the provider was made for.
    const char* className = nullptr;
};

// A provider initialized against the harness's server as the CIM server does it, terminated (it
// deletes itself) with this object; the requests go through recording handlers.
class RunningProvider {
public:
    // servedClass: the class that enumerations name, as the server passes it.
    RunningProvider(ProviderHarness& harness, CIMProvider* created,
                    const char* servedClass = nullptr)
        : _provider(created), _associations(dynamic_cast<CIMAssociationProvider*>(created)),
          _instances(dynamic_cast<CIMInstanceProvider*>(created)),
          _classReference(String(), CIMNamespaceName("root/ksv"), className(servedClass)) {
        if (!_provider)
            throw std::runtime_error("no such provider");
        CIMOMHandle cimom = harness.cimom();
        _provider->initialize(cimom);
    }
    ~RunningProvider() { _provider->terminate(); }
    RunningProvider(const RunningProvider&) = delete;
    RunningProvider& operator=(const RunningProvider&) = delete;

    RecordingObjectHandler associators(const CIMObjectPath& objectName, const Query& query = {},
                                       const char* associationClass = nullptr) {
        RecordingObjectHandler handler;
        _associations->associators(ProviderHarness::context(query.user), objectName,
                                   className(associationClass), className(query.resultClass),
                                   query.role, query.resultRole, false, false, query.propertyList,
                                   handler);
        return handler;
    }
    RecordingObjectPathHandler associatorNames(const CIMObjectPath& objectName,
                                               const Query& query = {},
                                               const char* associationClass = nullptr) {
        RecordingObjectPathHandler handler;
        _associations->associatorNames(ProviderHarness::context(query.user), objectName,
                                       className(associationClass), className(query.resultClass),
                                       query.role, query.resultRole, handler);
        return handler;
    }
    RecordingObjectHandler references(const CIMObjectPath& objectName, const Query& query = {}) {
        RecordingObjectHandler handler;
        _associations->references(ProviderHarness::context(query.user), objectName,
                                  className(query.resultClass), query.role, false, false,
                                  query.propertyList, handler);
        return handler;
    }
    RecordingObjectPathHandler referenceNames(const CIMObjectPath& objectName,
                                              const Query& query = {}) {
        RecordingObjectPathHandler handler;
        _associations->referenceNames(ProviderHarness::context(query.user), objectName,
                                      className(query.resultClass), query.role, handler);
        return handler;
    }
    RecordingInstanceHandler getInstance(const CIMObjectPath& instanceName,
                                         const Query& query = {}) {
        RecordingInstanceHandler handler;
        _instances->getInstance(ProviderHarness::context(query.user), instanceName, false, false,
                                query.propertyList, handler);
        return handler;
    }
    RecordingInstanceHandler enumerateInstances(const Query& query = {}) {
        RecordingInstanceHandler handler;
        enumerateInstances(handler, query);
        return handler;
    }
    void enumerateInstances(InstanceResponseHandler& handler, const Query& query = {}) {
        _instances->enumerateInstances(ProviderHarness::context(query.user), classReference(query),
                                       false, false, query.propertyList, handler);
    }
    RecordingObjectPathHandler enumerateInstanceNames(const Query& query = {}) {
        RecordingObjectPathHandler handler;
        _instances->enumerateInstanceNames(ProviderHarness::context(query.user),
                                           classReference(query), handler);
        return handler;
    }

    // The provider itself, for what only its own class offers.
    template <typename Provider>
    Provider* as() const {
        return dynamic_cast<Provider*>(_provider);
    }

private:
    static CIMName className(const char* name) { return name ? CIMName(name) : CIMName(); }
    CIMObjectPath classReference(const Query& query) const {
        return query.className
                   ? CIMObjectPath(String(), CIMNamespaceName("root/ksv"), query.className)
                   : _classReference;
    }

    CIMProvider* _provider;
    CIMAssociationProvider* _associations;
    CIMInstanceProvider* _instances;
    const CIMObjectPath _classReference;
};

// Each test gets a fresh harness over the demo array.
class HarnessTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    CIMOMHandle cimom = harness.cimom();
};

inline CIMObjectPath path(const char* objectName) {
    return CIMObjectPath(objectName);
}

} // namespace ksv::test

extern "C" Pegasus::CIMProvider* PegasusCreateProvider(const Pegasus::String& providerName);

namespace ksv::test {

// A disk module provider created by name through the module entry, as the CIM server creates it.
class DiskProvider : public RunningProvider {
public:
    DiskProvider(ProviderHarness& harness, const std::string& name,
                 const char* servedClass = nullptr)
        : RunningProvider(harness, PegasusCreateProvider(name.c_str()), servedClass) {}
};

// A storage volume module provider, created through that module's entry point.
inline CIMProvider* volumeModuleProvider(const char* name) {
    static const server::ProviderLibrary module("KSV_StorageVolumeProvider",
                                                {KSV_STORAGE_VOLUME_MODULE_DIR});
    return module.createProvider(name);
}

} // namespace ksv::test

#endif
