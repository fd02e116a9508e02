// Forced results, the call log and the log of the library.
#include "simulator_test_support.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

class ForcedResults : public SimulatorTest {};

TEST_F(ForcedResults, ForTheNextCallsOnly) {
    ksvsim::forceResult("getDiskDeviceIDs", API_E_NO_MEMORY, 2);
    api_DiskDeviceIDList_t list{};
    EXPECT_EQ(getDiskDeviceIDs(API_ALL_DISK_IDS, &list), API_E_NO_MEMORY);
    EXPECT_EQ(list.count, 0u);
    EXPECT_EQ(list.entries, nullptr);
    EXPECT_EQ(getDiskDeviceIDs(API_ALL_DISK_IDS, &list), API_E_NO_MEMORY);
    EXPECT_EQ(getDiskDeviceIDs(API_ALL_DISK_IDS, &list), API_OK);
    EXPECT_EQ(list.count, 5u);
    freeDiskDeviceIDs(&list);
}

TEST_F(ForcedResults, UntilCleared) {
    ksvsim::forceResult("api_getSystemDisks", API_E_NOT_FOUND);
    for (int i = 0; i < 3; ++i) {
        api_DiskList_t list{};
        EXPECT_EQ(api_getSystemDisks(API_ALL_DISKS, &list), API_E_NOT_FOUND);
        EXPECT_EQ(list.disks, nullptr);
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
    api_ksvOpenForCimserver("monitor");
    api_authorizeCIMUser("monitor", "192.0.2.99", "ksv_storagesetting.modifyinstance");
    int64_t selector = API_ALL_DISKS;
    api_deReferenceDiskDeviceID("5000CCA01A2B3C41-id-1", &selector, nullptr);
    cim_sem_wait();
    readDisks(selector);
    readDisks();
    api_locateMagazine("cage0", 1, API_LOCATE_OFF);
    cim_sem_post();
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"api_ksvOpenForCimserver", "monitor"},
        {"api_authorizeCIMUser", "monitor ksv_storagesetting.modifyinstance"},
        {"api_deReferenceDiskDeviceID", "5000CCA01A2B3C41-id-1"},
        {"cim_sem_wait", ""},
        {"api_getSystemDisks", "5000CCA01A2B3C41"},
        {"api_getSystemDisks", "-10"},
        {"api_locateMagazine", "cage0:1:1"},
        {"cim_sem_post", ""},
    };
    const auto calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), expected.size());
    for (std::size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].function, expected[i].first);
        EXPECT_EQ(calls[i].argument, expected[i].second) << calls[i].function;
        EXPECT_EQ(calls[i].result, API_OK) << calls[i].function;
        EXPECT_EQ(calls[i].thread, std::this_thread::get_id());
    }
}

TEST_F(CallLog, ShowsRefusalsAndForcedResults) {
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    api_ksvOpenForCimserver("guest");
    cim_sem_wait();
    const auto calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].result, API_E_DENIED);
    EXPECT_EQ(calls[1].result, API_E_SEM_TIMEOUT);
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
        if (!logFile_.empty()) {
            std::remove(logFile_.c_str());
        }
        SimulatorTest::TearDown();
    }

    std::string useLogFile() {
        logFile_ = ::testing::TempDir() + "ksvapi-log-" + std::to_string(getpid()) + ".txt";
        std::remove(logFile_.c_str());
        const auto error = ksvsim::setLogSink("file:" + logFile_);
        EXPECT_FALSE(error) << *error;
        return logFile_;
    }

    static std::string contents(const std::string& path) {
        std::ifstream file(path);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::string logFile_;
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

TEST_F(LibraryLog, LevelFilterDecidesWhatReachesTheSink) {
    const std::string path = useLogFile();
    ksvsim::setLogLevel(3);
    log_message(2, "error line %d", 1);
    log_message(3, "warning line\n");
    log_message(4, "trace line");
    const std::string text = contents(path);
    EXPECT_NE(text.find("[2] error line 1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("[3] warning line\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("trace line"), std::string::npos) << text;
    ksvsim::setLogLevel(4);
    log_message(4, "trace line");
    EXPECT_NE(contents(path).find("[4] trace line\n"), std::string::npos);
}

TEST_F(LibraryLog, BadSinkIsRefusedAndTheOldOneKept) {
    const std::string path = useLogFile();
    const auto unknown = ksvsim::setLogSink("printer");
    ASSERT_TRUE(unknown);
    EXPECT_NE(unknown->find("unknown log sink \"printer\""), std::string::npos);
    const auto unwritable = ksvsim::setLogSink("file:/nonexistent-directory/log.txt");
    ASSERT_TRUE(unwritable);
    EXPECT_NE(unwritable->find("cannot open log file"), std::string::npos);
    log_message(2, "still here");
    EXPECT_NE(contents(path).find("still here"), std::string::npos);
}

TEST_F(LibraryLog, PanicPrintsAndAborts) {
    EXPECT_DEATH(ksv_panic("Assertion point: file: %s, line: %d\n", "KSV_Common", 5332),
                 "Assertion point: file: KSV_Common, line: 5332");
}

} // namespace
} // namespace ksvsim::testing
