#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include <utility>

PEGASUS_NAMESPACE_BEGIN

CIMOMHandle::CIMOMHandle() : _backend(CIMOMHandleBackend::getDefault()) {}

CIMOMHandle::CIMOMHandle(std::shared_ptr<CIMOMHandleBackend> backend)
    : _backend(std::move(backend)) {}

CIMOMHandle::CIMOMHandle(const CIMOMHandle&) = default;

CIMOMHandle::~CIMOMHandle() = default;

CIMOMHandle& CIMOMHandle::operator=(const CIMOMHandle& handle) = default;

CIMOMHandleBackend& CIMOMHandle::_backendFor(const char* operation) const {
    if (!_backend) {
        throw CIMException(CIM_ERR_FAILED, String("CIMOMHandle::") + operation +
                                               ": the handle is not attached to a CIM server");
    }
    return *_backend;
}

CIMClass CIMOMHandle::getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                               const CIMName& className, Boolean localOnly,
                               Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    return _backendFor("getClass")
        .getClass(context, nameSpace, className, localOnly, includeQualifiers, includeClassOrigin,
                  propertyList);
}

Array<CIMClass> CIMOMHandle::enumerateClasses(const OperationContext& context,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMName& className, Boolean deepInheritance,
                                              Boolean localOnly, Boolean includeQualifiers,
                                              Boolean includeClassOrigin) {
    return _backendFor("enumerateClasses")
        .enumerateClasses(context, nameSpace, className, deepInheritance, localOnly,
                          includeQualifiers, includeClassOrigin);
}

Array<CIMName> CIMOMHandle::enumerateClassNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className, Boolean deepInheritance) {
    return _backendFor("enumerateClassNames")
        .enumerateClassNames(context, nameSpace, className, deepInheritance);
}

void CIMOMHandle::createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMClass& newClass) {
    _backendFor("createClass").createClass(context, nameSpace, newClass);
}

void CIMOMHandle::modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMClass& modifiedClass) {
    _backendFor("modifyClass").modifyClass(context, nameSpace, modifiedClass);
}

void CIMOMHandle::deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMName& className) {
    _backendFor("deleteClass").deleteClass(context, nameSpace, className);
}

CIMInstance CIMOMHandle::getInstance(const OperationContext& context,
                                     const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& instanceName, Boolean localOnly,
                                     Boolean includeQualifiers, Boolean includeClassOrigin,
                                     const CIMPropertyList& propertyList) {
    return _backendFor("getInstance")
        .getInstance(context, nameSpace, instanceName, localOnly, includeQualifiers,
                     includeClassOrigin, propertyList);
}

Array<CIMInstance>
CIMOMHandle::enumerateInstances(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMName& className, Boolean deepInheritance,
                                Boolean localOnly, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return _backendFor("enumerateInstances")
        .enumerateInstances(context, nameSpace, className, deepInheritance, localOnly,
                            includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMOMHandle::enumerateInstanceNames(const OperationContext& context,
                                                         const CIMNamespaceName& nameSpace,
                                                         const CIMName& className) {
    return _backendFor("enumerateInstanceNames")
        .enumerateInstanceNames(context, nameSpace, className);
}

CIMObjectPath CIMOMHandle::createInstance(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMInstance& newInstance) {
    return _backendFor("createInstance").createInstance(context, nameSpace, newInstance);
}

void CIMOMHandle::modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                 const CIMPropertyList& propertyList) {
    _backendFor("modifyInstance")
        .modifyInstance(context, nameSpace, modifiedInstance, includeQualifiers, propertyList);
}

void CIMOMHandle::deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName) {
    _backendFor("deleteInstance").deleteInstance(context, nameSpace, instanceName);
}

Array<CIMObject> CIMOMHandle::execQuery(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const String& queryLanguage, const String& query) {
    return _backendFor("execQuery").execQuery(context, nameSpace, queryLanguage, query);
}

Array<CIMObject> CIMOMHandle::associators(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMObjectPath& objectName,
                                          const CIMName& assocClass, const CIMName& resultClass,
                                          const String& role, const String& resultRole,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) {
    return _backendFor("associators")
        .associators(context, nameSpace, objectName, assocClass, resultClass, role, resultRole,
                     includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMOMHandle::associatorNames(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMObjectPath& objectName,
                                                  const CIMName& assocClass,
                                                  const CIMName& resultClass, const String& role,
                                                  const String& resultRole) {
    return _backendFor("associatorNames")
        .associatorNames(context, nameSpace, objectName, assocClass, resultClass, role, resultRole);
}

Array<CIMObject> CIMOMHandle::references(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName,
                                         const CIMName& resultClass, const String& role,
                                         Boolean includeQualifiers, Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    return _backendFor("references")
        .references(context, nameSpace, objectName, resultClass, role, includeQualifiers,
                    includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMOMHandle::referenceNames(const OperationContext& context,
                                                 const CIMNamespaceName& nameSpace,
                                                 const CIMObjectPath& objectName,
                                                 const CIMName& resultClass, const String& role) {
    return _backendFor("referenceNames")
        .referenceNames(context, nameSpace, objectName, resultClass, role);
}

CIMValue CIMOMHandle::getProperty(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& propertyName) {
    return _backendFor("getProperty").getProperty(context, nameSpace, instanceName, propertyName);
}

void CIMOMHandle::setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMObjectPath& instanceName, const CIMName& propertyName,
                              const CIMValue& newValue) {
    _backendFor("setProperty")
        .setProperty(context, nameSpace, instanceName, propertyName, newValue);
}

CIMValue CIMOMHandle::invokeMethod(const OperationContext& context,
                                   const CIMNamespaceName& nameSpace,
                                   const CIMObjectPath& instanceName, const CIMName& methodName,
                                   const Array<CIMParamValue>& inParameters,
                                   Array<CIMParamValue>& outParameters) {
    return _backendFor("invokeMethod")
        .invokeMethod(context, nameSpace, instanceName, methodName, inParameters, outParameters);
}

// Unload pinning is bookkeeping of the host; a detached handle has nothing to pin.
void CIMOMHandle::disallowProviderUnload() {
    if (_backend) {
        _backend->disallowProviderUnload();
    }
}

void CIMOMHandle::allowProviderUnload() {
    if (_backend) {
        _backend->allowProviderUnload();
    }
}

PEGASUS_NAMESPACE_END
