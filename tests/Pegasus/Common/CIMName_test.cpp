#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string utf8(const String& s) {
    return std::string(static_cast<const char*>(s.getCString()));
}

TEST(CIMNameRules, LegalNamesStartWithLetterUnderscoreOrNonAscii) {
    EXPECT_TRUE(CIMName::legal("KSV_DiskDrive"));
    EXPECT_TRUE(CIMName::legal("_x9"));
    EXPECT_TRUE(CIMName::legal("\xC3\x9C"
                               "ber"));
    EXPECT_FALSE(CIMName::legal(""));
    EXPECT_FALSE(CIMName::legal("9abc"));
    EXPECT_FALSE(CIMName::legal("a-b"));
    EXPECT_FALSE(CIMName::legal("a.b"));
    EXPECT_FALSE(CIMName::legal("a b"));
    // U+FFF0 and above are not name characters.
    EXPECT_FALSE(CIMName::legal("a\xEF\xBF\xB0"));
}

TEST(CIMNameRules, IllegalNamesAreRefusedWithTheName) {
    try {
        CIMName name("Disk Drive");
        ADD_FAILURE();
    } catch (const InvalidNameException& e) {
        EXPECT_EQ("The CIM name is not valid: Disk Drive", utf8(e.getMessage()));
    }
    CIMName name("Good");
    EXPECT_THROW(name = String("9bad"), InvalidNameException);
    EXPECT_EQ("Good", utf8(name.getString()));
}

TEST(CIMNameIdentity, NamesCompareWithoutRegardToAsciiCase) {
    EXPECT_EQ(CIMName("DeviceID"), CIMName("deviceid"));
    EXPECT_TRUE(CIMName("DeviceID").equal(CIMName("DEVICEID")));
    EXPECT_NE(CIMName("DeviceID"), CIMName("DeviceID2"));
    EXPECT_NE(CIMName("\xC3\x9C"), CIMName("\xC3\xBC"));
    // The spelling given is kept.
    EXPECT_EQ("DeviceID", utf8(CIMName("DeviceID").getString()));
}

TEST(CIMNameIdentity, NullNameUntilSet) {
    CIMName name;
    EXPECT_TRUE(name.isNull());
    name = CIMName("X");
    EXPECT_FALSE(name.isNull());
    name.clear();
    EXPECT_TRUE(name.isNull());
    EXPECT_EQ(CIMName(), CIMName());
}

TEST(CIMNamespaceNameRules, ElementsAreLegalNamesJoinedBySlash) {
    EXPECT_TRUE(CIMNamespaceName::legal("root/ksv"));
    EXPECT_TRUE(CIMNamespaceName::legal("/root/ksv"));
    EXPECT_TRUE(CIMNamespaceName::legal("root"));
    EXPECT_FALSE(CIMNamespaceName::legal(""));
    EXPECT_FALSE(CIMNamespaceName::legal("/"));
    EXPECT_FALSE(CIMNamespaceName::legal("root/"));
    EXPECT_FALSE(CIMNamespaceName::legal("root//ksv"));
    EXPECT_FALSE(CIMNamespaceName::legal("//root"));
    EXPECT_FALSE(CIMNamespaceName::legal("root/9ksv"));
    EXPECT_FALSE(CIMNamespaceName::legal("root:ksv"));
}

TEST(CIMNamespaceNameRules, LeadingSlashIsDroppedAndBadNamesRefused) {
    EXPECT_EQ("root/ksv", utf8(CIMNamespaceName("/root/ksv").getString()));
    try {
        CIMNamespaceName name("root/");
        ADD_FAILURE();
    } catch (const InvalidNamespaceNameException& e) {
        EXPECT_EQ("invalid CIM namespace name: root/", utf8(e.getMessage()));
    }
}

TEST(CIMNamespaceNameIdentity, NamespacesCompareWithoutRegardToCase) {
    EXPECT_EQ(CIMNamespaceName("root/ksv"), CIMNamespaceName("ROOT/KSV"));
    EXPECT_NE(CIMNamespaceName("root/ksv"), CIMNamespaceName("root/ksv2"));
    EXPECT_TRUE(CIMNamespaceName().isNull());
    EXPECT_NE(CIMNamespaceName(), CIMNamespaceName("root"));
}

} // namespace
