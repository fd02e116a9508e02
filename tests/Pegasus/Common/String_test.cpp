// Strings, names and arrays: the value types everything else is built of.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/InternalException.h>

#include "CommonTestSupport.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <cstdio>

PEGASUS_USING_PEGASUS;

namespace {

TEST(StringUtf8, DecodesEncodesAndKeepsLoneSurrogates) {
    // "Ü" takes two bytes, "€" three and "𝄞" four (a surrogate pair).
    const char* text = "\xC3\x9C-\xE2\x82\xAC-\xF0\x9D\x84\x9E";
    const String s(text);
    ASSERT_EQ(6u, s.size());
    EXPECT_EQ(0x00DC, Uint16(s[0]));
    EXPECT_EQ(0x20AC, Uint16(s[2]));
    EXPECT_EQ(0xD834, Uint16(s[4]));
    EXPECT_EQ(0xDD1E, Uint16(s[5]));
    EXPECT_EQ(text, utf8(s));
    const Char16 units[] = {Char16(0xD800), Char16('x'), Char16(0)};
    const String again(String(units).getCString());
    ASSERT_EQ(2u, again.size());
    EXPECT_EQ(0xD800, Uint16(again[0]));
    EXPECT_EQ("abc", utf8(String("abcdef", 3)));
    // Long ASCII runs are widened in blocks; what follows one is decoded all the same.
    const std::string afterRun = std::string(19, 'a') + text;
    EXPECT_EQ(afterRun, utf8(String(afterRun.c_str())));
    EXPECT_EQ(25u, String(afterRun.c_str()).size());
}

TEST(StringUtf8, InvalidBytesAndNullPointersAreRefused) {
    for (const char* bad : {"ab\xC0\xAF", "ab\xE2\x82", "ab\xF5\x80\x80\x80", "ab\xFF"}) {
        EXPECT_EQ(0u, messageOf([&] { String s(bad); })
                          .find("The byte sequence starting at index 2 is not valid UTF-8 "
                                "encoding: ab 0x"))
            << bad;
    }
    EXPECT_EQ(0u, messageOf([] {
                      String s("0123456789abcdefgh\xFF");
                  }).find("The byte sequence starting at index 18 is not valid"));
    EXPECT_THROW(String("\xC3\x9C", 1), Exception);
    const char* none = nullptr;
    const Char16* noUnits = nullptr;
    EXPECT_THROW(String s(none), NullPointer);
    EXPECT_THROW(String s(noUnits), NullPointer);
    String s;
    EXPECT_THROW(s.append(noUnits, 1), NullPointer);
}

TEST(StringCase, NoCaseOperationsFoldOnlyAsciiLetters) {
    EXPECT_TRUE(String::equalNoCase("KSV_DiskDrive", "ksv_diskdrive"));
    EXPECT_FALSE(String::equalNoCase("KSV_DiskDrive", "ksv_diskdrive2"));
    EXPECT_FALSE(String::equalNoCase("\xC3\x9C", "\xC3\xBC")); // Ü and ü
    // '_' sorts before letters once they are folded to lower case.
    EXPECT_LT(String::compareNoCase("A_b", "Ab"), 0);
    EXPECT_GT(String::compareNoCase("b", "A"), 0);
    String s("Mixed_Case-9\xC3\x9C");
    s.toLower();
    EXPECT_EQ("mixed_case-9\xC3\x9C", utf8(s));
    s.toUpper();
    EXPECT_EQ("MIXED_CASE-9\xC3\x9C", utf8(s));
}

TEST(StringCompare, OrdersByCodeUnitWithShorterFirst) {
    EXPECT_LT(String::compare("abc", "abd"), 0);
    EXPECT_LT(String::compare("ab", "abc"), 0);
    EXPECT_GT(String::compare("abc", "ab"), 0);
    EXPECT_EQ(0, String::compare("abcX", "abcY", 3));
    EXPECT_TRUE(String("a") < String("b"));
    EXPECT_TRUE(String("abc") != String("abC"));
}

TEST(StringSearch, FindReturnsFirstIndexOrNotFound) {
    const String s("root/ksv:KSV_DiskDrive.DeviceID");
    EXPECT_EQ(8u, s.find(':'));
    EXPECT_EQ(PEG_NOT_FOUND, s.find('#'));
    EXPECT_EQ(4u, s.find(String("/ksv")));
    EXPECT_EQ(PEG_NOT_FOUND, s.find(String("ksv/")));
    EXPECT_EQ(PEG_NOT_FOUND, s.find(String()));
    EXPECT_EQ(13u, s.find(10, 'D'));
    EXPECT_EQ(PEG_NOT_FOUND, s.find(s.size(), 'D'));
    EXPECT_THROW(s.find(s.size() + 1, 'D'), IndexOutOfBoundsException);
    EXPECT_EQ(28u, s.reverseFind('e'));
}

TEST(StringEditing, SubStringIsForgivingButRemoveAndIndexingCheckBounds) {
    const String s("abcdef");
    EXPECT_EQ("cd", utf8(s.subString(2, 2)));
    EXPECT_EQ("ef", utf8(s.subString(4, 100)));
    EXPECT_EQ("", utf8(s.subString(100, 2)));
    String r(s);
    r.remove(1, 2);
    EXPECT_EQ("adef", utf8(r));
    r.remove(2);
    EXPECT_EQ("ad", utf8(r));
    EXPECT_THROW(r.remove(1, 2), IndexOutOfBoundsException);
    EXPECT_EQ("abcdef", utf8(s));
    // Reading at size gives the terminator; writing there is refused.
    const String& view = r;
    EXPECT_EQ(0, Uint16(view[2]));
    EXPECT_THROW(view[3], IndexOutOfBoundsException);
    EXPECT_THROW(r[2], IndexOutOfBoundsException);
    r[1] = 'z';
    EXPECT_EQ("az", utf8(r));
    EXPECT_EQ(0, Uint16(r.getChar16Data()[2]));
}

TEST(StringSharing, ChangingACopyOrFailingToLeavesOtherCopiesAsTheyWere) {
    const std::pair<const char*, std::function<void(String&)>> changes[] = {
        {"XBc", [](String& s) { s[0] = 'X'; }},
        {"aBcd", [](String& s) { s.append(Char16('d')); }},
        {"aBcaBc", [](String& s) { s.append(s); }},
        {"aBcBc", [](String& s) { s.append(s.getChar16Data() + 1, 2); }},
        {"ac", [](String& s) { s.remove(1, 1); }},
        {"abc", [](String& s) { s.toLower(); }},
        {"aBc", [](String& s) { EXPECT_THROW(s.append("d\xFF"), Exception); }},
        {"Bc", [](String& s) { s.assign(s.getChar16Data() + 1, 2); }},
        {"Bc",
         [](String& s) {
             s.reserveCapacity(8);
             s.assign(s.getChar16Data() + 1, 2);
         }},
    };
    for (const auto& [expected, change] : changes) {
        const String original("aBc");
        String copy(original);
        change(copy);
        EXPECT_EQ(expected, utf8(copy));
        EXPECT_EQ("aBc", utf8(original));
        EXPECT_EQ(3u, original.size());
    }
}

// The recorded cases cover the usual legal and illegal names, and how names compare.
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

// A buffer rewritten in place names what it holds now, not what was made from it last.
TEST(CIMName, ABufferRewrittenInPlaceNamesWhatItHoldsNow) {
    char buffer[16];
    for (const char* text : {"DeviceID", "DeviceIDs", "Device", "DeviceID", "Dev\xC3\xA9"}) {
        std::snprintf(buffer, sizeof(buffer), "%s", text);
        EXPECT_EQ(utf8(CIMName(buffer).getString()), text);
    }
}

TEST(CIMNamespaceName, ElementsAreLegalNamesJoinedBySlash) {
    for (const char* good : {"root/ksv", "/root/ksv", "root"})
        EXPECT_TRUE(CIMNamespaceName::legal(good)) << good;
    for (const char* bad : {"", "/", "root/", "root//ksv", "//root", "root/9ksv", "root:ksv"})
        EXPECT_FALSE(CIMNamespaceName::legal(bad)) << bad;
    EXPECT_EQ("invalid CIM namespace name: root/", messageOf([] { CIMNamespaceName("root/"); }));
}

template <class T>
std::vector<T> items(const Array<T>& a) {
    return std::vector<T>(a.getData(), a.getData() + a.size());
}

TEST(Array, EditsKeepOrderAndIndexesOutsideAreRefused) {
    Array<Uint32> a;
    a.append(2);
    a.prepend(0);
    a.insert(1, 1);
    const Uint32 more[] = {3, 4, 5};
    a.append(more, 3);
    a.remove(4);
    a.remove(0, 2);
    EXPECT_EQ((std::vector<Uint32>{2, 3, 5}), items(a));
    Array<Uint32> b(2, 9);
    b.appendArray(a);
    b.grow(2, 7);
    EXPECT_EQ((std::vector<Uint32>{9, 9, 2, 3, 5, 7, 7}), items(b));
    b.swap(a);
    EXPECT_EQ(3u, b.size());

    Array<String> s(2);
    const Array<String>& view = s;
    EXPECT_THROW(s[2], IndexOutOfBoundsException);
    EXPECT_THROW(view[5], IndexOutOfBoundsException);
    EXPECT_THROW(s.insert(3, String("x")), IndexOutOfBoundsException);
    EXPECT_THROW(s.remove(2), IndexOutOfBoundsException);
    EXPECT_THROW(s.remove(1, 2), IndexOutOfBoundsException);
    EXPECT_NO_THROW(s.remove(1, 0));
    s.insert(2, String("end"));
    EXPECT_EQ(3u, s.size());
}

TEST(Array, CopiesAreIndependentAndBooleansContiguous) {
    Array<CIMName> a(1, CIMName("A"));
    Array<CIMName> b(a);
    b[0] = CIMName("B");
    b.append(CIMName("C"));
    EXPECT_EQ(1u, a.size());
    EXPECT_EQ(CIMName("A"), a[0]);
    a = b;
    b.clear();
    EXPECT_EQ(2u, a.size());

    const Boolean flags[] = {true, false, true};
    Array<Boolean> c(flags, 3);
    c[1] = true;
    c.reserveCapacity(100);
    EXPECT_GE(c.getCapacity(), 100u);
    const Boolean* data = c.getData();
    EXPECT_TRUE(data[0] && data[1] && data[2]);
}

} // namespace
