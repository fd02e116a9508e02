#ifndef KSV_CIMXML_DETAIL_READER_H
#define KSV_CIMXML_DETAIL_READER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <cimxml/detail/Xml.h>

#include <optional>

namespace ksv::cimxml::detail {

/// Reads DSP0201 elements into the object model. Every failure is a LocatedError naming the
/// element. Embedded objects are parsed as documents of their own, at most kMaxEmbedding deep.
/// The object model finds members by linear search, so an element holds at most kMaxMembers
/// qualifiers, properties, methods, parameters or keys; more would make decoding quadratic.
/// Names, key values and other values are bounded in length too (in UTF-8 bytes), so that what
/// one message makes the server carry, compare and quote stays small whatever its size.
class Reader {
public:
    static constexpr unsigned kMaxEmbedding = 8;
    static constexpr unsigned kMaxMembers = 2048;
    static constexpr std::size_t kMaxNameBytes = 256;
    static constexpr std::size_t kMaxKeyBytes = 1024;
    static constexpr std::size_t kMaxValueBytes = 64 * 1024;

    explicit Reader(unsigned embedding = 0) : _embedding(embedding) {}

    /// A legal CIM name from a required attribute.
    Pegasus::CIMName name(const Element& element, const char* attribute) const;
    /// The same, null when the attribute is absent.
    Pegasus::CIMName optionalName(const Element& element, const char* attribute) const;
    Pegasus::String text(const Element& element) const;

    Pegasus::CIMName className(const Element& element) const;
    Pegasus::CIMNamespaceName localNamespacePath(const Element& element) const;
    Pegasus::CIMObjectPath instanceName(const Element& element) const;
    /// INSTANCEPATH, LOCALINSTANCEPATH, INSTANCENAME, CLASSPATH, LOCALCLASSPATH or CLASSNAME.
    Pegasus::CIMObjectPath anyPath(const Element& element) const;
    /// OBJECTPATH: INSTANCEPATH or CLASSPATH.
    Pegasus::CIMObjectPath objectPath(const Element& element) const;
    Pegasus::CIMObjectPath valueReference(const Element& element) const;

    /// VALUE read as `type`; VALUE.ARRAY as an array of it; VALUE.REFERENCE; VALUE.REFARRAY.
    Pegasus::CIMValue value(const Element& element, Pegasus::CIMType type) const;

    Pegasus::CIMQualifier qualifier(const Element& element) const;
    Pegasus::CIMProperty property(const Element& element) const;
    Pegasus::CIMMethod method(const Element& element) const;
    Pegasus::CIMInstance instance(const Element& element) const;
    Pegasus::CIMClass cimClass(const Element& element) const;
    /// CLASS or INSTANCE.
    Pegasus::CIMObject object(const Element& element) const;

    /// VALUE.NAMEDINSTANCE: the instance with its INSTANCENAME as path.
    Pegasus::CIMInstance namedInstance(const Element& element) const;
    /// VALUE.OBJECTWITHPATH, VALUE.OBJECTWITHLOCALPATH or VALUE.NAMEDOBJECT.
    Pegasus::CIMObject objectWithPath(const Element& element) const;
    /// VALUE.INSTANCEWITHPATH: the instance, its path set from the INSTANCEPATH.
    Pegasus::CIMInstance instanceWithPath(const Element& element) const;

    /// PARAMVALUE: typed by PARAMTYPE, by the TYPE of its VALUE or VALUE.ARRAY, by
    /// EmbeddedObject, or by its element (references, instances, classes); else an untyped
    /// string.
    Pegasus::CIMParamValue paramValue(const Element& element) const;
    /// RETURNVALUE, typed like a PARAMVALUE.
    Pegasus::CIMValue returnValue(const Element& element) const;
    /// The value content of a PARAMVALUE-like element, taken from `children`: typed by `type`
    /// when given, else as paramValue() describes. `typed` tells whether a type was known.
    Pegasus::CIMValue typedValue(const Element& parent, Children& children,
                                 std::optional<Pegasus::CIMType> type, bool& typed) const;

private:
    Pegasus::CIMValue _scalar(const Element& element, Pegasus::CIMType type) const;
    Pegasus::CIMValue _array(const Element& element, Pegasus::CIMType type) const;
    template <class Item>
    Pegasus::CIMValue _arrayOf(const Element& element, Pegasus::CIMType type) const;
    Pegasus::CIMValue _refArray(const Element& element) const;
    Pegasus::CIMValue _embedded(const Element& element, const std::string& text,
                                Pegasus::CIMType type) const;
    Pegasus::CIMKeyBinding _keyBinding(const Element& element) const;
    Pegasus::CIMKeyBinding _keyValue(const Element& element, const Pegasus::CIMName& name) const;
    void _namespacePath(const Element& element, Pegasus::String& host,
                        Pegasus::CIMNamespaceName& nameSpace) const;
    Pegasus::CIMObjectPath _hostedPath(const Element& element, bool isClass) const;
    Pegasus::CIMObjectPath _localPath(const Element& element, bool isClass) const;
    Pegasus::CIMParameter _parameter(const Element& element) const;
    Pegasus::Array<Pegasus::CIMQualifier> _qualifiers(Children& children) const;

    unsigned _embedding;
};

/// The wire type of TYPE or PARAMTYPE on an element, with EmbeddedObject making strings into
/// objects or instances; nothing when neither is there.
std::optional<Pegasus::CIMType> typeAttribute(const Element& element, const char* attribute);

} // namespace ksv::cimxml::detail

#endif
