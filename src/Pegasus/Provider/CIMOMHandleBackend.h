#ifndef Pegasus_CIMOMHandleBackend_h
#define Pegasus_CIMOMHandleBackend_h

#include <Pegasus/Provider/CIMOMHandle.h>

#include <memory>

PEGASUS_NAMESPACE_BEGIN

/// What a CIMOMHandle forwards its operations to: the hosting server, or a test double.
/// Hosts implement the instance, association, property and method operations; the class
/// changes, class enumerations and queries answer CIM_ERR_NOT_SUPPORTED unless overridden.
/// Implementations are called from every thread that uses a handle and must be thread-safe.
class PEGASUS_PROVIDER_LINKAGE CIMOMHandleBackend {
public:
    virtual ~CIMOMHandleBackend();

    /// The backend that default-constructed handles bind to; null clears it.
    static void setDefault(std::shared_ptr<CIMOMHandleBackend> backend);
    static void resetDefault();
    static std::shared_ptr<CIMOMHandleBackend> getDefault();

    virtual CIMClass getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMName& className, Boolean localOnly,
                              Boolean includeQualifiers, Boolean includeClassOrigin,
                              const CIMPropertyList& propertyList) = 0;

    virtual CIMInstance getInstance(const OperationContext& context,
                                    const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName, Boolean localOnly,
                                    Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMInstance> enumerateInstances(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMName& className, Boolean deepInheritance,
                                                  Boolean localOnly, Boolean includeQualifiers,
                                                  Boolean includeClassOrigin,
                                                  const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& context,
                                                        const CIMNamespaceName& nameSpace,
                                                        const CIMName& className) = 0;

    virtual CIMValue getProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName,
                                 const CIMName& propertyName) = 0;

    virtual void setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMObjectPath& instanceName, const CIMName& propertyName,
                             const CIMValue& newValue) = 0;

    virtual void modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                const CIMPropertyList& propertyList) = 0;

    virtual CIMObjectPath createInstance(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMInstance& newInstance) = 0;

    virtual void deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName) = 0;

    virtual Array<CIMObject> associators(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole, Boolean includeQualifiers,
                                         Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath>
    associatorNames(const OperationContext& context, const CIMNamespaceName& nameSpace,
                    const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole) = 0;

    virtual Array<CIMObject> references(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role, Boolean includeQualifiers,
                                        Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath> referenceNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMObjectPath& objectName,
                                                const CIMName& resultClass, const String& role) = 0;

    virtual CIMValue invokeMethod(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& methodName,
                                  const Array<CIMParamValue>& inParameters,
                                  Array<CIMParamValue>& outParameters) = 0;

    virtual Array<CIMClass> enumerateClasses(const OperationContext& context,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMName& className, Boolean deepInheritance,
                                             Boolean localOnly, Boolean includeQualifiers,
                                             Boolean includeClassOrigin);

    virtual Array<CIMName> enumerateClassNames(const OperationContext& context,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMName& className, Boolean deepInheritance);

    virtual void createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMClass& newClass);

    virtual void modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMClass& modifiedClass);

    virtual void deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMName& className);

    virtual Array<CIMObject> execQuery(const OperationContext& context,
                                       const CIMNamespaceName& nameSpace,
                                       const String& queryLanguage, const String& query);

    /// A host that never unloads providers can ignore these.
    virtual void disallowProviderUnload();
    virtual void allowProviderUnload();
};

PEGASUS_NAMESPACE_END

#endif
