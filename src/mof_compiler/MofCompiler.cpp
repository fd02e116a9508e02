#include "mof_compiler/MofCompiler.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <strings.h>
#include <variant>

#include <Pegasus/Common/Exception.h>

#include "mof_compiler/MofParser.h"
#include "mof_compiler/NamespaceStore.h"
#include "mof_compiler/RepositoryBuilder.h"

namespace ksv::mof {

namespace fs = std::filesystem;
using Pegasus::CIMNamespaceName;

struct MofCompiler::FileContext {
    std::string fileName;
    CIMNamespaceName nameSpace;
};

namespace {

bool readFile(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::ostringstream content;
    content << in.rdbuf();
    text = content.str();
    return true;
}

CIMNamespaceName namespaceName(const std::string& name, const SourceLocation& location) {
    try {
        return CIMNamespaceName(Pegasus::String(name.c_str()));
    } catch (const Pegasus::Exception&) {
        throw MofError(location, "\"" + name + "\" is not a valid namespace name");
    }
}

bool pragmaIs(const ast::Pragma& pragma, const char* name) {
    return strcasecmp(pragma.name.c_str(), name) == 0;
}

const SourceLocation& locationOf(const ast::Production& production) {
    return std::visit(
        [](const auto& definition) -> const SourceLocation& { return definition.location; },
        production);
}

std::string canonical(const std::string& path) {
    std::error_code ignored;
    return fs::weakly_canonical(fs::path(path), ignored).string();
}

} // namespace

MofCompiler::MofCompiler(MofCompilerOptions options)
    : _options(std::move(options)), _builder(std::make_unique<RepositoryBuilder>()) {}

MofCompiler::~MofCompiler() = default;

void MofCompiler::compileFile(const std::string& path) {
    std::string text;
    if (!readFile(path, text))
        throw MofError(SourceLocation{path, 0, 0}, "cannot read file " + path);
    compileText(text, path);
}

void MofCompiler::compileText(const std::string& text, const std::string& fileName) {
    _openFiles.clear();
    compile(text, fileName,
            namespaceName(_options.defaultNamespace, SourceLocation{fileName, 0, 0}));
}

ClassRepository MofCompiler::repository() const {
    return _builder->snapshot();
}

void MofCompiler::compile(const std::string& text, const std::string& fileName,
                          const CIMNamespaceName& nameSpace) {
    _openFiles.push_back(canonical(fileName));
    FileContext context{fileName, nameSpace};
    for (const ast::Production& production : parseMof(text, fileName)) {
        if (const auto* pragma = std::get_if<ast::Pragma>(&production)) {
            applyPragma(*pragma, context);
            continue;
        }
        define(production, context.nameSpace);
    }
    _openFiles.pop_back();
}

void MofCompiler::define(const ast::Production& production, const CIMNamespaceName& nameSpace) {
    try {
        if (const auto* qualifier = std::get_if<ast::QualifierDeclaration>(&production))
            _builder->declareQualifier(nameSpace, *qualifier);
        else if (const auto* cimClass = std::get_if<ast::Class>(&production))
            _builder->defineClass(nameSpace, *cimClass);
        else
            _builder->createInstance(nameSpace, std::get<ast::Instance>(production));
    } catch (const Pegasus::Exception& error) {
        // The object model refused something the checks above let through.
        throw MofError(locationOf(production), utf8(error.getMessage()));
    }
}

void MofCompiler::applyPragma(const ast::Pragma& pragma, FileContext& context) {
    if (pragmaIs(pragma, "include")) {
        compileIncluded(resolveInclude(pragma.value, context.fileName, pragma.location),
                        pragma.location, context.nameSpace);
    } else if (pragmaIs(pragma, "namespace")) {
        context.nameSpace = namespaceName(pragma.value, pragma.location);
    } else if (!pragmaIs(pragma, "locale") && !pragmaIs(pragma, "instancelocale")) {
        _warnings.push_back(pragma.location.toString() + ": warning: pragma " + pragma.name +
                            " is not supported and was ignored");
    }
}

void MofCompiler::compileIncluded(const std::string& path, const SourceLocation& from,
                                  const CIMNamespaceName& nameSpace) {
    for (const std::string& open : _openFiles) {
        if (open == canonical(path))
            throw MofError(from, "file " + path + " is included again while it is being compiled");
    }
    std::string text;
    if (!readFile(path, text))
        throw MofError(from, "cannot read included file " + path);
    compile(text, path, nameSpace);
}

std::string MofCompiler::resolveInclude(const std::string& name, const std::string& includer,
                                        const SourceLocation& from) const {
    if (fs::path(name).is_absolute())
        return name;
    std::error_code unreadable;
    fs::path beside = (fs::path(includer).parent_path() / name).lexically_normal();
    if (fs::exists(beside, unreadable))
        return beside.string();
    for (const std::string& directory : _options.includePaths) {
        fs::path candidate = (fs::path(directory) / name).lexically_normal();
        if (fs::exists(candidate, unreadable))
            return candidate.string();
    }
    throw MofError(from, "included file " + name + " not found beside " + includer +
                             " or on the include path");
}

} // namespace ksv::mof
