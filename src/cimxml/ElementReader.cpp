#include <cimxml/Elements.h>
#include <cimxml/Values.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Reader.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/Exception.h>

#include <string>

namespace ksv::cimxml {

using namespace Pegasus;

namespace detail {

namespace {

String utf8At(const Element& element, std::string_view utf8) {
    String text;
    if (!utf8ToString(utf8, text)) {
        failAt(element, "text is not valid UTF-8");
    }
    return text;
}

void expectElement(const Element& element, std::string_view name) {
    if (nameOf(element) != name) {
        failAt(element, "expected " + std::string(name));
    }
}

CIMType requiredType(const Element& element, const char* attribute) {
    const std::optional<CIMType> type = typeAttribute(element, attribute);
    if (!type) {
        failAt(element, std::string("attribute ") + attribute + " is missing");
    }
    return *type;
}

Uint32 arraySizeOf(const Element& element) {
    const char* text = attributeOf(element, "ARRAYSIZE");
    if (text == nullptr) {
        return 0;
    }
    Uint32 size = 0;
    locatedAt(element, [&] { parseScalar(text, CIMTYPE_UINT32).get(size); });
    return size;
}

CIMFlavor flavorOf(const Element& element) {
    CIMFlavor flavor;
    flavor.addFlavor(booleanAttribute(element, "OVERRIDABLE", true) ? CIMFlavor::OVERRIDABLE
                                                                    : CIMFlavor::DISABLEOVERRIDE);
    flavor.addFlavor(booleanAttribute(element, "TOSUBCLASS", true) ? CIMFlavor::TOSUBCLASS
                                                                   : CIMFlavor::RESTRICTED);
    if (booleanAttribute(element, "TOINSTANCE", false)) {
        flavor.addFlavor(CIMFlavor::TOINSTANCE);
    }
    if (booleanAttribute(element, "TRANSLATABLE", false)) {
        flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    }
    return flavor;
}

// Called before each member is added to a parent holding `count` of them already.
void checkMemberCount(const Element& member, Uint32 count) {
    if (count >= Reader::kMaxMembers) {
        failAt(member,
               "more than " + std::to_string(Reader::kMaxMembers) + " " +
                   std::string(nameOf(member)) + " elements in one element",
               CIM_ERR_SERVER_LIMITS_EXCEEDED);
    }
}

// Fails when `text`, a name, key or value of `member`, is longer than `limit` bytes.
void checkLength(const Element& member, std::string_view what, std::string_view text,
                 std::size_t limit) {
    if (text.size() > limit) {
        failAt(member,
               std::string(what) + " " + quoted(text, 32) + " is longer than " +
                   std::to_string(limit) + " bytes",
               CIM_ERR_SERVER_LIMITS_EXCEEDED);
    }
}

template <class Target>
void addQualifiers(Target& target, const Array<CIMQualifier>& qualifiers) {
    for (Uint32 i = 0; i < qualifiers.size(); i++) {
        target.addQualifier(qualifiers[i]);
    }
}

enum class KeyKind { String, Boolean, Numeric };

KeyKind keyKindOf(const Element& element, CIMType type) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return KeyKind::Boolean;
    case CIMTYPE_CHAR16:
    case CIMTYPE_STRING:
    case CIMTYPE_DATETIME:
        return KeyKind::String;
    case CIMTYPE_REFERENCE:
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        failAt(element, std::string("a key cannot be of type ") + cimTypeToString(type));
    default:
        return KeyKind::Numeric;
    }
}

KeyKind keyKindNamed(const Element& element, const char* valueType) {
    const std::string_view name = trimXmlSpace(valueType);
    if (name == "string") {
        return KeyKind::String;
    }
    if (name == "boolean") {
        return KeyKind::Boolean;
    }
    if (name == "numeric") {
        return KeyKind::Numeric;
    }
    failAt(element, "VALUETYPE " + quoted(valueType) + " is not string, boolean or numeric");
}

bool parsesAs(std::string_view text, CIMType type) {
    try {
        parseScalar(text, type);
        return true;
    } catch (const CIMException&) {
        return false;
    }
}

// A numeric key without TYPE holds some integer or real.
void checkNumericKey(const Element& element, std::string_view text) {
    if (!parsesAs(text, CIMTYPE_SINT64) && !parsesAs(text, CIMTYPE_UINT64) &&
        !parsesAs(text, CIMTYPE_REAL64)) {
        failAt(element, "numeric key value " + quoted(text) + " is not a number");
    }
}

CIMKeyBinding::Type bindingTypeOf(KeyKind kind) {
    switch (kind) {
    case KeyKind::Boolean:
        return CIMKeyBinding::BOOLEAN;
    case KeyKind::Numeric:
        return CIMKeyBinding::NUMERIC;
    default:
        return CIMKeyBinding::STRING;
    }
}

} // namespace

std::optional<CIMType> typeAttribute(const Element& element, const char* attribute) {
    std::optional<CIMType> type;
    if (const char* name = attributeOf(element, attribute)) {
        type = cimTypeNamed(trimXmlSpace(name));
        if (!type) {
            failAt(element, std::string(attribute) + " " + quoted(name) + " names no CIM type");
        }
    }
    const char* embedded = attributeOf(element, "EmbeddedObject");
    if (embedded == nullptr) {
        embedded = attributeOf(element, "EMBEDDEDOBJECT");
    }
    if (embedded == nullptr) {
        return type;
    }
    if (type && *type != CIMTYPE_STRING) {
        failAt(element, "EmbeddedObject needs a string type");
    }
    const std::string_view kind = trimXmlSpace(embedded);
    if (kind == "object") {
        return CIMTYPE_OBJECT;
    }
    if (kind == "instance") {
        return CIMTYPE_INSTANCE;
    }
    failAt(element, "EmbeddedObject " + quoted(embedded) + " is not object or instance");
}

CIMName Reader::name(const Element& element, const char* attribute) const {
    const std::string_view raw = requiredAttribute(element, attribute);
    checkLength(element, attribute, raw, kMaxNameBytes);
    const String text = utf8At(element, raw);
    if (!CIMName::legal(text)) {
        failAt(element, std::string(attribute) + " " + quoted(raw) + " is not a legal CIM name");
    }
    return CIMName(text);
}

CIMName Reader::optionalName(const Element& element, const char* attribute) const {
    return attributeOf(element, attribute) ? name(element, attribute) : CIMName();
}

String Reader::text(const Element& element) const {
    const std::string raw = textOf(element);
    checkLength(element, "value", raw, kMaxValueBytes);
    return utf8At(element, raw);
}

CIMName Reader::className(const Element& element) const {
    expectElement(element, "CLASSNAME");
    Children(element).finish();
    return name(element, "NAME");
}

CIMNamespaceName Reader::localNamespacePath(const Element& element) const {
    expectElement(element, "LOCALNAMESPACEPATH");
    Children children(element);
    String joined;
    do {
        const Element& part = children.take("NAMESPACE");
        if (joined.size() != 0) {
            joined.append(Char16('/'));
        }
        const std::string_view partName = requiredAttribute(part, "NAME");
        checkLength(part, "NAME", partName, kMaxNameBytes);
        joined.append(utf8At(part, partName));
    } while (!children.atEnd());
    return locatedAt(element, [&] { return CIMNamespaceName(joined); });
}

CIMKeyBinding Reader::_keyValue(const Element& element, const CIMName& keyName) const {
    const std::string raw = textOf(element);
    checkLength(element, "key value", raw, kMaxKeyBytes);
    const char* valueType = attributeOf(element, "VALUETYPE");
    KeyKind kind = valueType ? keyKindNamed(element, valueType) : KeyKind::String;
    if (const std::optional<CIMType> type = typeAttribute(element, "TYPE")) {
        const KeyKind typeKind = keyKindOf(element, *type);
        if (valueType && typeKind != kind) {
            failAt(element, std::string("TYPE ") + cimTypeToString(*type) +
                                " contradicts VALUETYPE " + valueType);
        }
        kind = typeKind;
        locatedAt(element, [&] { parseScalar(raw, *type); });
    } else if (kind == KeyKind::Boolean) {
        locatedAt(element, [&] { parseScalar(raw, CIMTYPE_BOOLEAN); });
    } else if (kind == KeyKind::Numeric) {
        checkNumericKey(element, raw);
    }
    const std::string_view value =
        kind == KeyKind::String ? std::string_view(raw) : trimXmlSpace(raw);
    return CIMKeyBinding(keyName, utf8At(element, value), bindingTypeOf(kind));
}

CIMKeyBinding Reader::_keyBinding(const Element& element) const {
    expectElement(element, "KEYBINDING");
    const CIMName keyName = name(element, "NAME");
    Children children(element);
    CIMKeyBinding binding;
    if (const Element* keyValue = children.takeIf("KEYVALUE")) {
        binding = _keyValue(*keyValue, keyName);
    } else {
        const Element& reference = children.take("VALUE.REFERENCE");
        binding =
            CIMKeyBinding(keyName, valueReference(reference).toString(), CIMKeyBinding::REFERENCE);
    }
    children.finish();
    return binding;
}

CIMObjectPath Reader::instanceName(const Element& element) const {
    expectElement(element, "INSTANCENAME");
    const CIMName cimClassName = name(element, "CLASSNAME");
    Array<CIMKeyBinding> keys;
    Children children(element);
    while (const Element* binding = children.takeIf("KEYBINDING")) {
        checkMemberCount(*binding, keys.size());
        keys.append(_keyBinding(*binding));
    }
    if (children.at("KEYVALUE") || children.at("VALUE.REFERENCE")) {
        failAt(*children.current(), "keys without KEYBINDING names are not supported");
    }
    children.finish();
    return locatedAt(
        element, [&] { return CIMObjectPath(String(), CIMNamespaceName(), cimClassName, keys); });
}

void Reader::_namespacePath(const Element& element, String& host,
                            CIMNamespaceName& nameSpace) const {
    expectElement(element, "NAMESPACEPATH");
    Children children(element);
    host = text(children.take("HOST"));
    nameSpace = localNamespacePath(children.take("LOCALNAMESPACEPATH"));
    children.finish();
}

CIMObjectPath Reader::_hostedPath(const Element& element, bool isClass) const {
    Children children(element);
    String host;
    CIMNamespaceName nameSpace;
    _namespacePath(children.take("NAMESPACEPATH"), host, nameSpace);
    CIMObjectPath path =
        isClass ? CIMObjectPath(String(), CIMNamespaceName(), className(children.take("CLASSNAME")))
                : instanceName(children.take("INSTANCENAME"));
    children.finish();
    locatedAt(element, [&] {
        path.setHost(host);
        path.setNameSpace(nameSpace);
    });
    return path;
}

CIMObjectPath Reader::_localPath(const Element& element, bool isClass) const {
    Children children(element);
    const CIMNamespaceName nameSpace = localNamespacePath(children.take("LOCALNAMESPACEPATH"));
    CIMObjectPath path =
        isClass ? CIMObjectPath(String(), CIMNamespaceName(), className(children.take("CLASSNAME")))
                : instanceName(children.take("INSTANCENAME"));
    children.finish();
    path.setNameSpace(nameSpace);
    return path;
}

CIMObjectPath Reader::anyPath(const Element& element) const {
    const std::string_view tag = nameOf(element);
    if (tag == "INSTANCEPATH" || tag == "CLASSPATH") {
        return _hostedPath(element, tag == "CLASSPATH");
    }
    if (tag == "LOCALINSTANCEPATH" || tag == "LOCALCLASSPATH") {
        return _localPath(element, tag == "LOCALCLASSPATH");
    }
    if (tag == "INSTANCENAME") {
        return instanceName(element);
    }
    if (tag == "CLASSNAME") {
        return CIMObjectPath(String(), CIMNamespaceName(), className(element));
    }
    failAt(element, "expected an object path element");
}

CIMObjectPath Reader::objectPath(const Element& element) const {
    expectElement(element, "OBJECTPATH");
    Children children(element);
    const Element& path = children.takeAny("INSTANCEPATH or CLASSPATH");
    children.finish();
    if (nameOf(path) != "INSTANCEPATH" && nameOf(path) != "CLASSPATH") {
        failAt(path, "expected INSTANCEPATH or CLASSPATH");
    }
    return anyPath(path);
}

CIMObjectPath Reader::valueReference(const Element& element) const {
    expectElement(element, "VALUE.REFERENCE");
    Children children(element);
    const CIMObjectPath path = anyPath(children.takeAny("an object path"));
    children.finish();
    return path;
}

CIMValue Reader::_embedded(const Element& element, const std::string& embeddedText,
                           CIMType type) const {
    if (_embedding >= kMaxEmbedding) {
        failAt(element,
               "embedded objects are nested more than " + std::to_string(kMaxEmbedding) + " deep");
    }
    const Reader inner(_embedding + 1);
    try {
        const Document document(embeddedText);
        return type == CIMTYPE_INSTANCE ? CIMValue(inner.instance(document.root()))
                                        : CIMValue(inner.object(document.root()));
    } catch (const CIMException& e) {
        failAt(element, "embedded object: " + detail::messageOf(e));
    }
}

CIMValue Reader::_scalar(const Element& element, CIMType type) const {
    expectElement(element, "VALUE");
    const std::string raw = textOf(element);
    // An embedded object's own names and values are bounded when it is read.
    if (isEmbedded(type)) {
        return _embedded(element, raw, type);
    }
    checkLength(element, "value", raw, kMaxValueBytes);
    return locatedAt(element, [&] { return parseScalar(raw, type); });
}

template <class Item>
CIMValue Reader::_arrayOf(const Element& element, CIMType type) const {
    Array<Item> items;
    Children children(element);
    while (!children.atEnd()) {
        if (children.at("VALUE.NULL")) {
            failAt(*children.current(), "null array elements cannot be represented");
        }
        Item item;
        _scalar(children.take("VALUE"), type).get(item);
        items.append(item);
    }
    return CIMValue(items);
}

CIMValue Reader::_array(const Element& element, CIMType type) const {
    expectElement(element, "VALUE.ARRAY");
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return _arrayOf<Boolean>(element, type);
    case CIMTYPE_UINT8:
        return _arrayOf<Uint8>(element, type);
    case CIMTYPE_SINT8:
        return _arrayOf<Sint8>(element, type);
    case CIMTYPE_UINT16:
        return _arrayOf<Uint16>(element, type);
    case CIMTYPE_SINT16:
        return _arrayOf<Sint16>(element, type);
    case CIMTYPE_UINT32:
        return _arrayOf<Uint32>(element, type);
    case CIMTYPE_SINT32:
        return _arrayOf<Sint32>(element, type);
    case CIMTYPE_UINT64:
        return _arrayOf<Uint64>(element, type);
    case CIMTYPE_SINT64:
        return _arrayOf<Sint64>(element, type);
    case CIMTYPE_REAL32:
        return _arrayOf<Real32>(element, type);
    case CIMTYPE_REAL64:
        return _arrayOf<Real64>(element, type);
    case CIMTYPE_CHAR16:
        return _arrayOf<Char16>(element, type);
    case CIMTYPE_STRING:
        return _arrayOf<String>(element, type);
    case CIMTYPE_DATETIME:
        return _arrayOf<CIMDateTime>(element, type);
    case CIMTYPE_REFERENCE:
        return _arrayOf<CIMObjectPath>(element, type);
    case CIMTYPE_OBJECT:
        return _arrayOf<CIMObject>(element, type);
    case CIMTYPE_INSTANCE:
        return _arrayOf<CIMInstance>(element, type);
    }
    failAt(element, "unknown type");
}

CIMValue Reader::_refArray(const Element& element) const {
    Array<CIMObjectPath> paths;
    Children children(element);
    while (!children.atEnd()) {
        if (children.at("VALUE.NULL")) {
            failAt(*children.current(), "null array elements cannot be represented");
        }
        paths.append(valueReference(children.take("VALUE.REFERENCE")));
    }
    return CIMValue(paths);
}

CIMValue Reader::value(const Element& element, CIMType type) const {
    const std::string_view tag = nameOf(element);
    if (tag == "VALUE") {
        return _scalar(element, type);
    }
    if (tag == "VALUE.ARRAY") {
        return _array(element, type);
    }
    if (tag == "VALUE.REFERENCE") {
        return CIMValue(valueReference(element));
    }
    if (tag == "VALUE.REFARRAY") {
        return _refArray(element);
    }
    failAt(element, "expected VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY");
}

Array<CIMQualifier> Reader::_qualifiers(Children& children) const {
    Array<CIMQualifier> qualifiers;
    while (const Element* element = children.takeIf("QUALIFIER")) {
        checkMemberCount(*element, qualifiers.size());
        qualifiers.append(qualifier(*element));
    }
    return qualifiers;
}

CIMQualifier Reader::qualifier(const Element& element) const {
    expectElement(element, "QUALIFIER");
    const CIMName qualifierName = name(element, "NAME");
    const CIMType type = requiredType(element, "TYPE");
    Children children(element);
    CIMValue qualifierValue(type, false);
    if (const Element* scalar = children.takeIf("VALUE")) {
        qualifierValue = _scalar(*scalar, type);
    } else if (const Element* array = children.takeIf("VALUE.ARRAY")) {
        qualifierValue = _array(*array, type);
    }
    children.finish();
    const CIMFlavor flavor = flavorOf(element);
    const bool propagated = booleanAttribute(element, "PROPAGATED", false);
    return locatedAt(
        element, [&] { return CIMQualifier(qualifierName, qualifierValue, flavor, propagated); });
}

CIMProperty Reader::property(const Element& element) const {
    const std::string_view tag = nameOf(element);
    const bool isReference = tag == "PROPERTY.REFERENCE";
    const bool isArray = tag == "PROPERTY.ARRAY";
    if (!isReference && !isArray && tag != "PROPERTY") {
        failAt(element, "expected PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE");
    }
    const CIMName propertyName = name(element, "NAME");
    const CIMName classOrigin = optionalName(element, "CLASSORIGIN");
    const bool propagated = booleanAttribute(element, "PROPAGATED", false);
    const CIMName referenceClass =
        isReference ? optionalName(element, "REFERENCECLASS") : CIMName();
    const CIMType type = isReference ? CIMTYPE_REFERENCE : requiredType(element, "TYPE");
    const Uint32 arraySize = isArray ? arraySizeOf(element) : 0;

    Children children(element);
    const Array<CIMQualifier> qualifiers = _qualifiers(children);
    CIMValue propertyValue(type, isArray, arraySize);
    const char* valueTag = isReference ? "VALUE.REFERENCE" : isArray ? "VALUE.ARRAY" : "VALUE";
    if (const Element* valueElement = children.takeIf(valueTag)) {
        propertyValue = value(*valueElement, type);
    }
    children.finish();
    return locatedAt(element, [&] {
        CIMProperty property(propertyName, propertyValue, arraySize, referenceClass, classOrigin,
                             propagated);
        addQualifiers(property, qualifiers);
        return property;
    });
}

CIMParameter Reader::_parameter(const Element& element) const {
    const std::string_view tag = nameOf(element);
    const bool isReference = tag == "PARAMETER.REFERENCE" || tag == "PARAMETER.REFARRAY";
    const bool isArray = tag == "PARAMETER.ARRAY" || tag == "PARAMETER.REFARRAY";
    if (!isReference && !isArray && tag != "PARAMETER") {
        failAt(element, "expected PARAMETER, PARAMETER.ARRAY, PARAMETER.REFERENCE or "
                        "PARAMETER.REFARRAY");
    }
    const CIMName parameterName = name(element, "NAME");
    const CIMType type = isReference ? CIMTYPE_REFERENCE : requiredType(element, "TYPE");
    const CIMName referenceClass =
        isReference ? optionalName(element, "REFERENCECLASS") : CIMName();
    const Uint32 arraySize = isArray ? arraySizeOf(element) : 0;
    Children children(element);
    const Array<CIMQualifier> qualifiers = _qualifiers(children);
    children.finish();
    return locatedAt(element, [&] {
        CIMParameter parameter(parameterName, type, isArray, arraySize, referenceClass);
        addQualifiers(parameter, qualifiers);
        return parameter;
    });
}

CIMMethod Reader::method(const Element& element) const {
    expectElement(element, "METHOD");
    const CIMName methodName = name(element, "NAME");
    const CIMType type = requiredType(element, "TYPE");
    const CIMName classOrigin = optionalName(element, "CLASSORIGIN");
    const bool propagated = booleanAttribute(element, "PROPAGATED", false);
    Children children(element);
    const Array<CIMQualifier> qualifiers = _qualifiers(children);
    CIMMethod result = locatedAt(element, [&] {
        CIMMethod method(methodName, type, classOrigin, propagated);
        addQualifiers(method, qualifiers);
        return method;
    });
    while (!children.atEnd()) {
        const Element& parameterElement = children.takeAny("PARAMETER");
        checkMemberCount(parameterElement, result.getParameterCount());
        const CIMParameter parameter = _parameter(parameterElement);
        locatedAt(parameterElement, [&] { result.addParameter(parameter); });
    }
    return result;
}

CIMInstance Reader::instance(const Element& element) const {
    expectElement(element, "INSTANCE");
    const CIMName cimClassName = name(element, "CLASSNAME");
    Children children(element);
    const Array<CIMQualifier> qualifiers = _qualifiers(children);
    CIMInstance result(cimClassName);
    locatedAt(element, [&] { addQualifiers(result, qualifiers); });
    while (!children.atEnd()) {
        const Element& propertyElement = children.takeAny("PROPERTY");
        checkMemberCount(propertyElement, result.getPropertyCount());
        const CIMProperty cimProperty = property(propertyElement);
        locatedAt(propertyElement, [&] { result.addProperty(cimProperty); });
    }
    return result;
}

CIMClass Reader::cimClass(const Element& element) const {
    expectElement(element, "CLASS");
    const CIMName cimClassName = name(element, "NAME");
    const CIMName superClassName = optionalName(element, "SUPERCLASS");
    Children children(element);
    const Array<CIMQualifier> qualifiers = _qualifiers(children);
    CIMClass result(cimClassName, superClassName);
    locatedAt(element, [&] { addQualifiers(result, qualifiers); });
    while (children.current() && !children.at("METHOD")) {
        const Element& propertyElement = children.takeAny("PROPERTY");
        checkMemberCount(propertyElement, result.getPropertyCount());
        const CIMProperty cimProperty = property(propertyElement);
        locatedAt(propertyElement, [&] { result.addProperty(cimProperty); });
    }
    while (const Element* methodElement = children.takeIf("METHOD")) {
        checkMemberCount(*methodElement, result.getMethodCount());
        const CIMMethod cimMethod = method(*methodElement);
        locatedAt(*methodElement, [&] { result.addMethod(cimMethod); });
    }
    children.finish();
    return result;
}

CIMObject Reader::object(const Element& element) const {
    if (nameOf(element) == "CLASS") {
        return CIMObject(cimClass(element));
    }
    if (nameOf(element) == "INSTANCE") {
        return CIMObject(instance(element));
    }
    failAt(element, "expected CLASS or INSTANCE");
}

CIMInstance Reader::namedInstance(const Element& element) const {
    expectElement(element, "VALUE.NAMEDINSTANCE");
    Children children(element);
    const CIMObjectPath path = instanceName(children.take("INSTANCENAME"));
    CIMInstance result = instance(children.take("INSTANCE"));
    children.finish();
    locatedAt(element, [&] { result.setPath(path); });
    return result;
}

CIMInstance Reader::instanceWithPath(const Element& element) const {
    expectElement(element, "VALUE.INSTANCEWITHPATH");
    Children children(element);
    const CIMObjectPath path = _hostedPath(children.take("INSTANCEPATH"), false);
    CIMInstance result = instance(children.take("INSTANCE"));
    children.finish();
    locatedAt(element, [&] { result.setPath(path); });
    return result;
}

CIMObject Reader::objectWithPath(const Element& element) const {
    struct Form {
        const char* wrapper;
        const char* path;
        const char* object;
    };
    static const Form forms[] = {
        {"VALUE.OBJECTWITHPATH", "INSTANCEPATH", "INSTANCE"},
        {"VALUE.OBJECTWITHPATH", "CLASSPATH", "CLASS"},
        {"VALUE.OBJECTWITHLOCALPATH", "LOCALINSTANCEPATH", "INSTANCE"},
        {"VALUE.OBJECTWITHLOCALPATH", "LOCALCLASSPATH", "CLASS"},
        {"VALUE.NAMEDOBJECT", "INSTANCENAME", "INSTANCE"},
    };
    Children children(element);
    if (nameOf(element) == "VALUE.NAMEDOBJECT" && children.at("CLASS")) {
        const CIMObject result(cimClass(children.take("CLASS")));
        children.finish();
        return result;
    }
    const Element& pathElement = children.takeAny("an object path");
    for (const Form& form : forms) {
        if (nameOf(element) != form.wrapper || nameOf(pathElement) != form.path) {
            continue;
        }
        const CIMObjectPath path = anyPath(pathElement);
        CIMObject result = object(children.take(form.object));
        children.finish();
        locatedAt(element, [&] { result.setPath(path); });
        return result;
    }
    failAt(pathElement, "does not belong in " + std::string(nameOf(element)));
}

CIMValue Reader::typedValue(const Element& parent, Children& children, std::optional<CIMType> type,
                            bool& typed) const {
    typed = type.has_value();
    if (children.atEnd()) {
        return CIMValue(type.value_or(CIMTYPE_STRING), false);
    }
    const Element& content = children.takeAny("a value");
    const std::string_view tag = nameOf(content);
    if (tag == "VALUE" || tag == "VALUE.ARRAY") {
        if (!type) {
            type = typeAttribute(content, "TYPE");
            typed = type.has_value();
        }
        return value(content, type.value_or(CIMTYPE_STRING));
    }
    // Elements other than VALUE and VALUE.ARRAY carry their type; a declared one must agree.
    const auto require = [&](auto fits) {
        if (type && !fits(*type)) {
            failAt(content, std::string("does not hold a ") + cimTypeToString(*type));
        }
        typed = true;
    };
    const auto isReference = [](CIMType t) { return t == CIMTYPE_REFERENCE; };
    if (tag == "VALUE.REFERENCE" || tag == "VALUE.REFARRAY") {
        require(isReference);
        return value(content, CIMTYPE_REFERENCE);
    }
    if (tag == "CLASSNAME" || tag == "INSTANCENAME") {
        require(isReference);
        return CIMValue(anyPath(content));
    }
    if (tag == "INSTANCE" || tag == "VALUE.NAMEDINSTANCE") {
        require(isEmbedded);
        const CIMInstance embedded = tag == "INSTANCE" ? instance(content) : namedInstance(content);
        return type == CIMTYPE_OBJECT ? CIMValue(CIMObject(embedded)) : CIMValue(embedded);
    }
    if (tag == "CLASS") {
        require([](CIMType t) { return t == CIMTYPE_OBJECT; });
        return CIMValue(CIMObject(cimClass(content)));
    }
    failAt(content, "is no value of " + std::string(nameOf(parent)));
}

CIMParamValue Reader::paramValue(const Element& element) const {
    expectElement(element, "PARAMVALUE");
    const CIMName parameterName = name(element, "NAME");
    Children children(element);
    bool typed = false;
    const CIMValue parameterValue =
        typedValue(element, children, typeAttribute(element, "PARAMTYPE"), typed);
    children.finish();
    return CIMParamValue(parameterName.getString(), parameterValue, typed);
}

CIMValue Reader::returnValue(const Element& element) const {
    expectElement(element, "RETURNVALUE");
    Children children(element);
    bool typed = false;
    const CIMValue result =
        typedValue(element, children, typeAttribute(element, "PARAMTYPE"), typed);
    children.finish();
    return result;
}

} // namespace detail

namespace {

// Runs a reader on the single element of a text; errors are CIMExceptions naming the element.
template <class Read>
auto readDocument(std::string_view xml, Read read) {
    const detail::Document document(xml);
    return read(detail::Reader(), document.root());
}

} // namespace

CIMInstance decodeInstance(std::string_view xml) {
    return readDocument(xml, [](const detail::Reader& reader, const detail::Element& root) {
        return reader.instance(root);
    });
}

CIMClass decodeClass(std::string_view xml) {
    return readDocument(xml, [](const detail::Reader& reader, const detail::Element& root) {
        return reader.cimClass(root);
    });
}

CIMObject decodeObject(std::string_view xml) {
    return readDocument(xml, [](const detail::Reader& reader, const detail::Element& root) {
        return reader.object(root);
    });
}

CIMObjectPath decodeObjectPath(std::string_view xml) {
    return readDocument(xml, [](const detail::Reader& reader, const detail::Element& root) {
        return detail::nameOf(root) == "VALUE.REFERENCE" ? reader.valueReference(root)
                                                         : reader.anyPath(root);
    });
}

CIMValue decodeValue(std::string_view xml, CIMType type) {
    return readDocument(xml, [type](const detail::Reader& reader, const detail::Element& root) {
        return reader.value(root, type);
    });
}

} // namespace ksv::cimxml
