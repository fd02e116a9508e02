#ifndef KSV_CIMXML_VALUES_H
#define KSV_CIMXML_VALUES_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <optional>
#include <string>
#include <string_view>

/// The text forms of CIM scalar values inside VALUE elements, and the conversion of values that
/// arrived without a type.
namespace ksv::cimxml {

/// The shortest text that reads back as the same number, always with a decimal point
/// ("1.0", "2.5e-07", "1.0e+20"); "NaN", "INF" and "-INF" for the special values.
void appendReal(std::string& out, Pegasus::Real64 number);
void appendReal(std::string& out, Pegasus::Real32 number);

/// The CIM type named by a TYPE or PARAMTYPE attribute ("uint16", "reference", ...); nothing for
/// an unknown name. "object" and "instance" are no wire types and are not accepted.
std::optional<Pegasus::CIMType> cimTypeNamed(std::string_view name);
/// The wire name of a type; embedded objects and instances travel as "string".
const char* wireTypeName(Pegasus::CIMType type);
/// Whether values of the type are embedded objects or instances, which travel as CIM-XML text.
inline bool isEmbedded(Pegasus::CIMType type) {
    return type == Pegasus::CIMTYPE_OBJECT || type == Pegasus::CIMTYPE_INSTANCE;
}

/// Reads the text of one VALUE as a scalar of `type`: booleans TRUE/FALSE in any case; integers
/// in decimal with an optional sign, or hexadecimal 0x...; reals as above; char16 one character;
/// datetimes in CIM form; references as object path text; objects and instances as CIM-XML
/// CLASS or INSTANCE text. Blanks around numbers, booleans, datetimes and paths are ignored.
/// Throws CIMException(CIM_ERR_INVALID_PARAMETER) naming the text and the type when it does not
/// fit, including integers out of the type's range.
Pegasus::CIMValue parseScalar(std::string_view text, Pegasus::CIMType type);

/// Converts a value that arrived untyped (a string or string array, as DSP0200 sends SetProperty
/// values and extrinsic parameters without PARAMTYPE) to the declared type. Typed values are
/// returned as they are when their type fits and refused with CIM_ERR_TYPE_MISMATCH otherwise;
/// a null value becomes a null of the declared type. Embedded objects and instances are read
/// from their CIM-XML text. Unparseable text gives CIM_ERR_INVALID_PARAMETER.
Pegasus::CIMValue typeValue(const Pegasus::CIMValue& value, Pegasus::CIMType type,
                            Pegasus::Boolean isArray);

/// The input parameters of an extrinsic call, typed from the method's declaration: each untyped
/// parameter is converted with typeValue() to its declared type and marked typed; a string
/// parameter qualified EmbeddedInstance or EmbeddedObject is read as an embedded instance or
/// object. A parameter the method does not declare gives CIM_ERR_INVALID_PARAMETER; parameters
/// keep their order.
Pegasus::Array<Pegasus::CIMParamValue>
typeParameters(const Pegasus::CIMConstMethod& method,
               const Pegasus::Array<Pegasus::CIMParamValue>& inParameters);

} // namespace ksv::cimxml

#endif
