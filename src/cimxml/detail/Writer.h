#ifndef KSV_CIMXML_DETAIL_WRITER_H
#define KSV_CIMXML_DETAIL_WRITER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <cimxml/Elements.h>
#include <cimxml/detail/Output.h>

#include <string>
#include <string_view>

namespace ksv::cimxml::detail {

class ReferenceElements;
class PropertyTags;

/// Appends DSP0201 elements to a caller's buffer, which holds exactly what was written whenever
/// no call of the writer is under way. Holds a scratch string so that writing many string values
/// reuses one allocation. Given `references`, references already written are copied from there
/// instead of being written again, and given `propertyTags`, so are the start tags of properties
/// and the properties that instances leave as their class has them.
class Writer {
public:
    explicit Writer(std::string& out, ReferenceElements* references = nullptr,
                    PropertyTags* propertyTags = nullptr)
        : _output(out), _references(references), _propertyTags(propertyTags) {}

    void value(const Pegasus::CIMValue& value);
    void className(const Pegasus::CIMName& className);
    void instanceName(const Pegasus::CIMObjectPath& path);
    void localNamespacePath(const Pegasus::CIMNamespaceName& nameSpace);
    void instancePath(const Pegasus::CIMObjectPath& path);
    void classPath(const Pegasus::CIMObjectPath& path);
    void localInstancePath(const Pegasus::CIMObjectPath& path);
    void localClassPath(const Pegasus::CIMObjectPath& path);
    void objectPath(const Pegasus::CIMObjectPath& path);
    void valueReference(const Pegasus::CIMObjectPath& path);

    void qualifier(const Pegasus::CIMConstQualifier& qualifier);
    void property(const Pegasus::CIMConstProperty& property, const InstanceParts& parts = {});
    void method(const Pegasus::CIMConstMethod& method);
    void instance(const Pegasus::CIMConstInstance& instance, const InstanceParts& parts = {});
    void cimClass(const Pegasus::CIMConstClass& cimClass);
    void object(const Pegasus::CIMConstObject& object);
    void paramValue(const Pegasus::CIMParamValue& parameter);

    /// ` NAME="value"`, escaped.
    void attribute(std::string_view name, const Pegasus::String& value);
    void attribute(std::string_view name, std::string_view utf8);
    void raw(std::string_view text) {
        const Output::Session session(_output);
        _output.put(text);
    }
    /// Keeps the buffer open across the calls made while it lives, so that room made for one
    /// element serves the next; the buffer must then be written through this writer alone.
    Output::Session session() { return Output::Session(_output); }

private:
    /// ` NAME="value"` from the literal ` NAME="`.
    template <std::size_t N>
    void _attribute(const char (&opening)[N], const Pegasus::String& value);
    void _namespacePath(const Pegasus::String& host, const Pegasus::CIMNamespaceName& nameSpace);
    /// The element found written before, copied; otherwise written by write() and its text
    /// handed to remember(): responses repeat their elements.
    template <class Write, class Remember>
    void _copiedOrWritten(const std::string* found, Write write, Remember remember);
    void _keyBinding(const Pegasus::CIMKeyBinding& binding);
    /// The same, copied when the last path written bound that key so at that position.
    void _keyBindingAt(Pegasus::Uint32 position, const Pegasus::CIMKeyBinding& binding);
    void _referenceKeyValue(const Pegasus::CIMKeyBinding& binding);
    void _valueReference(const Pegasus::CIMObjectPath& path);
    void _typeAttributes(Pegasus::CIMType type);
    void _originAttributes(const Pegasus::CIMName& classOrigin, Pegasus::Boolean propagated);
    void _flavorAttributes(const Pegasus::CIMFlavor& flavor);
    template <class Element>
    void _qualifiers(const Element& element);
    // The declaration an instance's property shares with its class's, and the instance, which
    // keeps it unchanged.
    struct SharedDeclaration {
        const void* declaration;
        const Pegasus::CIMConstInstance& instance;
    };
    template <class Property>
    void _property(const Property& property, const InstanceParts& parts,
                   const SharedDeclaration* declared = nullptr);
    template <class Property>
    void _declaredStart(const Property& property, const InstanceParts& parts, std::string_view open,
                        Pegasus::CIMType type, bool isArray, const SharedDeclaration& declared);
    bool _putSharedText(const Pegasus::CIMProperty& shared, const InstanceParts& parts);
    void _sharedProperty(const Pegasus::CIMConstInstance& instance,
                         const Pegasus::CIMProperty& shared, const InstanceParts& parts);
    template <class Property>
    void _propertyStart(const Property& property, const InstanceParts& parts,
                        std::string_view open);
    void _parameter(const Pegasus::CIMConstParameter& parameter);
    void _value(const Pegasus::CIMValue& value);
    void _scalarValue(const Pegasus::CIMValue& value);
    void _arrayValue(const Pegasus::CIMValue& value);
    template <class Item>
    void _arrayItems(const Pegasus::CIMValue& value);

    void _text(Pegasus::Boolean x);
    void _text(Pegasus::Uint8 x);
    void _text(Pegasus::Sint8 x);
    void _text(Pegasus::Uint16 x);
    void _text(Pegasus::Sint16 x);
    void _text(Pegasus::Uint32 x);
    void _text(Pegasus::Sint32 x);
    void _text(Pegasus::Uint64 x);
    void _text(Pegasus::Sint64 x);
    void _text(Pegasus::Real32 x);
    void _text(Pegasus::Real64 x);
    void _text(const Pegasus::Char16& x);
    void _text(const Pegasus::String& x);
    void _text(const Pegasus::CIMDateTime& x);
    void _text(const Pegasus::CIMObject& x);
    void _text(const Pegasus::CIMInstance& x);

    Output _output;
    ReferenceElements* const _references;
    PropertyTags* const _propertyTags;
    Pegasus::String _scratch;
};

} // namespace ksv::cimxml::detail

#endif
