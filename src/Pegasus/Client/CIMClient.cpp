#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Client/CIMXmlClientBackend.h>

#include <utility>

PEGASUS_NAMESPACE_BEGIN

namespace {

const Uint32 defaultTimeoutMilliseconds = 20000;

String remoteHost(const String& host, Uint32 portNumber) {
    return (host.size() == 0 && portNumber != 0) ? String("localhost") : host;
}

} // namespace

CIMClient::CIMClient() : _timeoutMilliseconds(defaultTimeoutMilliseconds) {}

CIMClient::~CIMClient() {
    try {
        disconnect();
    } catch (...) {
        // A failing close cannot be reported from a destructor; the connection is gone anyway.
    }
}

Uint32 CIMClient::getTimeout() const {
    return _timeoutMilliseconds;
}

void CIMClient::setTimeout(Uint32 timeoutMilliseconds) {
    _timeoutMilliseconds = timeoutMilliseconds;
    if (_backend) {
        _backend->setTimeout(timeoutMilliseconds);
    }
}

void CIMClient::connect(const String& host, const Uint32 portNumber, const String& userName,
                        const String& password) {
    _requireDisconnected();
    _attach(CIMClientConnector::connectRemote(remoteHost(host, portNumber), portNumber, userName,
                                              password));
}

void CIMClient::connect(const String& host, const Uint32 portNumber, const SSLContext& sslContext,
                        const String& userName, const String& password) {
    _requireDisconnected();
    _attach(CIMXmlClientConnector::connectRemoteSecure(remoteHost(host, portNumber), portNumber,
                                                       sslContext, userName, password));
}

void CIMClient::connectLocal() {
    _requireDisconnected();
    _attach(CIMClientConnector::connectLocal());
}

void CIMClient::disconnect() {
    std::unique_ptr<CIMClientBackend> closing = std::move(_backend);
    if (closing) {
        closing->disconnect();
    }
}

void CIMClient::_attach(std::unique_ptr<CIMClientBackend> backend) {
    backend->setTimeout(_timeoutMilliseconds);
    _backend = std::move(backend);
}

void CIMClient::_requireDisconnected() const {
    if (_backend) {
        throw AlreadyConnectedException();
    }
}

CIMClientBackend& CIMClient::_connection() const {
    if (!_backend) {
        throw NotConnectedException();
    }
    return *_backend;
}

CIMClass CIMClient::getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                             Boolean localOnly, Boolean includeQualifiers,
                             Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return _connection().getClass(nameSpace, className, localOnly, includeQualifiers,
                                  includeClassOrigin, propertyList);
}

CIMInstance CIMClient::getInstance(const CIMNamespaceName& nameSpace,
                                   const CIMObjectPath& instanceName, Boolean localOnly,
                                   Boolean includeQualifiers, Boolean includeClassOrigin,
                                   const CIMPropertyList& propertyList) {
    return _connection().getInstance(nameSpace, instanceName, localOnly, includeQualifiers,
                                     includeClassOrigin, propertyList);
}

void CIMClient::deleteInstance(const CIMNamespaceName& nameSpace,
                               const CIMObjectPath& instanceName) {
    _connection().deleteInstance(nameSpace, instanceName);
}

CIMObjectPath CIMClient::createInstance(const CIMNamespaceName& nameSpace,
                                        const CIMInstance& newInstance) {
    return _connection().createInstance(nameSpace, newInstance);
}

void CIMClient::modifyInstance(const CIMNamespaceName& nameSpace,
                               const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                               const CIMPropertyList& propertyList) {
    _connection().modifyInstance(nameSpace, modifiedInstance, includeQualifiers, propertyList);
}

Array<CIMClass> CIMClient::enumerateClasses(const CIMNamespaceName& nameSpace,
                                            const CIMName& className, Boolean deepInheritance,
                                            Boolean localOnly, Boolean includeQualifiers,
                                            Boolean includeClassOrigin) {
    return _connection().enumerateClasses(nameSpace, className, deepInheritance, localOnly,
                                          includeQualifiers, includeClassOrigin);
}

Array<CIMName> CIMClient::enumerateClassNames(const CIMNamespaceName& nameSpace,
                                              const CIMName& className, Boolean deepInheritance) {
    return _connection().enumerateClassNames(nameSpace, className, deepInheritance);
}

Array<CIMInstance> CIMClient::enumerateInstances(const CIMNamespaceName& nameSpace,
                                                 const CIMName& className, Boolean deepInheritance,
                                                 Boolean localOnly, Boolean includeQualifiers,
                                                 Boolean includeClassOrigin,
                                                 const CIMPropertyList& propertyList) {
    return _connection().enumerateInstances(nameSpace, className, deepInheritance, localOnly,
                                            includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMClient::enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                       const CIMName& className) {
    return _connection().enumerateInstanceNames(nameSpace, className);
}

Array<CIMObject> CIMClient::associators(const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& assocClass,
                                        const CIMName& resultClass, const String& role,
                                        const String& resultRole, Boolean includeQualifiers,
                                        Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) {
    return _connection().associators(nameSpace, objectName, assocClass, resultClass, role,
                                     resultRole, includeQualifiers, includeClassOrigin,
                                     propertyList);
}

Array<CIMObjectPath> CIMClient::associatorNames(const CIMNamespaceName& nameSpace,
                                                const CIMObjectPath& objectName,
                                                const CIMName& assocClass,
                                                const CIMName& resultClass, const String& role,
                                                const String& resultRole) {
    return _connection().associatorNames(nameSpace, objectName, assocClass, resultClass, role,
                                         resultRole);
}

Array<CIMObject> CIMClient::references(const CIMNamespaceName& nameSpace,
                                       const CIMObjectPath& objectName, const CIMName& resultClass,
                                       const String& role, Boolean includeQualifiers,
                                       Boolean includeClassOrigin,
                                       const CIMPropertyList& propertyList) {
    return _connection().references(nameSpace, objectName, resultClass, role, includeQualifiers,
                                    includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMClient::referenceNames(const CIMNamespaceName& nameSpace,
                                               const CIMObjectPath& objectName,
                                               const CIMName& resultClass, const String& role) {
    return _connection().referenceNames(nameSpace, objectName, resultClass, role);
}

CIMValue CIMClient::getProperty(const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName, const CIMName& propertyName) {
    return _connection().getProperty(nameSpace, instanceName, propertyName);
}

void CIMClient::setProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                            const CIMName& propertyName, const CIMValue& newValue) {
    _connection().setProperty(nameSpace, instanceName, propertyName, newValue);
}

CIMValue CIMClient::invokeMethod(const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName, const CIMName& methodName,
                                 const Array<CIMParamValue>& inParameters,
                                 Array<CIMParamValue>& outParameters) {
    return _connection().invokeMethod(nameSpace, instanceName, methodName, inParameters,
                                      outParameters);
}

PEGASUS_NAMESPACE_END
