#include <cimxml/Elements.h>
#include <cimxml/Values.h>

#include "TestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace Pegasus;
using ksv::cimxml::appendReal;
using ksv::cimxml::parseScalar;
using ksv::cimxml::typeParameters;
using ksv::cimxml::typeValue;
using ksv::cimxml::testing::throwsCim;

namespace {

template <class Real>
std::string realText(Real number) {
    std::string text;
    appendReal(text, number);
    return text;
}

template <class Real, class Bits>
void expectRoundTrips(CIMType type, Bits bits) {
    Real number;
    std::memcpy(&number, &bits, sizeof(number));
    if (!std::isfinite(number)) {
        return;
    }
    const std::string text = realText(number);
    Real back = 0;
    parseScalar(text, type).get(back);
    ASSERT_EQ(0, std::memcmp(&number, &back, sizeof(number))) << text;
}

TEST(RealText, EveryFiniteNumberReadsBackBitForBit) {
    std::mt19937_64 random(20240131);
    for (int i = 0; i < 20000; i++) {
        expectRoundTrips<Real64>(CIMTYPE_REAL64, Uint64(random()));
        expectRoundTrips<Real32>(CIMTYPE_REAL32, Uint32(random()));
    }
    expectRoundTrips<Real64>(CIMTYPE_REAL64, Uint64(1));          // smallest subnormal
    expectRoundTrips<Real32>(CIMTYPE_REAL32, Uint32(0x7F7FFFFF)); // largest float
}

TEST(RealText, AlwaysCarriesADecimalPointAndSpellsSpecialValues) {
    EXPECT_EQ("1.0", realText(1.0));
    EXPECT_EQ("0.1", realText(0.1));
    EXPECT_EQ("-0.0", realText(-0.0));
    EXPECT_EQ("1.0e+20", realText(1e20));
    EXPECT_EQ("2.5e-07", realText(2.5e-7));
    EXPECT_EQ("0.1", realText(Real32(0.1f)));
    EXPECT_EQ("NaN", realText(std::numeric_limits<Real64>::quiet_NaN()));
    EXPECT_EQ("INF", realText(std::numeric_limits<Real64>::infinity()));
    EXPECT_EQ("-INF", realText(-std::numeric_limits<Real32>::infinity()));

    Real64 number = 0;
    parseScalar("-inf", CIMTYPE_REAL64).get(number);
    EXPECT_TRUE(std::isinf(number) && number < 0);
    parseScalar("NaN", CIMTYPE_REAL64).get(number);
    EXPECT_TRUE(std::isnan(number));
}

struct ScalarCase {
    CIMType type;
    const char* text;
    CIMValue expected; // null when the text must be refused
    const char* complaint;
};

TEST(ScalarText, EachTypeAcceptsItsFormsAndRefusesTheRest) {
    const ScalarCase cases[] = {
        {CIMTYPE_UINT8, "255", CIMValue(Uint8(255)), ""},
        {CIMTYPE_UINT8, "256", CIMValue(), "out of range for uint8"},
        {CIMTYPE_SINT8, "-128", CIMValue(Sint8(-128)), ""},
        {CIMTYPE_SINT8, "-129", CIMValue(), "out of range for sint8"},
        {CIMTYPE_UINT16, "0x1F", CIMValue(Uint16(31)), ""},
        {CIMTYPE_SINT16, "-0x8000", CIMValue(Sint16(-32768)), ""},
        {CIMTYPE_UINT32, " 42\n", CIMValue(Uint32(42)), ""},
        {CIMTYPE_UINT32, "-0", CIMValue(Uint32(0)), ""},
        {CIMTYPE_UINT32, "-1", CIMValue(), "out of range for uint32"},
        {CIMTYPE_SINT32, "+7", CIMValue(Sint32(7)), ""},
        {CIMTYPE_UINT64, "18446744073709551615", CIMValue(Uint64(18446744073709551615ULL)), ""},
        {CIMTYPE_UINT64, "18446744073709551616", CIMValue(), "out of range for uint64"},
        {CIMTYPE_SINT64, "-9223372036854775808",
         CIMValue(Sint64(std::numeric_limits<Sint64>::min())), ""},
        {CIMTYPE_SINT64, "9223372036854775808", CIMValue(), "out of range for sint64"},
        {CIMTYPE_UINT16, "12a", CIMValue(), "is not a valid uint16"},
        {CIMTYPE_UINT16, "", CIMValue(), "is not a valid uint16"},
        {CIMTYPE_SINT16, "+-1", CIMValue(), "is not a valid sint16"},
        {CIMTYPE_UINT16, "0x", CIMValue(), "is not a valid uint16"},
        {CIMTYPE_REAL64, " +1.5 ", CIMValue(Real64(1.5)), ""},
        {CIMTYPE_REAL32, "1e39", CIMValue(), "out of range for real32"},
        {CIMTYPE_REAL64, "1.5.2", CIMValue(), "\"1.5.2\" is not a valid real64"},
        {CIMTYPE_BOOLEAN, " True ", CIMValue(true), ""},
        {CIMTYPE_BOOLEAN, "FALSE", CIMValue(false), ""},
        {CIMTYPE_BOOLEAN, "yes", CIMValue(), "\"yes\" is not a valid boolean"},
        {CIMTYPE_CHAR16, "\xC3\xA9", CIMValue(Char16(0xE9)), ""},
        {CIMTYPE_CHAR16, "AB", CIMValue(), "not a valid char16"},
        {CIMTYPE_CHAR16, "", CIMValue(), "not a valid char16"},
        {CIMTYPE_STRING, " spaced ", CIMValue(String(" spaced ")), ""},
        {CIMTYPE_STRING, "bad \xFF byte", CIMValue(), "not valid UTF-8"},
        {CIMTYPE_DATETIME, " 00000001020304.000005:000 ",
         CIMValue(CIMDateTime("00000001020304.000005:000")), ""},
        {CIMTYPE_DATETIME, "2024", CIMValue(), "is not a valid datetime"},
        {CIMTYPE_REFERENCE, "root/ksv:KSV_Disk.DeviceID=\"x\"",
         CIMValue(CIMObjectPath("root/ksv:KSV_Disk.DeviceID=\"x\"")), ""},
        {CIMTYPE_REFERENCE, "KSV_Disk.=", CIMValue(), "is not a valid reference"},
    };
    for (const ScalarCase& c : cases) {
        if (c.expected.isNull()) {
            EXPECT_TRUE(throwsCim([&] { parseScalar(c.text, c.type); }, CIM_ERR_INVALID_PARAMETER,
                                  c.complaint))
                << c.text;
        } else {
            EXPECT_EQ(c.expected, parseScalar(c.text, c.type)) << c.text;
        }
    }
}

TEST(TypeValue, ConvertsUntypedStringsToTheDeclaredType) {
    Array<String> texts;
    texts.append("1");
    texts.append("0x10");
    Array<Uint16> numbers;
    numbers.append(1);
    numbers.append(16);
    EXPECT_EQ(CIMValue(numbers), typeValue(CIMValue(texts), CIMTYPE_UINT16, true));
    EXPECT_EQ(CIMValue(Sint32(-5)), typeValue(CIMValue(String("-5")), CIMTYPE_SINT32, false));
    EXPECT_EQ(CIMValue(CIMTYPE_DATETIME, true),
              typeValue(CIMValue(CIMTYPE_STRING, false), CIMTYPE_DATETIME, true));

    EXPECT_TRUE(throwsCim([] { typeValue(CIMValue(String("abc")), CIMTYPE_UINT16, false); },
                          CIM_ERR_INVALID_PARAMETER, "\"abc\" is not a valid uint16"));
    EXPECT_TRUE(throwsCim([] { typeValue(CIMValue(Uint32(3)), CIMTYPE_UINT16, false); },
                          CIM_ERR_TYPE_MISMATCH, "a uint32 value where uint16 is declared"));
    EXPECT_TRUE(throwsCim([] { typeValue(CIMValue(String("3")), CIMTYPE_UINT16, true); },
                          CIM_ERR_TYPE_MISMATCH, "uint16 array is declared"));
}

TEST(TypeParameters, TypesEachArgumentByTheMethodsDeclaration) {
    CIMMethod method(CIMName("Locate"), CIMTYPE_UINT32);
    method.addParameter(CIMParameter(CIMName("Seconds"), CIMTYPE_UINT16));
    method.addParameter(CIMParameter(CIMName("Pattern"), CIMTYPE_BOOLEAN, true));
    CIMParameter settings(CIMName("Settings"), CIMTYPE_STRING);
    settings.addQualifier(CIMQualifier(CIMName("EmbeddedInstance"), CIMValue(String("KSV_X"))));
    method.addParameter(settings);

    std::string xml;
    ksv::cimxml::appendInstance(xml, ksv::cimxml::testing::sampleDisk(2));
    Array<String> pattern;
    pattern.append("true");
    pattern.append("FALSE");
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Pattern", CIMValue(pattern), false));
    in.append(CIMParamValue("seconds", CIMValue(String("30")), false));
    in.append(CIMParamValue("Settings", CIMValue(String(xml.c_str())), false));

    const Array<CIMParamValue> typed = typeParameters(method, in);
    ASSERT_EQ(3u, typed.size());
    Array<Boolean> flags;
    typed[0].getValue().get(flags);
    ASSERT_EQ(2u, flags.size());
    EXPECT_TRUE(flags[0]);
    EXPECT_FALSE(flags[1]);
    EXPECT_EQ(CIMValue(Uint16(30)), typed[1].getValue());
    CIMInstance embedded;
    typed[2].getValue().get(embedded);
    EXPECT_TRUE(ksv::cimxml::testing::sameContent(ksv::cimxml::testing::sampleDisk(2), embedded));
    for (Uint32 i = 0; i < typed.size(); i++) {
        EXPECT_TRUE(typed[i].isTyped());
    }

    in.append(CIMParamValue("Speed", CIMValue(String("1")), false));
    EXPECT_TRUE(throwsCim([&] { typeParameters(method, in); }, CIM_ERR_INVALID_PARAMETER,
                          "method Locate has no parameter \"Speed\""));
}

} // namespace
