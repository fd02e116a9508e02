#include <cimxml/Elements.h>
#include <cimxml/Values.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/PropertyTags.h>
#include <cimxml/detail/ReferenceElements.h>
#include <cimxml/detail/Writer.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMPropertyReader.h>
#include <Pegasus/Common/Exception.h>

namespace ksv::cimxml {

using namespace Pegasus;

namespace detail {

namespace {

template <class T>
T valueAs(const CIMValue& value) {
    T x;
    value.get(x);
    return x;
}

const char* embeddedKind(CIMType type) {
    return type == CIMTYPE_INSTANCE ? "instance" : "object";
}

const char* keyValueType(CIMKeyBinding::Type type) {
    switch (type) {
    case CIMKeyBinding::BOOLEAN:
        return "boolean";
    case CIMKeyBinding::NUMERIC:
        return "numeric";
    default:
        return "string";
    }
}

CIMObjectPath referencedPath(const CIMKeyBinding& binding) {
    try {
        return CIMObjectPath(binding.getValue());
    } catch (const Exception&) {
        throwCim(CIM_ERR_FAILED,
                 "reference key " + utf8Of(binding.getName().getString()) +
                     " holds no object path: " + quoted(utf8Of(binding.getValue())));
    }
}

} // namespace

void Writer::attribute(std::string_view name, const String& value) {
    const Output::Session session(_output);
    _output.put(' ');
    _output.put(name);
    _output.put("=\"");
    _output.escaped(value.getChar16Data(), value.size());
    _output.put('"');
}

template <std::size_t N>
void Writer::_attribute(const char (&opening)[N], const String& value) {
    _output.put(opening);
    _output.escaped(value.getChar16Data(), value.size());
    _output.put('"');
}

void Writer::attribute(std::string_view name, std::string_view utf8) {
    const Output::Session session(_output);
    _output.put(' ');
    _output.put(name);
    _output.put("=\"");
    _output.escaped(utf8);
    _output.put('"');
}

void Writer::className(const CIMName& className) {
    const Output::Session session(_output);
    _output.put("<CLASSNAME");
    _attribute(" NAME=\"", className.getString());
    _output.put("/>");
}

void Writer::_keyBinding(const CIMKeyBinding& binding) {
    _output.put("<KEYBINDING");
    _attribute(" NAME=\"", binding.getName().getString());
    _output.put('>');
    if (binding.getType() == CIMKeyBinding::REFERENCE) {
        _referenceKeyValue(binding);
    } else {
        _output.put("<KEYVALUE VALUETYPE=\"");
        _output.put(keyValueType(binding.getType()));
        _output.put("\">");
        _text(binding.getValue());
        _output.put("</KEYVALUE>");
    }
    _output.put("</KEYBINDING>");
}

template <class Write, class Remember>
void Writer::_copiedOrWritten(const std::string* found, Write write, Remember remember) {
    if (found != nullptr) {
        _output.put(*found);
        return;
    }
    const std::size_t start = _output.length();
    write();
    remember(_output.since(start));
}

void Writer::_keyBindingAt(Uint32 position, const CIMKeyBinding& binding) {
    if (_references == nullptr) {
        _keyBinding(binding);
        return;
    }
    KeyBindingElements& written = _references->keyBindings;
    _copiedOrWritten(
        written.find(position, binding), [&] { _keyBinding(binding); },
        [&](std::string_view element) { written.remember(position, binding, element); });
}

void Writer::_referenceKeyValue(const CIMKeyBinding& binding) {
    if (_references == nullptr) {
        _valueReference(referencedPath(binding));
        return;
    }
    auto& written = _references->byText;
    _copiedOrWritten(
        written.find(binding.getValue()), [&] { _valueReference(referencedPath(binding)); },
        [&](std::string_view element) { written.remember(binding.getValue(), element); });
}

void Writer::instanceName(const CIMObjectPath& path) {
    const Output::Session session(_output);
    _output.put("<INSTANCENAME");
    _attribute(" CLASSNAME=\"", path.getClassName().getString());
    _output.put('>');
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        _keyBindingAt(i, keys[i]);
    }
    _output.put("</INSTANCENAME>");
}

void Writer::localNamespacePath(const CIMNamespaceName& nameSpace) {
    const Output::Session session(_output);
    _output.put("<LOCALNAMESPACEPATH>");
    // Each segment is escaped where it lies in the name: no copy of it per path written.
    const String& name = nameSpace.getString();
    const Char16* units = name.getChar16Data();
    Uint32 start = 0;
    while (start < name.size()) {
        Uint32 end = start;
        while (end < name.size() && units[end] != '/') {
            end++;
        }
        _output.put("<NAMESPACE NAME=\"");
        _output.escaped(units + start, end - start);
        _output.put("\"/>");
        start = end + 1;
    }
    _output.put("</LOCALNAMESPACEPATH>");
}

void Writer::_namespacePath(const String& host, const CIMNamespaceName& nameSpace) {
    _output.put("<NAMESPACEPATH><HOST>");
    _text(host);
    _output.put("</HOST>");
    localNamespacePath(nameSpace);
    _output.put("</NAMESPACEPATH>");
}

void Writer::instancePath(const CIMObjectPath& path) {
    const Output::Session session(_output);
    _output.put("<INSTANCEPATH>");
    _namespacePath(path.getHost(), path.getNameSpace());
    instanceName(path);
    _output.put("</INSTANCEPATH>");
}

void Writer::classPath(const CIMObjectPath& path) {
    const Output::Session session(_output);
    _output.put("<CLASSPATH>");
    _namespacePath(path.getHost(), path.getNameSpace());
    className(path.getClassName());
    _output.put("</CLASSPATH>");
}

void Writer::localInstancePath(const CIMObjectPath& path) {
    const Output::Session session(_output);
    _output.put("<LOCALINSTANCEPATH>");
    localNamespacePath(path.getNameSpace());
    instanceName(path);
    _output.put("</LOCALINSTANCEPATH>");
}

void Writer::localClassPath(const CIMObjectPath& path) {
    const Output::Session session(_output);
    _output.put("<LOCALCLASSPATH>");
    localNamespacePath(path.getNameSpace());
    className(path.getClassName());
    _output.put("</LOCALCLASSPATH>");
}

void Writer::objectPath(const CIMObjectPath& path) {
    const Output::Session session(_output);
    const bool isClass = path.getKeyBindings().size() == 0;
    if (path.getNameSpace().isNull()) {
        isClass ? className(path.getClassName()) : instanceName(path);
    } else if (path.getHost().size() == 0) {
        isClass ? localClassPath(path) : localInstancePath(path);
    } else {
        isClass ? classPath(path) : instancePath(path);
    }
}

void Writer::valueReference(const CIMObjectPath& path) {
    const Output::Session session(_output);
    if (_references == nullptr) {
        _valueReference(path);
        return;
    }
    auto& written = _references->byPath;
    _copiedOrWritten(
        written.find(path), [&] { _valueReference(path); },
        [&](std::string_view element) { written.remember(path, element); });
}

void Writer::_valueReference(const CIMObjectPath& path) {
    _output.put("<VALUE.REFERENCE>");
    objectPath(path);
    _output.put("</VALUE.REFERENCE>");
}

void Writer::_text(Boolean x) {
    _output.put(x ? "TRUE" : "FALSE");
}

void Writer::_text(Uint8 x) {
    _output.integer(unsigned(x));
}

void Writer::_text(Sint8 x) {
    _output.integer(int(x));
}

void Writer::_text(Uint16 x) {
    _output.integer(x);
}

void Writer::_text(Sint16 x) {
    _output.integer(x);
}

void Writer::_text(Uint32 x) {
    _output.integer(x);
}

void Writer::_text(Sint32 x) {
    _output.integer(x);
}

void Writer::_text(Uint64 x) {
    _output.integer(x);
}

void Writer::_text(Sint64 x) {
    _output.integer(x);
}

void Writer::_text(Real32 x) {
    _output.advance(writeReal(_output.room(kRealTextBytes), x));
}

void Writer::_text(Real64 x) {
    _output.advance(writeReal(_output.room(kRealTextBytes), x));
}

void Writer::_text(const Char16& x) {
    _output.escaped(&x, 1);
}

void Writer::_text(const String& x) {
    _output.escaped(x.getChar16Data(), x.size());
}

void Writer::_text(const CIMDateTime& x) {
    _text(x.toString());
}

void Writer::_text(const CIMObject& x) {
    std::string embedded;
    Writer(embedded).object(x);
    _output.escaped(std::string_view(embedded));
}

void Writer::_text(const CIMInstance& x) {
    _text(CIMObject(x));
}

void Writer::_scalarValue(const CIMValue& value) {
    _output.put("<VALUE>");
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        _text(valueAs<Boolean>(value));
        break;
    case CIMTYPE_UINT8:
        _text(valueAs<Uint8>(value));
        break;
    case CIMTYPE_SINT8:
        _text(valueAs<Sint8>(value));
        break;
    case CIMTYPE_UINT16:
        _text(valueAs<Uint16>(value));
        break;
    case CIMTYPE_SINT16:
        _text(valueAs<Sint16>(value));
        break;
    case CIMTYPE_UINT32:
        _text(valueAs<Uint32>(value));
        break;
    case CIMTYPE_SINT32:
        _text(valueAs<Sint32>(value));
        break;
    case CIMTYPE_UINT64:
        _text(valueAs<Uint64>(value));
        break;
    case CIMTYPE_SINT64:
        _text(valueAs<Sint64>(value));
        break;
    case CIMTYPE_REAL32:
        _text(valueAs<Real32>(value));
        break;
    case CIMTYPE_REAL64:
        _text(valueAs<Real64>(value));
        break;
    case CIMTYPE_CHAR16:
        _text(valueAs<Char16>(value));
        break;
    case CIMTYPE_STRING:
        value.get(_scratch);
        _text(_scratch);
        break;
    case CIMTYPE_DATETIME:
        _text(valueAs<CIMDateTime>(value));
        break;
    case CIMTYPE_OBJECT:
        _text(valueAs<CIMObject>(value));
        break;
    case CIMTYPE_INSTANCE:
        _text(valueAs<CIMInstance>(value));
        break;
    case CIMTYPE_REFERENCE:
        break;
    }
    _output.put("</VALUE>");
}

template <class Item>
void Writer::_arrayItems(const CIMValue& value) {
    const Array<Item> items = valueAs<Array<Item>>(value);
    for (Uint32 i = 0; i < items.size(); i++) {
        _output.put("<VALUE>");
        _text(items[i]);
        _output.put("</VALUE>");
    }
}

void Writer::_arrayValue(const CIMValue& value) {
    _output.put("<VALUE.ARRAY>");
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        _arrayItems<Boolean>(value);
        break;
    case CIMTYPE_UINT8:
        _arrayItems<Uint8>(value);
        break;
    case CIMTYPE_SINT8:
        _arrayItems<Sint8>(value);
        break;
    case CIMTYPE_UINT16:
        _arrayItems<Uint16>(value);
        break;
    case CIMTYPE_SINT16:
        _arrayItems<Sint16>(value);
        break;
    case CIMTYPE_UINT32:
        _arrayItems<Uint32>(value);
        break;
    case CIMTYPE_SINT32:
        _arrayItems<Sint32>(value);
        break;
    case CIMTYPE_UINT64:
        _arrayItems<Uint64>(value);
        break;
    case CIMTYPE_SINT64:
        _arrayItems<Sint64>(value);
        break;
    case CIMTYPE_REAL32:
        _arrayItems<Real32>(value);
        break;
    case CIMTYPE_REAL64:
        _arrayItems<Real64>(value);
        break;
    case CIMTYPE_CHAR16:
        _arrayItems<Char16>(value);
        break;
    case CIMTYPE_STRING:
        _arrayItems<String>(value);
        break;
    case CIMTYPE_DATETIME:
        _arrayItems<CIMDateTime>(value);
        break;
    case CIMTYPE_OBJECT:
        _arrayItems<CIMObject>(value);
        break;
    case CIMTYPE_INSTANCE:
        _arrayItems<CIMInstance>(value);
        break;
    case CIMTYPE_REFERENCE:
        break;
    }
    _output.put("</VALUE.ARRAY>");
}

void Writer::value(const CIMValue& value) {
    const Output::Session session(_output);
    _value(value);
}

void Writer::_value(const CIMValue& value) {
    if (value.isNull()) {
        return;
    }
    if (value.getType() != CIMTYPE_REFERENCE) {
        value.isArray() ? _arrayValue(value) : _scalarValue(value);
        return;
    }
    if (!value.isArray()) {
        valueReference(valueAs<CIMObjectPath>(value));
        return;
    }
    _output.put("<VALUE.REFARRAY>");
    const Array<CIMObjectPath> paths = valueAs<Array<CIMObjectPath>>(value);
    for (Uint32 i = 0; i < paths.size(); i++) {
        valueReference(paths[i]);
    }
    _output.put("</VALUE.REFARRAY>");
}

void Writer::_typeAttributes(CIMType type) {
    _output.put(" TYPE=\"");
    _output.put(std::string_view(wireTypeName(type)));
    _output.put('"');
    if (isEmbedded(type)) {
        _output.put(" EmbeddedObject=\"");
        _output.put(embeddedKind(type));
        _output.put('"');
    }
}

void Writer::_originAttributes(const CIMName& classOrigin, Boolean propagated) {
    if (!classOrigin.isNull()) {
        _attribute(" CLASSORIGIN=\"", classOrigin.getString());
    }
    if (propagated) {
        _output.put(" PROPAGATED=\"true\"");
    }
}

void Writer::_flavorAttributes(const CIMFlavor& flavor) {
    if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE)) {
        _output.put(" OVERRIDABLE=\"false\"");
    }
    if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS)) {
        _output.put(" TOSUBCLASS=\"false\"");
    }
    if (flavor.hasFlavor(CIMFlavor::TOINSTANCE)) {
        _output.put(" TOINSTANCE=\"true\"");
    }
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE)) {
        _output.put(" TRANSLATABLE=\"true\"");
    }
}

void Writer::qualifier(const CIMConstQualifier& qualifier) {
    const Output::Session session(_output);
    _output.put("<QUALIFIER");
    _attribute(" NAME=\"", qualifier.getName().getString());
    _typeAttributes(qualifier.getType());
    if (qualifier.getPropagated()) {
        _output.put(" PROPAGATED=\"true\"");
    }
    _flavorAttributes(qualifier.getFlavor());
    _output.put('>');
    _value(qualifier.getValue());
    _output.put("</QUALIFIER>");
}

template <class Element>
void Writer::_qualifiers(const Element& element) {
    for (Uint32 i = 0; i < element.getQualifierCount(); i++) {
        qualifier(element.getQualifier(i));
    }
}

void Writer::property(const CIMConstProperty& property, const InstanceParts& parts) {
    const Output::Session session(_output);
    _property(property, parts);
}

namespace {

struct Tags {
    std::string_view open;
    std::string_view close;
};

Tags propertyTags(CIMType type, bool isArray) {
    if (type == CIMTYPE_REFERENCE)
        return {"<PROPERTY.REFERENCE", "</PROPERTY.REFERENCE>"};
    return isArray ? Tags{"<PROPERTY.ARRAY", "</PROPERTY.ARRAY>"}
                   : Tags{"<PROPERTY", "</PROPERTY>"};
}

} // namespace

template <class Property>
void Writer::_property(const Property& property, const InstanceParts& parts,
                       const SharedDeclaration* declared) {
    const CIMValue& value = property.getValue();
    const CIMType type = value.getType();
    const bool isArray = value.isArray();
    const Tags tags = propertyTags(type, isArray);
    if (declared == nullptr)
        _propertyStart(property, parts, tags.open);
    else
        _declaredStart(property, parts, tags.open, type, isArray, *declared);
    if (parts.qualifiers)
        _qualifiers(property);
    _value(value);
    _output.put(tags.close);
}

// A property an instance sets mostly keeps the declaration of its class's: its start tag is then
// found by that declaration rather than by the declaration's texts.
template <class Property>
void Writer::_declaredStart(const Property& property, const InstanceParts& parts,
                            std::string_view open, CIMType type, bool isArray,
                            const SharedDeclaration& declared) {
    const PropertyTags::DeclaredKey key{declared.declaration, type, isArray, parts.classOrigins};
    // Spelt out rather than through _copiedOrWritten(): once per property, the callbacks took 5%
    // more instructions to encode the disks.
    if (const std::string* tag = _propertyTags->findDeclared(key)) {
        _output.put(*tag);
        return;
    }
    const std::size_t start = _output.length();
    _propertyStart(property, parts, open);
    _propertyTags->rememberDeclared(key, CIMPropertyReader::sharedKeeper(declared.instance),
                                    _output.since(start));
}

template <class Property>
void Writer::_propertyStart(const Property& property, const InstanceParts& parts,
                            std::string_view open) {
    static const CIMName none;
    const CIMName& name = property.getName();
    const CIMType type = property.getType();
    const CIMName& referenceClass =
        type == CIMTYPE_REFERENCE ? property.getReferenceClassName() : none;
    const CIMName& origin = parts.classOrigins ? property.getClassOrigin() : none;
    const bool isArray = property.isArray();
    const Uint32 arraySize = isArray ? property.getArraySize() : 0;
    const PropertyTags::Key key(name, referenceClass, origin, arraySize, type, isArray,
                                property.getPropagated());
    if (_propertyTags != nullptr) {
        if (const std::string* tag = _propertyTags->find(key)) {
            _output.put(*tag);
            return;
        }
    }
    const std::size_t start = _output.length();
    _output.put(open);
    _attribute(" NAME=\"", name.getString());
    if (type == CIMTYPE_REFERENCE) {
        if (!referenceClass.isNull())
            _attribute(" REFERENCECLASS=\"", referenceClass.getString());
    } else {
        _typeAttributes(type);
        if (arraySize != 0) {
            _output.put(" ARRAYSIZE=\"");
            _output.integer(arraySize);
            _output.put('"');
        }
    }
    _originAttributes(origin, key.propagated);
    _output.put('>');
    if (_propertyTags != nullptr)
        _propertyTags->remember(key, name, referenceClass, origin, _output.since(start));
}

void Writer::_parameter(const CIMConstParameter& parameter) {
    const bool isReference = parameter.getType() == CIMTYPE_REFERENCE;
    const std::string_view tag =
        isReference ? (parameter.isArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                    : (parameter.isArray() ? "PARAMETER.ARRAY" : "PARAMETER");
    _output.put('<');
    _output.put(tag);
    _attribute(" NAME=\"", parameter.getName().getString());
    if (isReference) {
        if (!parameter.getReferenceClassName().isNull()) {
            _attribute(" REFERENCECLASS=\"", parameter.getReferenceClassName().getString());
        }
    } else {
        _typeAttributes(parameter.getType());
    }
    if (parameter.isArray() && parameter.getArraySize() != 0) {
        _output.put(" ARRAYSIZE=\"");
        _output.integer(parameter.getArraySize());
        _output.put('"');
    }
    _output.put('>');
    _qualifiers(parameter);
    _output.put("</");
    _output.put(tag);
    _output.put('>');
}

void Writer::method(const CIMConstMethod& method) {
    const Output::Session session(_output);
    _output.put("<METHOD");
    _attribute(" NAME=\"", method.getName().getString());
    _typeAttributes(method.getType());
    _originAttributes(method.getClassOrigin(), method.getPropagated());
    _output.put('>');
    _qualifiers(method);
    for (Uint32 i = 0; i < method.getParameterCount(); i++) {
        _parameter(method.getParameter(i));
    }
    _output.put("</METHOD>");
}

void Writer::instance(const CIMConstInstance& instance, const InstanceParts& parts) {
    const Output::Session session(_output);
    _output.put("<INSTANCE");
    _attribute(" CLASSNAME=\"", instance.getClassName().getString());
    _output.put('>');
    if (parts.qualifiers)
        _qualifiers(instance);
    // Its own, since a value may hold an instance written meanwhile.
    std::vector<CIMPropertyReader::Read> properties;
    CIMPropertyReader::readAll(instance, properties);
    const bool sharedTexts = _propertyTags != nullptr && !parts.qualifiers;
    for (const CIMPropertyReader::Read& read : properties) {
        const CIMProperty& item = *read.property;
        if (parts.properties != nullptr && !parts.properties->useThisProperty(item.getName()))
            continue;
        if (sharedTexts && read.unchanged) {
            if (!_putSharedText(item, parts))
                _sharedProperty(instance, item, parts);
            continue;
        }
        const SharedDeclaration declared{read.sharedDeclaration, instance};
        const bool byDeclaration = _propertyTags != nullptr && read.sharedDeclaration != nullptr;
        _property(item, parts, byDeclaration ? &declared : nullptr);
    }
    _output.put("</INSTANCE>");
}

// Properties that instances leave as their class has them read the same in every instance: they
// are written once a response. Qualifiers may be lent out to be changed, so properties written
// with them are written each time.
bool Writer::_putSharedText(const CIMProperty& shared, const InstanceParts& parts) {
    const std::string* text = _propertyTags->findShared({&shared, parts.classOrigins});
    if (text == nullptr)
        return false;
    _output.put(*text);
    return true;
}

void Writer::_sharedProperty(const CIMConstInstance& instance, const CIMProperty& shared,
                             const InstanceParts& parts) {
    const std::size_t start = _output.length();
    _property(shared, parts);
    if (_output.length() - start <= PropertyTags::kLongestShared)
        _propertyTags->rememberShared({&shared, parts.classOrigins},
                                      CIMPropertyReader::sharedKeeper(instance),
                                      _output.since(start));
}

void Writer::cimClass(const CIMConstClass& cimClass) {
    const Output::Session session(_output);
    _output.put("<CLASS");
    _attribute(" NAME=\"", cimClass.getClassName().getString());
    if (!cimClass.getSuperClassName().isNull()) {
        _attribute(" SUPERCLASS=\"", cimClass.getSuperClassName().getString());
    }
    _output.put('>');
    _qualifiers(cimClass);
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); i++) {
        property(cimClass.getProperty(i));
    }
    for (Uint32 i = 0; i < cimClass.getMethodCount(); i++) {
        method(cimClass.getMethod(i));
    }
    _output.put("</CLASS>");
}

void Writer::object(const CIMConstObject& object) {
    const Output::Session session(_output);
    if (object.isClass()) {
        cimClass(CIMConstClass(object));
    } else {
        instance(CIMConstInstance(object));
    }
}

void Writer::paramValue(const CIMParamValue& parameter) {
    const Output::Session session(_output);
    const CIMValue parameterValue = parameter.getValue();
    _output.put("<PARAMVALUE");
    _attribute(" NAME=\"", parameter.getParameterName());
    if (parameter.isTyped()) {
        _output.put(" PARAMTYPE=\"");
        _output.put(wireTypeName(parameterValue.getType()));
        _output.put('"');
    }
    if (isEmbedded(parameterValue.getType())) {
        _output.put(" EmbeddedObject=\"");
        _output.put(embeddedKind(parameterValue.getType()));
        _output.put('"');
    }
    _output.put('>');
    _value(parameterValue);
    _output.put("</PARAMVALUE>");
}

} // namespace detail

void appendValue(std::string& out, const CIMValue& value) {
    detail::Writer(out).value(value);
}

void appendClassName(std::string& out, const CIMName& className) {
    detail::Writer(out).className(className);
}

void appendInstanceName(std::string& out, const CIMObjectPath& path) {
    detail::Writer(out).instanceName(path);
}

void appendLocalNamespacePath(std::string& out, const CIMNamespaceName& nameSpace) {
    detail::Writer(out).localNamespacePath(nameSpace);
}

void appendObjectPath(std::string& out, const CIMObjectPath& path) {
    detail::Writer(out).objectPath(path);
}

void appendQualifier(std::string& out, const CIMConstQualifier& qualifier) {
    detail::Writer(out).qualifier(qualifier);
}

void appendProperty(std::string& out, const CIMConstProperty& property) {
    detail::Writer(out).property(property);
}

void appendMethod(std::string& out, const CIMConstMethod& method) {
    detail::Writer(out).method(method);
}

void appendInstance(std::string& out, const CIMConstInstance& instance) {
    detail::Writer(out).instance(instance);
}

void appendClass(std::string& out, const CIMConstClass& cimClass) {
    detail::Writer(out).cimClass(cimClass);
}

void appendObject(std::string& out, const CIMConstObject& object) {
    detail::Writer(out).object(object);
}

void appendParamValue(std::string& out, const CIMParamValue& parameter) {
    detail::Writer(out).paramValue(parameter);
}

} // namespace ksv::cimxml
