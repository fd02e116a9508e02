#ifndef KSV_CIMXML_REQUEST_H
#define KSV_CIMXML_REQUEST_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <cimxml/Operation.h>

#include <optional>
#include <string>
#include <string_view>

namespace ksv::cimxml {

/// One CIM operation request: the MESSAGE of a SIMPLEREQ holding one IMETHODCALL or METHODCALL.
///
/// One flat record for all operations; each operation reads only the fields its DSP0200
/// signature has. make() fills in DSP0200's defaults, so a decoded request holds the default of
/// every parameter the client left out, and the encoder leaves out parameters that hold their
/// default.
struct OperationRequest {
    /// MESSAGE ID, echoed by the response.
    std::string messageId = "1";
    Operation operation = Operation::GetClass;
    /// From the LOCALNAMESPACEPATH of the call (or of the LOCALINSTANCEPATH/LOCALCLASSPATH of
    /// an extrinsic call).
    Pegasus::CIMNamespaceName nameSpace;

    /// ClassName. Null when EnumerateClasses or EnumerateClassNames start at the roots.
    Pegasus::CIMName className;
    /// InstanceName of GetInstance, DeleteInstance, GetProperty, SetProperty; ObjectName of the
    /// four association operations (a class path, without keys, when it names a class); the
    /// target of InvokeMethod (instance or class). Never carries host or namespace.
    Pegasus::CIMObjectPath objectName;

    Pegasus::Boolean deepInheritance = false;
    /// DSP0200 deprecates LocalOnly for instance operations; it is still carried as sent.
    Pegasus::Boolean localOnly = true;
    Pegasus::Boolean includeQualifiers = false;
    Pegasus::Boolean includeClassOrigin = false;
    /// Null unless the client sent a PropertyList.
    Pegasus::CIMPropertyList propertyList;

    /// AssocClass and ResultClass: null when not sent.
    Pegasus::CIMName assocClass;
    Pegasus::CIMName resultClass;
    /// Role and ResultRole: empty when not sent.
    Pegasus::String role;
    Pegasus::String resultRole;

    /// NewInstance of CreateInstance; ModifiedInstance of ModifyInstance, whose path is set from
    /// the VALUE.NAMEDINSTANCE's INSTANCENAME.
    Pegasus::CIMInstance instance;

    /// PropertyName of GetProperty and SetProperty.
    Pegasus::CIMName propertyName;
    /// NewValue of SetProperty. DSP0200 sends it without a type: unless it came as a
    /// VALUE.REFERENCE it is decoded as a string (or string array) and newValueTyped is false;
    /// convert it with typeValue() once the property's declared type is known. A missing NewValue
    /// is a null string.
    Pegasus::CIMValue newValue;
    Pegasus::Boolean newValueTyped = false;

    /// METHODCALL NAME of InvokeMethod.
    Pegasus::CIMName methodName;
    /// PARAMVALUEs of InvokeMethod, in the order sent. A parameter sent without PARAMTYPE (and
    /// without a TYPE on its VALUE) is a string or string array with isTyped() false; see
    /// typeParameters().
    Pegasus::Array<Pegasus::CIMParamValue> inParameters;

    /// MaxObjectCount of the opening and pull operations: at most this many objects in the
    /// response.
    Pegasus::Uint32 maxObjectCount = 0;
    /// OperationTimeout of the opening operations, in seconds; unset (NULL) leaves it to the
    /// server.
    std::optional<Pegasus::Uint32> operationTimeout;
    Pegasus::Boolean continueOnError = false;
    /// FilterQueryLanguage and FilterQuery: empty when not sent.
    Pegasus::String filterQueryLanguage;
    Pegasus::String filterQuery;
    /// EnumerationContext of the pulls, CloseEnumeration and EnumerationCount.
    Pegasus::String enumerationContext;

    /// A request for `operation` on `nameSpace` with DSP0200's defaults for that operation:
    /// GetClass LocalOnly, IncludeQualifiers true; EnumerateClasses LocalOnly, IncludeQualifiers
    /// true, DeepInheritance false; GetInstance LocalOnly true, IncludeQualifiers false;
    /// EnumerateInstances and OpenEnumerateInstances DeepInheritance, LocalOnly true,
    /// IncludeQualifiers false; ModifyInstance
    /// IncludeQualifiers true; Associators and References IncludeQualifiers false; every
    /// IncludeClassOrigin false, every PropertyList, AssocClass, ResultClass, Role, ResultRole
    /// null.
    static OperationRequest make(Operation operation, const Pegasus::CIMNamespaceName& nameSpace);
};

/// The complete CIM-XML document (XML declaration, CIM, MESSAGE, SIMPLEREQ, call) of a request.
/// Parameters that hold their DSP0200 default are left out.
std::string encodeRequest(const OperationRequest& request);

/// Appends the same document to `out`.
void appendRequest(std::string& out, const OperationRequest& request);

/// Decodes a request body.
///
/// Throws ProtocolError when the message as a whole is unusable (not XML, not a CIM message,
/// unsupported CIMVERSION/DTDVERSION/PROTOCOLVERSION, MULTIREQ) and OperationError, carrying
/// the message ID and method name for the ERROR response, when the call is understood but cannot
/// be carried out as sent: CIM_ERR_NOT_SUPPORTED for an unknown intrinsic method,
/// CIM_ERR_INVALID_PARAMETER for a missing, repeated, unknown or malformed parameter,
/// CIM_ERR_INVALID_NAMESPACE for a malformed namespace, CIM_ERR_SERVER_LIMITS_EXCEEDED past the
/// limits of Elements.h. Nesting is bounded, so no input can exhaust the stack; the caller bounds
/// the body's size.
OperationRequest decodeRequest(std::string_view body);

} // namespace ksv::cimxml

#endif
