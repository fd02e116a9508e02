#ifndef KSV_MOF_MOFAST_H
#define KSV_MOF_MOFAST_H

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "mof_compiler/MofError.h"

// The syntax tree of one MOF file, as written: names keep their spelling,
// values stay literals until the compiler knows the type they must have.
namespace ksv::mof::ast {

struct Literal {
    enum class Kind { Null, Boolean, Integer, Real, String, Char, Alias, Array };

    Kind kind = Kind::Null;
    bool boolean = false;
    bool negative = false;       // Integer
    std::uint64_t magnitude = 0; // Integer: absolute value
    double real = 0;
    std::uint16_t charValue = 0;
    std::string text;              // String value, Alias name, or a number as written
    std::vector<Literal> elements; // Array
    SourceLocation location;
};

struct Qualifier {
    std::string name;
    std::optional<Literal> value; // absent: "[Key]" style
    std::vector<std::string> flavors;
    SourceLocation location;
};

struct DataType {
    std::string name;           // "uint16", "string", ...; empty for a reference
    std::string referenceClass; // set for "ClassName REF"
    bool isArray = false;
    std::uint32_t arraySize = 0; // 0: variable length
};

struct Property {
    std::vector<Qualifier> qualifiers;
    DataType type;
    std::string name;
    std::optional<Literal> defaultValue;
    SourceLocation location;
};

struct Parameter {
    std::vector<Qualifier> qualifiers;
    DataType type;
    std::string name;
    SourceLocation location;
};

struct Method {
    std::vector<Qualifier> qualifiers;
    std::string returnType;
    std::string name;
    std::vector<Parameter> parameters;
    SourceLocation location;
};

struct Class {
    std::vector<Qualifier> qualifiers;
    std::string name;
    std::string superClass; // empty for a root class
    std::vector<Property> properties;
    std::vector<Method> methods;
    SourceLocation location;
};

struct QualifierDeclaration {
    std::string name;
    DataType type;
    std::optional<Literal> defaultValue;
    std::vector<std::string> scopes;
    std::vector<std::string> flavors;
    SourceLocation location;
};

struct PropertyValue {
    std::string name;
    Literal value;
    SourceLocation location;
};

struct Instance {
    std::string className;
    std::string alias; // without '$'; empty when none
    std::vector<PropertyValue> values;
    SourceLocation location;
};

struct Pragma {
    std::string name;
    std::string value;
    SourceLocation location;
};

using Production = std::variant<Pragma, QualifierDeclaration, Class, Instance>;

} // namespace ksv::mof::ast

#endif
