// Lexing, parsing and typing of MOF literals, seen through the compiled
// values, and the positions that syntax errors report.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <cstring>

#include "MofTestSupport.h"
#include "mof_compiler/MofParser.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

class MofSyntax : public MofTest {
protected:
    // The default value of property P of a one-property class.
    CIMValue defaultOf(const std::string& declaration) {
        std::string name = "C" + std::to_string(++_classes);
        CIMClass cimClass = fullClass("class " + name + " { " + declaration + " };", name.c_str());
        return cimClass.getProperty(cimClass.findProperty("P")).getValue();
    }

private:
    int _classes = 0;
};

TEST_F(MofSyntax, IntegerRangesOfEveryType) {
    struct Case {
        const char* type;
        const char* lowest;
        const char* highest;
        const char* belowLowest;
        const char* aboveHighest;
    };
    const Case cases[] = {
        {"uint8", "0", "255", "-1", "256"},
        {"sint8", "-128", "127", "-129", "128"},
        {"uint16", "0", "65535", "-1", "65536"},
        {"sint16", "-32768", "32767", "-32769", "32768"},
        {"uint32", "0", "4294967295", "-1", "4294967296"},
        {"sint32", "-2147483648", "2147483647", "-2147483649", "2147483648"},
        {"uint64", "0", "18446744073709551615", "-1", "18446744073709551616"},
        {"sint64", "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
         "9223372036854775808"},
    };
    for (const Case& c : cases) {
        std::string type = c.type;
        EXPECT_EQ(utf8(defaultOf(type + " P = " + c.lowest + ";").toString()), c.lowest);
        EXPECT_EQ(utf8(defaultOf(type + " P = " + c.highest + ";").toString()), c.highest);
        for (const char* outside : {c.belowLowest, c.aboveHighest}) {
            MofError error = errorOf("class Out { " + type + " P = " + outside + "; };");
            EXPECT_NE(error.message().find("out of range"), std::string::npos)
                << type << " " << outside << ": " << error.what();
        }
    }
}

TEST_F(MofSyntax, LiteralsOfEveryKindTakeTheDeclaredType) {
    const std::pair<const char*, const char*> cases[] = {
        {"uint8 P = 0x1F;", "31"},
        {"uint8 P = 101b;", "5"},
        {"uint8 P = 017;", "15"},
        {"sint16 P = -0x10;", "-16"},
        {"uint32 P = +42;", "42"},
        {"sint32 P = 0;", "0"},
        {R"(string P = "a\tb\"c\x41" "def";)", "a\tb\"cAdef"},
        {R"(char16 P = '\n';)", "\n"},
        {"real64 P = -1.5e3;", "-1.5000000000000000e+03"},
        {"boolean P = TRUE;", "TRUE"},
        {"uint16 P[] = {1, 2, 3};", "1 2 3 "},
        {R"(datetime P = "20240102030405.000000+000";)", "20240102030405.000000+000"},
    };
    for (const auto& [declaration, text] : cases) {
        CIMValue value = defaultOf(declaration);
        EXPECT_EQ(utf8(value.toString()), text) << declaration;
        const std::string type(declaration, std::strchr(declaration, ' '));
        EXPECT_EQ(cimTypeToString(value.getType()), type) << declaration;
        EXPECT_EQ(value.isArray(), std::strstr(declaration, "[]") != nullptr) << declaration;
    }
    CIMValue null = defaultOf("string P = NULL;");
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.getType(), CIMTYPE_STRING);
    CIMValue empty = defaultOf("string P[] = {};");
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(empty.getArraySize(), 0u);
    CIMValue fixed = defaultOf("uint8 P[2];");
    EXPECT_TRUE(fixed.isNull() && fixed.isArray());
    CIMClass upper = fullClass("/* a comment\n over two lines */ CLASS Upper {\n"
                               "  // one line\n  [KEY] String Id;\n};",
                               "Upper");
    EXPECT_EQ(upper.getPropertyCount(), 1u) << "keywords ignore case";
}

TEST_F(MofSyntax, ValuesOfTheWrongTypeAreRefusedAtTheirPosition) {
    struct Case {
        const char* declaration;
        unsigned column;
        const char* expected;
    };
    const Case cases[] = {
        {R"(uint16 P = "7";)", 24, "expected a value of type uint16, found string \"7\""},
        {"string P = TRUE;", 24, "expected a value of type string, found TRUE"},
        {"uint8 P = {1};", 23, "expected a value of type uint8, found array value"},
        {"uint8 P[] = 1;", 25, "expected a value of type uint8[], found integer 1"},
        {"uint8 P[] = {1, NULL};", 29, "array elements cannot be NULL"},
        {"uint8 P[2] = {1, 2, 3};", 26, "has 3 elements, its array size is 2"},
        {"real32 P = 1e39;", 24, "out of range for type real32"},
        {R"(datetime P = "2024";)", 26, "is not a CIM datetime value"},
        {R"(char16 P = "x";)", 24, "expected a value of type char16"},
    };
    for (const Case& c : cases) {
        MofError error = errorOf(std::string("class Bad { ") + c.declaration + " };");
        EXPECT_EQ(error.location().line, 1u) << c.declaration;
        EXPECT_EQ(error.location().column, c.column) << c.declaration;
        EXPECT_NE(error.message().find(c.expected), std::string::npos) << error.what();
    }
}

TEST(MofParser, SyntaxErrorsNameFileLineColumnAndWhatWasExpected) {
    struct Case {
        const char* text;
        unsigned line;
        unsigned column;
        const char* expected;
    };
    const Case cases[] = {
        {"class A {\n  uint16 P\n};", 3, 1, "expected ';' after property P, found '}'"},
        {"/* one\ntwo\n*/ class X { uint16 P }; ", 3, 23, "expected ';' after property P"},
        {"class A {\n  uint17 P;\n};", 2, 3, "expected a data type, found 'uint17'"},
        {"class A { uint16 P; }", 1, 22, "expected ';' after the class body, found end of file"},
        {"\n\n  /* never closed", 3, 3, "unterminated comment"},
        {"class A { string P = \"open\n\"; };", 1, 22, "unterminated string"},
        {"class A { string P = \"\\q\"; };", 1, 23, "unknown escape sequence '\\q'"},
        {"class A { uint8 P = 12ab; };", 1, 21, "malformed integer '12ab'"},
        {"class A { char16 P = 'ab'; };", 1, 22, "more than one character"},
        {"#pragmo include(\"x\")", 1, 1, "expected '#pragma'"},
        {"#pragma include(x)", 1, 17, "expected a string as the pragma's parameter"},
        {"association A {};", 1, 1, "expected 'class', 'instance', 'qualifier' or '#pragma'"},
        {"[Key] instance of A { };", 1, 2, "qualifiers on instances are not supported"},
    };
    for (const Case& c : cases) {
        MofError error = errorRaisedBy([&] { parseMof(c.text, "syntax.mof"); });
        EXPECT_EQ(error.location().file, "syntax.mof");
        EXPECT_EQ(error.location().line, c.line) << c.text;
        EXPECT_EQ(error.location().column, c.column) << c.text;
        EXPECT_NE(error.message().find(c.expected), std::string::npos) << error.what();
    }
}

} // namespace
} // namespace ksv::mof::test
