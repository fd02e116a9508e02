// The instance cap, date-time conversions, the random-name guard, identifiers, the system's
// addresses and the controller-port conversions.
#include "ProviderTestSupport.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace ksv::test {
namespace {

TEST(InstanceThreshold, MegabytesAndProductWrapAt32Bits) {
    EXPECT_EQ(KSV_Common::instanceThresholdFor(4294967296ull, 150), 644100u);
    EXPECT_EQ(KSV_Common::instanceThresholdFor(UINT64_MAX, 150), 405444830u);
    EXPECT_EQ(KSV_Common::instanceThresholdFor(UINT64_MAX, 110), 1728981974u);
    EXPECT_EQ(KSV_Common::instanceThresholdFor(999999, 150), 0u);
}

// Runs each test in a given time zone and restores the process's own afterwards.
class InTimeZone : public ::testing::Test {
protected:
    void TearDown() override {
        if (_saved.empty())
            unsetenv("TZ");
        else
            setenv("TZ", _saved.c_str(), 1);
        tzset();
    }
    void use(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

private:
    std::string _saved = getenv("TZ") ? getenv("TZ") : "";
};

TEST_F(InTimeZone, DateTimeCarriesTheLocalTimeAndItsOffsetAndTheLabelWholeHoursUtcMinus) {
    const struct {
        const char* zone;
        time_t time;
        const char* dateTime;
        const char* label;
    } cases[] = {{"UTC0", 0, "19700101000000.000000+000", "GMT-0"},
                 {"EST5", 0, "19691231190000.000000-300", "GMT-5"},
                 {"IST-5:30", 1709210096, "20240229180456.000000+330", "GMT+5"},
                 {"<+0545>-5:45", 0, "19700101054500.000000+345", "GMT+5"}};
    for (const auto& c : cases) {
        use(c.zone);
        EXPECT_EQ(text(KSV_Common::getCIMDateTime(c.time).toString()), c.dateTime) << c.zone;
        EXPECT_EQ(text(KSV_Common::getTimeZone()), c.label) << c.zone;
    }
}

TEST_F(InTimeZone, DateTimeConvertsBackAsStandardTimeEvenInSummer) {
    use("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(KSV_Common::getDateTime(KSV_Common::getCIMDateTime(1609502400)), 1609502400);
    EXPECT_EQ(KSV_Common::getDateTime(KSV_Common::getCIMDateTime(1625140800)), 1625140800 + 3600);
}

// The fields themselves are checked by the round trip above.
TEST(FormatDateTime, RefusesNegativeFields) {
    struct tm fields;
    EXPECT_GT(KSV_Common::_formatDateTime("20240229123456.000000+060", &fields), 0);
    EXPECT_EQ(KSV_Common::_formatDateTime("00000001020304.000000:000", &fields), 0);
    EXPECT_EQ(KSV_Common::_formatDateTime("", &fields), 0);
    EXPECT_EQ(KSV_Common::_formatDateTime("18991231000000.000000+000", &fields), -1);
    EXPECT_EQ(KSV_Common::_formatDateTime("20240001000000.000000+000", &fields), -1);
}

TEST(RandomStringDeathTest, EmptyBufferStopsTheProcess) {
    char buffer[4];
    EXPECT_DEATH(KSV_Common::generate_random_string(buffer, 0),
                 "Assertion point: file: KSV_Common, line: 5332");
    EXPECT_DEATH(KSV_Common::generate_random_string(nullptr, 4), "Assertion point");
}

TEST(InstanceIDs, KeyFollowsTheFirstQuanorMarker) {
    EXPECT_EQ(text(KSV_Common::extractFromInstanceID("QUANOR:4.02")), "4.02");
    EXPECT_EQ(text(KSV_Common::extractFromInstanceID("x-QUANOR:a:QUANOR:b")), "a:QUANOR:b");
    EXPECT_EQ(text(KSV_Common::extractFromInstanceID("QUANOR")), "");
    EXPECT_EQ(text(KSV_Common::extractFromInstanceID("quanor:4.02")), "");
}

using SystemAddresses = HarnessTest;

TEST_F(SystemAddresses, OtherTypesAreRefused) {
    EXPECT_EQ(text(KSV_Common::getSystemIPAddr(3)), "");
    EXPECT_EQ(text(KSV_Common::getSystemIPAddr(0)), "");
    EXPECT_EQ(logTexts(2), std::vector<std::string>(
                               2, "KSV_Common, getSystemIPAddr: Invalid IP type parameter!\n"));
}

using Ports = HarnessTest;

TEST_F(Ports, LocationsOfFibreChannelAndIscsiPorts) {
    EXPECT_EQ(KSV_Common::getPortLPID(Uint64(0x20100002AC0D7011ull)), 145);
    EXPECT_EQ(KSV_Common::getPortLPID(Uint64(0x1ull)), 0);
    String iscsi("iqn.2000-05.net.example:ksv-d7.1.3.1");
    EXPECT_EQ(KSV_Common::getPortLPID(iscsi), 153);

    String tooLong(std::string(300, 'q').c_str());
    ksvsim::clearCalls();
    EXPECT_EQ(KSV_Common::getPortLPID(tooLong), 0);
    ASSERT_EQ(ksvsim::calls().size(), 1u);
    EXPECT_EQ(ksvsim::calls()[0].argument, std::string(223, 'q'));
}

TEST_F(Ports, IdentifiersOfPortTexts) {
    const String texts[] = {"1:2:1", "not a port", "7:15:7"};
    const std::pair<Uint32, Uint16*> ids = KSV_Common::getPortIDs(Array<String>(texts, 3));
    ASSERT_EQ(ids.first, 3u);
    EXPECT_EQ(ids.second[0], 145);
    EXPECT_EQ(ids.second[1], 0);
    EXPECT_EQ(ids.second[2], 1023);
    delete[] ids.second;
}

TEST(PortStates, OperationalStatusAndHealthOfEachPortState) {
    const struct {
        int state;
        Uint16 operational;
        Uint16 health;
    } table[] = {{0, 10, 5},  {1, 8, 5},  {2, 8, 5},  {3, 2, 5},  {4, 13, 5},
                 {5, 6, 20},  {6, 0, 0},  {7, 6, 20}, {8, 6, 25}, {9, 10, 10},
                 {10, 7, 30}, {11, 8, 5}, {12, 8, 5}, {13, 8, 5}, {14, 0, 0}};
    for (const auto& row : table) {
        const api_port_status_t state = static_cast<api_port_status_t>(row.state);
        EXPECT_EQ(KSV_Common::getPortOperationalStatus(state), row.operational) << row.state;
        EXPECT_EQ(KSV_Common::getPortHealthState(state), row.health) << row.state;
    }
}

} // namespace
} // namespace ksv::test
