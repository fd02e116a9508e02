#ifndef KSV_CIMXML_ELEMENTS_H
#define KSV_CIMXML_ELEMENTS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>

/// Single DSP0201 elements, for callers that build or read messages other than the operation
/// requests and responses of Request.h and Response.h. Each append function writes one element,
/// without line breaks or indentation, to the end of `out`; text is UTF-8 with markup characters
/// escaped. Each decode function reads a text holding exactly that one element and throws
/// CIMException(CIM_ERR_INVALID_PARAMETER) with the offending element's path when it is not
/// well-formed or not valid, and CIM_ERR_SERVER_LIMITS_EXCEEDED for an element with more than
/// 2048 properties, qualifiers, methods, parameters or keys, a name longer than 256 bytes, a key
/// value longer than 1024 bytes or another value longer than 64 KiB (UTF-8). Elements nest at
/// most 100 deep and embedded objects at most 8.
namespace ksv::cimxml {

/// What of an instance is written: DSP0200's PropertyList, IncludeQualifiers and
/// IncludeClassOrigin, applied while writing so that no copy of the instance is needed to leave
/// parts out. The default writes everything.
struct InstanceParts {
    bool qualifiers = true;
    bool classOrigins = true;
    /// Null: every property.
    const Pegasus::CIMPropertyList* properties = nullptr;
};

/// Character data or an attribute value: & < > " ' as entity references; control characters,
/// and a text made only of blanks, as character references so that readers keep them.
void appendEscaped(std::string& out, const Pegasus::String& text);
void appendEscaped(std::string& out, std::string_view utf8);

/// VALUE, VALUE.ARRAY or VALUE.REFERENCE; VALUE.REFARRAY for a reference array; nothing for a
/// null value. Embedded objects and instances are written as escaped CIM-XML text.
void appendValue(std::string& out, const Pegasus::CIMValue& value);

/// CLASSNAME.
void appendClassName(std::string& out, const Pegasus::CIMName& className);
/// INSTANCENAME: class name and KEYBINDINGs, each KEYVALUE with its VALUETYPE, or a
/// VALUE.REFERENCE for a reference key.
void appendInstanceName(std::string& out, const Pegasus::CIMObjectPath& path);
/// LOCALNAMESPACEPATH.
void appendLocalNamespacePath(std::string& out, const Pegasus::CIMNamespaceName& nameSpace);
/// The fullest form the path's parts allow: INSTANCEPATH or CLASSPATH with host and
/// namespace, LOCALINSTANCEPATH or LOCALCLASSPATH with a namespace only, else INSTANCENAME or
/// CLASSNAME. A path without keys is a class path.
void appendObjectPath(std::string& out, const Pegasus::CIMObjectPath& path);

void appendQualifier(std::string& out, const Pegasus::CIMConstQualifier& qualifier);
/// PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE, with CLASSORIGIN and PROPAGATED when set and
/// EmbeddedObject="object" or "instance" for embedded objects.
void appendProperty(std::string& out, const Pegasus::CIMConstProperty& property);
/// METHOD with its PARAMETER, PARAMETER.ARRAY, PARAMETER.REFERENCE and PARAMETER.REFARRAY.
void appendMethod(std::string& out, const Pegasus::CIMConstMethod& method);
void appendInstance(std::string& out, const Pegasus::CIMConstInstance& instance);
void appendClass(std::string& out, const Pegasus::CIMConstClass& cimClass);
/// CLASS or INSTANCE.
void appendObject(std::string& out, const Pegasus::CIMConstObject& object);
/// PARAMVALUE with PARAMTYPE (and EmbeddedObject for embedded objects); no PARAMTYPE when the
/// parameter is untyped.
void appendParamValue(std::string& out, const Pegasus::CIMParamValue& parameter);

/// An INSTANCE element.
Pegasus::CIMInstance decodeInstance(std::string_view xml);
/// A CLASS element.
Pegasus::CIMClass decodeClass(std::string_view xml);
/// A CLASS or INSTANCE element.
Pegasus::CIMObject decodeObject(std::string_view xml);
/// Any of the path elements appendObjectPath() writes, or VALUE.REFERENCE around one.
Pegasus::CIMObjectPath decodeObjectPath(std::string_view xml);
/// VALUE (read as `type`), VALUE.ARRAY (read as an array of `type`), VALUE.REFERENCE or
/// VALUE.REFARRAY (`type` ignored). The text of embedded objects is read as CIM-XML.
Pegasus::CIMValue decodeValue(std::string_view xml, Pegasus::CIMType type);

} // namespace ksv::cimxml

#endif
