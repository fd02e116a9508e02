// The user gate and the semaphore discipline.
#include "ProviderTestSupport.h"

#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>

namespace ksv::test {
namespace {

using UserGate = HarnessTest;

TEST_F(UserGate, RefusedUserIsDeniedWithTheProvidersSource) {
    const OperationContext context = ProviderHarness::context("auditor"); // refused by the model
    const Uint32 line = __LINE__ + 2;
    try {
        KSV_CHECK_USER_ACCESS(context, "KSV_DiskDriveProvider");
        FAIL() << "the refused user passed";
    } catch (const TraceableCIMException& e) {
        EXPECT_EQ(text(e.getFile()), "KSV_DiskDriveProvider");
        EXPECT_EQ(e.getLine(), line);
    }
}

TEST_F(UserGate, GrantedUserPassesUntilRefusedAndNoIdentityFailsBeforeTheLibrary) {
    EXPECT_NO_THROW(KSV_CHECK_USER_ACCESS(ProviderHarness::context("monitor"), "X"));
    ksvsim::refuseUser("monitor");
    EXPECT_THROW(KSV_CHECK_USER_ACCESS(ProviderHarness::context("monitor"), "X"),
                 TraceableCIMException);
    ksvsim::clearCalls();
    try {
        KSV_CHECK_USER_ACCESS(OperationContext(), "X");
        FAIL() << "a context without an identity passed";
    } catch (const CIMException&) {
        FAIL() << "a context without an identity was answered as a CIM error";
    } catch (const Exception& e) {
        EXPECT_EQ(text(e.getMessage()), "object not found");
    }
    EXPECT_EQ(ksvsim::calls().size(), 0u);
}

using Semaphore = HarnessTest;

TEST_F(Semaphore, CallRunsWhileHeldKeepsItsCodeOrExceptionAndIsFollowedByOnePost) {
    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY, 1);
    bool heldDuringCall = false;
    const int result = KSV_Common::callUnderSemaphore([&heldDuringCall] {
        heldDuringCall = ksvsim::semaphoreHeld();
        api_DiskList_t disks = {0, nullptr};
        return api_getSystemDisks(API_ALL_DISKS, &disks);
    });
    EXPECT_EQ(result, API_E_NO_MEMORY);
    EXPECT_TRUE(heldDuringCall);
    EXPECT_EQ(arrayCalls(),
              (Strings{"cim_sem_wait()", "api_getSystemDisks(-10)", "cim_sem_post()"}));
    ksvsim::clearCalls();
    EXPECT_THROW(KSV_Common::callUnderSemaphore([]() -> int { throw std::runtime_error("x"); }),
                 std::runtime_error);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    EXPECT_EQ(arrayCalls(), (Strings{"cim_sem_wait()", "cim_sem_post()"}));
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

} // namespace
} // namespace ksv::test
