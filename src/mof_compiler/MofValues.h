#ifndef KSV_MOF_MOFVALUES_H
#define KSV_MOF_MOFVALUES_H

#include <functional>
#include <optional>
#include <string>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include "mof_compiler/MofAst.h"

namespace ksv::mof {

// The CIM type of a MOF data type keyword (any case); empty when unknown.
std::optional<Pegasus::CIMType> cimTypeFromName(const std::string& name);

// Turns an alias ($name) into the object path it stands for; throws
// MofError when the alias is not defined.
using AliasResolver = std::function<Pegasus::CIMObjectPath(const ast::Literal& alias)>;

// The literal as a value of the given type: range-checked integers, reals,
// strings, char16, datetimes, booleans, references (an object path in a
// string, or an alias) and arrays of these; null stays null of that type.
// A literal of another type throws MofError at the literal's location.
Pegasus::CIMValue literalToValue(const ast::Literal& literal, Pegasus::CIMType type, bool isArray,
                                 const AliasResolver& aliases = {});

// "uint16", "string[]", "CIM_System REF" ...: the type as MOF writes it.
std::string describeType(Pegasus::CIMType type, bool isArray);

} // namespace ksv::mof

#endif
