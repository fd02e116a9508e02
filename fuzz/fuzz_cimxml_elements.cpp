// The CIM-XML element readers (instances, classes, object paths, typed values). The first byte
// chooses the reader and, for values, the type; whatever is read must encode to an element that
// reads back to the same text.
#include <Pegasus/Common/Exception.h>
#include <cimxml/Elements.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace Pegasus;
using namespace ksv::cimxml;

namespace {

// Decodes, then encodes what was decoded.
std::string readAndWrite(unsigned reader, CIMType type, std::string_view xml) {
    std::string out;
    switch (reader) {
    case 0:
        appendInstance(out, decodeInstance(xml));
        break;
    case 1:
        appendClass(out, decodeClass(xml));
        break;
    case 2:
        appendObject(out, decodeObject(xml));
        break;
    case 3:
        appendObjectPath(out, decodeObjectPath(xml));
        break;
    default:
        appendValue(out, decodeValue(xml, type));
        break;
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const unsigned reader = data[0] % 5;
    const auto type = static_cast<CIMType>((data[0] >> 3) % (CIMTYPE_INSTANCE + 1));
    const std::string_view xml(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::string written;
    try {
        written = readAndWrite(reader, type, xml);
    } catch (const CIMException&) {
        return 0;
    }
    // A null value writes nothing, which no reader takes.
    if (written.empty())
        return 0;
    try {
        if (readAndWrite(reader, type, written) != written)
            std::abort();
    } catch (const CIMException&) {
        std::abort(); // the writer wrote what the reader refuses
    }
    return 0;
}
