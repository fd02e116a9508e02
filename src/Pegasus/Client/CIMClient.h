#ifndef Pegasus_Client_h
#define Pegasus_Client_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/SSLContext.h>
#include <Pegasus/Common/UintArgs.h>
#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/CIMEnumerationContext.h>
#include <Pegasus/Client/Linkage.h>

#include <memory>

namespace ksv::cimxml {
enum class Operation;
struct OperationRequest;
struct OperationResponse;
} // namespace ksv::cimxml

PEGASUS_NAMESPACE_BEGIN

class CIMClientBackend;

/// A client connection to a CIM server. Not thread-safe: use one client per thread.
/// Operations on a client that is not connected throw NotConnectedException; connecting a
/// client that is connected throws AlreadyConnectedException.
class PEGASUS_CLIENT_LINKAGE CIMClient {
public:
    CIMClient();

    /// Disconnects first if still connected.
    ~CIMClient();

    Uint32 getTimeout() const;

    /// Time-out for each operation, in milliseconds; 20000 unless set.
    void setTimeout(Uint32 timeoutMilliseconds);

    /// An empty host with a port other than 0 means "localhost".
    void connect(const String& host, const Uint32 portNumber, const String& userName,
                 const String& password);

    /// Like connect() above, over HTTPS: the server's certificate is verified against the
    /// context's trust store, and the context's client certificate, if any, is presented.
    void connect(const String& host, const Uint32 portNumber, const SSLContext& sslContext,
                 const String& userName, const String& password);

    /// Connects to the CIM server on this machine as the user running the process.
    void connectLocal();

    /// Does nothing when not connected.
    void disconnect();

    CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                      Boolean localOnly = true, Boolean includeQualifiers = true,
                      Boolean includeClassOrigin = false,
                      const CIMPropertyList& propertyList = CIMPropertyList());

    CIMInstance getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                            Boolean localOnly = true, Boolean includeQualifiers = false,
                            Boolean includeClassOrigin = false,
                            const CIMPropertyList& propertyList = CIMPropertyList());

    void deleteInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName);

    CIMObjectPath createInstance(const CIMNamespaceName& nameSpace, const CIMInstance& newInstance);

    void modifyInstance(const CIMNamespaceName& nameSpace, const CIMInstance& modifiedInstance,
                        Boolean includeQualifiers = true,
                        const CIMPropertyList& propertyList = CIMPropertyList());

    Array<CIMClass> enumerateClasses(const CIMNamespaceName& nameSpace,
                                     const CIMName& className = CIMName(),
                                     Boolean deepInheritance = false, Boolean localOnly = true,
                                     Boolean includeQualifiers = true,
                                     Boolean includeClassOrigin = false);

    Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace,
                                       const CIMName& className = CIMName(),
                                       Boolean deepInheritance = false);

    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean deepInheritance = true,
                                          Boolean localOnly = true,
                                          Boolean includeQualifiers = false,
                                          Boolean includeClassOrigin = false,
                                          const CIMPropertyList& propertyList = CIMPropertyList());

    Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                const CIMName& className);

    Array<CIMObject>
    associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
                Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                const CIMPropertyList& propertyList = CIMPropertyList());

    Array<CIMObjectPath>
    associatorNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                    const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                    const String& role = String::EMPTY, const String& resultRole = String::EMPTY);

    Array<CIMObject> references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                const CIMName& resultClass = CIMName(),
                                const String& role = String::EMPTY,
                                Boolean includeQualifiers = false,
                                Boolean includeClassOrigin = false,
                                const CIMPropertyList& propertyList = CIMPropertyList());

    Array<CIMObjectPath> referenceNames(const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName,
                                        const CIMName& resultClass = CIMName(),
                                        const String& role = String::EMPTY);

    CIMValue getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                         const CIMName& propertyName);

    void setProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                     const CIMName& propertyName, const CIMValue& newValue = CIMValue());

    CIMValue invokeMethod(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                          const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                          Array<CIMParamValue>& outParameters);

    /// The pull operations. An open operation starts an enumeration and returns its first
    /// results, up to maxObjectCount; the pulls return the next ones. endOfSequence tells when
    /// the server has returned the last and closed the enumeration; until then
    /// closeEnumeration() ends it early.
    Array<CIMInstance> openEnumerateInstances(
        CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
        const CIMNamespaceName& nameSpace, const CIMName& className, Boolean deepInheritance = true,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY,
        const String& filterQuery = String::EMPTY, const Uint32Arg& operationTimeout = Uint32Arg(),
        Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMObjectPath>
    openEnumerateInstancePaths(CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
                               const CIMNamespaceName& nameSpace, const CIMName& className,
                               const String& filterQueryLanguage = String::EMPTY,
                               const String& filterQuery = String::EMPTY,
                               const Uint32Arg& operationTimeout = Uint32Arg(),
                               Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMInstance> openReferenceInstances(
        CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
        const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
        const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        const Boolean includeClassOrigin = false,
        const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY,
        const String& filterQuery = String::EMPTY, const Uint32Arg& operationTimeout = Uint32Arg(),
        Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMObjectPath> openReferenceInstancePaths(
        CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
        const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
        const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY,
        const String& filterQuery = String::EMPTY, const Uint32Arg& operationTimeout = Uint32Arg(),
        Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMInstance> openAssociatorInstances(
        CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
        const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
        const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY,
        const String& filterQuery = String::EMPTY, const Uint32Arg& operationTimeout = Uint32Arg(),
        Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMObjectPath> openAssociatorInstancePaths(
        CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
        const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
        const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY,
        const String& filterQuery = String::EMPTY, const Uint32Arg& operationTimeout = Uint32Arg(),
        Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    Array<CIMInstance> pullInstancesWithPath(CIMEnumerationContext& enumerationContext,
                                             Boolean& endOfSequence, Uint32 maxObjectCount);

    Array<CIMObjectPath> pullInstancePaths(CIMEnumerationContext& enumerationContext,
                                           Boolean& endOfSequence, Uint32 maxObjectCount);

    void closeEnumeration(CIMEnumerationContext& enumerationContext);

    /// The number of results left, or NULL when the server cannot tell yet.
    Uint64Arg enumerationCount(CIMEnumerationContext& enumerationContext);

private:
    CIMClient(const CIMClient&) = delete;
    CIMClient& operator=(const CIMClient&) = delete;

    void _attach(std::unique_ptr<CIMClientBackend> backend);
    void _requireDisconnected() const;
    CIMClientBackend& _connection() const;
    ksv::cimxml::OperationResponse _page(CIMEnumerationContext& enumerationContext,
                                         Boolean& endOfSequence,
                                         ksv::cimxml::OperationRequest& request);
    ksv::cimxml::OperationResponse _continue(CIMEnumerationContext& enumerationContext,
                                             Boolean& endOfSequence,
                                             ksv::cimxml::Operation operation,
                                             Uint32 maxObjectCount);

    std::unique_ptr<CIMClientBackend> _backend;
    Uint32 _timeoutMilliseconds;
};

PEGASUS_NAMESPACE_END

#endif
