// The global semaphore: taking, releasing, time-out and misuse.
#include "simulator_test_support.h"

namespace ksvsim::testing {
namespace {

class GlobalSemaphore : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        ksvsim::setSemaphoreTimeout(std::chrono::milliseconds(20));
    }
};

TEST_F(GlobalSemaphore, WaitTakesAndPostReleases) {
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    ASSERT_EQ(cim_sem_wait(), API_OK);
    EXPECT_TRUE(ksvsim::semaphoreHeld());
    EXPECT_EQ(cim_sem_post(), API_OK);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

TEST_F(GlobalSemaphore, WaitOnATakenSemaphoreTimesOut) {
    ASSERT_EQ(cim_sem_wait(), API_OK);
    EXPECT_EQ(cim_sem_wait(), API_E_SEM_TIMEOUT) << "the semaphore is not recursive";
    EXPECT_TRUE(ksvsim::semaphoreHeld());
    EXPECT_EQ(cim_sem_post(), API_OK);
    EXPECT_EQ(cim_sem_wait(), API_OK);
    EXPECT_EQ(cim_sem_post(), API_OK);
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

TEST_F(GlobalSemaphore, ForcedTimeOutTakesNothing) {
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_EQ(cim_sem_wait(), API_E_SEM_TIMEOUT);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    EXPECT_EQ(cim_sem_wait(), API_OK);
    EXPECT_EQ(cim_sem_post(), API_OK);
}

} // namespace
} // namespace ksvsim::testing
