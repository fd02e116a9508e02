#include <cimxml/Errors.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Xml.h>
#include <cimxml/detail/XmlText.h>

#include <vector>

namespace ksv::cimxml::detail {

namespace {

std::string describeParseError(const tinyxml2::XMLDocument& document) {
    if (document.ErrorID() == tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED) {
        return "elements nested deeper than " + std::to_string(TINYXML2_MAX_ELEMENT_DEPTH);
    }
    std::string message = document.ErrorStr();
    return message.empty() ? std::string("the text is not well-formed XML") : message;
}

} // namespace

Document::Document(std::string_view text) : _document(true, tinyxml2::PRESERVE_WHITESPACE) {
    if (_document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
        throw ProtocolError(MessageFault::NotWellFormed,
                            lossyString("not well-formed XML: " + describeParseError(_document)));
    }
    int elements = 0;
    for (const tinyxml2::XMLNode* node = _document.FirstChild(); node; node = node->NextSibling()) {
        if (node->ToText()) {
            throw ProtocolError(MessageFault::NotWellFormed, "text outside the document element");
        }
        elements += node->ToElement() ? 1 : 0;
    }
    if (elements != 1) {
        throw ProtocolError(MessageFault::NotWellFormed,
                            "the text must hold exactly one document element");
    }
}

std::string elementPath(const Element& element) {
    std::vector<const Element*> chain;
    for (const tinyxml2::XMLNode* node = &element; node && node->ToElement();
         node = node->Parent()) {
        chain.push_back(node->ToElement());
    }
    std::string path;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        if (!path.empty()) {
            path += '/';
        }
        path += (*it)->Name();
        if (const char* name = (*it)->Attribute("NAME")) {
            path += '(';
            path += std::string_view(name).substr(0, 64);
            path += ')';
        }
    }
    path += " (line " + std::to_string(element.GetLineNum()) + ")";
    return path;
}

void failAt(const Element& element, std::string_view message, Pegasus::CIMStatusCode code) {
    throw LocatedError(code, lossyString(elementPath(element) + ": " + std::string(message)));
}

std::string_view requiredAttribute(const Element& element, const char* name) {
    const char* value = element.Attribute(name);
    if (value == nullptr) {
        failAt(element, std::string("attribute ") + name + " is missing");
    }
    return value;
}

bool booleanAttribute(const Element& element, const char* name, bool absent) {
    const char* value = element.Attribute(name);
    if (value == nullptr) {
        return absent;
    }
    const std::string_view text = trimXmlSpace(value);
    if (equalsNoCase(text, "true")) {
        return true;
    }
    if (equalsNoCase(text, "false")) {
        return false;
    }
    failAt(element,
           std::string("attribute ") + name + " is " + quoted(value) + ", not true or false");
}

std::string textOf(const Element& element) {
    std::string text;
    for (const tinyxml2::XMLNode* node = element.FirstChild(); node; node = node->NextSibling()) {
        if (const tinyxml2::XMLText* data = node->ToText()) {
            text += data->Value();
        } else if (const Element* child = node->ToElement()) {
            failAt(*child, std::string("unexpected element inside ") + element.Name());
        }
    }
    return text;
}

const Element& Children::take(std::string_view name) {
    if (!at(name)) {
        if (_current) {
            failAt(*_current, "expected " + std::string(name));
        }
        failAt(_parent, "element " + std::string(name) + " is missing");
    }
    const Element* taken = _current;
    _current = _current->NextSiblingElement();
    return *taken;
}

const Element* Children::takeIf(std::string_view name) {
    return at(name) ? &take(name) : nullptr;
}

const Element& Children::takeAny(std::string_view expected) {
    if (!_current) {
        failAt(_parent, std::string(expected) + " is missing");
    }
    const Element* taken = _current;
    _current = _current->NextSiblingElement();
    return *taken;
}

void Children::finish() const {
    if (_current) {
        failAt(*_current, std::string("unexpected element inside ") + _parent.Name());
    }
}

} // namespace ksv::cimxml::detail
