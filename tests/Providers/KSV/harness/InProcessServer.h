// An in-process stand-in for the CIM server that hosts the array's providers: it serves
// classes from the shipped MOF, instances that other modules would serve from an editable
// store, and the internal cache's identity methods from the simulated array. Providers reach
// it through the server's own in-process access: their CIMOMHandle (the server route) and
// CIMClient::connectLocal() (the local-client route).
#ifndef KSV_TESTS_INPROCESSSERVER_H
#define KSV_TESTS_INPROCESSSERVER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include "mof_compiler/ClassRepository.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ksv::test {

// How a request reached the server.
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

// An operation that fails on purpose.
struct Failure {
    enum class Kind {
        CimError,    // CIMException(CIM_ERR_FAILED, message)
        ForeignError // std::runtime_error(message), not a Pegasus exception
    };
    Kind kind = Kind::CimError;
    std::string message = "unavailable";
};

// One request the server received: "getClass root/ksv:KSV_DiskDrive",
// "invokeMethod root/PG_Internal:GetSystemName", ...
struct ServerCall {
    Route route;
    std::string operation;
    std::string nameSpace;
    std::string target;
};

class InProcessServer {
public:
    explicit InProcessServer(ksv::mof::ClassRepository classes);

    const ksv::mof::ClassRepository& classes() const { return _classes; }

    // ---- Instance store (instances of classes that other modules serve) --------------------
    // Adds or replaces the instance with the same keys; its path's host and namespace are
    // dropped.
    void putInstance(const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMInstance& instance);
    bool removeInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& path);
    // Instances of the class and its subclasses, paths with the namespace set.
    Pegasus::Array<Pegasus::CIMInstance> instancesOf(const Pegasus::CIMNamespaceName& nameSpace,
                                                     const Pegasus::CIMName& className) const;

    // ---- Behaviour --------------------------------------------------------------------------
    // The answer of an internal cache method ("GetSystemName", ...) on one route.
    void setCacheAnswer(const std::string& method, Route route, CacheAnswer answer);
    // Makes an operation ("invokeMethod", "enumerateInstanceNames", ...) fail on one route.
    void failOperation(Route route, const std::string& operation, Failure failure = {});

    std::vector<ServerCall> calls() const;
    std::vector<ServerCall> calls(const std::string& operation) const;
    void clearCalls();

    // The backend of the providers' CIMOMHandle: the server route.
    std::shared_ptr<Pegasus::CIMOMHandleBackend> serverHandle();
    // A factory for CIMClientConnector::setLocal: each connection serves the local route.
    Pegasus::CIMClientConnector::LocalFactory localConnector();

    // Records the request and throws the failure set for it.
    void enter(Route route, const std::string& operation,
               const Pegasus::CIMNamespaceName& nameSpace, const std::string& target);
    Pegasus::CIMInstance storedInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                        const Pegasus::CIMObjectPath& instanceName) const;
    CacheAnswer cacheAnswer(const std::string& method, Route route) const;

private:
    const ksv::mof::ClassRepository _classes;

    mutable std::mutex _lock;
    std::map<std::string, std::vector<Pegasus::CIMInstance>> _store; // by folded namespace
    std::map<std::pair<std::string, Route>, CacheAnswer> _cacheAnswers;
    std::map<std::pair<std::string, Route>, Failure> _failures;
    std::vector<ServerCall> _calls;
};

} // namespace ksv::test

#endif
