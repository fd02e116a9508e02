#include <cimxml/Errors.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Xml.h>
#include <cimxml/detail/XmlText.h>

#include <algorithm>
#include <utility>
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

// Where the markup that starts at `at` ends (one past it), or npos when it does not.
size_t markupEnd(std::string_view xml, size_t at) {
    for (const auto& [open, close] : {std::pair<std::string_view, std::string_view>{"<!--", "-->"},
                                      {"<![CDATA[", "]]>"},
                                      {"<?", "?>"}}) {
        if (xml.substr(at, open.size()) == open) {
            const size_t found = xml.find(close, at + open.size());
            return found == std::string_view::npos ? found : found + close.size();
        }
    }
    char quote = 0;
    int brackets = 0; // a DOCTYPE's internal subset
    for (size_t i = at + 1; i < xml.size(); i++) {
        const char c = xml[i];
        if (quote != 0) {
            quote = c == quote ? 0 : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[' || c == ']') {
            brackets += c == '[' ? 1 : -1;
        } else if (c == '>' && brackets <= 0) {
            return i + 1;
        }
    }
    return std::string_view::npos;
}

bool isStartTag(std::string_view markup) {
    return markup.size() > 2 && markup[1] != '/' && markup[1] != '!' && markup[1] != '?' &&
           markup[markup.size() - 2] != '/';
}

// OpenPegasus's reader drops white space at both ends of an element's text, yet keeps what a
// client sent as a reference (&#32;). The parser decodes references, so the raw white space
// goes before parsing; its line ends move into the element's tags, so lines count as sent.
std::string withoutContentSpace(std::string_view xml) {
    std::string out;
    out.reserve(xml.size());
    size_t startTagClose = std::string::npos; // the '>' in `out` that the text follows
    size_t carriedLineEnds = 0;
    size_t i = 0;
    while (i < xml.size()) {
        if (xml[i] == '<') {
            const size_t end = markupEnd(xml, i);
            if (end == std::string_view::npos) {
                out.append(xml.substr(i));
                break;
            }
            const std::string_view markup = xml.substr(i, end - i);
            out.append(markup.substr(0, markup.size() - 1));
            out.append(carriedLineEnds, '\n');
            out += '>';
            carriedLineEnds = 0;
            startTagClose = isStartTag(markup) ? out.size() - 1 : std::string::npos;
            i = end;
            continue;
        }
        const size_t next = std::min(xml.find('<', i), xml.size());
        const std::string_view text = xml.substr(i, next - i);
        i = next;
        if (startTagClose == std::string::npos || xml.substr(next, 2) != "</") {
            out.append(text);
            continue;
        }
        const std::string_view kept = trimXmlSpace(text);
        const size_t leading = kept.empty() ? text.size() : size_t(kept.data() - text.data());
        const std::string_view before = text.substr(0, leading);
        out.insert(startTagClose, size_t(std::count(before.begin(), before.end(), '\n')), '\n');
        out.append(kept);
        const std::string_view after = text.substr(leading + kept.size());
        carriedLineEnds = size_t(std::count(after.begin(), after.end(), '\n'));
    }
    return out;
}

} // namespace

Document::Document(std::string_view raw) : _document(true, tinyxml2::PRESERVE_WHITESPACE) {
    const std::string text = withoutContentSpace(raw);
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
