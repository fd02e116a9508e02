#include "cimserver/RepositoryLoader.h"

#include "mof_compiler/MofCompiler.h"

#include <filesystem>

namespace ksv::server {

namespace {

constexpr const char kDefaultNamespace[] = "root/ksv";

struct MofSource {
    std::string nameSpace;
    std::string path;
};

// "[NAMESPACE=]FILE"; a relative FILE is taken from the MOF directory.
MofSource sourceOf(const std::string& entry, const std::string& defaultNamespace,
                   const std::string& mofDirectory) {
    MofSource source{defaultNamespace, entry};
    std::string::size_type equals = entry.find('=');
    if (equals != std::string::npos) {
        source.nameSpace = entry.substr(0, equals);
        source.path = entry.substr(equals + 1);
    }
    std::filesystem::path path(source.path);
    if (path.is_relative() && !mofDirectory.empty())
        path = std::filesystem::path(mofDirectory) / path;
    source.path = std::filesystem::absolute(path).lexically_normal().string();
    return source;
}

// A file starts in the namespace it is loaded into; its own pragmas may move on from there.
void compileInto(mof::MofCompiler& compiler, const MofSource& source) {
    std::string text = "#pragma namespace (\"" + source.nameSpace + "\")\n#pragma include (\"" +
                       source.path + "\")\n";
    compiler.compileText(text, source.path + " (loaded into " + source.nameSpace + ")");
}

} // namespace

mof::ClassRepository loadRepository(const ServerConfig& config,
                                    std::vector<std::string>& warnings) {
    mof::MofCompilerOptions options;
    options.defaultNamespace = kDefaultNamespace;
    if (!config.mofDirectory.empty())
        options.includePaths.push_back(config.mofDirectory);
    mof::MofCompiler compiler(options);
    for (const std::string& entry : config.mofFiles)
        compileInto(compiler, sourceOf(entry, kDefaultNamespace, config.mofDirectory));
    for (const std::string& entry : config.registrationFiles) {
        compileInto(compiler, sourceOf(entry, config.registrationNamespace, config.mofDirectory));
    }
    warnings.insert(warnings.end(), compiler.warnings().begin(), compiler.warnings().end());
    return compiler.repository();
}

} // namespace ksv::server
