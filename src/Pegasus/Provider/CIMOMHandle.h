#ifndef Pegasus_CIMOMHandle_h
#define Pegasus_CIMOMHandle_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/Linkage.h>

#include <memory>

PEGASUS_NAMESPACE_BEGIN

class CIMOMHandleBackend;

/// A provider's way back into the CIM server that hosts it. Every operation is carried out by
/// the server's backend; copies of a handle share that backend. An operation on a handle
/// without a backend throws CIMException(CIM_ERR_FAILED).
class PEGASUS_PROVIDER_LINKAGE CIMOMHandle {
public:
    /// Binds the process-wide default backend that is set at the time of construction.
    CIMOMHandle();

    explicit CIMOMHandle(std::shared_ptr<CIMOMHandleBackend> backend);

    CIMOMHandle(const CIMOMHandle&);
    ~CIMOMHandle();
    CIMOMHandle& operator=(const CIMOMHandle& handle);

    CIMClass getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                      const CIMName& className, Boolean localOnly, Boolean includeQualifiers,
                      Boolean includeClassOrigin, const CIMPropertyList& propertyList);

    Array<CIMClass> enumerateClasses(const OperationContext& context,
                                     const CIMNamespaceName& nameSpace, const CIMName& className,
                                     Boolean deepInheritance, Boolean localOnly,
                                     Boolean includeQualifiers, Boolean includeClassOrigin);

    Array<CIMName> enumerateClassNames(const OperationContext& context,
                                       const CIMNamespaceName& nameSpace, const CIMName& className,
                                       Boolean deepInheritance);

    void createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMClass& newClass);

    void modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMClass& modifiedClass);

    void deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMName& className);

    CIMInstance getInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                            const CIMObjectPath& instanceName, Boolean localOnly,
                            Boolean includeQualifiers, Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList);

    Array<CIMInstance> enumerateInstances(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean deepInheritance,
                                          Boolean localOnly, Boolean includeQualifiers,
                                          Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList);

    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className);

    CIMObjectPath createInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMInstance& newInstance);

    void modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                        const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                        const CIMPropertyList& propertyList);

    void deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                        const CIMObjectPath& instanceName);

    Array<CIMObject> execQuery(const OperationContext& context, const CIMNamespaceName& nameSpace,
                               const String& queryLanguage, const String& query);

    Array<CIMObject> associators(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& objectName, const CIMName& assocClass,
                                 const CIMName& resultClass, const String& role,
                                 const String& resultRole, Boolean includeQualifiers,
                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList);

    Array<CIMObjectPath> associatorNames(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole);

    Array<CIMObject> references(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& objectName, const CIMName& resultClass,
                                const String& role, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList);

    Array<CIMObjectPath> referenceNames(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role);

    CIMValue getProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                         const CIMObjectPath& instanceName, const CIMName& propertyName);

    void setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMObjectPath& instanceName, const CIMName& propertyName,
                     const CIMValue& newValue);

    CIMValue invokeMethod(const OperationContext& context, const CIMNamespaceName& nameSpace,
                          const CIMObjectPath& instanceName, const CIMName& methodName,
                          const Array<CIMParamValue>& inParameters,
                          Array<CIMParamValue>& outParameters);

    /// Asks the server to keep the calling provider loaded until allowProviderUnload().
    void disallowProviderUnload();

    void allowProviderUnload();

private:
    CIMOMHandleBackend& _backendFor(const char* operation) const;

    std::shared_ptr<CIMOMHandleBackend> _backend;
};

PEGASUS_NAMESPACE_END

#endif
