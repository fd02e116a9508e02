#include <Pegasus/Client/CIMXmlClientBackend.h>
#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/CIMXmlHttpConnection.h>
#include <Pegasus/Common/Exception.h>

#include <cimxml/Errors.h>
#include <cimxml/Http.h>
#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

namespace cimxml = ksv::cimxml;

namespace {

const char defaultSocketPath[] = KSV_LOCAL_SOCKET_PATH;
const Uint32 probeTimeoutMilliseconds = 20000;

std::string utf8(const String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

String asString(const std::string& text) {
    return String(text.c_str(), Uint32(text.size()));
}

// A literal IPv6 address needs brackets in a URL.
std::string urlHost(const std::string& host) {
    return host.find(':') != std::string::npos && host.front() != '[' ? "[" + host + "]" : host;
}

String headerText(const std::string& escaped) {
    const std::optional<std::string> plain = cimxml::http::uriUnescape(escaped);
    try {
        return asString(plain.value_or(escaped));
    } catch (const Exception&) {
        return asString(escaped);
    }
}

class CIMXmlClientBackend : public CIMClientBackend {
public:
    explicit CIMXmlClientBackend(CIMXmlEndpoint endpoint) : _connection(std::move(endpoint)) {
        _connection.probe(probeTimeoutMilliseconds);
    }

    void setTimeout(Uint32 timeoutMilliseconds) override { _timeout = timeoutMilliseconds; }

    void disconnect() override { _connection.close(); }

    CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                      Boolean localOnly, Boolean includeQualifiers, Boolean includeClassOrigin,
                      const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::GetClass, nameSpace);
        request.className = className;
        request.localOnly = localOnly;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        request.propertyList = propertyList;
        return _exchange(request).classes[0];
    }

    Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className,
                                       Boolean deepInheritance) override {
        cimxml::OperationRequest request =
            _request(cimxml::Operation::EnumerateClassNames, nameSpace);
        request.className = className;
        request.deepInheritance = deepInheritance;
        return _exchange(request).classNames;
    }

    Array<CIMClass> enumerateClasses(const CIMNamespaceName& nameSpace, const CIMName& className,
                                     Boolean deepInheritance, Boolean localOnly,
                                     Boolean includeQualifiers,
                                     Boolean includeClassOrigin) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::EnumerateClasses, nameSpace);
        request.className = className;
        request.deepInheritance = deepInheritance;
        request.localOnly = localOnly;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        return _exchange(request).classes;
    }

    CIMInstance getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                            Boolean localOnly, Boolean includeQualifiers,
                            Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::GetInstance, nameSpace);
        request.objectName = instanceName;
        request.localOnly = localOnly;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        request.propertyList = propertyList;
        return _exchange(request).instances[0];
    }

    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean deepInheritance,
                                          Boolean localOnly, Boolean includeQualifiers,
                                          Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request =
            _request(cimxml::Operation::EnumerateInstances, nameSpace);
        request.className = className;
        request.deepInheritance = deepInheritance;
        request.localOnly = localOnly;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        request.propertyList = propertyList;
        return _exchange(request).instances;
    }

    Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                const CIMName& className) override {
        cimxml::OperationRequest request =
            _request(cimxml::Operation::EnumerateInstanceNames, nameSpace);
        request.className = className;
        return _exchange(request).paths;
    }

    void modifyInstance(const CIMNamespaceName& nameSpace, const CIMInstance& modifiedInstance,
                        Boolean includeQualifiers, const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::ModifyInstance, nameSpace);
        request.instance = modifiedInstance;
        request.includeQualifiers = includeQualifiers;
        request.propertyList = propertyList;
        _exchange(request);
    }

    CIMObjectPath createInstance(const CIMNamespaceName& nameSpace,
                                 const CIMInstance& newInstance) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::CreateInstance, nameSpace);
        request.instance = newInstance;
        return _exchange(request).paths[0];
    }

    void deleteInstance(const CIMNamespaceName& nameSpace,
                        const CIMObjectPath& instanceName) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::DeleteInstance, nameSpace);
        request.objectName = instanceName;
        _exchange(request);
    }

    CIMValue getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                         const CIMName& propertyName) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::GetProperty, nameSpace);
        request.objectName = instanceName;
        request.propertyName = propertyName;
        return _exchange(request).value;
    }

    void setProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                     const CIMName& propertyName, const CIMValue& newValue) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::SetProperty, nameSpace);
        request.objectName = instanceName;
        request.propertyName = propertyName;
        request.newValue = newValue;
        _exchange(request);
    }

    Array<CIMObject> associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                 const CIMName& assocClass, const CIMName& resultClass,
                                 const String& role, const String& resultRole,
                                 Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::Associators, nameSpace);
        request.objectName = objectName;
        request.assocClass = assocClass;
        request.resultClass = resultClass;
        request.role = role;
        request.resultRole = resultRole;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        request.propertyList = propertyList;
        return _exchange(request).objects;
    }

    Array<CIMObjectPath> associatorNames(const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::AssociatorNames, nameSpace);
        request.objectName = objectName;
        request.assocClass = assocClass;
        request.resultClass = resultClass;
        request.role = role;
        request.resultRole = resultRole;
        return _exchange(request).paths;
    }

    Array<CIMObject> references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                const CIMName& resultClass, const String& role,
                                Boolean includeQualifiers, Boolean includeClassOrigin,
                                const CIMPropertyList& propertyList) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::References, nameSpace);
        request.objectName = objectName;
        request.resultClass = resultClass;
        request.role = role;
        request.includeQualifiers = includeQualifiers;
        request.includeClassOrigin = includeClassOrigin;
        request.propertyList = propertyList;
        return _exchange(request).objects;
    }

    Array<CIMObjectPath> referenceNames(const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::ReferenceNames, nameSpace);
        request.objectName = objectName;
        request.resultClass = resultClass;
        request.role = role;
        return _exchange(request).paths;
    }

    CIMValue invokeMethod(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                          const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                          Array<CIMParamValue>& outParameters) override {
        cimxml::OperationRequest request = _request(cimxml::Operation::InvokeMethod, nameSpace);
        request.objectName = instanceName;
        request.methodName = methodName;
        request.inParameters = inParameters;
        cimxml::OperationResponse response = _exchange(request);
        outParameters = response.outParameters;
        return response.value;
    }

    cimxml::OperationResponse exchange(cimxml::OperationRequest request) override {
        request.messageId = std::to_string(++_lastMessageId);
        return _exchange(request);
    }

private:
    cimxml::OperationRequest _request(cimxml::Operation operation,
                                      const CIMNamespaceName& nameSpace) {
        cimxml::OperationRequest request = cimxml::OperationRequest::make(operation, nameSpace);
        request.messageId = std::to_string(++_lastMessageId);
        return request;
    }

    static std::vector<std::string> _headerLines(const cimxml::OperationRequest& request) {
        namespace http = cimxml::http;
        return {
            std::string("Content-Type: ") + http::kContentType,
            std::string(http::kCimOperationHeader) + ": " + http::kMethodCall,
            std::string(http::kCimMethodHeader) + ": " + http::cimMethodHeaderValue(request),
            std::string(http::kCimObjectHeader) + ": " + http::cimObjectHeaderValue(request),
            std::string(http::kCimProtocolVersionHeader) + ": " + http::kProtocolVersion,
            "TE: trailers",
            // A request is sent whole; waiting for 100 Continue would only add a round trip.
            "Expect:",
        };
    }

    static std::string _expectedMethodName(const cimxml::OperationRequest& request) {
        return cimxml::isIntrinsic(request.operation) ? cimxml::operationName(request.operation)
                                                      : utf8(request.methodName.getString());
    }

    static void _checkStatus(const CIMXmlHttpConnection::Reply& reply) {
        if (reply.status != 200) {
            throw CIMClientHTTPErrorException(Uint32(reply.status), asString(reply.reason),
                                              headerText(reply.field("cimerror")),
                                              headerText(reply.field("pgerrordetail")));
        }
        // A streamed response that failed after its start reports the failure in trailers.
        const std::string code = reply.field("cimstatuscode");
        if (!code.empty() && code != "0") {
            throw CIMException(CIMStatusCode(std::strtoul(code.c_str(), nullptr, 10)),
                               headerText(reply.field("cimstatuscodedescription")));
        }
    }

    cimxml::OperationResponse _exchange(const cimxml::OperationRequest& request) {
        const CIMXmlHttpConnection::Reply reply =
            _connection.post(cimxml::encodeRequest(request), _headerLines(request), _timeout);
        _checkStatus(reply);
        cimxml::OperationResponse response;
        try {
            response =
                cimxml::decodeResponse(reply.body, request.operation, _expectedMethodName(request));
        } catch (const cimxml::ProtocolError& e) {
            throw CIMClientXmlException(e.getMessage());
        }
        if (response.messageId != request.messageId) {
            throw CIMClientResponseException(asString("the response answers message " +
                                                      response.messageId + ", not " +
                                                      request.messageId));
        }
        response.throwIfError();
        return response;
    }

    CIMXmlHttpConnection _connection;
    Uint32 _timeout = probeTimeoutMilliseconds;
    Uint64 _lastMessageId = 0;
};

std::string describeRemote(const std::string& host, Uint32 portNumber) {
    return urlHost(host) + ":" + std::to_string(portNumber);
}

CIMXmlEndpoint remoteEndpoint(const char* scheme, const String& host, Uint32 portNumber,
                              const String& userName, const String& password) {
    CIMXmlEndpoint endpoint;
    endpoint.description = describeRemote(utf8(host), portNumber);
    endpoint.url = scheme + endpoint.description + cimxml::http::kRequestUri;
    endpoint.userName = utf8(userName);
    endpoint.password = utf8(password);
    return endpoint;
}

} // namespace

String CIMXmlClientConnector::localSocketPath() {
    const char* configured = std::getenv("KSV_CIMSERVER_SOCKET");
    return String(configured != nullptr && configured[0] != '\0' ? configured : defaultSocketPath);
}

std::unique_ptr<CIMClientBackend> CIMXmlClientConnector::connectLocal() {
    return connectUnixSocket(localSocketPath());
}

std::unique_ptr<CIMClientBackend>
CIMXmlClientConnector::connectUnixSocket(const String& socketPath) {
    CIMXmlEndpoint endpoint;
    endpoint.url = std::string("http://localhost") + cimxml::http::kRequestUri;
    endpoint.socketPath = utf8(socketPath);
    endpoint.description = endpoint.socketPath;
    return std::make_unique<CIMXmlClientBackend>(std::move(endpoint));
}

std::unique_ptr<CIMClientBackend> CIMXmlClientConnector::connectRemote(const String& host,
                                                                       Uint32 portNumber,
                                                                       const String& userName,
                                                                       const String& password) {
    return std::make_unique<CIMXmlClientBackend>(
        remoteEndpoint("http://", host, portNumber, userName, password));
}

std::unique_ptr<CIMClientBackend>
CIMXmlClientConnector::connectRemoteSecure(const String& host, Uint32 portNumber,
                                           const SSLContext& sslContext, const String& userName,
                                           const String& password) {
    if (sslContext.getSSLCertificateVerifyFunction() != nullptr) {
        throw SSLException("certificate verification callbacks are not supported; verify the "
                           "server's certificate against a trust store");
    }
    CIMXmlEndpoint endpoint = remoteEndpoint("https://", host, portNumber, userName, password);
    endpoint.trustStore = utf8(sslContext.getTrustStore());
    endpoint.crlPath = utf8(sslContext.getCRLPath());
    endpoint.certificatePath = utf8(sslContext.getCertPath());
    endpoint.keyPath = utf8(sslContext.getKeyPath());
    return std::make_unique<CIMXmlClientBackend>(std::move(endpoint));
}

PEGASUS_NAMESPACE_END
