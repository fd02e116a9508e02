#include "cimserver/OperationDispatcher.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

#include <cimxml/Values.h>

#include "cimserver/ProviderHandlers.h"

#include <utility>

namespace ksv::server {

using Pegasus::Array;
using Pegasus::CIMClass;
using Pegasus::CIMConstClass;
using Pegasus::CIMException;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMParamValue;
using Pegasus::CIMPropertyList;
using Pegasus::CIMStatusCode;
using Pegasus::CIMValue;
using Pegasus::String;
using Pegasus::Uint32;

namespace {

String describe(const CIMName& className) {
    return className.isNull() ? String("(no class)") : className.getString();
}

// What the client sent, as the server's own error texts quote it: in part, since a path may
// carry thousands of keys.
String quotedInPart(const String& text) {
    constexpr Uint32 kShown = 256;
    return text.size() <= kShown ? text : text.subString(0, kShown) + "...";
}

// Repository instances belong to the class they were defined for; subclasses have their own.
bool ofExactly(const Pegasus::CIMConstInstance& instance, const CIMName& className) {
    return instance.getClassName().equal(className);
}

// Names the instance by its keys when its provider left the path out; the provider's own
// object stays as it was.
CIMInstance withPath(const CIMInstance& instance, const CIMConstClass& itsClass) {
    if (instance.getPath().getKeyBindings().size() > 0 || !itsClass.hasKeys())
        return instance;
    CIMInstance named = instance.clone();
    named.setPath(instance.buildPath(itsClass));
    return named;
}

CIMInstance withPath(const CIMInstance& instance, const CIMObjectPath& path) {
    if (instance.getPath().getKeyBindings().size() > 0)
        return instance;
    CIMInstance named = instance.clone();
    named.setPath(path);
    return named;
}

CIMPropertyList onlyProperty(const CIMName& propertyName) {
    Array<CIMName> names;
    names.append(propertyName);
    return CIMPropertyList(names);
}

} // namespace

Pegasus::OperationContext contextFor(const Caller& caller) {
    Pegasus::OperationContext context;
    context.insert(Pegasus::IdentityContainer(String(caller.userName.c_str())));
    return context;
}

OperationDispatcher::OperationDispatcher(const mof::ClassRepository& repository,
                                         const ProviderTable& providers, String hostName)
    : _repository(repository), _providers(providers), _hostName(std::move(hostName)),
      _classes(repository) {}

void OperationDispatcher::requireNamespace(const CIMNamespaceName& nameSpace) const {
    if (nameSpace.isNull() || !_repository.nameSpaceExists(nameSpace)) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_NAMESPACE,
                           nameSpace.isNull() ? String("(no namespace)") : nameSpace.getString());
    }
}

CIMConstClass OperationDispatcher::requireClass(const CIMNamespaceName& nameSpace,
                                                const CIMName& className,
                                                CIMStatusCode codeIfUnknown) const {
    CIMConstClass found = _classes.find(nameSpace, className);
    if (found.isUninitialized())
        throw CIMException(codeIfUnknown, describe(className));
    return found;
}

HostedProvider& OperationDispatcher::requireInstanceProvider(const CIMNamespaceName& nameSpace,
                                                             const CIMName& className,
                                                             const char* operation) const {
    HostedProvider* provider = _providers.find(ProviderType::Instance, nameSpace, className);
    if (provider == nullptr) {
        throw CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED,
                           String(operation) + " of " + className.getString() +
                               ": no provider is registered for the class");
    }
    return *provider;
}

CIMObjectPath OperationDispatcher::providerPath(const CIMNamespaceName& nameSpace,
                                                const CIMObjectPath& path) const {
    return CIMObjectPath(_hostName, nameSpace, path.getClassName(), path.getKeyBindings());
}

std::vector<CIMName> OperationDispatcher::classAndSubclasses(const CIMNamespaceName& nameSpace,
                                                             const CIMName& className) const {
    std::vector<CIMName> classes{className};
    Array<CIMName> subclasses = _repository.enumerateClassNames(nameSpace, className, true);
    for (Uint32 i = 0; i < subclasses.size(); ++i)
        classes.push_back(subclasses[i]);
    return classes;
}

// ---- Classes ---------------------------------------------------------------------------------

CIMClass OperationDispatcher::getClass(const Caller&, const Request& request) const {
    requireNamespace(request.nameSpace);
    return _repository.getClass(request.nameSpace, request.className, request.localOnly,
                                request.includeQualifiers, request.includeClassOrigin,
                                request.propertyList);
}

void OperationDispatcher::enumerateClassNames(const Caller&, const Request& request,
                                              Sink<CIMName>& sink) const {
    requireNamespace(request.nameSpace);
    Array<CIMName> names = _repository.enumerateClassNames(request.nameSpace, request.className,
                                                           request.deepInheritance);
    for (Uint32 i = 0; i < names.size(); ++i)
        sink.put(names[i]);
}

void OperationDispatcher::enumerateClasses(const Caller&, const Request& request,
                                           Sink<CIMClass>& sink) const {
    requireNamespace(request.nameSpace);
    Array<CIMClass> classes = _repository.enumerateClasses(
        request.nameSpace, request.className, request.deepInheritance, request.localOnly,
        request.includeQualifiers, request.includeClassOrigin);
    for (Uint32 i = 0; i < classes.size(); ++i)
        sink.put(classes[i]);
}

// ---- Instances -------------------------------------------------------------------------------

CIMInstance OperationDispatcher::getInstance(const Caller& caller, const Request& request) const {
    requireNamespace(request.nameSpace);
    requireClass(request.nameSpace, request.objectName.getClassName(),
                 Pegasus::CIM_ERR_INVALID_CLASS);
    return fetchInstance(
        caller, request,
        {request.includeQualifiers, request.includeClassOrigin, request.propertyList});
}

// LocalOnly is deprecated for instances and, as in other CIM servers, not applied.
CIMInstance OperationDispatcher::fetchInstance(const Caller& caller, const Request& request,
                                               const ObjectFilter& filter) const {
    const CIMObjectPath& name = request.objectName;
    HostedProvider* provider =
        _providers.find(ProviderType::Instance, request.nameSpace, name.getClassName());
    if (provider == nullptr)
        return filtered(_repository.getInstance(request.nameSpace, name), filter);
    SingleInstanceHandler handler;
    provider->invoke<Pegasus::CIMInstanceProvider>("getInstance", [&](auto& instances) {
        instances.getInstance(contextFor(caller), providerPath(request.nameSpace, name),
                              filter.includeQualifiers, filter.includeClassOrigin,
                              filter.propertyList, handler);
    });
    if (!handler.result())
        throw CIMException(Pegasus::CIM_ERR_NOT_FOUND, quotedInPart(name.toString()));
    return filtered(withPath(*handler.result(), name), filter);
}

void OperationDispatcher::enumerateInstances(const Caller& caller, const Request& request,
                                             Sink<CIMInstance>& sink) const {
    requireNamespace(request.nameSpace);
    CIMConstClass requested =
        requireClass(request.nameSpace, request.className, Pegasus::CIM_ERR_INVALID_CLASS);
    ObjectFilter filter{request.includeQualifiers, request.includeClassOrigin,
                        request.deepInheritance
                            ? request.propertyList
                            : propertiesOfClass(requested, request.propertyList)};
    for (const CIMName& className : classAndSubclasses(request.nameSpace, request.className))
        enumerateInstancesOf(caller, request, className, filter, sink);
}

// Each class's provider is asked for the instances of its own class, under that class's name.
void OperationDispatcher::enumerateInstancesOf(const Caller& caller, const Request& request,
                                               const CIMName& className, const ObjectFilter& filter,
                                               Sink<CIMInstance>& sink) const {
    CIMConstClass itsClass = requireClass(request.nameSpace, className, Pegasus::CIM_ERR_FAILED);
    HostedProvider* provider =
        _providers.find(ProviderType::Instance, request.nameSpace, className);
    if (provider == nullptr) {
        Array<CIMInstance> stored = _repository.enumerateInstances(request.nameSpace, className);
        for (Uint32 i = 0; i < stored.size(); ++i) {
            if (ofExactly(stored[i], className))
                sink.put(stored[i], filter);
        }
        return;
    }
    InstanceForwarder handler(
        [&](const CIMInstance& instance) { sink.put(withPath(instance, itsClass), filter); });
    provider->invoke<Pegasus::CIMInstanceProvider>("enumerateInstances", [&](auto& instances) {
        instances.enumerateInstances(
            contextFor(caller), CIMObjectPath(_hostName, request.nameSpace, className),
            filter.includeQualifiers, filter.includeClassOrigin, filter.propertyList, handler);
    });
}

void OperationDispatcher::enumerateInstanceNames(const Caller& caller, const Request& request,
                                                 Sink<CIMObjectPath>& sink) const {
    requireNamespace(request.nameSpace);
    requireClass(request.nameSpace, request.className, Pegasus::CIM_ERR_INVALID_CLASS);
    for (const CIMName& className : classAndSubclasses(request.nameSpace, request.className))
        enumerateInstanceNamesOf(caller, request, className, sink);
}

void OperationDispatcher::enumerateInstanceNamesOf(const Caller& caller, const Request& request,
                                                   const CIMName& className,
                                                   Sink<CIMObjectPath>& sink) const {
    HostedProvider* provider =
        _providers.find(ProviderType::Instance, request.nameSpace, className);
    const cimxml::PathDefaults defaults{_hostName, request.nameSpace};
    if (provider == nullptr) {
        Array<CIMInstance> stored = _repository.enumerateInstances(request.nameSpace, className);
        for (Uint32 i = 0; i < stored.size(); ++i) {
            if (ofExactly(stored[i], className))
                sink.put(cimxml::completed(stored[i].getPath(), defaults));
        }
        return;
    }
    ObjectPathForwarder handler([&](const CIMObjectPath& path) {
        cimxml::withCompleted(path, defaults,
                              [&sink](const CIMObjectPath& full) { sink.put(full); });
    });
    provider->invoke<Pegasus::CIMInstanceProvider>("enumerateInstanceNames", [&](auto& instances) {
        instances.enumerateInstanceNames(
            contextFor(caller), CIMObjectPath(_hostName, request.nameSpace, className), handler);
    });
}

CIMObjectPath OperationDispatcher::createInstance(const Caller& caller,
                                                  const Request& request) const {
    requireNamespace(request.nameSpace);
    if (request.instance.isUninitialized())
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, "NewInstance is missing");
    const CIMName& className = request.instance.getClassName();
    CIMConstClass itsClass =
        requireClass(request.nameSpace, className, Pegasus::CIM_ERR_INVALID_CLASS);
    HostedProvider& provider =
        requireInstanceProvider(request.nameSpace, className, "CreateInstance");
    CIMObjectPath reference = CIMObjectPath(_hostName, request.nameSpace, className);
    try {
        reference = providerPath(request.nameSpace, request.instance.buildPath(itsClass));
    } catch (const Pegasus::Exception&) {
        // Keys the provider assigns itself; it gets the class path.
    }
    SingleObjectPathHandler handler;
    provider.invoke<Pegasus::CIMInstanceProvider>("createInstance", [&](auto& instances) {
        instances.createInstance(contextFor(caller), reference, request.instance, handler);
    });
    if (!handler.result())
        throw CIMException(Pegasus::CIM_ERR_FAILED, "the provider returned no instance name");
    return *handler.result();
}

void OperationDispatcher::modifyInstance(const Caller& caller, const Request& request) const {
    requireNamespace(request.nameSpace);
    if (request.instance.isUninitialized())
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, "ModifiedInstance is missing");
    const CIMObjectPath& name = request.instance.getPath();
    requireClass(request.nameSpace, name.getClassName(), Pegasus::CIM_ERR_INVALID_CLASS);
    HostedProvider& provider =
        requireInstanceProvider(request.nameSpace, name.getClassName(), "ModifyInstance");
    CompletionHandler handler;
    provider.invoke<Pegasus::CIMInstanceProvider>("modifyInstance", [&](auto& instances) {
        instances.modifyInstance(contextFor(caller), providerPath(request.nameSpace, name),
                                 request.instance, request.includeQualifiers, request.propertyList,
                                 handler);
    });
}

void OperationDispatcher::deleteInstance(const Caller& caller, const Request& request) const {
    requireNamespace(request.nameSpace);
    const CIMObjectPath& name = request.objectName;
    requireClass(request.nameSpace, name.getClassName(), Pegasus::CIM_ERR_INVALID_CLASS);
    HostedProvider& provider =
        requireInstanceProvider(request.nameSpace, name.getClassName(), "DeleteInstance");
    CompletionHandler handler;
    provider.invoke<Pegasus::CIMInstanceProvider>("deleteInstance", [&](auto& instances) {
        instances.deleteInstance(contextFor(caller), providerPath(request.nameSpace, name),
                                 handler);
    });
}

// Providers have no property operations: GetProperty is a GetInstance of that one property.
CIMValue OperationDispatcher::getProperty(const Caller& caller, const Request& request) const {
    requireNamespace(request.nameSpace);
    CIMConstClass itsClass = requireClass(request.nameSpace, request.objectName.getClassName(),
                                          Pegasus::CIM_ERR_INVALID_CLASS);
    Uint32 declared = itsClass.findProperty(request.propertyName);
    if (declared == PEG_NOT_FOUND) {
        throw CIMException(Pegasus::CIM_ERR_NO_SUCH_PROPERTY,
                           request.propertyName.isNull() ? String("(no property)")
                                                         : request.propertyName.getString());
    }
    CIMInstance instance =
        fetchInstance(caller, request, {false, false, onlyProperty(request.propertyName)});
    Uint32 index = instance.findProperty(request.propertyName);
    if (index == PEG_NOT_FOUND) {
        Pegasus::CIMConstProperty property = itsClass.getProperty(declared);
        return CIMValue(property.getType(), property.isArray());
    }
    return instance.getProperty(index).getValue();
}

// And SetProperty a ModifyInstance of that one property.
void OperationDispatcher::setProperty(const Caller& caller, const Request& request) const {
    requireNamespace(request.nameSpace);
    const CIMName& className = request.objectName.getClassName();
    CIMConstClass itsClass =
        requireClass(request.nameSpace, className, Pegasus::CIM_ERR_INVALID_CLASS);
    Uint32 declared = itsClass.findProperty(request.propertyName);
    if (declared == PEG_NOT_FOUND) {
        throw CIMException(Pegasus::CIM_ERR_NO_SUCH_PROPERTY,
                           request.propertyName.isNull() ? String("(no property)")
                                                         : request.propertyName.getString());
    }
    Pegasus::CIMConstProperty property = itsClass.getProperty(declared);
    CIMValue value = cimxml::typeValue(request.newValue, property.getType(), property.isArray());
    CIMInstance modified(className);
    modified.setPath(request.objectName);
    modified.addProperty(
        Pegasus::CIMProperty(property.getName(), value, 0, property.getReferenceClassName()));
    Request modify = Request::make(cimxml::Operation::ModifyInstance, request.nameSpace);
    modify.instance = modified;
    modify.includeQualifiers = false;
    modify.propertyList = onlyProperty(property.getName());
    modifyInstance(caller, modify);
}

// ---- Methods ---------------------------------------------------------------------------------

CIMValue OperationDispatcher::invokeMethod(const Caller& caller, const Request& request,
                                           Array<CIMParamValue>& outParameters) const {
    requireNamespace(request.nameSpace);
    const CIMName& className = request.objectName.getClassName();
    CIMConstClass itsClass = requireClass(request.nameSpace, className, Pegasus::CIM_ERR_NOT_FOUND);
    Uint32 method = itsClass.findMethod(request.methodName);
    if (method == PEG_NOT_FOUND) {
        throw CIMException(Pegasus::CIM_ERR_METHOD_NOT_FOUND,
                           className.getString() + "." + describe(request.methodName));
    }
    Array<CIMParamValue> inParameters =
        cimxml::typeParameters(itsClass.getMethod(method), request.inParameters);
    HostedProvider* provider =
        _providers.findMethodProvider(request.nameSpace, className, request.methodName);
    if (provider == nullptr) {
        throw CIMException(Pegasus::CIM_ERR_METHOD_NOT_AVAILABLE,
                           className.getString() + "." + request.methodName.getString() +
                               ": no provider is registered for the method");
    }
    MethodResultCollector handler;
    provider->invoke<Pegasus::CIMMethodProvider>("invokeMethod", [&](auto& methods) {
        methods.invokeMethod(contextFor(caller),
                             providerPath(request.nameSpace, request.objectName),
                             request.methodName, inParameters, handler);
    });
    outParameters = handler.outParameters();
    return handler.returnValue();
}

} // namespace ksv::server
