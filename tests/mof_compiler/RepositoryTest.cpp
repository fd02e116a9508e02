// The repository's read side: getClass options, class enumeration,
// qualifier declarations and instances, and the CIM status codes of what is
// not there.

#include <functional>

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
[Description("root")]
class T_Base {
    [Key] string Id;
    [Units("Bytes")] uint64 Size;
    uint32 Ping([IN] uint8 Count);
};
class T_Child : T_Base {
    [Override("Size"), Description("child")] uint64 Size;
    uint16 Extra;
};
class T_Grandchild : T_Child { };
class T_Other { [Key] string Name; };

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

class Repository : public MofTest {
protected:
    void SetUp() override {
        MofTest::SetUp();
        repository = compile(schema);
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

    static CIMStatusCode codeOf(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const CIMException& error) {
            return error.getCode();
        }
        return CIM_ERR_SUCCESS;
    }

    ClassRepository repository;
};

TEST_F(Repository, LocalOnlyKeepsWhatTheClassDefinesOrOverrides) {
    CIMClass child = repository.getClass(testNamespace, "T_Child", true, true, true);
    ASSERT_EQ(child.getPropertyCount(), 2u);
    EXPECT_NE(child.findProperty("Size"), PEG_NOT_FOUND);
    EXPECT_NE(child.findProperty("Extra"), PEG_NOT_FOUND);
    EXPECT_EQ(child.getMethodCount(), 0u);
    EXPECT_EQ(child.findQualifier("Description"), PEG_NOT_FOUND) << "propagated class qualifier";
    CIMConstProperty size = child.getProperty(child.findProperty("Size"));
    EXPECT_EQ(qualifierText(size, "Description"), "child");
    EXPECT_EQ(size.findQualifier("Units"), PEG_NOT_FOUND) << "propagated property qualifier";
}

TEST_F(Repository, QualifiersClassOriginsAndPropertyListFilterIndependently) {
    CIMClass bare = repository.getClass(testNamespace, "T_Child", false, false, false);
    EXPECT_EQ(bare.getPropertyCount(), 3u);
    EXPECT_EQ(qualifierCount(bare), 0u);
    for (Uint32 i = 0; i < bare.getPropertyCount(); ++i)
        EXPECT_TRUE(bare.getProperty(i).getClassOrigin().isNull());
    EXPECT_TRUE(bare.getMethod(0).getClassOrigin().isNull());

    Array<CIMName> wanted;
    wanted.append("extra");
    wanted.append("NoSuchProperty");
    CIMClass listed =
        repository.getClass(testNamespace, "T_Child", false, true, true, CIMPropertyList(wanted));
    ASSERT_EQ(listed.getPropertyCount(), 1u);
    EXPECT_EQ(utf8(listed.getProperty(0).getName().getString()), "Extra");
    EXPECT_EQ(listed.getMethodCount(), 1u) << "a property list leaves methods alone";
    EXPECT_GT(qualifierCount(listed), 0u);

    CIMClass none = repository.getClass(testNamespace, "T_Child", false, true, true,
                                        CIMPropertyList(Array<CIMName>()));
    EXPECT_EQ(none.getPropertyCount(), 0u);
}

TEST_F(Repository, LookupsIgnoreCaseAndReturnIndependentCopies) {
    CIMClass first = repository.getClass("ROOT/Test", "t_CHILD", false, true, true);
    EXPECT_EQ(utf8(first.getClassName().getString()), "T_Child");
    first.removeProperty(0);
    CIMClass second = repository.getClass(testNamespace, "T_Child", false, true, true);
    EXPECT_EQ(second.getPropertyCount(), 3u);
}

TEST_F(Repository, ClassEnumerationFollowsDefinitionOrder) {
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, CIMName(), false)),
              "T_Base T_Other R_Module R_Capability R_Uses ");
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, "T_Base", false)), "T_Child ");
    EXPECT_EQ(names(repository.enumerateClassNames(testNamespace, "T_Base", true)),
              "T_Child T_Grandchild ");
    EXPECT_EQ(repository.enumerateClassNames(testNamespace, CIMName(), true).size(), 8u);
    Array<CIMClass> local =
        repository.enumerateClasses(testNamespace, "T_Base", true, true, false, false);
    ASSERT_EQ(local.size(), 2u);
    EXPECT_EQ(local[1].getPropertyCount(), 0u) << "T_Grandchild defines nothing itself";
    EXPECT_TRUE(repository.isSubclassOf(testNamespace, "T_Grandchild", "t_base"));
    EXPECT_TRUE(repository.isSubclassOf(testNamespace, "T_Base", "T_Base"));
    EXPECT_FALSE(repository.isSubclassOf(testNamespace, "T_Base", "T_Child"));
    EXPECT_FALSE(repository.isSubclassOf(testNamespace, "T_Nowhere", "T_Base"));
}

TEST_F(Repository, QualifierDeclarationsKeepTypeScopeAndFlavor) {
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

TEST_F(Repository, InstancesAreEnumeratedWithSubclassesAndFoundByKeys) {
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

TEST_F(Repository, AbsentThingsGiveTheirCimStatus) {
    EXPECT_EQ(codeOf([&] { repository.getClass("root/none", "T_Base", false, true, true); }),
              CIM_ERR_INVALID_NAMESPACE);
    EXPECT_EQ(codeOf([&] { repository.getClass(testNamespace, "T_None", false, true, true); }),
              CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { repository.enumerateClassNames(testNamespace, "T_None", false); }),
              CIM_ERR_INVALID_CLASS);
    EXPECT_EQ(codeOf([&] { repository.enumerateInstances(testNamespace, "T_None"); }),
              CIM_ERR_INVALID_CLASS);
    EXPECT_EQ(codeOf([&] { repository.getQualifier(testNamespace, "Colour"); }), CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] {
                  repository.getInstance(testNamespace, CIMObjectPath("R_Module.Name=\"other\""));
              }),
              CIM_ERR_NOT_FOUND);
}

TEST_F(Repository, RefusedInstancesNameTheirLine) {
    struct Case {
        const char* text;
        unsigned line;
        const char* expected;
    };
    const Case cases[] = {
        {"\ninstance of R_Nowhere { Name = \"x\"; };", 2,
         "instance of class R_Nowhere, which is not defined"},
        {"[Abstract] class R_Abstract { [Key] string K; };\ninstance of R_Abstract { K = \"x\"; };",
         2, "class R_Abstract is abstract"},
        {"instance of R_Module {\n Name = \"x\";\n Colour = \"red\"; };", 3,
         "class R_Module has no property Colour"},
        {"instance of R_Module { Name = \"x\";\n name = \"y\"; };", 2,
         "property name is given twice"},
        {"instance of R_Module {\n Name = 7; };", 2, "expected a value of type string"},
        {"instance of R_Module { Location = \"x\"; };", 1, "has no value for key property Name"},
        {"\n\ninstance of R_Module { Name = \"m\"; };", 3,
         "R_Module.Name=\"m\" is already defined at test.mof:"},
        {"instance of R_Uses {\n Module = $Nobody; Capability = $First; };", 2,
         "alias $Nobody is not defined"},
        {"instance of R_Module as $Module { Name = \"n\"; };", 1, "alias $Module is already used"},
    };
    for (const Case& c : cases) {
        MofError error = errorOf(c.text, "bad.mof");
        EXPECT_EQ(error.location().line, c.line) << c.text;
        EXPECT_NE(error.message().find(c.expected), std::string::npos)
            << c.text << "\n  gave: " << error.what();
    }
}

} // namespace
} // namespace ksv::mof::test
