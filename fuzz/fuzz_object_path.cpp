// Object paths as they arrive in keys, references and the text form of a path: whatever parses
// must print to a text that parses back to the same path.
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

#include <cstdint>
#include <cstdlib>
#include <string>

using namespace Pegasus;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CIMObjectPath path;
    try {
        path.set(String(text.c_str(), static_cast<Uint32>(text.size())));
    } catch (const Exception&) {
        return 0;
    }
    const String printed = path.toString();
    CIMObjectPath reparsed;
    try {
        reparsed.set(printed);
    } catch (const Exception&) {
        std::abort(); // a printed path must parse
    }
    if (!(reparsed == path) || reparsed.toString() != printed)
        std::abort();
    return 0;
}
