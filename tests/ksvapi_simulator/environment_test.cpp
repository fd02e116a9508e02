// Configuration through the environment, read when the library is first
// used; the case runs in a fresh process of its own.
#include "simulator_test_support.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

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
