#ifndef KSV_TESTS_MOFTESTSUPPORT_H
#define KSV_TESTS_MOFTESTSUPPORT_H

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>

#include "mof_compiler/MofCompiler.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof::test {

// The error the operation must raise.
template <typename Error = MofError, typename Operation>
Error errorRaisedBy(Operation operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    if constexpr (std::is_same_v<Error, MofError>)
        return MofError(SourceLocation{}, "none");
    else
        return Error();
}

inline const char* testNamespace = "root/test";

inline std::string shippedMof(const std::string& relative) {
    return std::string(KSV_SOURCE_DIR) + "/mof/" + relative;
}

// A compiler whose test namespace already holds the DMTF qualifier
// declarations, so that test text starts at its own line 1.
class MofTest : public ::testing::Test {
protected:
    MofCompiler compiler{MofCompilerOptions{testNamespace, {}}};

    void SetUp() override { compiler.compileFile(shippedMof("dmtf/CIM_Qualifiers.mof")); }

    ClassRepository compile(const std::string& text) {
        compiler.compileText(text, "test.mof");
        return compiler.repository();
    }

    Pegasus::CIMClass fullClass(const std::string& text, const char* className) {
        return compile(text).getClass(testNamespace, className, false, true, true);
    }

    // The error the text must cause.
    MofError errorOf(const std::string& text, const std::string& fileName = "test.mof") {
        return errorRaisedBy([&] { compiler.compileText(text, fileName); });
    }
};

// The property's qualifier value as text, "" when absent.
template <typename Element>
std::string qualifierText(const Element& element, const char* name) {
    using namespace Pegasus;
    Uint32 index = element.findQualifier(CIMName(name));
    if (index == PEG_NOT_FOUND)
        return "";
    return utf8(element.getQualifier(index).getValue().toString());
}

} // namespace ksv::mof::test

#endif
