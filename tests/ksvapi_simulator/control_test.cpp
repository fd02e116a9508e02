// Forced results, the call log, the log of the library and the global semaphore.
#include "simulator_test_support.h"

#include <cstdio>
#include <stdexcept>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

class ForcedResults : public SimulatorTest {};

TEST_F(ForcedResults, ForTheNextCallsOrUntilCleared) {
    ksvsim::forceResult("getDiskDeviceIDs", API_E_NO_MEMORY, 2);
    ksvsim::forceResult("api_getSystemDisks", API_E_NOT_FOUND);
    for (int i = 0; i < 3; ++i) {
        api_DiskDeviceIDList_t list{};
        EXPECT_EQ(getDiskDeviceIDs(API_ALL_DISK_IDS, &list), i < 2 ? API_E_NO_MEMORY : API_OK);
        EXPECT_EQ(list.count, i < 2 ? 0u : 5u);
        freeDiskDeviceIDs(&list);
        api_DiskList_t disks{};
        EXPECT_EQ(api_getSystemDisks(API_ALL_DISKS, &disks), API_E_NOT_FOUND);
        EXPECT_EQ(disks.disks, nullptr);
    }
    ksvsim::clearForcedResults();
    EXPECT_EQ(readDisks().size(), 6u);
}

TEST_F(ForcedResults, RefuseFunctionsThatCannotBeForced) {
    EXPECT_THROW(ksvsim::forceResult("log_message", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("api_getSystemDisk", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("freeDiskDeviceIDs", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("cim_sem_wait", 1, 0), std::invalid_argument);
}

class CallLog : public SimulatorTest {};

TEST_F(CallLog, RecordsCallsWithKeyArgumentsAndResults) {
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    api_ksvOpenForCimserver("guest");
    cim_sem_wait();
    api_ksvOpenForCimserver("monitor");
    api_authorizeCIMUser("monitor", "192.0.2.99", "ksv_storagesetting.modifyinstance");
    int64_t selector = API_ALL_DISKS;
    api_deReferenceDiskDeviceID("5000CCA01A2B3C41-id-1", &selector, nullptr);
    cim_sem_wait();
    readDisks(selector);
    readDisks();
    api_locateMagazine("cage0", 1, API_LOCATE_OFF);
    cim_sem_post();
    const std::vector<std::tuple<std::string, std::string, int>> expected = {
        {"api_ksvOpenForCimserver", "guest", API_E_DENIED},
        {"cim_sem_wait", "", API_E_SEM_TIMEOUT},
        {"api_ksvOpenForCimserver", "monitor", API_OK},
        {"api_authorizeCIMUser", "monitor ksv_storagesetting.modifyinstance", API_OK},
        {"api_deReferenceDiskDeviceID", "5000CCA01A2B3C41-id-1", API_OK},
        {"cim_sem_wait", "", API_OK},
        {"api_getSystemDisks", "5000CCA01A2B3C41", API_OK},
        {"api_getSystemDisks", "-10", API_OK},
        {"api_locateMagazine", "cage0:1:1", API_OK},
        {"cim_sem_post", "", API_OK},
    };
    std::vector<std::tuple<std::string, std::string, int>> recorded;
    for (const CallRecord& call : ksvsim::calls()) {
        recorded.emplace_back(call.function, call.argument, call.result);
        EXPECT_EQ(call.thread, std::this_thread::get_id());
    }
    EXPECT_EQ(recorded, expected);
}

TEST_F(CallLog, KeepsTheMostRecentTenThousand) {
    for (uint32_t i = 0; i < 10005; ++i) {
        getDiskDeviceIDs(100000 + i, nullptr);
    }
    const auto calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), 10000u);
    EXPECT_EQ(calls.front().argument, "100005");
    EXPECT_EQ(calls.back().argument, "110004");
    ksvsim::clearCalls();
    EXPECT_TRUE(ksvsim::calls().empty());
}

class LibraryLog : public SimulatorTest {
protected:
    void TearDown() override {
        std::remove(logFile_.c_str());
        SimulatorTest::TearDown();
    }

    std::string logText() const { return fileText(logFile_); }

    const std::string logFile_ =
        ::testing::TempDir() + "ksvapi-log-" + std::to_string(getpid()) + ".txt";
};

TEST_F(LibraryLog, CaptureKeepsLinesExactlyAsFormatted) {
    ksvsim::setLogCapture(true);
    ksvsim::setLogLevel(2);
    log_message(4, "--> KSV_DiskDriveProvider::enumerateInstances\n");
    log_message(2, "problem setting locate magazine led for cage %s magazine %d", "cage0", 1);
    log_message(3, "%s%5.1f|%-4s|", "x", 2.25, "ab");
    const std::vector<LogLine> expected = {
        {4, "--> KSV_DiskDriveProvider::enumerateInstances\n"},
        {2, "problem setting locate magazine led for cage cage0 magazine 1"},
        {3, "x  2.2|ab  |"},
    };
    EXPECT_EQ(ksvsim::capturedLog(), expected);
    ksvsim::clearCapturedLog();
    ksvsim::setLogCapture(false);
    log_message(2, "not captured");
    EXPECT_TRUE(ksvsim::capturedLog().empty());
}

TEST_F(LibraryLog, LevelDecidesWhatReachesTheSinkAndBadSinksAreRefused) {
    std::remove(logFile_.c_str());
    ASSERT_FALSE(ksvsim::setLogSink("file:" + logFile_));
    ksvsim::setLogLevel(3);
    log_message(2, "error line %d", 1);
    log_message(3, "warning line\n");
    log_message(4, "trace line");
    EXPECT_NE(logText().find("[2] error line 1\n"), std::string::npos) << logText();
    EXPECT_NE(logText().find("[3] warning line\n"), std::string::npos) << logText();
    EXPECT_EQ(logText().find("trace line"), std::string::npos) << logText();

    const auto unknown = ksvsim::setLogSink("printer");
    ASSERT_TRUE(unknown);
    EXPECT_NE(unknown->find("unknown log sink \"printer\""), std::string::npos);
    const auto unwritable = ksvsim::setLogSink("file:/nonexistent-directory/log.txt");
    ASSERT_TRUE(unwritable);
    EXPECT_NE(unwritable->find("cannot open log file"), std::string::npos);
    ksvsim::setLogLevel(4);
    log_message(4, "trace line");
    EXPECT_NE(logText().find("[4] trace line\n"), std::string::npos) << "the old sink is kept";
}

TEST_F(LibraryLog, PanicPrintsAndAborts) {
    EXPECT_DEATH(ksv_panic("Assertion point: file: %s, line: %d\n", "KSV_Common", 5332),
                 "Assertion point: file: KSV_Common, line: 5332");
}

class GlobalSemaphore : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        ksvsim::setSemaphoreTimeout(std::chrono::milliseconds(20));
    }
};

TEST_F(GlobalSemaphore, WaitTakesPostReleasesAndASecondWaitTimesOut) {
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    ASSERT_EQ(cim_sem_wait(), API_OK);
    EXPECT_TRUE(ksvsim::semaphoreHeld());
    EXPECT_EQ(cim_sem_wait(), API_E_SEM_TIMEOUT) << "the semaphore is not recursive";
    EXPECT_TRUE(ksvsim::semaphoreHeld());
    EXPECT_EQ(cim_sem_post(), API_OK);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_EQ(cim_sem_wait(), API_E_SEM_TIMEOUT);
    EXPECT_FALSE(ksvsim::semaphoreHeld()) << "a forced time-out takes nothing";
    EXPECT_EQ(cim_sem_wait(), API_OK);
    EXPECT_EQ(cim_sem_post(), API_OK);
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

TEST_F(GlobalSemaphore, PostWithoutWaitIsReportedAndCounted) {
    ksvsim::setLogCapture(true);
    EXPECT_EQ(cim_sem_post(), API_E_INVALID);
    ASSERT_EQ(cim_sem_wait(), API_OK);
    EXPECT_EQ(cim_sem_post(), API_OK);
    EXPECT_EQ(cim_sem_post(), API_E_INVALID);
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 2u);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    const LogLine misuse{KSV_LOG_ERROR, "cim_sem_post: semaphore posted without a matching wait\n"};
    EXPECT_EQ(ksvsim::capturedLog(), (std::vector<LogLine>{misuse, misuse}));
}

} // namespace
} // namespace ksvsim::testing
