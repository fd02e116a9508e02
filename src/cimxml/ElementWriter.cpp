#include <cimxml/Elements.h>
#include <cimxml/Values.h>
#include <cimxml/detail/Fail.h>
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
    _out += ' ';
    _out += name;
    _out += "=\"";
    appendEscapedUnits(_out, value.getChar16Data(), value.size());
    _out += '"';
}

void Writer::attribute(std::string_view name, std::string_view utf8) {
    _out += ' ';
    _out += name;
    _out += "=\"";
    appendEscaped(_out, utf8);
    _out += '"';
}

void Writer::className(const CIMName& className) {
    _out += "<CLASSNAME";
    attribute("NAME", className.getString());
    _out += "/>";
}

void Writer::_keyBinding(const CIMKeyBinding& binding) {
    _out += "<KEYBINDING";
    attribute("NAME", binding.getName().getString());
    _out += '>';
    if (binding.getType() == CIMKeyBinding::REFERENCE) {
        _referenceKeyValue(binding);
    } else {
        _out += "<KEYVALUE VALUETYPE=\"";
        _out += keyValueType(binding.getType());
        _out += "\">";
        _text(binding.getValue());
        _out += "</KEYVALUE>";
    }
    _out += "</KEYBINDING>";
}

void Writer::_referenceKeyValue(const CIMKeyBinding& binding) {
    if (_references == nullptr) {
        _valueReference(referencedPath(binding));
        return;
    }
    if (const std::string* element = _references->byText.find(binding.getValue())) {
        _out += *element;
        return;
    }
    const std::size_t start = _out.size();
    _valueReference(referencedPath(binding));
    _references->byText.remember(binding.getValue(), std::string_view(_out).substr(start));
}

void Writer::instanceName(const CIMObjectPath& path) {
    _out += "<INSTANCENAME";
    attribute("CLASSNAME", path.getClassName().getString());
    _out += '>';
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        _keyBinding(keys[i]);
    }
    _out += "</INSTANCENAME>";
}

void Writer::localNamespacePath(const CIMNamespaceName& nameSpace) {
    _out += "<LOCALNAMESPACEPATH>";
    // Each segment is escaped where it lies in the name: no copy of it per path written.
    const String& name = nameSpace.getString();
    const Char16* units = name.getChar16Data();
    Uint32 start = 0;
    while (start < name.size()) {
        Uint32 end = start;
        while (end < name.size() && units[end] != '/') {
            end++;
        }
        _out += "<NAMESPACE NAME=\"";
        appendEscapedUnits(_out, units + start, end - start);
        _out += "\"/>";
        start = end + 1;
    }
    _out += "</LOCALNAMESPACEPATH>";
}

void Writer::_namespacePath(const String& host, const CIMNamespaceName& nameSpace) {
    _out += "<NAMESPACEPATH><HOST>";
    _text(host);
    _out += "</HOST>";
    localNamespacePath(nameSpace);
    _out += "</NAMESPACEPATH>";
}

void Writer::instancePath(const CIMObjectPath& path) {
    _out += "<INSTANCEPATH>";
    _namespacePath(path.getHost(), path.getNameSpace());
    instanceName(path);
    _out += "</INSTANCEPATH>";
}

void Writer::classPath(const CIMObjectPath& path) {
    _out += "<CLASSPATH>";
    _namespacePath(path.getHost(), path.getNameSpace());
    className(path.getClassName());
    _out += "</CLASSPATH>";
}

void Writer::localInstancePath(const CIMObjectPath& path) {
    _out += "<LOCALINSTANCEPATH>";
    localNamespacePath(path.getNameSpace());
    instanceName(path);
    _out += "</LOCALINSTANCEPATH>";
}

void Writer::localClassPath(const CIMObjectPath& path) {
    _out += "<LOCALCLASSPATH>";
    localNamespacePath(path.getNameSpace());
    className(path.getClassName());
    _out += "</LOCALCLASSPATH>";
}

void Writer::objectPath(const CIMObjectPath& path) {
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
    if (_references == nullptr) {
        _valueReference(path);
        return;
    }
    if (const std::string* element = _references->byPath.find(path)) {
        _out += *element;
        return;
    }
    const std::size_t start = _out.size();
    _valueReference(path);
    _references->byPath.remember(path, std::string_view(_out).substr(start));
}

void Writer::_valueReference(const CIMObjectPath& path) {
    _out += "<VALUE.REFERENCE>";
    objectPath(path);
    _out += "</VALUE.REFERENCE>";
}

void Writer::_text(Boolean x) {
    _out += x ? "TRUE" : "FALSE";
}

void Writer::_text(Uint8 x) {
    appendInteger(_out, unsigned(x));
}

void Writer::_text(Sint8 x) {
    appendInteger(_out, int(x));
}

void Writer::_text(Uint16 x) {
    appendInteger(_out, x);
}

void Writer::_text(Sint16 x) {
    appendInteger(_out, x);
}

void Writer::_text(Uint32 x) {
    appendInteger(_out, x);
}

void Writer::_text(Sint32 x) {
    appendInteger(_out, x);
}

void Writer::_text(Uint64 x) {
    appendInteger(_out, x);
}

void Writer::_text(Sint64 x) {
    appendInteger(_out, x);
}

void Writer::_text(Real32 x) {
    appendReal(_out, x);
}

void Writer::_text(Real64 x) {
    appendReal(_out, x);
}

void Writer::_text(const Char16& x) {
    appendEscapedUnits(_out, &x, 1);
}

void Writer::_text(const String& x) {
    appendEscapedUnits(_out, x.getChar16Data(), x.size());
}

void Writer::_text(const CIMDateTime& x) {
    _text(x.toString());
}

void Writer::_text(const CIMObject& x) {
    std::string embedded;
    Writer(embedded).object(x);
    appendEscaped(_out, embedded);
}

void Writer::_text(const CIMInstance& x) {
    _text(CIMObject(x));
}

void Writer::_scalarValue(const CIMValue& value) {
    _out += "<VALUE>";
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
    _out += "</VALUE>";
}

template <class Item>
void Writer::_arrayItems(const CIMValue& value) {
    const Array<Item> items = valueAs<Array<Item>>(value);
    for (Uint32 i = 0; i < items.size(); i++) {
        _out += "<VALUE>";
        _text(items[i]);
        _out += "</VALUE>";
    }
}

void Writer::_arrayValue(const CIMValue& value) {
    _out += "<VALUE.ARRAY>";
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
    _out += "</VALUE.ARRAY>";
}

void Writer::value(const CIMValue& value) {
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
    _out += "<VALUE.REFARRAY>";
    const Array<CIMObjectPath> paths = valueAs<Array<CIMObjectPath>>(value);
    for (Uint32 i = 0; i < paths.size(); i++) {
        valueReference(paths[i]);
    }
    _out += "</VALUE.REFARRAY>";
}

void Writer::_typeAttributes(CIMType type) {
    _out += " TYPE=\"";
    _out += wireTypeName(type);
    _out += '"';
    if (isEmbedded(type)) {
        _out += " EmbeddedObject=\"";
        _out += embeddedKind(type);
        _out += '"';
    }
}

void Writer::_originAttributes(const CIMName& classOrigin, Boolean propagated) {
    if (!classOrigin.isNull()) {
        attribute("CLASSORIGIN", classOrigin.getString());
    }
    if (propagated) {
        _out += " PROPAGATED=\"true\"";
    }
}

void Writer::_flavorAttributes(const CIMFlavor& flavor) {
    if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE)) {
        _out += " OVERRIDABLE=\"false\"";
    }
    if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS)) {
        _out += " TOSUBCLASS=\"false\"";
    }
    if (flavor.hasFlavor(CIMFlavor::TOINSTANCE)) {
        _out += " TOINSTANCE=\"true\"";
    }
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE)) {
        _out += " TRANSLATABLE=\"true\"";
    }
}

void Writer::qualifier(const CIMConstQualifier& qualifier) {
    _out += "<QUALIFIER";
    attribute("NAME", qualifier.getName().getString());
    _typeAttributes(qualifier.getType());
    if (qualifier.getPropagated()) {
        _out += " PROPAGATED=\"true\"";
    }
    _flavorAttributes(qualifier.getFlavor());
    _out += '>';
    value(qualifier.getValue());
    _out += "</QUALIFIER>";
}

template <class Element>
void Writer::_qualifiers(const Element& element) {
    for (Uint32 i = 0; i < element.getQualifierCount(); i++) {
        qualifier(element.getQualifier(i));
    }
}

void Writer::property(const CIMConstProperty& property, const InstanceParts& parts) {
    _property(property, parts);
}

template <class Property>
void Writer::_property(const Property& property, const InstanceParts& parts) {
    const std::string_view tag = property.getType() == CIMTYPE_REFERENCE ? "PROPERTY.REFERENCE"
                                 : property.isArray()                    ? "PROPERTY.ARRAY"
                                                                         : "PROPERTY";
    _out += '<';
    _out += tag;
    attribute("NAME", property.getName().getString());
    if (property.getType() == CIMTYPE_REFERENCE) {
        if (!property.getReferenceClassName().isNull()) {
            attribute("REFERENCECLASS", property.getReferenceClassName().getString());
        }
    } else {
        _typeAttributes(property.getType());
        if (property.isArray() && property.getArraySize() != 0) {
            _out += " ARRAYSIZE=\"";
            appendInteger(_out, property.getArraySize());
            _out += '"';
        }
    }
    static const CIMName noOrigin;
    _originAttributes(parts.classOrigins ? property.getClassOrigin() : noOrigin,
                      property.getPropagated());
    _out += '>';
    if (parts.qualifiers)
        _qualifiers(property);
    value(property.getValue());
    _out += "</";
    _out += tag;
    _out += '>';
}

void Writer::_parameter(const CIMConstParameter& parameter) {
    const bool isReference = parameter.getType() == CIMTYPE_REFERENCE;
    const std::string_view tag =
        isReference ? (parameter.isArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                    : (parameter.isArray() ? "PARAMETER.ARRAY" : "PARAMETER");
    _out += '<';
    _out += tag;
    attribute("NAME", parameter.getName().getString());
    if (isReference) {
        if (!parameter.getReferenceClassName().isNull()) {
            attribute("REFERENCECLASS", parameter.getReferenceClassName().getString());
        }
    } else {
        _typeAttributes(parameter.getType());
    }
    if (parameter.isArray() && parameter.getArraySize() != 0) {
        _out += " ARRAYSIZE=\"";
        appendInteger(_out, parameter.getArraySize());
        _out += '"';
    }
    _out += '>';
    _qualifiers(parameter);
    _out += "</";
    _out += tag;
    _out += '>';
}

void Writer::method(const CIMConstMethod& method) {
    _out += "<METHOD";
    attribute("NAME", method.getName().getString());
    _typeAttributes(method.getType());
    _originAttributes(method.getClassOrigin(), method.getPropagated());
    _out += '>';
    _qualifiers(method);
    for (Uint32 i = 0; i < method.getParameterCount(); i++) {
        _parameter(method.getParameter(i));
    }
    _out += "</METHOD>";
}

void Writer::instance(const CIMConstInstance& instance, const InstanceParts& parts) {
    _out += "<INSTANCE";
    attribute("CLASSNAME", instance.getClassName().getString());
    _out += '>';
    if (parts.qualifiers)
        _qualifiers(instance);
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        const CIMProperty& item = CIMPropertyReader::at(instance, i);
        if (parts.properties == nullptr || parts.properties->useThisProperty(item.getName()))
            _property(item, parts);
    }
    _out += "</INSTANCE>";
}

void Writer::cimClass(const CIMConstClass& cimClass) {
    _out += "<CLASS";
    attribute("NAME", cimClass.getClassName().getString());
    if (!cimClass.getSuperClassName().isNull()) {
        attribute("SUPERCLASS", cimClass.getSuperClassName().getString());
    }
    _out += '>';
    _qualifiers(cimClass);
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); i++) {
        property(cimClass.getProperty(i));
    }
    for (Uint32 i = 0; i < cimClass.getMethodCount(); i++) {
        method(cimClass.getMethod(i));
    }
    _out += "</CLASS>";
}

void Writer::object(const CIMConstObject& object) {
    if (object.isClass()) {
        cimClass(CIMConstClass(object));
    } else {
        instance(CIMConstInstance(object));
    }
}

void Writer::paramValue(const CIMParamValue& parameter) {
    const CIMValue parameterValue = parameter.getValue();
    _out += "<PARAMVALUE";
    attribute("NAME", parameter.getParameterName());
    if (parameter.isTyped()) {
        _out += " PARAMTYPE=\"";
        _out += wireTypeName(parameterValue.getType());
        _out += '"';
    }
    if (isEmbedded(parameterValue.getType())) {
        _out += " EmbeddedObject=\"";
        _out += embeddedKind(parameterValue.getType());
        _out += '"';
    }
    _out += '>';
    value(parameterValue);
    _out += "</PARAMVALUE>";
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
