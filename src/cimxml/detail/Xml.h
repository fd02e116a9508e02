#ifndef KSV_CIMXML_DETAIL_XML_H
#define KSV_CIMXML_DETAIL_XML_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>

#include <cimxml/detail/Fail.h>

#include <tinyxml2.h>

#include <string>
#include <string_view>

// Navigation of a parsed CIM-XML document, with failures that name the element's place.
namespace ksv::cimxml::detail {

using Element = tinyxml2::XMLElement;

/// A parsed document. tinyxml2 never expands external entities and caps element nesting, so
/// parsing is bounded in time, memory and stack by the size of the text.
class Document {
public:
    /// Throws ProtocolError(NotWellFormed) for text that is not one well-formed XML element.
    explicit Document(std::string_view text);

    const Element& root() const { return *_document.RootElement(); }

private:
    tinyxml2::XMLDocument _document;
};

/// "CIM/MESSAGE/SIMPLEREQ/IMETHODCALL(GetInstance)/IPARAMVALUE(InstanceName) (line 5)".
std::string elementPath(const Element& element);

/// Throws a CIMException whose message starts with the element's path.
[[noreturn]] void failAt(const Element& element, std::string_view message,
                         Pegasus::CIMStatusCode code = Pegasus::CIM_ERR_INVALID_PARAMETER);

/// A CIMException whose message already names the place it arose.
class LocatedError : public Pegasus::CIMException {
public:
    LocatedError(Pegasus::CIMStatusCode code, const Pegasus::String& message)
        : Pegasus::CIMException(code, message) {}
};

/// Runs `read`, putting the element's path in front of the message of any CIMException or
/// object-model exception it throws that does not name a place yet.
template <class Read>
auto locatedAt(const Element& element, Read read) -> decltype(read()) {
    try {
        return read();
    } catch (const LocatedError&) {
        throw;
    } catch (const Pegasus::CIMException& e) {
        failAt(element, messageOf(e), e.getCode());
    } catch (const Pegasus::Exception& e) {
        failAt(element, messageOf(e));
    }
}

inline std::string_view nameOf(const Element& element) {
    return element.Name();
}

/// The attribute's value, or nullptr when absent.
inline const char* attributeOf(const Element& element, const char* name) {
    return element.Attribute(name);
}

std::string_view requiredAttribute(const Element& element, const char* name);

/// A "true"/"false" attribute (any case); `absent` when missing.
bool booleanAttribute(const Element& element, const char* name, bool absent);

/// The element's character data, CDATA sections included; fails if it holds elements.
std::string textOf(const Element& element);

/// Walks the child elements of one element in order, checking them against the content model.
class Children {
public:
    explicit Children(const Element& parent)
        : _parent(parent), _current(parent.FirstChildElement()) {}

    const Element* current() const { return _current; }
    bool at(std::string_view name) const { return _current && nameOf(*_current) == name; }
    bool atEnd() const { return _current == nullptr; }

    /// The current child, which must be called `name`; fails naming what was found instead.
    const Element& take(std::string_view name);
    /// The current child if it is called `name`, else nullptr.
    const Element* takeIf(std::string_view name);
    /// The current child whatever its name; fails at the end.
    const Element& takeAny(std::string_view expected);
    /// Fails if any child is left.
    void finish() const;

private:
    const Element& _parent;
    const Element* _current;
};

} // namespace ksv::cimxml::detail

#endif
