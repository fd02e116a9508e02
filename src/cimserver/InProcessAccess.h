// How providers reach the server they run in without HTTP: the CIMOMHandle backend, and the
// connection that CIMClient::connectLocal() opens inside the server's process. Both run the
// operation on the calling thread, so a provider's nested call never waits for a free worker.
#ifndef KSV_CIMSERVER_INPROCESSACCESS_H
#define KSV_CIMSERVER_INPROCESSACCESS_H

#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include "cimserver/Caller.h"
#include "cimserver/OperationDispatcher.h"

#include <atomic>
#include <memory>

namespace ksv::server {

// A call runs for the user in the context's IdentityContainer; without one, for the empty user
// name, which the array refuses: a provider passes on its request's context to act for its caller.
class ServerHandleBackend : public Pegasus::CIMOMHandleBackend {
public:
    // Calls fail with CIM_ERR_SERVER_IS_SHUTTING_DOWN until attached, and again once detached.
    void attach(const OperationDispatcher& dispatcher);
    // Only once no call is running.
    void detach();

    Pegasus::CIMClass getClass(const Pegasus::OperationContext& context,
                               const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, Pegasus::Boolean localOnly,
                               Pegasus::Boolean includeQualifiers,
                               Pegasus::Boolean includeClassOrigin,
                               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Pegasus::OperationContext& context,
                     const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                     Pegasus::Boolean deepInheritance, Pegasus::Boolean localOnly,
                     Pegasus::Boolean includeQualifiers,
                     Pegasus::Boolean includeClassOrigin) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Pegasus::OperationContext& context,
                                                         const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         Pegasus::Boolean deepInheritance) override;
    Pegasus::CIMInstance getInstance(const Pegasus::OperationContext& context,
                                     const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName,
                                     Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
                                     Pegasus::Boolean includeClassOrigin,
                                     const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMInstance> enumerateInstances(
        const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
        const Pegasus::CIMName& className, Pegasus::Boolean deepInheritance,
        Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
        Pegasus::Boolean includeClassOrigin, const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Pegasus::OperationContext& context,
                           const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) override;
    Pegasus::CIMValue getProperty(const Pegasus::OperationContext& context,
                                  const Pegasus::CIMNamespaceName& nameSpace,
                                  const Pegasus::CIMObjectPath& instanceName,
                                  const Pegasus::CIMName& propertyName) override;
    void setProperty(const Pegasus::OperationContext& context,
                     const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMObjectPath& instanceName,
                     const Pegasus::CIMName& propertyName,
                     const Pegasus::CIMValue& newValue) override;
    void modifyInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& modifiedInstance,
                        Pegasus::Boolean includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::CIMObjectPath createInstance(const Pegasus::OperationContext& context,
                                          const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& newInstance) override;
    void deleteInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName) override;
    Pegasus::Array<Pegasus::CIMObject> associators(
        const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
        const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
        const Pegasus::CIMName& resultClass, const Pegasus::String& role,
        const Pegasus::String& resultRole, Pegasus::Boolean includeQualifiers,
        Pegasus::Boolean includeClassOrigin, const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    associatorNames(const Pegasus::OperationContext& context,
                    const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) override;
    Pegasus::Array<Pegasus::CIMObject>
    references(const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
               const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
               const Pegasus::String& role, Pegasus::Boolean includeQualifiers,
               Pegasus::Boolean includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    referenceNames(const Pegasus::OperationContext& context,
                   const Pegasus::CIMNamespaceName& nameSpace,
                   const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
                   const Pegasus::String& role) override;
    Pegasus::CIMValue invokeMethod(const Pegasus::OperationContext& context,
                                   const Pegasus::CIMNamespaceName& nameSpace,
                                   const Pegasus::CIMObjectPath& instanceName,
                                   const Pegasus::CIMName& methodName,
                                   const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                   Pegasus::Array<Pegasus::CIMParamValue>& outParameters) override;

private:
    const OperationDispatcher& dispatcher() const;

    std::atomic<const OperationDispatcher*> _dispatcher{nullptr};
};

// The user a call with this context runs for.
Caller callerOf(const Pegasus::OperationContext& context);

// A CIMClient connection opened by connectLocal() inside the server: every call runs for the
// server's own operating-system user, the peer such a connection has over the local socket.
class LocalClientConnection : public Pegasus::CIMClientBackend {
public:
    explicit LocalClientConnection(std::shared_ptr<ServerHandleBackend> server);

    void setTimeout(Pegasus::Uint32) override {}
    void disconnect() override {}

    Pegasus::CIMClass getClass(const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, Pegasus::Boolean localOnly,
                               Pegasus::Boolean includeQualifiers,
                               Pegasus::Boolean includeClassOrigin,
                               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         Pegasus::Boolean deepInheritance) override;
    Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                     Pegasus::Boolean deepInheritance, Pegasus::Boolean localOnly,
                     Pegasus::Boolean includeQualifiers,
                     Pegasus::Boolean includeClassOrigin) override;
    Pegasus::CIMInstance getInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName,
                                     Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
                                     Pegasus::Boolean includeClassOrigin,
                                     const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMInstance>
    enumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className, Pegasus::Boolean deepInheritance,
                       Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
                       Pegasus::Boolean includeClassOrigin,
                       const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) override;
    void modifyInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& modifiedInstance,
                        Pegasus::Boolean includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::CIMObjectPath createInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& newInstance) override;
    void deleteInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName) override;
    Pegasus::CIMValue getProperty(const Pegasus::CIMNamespaceName& nameSpace,
                                  const Pegasus::CIMObjectPath& instanceName,
                                  const Pegasus::CIMName& propertyName) override;
    void setProperty(const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMObjectPath& instanceName,
                     const Pegasus::CIMName& propertyName,
                     const Pegasus::CIMValue& newValue) override;
    Pegasus::Array<Pegasus::CIMObject>
    associators(const Pegasus::CIMNamespaceName& nameSpace,
                const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                const Pegasus::String& resultRole, Pegasus::Boolean includeQualifiers,
                Pegasus::Boolean includeClassOrigin,
                const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    associatorNames(const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) override;
    Pegasus::Array<Pegasus::CIMObject>
    references(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMObjectPath& objectName,
               const Pegasus::CIMName& resultClass, const Pegasus::String& role,
               Pegasus::Boolean includeQualifiers, Pegasus::Boolean includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    referenceNames(const Pegasus::CIMNamespaceName& nameSpace,
                   const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
                   const Pegasus::String& role) override;
    Pegasus::CIMValue invokeMethod(const Pegasus::CIMNamespaceName& nameSpace,
                                   const Pegasus::CIMObjectPath& instanceName,
                                   const Pegasus::CIMName& methodName,
                                   const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                   Pegasus::Array<Pegasus::CIMParamValue>& outParameters) override;

private:
    std::shared_ptr<ServerHandleBackend> _server;
    const Pegasus::OperationContext _serverUser;
};

} // namespace ksv::server

#endif
