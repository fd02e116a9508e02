#include "cimserver/HostedProvider.h"

#include <utility>

namespace ksv::server {

using Pegasus::CIMException;
using Pegasus::String;

namespace {

String text(const std::string& utf8) {
    return String(utf8.c_str());
}

} // namespace

void rethrowProviderFailure(const std::string& providerName, const char* operation) {
    const String where = text(providerName) + "." + operation + ": ";
    try {
        throw;
    } catch (const CIMException&) {
        throw;
    } catch (const Pegasus::Exception& error) {
        throw CIMException(Pegasus::CIM_ERR_FAILED, where + error.getMessage());
    } catch (const std::exception& error) {
        throw CIMException(Pegasus::CIM_ERR_FAILED, where + error.what());
    } catch (...) {
        throw CIMException(Pegasus::CIM_ERR_FAILED, where + "unknown exception");
    }
}

HostedProvider::HostedProvider(std::string name, std::string moduleName,
                               std::shared_ptr<const ProviderLibrary> library,
                               std::string loadError, Pegasus::CIMOMHandle cimom)
    : _name(std::move(name)), _moduleName(std::move(moduleName)), _library(std::move(library)),
      _loadError(std::move(loadError)), _cimom(std::move(cimom)) {}

Pegasus::CIMProvider& HostedProvider::acquire() {
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        switch (_state) {
        case State::Ready:
            ++_runningCalls;
            return *_provider;
        case State::Terminated:
            throw CIMException(Pegasus::CIM_ERR_SERVER_IS_SHUTTING_DOWN,
                               text(_name) + " has been terminated");
        case State::Initializing:
            if (_initializer == std::this_thread::get_id()) {
                throw CIMException(Pegasus::CIM_ERR_FAILED,
                                   text(_name) + " was called from its own initialize");
            }
            _stateChanged.wait(lock);
            break;
        case State::Idle:
            _state = State::Initializing;
            _initializer = std::this_thread::get_id();
            lock.unlock();
            initializeProvider();
            lock.lock();
            _state = State::Ready;
            _stateChanged.notify_all();
            break;
        }
    }
}

void HostedProvider::release() {
    std::lock_guard<std::mutex> lock(_mutex);
    --_runningCalls;
}

// Runs without the lock: initialize may call back into the server, even into other providers.
void HostedProvider::initializeProvider() {
    try {
        if (_library == nullptr)
            throw CIMException(Pegasus::CIM_ERR_FAILED, text(_moduleName + ": " + _loadError));
        if (_provider == nullptr)
            _provider = _library->createProvider(text(_name));
        if (_provider == nullptr) {
            throw CIMException(Pegasus::CIM_ERR_FAILED,
                               text(_library->path() + " does not provide " + _name));
        }
        _provider->initialize(_cimom);
    } catch (...) {
        failInitialization();
    }
}

// A failed initialize is tried again on the next call, which may find its dependencies ready.
void HostedProvider::failInitialization() {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _state = State::Idle;
        _stateChanged.notify_all();
    }
    rethrowProviderFailure(_name, "initialize");
}

bool HostedProvider::terminate() {
    std::unique_lock<std::mutex> lock(_mutex);
    if (_state == State::Initializing || _runningCalls > 0)
        return false;
    const bool started = _state == State::Ready;
    _state = State::Terminated;
    Pegasus::CIMProvider* provider = std::exchange(_provider, nullptr);
    lock.unlock();
    if (!started) {
        delete provider; // created, but its initialize failed: terminate is not for it
        return true;
    }
    try {
        provider->terminate();
    } catch (...) {
        // Shutdown goes on; the provider has deleted itself or is lost either way.
    }
    return true;
}

} // namespace ksv::server
