#include "mof_compiler/MofValues.h"

#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <strings.h>
#include <type_traits>
#include <utility>

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include "mof_compiler/MofError.h"

namespace ksv::mof {

using namespace Pegasus;
using ast::Literal;

namespace {

const std::array<std::pair<const char*, CIMType>, 14> typeNames = {{
    {"boolean", CIMTYPE_BOOLEAN},
    {"uint8", CIMTYPE_UINT8},
    {"sint8", CIMTYPE_SINT8},
    {"uint16", CIMTYPE_UINT16},
    {"sint16", CIMTYPE_SINT16},
    {"uint32", CIMTYPE_UINT32},
    {"sint32", CIMTYPE_SINT32},
    {"uint64", CIMTYPE_UINT64},
    {"sint64", CIMTYPE_SINT64},
    {"real32", CIMTYPE_REAL32},
    {"real64", CIMTYPE_REAL64},
    {"char16", CIMTYPE_CHAR16},
    {"string", CIMTYPE_STRING},
    {"datetime", CIMTYPE_DATETIME},
}};

std::string describeLiteral(const Literal& literal) {
    switch (literal.kind) {
    case Literal::Kind::Null:
        return "NULL";
    case Literal::Kind::Boolean:
        return literal.boolean ? "TRUE" : "FALSE";
    case Literal::Kind::Integer:
        return "integer " + literal.text;
    case Literal::Kind::Real:
        return "real " + literal.text;
    case Literal::Kind::String:
        return "string \"" + literal.text + "\"";
    case Literal::Kind::Char:
        return "character literal";
    case Literal::Kind::Alias:
        return "alias $" + literal.text;
    case Literal::Kind::Array:
        return "array value";
    }
    return "value";
}

[[noreturn]] void mismatch(const Literal& literal, CIMType type, bool isArray) {
    throw MofError(literal.location, "type mismatch: expected a value of type " +
                                         describeType(type, isArray) + ", found " +
                                         describeLiteral(literal));
}

[[noreturn]] void outOfRange(const Literal& literal, CIMType type) {
    throw MofError(literal.location,
                   describeLiteral(literal) + " is out of range for type " + cimTypeToString(type));
}

void requireKind(const Literal& literal, Literal::Kind kind, CIMType type) {
    if (literal.kind != kind)
        mismatch(literal, type, false);
}

template <typename T>
T integerOf(const Literal& literal, CIMType type) {
    requireKind(literal, Literal::Kind::Integer, type);
    using Unsigned = std::make_unsigned_t<T>;
    std::uint64_t limit = std::numeric_limits<T>::max();
    if (literal.negative)
        limit = std::is_signed_v<T> ? limit + 1 : 0;
    if (literal.magnitude > limit)
        outOfRange(literal, type);
    Unsigned bits = static_cast<Unsigned>(literal.magnitude);
    return static_cast<T>(literal.negative ? static_cast<Unsigned>(0 - bits) : bits);
}

template <typename T>
T realOf(const Literal& literal, CIMType type) {
    double value = 0;
    if (literal.kind == Literal::Kind::Real)
        value = literal.real;
    else if (literal.kind == Literal::Kind::Integer)
        value = literal.negative ? -static_cast<double>(literal.magnitude)
                                 : static_cast<double>(literal.magnitude);
    else
        mismatch(literal, type, false);
    if (std::is_same_v<T, Real32> && std::fabs(value) > FLT_MAX)
        outOfRange(literal, type);
    return static_cast<T>(value);
}

CIMDateTime dateTimeOf(const Literal& literal, CIMType type) {
    requireKind(literal, Literal::Kind::String, type);
    try {
        return CIMDateTime(String(literal.text.c_str()));
    } catch (const Exception&) {
        throw MofError(literal.location, "\"" + literal.text + "\" is not a CIM datetime value");
    }
}

CIMObjectPath referenceOf(const Literal& literal, CIMType type, const AliasResolver& aliases) {
    if (literal.kind == Literal::Kind::Alias) {
        if (!aliases)
            throw MofError(literal.location, "alias $" + literal.text + " cannot be used here");
        return aliases(literal);
    }
    requireKind(literal, Literal::Kind::String, type);
    try {
        return CIMObjectPath(String(literal.text.c_str()));
    } catch (const Exception&) {
        throw MofError(literal.location, "\"" + literal.text + "\" is not an object path");
    }
}

template <typename T>
T scalarOf(const Literal& literal, CIMType type, const AliasResolver& aliases) {
    if constexpr (std::is_same_v<T, Boolean>) {
        requireKind(literal, Literal::Kind::Boolean, type);
        return literal.boolean;
    } else if constexpr (std::is_integral_v<T>) {
        return integerOf<T>(literal, type);
    } else if constexpr (std::is_floating_point_v<T>) {
        return realOf<T>(literal, type);
    } else if constexpr (std::is_same_v<T, Char16>) {
        requireKind(literal, Literal::Kind::Char, type);
        return Char16(literal.charValue);
    } else if constexpr (std::is_same_v<T, String>) {
        requireKind(literal, Literal::Kind::String, type);
        return String(literal.text.c_str());
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        return dateTimeOf(literal, type);
    } else {
        return referenceOf(literal, type, aliases);
    }
}

template <typename T>
CIMValue convertAs(const Literal& literal, CIMType type, bool isArray,
                   const AliasResolver& aliases) {
    if (literal.kind == Literal::Kind::Null)
        return CIMValue(type, isArray);
    if (isArray != (literal.kind == Literal::Kind::Array))
        mismatch(literal, type, isArray);
    if (!isArray)
        return CIMValue(scalarOf<T>(literal, type, aliases));
    Array<T> values;
    for (const Literal& element : literal.elements) {
        if (element.kind == Literal::Kind::Null)
            throw MofError(element.location, "array elements cannot be NULL");
        values.append(scalarOf<T>(element, type, aliases));
    }
    return CIMValue(values);
}

} // namespace

std::optional<CIMType> cimTypeFromName(const std::string& name) {
    for (const auto& [keyword, type] : typeNames) {
        if (strcasecmp(keyword, name.c_str()) == 0)
            return type;
    }
    return std::nullopt;
}

std::string describeType(CIMType type, bool isArray) {
    return std::string(cimTypeToString(type)) + (isArray ? "[]" : "");
}

CIMValue literalToValue(const Literal& literal, CIMType type, bool isArray,
                        const AliasResolver& aliases) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return convertAs<Boolean>(literal, type, isArray, aliases);
    case CIMTYPE_UINT8:
        return convertAs<Uint8>(literal, type, isArray, aliases);
    case CIMTYPE_SINT8:
        return convertAs<Sint8>(literal, type, isArray, aliases);
    case CIMTYPE_UINT16:
        return convertAs<Uint16>(literal, type, isArray, aliases);
    case CIMTYPE_SINT16:
        return convertAs<Sint16>(literal, type, isArray, aliases);
    case CIMTYPE_UINT32:
        return convertAs<Uint32>(literal, type, isArray, aliases);
    case CIMTYPE_SINT32:
        return convertAs<Sint32>(literal, type, isArray, aliases);
    case CIMTYPE_UINT64:
        return convertAs<Uint64>(literal, type, isArray, aliases);
    case CIMTYPE_SINT64:
        return convertAs<Sint64>(literal, type, isArray, aliases);
    case CIMTYPE_REAL32:
        return convertAs<Real32>(literal, type, isArray, aliases);
    case CIMTYPE_REAL64:
        return convertAs<Real64>(literal, type, isArray, aliases);
    case CIMTYPE_CHAR16:
        return convertAs<Char16>(literal, type, isArray, aliases);
    case CIMTYPE_STRING:
        return convertAs<String>(literal, type, isArray, aliases);
    case CIMTYPE_DATETIME:
        return convertAs<CIMDateTime>(literal, type, isArray, aliases);
    case CIMTYPE_REFERENCE:
        return convertAs<CIMObjectPath>(literal, type, isArray, aliases);
    default:
        throw MofError(literal.location, "values of type " + describeType(type, isArray) +
                                             " cannot be written in MOF");
    }
}

} // namespace ksv::mof
