#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include "CommonTestSupport.h"

#include <string>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

CIMDateTime dt(const char* text) {
    return CIMDateTime(String(text));
}

std::string error(const char* text) {
    return messageOf([&] { dt(text); });
}

const Uint64 SECOND = 1000000;
const Uint64 DAY = 86400 * SECOND;

//------------------------------------------------------------------------------
// Text form
//------------------------------------------------------------------------------

// Beyond the recorded cases, here and below.
TEST(DateTimeText, MalformedTextIsRefused) {
    for (const char* text :
         {"20261121103000.000000+00", "20261121103000.000000*000", "20261121103000,000000+000",
          "2026********00.******+000", "20261121103000.12*4**+000", "20261121******.1*****+000",
          "00000001000000.000000:001", "0000000a000000.000000:000", "20261121103000.000000+0a0",
          "20261121 03000.000000+000"}) {
        EXPECT_EQ("invalid datetime format", error(text)) << text;
    }
}

TEST(DateTimeText, FieldsOutOfRangeAreNamed) {
    const std::pair<const char*, const char*> cases[] = {
        {"20260001103000.000000+000", "illegal month number"},
        {"20230229103000.000000+000", "illegal day number"},
        {"21000229000000.000000+000", "illegal day number"},
        {"20260431000000.000000+000", "illegal day number"},
        {"20261121243000.000000+000", "illegal hours number "},
        {"20261121106000.000000+000", "illegal minutes number "},
        {"20261121103060.000000+000", "illegal seconds number "},
        {"00000001240000.000000:000", "illegal hours number "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(std::string("DateTime is out of range : ") + c.second, error(c.first)) << c.first;
    EXPECT_EQ("no exception", error("20000229000000.000000+000"));
}

TEST(DateTimeText, FieldSettersCheckRanges) {
    CIMDateTime value;
    value.setTimeStamp(2026, 2, 28, 23, 59, 59, 999999, 6, -330);
    EXPECT_EQ("20260228235959.999999-330", utf8(value.toString()));
    value.setInterval(12, 1, 2, 3, 450000, 2);
    EXPECT_EQ("00000012010203.45****:000", utf8(value.toString()));
    value.setTimeStamp(2026, CIMDateTime::WILDCARD, CIMDateTime::WILDCARD, 0, 0, 0, 0, 6, 0);
    EXPECT_EQ("2026**********.******+000", utf8(value.toString()));
    EXPECT_THROW(value.setTimeStamp(10000, 1, 1, 0, 0, 0, 0, 6, 0), DateTimeOutOfRangeException);
    EXPECT_THROW(value.setTimeStamp(2026, 1, 1, 0, 0, 0, 0, 6, 1000), DateTimeOutOfRangeException);
    EXPECT_THROW(value.setTimeStamp(2026, 1, 1, 0, 0, 0, 1000000, 6, 0),
                 DateTimeOutOfRangeException);
    EXPECT_THROW(value.setInterval(0, 0, 0, 0, 0, 7), DateTimeOutOfRangeException);
    EXPECT_THROW(value.setInterval(100000000, 0, 0, 0, 0, 6), DateTimeOutOfRangeException);
}

//------------------------------------------------------------------------------
// Microseconds
//------------------------------------------------------------------------------

TEST(DateTimeMicroseconds, TimeStampsCountFromYearZeroAtUtc) {
    EXPECT_EQ(0u, dt("00000101000000.000000+000").toMicroSeconds());
    EXPECT_EQ(719528 * DAY, dt("19700101000000.000000+000").toMicroSeconds());
    // 01:00 at UTC+60 is midnight at UTC; 23:00 at UTC-60 is midnight of the next day.
    EXPECT_EQ(719528 * DAY, dt("19700101010000.000000+060").toMicroSeconds());
    EXPECT_EQ(719528 * DAY, dt("19691231230000.000000-060").toMicroSeconds());
    EXPECT_EQ(DAY + 2 * SECOND + 5, dt("00000001000002.000005:000").toMicroSeconds());
}

TEST(DateTimeMicroseconds, ConstructionFromMicrosecondsRoundTrips) {
    const CIMDateTime stamp(719528 * DAY + 1, false);
    EXPECT_EQ("19700101000000.000001+000", utf8(stamp.toString()));
    const CIMDateTime interval(3 * DAY + 7 * SECOND, true);
    EXPECT_EQ("00000003000007.000000:000", utf8(interval.toString()));
    EXPECT_THROW(CIMDateTime(3652425 * DAY, false), DateTimeOutOfRangeException);
    EXPECT_NO_THROW(CIMDateTime(3652425 * DAY - 1, false));
    EXPECT_THROW(CIMDateTime(100000000 * DAY, true), DateTimeOutOfRangeException);
}

TEST(DateTimeMicroseconds, CalendarHoldsAcrossLeapYearsAndCenturies) {
    for (const char* text :
         {"16000229120000.000000+000", "19000228235959.999999+000", "19000301000000.000000+000",
          "20000229000000.000000+000", "20241231000000.000000+000", "99991231235959.999999+000"}) {
        const CIMDateTime parsed = dt(text);
        EXPECT_EQ(text, utf8(CIMDateTime(parsed.toMicroSeconds(), false).toString()));
    }
    EXPECT_EQ(DAY, dt("19000301000000.000000+000").toMicroSeconds() -
                       dt("19000228000000.000000+000").toMicroSeconds());
    EXPECT_EQ(2 * DAY, dt("20000301000000.000000+000").toMicroSeconds() -
                           dt("20000228000000.000000+000").toMicroSeconds());
}

//------------------------------------------------------------------------------
// Comparison
//------------------------------------------------------------------------------

TEST(DateTimeComparison, SameMomentInOtherZonesIsEqual) {
    EXPECT_EQ(dt("20261121103000.000000+000"), dt("20261121120000.000000+090"));
    EXPECT_EQ(dt("20261121103000.000000+000"), dt("20261121053000.000000-300"));
    EXPECT_TRUE(dt("20261121103000.000000+000") < dt("20261121103000.000001+000"));
    EXPECT_TRUE(dt("20261121103000.000000+060") < dt("20261121103000.000000+000"));
    EXPECT_TRUE(dt("00000001000000.000000:000") > dt("00000000235959.999999:000"));
    EXPECT_TRUE(dt("00000001000000.000000:000") >= dt("00000001000000.000000:000"));
    EXPECT_TRUE(dt("00000001000000.000000:000") <= dt("00000001000000.000000:000"));
    EXPECT_TRUE(dt("00000001000000.000000:000") != dt("00000002000000.000000:000"));
}

TEST(DateTimeComparison, WildcardsMatchAnyDigit) {
    EXPECT_EQ(dt("20261121******.******+000"), dt("20261121103000.123456+000"));
    EXPECT_NE(dt("20261121******.******+000"), dt("20261122103000.123456+000"));
    // Wildcarded minutes are left out of the zone shift, wildcarded hours too.
    EXPECT_EQ(dt("2026112111****.******+060"), dt("20261121100000.000000+000"));
    EXPECT_EQ(dt("20261121******.******+060"), dt("20261121230000.000000+000"));
    EXPECT_EQ(dt("0000000112****.******:000"), dt("00000001125959.000000:000"));
}

} // namespace
