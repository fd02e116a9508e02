#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

// The recorded cases cover the common legal and illegal names.
TEST(CIMName, LegalityEdgesAndRefusalKeepTheOldName) {
    EXPECT_TRUE(CIMName::legal("_x9"));
    EXPECT_FALSE(CIMName::legal("a.b"));
    // U+FFF0 and above are not name characters.
    EXPECT_FALSE(CIMName::legal("a\xEF\xBF\xB0"));
    EXPECT_EQ("The CIM name is not valid: Disk Drive", messageOf([] { CIMName("Disk Drive"); }));
    CIMName name("Good");
    EXPECT_THROW(name = String("9bad"), InvalidNameException);
    EXPECT_EQ("Good", utf8(name.getString()));
    name.clear();
    EXPECT_TRUE(name.isNull());
    EXPECT_EQ(CIMName(), name);
}

TEST(CIMName, ComparesWithoutAsciiCaseAndKeepsItsSpelling) {
    EXPECT_TRUE(CIMName("DeviceID").equal(CIMName("DEVICEID")));
    EXPECT_NE(CIMName("DeviceID"), CIMName("DeviceID2"));
    EXPECT_NE(CIMName("\xC3\x9C"), CIMName("\xC3\xBC"));
    EXPECT_EQ("DeviceID", utf8(CIMName("DeviceID").getString()));
}

TEST(CIMNamespaceName, ElementsAreLegalNamesJoinedBySlash) {
    for (const char* good : {"root/ksv", "/root/ksv", "root"})
        EXPECT_TRUE(CIMNamespaceName::legal(good)) << good;
    for (const char* bad : {"", "/", "root/", "root//ksv", "//root", "root/9ksv", "root:ksv"})
        EXPECT_FALSE(CIMNamespaceName::legal(bad)) << bad;
    EXPECT_EQ("root/ksv", utf8(CIMNamespaceName("/root/ksv").getString()));
    EXPECT_EQ("invalid CIM namespace name: root/", messageOf([] { CIMNamespaceName("root/"); }));
    EXPECT_EQ(CIMNamespaceName("root/ksv"), CIMNamespaceName("ROOT/KSV"));
    EXPECT_NE(CIMNamespaceName("root/ksv"), CIMNamespaceName("root/ksv2"));
    EXPECT_TRUE(CIMNamespaceName().isNull());
    EXPECT_NE(CIMNamespaceName(), CIMNamespaceName("root"));
}

} // namespace
