// Classes and instances as the compiler resolves them and the repository
// hands them out: feature order, class origin, propagated flags, overrides,
// qualifier flavors, keys, references and methods; getClass options,
// enumerations and the CIM status of what is not there; and the definitions
// the compiler must refuse.

#include <functional>
#include <tuple>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/Exception.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

const char* const schema = R"(
[Abstract, Description("root")]
class T_Base {
    [Key, MaxLen(16)] string Id;
    [Description("base size"), Units("Bytes"), ValueMap {"1", "2"}] uint64 Size = 1;
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

class R_Module { [Key] string Name; string Location; };
class R_Capability {
    [Key] string Module;
    [Key] string Id;
    uint16 Types[];
    string Namespaces[];
};
class R_SubCapability : R_Capability { };
[Association] class R_Uses { [Key] R_Module REF Module; [Key] R_Capability REF Capability; };

instance of R_Module as $Module { Name = "m"; };
instance of R_Capability as $First { Module = "m"; Id = "1"; Types = {2, 3}; };
instance of R_SubCapability { Module = "m"; Id = "2"; };
instance of R_Uses { Module = $Module; Capability = $First; };
)";

class ClassResolution : public MofTest {
protected:
    void SetUp() override {
        MofTest::SetUp();
        repository = compile(schema);
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

    static Uint32 qualifierCount(const CIMClass& cimClass) {
        Uint32 count = cimClass.getQualifierCount();
        for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i)
            count += cimClass.getProperty(i).getQualifierCount();
        for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i) {
            CIMConstMethod method = cimClass.getMethod(i);
            count += method.getQualifierCount();
            for (Uint32 j = 0; j < method.getParameterCount(); ++j)
                count += method.getParameter(j).getQualifierCount();
        }
        return count;
    }

    static std::string names(const Array<CIMName>& list) {
        std::string text;
        for (Uint32 i = 0; i < list.size(); ++i)
            text += utf8(list[i].getString()) + " ";
        return text;
    }

    ClassRepository repository;
};

TEST_F(ClassResolution, InheritedPropertiesComeFirstAndOverridesReplaceDefaults) {
    CIMClass child = full("T_Child");
    EXPECT_EQ(propertyNames(child), "Id Untouched Size Extra ");
    const std::tuple<const char*, const char*, bool> rows[] = {{"Id", "T_Base", true},
                                                               {"Untouched", "T_Base", true},
                                                               {"Size", "T_Base", false},
                                                               {"Extra", "T_Child", false}};
    for (const auto& [name, origin, propagated] : rows) {
        CIMConstProperty property = child.getProperty(child.findProperty(name));
        EXPECT_EQ(utf8(property.getClassOrigin().getString()), origin) << name;
        EXPECT_EQ(property.getPropagated(), propagated) << name;
    }
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
    EXPECT_EQ(qualifierText(size, "ValueMap"), "1 2 ");
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

TEST_F(ClassResolution, GetClassOptionsFilterIndependently) {
    CIMClass local = repository.getClass(testNamespace, "T_Child", true, true, true);
    EXPECT_EQ(propertyNames(local), "Size Extra ");
    EXPECT_EQ(local.getMethodCount(), 0u);
    EXPECT_EQ(local.findQualifier("Description"), PEG_NOT_FOUND) << "propagated class qualifier";
    CIMConstProperty size = local.getProperty(local.findProperty("Size"));
    EXPECT_EQ(qualifierText(size, "Description"), "child size");
    EXPECT_EQ(size.findQualifier("Units"), PEG_NOT_FOUND) << "propagated property qualifier";

    CIMClass bare = repository.getClass(testNamespace, "T_Child", false, false, false);
    EXPECT_EQ(bare.getPropertyCount(), 4u);
    EXPECT_EQ(qualifierCount(bare), 0u);
    for (Uint32 i = 0; i < bare.getPropertyCount(); ++i)
        EXPECT_TRUE(bare.getProperty(i).getClassOrigin().isNull());
    EXPECT_TRUE(bare.getMethod(0).getClassOrigin().isNull());

    Array<CIMName> wanted;
    wanted.append("extra");
    wanted.append("NoSuchProperty");
    CIMClass listed =
        repository.getClass(testNamespace, "T_Child", false, true, true, CIMPropertyList(wanted));
    EXPECT_EQ(propertyNames(listed), "Extra ");
    EXPECT_EQ(listed.getMethodCount(), 1u) << "a property list leaves methods alone";
    EXPECT_GT(qualifierCount(listed), 0u);
    EXPECT_EQ(repository
                  .getClass(testNamespace, "T_Child", false, true, true,
                            CIMPropertyList(Array<CIMName>()))
                  .getPropertyCount(),
              0u);

    // Names ignore case, and each answer is a copy of its own.
    CIMClass first = repository.getClass("ROOT/Test", "t_CHILD", false, true, true);
    EXPECT_EQ(utf8(first.getClassName().getString()), "T_Child");
    first.removeProperty(0);
    EXPECT_EQ(full("T_Child").getPropertyCount(), 4u);
}

TEST_F(ClassResolution, ClassEnumerationFollowsDefinitionOrder) {
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, CIMName(), false)),
              "T_Base T_Link R_Module R_Capability R_Uses ");
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, "T_Base", false)), "T_Child ");
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, "T_Base", true)),
              "T_Child T_Grandchild ");
    EXPECT_EQ(repository.enumerateClassNames(testNamespace, CIMName(), true).size(), 9u);
    Array<CIMClass> local =
        repository.enumerateClasses(testNamespace, "T_Base", true, true, false, false);
    ASSERT_EQ(local.size(), 2u);
    EXPECT_EQ(propertyNames(local[1]), "Extra ") << "T_Grandchild defines only its override";
    EXPECT_TRUE(repository.isSubclassOf(testNamespace, "T_Grandchild", "t_base"));
    EXPECT_TRUE(repository.isSubclassOf(testNamespace, "T_Base", "T_Base"));
    EXPECT_FALSE(repository.isSubclassOf(testNamespace, "T_Base", "T_Child"));
    EXPECT_FALSE(repository.isSubclassOf(testNamespace, "T_Nowhere", "T_Base"));
}

TEST_F(ClassResolution, QualifierDeclarationsKeepTypeScopeAndFlavor) {
    CIMQualifierDecl key = repository.getQualifier(testNamespace, "KEY");
    EXPECT_EQ(key.getType(), CIMTYPE_BOOLEAN);
    EXPECT_TRUE(key.getScope().hasScope(CIMScope::PROPERTY));
    EXPECT_FALSE(key.getScope().hasScope(CIMScope::CLASS));
    EXPECT_TRUE(key.getFlavor().hasFlavor(CIMFlavor::DISABLEOVERRIDE));
    CIMQualifierDecl values = repository.getQualifier(testNamespace, "Values");
    EXPECT_TRUE(values.isArray());
    EXPECT_TRUE(values.getFlavor().hasFlavor(CIMFlavor::TRANSLATABLE));
    EXPECT_FALSE(repository.getQualifier(testNamespace, "Abstract")
                     .getFlavor()
                     .hasFlavor(CIMFlavor::TOSUBCLASS));
}

TEST_F(ClassResolution, InstancesAreEnumeratedWithSubclassesAndFoundByKeys) {
    Array<CIMObjectPath> paths = repository.enumerateInstanceNames(testNamespace, "R_Capability");
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(utf8(paths[1].getClassName().getString()), "R_SubCapability");
    EXPECT_EQ(utf8(paths[0].getNameSpace().getString()), testNamespace);

    CIMInstance first = repository.getInstance(
        testNamespace, CIMObjectPath("//otherhost/root/test:R_Capability.Id=\"1\",Module=\"m\""));
    CIMConstProperty types = first.getProperty(first.findProperty("Types"));
    EXPECT_EQ(utf8(types.getValue().toString()), "2 3 ");
    EXPECT_FALSE(types.getPropagated());
    CIMConstProperty unset = first.getProperty(first.findProperty("Namespaces"));
    EXPECT_TRUE(unset.getValue().isNull());
    EXPECT_TRUE(unset.getPropagated()) << "a property the MOF leaves out takes the class default";

    CIMInstance uses = repository.enumerateInstances(testNamespace, "R_Uses")[0];
    CIMObjectPath capability;
    uses.getProperty(uses.findProperty("Capability")).getValue().get(capability);
    EXPECT_TRUE(capability.identical(first.getPath())) << "an alias stands for the path";
}

TEST_F(ClassResolution, AbsentThingsGiveTheirCimStatus) {
    const std::pair<std::function<void()>, CIMStatusCode> cases[] = {
        {[&] { repository.getClass("root/none", "T_Base", false, true, true); },
         CIM_ERR_INVALID_NAMESPACE},
        {[&] { repository.getClass(testNamespace, "T_None", false, true, true); },
         CIM_ERR_NOT_FOUND},
        {[&] { repository.enumerateClassNames(testNamespace, "T_None", false); },
         CIM_ERR_INVALID_CLASS},
        {[&] { repository.enumerateInstances(testNamespace, "T_None"); }, CIM_ERR_INVALID_CLASS},
        {[&] { repository.getQualifier(testNamespace, "Colour"); }, CIM_ERR_NOT_FOUND},
        {[&] { repository.getInstance(testNamespace, CIMObjectPath("R_Module.Name=\"other\"")); },
         CIM_ERR_NOT_FOUND},
    };
    for (const auto& [operation, code] : cases)
        EXPECT_EQ(errorRaisedBy<CIMException>(operation).getCode(), code);
}

TEST_F(ClassResolution, RefusedDefinitionsNameFileAndLine) {
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
        {"class X : T_Base {\n [Override(\"N\")] string N; };", 2, "X.N is marked Override"},
        {"class X : T_Base {\n\n string Untouched; };", 3, "without the Override qualifier"},
        {"class X : T_Base { [Override(\"Id\")] string Size; };", 1, "names Id instead of Size"},
        {"class X : T_Base {\n [Override(\"Size\")] uint32 Size; };", 2,
         "X.Size is declared uint32 but the inherited property is uint64"},
        {"class X {\n T_Base REF R; };", 2, "class X is no association but declares reference R"},
        {"[Association] class X { [Key] T_None REF R; };", 1, "class T_None named by a reference"},
        {"[Association] class X : T_ChildLink {\n [Override(\"Left\")] T_Base REF Left; };", 2,
         "must refer to T_Child or a subclass of it, not T_Base"},
        {"class X : T_Child {\n [Key] string O; };", 2, "superclass T_Child already has keys"},
        {"class X : T_Child { [Override(\"Untouched\"), Key] string Untouched; };", 1,
         "adds key property Untouched"},
        {"[Association(false)] class X : T_Link { };", 1, "changes the inherited value"},
        {"class X : T_Base { [Override(\"Id\"), Key : ToSubclass EnableOverride] string Id; };", 1,
         "has flavor DisableOverride and cannot be made overridable"},
        {"class X { string A;\n string a; };", 2, "property X.a is declared twice"},
        {"[Description(\"a\"), description(\"b\")] class X { };", 1, "appears twice on class X"},
        {"class X { uint32 M([IN] T_None REF R); };", 1, "class T_None named by a reference"},
        {"\nQualifier Key : boolean = false, Scope(property);", 2, "Key is already defined at"},
        {"Qualifier Q : string, Scope(nowhere);", 1, "unknown scope 'nowhere'"},
        {"class X {\n [MaxLen(\"x\")] string S; };", 2, "expected a value of type uint32"},
        {"\ninstance of R_Nowhere { Name = \"x\"; };", 2, "class R_Nowhere, which is not defined"},
        {"[Abstract] class R_Abstract { [Key] string K; };\ninstance of R_Abstract { K = \"x\"; };",
         2, "class R_Abstract is abstract"},
        {"instance of R_Module {\n Name = \"x\";\n Colour = \"red\"; };", 3,
         "has no property Colour"},
        {"instance of R_Module { Name = \"x\";\n name = \"y\"; };", 2,
         "property name is given twice"},
        {"instance of R_Module {\n Name = 7; };", 2, "expected a value of type string"},
        {"instance of R_Module { Location = \"x\"; };", 1, "has no value for key property Name"},
        {"\n\ninstance of R_Module { Name = \"m\"; };", 3, "is already defined at test.mof:"},
        {"instance of R_Uses {\n Module = $Nobody; Capability = $First; };", 2,
         "alias $Nobody is not defined"},
        {"instance of R_Module as $Module { Name = \"n\"; };", 1, "alias $Module is already used"},
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
