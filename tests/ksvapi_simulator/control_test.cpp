// Forced results, the log of the library, the global semaphore, and how the environment
// configures them when the library is first used (in a fresh process of its own).
#include "simulator_test_support.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

class ForcedResults : public SimulatorTest {};

// A misspelt name must not silently force nothing.
TEST_F(ForcedResults, RefuseFunctionsThatCannotBeForced) {
    EXPECT_THROW(ksvsim::forceResult("log_message", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("api_getSystemDisk", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("freeDiskDeviceIDs", 1), std::invalid_argument);
    EXPECT_THROW(ksvsim::forceResult("cim_sem_wait", 1, 0), std::invalid_argument);
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

// Ends the process: 0 when 'failure' is empty, else 1 after printing it.
[[noreturn]] void exitWith(const std::string& failure) {
    std::fprintf(stderr, "%s\n", failure.c_str());
    std::exit(failure.empty() ? 0 : 1);
}

void modelLogAndTimeOutFromEnvironment(const std::string& logPath) {
    setenv("KSV_ARRAY_MODEL", examplePath("demo.json").c_str(), 1);
    setenv("KSV_LOG_SINK", ("file:" + logPath).c_str(), 1);
    setenv("KSV_LOG_LEVEL", "4", 1);
    setenv("KSV_SEM_TIMEOUT_MS", "10", 1);
    if (ksvsim::activeModelSource() != examplePath("demo.json")) {
        exitWith("model not taken from KSV_ARRAY_MODEL: " + ksvsim::activeModelSource());
    }
    log_message(4, "trace through the file sink");
    if (fileText(logPath).find("[4] trace through the file sink") == std::string::npos) {
        exitWith("log file lacks the trace line: " + fileText(logPath));
    }
    if (cim_sem_wait() != API_OK || cim_sem_wait() != API_E_SEM_TIMEOUT) {
        exitWith("semaphore time-out not taken from KSV_SEM_TIMEOUT_MS");
    }
    exitWith("");
}

class Environment : public ::testing::Test {
protected:
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        logPath_ = ::testing::TempDir() + "ksvapi-env-" + std::to_string(getpid()) + ".log";
    }
    void TearDown() override { std::remove(logPath_.c_str()); }

    std::string logPath_;
};

TEST_F(Environment, ChoosesModelLogSinkLevelAndTimeOut) {
    EXPECT_EXIT(modelLogAndTimeOutFromEnvironment(logPath_), ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace ksvsim::testing
