#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include "CommonTestSupport.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

CIMObjectPath path(const char* text) {
    return CIMObjectPath(String(text));
}

std::string parseError(const char* text) {
    return messageOf([&] { path(text); });
}

//------------------------------------------------------------------------------
// Parse errors
//------------------------------------------------------------------------------

// Beyond the recorded cases, which name the other faults.
TEST(ObjectPathParseErrors, EachFaultIsNamedAfterTheWholeText) {
    const std::pair<const char*, const char*> cases[] = {
        {"//hostonly", "missing slash after hostname"},
        {"root//x:A.k=1", "invalid namespace name"},
        {"A.k", "invalid key-value pair, missing equal sign"},
        {"A.k=1,9k=2", "invalid key-value pair, invalid key name:9k"},
        {"A.k=\"a\\b\"", "invalid key-value pair, malformed value"},
        {"A.k=\"ab\\", "invalid key-value pair, malformed value"},
        {"A.k=Tru", "invalid key-value pair, value should be TRUE or FALSE"},
        {"A.k=falsey,j=1", "invalid key-value pair, value should be TRUE or FALSE"},
        {"A.k=-5x,j=1", "invalid key-value pair, invalid negative number value -5x"},
        {"A.k=--5", "invalid key-value pair, invalid negative number value --5"},
        {"A.k=18446744073709551616", "invalid key-value pair, invalid number value "
                                     "18446744073709551616"},
        {"A.k=\"x\"y", "invalid key-value pair, next key-value pair has to start with comma"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(std::string("malformed object name: ") + c.first + ", reason:\"" + c.second +
                      "\"",
                  parseError(c.first));
    }
}

TEST(ObjectPathParseErrors, NumbersAcceptedAtTheEdges) {
    EXPECT_EQ("A.k=18446744073709551615", utf8(path("A.k=18446744073709551615").toString()));
    EXPECT_EQ("A.k=-9223372036854775808", utf8(path("A.k=-9223372036854775808").toString()));
    EXPECT_EQ("no exception", parseError("A.k=0XaBc"));
    EXPECT_EQ("no exception", parseError("A.k=-0x10"));
    EXPECT_NE("no exception", parseError("A.k=-9223372036854775809"));
}

//------------------------------------------------------------------------------
// Hosts
//------------------------------------------------------------------------------

TEST(ObjectPathHosts, HostNamesAddressesAndPortsAreChecked) {
    for (const char* good : {"host", "a-b.example.com", "_srv", "host:5988", "host:", "h:00080",
                             "10.0.0.1", "10.0.0.1:5989", "[::1]", "[::1]:5988",
                             "[2001:db8::7]:65535", "[fe80::1%lo]", "srv1.x9"}) {
        CIMObjectPath p;
        EXPECT_NO_THROW(p.setHost(good)) << good;
        EXPECT_EQ(good, utf8(p.getHost()));
    }
    for (const char* bad :
         {"-host", "host..x", "host.", "1.2.3", "1.2.3.256", "1.2.3.4.5", "host.123", "host:65536",
          "host:12a", "[10.0.0.1]", "[host]", "[fe80::1]", "[fe80::1%nosuchif0]", "[::1", "[::1]x",
          "a b", "fe80::1", "h\xC3\x9C"}) {
        CIMObjectPath p;
        EXPECT_THROW(p.setHost(bad), MalformedObjectNameException) << bad;
    }
}

TEST(ObjectPathHosts, RefusedHostIsReportedAndLeavesThePathAlone) {
    CIMObjectPath p = path("//good/root:A.k=1");
    EXPECT_EQ("malformed object name: bad host, reason:\"invalid hostname\"",
              messageOf([&] { p.set("bad host", CIMNamespaceName("root"), CIMName("A")); }));
    EXPECT_EQ("//good/root:A.k=1", utf8(p.toString()));
    p.setHost(String());
    EXPECT_EQ("root:A.k=1", utf8(p.toString()));
}

//------------------------------------------------------------------------------
// Key bindings
//------------------------------------------------------------------------------

TEST(ObjectPathKeys, KeysAreSortedByNameWithoutRegardToCase) {
    CIMObjectPath p;
    p.setClassName(CIMName("A"));
    const CIMKeyBinding keys[] = {CIMKeyBinding(CIMName("b"), "1", CIMKeyBinding::NUMERIC),
                                  CIMKeyBinding(CIMName("A_b"), "2", CIMKeyBinding::NUMERIC),
                                  CIMKeyBinding(CIMName("Ab"), "3", CIMKeyBinding::NUMERIC),
                                  CIMKeyBinding(CIMName("a"), "4", CIMKeyBinding::NUMERIC)};
    p.setKeyBindings(Array<CIMKeyBinding>(keys, 4));
    EXPECT_EQ("A.a=4,A_b=2,Ab=3,b=1", utf8(p.toString()));
}

// A reference is kept in the form its path prints, whether it is given as a
// binding or inside a path's text, and whatever form it came in.
TEST(ObjectPathKeys, ReferenceValuesAreNormalizedOrRefused) {
    const std::pair<const char*, const char*> references[] = {
        {"//h/root:B.a=\"2\",z=\"1\"", "//h/root:B.a=\"2\",z=\"1\""},
        {"B.z=\"1\",a=\"2\"", "B.a=\"2\",z=\"1\""},
        {"B.b=1,a=2,A=3", "B.a=2,A=3,b=1"},
        {"B.a=true,b=FALSE", "B.a=TRUE,b=FALSE"},
        {"B.a=1,", "B.a=1"},
        {"/root:B.a=1", "root:B.a=1"},
        {"B.r=\"C.y=1,x=2\"", "B.r=\"C.x=2,y=1\""},
        {"B.r=\"C.x=\\\"a\\\\\\\\b\\\",y=1\"", "B.r=\"C.x=\\\"a\\\\\\\\b\\\",y=1\""},
        {"B.s=\"a\\\\b=c\",r=\"C.x=1,\"", "B.r=\"C.x=1\",s=\"a\\\\b=c\""},
    };
    CIMObjectPath p;
    for (const auto& [given, normal] : references) {
        p.setKeyBindings(Array<CIMKeyBinding>(
            1, CIMKeyBinding(CIMName("Ref"), given, CIMKeyBinding::REFERENCE)));
        EXPECT_EQ(normal, utf8(p.getKeyBindings()[0].getValue())) << given;
        std::string quoted;
        for (const char* c = given; *c; c++)
            quoted += std::string(*c == '"' || *c == '\\' ? "\\" : "") + *c;
        const CIMObjectPath outer = path(("A.Ref=\"" + quoted + "\"").c_str());
        EXPECT_EQ(CIMKeyBinding::REFERENCE, outer.getKeyBindings()[0].getType()) << given;
        EXPECT_EQ(normal, utf8(outer.getKeyBindings()[0].getValue())) << given;
    }
    EXPECT_THROW(p.setKeyBindings(Array<CIMKeyBinding>(
                     1, CIMKeyBinding(CIMName("Ref"), "not a path", CIMKeyBinding::REFERENCE))),
                 MalformedObjectNameException);
}

TEST(ObjectPathKeys, ValueConstructorTypesTheBindingAfterTheValue) {
    const std::tuple<CIMValue, CIMKeyBinding::Type, const char*> cases[] = {
        {CIMValue(Uint16(42)), CIMKeyBinding::NUMERIC, "42"},
        {CIMValue(Sint32(-7)), CIMKeyBinding::NUMERIC, "-7"},
        {CIMValue(true), CIMKeyBinding::BOOLEAN, "TRUE"},
        {CIMValue(String("x")), CIMKeyBinding::STRING, "x"},
        {CIMValue(CIMDateTime(String("20260101000000.000000+000"))), CIMKeyBinding::STRING,
         "20260101000000.000000+000"},
        {CIMValue(path("//h/root:B.k=\"v\"")), CIMKeyBinding::REFERENCE, "//h/root:B.k=\"v\""},
    };
    for (const auto& [value, type, text] : cases) {
        const CIMKeyBinding binding(CIMName("K"), value);
        EXPECT_EQ(type, binding.getType()) << text;
        EXPECT_EQ(text, utf8(binding.getValue()));
    }
    EXPECT_THROW(CIMKeyBinding(CIMName("A"), CIMValue(Array<Uint8>(1, 1))), TypeMismatchException);
}

TEST(ObjectPathKeys, EqualReadsTheBindingAsTheValuesType) {
    using K = CIMKeyBinding;
    const std::tuple<K::Type, const char*, CIMValue, bool> cases[] = {
        {K::NUMERIC, "0x1F", CIMValue(Uint8(31)), true},
        {K::NUMERIC, "0x1F", CIMValue(Sint64(31)), true},
        {K::NUMERIC, "0x1F", CIMValue(Uint8(30)), false},
        {K::NUMERIC, "0x1F", CIMValue(String("0x1F")), false},
        {K::NUMERIC, "300", CIMValue(Uint8(44)), false},
        {K::NUMERIC, "-1", CIMValue(Sint8(-1)), true},
        {K::NUMERIC, "-1", CIMValue(Uint64(18446744073709551615ULL)), false},
        {K::NUMERIC, "1.5", CIMValue(Real64(1.5)), true},
        {K::BOOLEAN, "true", CIMValue(true), true},
        {K::BOOLEAN, "true", CIMValue(false), false},
        {K::STRING, "abc", CIMValue(String("abc")), true},
        {K::STRING, "abc", CIMValue(String("ABC")), false},
        {K::STRING, "abc", CIMValue(CIMDateTime()), false},
        {K::STRING, "abc", CIMValue(Array<String>(1, String("abc"))), false},
        {K::REFERENCE, "//H/root:B.k=\"v\"", CIMValue(path("//H/root:B.k=\"v\"")), true},
        {K::REFERENCE, "//H/root:B.k=\"v\"", CIMValue(path("//H/root:B.k=\"w\"")), false},
    };
    for (const auto& [type, text, value, equal] : cases)
        EXPECT_EQ(equal, K(CIMName("K"), text, type).equal(value))
            << text << " / " << utf8(value.toString());
}

//------------------------------------------------------------------------------
// Identity
//------------------------------------------------------------------------------

TEST(ObjectPathIdentity, IdenticalPathsShareAHashCodeAndOthersDiffer) {
    const std::pair<const char*, const char*> identical[] = {
        {"//HOST/Root:A.k=0x1F,b=TRUE", "//host/root:a.B=true,K=31"},
        {"X.r=\"//H/root:B.k=1\"", "X.r=\"//h/ROOT:b.K=0x1\""},
        {"A.k=-0x10", "A.k=-16"},
    };
    for (const auto& pair : identical) {
        ASSERT_EQ(path(pair.first), path(pair.second));
        EXPECT_EQ(path(pair.first).makeHashCode(), path(pair.second).makeHashCode()) << pair.first;
    }
    EXPECT_NE(path("A.k=\"x\"").makeHashCode(), path("A.k=\"X\"").makeHashCode());
    // Beyond the recorded cases: key names, booleans and signs tell paths apart.
    const std::pair<const char*, const char*> different[] = {
        {"A.k=1", "A.j=1"}, {"A.k=TRUE", "A.k=FALSE"}, {"A.k=16", "A.k=-16"}};
    for (const auto& pair : different)
        EXPECT_NE(path(pair.first), path(pair.second)) << pair.first;
}

} // namespace
