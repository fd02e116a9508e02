#include <cimxml/detail/Envelope.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Writer.h>

namespace ksv::cimxml::detail {

namespace {

[[noreturn]] void refuse(MessageFault fault, const Element& element, std::string_view message) {
    throw ProtocolError(fault, lossyString(elementPath(element) + ": " + std::string(message)));
}

void checkVersion(const Element& element, const char* attribute, std::string_view major,
                  MessageFault fault) {
    const char* version = attributeOf(element, attribute);
    if (version == nullptr) {
        refuse(MessageFault::NotValid, element,
               std::string("attribute ") + attribute + " is missing");
    }
    const std::string_view text(version);
    if (text.substr(0, major.size()) != major) {
        refuse(fault, element, std::string(attribute) + " " + quoted(text) + " is not supported");
    }
}

// The one child element of `parent`, which must be called `name`.
const Element& onlyChild(const Element& parent, std::string_view name) {
    return asInvalidMessage([&]() -> const Element& {
        Children children(parent);
        const Element& child = children.take(name);
        children.finish();
        return child;
    });
}

} // namespace

void appendMessageHead(std::string& out, std::string_view messageId) {
    out += "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE";
    Writer(out).attribute("ID", messageId);
    out += " PROTOCOLVERSION=\"1.0\">";
}

void appendMessageTail(std::string& out) {
    out += "</MESSAGE></CIM>\n";
}

Envelope openEnvelope(const Element& root) {
    if (nameOf(root) != "CIM") {
        refuse(MessageFault::NotValid, root, "the document element is not CIM");
    }
    checkVersion(root, "CIMVERSION", "2.", MessageFault::UnsupportedCimVersion);
    checkVersion(root, "DTDVERSION", "2.", MessageFault::UnsupportedDtdVersion);
    const Element& message = onlyChild(root, "MESSAGE");
    checkVersion(message, "PROTOCOLVERSION", "1.", MessageFault::UnsupportedProtocolVersion);
    Envelope envelope;
    envelope.messageId =
        asInvalidMessage([&] { return std::string(requiredAttribute(message, "ID")); });
    envelope.content = message.FirstChildElement();
    if (envelope.content == nullptr) {
        refuse(MessageFault::NotValid, message, "the message is empty");
    }
    if (envelope.content->NextSiblingElement() != nullptr) {
        refuse(MessageFault::NotValid, *envelope.content->NextSiblingElement(),
               "unexpected element inside MESSAGE");
    }
    return envelope;
}

} // namespace ksv::cimxml::detail
