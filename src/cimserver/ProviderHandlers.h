// The response handlers the server gives to providers: each forwards what a provider delivers
// at once, so that results reach the client while the provider is still producing them.
#ifndef KSV_CIMSERVER_PROVIDERHANDLERS_H
#define KSV_CIMSERVER_PROVIDERHANDLERS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

#include <functional>
#include <optional>
#include <utility>

namespace ksv::server {

template <typename T, typename Handler>
class ForwardingHandler : public Handler {
public:
    explicit ForwardingHandler(std::function<void(const T&)> forward)
        : _forward(std::move(forward)) {}

    void deliver(const T& item) override { _forward(item); }
    void deliver(const Pegasus::Array<T>& items) override {
        for (Pegasus::Uint32 i = 0; i < items.size(); ++i)
            _forward(items[i]);
    }
    void processing() override {}
    void complete() override {}

private:
    std::function<void(const T&)> _forward;
};

using InstanceForwarder = ForwardingHandler<Pegasus::CIMInstance, Pegasus::InstanceResponseHandler>;
using ObjectPathForwarder =
    ForwardingHandler<Pegasus::CIMObjectPath, Pegasus::ObjectPathResponseHandler>;
using ObjectForwarder = ForwardingHandler<Pegasus::CIMObject, Pegasus::ObjectResponseHandler>;

inline bool isUnset(const Pegasus::CIMInstance& instance) {
    return instance.isUninitialized();
}

inline bool isUnset(const Pegasus::CIMObjectPath& path) {
    return path.getClassName().isNull();
}

// Where exactly one object is due (getInstance, createInstance), the handler refuses an unset
// or a second object, and complete() without one, with OpenPegasus's texts: a provider that
// breaks the rule then fails in the same way in either server.
template <typename T, typename Handler>
class SingleResultHandler : public Handler {
public:
    void deliver(const T& item) override {
        if (isUnset(item))
            fail("The object is not initialized.");
        if (_result)
            fail("Too many objects delivered.");
        _result = item;
    }
    void deliver(const Pegasus::Array<T>& items) override {
        for (Pegasus::Uint32 i = 0; i < items.size(); ++i)
            deliver(items[i]);
    }
    void processing() override {}
    void complete() override {
        if (!_result)
            fail("Too few objects delivered.");
    }

    // Empty when the provider returned without delivering.
    const std::optional<T>& result() const { return _result; }

private:
    [[noreturn]] static void fail(const char* text) {
        throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, text);
    }

    std::optional<T> _result;
};

using SingleInstanceHandler =
    SingleResultHandler<Pegasus::CIMInstance, Pegasus::InstanceResponseHandler>;
using SingleObjectPathHandler =
    SingleResultHandler<Pegasus::CIMObjectPath, Pegasus::ObjectPathResponseHandler>;

// For operations that deliver nothing: modifyInstance, deleteInstance.
class CompletionHandler : public Pegasus::ResponseHandler {
public:
    void processing() override {}
    void complete() override {}
};

class MethodResultCollector : public Pegasus::MethodResultResponseHandler {
public:
    void deliverParamValue(const Pegasus::CIMParamValue& outParamValue) override {
        _outParameters.append(outParamValue);
    }
    void deliverParamValue(const Pegasus::Array<Pegasus::CIMParamValue>& outParamValues) override {
        _outParameters.appendArray(outParamValues);
    }
    void deliver(const Pegasus::CIMValue& returnValue) override { _returnValue = returnValue; }
    void processing() override {}
    void complete() override {}

    const Pegasus::CIMValue& returnValue() const { return _returnValue; }
    const Pegasus::Array<Pegasus::CIMParamValue>& outParameters() const { return _outParameters; }

private:
    Pegasus::CIMValue _returnValue;
    Pegasus::Array<Pegasus::CIMParamValue> _outParameters;
};

} // namespace ksv::server

#endif
