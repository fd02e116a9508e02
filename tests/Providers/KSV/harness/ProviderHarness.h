// What a provider test needs around it: the simulated array loaded with a model and an
// in-process stand-in for the CIM server, installed where providers look for it (the default
// CIMOMHandle backend, the server route, and the local CIMClient connector, the local-client
// route). The stand-in serves classes from the shipped MOF, the instances the sibling modules
// would serve, and the internal cache's identity methods from the array; a test can make it fail
// or answer oddly on one route, and reads back the requests it got. The simulator's log is
// captured. One harness at a time per process.
#ifndef KSV_TESTS_PROVIDERHARNESS_H
#define KSV_TESTS_PROVIDERHARNESS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include "mof_compiler/ClassRepository.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace ksv::test {

enum class Route { LocalClient, ServerHandle };

// How the internal cache answers one of its methods.
struct CacheAnswer {
    enum class Kind {
        Normal,        // the datum, under its own output name
        RenamedOutput, // the datum under outputName
        NullOutput,    // the output parameter with a null value
        NoOutput       // no output parameter at all
    };
    Kind kind = Kind::Normal;
    std::string outputName;
};

// An operation that fails on purpose: CIMException(CIM_ERR_FAILED, message), or a
// std::runtime_error(message), which is no Pegasus exception.
struct Failure {
    enum class Kind { CimError, ForeignError };
    Kind kind = Kind::CimError;
    std::string message = "unavailable";
};

// One request the server received: "getClass" of "KSV_DiskDrive", ...
struct ServerCall {
    Route route;
    std::string operation;
    std::string target;
};

// A path in root/ksv on the host, with these string keys in this order.
Pegasus::CIMObjectPath pathOf(const std::string& className,
                              const std::vector<std::pair<std::string, std::string>>& keys,
                              const std::string& host = "");

class ProviderHarness {
public:
    // Loads examples/arrays/<model> and fills the store with what the sibling modules serve over
    // it, read from them once so that none of their array calls mixes into what a test records
    // later, and the KSV_SystemPackage and KSV_StorageSystemView of the system, all in root/ksv.
    explicit ProviderHarness(const std::string& model = "demo.json");
    ~ProviderHarness();
    ProviderHarness(const ProviderHarness&) = delete;
    ProviderHarness& operator=(const ProviderHarness&) = delete;

    // A handle bound to the server, as the CIM server passes one to initialize.
    Pegasus::CIMOMHandle cimom();
    // A request context on behalf of the user.
    static Pegasus::OperationContext context(const std::string& userName = "admin");

    // The array's identity as the model states it.
    std::string systemName() const;
    std::string hostName() const;

    static std::string modelPath(const std::string& model);
    // The shipped MOF (mof/standalone.mof), compiled once per process.
    static const ksv::mof::ClassRepository& shippedClasses();

    // Adds an instance; its path's host and namespace are dropped.
    void putInstance(const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMInstance& instance);
    bool removeInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& path);

    // The answer of an internal cache method ("GetSystemName", ... as spelled in the MOF) on one
    // route.
    void setCacheAnswer(const std::string& method, Route route, CacheAnswer answer);
    // Makes an operation ("invokeMethod", "enumerateInstanceNames", ...) fail on one route.
    void failOperation(Route route, const std::string& operation, Failure failure = {});

    // The requests received, all or those of one operation.
    std::vector<ServerCall> calls(const std::string& operation = "") const;
    void clearCalls();

private:
    class RouteBackend;

    void fillStore();
    // Records the request and throws the failure set for it.
    void enter(Route route, const std::string& operation, const Pegasus::String& target);
    // Instances of the class and its subclasses, paths with the namespace set.
    Pegasus::Array<Pegasus::CIMInstance> instancesOf(const Pegasus::CIMNamespaceName& nameSpace,
                                                     const Pegasus::CIMName& className) const;
    Pegasus::CIMInstance storedInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                        const Pegasus::CIMObjectPath& instanceName) const;
    CacheAnswer cacheAnswer(const std::string& method, Route route) const;

    mutable std::mutex _lock;
    std::map<std::string, std::vector<Pegasus::CIMInstance>> _store; // by folded namespace
    std::map<std::pair<std::string, Route>, CacheAnswer> _cacheAnswers;
    std::map<std::pair<std::string, Route>, Failure> _failures;
    std::vector<ServerCall> _calls;
};

} // namespace ksv::test

#endif
