// CIM-XML request bodies: whatever decodes must encode to a body that decodes to the same text.
#include <cimxml/Errors.h>
#include <cimxml/Request.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace ksv::cimxml;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    OperationRequest request;
    try {
        request = decodeRequest(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const Pegasus::CIMException&) {
        return 0;
    }
    const std::string encoded = encodeRequest(request);
    try {
        if (encodeRequest(decodeRequest(encoded)) != encoded)
            std::abort();
    } catch (const Pegasus::CIMException&) {
        std::abort(); // the encoder wrote what the decoder refuses
    }
    return 0;
}
