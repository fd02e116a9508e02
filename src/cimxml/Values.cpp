#include <cimxml/Values.h>
#include <cimxml/Elements.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Reader.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>

namespace ksv::cimxml {

using namespace Pegasus;

namespace {

struct TypeName {
    CIMType type;
    const char* name;
};

// In the order of the types, so that a type indexes its name.
constexpr TypeName wireTypes[] = {
    {CIMTYPE_BOOLEAN, "boolean"}, {CIMTYPE_UINT8, "uint8"},       {CIMTYPE_SINT8, "sint8"},
    {CIMTYPE_UINT16, "uint16"},   {CIMTYPE_SINT16, "sint16"},     {CIMTYPE_UINT32, "uint32"},
    {CIMTYPE_SINT32, "sint32"},   {CIMTYPE_UINT64, "uint64"},     {CIMTYPE_SINT64, "sint64"},
    {CIMTYPE_REAL32, "real32"},   {CIMTYPE_REAL64, "real64"},     {CIMTYPE_CHAR16, "char16"},
    {CIMTYPE_STRING, "string"},   {CIMTYPE_DATETIME, "datetime"}, {CIMTYPE_REFERENCE, "reference"},
};

[[noreturn]] void throwUnfit(std::string_view text, CIMType type) {
    detail::throwInvalid("value " + detail::quoted(text) + " is not a valid " +
                         cimTypeToString(type));
}

template <class Real>
char* writeRealText(char* to, Real number) {
    if (std::isnan(number))
        return std::copy_n("NaN", 3, to);
    if (std::isinf(number))
        return number < 0 ? std::copy_n("-INF", 4, to) : std::copy_n("INF", 3, to);
    char text[48];
    const auto result = std::to_chars(text, text + sizeof(text), number);
    const std::string_view shortest(text, size_t(result.ptr - text));
    const size_t exponent = shortest.find('e');
    const std::string_view mantissa = shortest.substr(0, exponent);
    to = std::copy(mantissa.begin(), mantissa.end(), to);
    if (mantissa.find('.') == std::string_view::npos)
        to = std::copy_n(".0", 2, to);
    if (exponent != std::string_view::npos)
        to = std::copy(shortest.begin() + exponent, shortest.end(), to);
    return to;
}

template <class Real>
void appendRealText(std::string& out, Real number) {
    char text[detail::kRealTextBytes];
    out.append(text, writeRealText(text, number));
}

// Decimal with an optional sign, or hexadecimal 0x...: the magnitude and whether it was negative.
// std::errc::invalid_argument for other text, result_out_of_range beyond 64 bits.
std::errc parseMagnitude(std::string_view text, Uint64& magnitude, bool& negative) {
    negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    if (text.empty() || text.front() == '+' || text.front() == '-') {
        return std::errc::invalid_argument;
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    if (result.ptr != text.data() + text.size()) {
        return std::errc::invalid_argument;
    }
    return result.ec;
}

[[noreturn]] void throwOutOfRange(std::string_view text, CIMType type) {
    detail::throwInvalid("value " + detail::quoted(text) + " is out of range for " +
                         cimTypeToString(type));
}

template <class Integer>
CIMValue parseInteger(std::string_view text, CIMType type) {
    Uint64 magnitude = 0;
    bool negative = false;
    const std::errc parsed = parseMagnitude(detail::trimXmlSpace(text), magnitude, negative);
    if (parsed == std::errc::result_out_of_range) {
        throwOutOfRange(text, type);
    }
    if (parsed != std::errc()) {
        throwUnfit(text, type);
    }
    using Limits = std::numeric_limits<Integer>;
    if (!negative && magnitude <= Uint64(Limits::max())) {
        return CIMValue(Integer(magnitude));
    }
    if (negative && magnitude == 0) {
        return CIMValue(Integer(0));
    }
    if (negative && Limits::is_signed && magnitude <= Uint64(Limits::max()) + 1) {
        return CIMValue(Integer(-Sint64(magnitude - 1) - 1));
    }
    throwOutOfRange(text, type);
}

template <class Real>
bool parseSpecialReal(std::string_view text, Real& number) {
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (detail::equalsNoCase(text, "inf") || detail::equalsNoCase(text, "infinity")) {
        number = negative ? -std::numeric_limits<Real>::infinity()
                          : std::numeric_limits<Real>::infinity();
        return true;
    }
    if (detail::equalsNoCase(text, "nan")) {
        number = std::numeric_limits<Real>::quiet_NaN();
        return true;
    }
    return false;
}

template <class Real>
CIMValue parseReal(std::string_view original, CIMType type) {
    std::string_view text = detail::trimXmlSpace(original);
    Real number = 0;
    if (parseSpecialReal(text, number)) {
        return CIMValue(number);
    }
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        throwOutOfRange(original, type);
    }
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        throwUnfit(original, type);
    }
    return CIMValue(number);
}

String parseString(std::string_view text) {
    String value;
    if (!detail::utf8ToString(text, value)) {
        detail::throwInvalid("value is not valid UTF-8");
    }
    return value;
}

CIMValue parseBoolean(std::string_view original) {
    const std::string_view text = detail::trimXmlSpace(original);
    if (detail::equalsNoCase(text, "true")) {
        return CIMValue(true);
    }
    if (detail::equalsNoCase(text, "false")) {
        return CIMValue(false);
    }
    throwUnfit(original, CIMTYPE_BOOLEAN);
}

CIMValue parseChar16(std::string_view text) {
    const String value = parseString(text);
    if (value.size() != 1) {
        throwUnfit(text, CIMTYPE_CHAR16);
    }
    return CIMValue(value[0]);
}

// The model's own parsers report with their exceptions; the message names the input.
template <class Parse>
CIMValue parseWithModel(std::string_view text, CIMType type, Parse parse) {
    try {
        return parse();
    } catch (const CIMException&) {
        throw;
    } catch (const Exception& e) {
        detail::throwInvalid("value " + detail::quoted(text) + " is not a valid " +
                             cimTypeToString(type) + ": " + detail::messageOf(e));
    }
}

// A path read from text keeps to the limits of one read from elements, which is how its written
// form is read back.
void checkWithin(const String& part, std::size_t limit) {
    const std::size_t bytes = std::string(part.getCString()).size();
    if (bytes > limit)
        throw Exception(String(("a name or key of " + std::to_string(bytes) +
                                " bytes is longer than " + std::to_string(limit) + " bytes")
                                   .c_str()));
}

CIMObjectPath pathWithinLimits(const String& text) {
    CIMObjectPath path(text);
    const String nameSpace = path.getNameSpace().getString();
    for (Uint32 begin = 0; begin <= nameSpace.size();) {
        Uint32 end = nameSpace.find(begin, Char16('/'));
        end = end == PEG_NOT_FOUND ? nameSpace.size() : end;
        checkWithin(nameSpace.subString(begin, end - begin), detail::Reader::kMaxNameBytes);
        begin = end + 1;
    }
    checkWithin(path.getClassName().getString(), detail::Reader::kMaxNameBytes);
    const Array<CIMKeyBinding> keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        checkWithin(keys[i].getName().getString(), detail::Reader::kMaxNameBytes);
        checkWithin(keys[i].getValue(), detail::Reader::kMaxKeyBytes);
    }
    return path;
}

CIMValue parseStructured(std::string_view text, CIMType type) {
    const std::string_view trimmed = detail::trimXmlSpace(text);
    return parseWithModel(text, type, [&]() {
        switch (type) {
        case CIMTYPE_DATETIME:
            return CIMValue(CIMDateTime(parseString(trimmed)));
        case CIMTYPE_REFERENCE:
            return CIMValue(pathWithinLimits(parseString(trimmed)));
        case CIMTYPE_OBJECT:
            return CIMValue(decodeObject(text));
        default:
            return CIMValue(decodeInstance(text));
        }
    });
}

// The type a parameter declaration asks for: string parameters qualified EmbeddedInstance or
// EmbeddedObject carry instances or objects.
CIMType declaredType(const CIMConstParameter& parameter) {
    if (parameter.getType() != CIMTYPE_STRING) {
        return parameter.getType();
    }
    if (parameter.findQualifier(CIMName("EmbeddedInstance")) != PEG_NOT_FOUND) {
        return CIMTYPE_INSTANCE;
    }
    if (parameter.findQualifier(CIMName("EmbeddedObject")) != PEG_NOT_FOUND) {
        return CIMTYPE_OBJECT;
    }
    return CIMTYPE_STRING;
}

// Embedded values that arrived typed fit a parameter declared as a qualified string.
bool fitsDeclaration(const CIMValue& value, CIMType type, Boolean isArray) {
    if (value.isArray() != isArray) {
        return false;
    }
    return value.getType() == type || (isEmbedded(value.getType()) && isEmbedded(type));
}

template <class Element>
CIMValue parseArray(const Array<String>& texts, CIMType type) {
    Array<Element> elements;
    elements.reserveCapacity(texts.size());
    for (Uint32 i = 0; i < texts.size(); i++) {
        Element element;
        parseScalar(detail::utf8Of(texts[i]), type).get(element);
        elements.append(element);
    }
    return CIMValue(elements);
}

CIMValue parseStringArray(const Array<String>& texts, CIMType type) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return parseArray<Boolean>(texts, type);
    case CIMTYPE_UINT8:
        return parseArray<Uint8>(texts, type);
    case CIMTYPE_SINT8:
        return parseArray<Sint8>(texts, type);
    case CIMTYPE_UINT16:
        return parseArray<Uint16>(texts, type);
    case CIMTYPE_SINT16:
        return parseArray<Sint16>(texts, type);
    case CIMTYPE_UINT32:
        return parseArray<Uint32>(texts, type);
    case CIMTYPE_SINT32:
        return parseArray<Sint32>(texts, type);
    case CIMTYPE_UINT64:
        return parseArray<Uint64>(texts, type);
    case CIMTYPE_SINT64:
        return parseArray<Sint64>(texts, type);
    case CIMTYPE_REAL32:
        return parseArray<Real32>(texts, type);
    case CIMTYPE_REAL64:
        return parseArray<Real64>(texts, type);
    case CIMTYPE_CHAR16:
        return parseArray<Char16>(texts, type);
    case CIMTYPE_STRING:
        return CIMValue(texts);
    case CIMTYPE_DATETIME:
        return parseArray<CIMDateTime>(texts, type);
    case CIMTYPE_REFERENCE:
        return parseArray<CIMObjectPath>(texts, type);
    case CIMTYPE_OBJECT:
        return parseArray<CIMObject>(texts, type);
    case CIMTYPE_INSTANCE:
        return parseArray<CIMInstance>(texts, type);
    }
    throwUnfit("", type);
}

} // namespace

namespace detail {

char* writeReal(char* to, Real64 number) {
    return writeRealText(to, number);
}

char* writeReal(char* to, Real32 number) {
    return writeRealText(to, number);
}

} // namespace detail

void appendReal(std::string& out, Real64 number) {
    appendRealText(out, number);
}

void appendReal(std::string& out, Real32 number) {
    appendRealText(out, number);
}

std::optional<CIMType> cimTypeNamed(std::string_view name) {
    for (const TypeName& entry : wireTypes) {
        if (name == entry.name) {
            return entry.type;
        }
    }
    return std::nullopt;
}

constexpr bool indexedByType() {
    for (std::size_t i = 0; i < std::size(wireTypes); i++) {
        if (wireTypes[i].type != CIMType(i))
            return false;
    }
    return true;
}
static_assert(indexedByType());

const char* wireTypeName(CIMType type) {
    return std::size_t(type) < std::size(wireTypes) ? wireTypes[type].name : "string";
}

CIMValue parseScalar(std::string_view text, CIMType type) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return parseBoolean(text);
    case CIMTYPE_UINT8:
        return parseInteger<Uint8>(text, type);
    case CIMTYPE_SINT8:
        return parseInteger<Sint8>(text, type);
    case CIMTYPE_UINT16:
        return parseInteger<Uint16>(text, type);
    case CIMTYPE_SINT16:
        return parseInteger<Sint16>(text, type);
    case CIMTYPE_UINT32:
        return parseInteger<Uint32>(text, type);
    case CIMTYPE_SINT32:
        return parseInteger<Sint32>(text, type);
    case CIMTYPE_UINT64:
        return parseInteger<Uint64>(text, type);
    case CIMTYPE_SINT64:
        return parseInteger<Sint64>(text, type);
    case CIMTYPE_REAL32:
        return parseReal<Real32>(text, type);
    case CIMTYPE_REAL64:
        return parseReal<Real64>(text, type);
    case CIMTYPE_CHAR16:
        return parseChar16(text);
    case CIMTYPE_STRING:
        return CIMValue(parseString(text));
    default:
        return parseStructured(text, type);
    }
}

CIMValue typeValue(const CIMValue& value, CIMType type, Boolean isArray) {
    if (value.isNull()) {
        return CIMValue(type, isArray);
    }
    if (fitsDeclaration(value, type, isArray)) {
        return value;
    }
    if (value.getType() != CIMTYPE_STRING || value.isArray() != isArray) {
        detail::throwCim(CIM_ERR_TYPE_MISMATCH,
                         std::string("a ") + cimTypeToString(value.getType()) +
                             (value.isArray() ? " array" : "") + " value where " +
                             cimTypeToString(type) + (isArray ? " array" : "") + " is declared");
    }
    if (isArray) {
        Array<String> texts;
        value.get(texts);
        return parseStringArray(texts, type);
    }
    String text;
    value.get(text);
    return parseScalar(detail::utf8Of(text), type);
}

Array<CIMParamValue> typeParameters(const CIMConstMethod& method,
                                    const Array<CIMParamValue>& inParameters) {
    Array<CIMParamValue> typed;
    typed.reserveCapacity(inParameters.size());
    for (Uint32 i = 0; i < inParameters.size(); i++) {
        const String name = inParameters[i].getParameterName();
        const Uint32 index =
            CIMName::legal(name) ? method.findParameter(CIMName(name)) : PEG_NOT_FOUND;
        if (index == PEG_NOT_FOUND) {
            detail::throwInvalid("method " + detail::utf8Of(method.getName().getString()) +
                                 " has no parameter " + detail::quoted(detail::utf8Of(name)));
        }
        const CIMConstParameter declaration = method.getParameter(index);
        const CIMValue value =
            typeValue(inParameters[i].getValue(), declaredType(declaration), declaration.isArray());
        typed.append(CIMParamValue(name, value, true));
    }
    return typed;
}

} // namespace ksv::cimxml
