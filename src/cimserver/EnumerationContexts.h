// The open enumerations of the pull operations. Each runs its provider calls on a thread of its
// own and holds only a bounded number of results: a provider delivering faster than its client
// pulls waits in its delivery. A context belongs to the user who opened it, expires when no
// operation has used it for its time-out, and is released by CloseEnumeration, at its end, on
// expiry and at shutdown; a provider still delivering into a released context has its delivery
// fail, so that no thread waits for a client that is gone.
#ifndef KSV_CIMSERVER_ENUMERATIONCONTEXTS_H
#define KSV_CIMSERVER_ENUMERATIONCONTEXTS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include "cimserver/Caller.h"
#include "cimserver/Sink.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <variant>

namespace ksv::server {

struct EnumerationLimits {
    // Open at once, all users together; a released context whose provider is still running
    // counts until it stops.
    std::size_t maxContexts = 32;
    // Results a context holds while its client has not pulled them.
    std::size_t heldResults = 1000;
    // OperationTimeout when the client sends none, and the largest it may ask for.
    unsigned defaultTimeoutSeconds = 30;
    unsigned maxTimeoutSeconds = 300;
    // The largest MaxObjectCount of one response.
    Pegasus::Uint32 maxObjectCount = 10000;
};

using EnumeratedResult = std::variant<Pegasus::CIMInstance, Pegasus::CIMObjectPath>;
// What an enumeration delivers; a pull must ask for the same.
enum class EnumeratedKind { Instances, Paths };

class EnumerationContext;

class EnumerationContexts {
public:
    // Produces a context's results into the sink; runs on the context's thread. What it throws
    // ends the enumeration with that error.
    using Producer = std::function<void(Sink<EnumeratedResult>& sink)>;
    // Receives each result of a page as it is taken.
    using PageWriter = std::function<void(const EnumeratedResult& result)>;

    explicit EnumerationContexts(EnumerationLimits limits);
    // Shuts down, waiting for the producers however long they run.
    ~EnumerationContexts();
    EnumerationContexts(const EnumerationContexts&) = delete;
    EnumerationContexts& operator=(const EnumerationContexts&) = delete;

    const EnumerationLimits& limits() const { return _limits; }

    // Throws CIMException: CIM_ERR_INVALID_OPERATION_TIMEOUT for 0 or more than the maximum,
    // CIM_ERR_INVALID_PARAMETER for a MaxObjectCount above the maximum.
    void checkRequest(std::optional<Pegasus::Uint32> timeoutSeconds,
                      Pegasus::Uint32 maxObjectCount) const;
    // Opens a context for `owner` and starts `producer`; its name. Waits until the producer
    // has delivered or ended, so that an enumeration that cannot start fails here.
    // CIM_ERR_SERVER_LIMITS_EXCEEDED when too many are open, CIM_ERR_SERVER_IS_SHUTTING_DOWN
    // after shutdown().
    std::string open(const Caller& owner, std::optional<Pegasus::Uint32> timeoutSeconds,
                     EnumeratedKind kind, Producer producer);
    // Passes up to `maxObjectCount` results to `write`, waiting for the provider when none is
    // held; true when the enumeration has ended, its context then being released. An
    // enumeration that failed reports its error (and is released) once its results are taken.
    // CIM_ERR_INVALID_ENUMERATION_CONTEXT for a context that is unknown, expired, released,
    // another user's or of another kind; CIM_ERR_PULL_CANNOT_BE_ABANDONED while another operation
    // uses it; CIM_ERR_PULL_HAS_BEEN_ABANDONED when it is closed meanwhile.
    bool pull(const Caller& caller, const std::string& name, EnumeratedKind kind,
              Pegasus::Uint32 maxObjectCount, const PageWriter& write);
    void close(const Caller& caller, const std::string& name);
    // The number of results left, when the provider has delivered them all.
    std::optional<Pegasus::Uint64> count(const Caller& caller, const std::string& name);

    // Releases every context and refuses new ones; waits for the producers until `deadline`
    // (or forever without one). True when all have stopped.
    bool shutdown(std::optional<std::chrono::steady_clock::time_point> deadline);

private:
    std::shared_ptr<EnumerationContext> find(const Caller& caller, const std::string& name);
    std::shared_ptr<EnumerationContext> take(const Caller& caller, const std::string& name,
                                             EnumeratedKind kind);
    void release(const std::string& name);
    void produce(std::shared_ptr<EnumerationContext> context, const Producer& producer);
    void expire();

    const EnumerationLimits _limits;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::map<std::string, std::shared_ptr<EnumerationContext>> _contexts;
    std::size_t _producers = 0;
    bool _shutDown = false;
    std::thread _expiry;
};

} // namespace ksv::server

#endif
