// MOF text through the compiler: lexer, parser, class and instance building. Only MofError may
// come out of bad input.
#include "mof_compiler/MofCompiler.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ksv::mof::MofCompilerOptions options;
    options.defaultNamespace = "root/fuzz";
    ksv::mof::MofCompiler compiler(options);
    try {
        // A file name in no directory: an include pragma finds nothing beside it.
        compiler.compileText(std::string(reinterpret_cast<const char*>(data), size),
                             "/nonexistent/fuzz.mof");
        compiler.repository();
    } catch (const ksv::mof::MofError&) {
    }
    return 0;
}
