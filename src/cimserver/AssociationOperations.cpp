// Associators, AssociatorNames, References and ReferenceNames: routed to the association
// providers whose association classes the request admits, each called under its own class.
#include "cimserver/OperationDispatcher.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>

#include "cimserver/ProviderHandlers.h"

namespace ksv::server {

using Pegasus::CIMConstClass;
using Pegasus::CIMException;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::String;
using Pegasus::Uint32;

namespace {

// An object name without keys names a class.
bool namesClass(const CIMObjectPath& objectName) {
    return objectName.getKeyBindings().size() == 0;
}

bool matchesRole(const String& role, const CIMName& propertyName) {
    return role.size() == 0 || String::equalNoCase(role, propertyName.getString());
}

void addOnce(std::vector<CIMName>& names, const CIMName& name) {
    for (const CIMName& known : names) {
        if (known.equal(name))
            return;
    }
    names.push_back(name);
}

void requireLegalRole(const String& role, const char* parameterName) {
    if (role.size() != 0 && !CIMName::legal(role)) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER,
                           String(parameterName) + " " + role + " is not a CIM name");
    }
}

} // namespace

void OperationDispatcher::checkAssociationRequest(const Request& request) const {
    requireNamespace(request.nameSpace);
    requireClass(request.nameSpace, request.objectName.getClassName(),
                 Pegasus::CIM_ERR_INVALID_PARAMETER);
    if (!request.assocClass.isNull())
        requireClass(request.nameSpace, request.assocClass, Pegasus::CIM_ERR_INVALID_PARAMETER);
    if (!request.resultClass.isNull())
        requireClass(request.nameSpace, request.resultClass, Pegasus::CIM_ERR_INVALID_PARAMETER);
    requireLegalRole(request.role, "Role");
    requireLegalRole(request.resultRole, "ResultRole");
}

bool OperationDispatcher::refersTo(const CIMNamespaceName& nameSpace,
                                   const CIMName& associationClass,
                                   const CIMName& objectClass) const {
    CIMConstClass association = _classes.find(nameSpace, associationClass);
    if (association.isUninitialized())
        return false;
    for (Uint32 i = 0; i < association.getPropertyCount(); ++i) {
        Pegasus::CIMConstProperty property = association.getProperty(i);
        if (property.getType() == Pegasus::CIMTYPE_REFERENCE &&
            _repository.isSubclassOf(nameSpace, objectClass, property.getReferenceClassName()))
            return true;
    }
    return false;
}

std::vector<ProviderRoute>
OperationDispatcher::associationRoutes(const Request& request, const CIMName& filterClass) const {
    std::vector<ProviderRoute> admitted;
    for (const ProviderRoute& route :
         _providers.routes(ProviderType::Association, request.nameSpace)) {
        bool admits =
            filterClass.isNull()
                ? refersTo(request.nameSpace, route.className, request.objectName.getClassName())
                : _repository.isSubclassOf(request.nameSpace, route.className, filterClass);
        if (admits)
            admitted.push_back(route);
    }
    return admitted;
}

std::vector<CIMName> OperationDispatcher::classAssociates(const Request& request,
                                                          const CIMName& associationFilter,
                                                          const CIMName& resultFilter,
                                                          bool farEnds) const {
    const CIMNamespaceName& nameSpace = request.nameSpace;
    std::vector<CIMName> found;
    Pegasus::Array<CIMName> classes = _repository.enumerateClassNames(nameSpace, CIMName(), true);
    for (Uint32 c = 0; c < classes.size(); ++c) {
        CIMConstClass association = _classes.find(nameSpace, classes[c]);
        if (!association.isAssociation() ||
            (!associationFilter.isNull() &&
             !_repository.isSubclassOf(nameSpace, classes[c], associationFilter)))
            continue;
        for (Uint32 near = 0; near < association.getPropertyCount(); ++near) {
            Pegasus::CIMConstProperty nearEnd = association.getProperty(near);
            if (nearEnd.getType() != Pegasus::CIMTYPE_REFERENCE ||
                !matchesRole(request.role, nearEnd.getName()) ||
                !_repository.isSubclassOf(nameSpace, request.objectName.getClassName(),
                                          nearEnd.getReferenceClassName()))
                continue;
            if (!farEnds) {
                addOnce(found, classes[c]);
                continue;
            }
            for (Uint32 far = 0; far < association.getPropertyCount(); ++far) {
                Pegasus::CIMConstProperty farEnd = association.getProperty(far);
                const CIMName& farClass = farEnd.getReferenceClassName();
                if (far != near && farEnd.getType() == Pegasus::CIMTYPE_REFERENCE &&
                    matchesRole(request.resultRole, farEnd.getName()) &&
                    (resultFilter.isNull() ||
                     _repository.isSubclassOf(nameSpace, farClass, resultFilter)))
                    addOnce(found, farClass);
            }
        }
    }
    return found;
}

CIMObjectPath OperationDispatcher::classPath(const Request& request,
                                             const CIMName& className) const {
    return CIMObjectPath(_hostName, request.nameSpace, className);
}

CIMObject OperationDispatcher::classObject(const Request& request, const CIMName& className) const {
    Pegasus::CIMClass found =
        _repository.getClass(request.nameSpace, className, false, request.includeQualifiers,
                             request.includeClassOrigin, request.propertyList);
    found.setPath(classPath(request, className));
    return CIMObject(found);
}

void OperationDispatcher::associators(const Caller& caller, const Request& request,
                                      Sink<CIMObject>& sink) const {
    checkAssociationRequest(request);
    if (namesClass(request.objectName)) {
        for (const CIMName& far :
             classAssociates(request, request.assocClass, request.resultClass, true))
            sink.put(classObject(request, far));
        return;
    }
    const ObjectFilter filter{request.includeQualifiers, request.includeClassOrigin,
                              request.propertyList};
    const CIMObjectPath objectName = providerPath(request.nameSpace, request.objectName);
    ObjectForwarder handler([&](const CIMObject& object) {
        sink.put(shaped(object, filter, _hostName, request.nameSpace));
    });
    for (const ProviderRoute& route : associationRoutes(request, request.assocClass)) {
        route.provider->invoke<Pegasus::CIMAssociationProvider>("associators", [&](auto& p) {
            p.associators(contextFor(caller), objectName, route.className, request.resultClass,
                          request.role, request.resultRole, filter.includeQualifiers,
                          filter.includeClassOrigin, filter.propertyList, handler);
        });
    }
}

void OperationDispatcher::associatorNames(const Caller& caller, const Request& request,
                                          Sink<CIMObjectPath>& sink) const {
    checkAssociationRequest(request);
    if (namesClass(request.objectName)) {
        for (const CIMName& far :
             classAssociates(request, request.assocClass, request.resultClass, true))
            sink.put(classPath(request, far));
        return;
    }
    const CIMObjectPath objectName = providerPath(request.nameSpace, request.objectName);
    const cimxml::PathDefaults defaults{_hostName, request.nameSpace};
    ObjectPathForwarder handler([&](const CIMObjectPath& path) {
        cimxml::withCompleted(path, defaults,
                              [&sink](const CIMObjectPath& full) { sink.put(full); });
    });
    for (const ProviderRoute& route : associationRoutes(request, request.assocClass)) {
        route.provider->invoke<Pegasus::CIMAssociationProvider>("associatorNames", [&](auto& p) {
            p.associatorNames(contextFor(caller), objectName, route.className, request.resultClass,
                              request.role, request.resultRole, handler);
        });
    }
}

// For References the ResultClass names the association class.
void OperationDispatcher::references(const Caller& caller, const Request& request,
                                     Sink<CIMObject>& sink) const {
    checkAssociationRequest(request);
    if (namesClass(request.objectName)) {
        for (const CIMName& association :
             classAssociates(request, request.resultClass, CIMName(), false))
            sink.put(classObject(request, association));
        return;
    }
    const ObjectFilter filter{request.includeQualifiers, request.includeClassOrigin,
                              request.propertyList};
    const CIMObjectPath objectName = providerPath(request.nameSpace, request.objectName);
    ObjectForwarder handler([&](const CIMObject& object) {
        sink.put(shaped(object, filter, _hostName, request.nameSpace));
    });
    for (const ProviderRoute& route : associationRoutes(request, request.resultClass)) {
        route.provider->invoke<Pegasus::CIMAssociationProvider>("references", [&](auto& p) {
            p.references(contextFor(caller), objectName, route.className, request.role,
                         filter.includeQualifiers, filter.includeClassOrigin, filter.propertyList,
                         handler);
        });
    }
}

void OperationDispatcher::referenceNames(const Caller& caller, const Request& request,
                                         Sink<CIMObjectPath>& sink) const {
    checkAssociationRequest(request);
    if (namesClass(request.objectName)) {
        for (const CIMName& association :
             classAssociates(request, request.resultClass, CIMName(), false))
            sink.put(classPath(request, association));
        return;
    }
    const CIMObjectPath objectName = providerPath(request.nameSpace, request.objectName);
    const cimxml::PathDefaults defaults{_hostName, request.nameSpace};
    ObjectPathForwarder handler([&](const CIMObjectPath& path) {
        cimxml::withCompleted(path, defaults,
                              [&sink](const CIMObjectPath& full) { sink.put(full); });
    });
    for (const ProviderRoute& route : associationRoutes(request, request.resultClass)) {
        route.provider->invoke<Pegasus::CIMAssociationProvider>("referenceNames", [&](auto& p) {
            p.referenceNames(contextFor(caller), objectName, route.className, request.role,
                             handler);
        });
    }
}

} // namespace ksv::server
