// Files, includes and pragmas: where definitions land and which file and
// line an error names.

#include <atomic>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

namespace fs = std::filesystem;
using namespace Pegasus;

// A directory of MOF files that lives as long as the test.
class MofTree {
public:
    MofTree() {
        static std::atomic<int> counter{0};
        _root = fs::temp_directory_path() /
                ("ksv-mof-" + std::to_string(getpid()) + "-" + std::to_string(counter++));
        fs::create_directories(_root);
    }
    ~MofTree() { fs::remove_all(_root); }

    std::string write(const std::string& relative, const std::string& text) const {
        fs::path path = _root / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
        return path.string();
    }
    std::string path(const std::string& relative) const { return (_root / relative).string(); }

private:
    fs::path _root;
};

MofError errorCompiling(MofCompiler& compiler, const std::string& file) {
    try {
        compiler.compileFile(file);
    } catch (const MofError& error) {
        return error;
    }
    ADD_FAILURE() << "no error compiling " << file;
    return MofError(SourceLocation{}, "none");
}

TEST(MofCompilerFiles, NamespacePragmasHoldUntilTheEndOfTheirFile) {
    MofTree tree;
    std::string top = tree.write("top.mof", "#pragma locale (\"en_US\")\n"
                                            "#pragma namespace (\"root/a\")\n"
                                            "#pragma include (\"sub/child.mof\")\n"
                                            "class InA2 { string K; };\n"
                                            "#pragma namespace (\"root/b\")\n"
                                            "class InB { string K; };\n");
    tree.write("sub/child.mof", "class InA1 { string K; };\n"
                                "#pragma namespace (\"root/c\")\n"
                                "class InC { string K; };\n");
    MofCompiler compiler;
    compiler.compileFile(top);
    ClassRepository repository = compiler.repository();
    EXPECT_TRUE(compiler.warnings().empty());
    for (auto [nameSpace, className] : {std::pair{"root/a", "InA1"}, std::pair{"root/a", "InA2"},
                                        std::pair{"root/b", "InB"}, std::pair{"root/c", "InC"}}) {
        EXPECT_NO_THROW(repository.getClass(nameSpace, className, false, true, true))
            << nameSpace << " " << className;
    }
    EXPECT_EQ(repository.enumerateNameSpaces().size(), 3u);
}

TEST(MofCompilerFiles, DefaultNamespaceAndIncludePathsComeFromTheOptions) {
    MofTree tree;
    tree.write("library/shared.mof", "class Shared { string K; };\n");
    std::string user = tree.write("user/user.mof", "#pragma include (\"shared.mof\")\n"
                                                   "class User : Shared { };\n");
    MofCompiler compiler(MofCompilerOptions{"root/elsewhere", {tree.path("library")}});
    compiler.compileFile(user);
    EXPECT_TRUE(compiler.repository().isSubclassOf("root/elsewhere", "User", "Shared"));
}

TEST(MofCompilerFiles, ErrorsInIncludedFilesNameThatFileAndLine) {
    MofTree tree;
    std::string top = tree.write("top.mof", "// top\n#pragma include (\"inner.mof\")\n");
    std::string inner = tree.write("inner.mof", "class Good { string K; };\n\n"
                                                "class Bad : Missing { };\n");
    MofCompiler compiler;
    MofError error = errorCompiling(compiler, top);
    EXPECT_EQ(error.location().file, inner);
    EXPECT_EQ(error.location().line, 3u);
    EXPECT_NE(std::string(error.what()).find(inner + ":3:1: error: superclass Missing"),
              std::string::npos)
        << error.what();
}

TEST(MofCompilerFiles, BadIncludesAndPragmasAreReportedAtThePragma) {
    MofTree tree;
    struct Case {
        const char* text;
        unsigned line;
        const char* expected;
    };
    tree.write("cycle-b.mof", "\n#pragma include (\"cycle-a.mof\")\n");
    tree.write("cycle-a.mof", "#pragma include (\"cycle-b.mof\")\n");
    const Case cases[] = {
        {"\n#pragma include (\"absent.mof\")\n", 2, "included file absent.mof not found"},
        {"#pragma namespace (\"root//x\")\n", 1, "\"root//x\" is not a valid namespace name"},
    };
    for (const Case& c : cases) {
        MofCompiler compiler;
        MofError error = errorCompiling(compiler, tree.write("case.mof", c.text));
        EXPECT_EQ(error.location().line, c.line) << c.text;
        EXPECT_NE(error.message().find(c.expected), std::string::npos) << error.what();
    }
    MofCompiler compiler;
    MofError cycle = errorCompiling(compiler, tree.path("cycle-a.mof"));
    EXPECT_EQ(cycle.location().file, tree.path("cycle-b.mof"));
    EXPECT_EQ(cycle.location().line, 2u);
    EXPECT_NE(cycle.message().find("is included again while it is being compiled"),
              std::string::npos)
        << cycle.what();

    MofError missing = errorCompiling(compiler, tree.path("never-written.mof"));
    EXPECT_NE(missing.message().find("cannot read file"), std::string::npos);
}

TEST(MofCompilerFiles, UnknownPragmasAreWarnedAboutAndIgnored) {
    MofCompiler compiler;
    compiler.compileText("\n#pragma instancelocale (\"en_US\")\n#pragma colour (\"red\")\n"
                         "class Kept { string K; };\n",
                         "pragmas.mof");
    ASSERT_EQ(compiler.warnings().size(), 1u);
    EXPECT_EQ(compiler.warnings()[0],
              "pragmas.mof:3:1: warning: pragma colour is not supported and was ignored");
    EXPECT_NO_THROW(compiler.repository().getClass("root/cimv2", "Kept", false, true, true));
}

} // namespace
} // namespace ksv::mof::test
