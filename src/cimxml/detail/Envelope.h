#ifndef KSV_CIMXML_DETAIL_ENVELOPE_H
#define KSV_CIMXML_DETAIL_ENVELOPE_H

#include <cimxml/Errors.h>
#include <cimxml/detail/Xml.h>

#include <string>
#include <string_view>

// The CIM and MESSAGE elements around every request and response.
namespace ksv::cimxml::detail {

/// XML declaration, CIM and MESSAGE start tags.
void appendMessageHead(std::string& out, std::string_view messageId);
/// MESSAGE and CIM end tags.
void appendMessageTail(std::string& out);

struct Envelope {
    std::string messageId;
    /// The single child of MESSAGE (SIMPLEREQ, SIMPLERSP, ...).
    const Element* content = nullptr;
};

/// Checks the versions on CIM and MESSAGE and finds the MESSAGE's content. Throws ProtocolError:
/// NotValid for a wrong structure, Unsupported...Version for versions other than CIM 2.x, DTD
/// 2.x and protocol 1.x.
Envelope openEnvelope(const Element& root);

/// Runs `read`, turning any CIMException it throws into ProtocolError(NotValid).
template <class Read>
auto asInvalidMessage(Read read) -> decltype(read()) {
    try {
        return read();
    } catch (const ProtocolError&) {
        throw;
    } catch (const Pegasus::CIMException& e) {
        throw ProtocolError(MessageFault::NotValid, e.getMessage());
    }
}

} // namespace ksv::cimxml::detail

#endif
