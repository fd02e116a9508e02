#include "cimserver/InProcessAccess.h"

#include "mof_compiler/NamespaceStore.h"

#include <utility>

namespace ksv::server {

using cimxml::Operation;
using Pegasus::Array;
using Pegasus::Boolean;
using Pegasus::CIMClass;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::CIMParamValue;
using Pegasus::CIMPropertyList;
using Pegasus::CIMValue;
using Pegasus::OperationContext;
using Pegasus::String;
using Request = cimxml::OperationRequest;

namespace {

template <typename T, typename Run>
Array<T> collect(Run&& run) {
    CollectingSink<T> sink;
    run(sink);
    return sink.items();
}

} // namespace

Caller callerOf(const OperationContext& context) {
    if (context.contains(Pegasus::IdentityContainer::NAME)) {
        Pegasus::IdentityContainer identity(context.get(Pegasus::IdentityContainer::NAME));
        return Caller{mof::utf8(identity.getUserName())};
    }
    return Caller{};
}

void ServerHandleBackend::attach(const OperationDispatcher& dispatcher) {
    _dispatcher.store(&dispatcher);
}

void ServerHandleBackend::detach() {
    _dispatcher.store(nullptr);
}

const OperationDispatcher& ServerHandleBackend::dispatcher() const {
    const OperationDispatcher* dispatcher = _dispatcher.load();
    if (dispatcher == nullptr) {
        throw Pegasus::CIMException(Pegasus::CIM_ERR_SERVER_IS_SHUTTING_DOWN,
                                    "the CIM server is not running");
    }
    return *dispatcher;
}

CIMClass ServerHandleBackend::getClass(const OperationContext& context,
                                       const CIMNamespaceName& nameSpace, const CIMName& className,
                                       Boolean localOnly, Boolean includeQualifiers,
                                       Boolean includeClassOrigin,
                                       const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::GetClass, nameSpace);
    request.className = className;
    request.localOnly = localOnly;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
    return dispatcher().getClass(callerOf(context), request);
}

Array<CIMClass> ServerHandleBackend::enumerateClasses(const OperationContext& context,
                                                      const CIMNamespaceName& nameSpace,
                                                      const CIMName& className,
                                                      Boolean deepInheritance, Boolean localOnly,
                                                      Boolean includeQualifiers,
                                                      Boolean includeClassOrigin) {
    Request request = Request::make(Operation::EnumerateClasses, nameSpace);
    request.className = className;
    request.deepInheritance = deepInheritance;
    request.localOnly = localOnly;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    return collect<CIMClass>([&](Sink<CIMClass>& sink) {
        dispatcher().enumerateClasses(callerOf(context), request, sink);
    });
}

Array<CIMName> ServerHandleBackend::enumerateClassNames(const OperationContext& context,
                                                        const CIMNamespaceName& nameSpace,
                                                        const CIMName& className,
                                                        Boolean deepInheritance) {
    Request request = Request::make(Operation::EnumerateClassNames, nameSpace);
    request.className = className;
    request.deepInheritance = deepInheritance;
    return collect<CIMName>([&](Sink<CIMName>& sink) {
        dispatcher().enumerateClassNames(callerOf(context), request, sink);
    });
}

CIMInstance ServerHandleBackend::getInstance(const OperationContext& context,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMObjectPath& instanceName, Boolean localOnly,
                                             Boolean includeQualifiers, Boolean includeClassOrigin,
                                             const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::GetInstance, nameSpace);
    request.objectName = instanceName;
    request.localOnly = localOnly;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
    return dispatcher().getInstance(callerOf(context), request);
}

Array<CIMInstance> ServerHandleBackend::enumerateInstances(
    const OperationContext& context, const CIMNamespaceName& nameSpace, const CIMName& className,
    Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
    Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::EnumerateInstances, nameSpace);
    request.className = className;
    request.deepInheritance = deepInheritance;
    request.localOnly = localOnly;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
    return collect<CIMInstance>([&](Sink<CIMInstance>& sink) {
        dispatcher().enumerateInstances(callerOf(context), request, sink);
    });
}

Array<CIMObjectPath> ServerHandleBackend::enumerateInstanceNames(const OperationContext& context,
                                                                 const CIMNamespaceName& nameSpace,
                                                                 const CIMName& className) {
    Request request = Request::make(Operation::EnumerateInstanceNames, nameSpace);
    request.className = className;
    return collect<CIMObjectPath>([&](Sink<CIMObjectPath>& sink) {
        dispatcher().enumerateInstanceNames(callerOf(context), request, sink);
    });
}

CIMValue ServerHandleBackend::getProperty(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMObjectPath& instanceName,
                                          const CIMName& propertyName) {
    Request request = Request::make(Operation::GetProperty, nameSpace);
    request.objectName = instanceName;
    request.propertyName = propertyName;
    return dispatcher().getProperty(callerOf(context), request);
}

void ServerHandleBackend::setProperty(const OperationContext& context,
                                      const CIMNamespaceName& nameSpace,
                                      const CIMObjectPath& instanceName,
                                      const CIMName& propertyName, const CIMValue& newValue) {
    Request request = Request::make(Operation::SetProperty, nameSpace);
    request.objectName = instanceName;
    request.propertyName = propertyName;
    request.newValue = newValue;
    request.newValueTyped = true;
    dispatcher().setProperty(callerOf(context), request);
}

void ServerHandleBackend::modifyInstance(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMInstance& modifiedInstance,
                                         Boolean includeQualifiers,
                                         const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::ModifyInstance, nameSpace);
    request.instance = modifiedInstance;
    request.includeQualifiers = includeQualifiers;
    request.propertyList = propertyList;
    dispatcher().modifyInstance(callerOf(context), request);
}

CIMObjectPath ServerHandleBackend::createInstance(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMInstance& newInstance) {
    Request request = Request::make(Operation::CreateInstance, nameSpace);
    request.instance = newInstance;
    return dispatcher().createInstance(callerOf(context), request);
}

void ServerHandleBackend::deleteInstance(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& instanceName) {
    Request request = Request::make(Operation::DeleteInstance, nameSpace);
    request.objectName = instanceName;
    dispatcher().deleteInstance(callerOf(context), request);
}

Array<CIMObject>
ServerHandleBackend::associators(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& objectName, const CIMName& assocClass,
                                 const CIMName& resultClass, const String& role,
                                 const String& resultRole, Boolean includeQualifiers,
                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::Associators, nameSpace);
    request.objectName = objectName;
    request.assocClass = assocClass;
    request.resultClass = resultClass;
    request.role = role;
    request.resultRole = resultRole;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
    return collect<CIMObject>(
        [&](Sink<CIMObject>& sink) { dispatcher().associators(callerOf(context), request, sink); });
}

Array<CIMObjectPath> ServerHandleBackend::associatorNames(
    const OperationContext& context, const CIMNamespaceName& nameSpace,
    const CIMObjectPath& objectName, const CIMName& assocClass, const CIMName& resultClass,
    const String& role, const String& resultRole) {
    Request request = Request::make(Operation::AssociatorNames, nameSpace);
    request.objectName = objectName;
    request.assocClass = assocClass;
    request.resultClass = resultClass;
    request.role = role;
    request.resultRole = resultRole;
    return collect<CIMObjectPath>([&](Sink<CIMObjectPath>& sink) {
        dispatcher().associatorNames(callerOf(context), request, sink);
    });
}

Array<CIMObject>
ServerHandleBackend::references(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& objectName, const CIMName& resultClass,
                                const String& role, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    Request request = Request::make(Operation::References, nameSpace);
    request.objectName = objectName;
    request.resultClass = resultClass;
    request.role = role;
    request.includeQualifiers = includeQualifiers;
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
    return collect<CIMObject>(
        [&](Sink<CIMObject>& sink) { dispatcher().references(callerOf(context), request, sink); });
}

Array<CIMObjectPath> ServerHandleBackend::referenceNames(const OperationContext& context,
                                                         const CIMNamespaceName& nameSpace,
                                                         const CIMObjectPath& objectName,
                                                         const CIMName& resultClass,
                                                         const String& role) {
    Request request = Request::make(Operation::ReferenceNames, nameSpace);
    request.objectName = objectName;
    request.resultClass = resultClass;
    request.role = role;
    return collect<CIMObjectPath>([&](Sink<CIMObjectPath>& sink) {
        dispatcher().referenceNames(callerOf(context), request, sink);
    });
}

CIMValue ServerHandleBackend::invokeMethod(const OperationContext& context,
                                           const CIMNamespaceName& nameSpace,
                                           const CIMObjectPath& instanceName,
                                           const CIMName& methodName,
                                           const Array<CIMParamValue>& inParameters,
                                           Array<CIMParamValue>& outParameters) {
    Request request = Request::make(Operation::InvokeMethod, nameSpace);
    request.objectName = instanceName;
    request.methodName = methodName;
    request.inParameters = inParameters;
    return dispatcher().invokeMethod(callerOf(context), request, outParameters);
}

// ---- LocalClientConnection -------------------------------------------------------------------

LocalClientConnection::LocalClientConnection(std::shared_ptr<ServerHandleBackend> server)
    : _server(std::move(server)), _serverUser(contextFor(Caller{processUserName()})) {}

CIMClass LocalClientConnection::getClass(const CIMNamespaceName& nameSpace,
                                         const CIMName& className, Boolean localOnly,
                                         Boolean includeQualifiers, Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    return _server->getClass(_serverUser, nameSpace, className, localOnly, includeQualifiers,
                             includeClassOrigin, propertyList);
}

Array<CIMName> LocalClientConnection::enumerateClassNames(const CIMNamespaceName& nameSpace,
                                                          const CIMName& className,
                                                          Boolean deepInheritance) {
    return _server->enumerateClassNames(_serverUser, nameSpace, className, deepInheritance);
}

Array<CIMClass> LocalClientConnection::enumerateClasses(const CIMNamespaceName& nameSpace,
                                                        const CIMName& className,
                                                        Boolean deepInheritance, Boolean localOnly,
                                                        Boolean includeQualifiers,
                                                        Boolean includeClassOrigin) {
    return _server->enumerateClasses(_serverUser, nameSpace, className, deepInheritance, localOnly,
                                     includeQualifiers, includeClassOrigin);
}

CIMInstance LocalClientConnection::getInstance(const CIMNamespaceName& nameSpace,
                                               const CIMObjectPath& instanceName, Boolean localOnly,
                                               Boolean includeQualifiers,
                                               Boolean includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    return _server->getInstance(_serverUser, nameSpace, instanceName, localOnly, includeQualifiers,
                                includeClassOrigin, propertyList);
}

Array<CIMInstance> LocalClientConnection::enumerateInstances(
    const CIMNamespaceName& nameSpace, const CIMName& className, Boolean deepInheritance,
    Boolean localOnly, Boolean includeQualifiers, Boolean includeClassOrigin,
    const CIMPropertyList& propertyList) {
    return _server->enumerateInstances(_serverUser, nameSpace, className, deepInheritance,
                                       localOnly, includeQualifiers, includeClassOrigin,
                                       propertyList);
}

Array<CIMObjectPath>
LocalClientConnection::enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                              const CIMName& className) {
    return _server->enumerateInstanceNames(_serverUser, nameSpace, className);
}

void LocalClientConnection::modifyInstance(const CIMNamespaceName& nameSpace,
                                           const CIMInstance& modifiedInstance,
                                           Boolean includeQualifiers,
                                           const CIMPropertyList& propertyList) {
    _server->modifyInstance(_serverUser, nameSpace, modifiedInstance, includeQualifiers,
                            propertyList);
}

CIMObjectPath LocalClientConnection::createInstance(const CIMNamespaceName& nameSpace,
                                                    const CIMInstance& newInstance) {
    return _server->createInstance(_serverUser, nameSpace, newInstance);
}

void LocalClientConnection::deleteInstance(const CIMNamespaceName& nameSpace,
                                           const CIMObjectPath& instanceName) {
    _server->deleteInstance(_serverUser, nameSpace, instanceName);
}

CIMValue LocalClientConnection::getProperty(const CIMNamespaceName& nameSpace,
                                            const CIMObjectPath& instanceName,
                                            const CIMName& propertyName) {
    return _server->getProperty(_serverUser, nameSpace, instanceName, propertyName);
}

void LocalClientConnection::setProperty(const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& instanceName,
                                        const CIMName& propertyName, const CIMValue& newValue) {
    _server->setProperty(_serverUser, nameSpace, instanceName, propertyName, newValue);
}

Array<CIMObject> LocalClientConnection::associators(
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& assocClass,
    const CIMName& resultClass, const String& role, const String& resultRole,
    Boolean includeQualifiers, Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return _server->associators(_serverUser, nameSpace, objectName, assocClass, resultClass, role,
                                resultRole, includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> LocalClientConnection::associatorNames(
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& assocClass,
    const CIMName& resultClass, const String& role, const String& resultRole) {
    return _server->associatorNames(_serverUser, nameSpace, objectName, assocClass, resultClass,
                                    role, resultRole);
}

Array<CIMObject> LocalClientConnection::references(const CIMNamespaceName& nameSpace,
                                                   const CIMObjectPath& objectName,
                                                   const CIMName& resultClass, const String& role,
                                                   Boolean includeQualifiers,
                                                   Boolean includeClassOrigin,
                                                   const CIMPropertyList& propertyList) {
    return _server->references(_serverUser, nameSpace, objectName, resultClass, role,
                               includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> LocalClientConnection::referenceNames(const CIMNamespaceName& nameSpace,
                                                           const CIMObjectPath& objectName,
                                                           const CIMName& resultClass,
                                                           const String& role) {
    return _server->referenceNames(_serverUser, nameSpace, objectName, resultClass, role);
}

CIMValue LocalClientConnection::invokeMethod(const CIMNamespaceName& nameSpace,
                                             const CIMObjectPath& instanceName,
                                             const CIMName& methodName,
                                             const Array<CIMParamValue>& inParameters,
                                             Array<CIMParamValue>& outParameters) {
    return _server->invokeMethod(_serverUser, nameSpace, instanceName, methodName, inParameters,
                                 outParameters);
}

} // namespace ksv::server
