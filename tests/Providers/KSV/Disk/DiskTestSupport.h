// What the disk module's suites share: providers driven as the CIM server drives them, the CIM
// error a request ends in, and the simulated library's call log.
#ifndef KSV_TESTS_DISKTESTSUPPORT_H
#define KSV_TESTS_DISKTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi_sim.h>

#include "ProviderHarness.h"
#include "RecordingHandlers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

extern "C" Pegasus::CIMProvider* PegasusCreateProvider(const Pegasus::String& providerName);

namespace ksv::test {

using namespace Pegasus;
using Strings = std::vector<std::string>;

// The module's providers in the order the entry point tests their names.
const char* const PROVIDER_NAMES[] = {"KSV_DiskDriveProvider",
                                      "KSV_DiskDrivePackageProvider",
                                      "KSV_DiskPackageRealizesProvider",
                                      "KSV_DiskStorageExtentProvider",
                                      "KSV_DiskPresentProvider",
                                      "KSV_DiskSoftwareIdentityProvider",
                                      "KSV_DiskSoftwareProvider",
                                      "KSV_MagazineContainerProvider",
                                      "KSV_SystemDiskProvider",
                                      "KSV_SystemExtentProvider",
                                      "KSV_VolumeBasedOnDiskExtentProvider",
                                      "KSV_AssociatedPrimordialDisksProvider"};

inline std::string text(const String& value) {
    return std::string(value.getCString());
}

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

// A provider initialized against the harness's server as the CIM server does it, and
// terminated (it deletes itself) with this object.
template <typename Provider>
class InitializedProvider {
public:
    InitializedProvider(ProviderHarness& harness, Provider* created) : _provider(created) {
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

// One of the module's providers, created by name through the module entry and run from
// initialize to terminate; the requests go through recording handlers.
class RunningProvider {
public:
    // servedClass: the class that enumerations name, as the server passes it.
    RunningProvider(ProviderHarness& harness, const std::string& name,
                    const char* servedClass = nullptr)
        : _provider(harness, PegasusCreateProvider(name.c_str())),
          _associations(
              dynamic_cast<CIMAssociationProvider*>(static_cast<CIMProvider*>(_provider))),
          _instances(dynamic_cast<CIMInstanceProvider*>(static_cast<CIMProvider*>(_provider))),
          _classReference(String(), CIMNamespaceName("root/ksv"), className(servedClass)) {}

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
        return dynamic_cast<Provider*>(static_cast<CIMProvider*>(_provider));
    }

private:
    static CIMName className(const char* name) { return name ? CIMName(name) : CIMName(); }
    CIMObjectPath classReference(const Query& query) const {
        return query.className
                   ? CIMObjectPath(String(), CIMNamespaceName("root/ksv"), query.className)
                   : _classReference;
    }

    InitializedProvider<CIMProvider> _provider;
    CIMAssociationProvider* _associations;
    CIMInstanceProvider* _instances;
    const CIMObjectPath _classReference;
};

} // namespace ksv::test

#endif
