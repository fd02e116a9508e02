#ifndef KSV_CIMXML_RESPONSE_H
#define KSV_CIMXML_RESPONSE_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <cimxml/Elements.h>
#include <cimxml/Operation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ksv::cimxml {

/// Host and namespace that complete object paths which lack them where DSP0201 requires full
/// paths (the INSTANCEPATH or CLASSPATH of VALUE.OBJECTWITHPATH and OBJECTPATH).
struct PathDefaults {
    Pegasus::String host;
    Pegasus::CIMNamespaceName nameSpace;
};

/// Whether the path names its host and namespace, so that completing it changes nothing.
inline bool isComplete(const Pegasus::CIMObjectPath& path) {
    return path.getHost().size() != 0 && !path.getNameSpace().isNull();
}

/// The path with the defaults' host and namespace where it names none.
Pegasus::CIMObjectPath completed(Pegasus::CIMObjectPath path, const PathDefaults& defaults);

/// Hands `use` the path completed; a complete one goes as it is, sparing a copy of it and its
/// keys per result.
template <class Use>
void withCompleted(const Pegasus::CIMObjectPath& path, const PathDefaults& defaults, Use&& use) {
    if (isComplete(path))
        use(path);
    else
        use(completed(path, defaults));
}

/// Writes the response to one intrinsic operation piece by piece into a buffer the caller owns,
/// so that a server can send each object as its provider delivers it without holding the whole
/// answer. The caller may send and clear `out` between calls; the writer only appends to it.
///
/// The head (XML declaration through IRETURNVALUE) is written with the first object or by
/// finish(); until then hasStarted() is false and the caller can still answer with
/// appendErrorResponse() instead. Each write picks the element DSP0200 prescribes for the
/// operation:
///   GetClass, EnumerateClasses            writeClass       CLASS
///   EnumerateClassNames                   writeClassName   CLASSNAME
///   GetInstance                           writeInstance    INSTANCE
///   EnumerateInstances                    writeInstance    VALUE.NAMEDINSTANCE (needs the path)
///   Associators, References               writeObject      VALUE.OBJECTWITHPATH
///   EnumerateInstanceNames, CreateInstance writeObjectPath INSTANCENAME
///   AssociatorNames, ReferenceNames       writeObjectPath  OBJECTPATH
///   GetProperty                           writeValue       VALUE, VALUE.ARRAY or VALUE.REFERENCE
///   OpenEnumerateInstances, OpenReferenceInstances, OpenAssociatorInstances,
///   PullInstancesWithPath                 writeInstance    VALUE.INSTANCEWITHPATH
///   PullInstances                         writeInstance    INSTANCE
///   OpenEnumerateInstancePaths, OpenReferenceInstancePaths, OpenAssociatorInstancePaths,
///   PullInstancePaths                     writeObjectPath  INSTANCEPATH
///   EnumerationCount                      writeValue       VALUE (a null count writes nothing)
///   ModifyInstance, DeleteInstance, SetProperty, CloseEnumeration: nothing; finish() alone.
/// The opening and pull operations end with finishPage() instead of finish().
/// A write that does not fit the operation throws CIMException(CIM_ERR_FAILED).
/// Not thread-safe; one writer per response.
namespace detail {
class ReferenceElements;
class PropertyTags;
} // namespace detail

class IMethodResponseWriter {
public:
    IMethodResponseWriter(std::string& out, std::string messageId, Operation operation,
                          PathDefaults defaults = PathDefaults());
    ~IMethodResponseWriter();

    void writeClass(const Pegasus::CIMConstClass& cimClass);
    void writeClassName(const Pegasus::CIMName& className);
    void writeInstance(const Pegasus::CIMConstInstance& instance,
                       const InstanceParts& parts = InstanceParts());
    /// A class or an instance; writeObject of an instance also serves GetInstance and
    /// EnumerateInstances, of a class GetClass and EnumerateClasses.
    void writeObject(const Pegasus::CIMConstObject& object);
    void writeObjectPath(const Pegasus::CIMObjectPath& path);
    /// A null value writes nothing (GetProperty of a null property).
    void writeValue(const Pegasus::CIMValue& value);

    /// Writes the tail, and the head if nothing was written yet. Call once.
    void finish();
    /// The same for an opening or pull operation, with its EndOfSequence and, unless the
    /// sequence ended, EnumerationContext.
    void finishPage(Pegasus::Boolean endOfSequence, const Pegasus::String& enumerationContext);

    bool hasStarted() const { return _started; }

private:
    void _start();
    void _finishTail();
    void _require(bool fits, const char* what) const;

    std::string& _out;
    std::string _messageId;
    Operation _operation;
    PathDefaults _defaults;
    bool _started = false;
    std::unique_ptr<detail::ReferenceElements> _references;
    std::unique_ptr<detail::PropertyTags> _propertyTags;
};

/// The whole response to an extrinsic method call: METHODRESPONSE with RETURNVALUE (left out
/// when the value is null) and one PARAMVALUE per output parameter, each with its PARAMTYPE.
void appendMethodResponse(std::string& out, std::string_view messageId,
                          const Pegasus::CIMName& methodName, const Pegasus::CIMValue& returnValue,
                          const Pegasus::Array<Pegasus::CIMParamValue>& outParameters);

/// The whole response to a failed call: IMETHODRESPONSE (intrinsic) or METHODRESPONSE with
/// ERROR CODE and DESCRIPTION.
void appendErrorResponse(std::string& out, std::string_view messageId, std::string_view methodName,
                         bool intrinsic, Pegasus::CIMStatusCode code,
                         const Pegasus::String& description);

/// The ERROR of a response.
struct ResponseError {
    Pegasus::CIMStatusCode code = Pegasus::CIM_ERR_FAILED;
    Pegasus::String description;
};

/// A decoded response. Only the fields of the operation it answers are filled in.
struct OperationResponse {
    std::string messageId;
    /// IMETHODRESPONSE or METHODRESPONSE NAME.
    std::string methodName;
    std::optional<ResponseError> error;

    /// GetClass (one), EnumerateClasses.
    Pegasus::Array<Pegasus::CIMClass> classes;
    /// EnumerateClassNames.
    Pegasus::Array<Pegasus::CIMName> classNames;
    /// GetInstance (one), EnumerateInstances (each with its path).
    Pegasus::Array<Pegasus::CIMInstance> instances;
    /// Associators, References: instances or classes, each with its full path.
    Pegasus::Array<Pegasus::CIMObject> objects;
    /// EnumerateInstanceNames, CreateInstance (one), AssociatorNames, ReferenceNames.
    Pegasus::Array<Pegasus::CIMObjectPath> paths;
    /// GetProperty (a string, string array or reference, since DSP0201 sends no type; null when
    /// the response holds no value); the RETURNVALUE of InvokeMethod, typed by its PARAMTYPE.
    Pegasus::CIMValue value;
    /// Output PARAMVALUEs of InvokeMethod.
    Pegasus::Array<Pegasus::CIMParamValue> outParameters;
    /// Opening and pull operations: their instances (each with its path; without for
    /// PullInstances) are in `instances`, their paths in `paths`.
    Pegasus::Boolean endOfSequence = false;
    Pegasus::String enumerationContext;
    /// EnumerationCount; unset when the server gave no count.
    std::optional<Pegasus::Uint64> count;

    /// Throws CIMException with the ERROR's code and description, if there is one.
    void throwIfError() const;
};

/// Decodes the response to `operation`. Throws ProtocolError (NotWellFormed or NotValid) for a
/// body that is not a CIM-XML response to that operation, including an IMETHODRESPONSE or
/// METHODRESPONSE whose NAME is not `expectedMethodName` (the intrinsic operation's name, or
/// the extrinsic method's).
OperationResponse decodeResponse(std::string_view body, Operation operation,
                                 std::string_view expectedMethodName);

} // namespace ksv::cimxml

#endif
