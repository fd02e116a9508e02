#ifndef Pegasus_CIMClientBackend_h
#define Pegasus_CIMClientBackend_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Client/Linkage.h>

#include <functional>
#include <memory>

namespace ksv::cimxml {
struct OperationRequest;
struct OperationResponse;
} // namespace ksv::cimxml

PEGASUS_NAMESPACE_BEGIN

/// One open connection of a CIMClient: a CIM-XML transport, or an in-process server in tests.
/// A CIMClient owns its backend and calls it from one thread at a time.
class PEGASUS_CLIENT_LINKAGE CIMClientBackend {
public:
    virtual ~CIMClientBackend();

    /// Called once right after the connection opens and whenever the client's time-out changes.
    virtual void setTimeout(Uint32 timeoutMilliseconds) = 0;

    /// Closes the connection; the client drops the backend afterwards.
    virtual void disconnect() = 0;

    virtual CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                              Boolean localOnly, Boolean includeQualifiers,
                              Boolean includeClassOrigin, const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace,
                                               const CIMName& className,
                                               Boolean deepInheritance) = 0;

    virtual Array<CIMClass> enumerateClasses(const CIMNamespaceName& nameSpace,
                                             const CIMName& className, Boolean deepInheritance,
                                             Boolean localOnly, Boolean includeQualifiers,
                                             Boolean includeClassOrigin) = 0;

    virtual CIMInstance getInstance(const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName, Boolean localOnly,
                                    Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace,
                                                  const CIMName& className, Boolean deepInheritance,
                                                  Boolean localOnly, Boolean includeQualifiers,
                                                  Boolean includeClassOrigin,
                                                  const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                        const CIMName& className) = 0;

    virtual void modifyInstance(const CIMNamespaceName& nameSpace,
                                const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                const CIMPropertyList& propertyList) = 0;

    virtual CIMObjectPath createInstance(const CIMNamespaceName& nameSpace,
                                         const CIMInstance& newInstance) = 0;

    virtual void deleteInstance(const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName) = 0;

    virtual CIMValue getProperty(const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName,
                                 const CIMName& propertyName) = 0;

    virtual void setProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                             const CIMName& propertyName, const CIMValue& newValue) = 0;

    virtual Array<CIMObject> associators(const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole, Boolean includeQualifiers,
                                         Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath> associatorNames(const CIMNamespaceName& nameSpace,
                                                 const CIMObjectPath& objectName,
                                                 const CIMName& assocClass,
                                                 const CIMName& resultClass, const String& role,
                                                 const String& resultRole) = 0;

    virtual Array<CIMObject> references(const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role, Boolean includeQualifiers,
                                        Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) = 0;

    virtual Array<CIMObjectPath> referenceNames(const CIMNamespaceName& nameSpace,
                                                const CIMObjectPath& objectName,
                                                const CIMName& resultClass, const String& role) = 0;

    virtual CIMValue invokeMethod(const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& methodName,
                                  const Array<CIMParamValue>& inParameters,
                                  Array<CIMParamValue>& outParameters) = 0;

    /// Sends `request` (an operation of the pull family; its message ID is the backend's) and
    /// returns the response, having thrown for an ERROR in it. Unless overridden, throws
    /// CIMException(CIM_ERR_NOT_SUPPORTED).
    virtual ksv::cimxml::OperationResponse exchange(ksv::cimxml::OperationRequest request);
};

/// Process-wide registry of the factories that open client connections: the local one for
/// CIMClient::connectLocal() and the remote one for CIMClient::connect(host, port, ...).
/// Safe to use from any thread; a factory runs outside the registry's lock and may be called
/// from several threads at once.
class PEGASUS_CLIENT_LINKAGE CIMClientConnector {
public:
    using LocalFactory = std::function<std::unique_ptr<CIMClientBackend>()>;
    using RemoteFactory = std::function<std::unique_ptr<CIMClientBackend>(
        const String& host, Uint32 portNumber, const String& userName, const String& password)>;

    CIMClientConnector() = delete;

    /// An empty factory unregisters the current one.
    static void setLocal(LocalFactory factory);
    static void setRemote(RemoteFactory factory);

    /// Throw CannotConnectException when no factory is registered or it yields no backend.
    static std::unique_ptr<CIMClientBackend> connectLocal();
    static std::unique_ptr<CIMClientBackend> connectRemote(const String& host, Uint32 portNumber,
                                                           const String& userName,
                                                           const String& password);
};

PEGASUS_NAMESPACE_END

#endif
