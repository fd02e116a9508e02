// Inheritance as the compiler resolves it: feature order, class origin,
// propagated flags, overrides, qualifier propagation and flavors, keys,
// references and methods; and the definitions it must refuse.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

const char* const hierarchy = R"(
[Abstract, Description("root")]
class T_Base {
    [Key, MaxLen(16)] string Id;
    [Description("base size"), Units("Bytes")] uint64 Size = 1;
    string Untouched;
    uint32 Ping([IN] uint8 Count, [IN(false), OUT] string Reply[]);
};

class T_Child : T_Base {
    [Override("Size"), Description("child size")] uint64 Size = 2;
    uint16 Extra;
};

class T_Grandchild : T_Child {
    [Override("Extra")] uint16 Extra = 7;
};

[Association, Aggregation]
class T_Link {
    [Key, Aggregate] T_Base REF Left;
    [Key] T_Base REF Right;
};

[Association]
class T_ChildLink : T_Link {
    [Override("Left")] T_Child REF Left;
};
)";

class ClassResolution : public MofTest {
protected:
    void SetUp() override {
        MofTest::SetUp();
        repository = compile(hierarchy);
    }

    CIMClass full(const char* className) {
        return repository.getClass(testNamespace, className, false, true, true);
    }

    static std::string propertyNames(const CIMClass& cimClass) {
        std::string names;
        for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i)
            names += utf8(cimClass.getProperty(i).getName().getString()) + " ";
        return names;
    }

    ClassRepository repository;
};

TEST_F(ClassResolution, InheritedPropertiesComeFirstWithTheirOriginAndPropagated) {
    CIMClass child = full("T_Child");
    EXPECT_EQ(propertyNames(child), "Id Untouched Size Extra ");
    struct Expected {
        const char* name;
        const char* origin;
        bool propagated;
    };
    for (const Expected& e :
         {Expected{"Id", "T_Base", true}, Expected{"Untouched", "T_Base", true},
          Expected{"Size", "T_Base", false}, Expected{"Extra", "T_Child", false}}) {
        CIMConstProperty property = child.getProperty(child.findProperty(e.name));
        EXPECT_EQ(utf8(property.getClassOrigin().getString()), e.origin) << e.name;
        EXPECT_EQ(property.getPropagated(), e.propagated) << e.name;
    }
}

TEST_F(ClassResolution, OverridesReplaceDefaultsDownTheHierarchy) {
    CIMClass grandchild = full("T_Grandchild");
    CIMConstProperty size = grandchild.getProperty(grandchild.findProperty("size"));
    EXPECT_EQ(utf8(size.getValue().toString()), "2");
    EXPECT_TRUE(size.getPropagated());
    CIMConstProperty extra = grandchild.getProperty(grandchild.findProperty("Extra"));
    EXPECT_EQ(utf8(extra.getValue().toString()), "7");
    EXPECT_EQ(utf8(extra.getClassOrigin().getString()), "T_Child");
    EXPECT_FALSE(extra.getPropagated());
}

TEST_F(ClassResolution, QualifiersPropagateByFlavor) {
    CIMClass child = full("T_Child");
    EXPECT_FALSE(child.isAbstract()) << "Abstract is restricted to the class that says it";
    EXPECT_TRUE(full("T_Base").isAbstract());
    EXPECT_EQ(qualifierText(child, "Description"), "root");
    EXPECT_TRUE(child.getQualifier(child.findQualifier("Description")).getPropagated());

    CIMConstProperty size = child.getProperty(child.findProperty("Size"));
    EXPECT_EQ(qualifierText(size, "Description"), "child size");
    EXPECT_FALSE(size.getQualifier(size.findQualifier("Description")).getPropagated());
    EXPECT_EQ(qualifierText(size, "Units"), "Bytes");
    EXPECT_TRUE(size.getQualifier(size.findQualifier("Units")).getPropagated());

    Array<CIMName> keys;
    full("T_Grandchild").getKeyNames(keys);
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(utf8(keys[0].getString()), "Id");
}

TEST_F(ClassResolution, AssociationsNarrowTheirReferences) {
    CIMClass link = full("T_ChildLink");
    EXPECT_TRUE(link.isAssociation());
    EXPECT_EQ(qualifierText(link, "Aggregation"), "TRUE");
    CIMConstProperty left = link.getProperty(link.findProperty("Left"));
    EXPECT_EQ(left.getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(utf8(left.getReferenceClassName().getString()), "T_Child");
    EXPECT_EQ(qualifierText(left, "Key"), "TRUE");
    EXPECT_EQ(qualifierText(left, "Aggregate"), "TRUE");
    CIMConstProperty right = link.getProperty(link.findProperty("Right"));
    EXPECT_EQ(utf8(right.getReferenceClassName().getString()), "T_Base");
}

TEST_F(ClassResolution, MethodsKeepParametersAndAreInherited) {
    CIMClass child = full("T_Child");
    CIMConstMethod ping = child.getMethod(child.findMethod("Ping"));
    EXPECT_EQ(ping.getType(), CIMTYPE_UINT32);
    EXPECT_TRUE(ping.getPropagated());
    EXPECT_EQ(utf8(ping.getClassOrigin().getString()), "T_Base");
    ASSERT_EQ(ping.getParameterCount(), 2u);
    CIMConstParameter count = ping.getParameter(0);
    EXPECT_EQ(count.getType(), CIMTYPE_UINT8);
    EXPECT_EQ(qualifierText(count, "In"), "TRUE");
    CIMConstParameter reply = ping.getParameter(1);
    EXPECT_TRUE(reply.isArray());
    EXPECT_EQ(qualifierText(reply, "In"), "FALSE");
    EXPECT_EQ(qualifierText(reply, "Out"), "TRUE");
}

TEST_F(ClassResolution, RefusedDefinitionsNameTheirLine) {
    struct Case {
        const char* text;
        unsigned line;
        const char* expected;
    };
    const Case cases[] = {
        {"\nclass T_Child : T_Base { };", 2, "class T_Child is already defined at test.mof:10:"},
        {"class X : T_Nowhere { };", 1, "superclass T_Nowhere of class X is not defined"},
        {"\n[Colour(\"red\")] class X { };", 2, "qualifier Colour is not declared in namespace"},
        {"[Key] class X { };", 1, "qualifier Key is not allowed in scope class"},
        {"class X : T_Base {\n [Override(\"Nothing\")] string Nothing; };", 2,
         "X.Nothing is marked Override, but no superclass of X has a property named Nothing"},
        {"class X : T_Base {\n\n string Untouched; };", 3,
         "X.Untouched redefines the inherited property without the Override qualifier"},
        {"class X : T_Base { [Override(\"Id\")] string Untouched; };", 1,
         "names Id instead of Untouched"},
        {"class X : T_Base {\n [Override(\"Size\")] uint32 Size; };", 2,
         "X.Size is declared uint32 but the inherited property is uint64"},
        {"class X {\n T_Base REF R; };", 2, "class X is no association but declares reference R"},
        {"[Association] class X { [Key] T_None REF R; };", 1, "class T_None named by a reference"},
        {"[Association] class X : T_ChildLink {\n [Override(\"Left\")] T_Base REF Left; };", 2,
         "must refer to T_Child or a subclass of it, not T_Base"},
        {"class X : T_Child {\n [Key] string Other; };", 2,
         "class X adds key property Other, but its superclass T_Child already has keys"},
        {"class X : T_Child { [Override(\"Untouched\"), Key] string Untouched; };", 1,
         "adds key property Untouched"},
        {"[Association(false)] class X : T_Link { };", 1,
         "changes the inherited value, but it has flavor DisableOverride"},
        {"class X : T_Base { [Override(\"Id\"), Key : EnableOverride] string Id; };", 1,
         "has flavor DisableOverride and cannot be made overridable"},
        {"class X { string A;\n string a; };", 2, "property X.a is declared twice"},
        {"[Description(\"a\"), description(\"b\")] class X { };", 1,
         "qualifier description appears twice on class X"},
        {"class X { uint32 M([IN] T_None REF R); };", 1, "class T_None named by a reference"},
        {"\nQualifier Key : boolean = false, Scope(property);", 2,
         "qualifier Key is already defined at"},
        {"Qualifier Q : string, Scope(nowhere);", 1, "unknown scope 'nowhere'"},
        {"class X {\n [MaxLen(\"x\")] string S; };", 2, "expected a value of type uint32"},
    };
    for (const Case& c : cases) {
        MofError error = errorOf(c.text, "bad.mof");
        EXPECT_EQ(error.location().file, "bad.mof") << c.text;
        EXPECT_EQ(error.location().line, c.line) << c.text;
        EXPECT_NE(error.message().find(c.expected), std::string::npos)
            << c.text << "\n  gave: " << error.what();
    }
}

} // namespace
} // namespace ksv::mof::test
