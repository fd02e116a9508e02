#ifndef KSV_MOF_MOFCOMPILER_H
#define KSV_MOF_MOFCOMPILER_H

#include <memory>
#include <string>
#include <vector>

#include "mof_compiler/ClassRepository.h"
#include "mof_compiler/MofAst.h"
#include "mof_compiler/MofError.h"

namespace ksv::mof {

struct MofCompilerOptions {
    // Where definitions go until a namespace pragma names another one.
    std::string defaultNamespace = "root/cimv2";
    // Searched, in order, for included files not found beside the file that
    // includes them.
    std::vector<std::string> includePaths;
};

class RepositoryBuilder;

// Compiles MOF files into one repository. Every file adds to what the
// earlier ones defined; the first error stops the compilation of that file
// with a MofError naming file, line and column.
//
// Pragmas: include("path") reads another file, relative to the including
// one; namespace("name") directs the following definitions of the same
// file into that namespace (an included file starts in the namespace of the
// line that includes it, and the includer's namespace is back in force
// after it); locale and instancelocale are accepted and have no effect;
// any other pragma is ignored with a warning.
class MofCompiler {
public:
    explicit MofCompiler(MofCompilerOptions options = {});
    ~MofCompiler();
    MofCompiler(const MofCompiler&) = delete;
    MofCompiler& operator=(const MofCompiler&) = delete;

    void compileFile(const std::string& path);
    // Compiles text as if it were the file fileName (which need not exist;
    // includes are resolved from its directory).
    void compileText(const std::string& text, const std::string& fileName);

    // "file:line:column: warning: ..." lines, in the order they arose.
    const std::vector<std::string>& warnings() const { return _warnings; }

    // An immutable copy of everything compiled so far.
    ClassRepository repository() const;

private:
    struct FileContext;

    MofCompilerOptions _options;
    std::unique_ptr<RepositoryBuilder> _builder;
    std::vector<std::string> _warnings;
    std::vector<std::string> _openFiles; // include chain, to refuse cycles

    void compile(const std::string& text, const std::string& fileName,
                 const Pegasus::CIMNamespaceName& nameSpace);
    void compileIncluded(const std::string& path, const SourceLocation& from,
                         const Pegasus::CIMNamespaceName& nameSpace);
    void define(const ast::Production& production, const Pegasus::CIMNamespaceName& nameSpace);
    void applyPragma(const ast::Pragma& pragma, FileContext& context);
    std::string resolveInclude(const std::string& name, const std::string& includer,
                               const SourceLocation& from) const;
};

} // namespace ksv::mof

#endif
