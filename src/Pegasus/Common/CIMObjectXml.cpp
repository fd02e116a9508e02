// The CIM-XML text of a class or an instance, as CIMObject::toString() gives
// it: the CLASS or INSTANCE element with qualifiers, properties, methods and
// values, one element a line.

#include <cstdio>

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

class XmlText {
public:
    XmlText& operator<<(const char* ascii) {
        while (*ascii != '\0')
            _text.append(Char16(Uint8(*ascii++)));
        return *this;
    }
    XmlText& operator<<(const String& raw) {
        _text.append(raw);
        return *this;
    }
    XmlText& operator<<(const CIMName& name) { return *this << name.getString(); }
    XmlText& operator<<(Uint32 number) {
        char digits[16];
        std::snprintf(digits, sizeof(digits), "%u", number);
        return *this << digits;
    }

    // Character data: markup characters and controls become references, and
    // so do blanks that a reader would otherwise collapse.
    void escaped(const String& data);
    void escaped(Char16 c);

    const String& text() const { return _text; }

private:
    void _escapedAscii(Uint16 c);

    String _text;
};

void XmlText::_escapedAscii(Uint16 c) {
    switch (c) {
    case '&':
        *this << "&amp;";
        return;
    case '<':
        *this << "&lt;";
        return;
    case '>':
        *this << "&gt;";
        return;
    case '"':
        *this << "&quot;";
        return;
    case '\'':
        *this << "&apos;";
        return;
    default:
        break;
    }
    if (c < 0x20 || c == 0x7F)
        *this << "&#" << Uint32(c) << ";";
    else
        _text.append(Char16(c));
}

void XmlText::escaped(Char16 c) {
    if (Uint16(c) < 128)
        _escapedAscii(c);
    else
        _text.append(c);
}

void XmlText::escaped(const String& data) {
    const Uint32 size = data.size();
    bool afterLiteralBlank = false;
    for (Uint32 i = 0; i < size; i++) {
        const Uint16 c = data[i];
        if (c == ' ' && (i == 0 || i + 1 == size || afterLiteralBlank)) {
            *this << "&#32;";
            afterLiteralBlank = false;
        } else {
            escaped(Char16(c));
            afterLiteralBlank = c == ' ';
        }
    }
}

const char* typeAttribute(CIMType type) {
    static const char* const names[] = {
        "boolean", "uint8",    "sint8",     "uint16", "sint16",   "uint32",
        "sint32",  "uint64",   "sint64",    "real32", "real64",   "char16",
        "string",  "datetime", "reference", "object", "instance",
    };
    return names[type];
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

void appendLocalNamespacePath(XmlText& out, const CIMNamespaceName& nameSpace) {
    out << "<LOCALNAMESPACEPATH>\n";
    const String& text = nameSpace.getString();
    Uint32 start = 0;
    for (Uint32 i = 0; i <= text.size(); i++) {
        if (i == text.size() || text[i] == '/') {
            if (i > start)
                out << "<NAMESPACE NAME=\"" << text.subString(start, i - start) << "\"/>\n";
            start = i + 1;
        }
    }
    out << "</LOCALNAMESPACEPATH>\n";
}

void appendValueReference(XmlText& out, const CIMObjectPath& path);

void appendInstanceName(XmlText& out, const CIMObjectPath& path) {
    out << "<INSTANCENAME CLASSNAME=\"" << path.getClassName() << "\">\n";
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        out << "<KEYBINDING NAME=\"" << keys[i].getName() << "\">\n";
        if (keys[i].getType() == CIMKeyBinding::REFERENCE) {
            appendValueReference(out, CIMObjectPath(keys[i].getValue()));
        } else {
            out << "<KEYVALUE VALUETYPE=\"" << keyValueType(keys[i].getType()) << "\">";
            out.escaped(keys[i].getValue());
            out << "</KEYVALUE>\n";
        }
        out << "</KEYBINDING>\n";
    }
    out << "</INSTANCENAME>\n";
}

// The fullest path form the reference allows: with host, with namespace
// only, or just the instance name.
void appendValueReference(XmlText& out, const CIMObjectPath& path) {
    out << "<VALUE.REFERENCE>\n";
    if (path.getHost().size() != 0) {
        out << "<INSTANCEPATH>\n<NAMESPACEPATH>\n<HOST>" << path.getHost() << "</HOST>\n";
        appendLocalNamespacePath(out, path.getNameSpace());
        out << "</NAMESPACEPATH>\n";
        appendInstanceName(out, path);
        out << "</INSTANCEPATH>\n";
    } else if (!path.getNameSpace().isNull()) {
        out << "<LOCALINSTANCEPATH>\n";
        appendLocalNamespacePath(out, path.getNameSpace());
        appendInstanceName(out, path);
        out << "</LOCALINSTANCEPATH>\n";
    } else {
        appendInstanceName(out, path);
    }
    out << "</VALUE.REFERENCE>\n";
}

void appendValueText(XmlText& out, const CIMValue& element) {
    // A scalar copy of one element; written through CIMValue::toString so
    // the number formats agree, except that real32 keeps its own precision.
    if (element.getType() == CIMTYPE_REAL32) {
        Real32 x = 0;
        element.get(x);
        char digits[32];
        std::snprintf(digits, sizeof(digits), "%.7e", double(x));
        out << digits;
    } else if (element.getType() == CIMTYPE_DATETIME) {
        out << element.toString();
    } else {
        out.escaped(element.toString());
    }
}

template <class T>
void appendArrayValue(XmlText& out, const CIMValue& value) {
    Array<T> elements;
    value.get(elements);
    out << "<VALUE.ARRAY>\n";
    for (Uint32 i = 0; i < elements.size(); i++) {
        out << "<VALUE>";
        appendValueText(out, CIMValue(elements[i]));
        out << "</VALUE>\n";
    }
    out << "</VALUE.ARRAY>\n";
}

template <>
void appendArrayValue<CIMObjectPath>(XmlText& out, const CIMValue& value) {
    Array<CIMObjectPath> paths;
    value.get(paths);
    out << "<VALUE.REFARRAY>\n";
    for (Uint32 i = 0; i < paths.size(); i++)
        appendValueReference(out, paths[i]);
    out << "</VALUE.REFARRAY>\n";
}

void appendArrayElement(XmlText& out, const CIMValue& value) {
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return appendArrayValue<Boolean>(out, value);
    case CIMTYPE_UINT8:
        return appendArrayValue<Uint8>(out, value);
    case CIMTYPE_SINT8:
        return appendArrayValue<Sint8>(out, value);
    case CIMTYPE_UINT16:
        return appendArrayValue<Uint16>(out, value);
    case CIMTYPE_SINT16:
        return appendArrayValue<Sint16>(out, value);
    case CIMTYPE_UINT32:
        return appendArrayValue<Uint32>(out, value);
    case CIMTYPE_SINT32:
        return appendArrayValue<Sint32>(out, value);
    case CIMTYPE_UINT64:
        return appendArrayValue<Uint64>(out, value);
    case CIMTYPE_SINT64:
        return appendArrayValue<Sint64>(out, value);
    case CIMTYPE_REAL32:
        return appendArrayValue<Real32>(out, value);
    case CIMTYPE_REAL64:
        return appendArrayValue<Real64>(out, value);
    case CIMTYPE_CHAR16:
        return appendArrayValue<Char16>(out, value);
    case CIMTYPE_STRING:
        return appendArrayValue<String>(out, value);
    case CIMTYPE_DATETIME:
        return appendArrayValue<CIMDateTime>(out, value);
    case CIMTYPE_REFERENCE:
        return appendArrayValue<CIMObjectPath>(out, value);
    case CIMTYPE_OBJECT:
        return appendArrayValue<CIMObject>(out, value);
    case CIMTYPE_INSTANCE:
        return appendArrayValue<CIMInstance>(out, value);
    }
}

// Null values have no element at all.
void appendValueElement(XmlText& out, const CIMValue& value) {
    if (value.isNull())
        return;
    if (value.isArray()) {
        appendArrayElement(out, value);
    } else if (value.getType() == CIMTYPE_REFERENCE) {
        CIMObjectPath path;
        value.get(path);
        appendValueReference(out, path);
    } else {
        out << "<VALUE>";
        appendValueText(out, value);
        out << "</VALUE>\n";
    }
}

void appendQualifier(XmlText& out, const CIMConstQualifier& qualifier) {
    out << "<QUALIFIER NAME=\"" << qualifier.getName() << "\" TYPE=\""
        << typeAttribute(qualifier.getType()) << "\"";
    if (qualifier.getPropagated())
        out << " PROPAGATED=\"true\"";
    const CIMFlavor& flavor = qualifier.getFlavor();
    if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE))
        out << " OVERRIDABLE=\"false\"";
    if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS))
        out << " TOSUBCLASS=\"false\"";
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE))
        out << " TRANSLATABLE=\"true\"";
    out << ">\n";
    appendValueElement(out, qualifier.getValue());
    out << "</QUALIFIER>\n";
}

template <class Element>
void appendQualifiers(XmlText& out, const Element& element) {
    for (Uint32 i = 0; i < element.getQualifierCount(); i++)
        appendQualifier(out, element.getQualifier(i));
}

// Embedded objects travel as strings marked with the kind they hold.
void appendPropertyType(XmlText& out, CIMType type) {
    if (type == CIMTYPE_OBJECT)
        out << " TYPE=\"string\" EmbeddedObject=\"object\" EMBEDDEDOBJECT=\"object\"";
    else if (type == CIMTYPE_INSTANCE)
        out << " TYPE=\"string\" EmbeddedObject=\"instance\" EMBEDDEDOBJECT=\"instance\"";
    else
        out << " TYPE=\"" << typeAttribute(type) << "\"";
}

void appendOriginAndPropagation(XmlText& out, const CIMConstProperty& property) {
    if (!property.getClassOrigin().isNull())
        out << " CLASSORIGIN=\"" << property.getClassOrigin() << "\"";
    if (property.getPropagated())
        out << " PROPAGATED=\"true\"";
}

const char* propertyElementName(const CIMConstProperty& property) {
    if (property.isArray())
        return "PROPERTY.ARRAY";
    return property.getType() == CIMTYPE_REFERENCE ? "PROPERTY.REFERENCE" : "PROPERTY";
}

void appendProperty(XmlText& out, const CIMConstProperty& property) {
    const char* element = propertyElementName(property);
    out << "<" << element << " NAME=\"" << property.getName() << "\" ";
    if (property.getType() == CIMTYPE_REFERENCE) {
        if (!property.getReferenceClassName().isNull())
            out << " REFERENCECLASS=\"" << property.getReferenceClassName() << "\"";
    } else {
        appendPropertyType(out, property.getType());
    }
    if (property.isArray() && property.getArraySize() != 0)
        out << " ARRAYSIZE=\"" << property.getArraySize() << "\"";
    appendOriginAndPropagation(out, property);
    out << ">\n";
    appendQualifiers(out, property);
    appendValueElement(out, property.getValue());
    out << "</" << element << ">\n";
}

const char* parameterElementName(const CIMConstParameter& parameter) {
    const bool reference = parameter.getType() == CIMTYPE_REFERENCE;
    if (parameter.isArray())
        return reference ? "PARAMETER.REFARRAY" : "PARAMETER.ARRAY";
    return reference ? "PARAMETER.REFERENCE" : "PARAMETER";
}

void appendParameter(XmlText& out, const CIMConstParameter& parameter) {
    const char* element = parameterElementName(parameter);
    out << "<" << element << " NAME=\"" << parameter.getName() << "\"";
    if (parameter.getType() == CIMTYPE_REFERENCE) {
        if (!parameter.getReferenceClassName().isNull())
            out << " REFERENCECLASS=\"" << parameter.getReferenceClassName() << "\"";
    } else {
        out << " TYPE=\"" << typeAttribute(parameter.getType()) << "\"";
    }
    if (parameter.isArray() && parameter.getArraySize() != 0)
        out << " ARRAYSIZE=\"" << parameter.getArraySize() << "\"";
    out << ">\n";
    appendQualifiers(out, parameter);
    out << "</" << element << ">\n";
}

void appendMethod(XmlText& out, const CIMConstMethod& method) {
    out << "<METHOD NAME=\"" << method.getName() << "\" TYPE=\"" << typeAttribute(method.getType())
        << "\"";
    if (!method.getClassOrigin().isNull())
        out << " CLASSORIGIN=\"" << method.getClassOrigin() << "\"";
    if (method.getPropagated())
        out << " PROPAGATED=\"true\"";
    out << ">\n";
    appendQualifiers(out, method);
    for (Uint32 i = 0; i < method.getParameterCount(); i++)
        appendParameter(out, method.getParameter(i));
    out << "</METHOD>\n";
}

void appendMembers(XmlText& out, const CIMObjectRep& rep) {
    for (Uint32 i = 0; i < rep.qualifiers.size(); i++)
        appendQualifier(out, rep.qualifiers.at(i));
    for (Uint32 i = 0; i < rep.properties.size(); i++)
        appendProperty(out, rep.properties.at(i));
    for (Uint32 i = 0; i < rep.methods.size(); i++)
        appendMethod(out, rep.methods.at(i));
}

} // namespace

String CIMObjectRep::toXml() const {
    XmlText out;
    if (isClass()) {
        out << "<CLASS NAME=\"" << path.getClassName() << "\" ";
        if (!superClassName.isNull())
            out << " SUPERCLASS=\"" << superClassName << "\" ";
        out << ">\n";
        appendMembers(out, *this);
        out << "</CLASS>\n";
    } else {
        out << "<INSTANCE CLASSNAME=\"" << path.getClassName() << "\" >\n";
        appendMembers(out, *this);
        out << "</INSTANCE>\n";
    }
    return out.text();
}

PEGASUS_NAMESPACE_END
