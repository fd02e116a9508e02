// The pull operations of CIMClient and the enumeration context they carry.
#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Client/CIMEnumerationContext.h>

#include <cimxml/Request.h>
#include <cimxml/Response.h>

PEGASUS_NAMESPACE_BEGIN

using ksv::cimxml::Operation;
using ksv::cimxml::OperationRequest;
using ksv::cimxml::OperationResponse;

CIMEnumerationContext::CIMEnumerationContext() = default;

CIMEnumerationContext::~CIMEnumerationContext() = default;

void CIMEnumerationContext::clear() {
    _nameSpace.clear();
    _contextString.clear();
}

void CIMEnumerationContext::clearEnumeration() {
    _contextString.clear();
}

CIMNamespaceName& CIMEnumerationContext::getNameSpace() {
    return _nameSpace;
}

void CIMEnumerationContext::setNameSpace(const CIMNamespaceName& n) {
    _nameSpace = n;
}

String& CIMEnumerationContext::getContextString() {
    return _contextString;
}

void CIMEnumerationContext::setContextString(const String& s) {
    _contextString = s;
}

namespace {

OperationRequest opening(Operation operation, const CIMNamespaceName& nameSpace,
                         const String& filterQueryLanguage, const String& filterQuery,
                         const Uint32Arg& operationTimeout, Boolean continueOnError,
                         Uint32 maxObjectCount) {
    OperationRequest request = OperationRequest::make(operation, nameSpace);
    request.filterQueryLanguage = filterQueryLanguage;
    request.filterQuery = filterQuery;
    if (!operationTimeout.isNull())
        request.operationTimeout = operationTimeout.getValue();
    request.continueOnError = continueOnError;
    request.maxObjectCount = maxObjectCount;
    return request;
}

// The object an association opening starts from, and its filters.
void relate(OperationRequest& request, const CIMObjectPath& objectName, const CIMName& assocClass,
            const CIMName& resultClass, const String& role, const String& resultRole) {
    request.objectName = objectName;
    request.assocClass = assocClass;
    request.resultClass = resultClass;
    request.role = role;
    request.resultRole = resultRole;
}

void shape(OperationRequest& request, Boolean includeClassOrigin,
           const CIMPropertyList& propertyList) {
    request.includeClassOrigin = includeClassOrigin;
    request.propertyList = propertyList;
}

} // namespace

OperationResponse CIMClient::_page(CIMEnumerationContext& enumerationContext,
                                   Boolean& endOfSequence, OperationRequest& request) {
    OperationResponse response = _connection().exchange(request);
    endOfSequence = response.endOfSequence;
    enumerationContext.setNameSpace(request.nameSpace);
    enumerationContext.setContextString(endOfSequence ? String() : response.enumerationContext);
    return response;
}

OperationResponse CIMClient::_continue(CIMEnumerationContext& enumerationContext,
                                       Boolean& endOfSequence, Operation operation,
                                       Uint32 maxObjectCount) {
    OperationRequest request = OperationRequest::make(operation, enumerationContext.getNameSpace());
    request.enumerationContext = enumerationContext.getContextString();
    request.maxObjectCount = maxObjectCount;
    return _page(enumerationContext, endOfSequence, request);
}

Array<CIMInstance> CIMClient::openEnumerateInstances(
    CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
    const CIMNamespaceName& nameSpace, const CIMName& className, Boolean deepInheritance,
    Boolean includeClassOrigin, const CIMPropertyList& propertyList,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenEnumerateInstances, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    request.className = className;
    request.deepInheritance = deepInheritance;
    shape(request, includeClassOrigin, propertyList);
    return _page(enumerationContext, endOfSequence, request).instances;
}

Array<CIMObjectPath>
CIMClient::openEnumerateInstancePaths(CIMEnumerationContext& enumerationContext,
                                      Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
                                      const CIMName& className, const String& filterQueryLanguage,
                                      const String& filterQuery, const Uint32Arg& operationTimeout,
                                      Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenEnumerateInstancePaths, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    request.className = className;
    return _page(enumerationContext, endOfSequence, request).paths;
}

Array<CIMInstance> CIMClient::openReferenceInstances(
    CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const Boolean includeClassOrigin, const CIMPropertyList& propertyList,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenReferenceInstances, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    relate(request, objectName, CIMName(), resultClass, role, String());
    shape(request, includeClassOrigin, propertyList);
    return _page(enumerationContext, endOfSequence, request).instances;
}

Array<CIMObjectPath> CIMClient::openReferenceInstancePaths(
    CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& resultClass,
    const String& role, const String& filterQueryLanguage, const String& filterQuery,
    const Uint32Arg& operationTimeout, Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenReferenceInstancePaths, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    relate(request, objectName, CIMName(), resultClass, role, String());
    return _page(enumerationContext, endOfSequence, request).paths;
}

Array<CIMInstance> CIMClient::openAssociatorInstances(
    CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& assocClass,
    const CIMName& resultClass, const String& role, const String& resultRole,
    Boolean includeClassOrigin, const CIMPropertyList& propertyList,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenAssociatorInstances, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    relate(request, objectName, assocClass, resultClass, role, resultRole);
    shape(request, includeClassOrigin, propertyList);
    return _page(enumerationContext, endOfSequence, request).instances;
}

Array<CIMObjectPath> CIMClient::openAssociatorInstancePaths(
    CIMEnumerationContext& enumerationContext, Boolean& endOfSequence,
    const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName, const CIMName& assocClass,
    const CIMName& resultClass, const String& role, const String& resultRole,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    OperationRequest request =
        opening(Operation::OpenAssociatorInstancePaths, nameSpace, filterQueryLanguage, filterQuery,
                operationTimeout, continueOnError, maxObjectCount);
    relate(request, objectName, assocClass, resultClass, role, resultRole);
    return _page(enumerationContext, endOfSequence, request).paths;
}

Array<CIMInstance> CIMClient::pullInstancesWithPath(CIMEnumerationContext& enumerationContext,
                                                    Boolean& endOfSequence, Uint32 maxObjectCount) {
    return _continue(enumerationContext, endOfSequence, Operation::PullInstancesWithPath,
                     maxObjectCount)
        .instances;
}

Array<CIMObjectPath> CIMClient::pullInstancePaths(CIMEnumerationContext& enumerationContext,
                                                  Boolean& endOfSequence, Uint32 maxObjectCount) {
    return _continue(enumerationContext, endOfSequence, Operation::PullInstancePaths,
                     maxObjectCount)
        .paths;
}

void CIMClient::closeEnumeration(CIMEnumerationContext& enumerationContext) {
    OperationRequest request =
        OperationRequest::make(Operation::CloseEnumeration, enumerationContext.getNameSpace());
    request.enumerationContext = enumerationContext.getContextString();
    _connection().exchange(request);
    enumerationContext.clearEnumeration();
}

Uint64Arg CIMClient::enumerationCount(CIMEnumerationContext& enumerationContext) {
    OperationRequest request =
        OperationRequest::make(Operation::EnumerationCount, enumerationContext.getNameSpace());
    request.enumerationContext = enumerationContext.getContextString();
    const OperationResponse response = _connection().exchange(request);
    return response.count ? Uint64Arg(*response.count) : Uint64Arg();
}

PEGASUS_NAMESPACE_END
