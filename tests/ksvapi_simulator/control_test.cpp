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
    for (const char* name : {"log_message", "api_getSystemDisk", "freeDiskDeviceIDs"})
        EXPECT_THROW(ksvsim::forceResult(name, 1), std::invalid_argument) << name;
    EXPECT_THROW(ksvsim::forceResult("cim_sem_wait", 1, 0), std::invalid_argument);
}

class LibraryLog : public SimulatorTest {};

// Round the log twice and stop two calls into the third round: the latest calls come back
// oldest first, each with its own argument, and a cleared log starts its order afresh.
TEST_F(LibraryLog, CallLogKeepsTheLatestCallsOldestFirst) {
    const int kept = 10000;
    const int made = 2 * kept + 2;
    for (int i = 0; i < made; ++i)
        set_invalid_value(nullptr, i);
    std::vector<ksvsim::CallRecord> calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), std::size_t(kept));
    for (int i = 0; i < kept; ++i)
        ASSERT_EQ(calls[i].argument, std::to_string(made - kept + i)) << i;
    ksvsim::clearCalls();
    for (int i = 0; i < 3; ++i)
        set_invalid_value(nullptr, -i);
    calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].argument + calls[1].argument + calls[2].argument, "0-1-2");
}

TEST_F(LibraryLog, LevelDecidesWhatReachesTheSinkAndBadSinksAreRefused) {
    const std::string logFile =
        ::testing::TempDir() + "ksvapi-log-" + std::to_string(getpid()) + ".txt";
    const auto logText = [&] { return fileText(logFile); };
    std::remove(logFile.c_str());
    ASSERT_FALSE(ksvsim::setLogSink("file:" + logFile));
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
    std::remove(logFile.c_str());
}

TEST_F(LibraryLog, PanicPrintsAndAborts) {
    EXPECT_DEATH(ksv_panic("Assertion point: file: %s, line: %d\n", "KSV_Common", 5332),
                 "Assertion point: file: KSV_Common, line: 5332");
}

class GlobalSemaphore : public SimulatorTest {};

TEST_F(GlobalSemaphore, WaitTakesPostReleasesAndASecondWaitTimesOut) {
    ksvsim::setSemaphoreTimeout(std::chrono::milliseconds(20));
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

// What the environment failed to configure, "" when all of it took effect.
std::string unconfiguredByEnvironment(const std::string& logPath) {
    setenv("KSV_ARRAY_MODEL", examplePath("demo.json").c_str(), 1);
    setenv("KSV_LOG_SINK", ("file:" + logPath).c_str(), 1);
    setenv("KSV_LOG_LEVEL", "4", 1);
    setenv("KSV_SEM_TIMEOUT_MS", "10", 1);
    if (ksvsim::activeModelSource() != examplePath("demo.json"))
        return "model not taken from KSV_ARRAY_MODEL: " + ksvsim::activeModelSource();
    log_message(4, "trace through the file sink");
    if (fileText(logPath).find("[4] trace through the file sink") == std::string::npos)
        return "log file lacks the trace line: " + fileText(logPath);
    if (cim_sem_wait() != API_OK || cim_sem_wait() != API_E_SEM_TIMEOUT)
        return "semaphore time-out not taken from KSV_SEM_TIMEOUT_MS";
    return "";
}

// In a fresh process, since the library reads its environment when it is first used.
TEST(Environment, ChoosesModelLogSinkLevelAndTimeOut) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string logPath =
        ::testing::TempDir() + "ksvapi-env-" + std::to_string(getpid()) + ".log";
    EXPECT_EXIT(
        {
            const std::string failure = unconfiguredByEnvironment(logPath);
            std::fprintf(stderr, "%s\n", failure.c_str());
            std::exit(failure.empty() ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
    std::remove(logPath.c_str());
}

} // namespace
} // namespace ksvsim::testing
