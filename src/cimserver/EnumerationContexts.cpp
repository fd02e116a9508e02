#include "cimserver/EnumerationContexts.h"

#include <Pegasus/Common/Exception.h>

#include <cstdint>
#include <deque>
#include <random>
#include <stdexcept>
#include <utility>

namespace ksv::server {

using Pegasus::CIMException;
using Pegasus::CIMStatusCode;
using Pegasus::String;
using Pegasus::Uint32;
using Clock = std::chrono::steady_clock;

// The results of one enumeration between its producer and its pulls. Its own lock guards the
// results; `busy` and `deadline` belong to the table and are guarded by the table's lock.
class EnumerationContext : public Sink<EnumeratedResult> {
public:
    EnumerationContext(std::string owner, EnumeratedKind kind, std::chrono::seconds timeout,
                       std::size_t capacity)
        : owner(std::move(owner)), kind(kind), timeout(timeout), _capacity(capacity) {}

    const std::string owner;
    const EnumeratedKind kind;
    const std::chrono::seconds timeout;
    bool busy = false;
    Clock::time_point deadline;

    // Producer side: waits for room; throws once the context is released, which stops the
    // provider at its delivery.
    void put(const EnumeratedResult& result) override {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [this] { return _results.size() < _capacity || _abandoned; });
        if (_abandoned)
            throw std::runtime_error("the enumeration was released");
        _results.push_back(result);
        _changed.notify_all();
    }

    void end(std::optional<CIMException> error) {
        std::lock_guard<std::mutex> lock(_mutex);
        _ended = true;
        _error = std::move(error);
        _changed.notify_all();
    }

    void abandon(CIMStatusCode why) {
        std::lock_guard<std::mutex> lock(_mutex);
        if (!_abandoned) {
            _abandoned = true;
            _abandonedWith = why;
        }
        _results.clear();
        _changed.notify_all();
    }

    // Until the producer has delivered, ended or the context is released.
    void waitStarted() {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [this] { return !_results.empty() || _ended || _abandoned; });
    }

    // The next result; nothing once the results are exhausted or the context is released.
    std::optional<EnumeratedResult> next() {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [this] { return !_results.empty() || _ended || _abandoned; });
        if (_results.empty() || _abandoned)
            return std::nullopt;
        EnumeratedResult result = std::move(_results.front());
        _results.pop_front();
        _changed.notify_all();
        return result;
    }

    struct State {
        std::optional<CIMStatusCode> abandonedWith;
        bool exhausted = false;
        std::optional<CIMException> error;
    };

    State state() const {
        std::lock_guard<std::mutex> lock(_mutex);
        State now;
        if (_abandoned)
            now.abandonedWith = _abandonedWith;
        now.exhausted = _ended && _results.empty();
        now.error = _error;
        return now;
    }

    std::optional<Pegasus::Uint64> remaining() const {
        std::lock_guard<std::mutex> lock(_mutex);
        if (!_ended || _error)
            return std::nullopt;
        return Pegasus::Uint64(_results.size());
    }

private:
    const std::size_t _capacity;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<EnumeratedResult> _results;
    bool _ended = false;
    std::optional<CIMException> _error;
    bool _abandoned = false;
    CIMStatusCode _abandonedWith = Pegasus::CIM_ERR_INVALID_ENUMERATION_CONTEXT;
};

namespace {

// Unguessable, so that one client cannot reach another's enumeration by trying names.
std::string newContextName() {
    static thread_local std::random_device source;
    static const char digits[] = "0123456789abcdef";
    std::string name;
    for (int word = 0; word < 4; ++word) {
        std::uint32_t bits = source();
        for (int i = 0; i < 8; ++i, bits >>= 4)
            name += digits[bits & 0xf];
    }
    return name;
}

[[noreturn]] void throwInvalidContext() {
    throw CIMException(Pegasus::CIM_ERR_INVALID_ENUMERATION_CONTEXT,
                       "the enumeration context is not open");
}

CIMException asCimException(const Pegasus::Exception& error) {
    return CIMException(Pegasus::CIM_ERR_FAILED, error.getMessage());
}

String abandonedText(CIMStatusCode why) {
    return why == Pegasus::CIM_ERR_SERVER_IS_SHUTTING_DOWN
               ? String("the server is shutting down")
               : String("the enumeration was closed during the pull");
}

} // namespace

EnumerationContexts::EnumerationContexts(EnumerationLimits limits)
    : _limits(limits), _expiry([this] { expire(); }) {}

EnumerationContexts::~EnumerationContexts() {
    shutdown(std::nullopt);
}

void EnumerationContexts::checkRequest(std::optional<Uint32> timeoutSeconds,
                                       Uint32 maxObjectCount) const {
    if (timeoutSeconds && *timeoutSeconds == 0) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_OPERATION_TIMEOUT,
                           "an OperationTimeout of 0 is not allowed");
    }
    if (timeoutSeconds && *timeoutSeconds > _limits.maxTimeoutSeconds) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_OPERATION_TIMEOUT,
                           "OperationTimeout is too large; the maximum is " +
                               String(std::to_string(_limits.maxTimeoutSeconds).c_str()));
    }
    if (maxObjectCount > _limits.maxObjectCount) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER,
                           "MaxObjectCount is too large; the maximum is " +
                               String(std::to_string(_limits.maxObjectCount).c_str()));
    }
}

std::string EnumerationContexts::open(const Caller& owner, std::optional<Uint32> timeoutSeconds,
                                      EnumeratedKind kind, Producer producer) {
    const unsigned seconds = timeoutSeconds.value_or(_limits.defaultTimeoutSeconds);
    auto context = std::make_shared<EnumerationContext>(
        owner.userName, kind, std::chrono::seconds(seconds), _limits.heldResults);
    std::string name = newContextName();
    {
        std::lock_guard<std::mutex> lock(_mutex);
        if (_shutDown) {
            throw CIMException(Pegasus::CIM_ERR_SERVER_IS_SHUTTING_DOWN,
                               "the server is shutting down");
        }
        if (_contexts.size() >= _limits.maxContexts || _producers >= _limits.maxContexts) {
            throw CIMException(Pegasus::CIM_ERR_SERVER_LIMITS_EXCEEDED,
                               "too many enumerations are open");
        }
        context->deadline = Clock::now() + context->timeout;
        _contexts.emplace(name, context);
        ++_producers;
        _changed.notify_all();
    }
    std::thread(&EnumerationContexts::produce, this, context, std::move(producer)).detach();
    context->waitStarted();
    return name;
}

void EnumerationContexts::produce(std::shared_ptr<EnumerationContext> context,
                                  const Producer& producer) {
    std::optional<CIMException> error;
    try {
        producer(*context);
    } catch (const CIMException& failure) {
        error = failure;
    } catch (const Pegasus::Exception& failure) {
        error = asCimException(failure);
    } catch (const std::exception& failure) {
        error = CIMException(Pegasus::CIM_ERR_FAILED, String(failure.what()));
    }
    // Counted out first, so that a client that has seen the end can open the next at once.
    {
        std::lock_guard<std::mutex> lock(_mutex);
        --_producers;
        _changed.notify_all();
    }
    context->end(std::move(error));
}

std::shared_ptr<EnumerationContext> EnumerationContexts::find(const Caller& caller,
                                                              const std::string& name) {
    auto found = _contexts.find(name);
    // Another user's context answers as if it did not exist.
    if (found == _contexts.end() || found->second->owner != caller.userName)
        throwInvalidContext();
    return found->second;
}

std::shared_ptr<EnumerationContext>
EnumerationContexts::take(const Caller& caller, const std::string& name, EnumeratedKind kind) {
    std::lock_guard<std::mutex> lock(_mutex);
    std::shared_ptr<EnumerationContext> context = find(caller, name);
    if (context->kind != kind) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_ENUMERATION_CONTEXT,
                           kind == EnumeratedKind::Paths
                               ? "the enumeration delivers instances, not paths"
                               : "the enumeration delivers paths, not instances");
    }
    if (context->busy) {
        throw CIMException(Pegasus::CIM_ERR_PULL_CANNOT_BE_ABANDONED,
                           "another operation is using the enumeration context");
    }
    context->busy = true;
    return context;
}

void EnumerationContexts::release(const std::string& name) {
    std::shared_ptr<EnumerationContext> context;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        auto found = _contexts.find(name);
        if (found == _contexts.end())
            return;
        context = found->second;
        _contexts.erase(found);
    }
    context->abandon(Pegasus::CIM_ERR_INVALID_ENUMERATION_CONTEXT);
}

bool EnumerationContexts::pull(const Caller& caller, const std::string& name, EnumeratedKind kind,
                               Uint32 maxObjectCount, const PageWriter& write) {
    std::shared_ptr<EnumerationContext> context = take(caller, name, kind);
    struct Done {
        EnumerationContexts& table;
        EnumerationContext& context;
        ~Done() {
            std::lock_guard<std::mutex> lock(table._mutex);
            context.busy = false;
            context.deadline = Clock::now() + context.timeout;
            table._changed.notify_all();
        }
    } done{*this, *context};
    Uint32 written = 0;
    while (written < maxObjectCount) {
        std::optional<EnumeratedResult> result = context->next();
        if (!result)
            break;
        write(*result);
        ++written;
    }
    const EnumerationContext::State state = context->state();
    if (state.abandonedWith)
        throw CIMException(*state.abandonedWith, abandonedText(*state.abandonedWith));
    if (!state.exhausted || (state.error && written > 0))
        return false;
    release(name);
    if (state.error)
        throw *state.error;
    return true;
}

void EnumerationContexts::close(const Caller& caller, const std::string& name) {
    std::shared_ptr<EnumerationContext> context;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        context = find(caller, name);
        _contexts.erase(name);
    }
    context->abandon(Pegasus::CIM_ERR_PULL_HAS_BEEN_ABANDONED);
}

std::optional<Pegasus::Uint64> EnumerationContexts::count(const Caller& caller,
                                                          const std::string& name) {
    std::shared_ptr<EnumerationContext> context;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        context = find(caller, name);
    }
    return context->remaining();
}

bool EnumerationContexts::shutdown(std::optional<Clock::time_point> deadline) {
    std::map<std::string, std::shared_ptr<EnumerationContext>> released;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _shutDown = true;
        released.swap(_contexts);
        _changed.notify_all();
    }
    for (auto& entry : released)
        entry.second->abandon(Pegasus::CIM_ERR_SERVER_IS_SHUTTING_DOWN);
    if (_expiry.joinable())
        _expiry.join();
    std::unique_lock<std::mutex> lock(_mutex);
    auto stopped = [this] { return _producers == 0; };
    if (!deadline) {
        _changed.wait(lock, stopped);
        return true;
    }
    return _changed.wait_until(lock, *deadline, stopped);
}

// Releases the contexts whose time-out has passed since their last operation.
void EnumerationContexts::expire() {
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_shutDown) {
        std::optional<Clock::time_point> nearest;
        const Clock::time_point now = Clock::now();
        for (auto entry = _contexts.begin(); entry != _contexts.end();) {
            EnumerationContext& context = *entry->second;
            if (!context.busy && context.deadline <= now) {
                context.abandon(Pegasus::CIM_ERR_INVALID_ENUMERATION_CONTEXT);
                entry = _contexts.erase(entry);
                continue;
            }
            if (!context.busy && (!nearest || context.deadline < *nearest))
                nearest = context.deadline;
            ++entry;
        }
        if (nearest)
            _changed.wait_until(lock, *nearest);
        else
            _changed.wait(lock);
    }
}

} // namespace ksv::server
