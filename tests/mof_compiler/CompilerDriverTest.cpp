// Files, includes and pragmas: where definitions land and which file and
// line an error names.

#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

namespace fs = std::filesystem;
using namespace Pegasus;

// A directory of MOF files that lives as long as the test, named after it.
struct MofTree {
    const fs::path root = fs::temp_directory_path() /
                          ("ksv-mof-" + std::to_string(getpid()) + "-" +
                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
    ~MofTree() { fs::remove_all(root); }

    std::string write(const std::string& relative, const std::string& text) const {
        fs::create_directories((root / relative).parent_path());
        std::ofstream(root / relative) << text;
        return path(relative);
    }
    std::string path(const std::string& relative) const { return (root / relative).string(); }
};

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

TEST(MofCompilerFiles, ErrorsNameTheFileAndLineWhereTheyArise) {
    MofTree tree;
    tree.write("top.mof", "// top\n#pragma include (\"inner.mof\")\n");
    tree.write("inner.mof", "class Good { string K; };\n\nclass Bad : Missing { };\n");
    tree.write("absent.mof", "\n#pragma include (\"nowhere.mof\")\n");
    tree.write("namespace.mof", "#pragma namespace (\"root//x\")\n");
    tree.write("cycle-a.mof", "#pragma include (\"cycle-b.mof\")\n");
    tree.write("cycle-b.mof", "\n#pragma include (\"cycle-a.mof\")\n");
    const struct {
        const char* compiled;
        const char* file;
        unsigned line;
        const char* expected;
    } cases[] = {
        {"top.mof", "inner.mof", 3, "superclass Missing of class Bad"},
        {"absent.mof", "absent.mof", 2, "included file nowhere.mof not found"},
        {"namespace.mof", "namespace.mof", 1, "\"root//x\" is not a valid namespace name"},
        {"cycle-a.mof", "cycle-b.mof", 2, "is included again while it is being compiled"},
        {"never-written.mof", "never-written.mof", 0, "cannot read file"},
    };
    for (const auto& c : cases) {
        MofCompiler compiler;
        MofError error = errorRaisedBy([&] { compiler.compileFile(tree.path(c.compiled)); });
        EXPECT_EQ(error.location().file, tree.path(c.file)) << c.compiled;
        EXPECT_EQ(error.location().line, c.line) << c.compiled;
        EXPECT_NE(error.message().find(c.expected), std::string::npos) << error.what();
        EXPECT_EQ(error.what(), error.location().toString() + ": error: " + error.message());
    }
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
