#include "cimserver/PullOperations.h"

#include "cimserver/ResultShaping.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::server {

using cimxml::Operation;
using cimxml::OperationRequest;
using Pegasus::CIMException;
using Pegasus::CIMInstance;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;

namespace {

// Passes a one-shot operation's results on into an enumeration, converted.
template <typename T, typename Convert>
class ForwardingSink : public Sink<T> {
public:
    ForwardingSink(Sink<EnumeratedResult>& target, Convert convert)
        : _target(target), _convert(convert) {}
    void put(const T& item) override { _target.put(_convert(item)); }

private:
    Sink<EnumeratedResult>& _target;
    Convert _convert;
};

template <typename T, typename Convert, typename Run>
EnumerationContexts::Producer forwarding(Convert convert, Run run) {
    return [convert, run](Sink<EnumeratedResult>& target) {
        ForwardingSink<T, Convert> sink(target, convert);
        run(sink);
    };
}

// Pull responses carry full paths; providers may leave host or namespace out.
CIMInstance withFullPath(const CIMInstance& instance, const Pegasus::String& host,
                         const Pegasus::CIMNamespaceName& nameSpace) {
    const CIMObjectPath& path = instance.getPath();
    if (cimxml::isComplete(path))
        return instance;
    CIMInstance named = instance.clone();
    named.setPath(cimxml::completed(path, {host, nameSpace}));
    return named;
}

// The one-shot operation an Open operation enumerates.
Operation oneShotOf(Operation operation) {
    switch (operation) {
    case Operation::OpenEnumerateInstances:
        return Operation::EnumerateInstances;
    case Operation::OpenEnumerateInstancePaths:
        return Operation::EnumerateInstanceNames;
    case Operation::OpenReferenceInstances:
        return Operation::References;
    case Operation::OpenReferenceInstancePaths:
        return Operation::ReferenceNames;
    case Operation::OpenAssociatorInstances:
        return Operation::Associators;
    default:
        return Operation::AssociatorNames;
    }
}

EnumeratedKind kindOf(Operation operation) {
    return cimxml::deliversPaths(operation) ? EnumeratedKind::Paths : EnumeratedKind::Instances;
}

void checkOpenRequest(const OperationRequest& request) {
    if (request.continueOnError) {
        throw CIMException(Pegasus::CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED,
                           "ContinueOnError is not supported");
    }
    if (request.filterQueryLanguage.size() != 0 || request.filterQuery.size() != 0) {
        throw CIMException(Pegasus::CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED,
                           "filtered enumerations are not supported");
    }
}

} // namespace

bool PullOperations::handles(Operation operation) {
    return cimxml::continuesEnumeration(operation) || operation == Operation::CloseEnumeration ||
           operation == Operation::EnumerationCount;
}

EnumerationContexts::Producer PullOperations::producerFor(const Caller& caller,
                                                          const OperationRequest& request) const {
    OperationRequest oneShot = request;
    oneShot.operation = oneShotOf(request.operation);
    const OperationDispatcher& dispatcher = _dispatcher;
    const Pegasus::String host = _dispatcher.hostName();
    auto instance = [host, nameSpace = request.nameSpace](const CIMInstance& item) {
        return EnumeratedResult(withFullPath(item, host, nameSpace));
    };
    auto object = [instance](const CIMObject& item) { return instance(CIMInstance(item)); };
    auto path = [](const CIMObjectPath& item) { return EnumeratedResult(item); };
    switch (request.operation) {
    case Operation::OpenEnumerateInstances:
        return forwarding<CIMInstance>(instance, [=, &dispatcher](Sink<CIMInstance>& sink) {
            dispatcher.enumerateInstances(caller, oneShot, sink);
        });
    case Operation::OpenEnumerateInstancePaths:
        return forwarding<CIMObjectPath>(path, [=, &dispatcher](Sink<CIMObjectPath>& sink) {
            dispatcher.enumerateInstanceNames(caller, oneShot, sink);
        });
    case Operation::OpenReferenceInstances:
        return forwarding<CIMObject>(object, [=, &dispatcher](Sink<CIMObject>& sink) {
            dispatcher.references(caller, oneShot, sink);
        });
    case Operation::OpenReferenceInstancePaths:
        return forwarding<CIMObjectPath>(path, [=, &dispatcher](Sink<CIMObjectPath>& sink) {
            dispatcher.referenceNames(caller, oneShot, sink);
        });
    case Operation::OpenAssociatorInstances:
        return forwarding<CIMObject>(object, [=, &dispatcher](Sink<CIMObject>& sink) {
            dispatcher.associators(caller, oneShot, sink);
        });
    default:
        return forwarding<CIMObjectPath>(path, [=, &dispatcher](Sink<CIMObjectPath>& sink) {
            dispatcher.associatorNames(caller, oneShot, sink);
        });
    }
}

std::string PullOperations::open(const Caller& caller, const OperationRequest& request) const {
    checkOpenRequest(request);
    return _contexts.open(caller, request.operationTimeout, kindOf(request.operation),
                          producerFor(caller, request));
}

void PullOperations::answer(const Caller& caller, const OperationRequest& request,
                            cimxml::IMethodResponseWriter& writer,
                            const std::function<void()>& written) const {
    if (request.operation == Operation::CloseEnumeration) {
        _contexts.close(caller, mof::utf8(request.enumerationContext));
        return writer.finish();
    }
    if (request.operation == Operation::EnumerationCount) {
        std::optional<Pegasus::Uint64> count =
            _contexts.count(caller, mof::utf8(request.enumerationContext));
        if (count)
            writer.writeValue(Pegasus::CIMValue(*count));
        return writer.finish();
    }
    const bool opens = cimxml::opensEnumeration(request.operation);
    _contexts.checkRequest(opens ? request.operationTimeout : std::nullopt, request.maxObjectCount);
    const std::string name = opens ? open(caller, request) : mof::utf8(request.enumerationContext);
    const bool ended =
        _contexts.pull(caller, name, kindOf(request.operation), request.maxObjectCount,
                       [&](const EnumeratedResult& result) {
                           if (const CIMInstance* instance = std::get_if<CIMInstance>(&result))
                               writer.writeInstance(*instance);
                           else
                               writer.writeObjectPath(std::get<CIMObjectPath>(result));
                           written();
                       });
    writer.finishPage(ended, Pegasus::String(name.c_str()));
}

} // namespace ksv::server
