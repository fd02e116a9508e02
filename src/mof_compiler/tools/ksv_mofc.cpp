// ksv-mofc: compiles MOF files into one repository and reports what each
// namespace holds, or the first error. Used by the build to check the
// shipped MOF.

#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "mof_compiler/MofCompiler.h"
#include "mof_compiler/NamespaceStore.h"

namespace {

constexpr int exitError = 1;
constexpr int exitUsage = 2;

int usage(const char* program) {
    std::cerr << "usage: " << program << " [-n NAMESPACE] [-I DIRECTORY]... FILE...\n"
              << "  -n  namespace for definitions before any namespace pragma"
                 " (default root/cimv2)\n"
              << "  -I  directory searched for included files\n";
    return exitUsage;
}

struct Arguments {
    ksv::mof::MofCompilerOptions options;
    std::vector<std::string> files;
};

bool parseArguments(int argc, char** argv, Arguments& arguments) {
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        bool takesValue = argument == "-n" || argument == "-I";
        if (takesValue && i + 1 >= argc)
            return false;
        if (argument == "-n")
            arguments.options.defaultNamespace = argv[++i];
        else if (argument == "-I")
            arguments.options.includePaths.push_back(argv[++i]);
        else if (!argument.empty() && argument[0] == '-')
            return false;
        else
            arguments.files.push_back(argument);
    }
    return !arguments.files.empty();
}

// Compiles the files in order; the first error, if any.
std::optional<std::string> compileAll(ksv::mof::MofCompiler& compiler,
                                      const std::vector<std::string>& files) {
    try {
        for (const std::string& file : files)
            compiler.compileFile(file);
        return std::nullopt;
    } catch (const std::exception& error) {
        return std::string(error.what());
    }
}

void printSummary(const ksv::mof::ClassRepository& repository) {
    for (const ksv::mof::NamespaceSummary& entry : repository.summary()) {
        std::cout << ksv::mof::utf8(entry.name.getString()) << ": " << entry.qualifiers
                  << " qualifiers, " << entry.classes << " classes, " << entry.instances
                  << " instances\n";
    }
}

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    if (!parseArguments(argc, argv, arguments))
        return usage(argv[0]);
    ksv::mof::MofCompiler compiler(arguments.options);
    std::optional<std::string> error = compileAll(compiler, arguments.files);
    for (const std::string& warning : compiler.warnings())
        std::cerr << warning << "\n";
    if (error) {
        std::cerr << *error << "\n";
        return exitError;
    }
    printSummary(compiler.repository());
    return 0;
}
