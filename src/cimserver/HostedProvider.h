// One registered provider inside the server: created from its module and initialized on first
// use, called from any number of threads once initialize has completed, terminated at shutdown.
#ifndef KSV_CIMSERVER_HOSTEDPROVIDER_H
#define KSV_CIMSERVER_HOSTEDPROVIDER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/CIMProvider.h>

#include "cimserver/ProviderLibrary.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace ksv::server {

// Turns the exception being handled, thrown by a provider's `operation`, into the CIMException
// the client receives: CIM exceptions as they are, anything else as CIM_ERR_FAILED.
[[noreturn]] void rethrowProviderFailure(const std::string& providerName, const char* operation);

class HostedProvider {
public:
    // `library` is null when the module could not be loaded; `loadError` then says why, and
    // every call fails with it.
    HostedProvider(std::string name, std::string moduleName,
                   std::shared_ptr<const ProviderLibrary> library, std::string loadError,
                   Pegasus::CIMOMHandle cimom);
    HostedProvider(const HostedProvider&) = delete;
    HostedProvider& operator=(const HostedProvider&) = delete;

    const std::string& name() const { return _name; }

    // Calls `call(Interface&)` on the provider, creating and initializing it first if this is its
    // first use. CIM_ERR_NOT_SUPPORTED when the provider does not implement Interface.
    template <typename Interface, typename Call>
    void invoke(const char* operation, Call&& call);

    // Calls the provider's terminate, which deletes it, unless it never started or a call is
    // still running in it. False when such a call keeps it alive.
    bool terminate();

private:
    enum class State { Idle, Initializing, Ready, Terminated };

    // Waits for or performs initialization and counts a running call.
    Pegasus::CIMProvider& acquire();
    void release();
    void initializeProvider();
    [[noreturn]] void failInitialization();

    const std::string _name;
    const std::string _moduleName;
    const std::shared_ptr<const ProviderLibrary> _library;
    const std::string _loadError;
    Pegasus::CIMOMHandle _cimom;

    std::mutex _mutex;
    std::condition_variable _stateChanged;
    State _state = State::Idle;
    std::thread::id _initializer;
    unsigned _runningCalls = 0;
    Pegasus::CIMProvider* _provider = nullptr;
};

template <typename Interface, typename Call>
void HostedProvider::invoke(const char* operation, Call&& call) {
    Pegasus::CIMProvider& provider = acquire();
    struct Release {
        HostedProvider* self;
        ~Release() { self->release(); }
    } release{this};
    auto* typed = dynamic_cast<Interface*>(&provider);
    if (typed == nullptr) {
        throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, Pegasus::String(_name.c_str()) +
                                                                        " does not support " +
                                                                        operation);
    }
    try {
        call(*typed);
    } catch (...) {
        rethrowProviderFailure(_name, operation);
    }
}

} // namespace ksv::server

#endif
