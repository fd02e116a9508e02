// The user gate, the semaphore discipline and the response-handler helpers.
#include "CommonTestSupport.h"

#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>

#include <stdexcept>

namespace ksv::test {
namespace {

using namespace Pegasus;

using UserGate = HarnessTest;

TEST_F(UserGate, RefusedUserIsDeniedWithTheProvidersSourceBeforeAnyArrayCall) {
    const OperationContext context = ProviderHarness::context("auditor"); // refused by the model
    const Uint32 line = __LINE__ + 2;
    try {
        KSV_CHECK_USER_ACCESS(context, "KSV_DiskDriveProvider");
        FAIL() << "the refused user passed";
    } catch (const TraceableCIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_ACCESS_DENIED);
        EXPECT_EQ(text(e.getMessage()), "Insufficient privilege for the user");
        EXPECT_EQ(text(e.getFile()), "KSV_DiskDriveProvider");
        EXPECT_EQ(e.getLine(), line);
    }
    const std::vector<ksvsim::CallRecord> calls = ksvsim::calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].function, "api_ksvOpenForCimserver");
    EXPECT_EQ(calls[0].argument, "auditor");
}

TEST_F(UserGate, GrantedUserPassesUntilRefusedAndNoIdentityIsTheEmptyUser) {
    EXPECT_NO_THROW(KSV_CHECK_USER_ACCESS(ProviderHarness::context("monitor"), "X"));
    ksvsim::refuseUser("monitor");
    EXPECT_THROW(KSV_CHECK_USER_ACCESS(ProviderHarness::context("monitor"), "X"),
                 TraceableCIMException);
    EXPECT_EQ(text(KSV_Common::getUserName(OperationContext())), "");
    ksvsim::clearCalls();
    EXPECT_THROW(KSV_CHECK_USER_ACCESS(OperationContext(), "X"), TraceableCIMException);
    ASSERT_EQ(ksvsim::calls().size(), 1u);
    EXPECT_EQ(ksvsim::calls()[0].argument, "");
}

using Semaphore = HarnessTest;

TEST_F(Semaphore, FailedWaitMakesNoCallAnswersTheWaitsCodeAndNeverPosts) {
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    bool called = false;
    const int result = KSV_Common::callUnderSemaphore([&called] {
        called = true;
        return 0;
    });
    EXPECT_EQ(result, API_E_SEM_TIMEOUT);
    EXPECT_FALSE(called);
    EXPECT_EQ(harness.arrayCalls(), std::vector<std::string>{"cim_sem_wait"});
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

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
    EXPECT_EQ(harness.arrayCalls(),
              (Strings{"cim_sem_wait", "api_getSystemDisks", "cim_sem_post"}));
    harness.clearArrayCalls();
    EXPECT_THROW(KSV_Common::callUnderSemaphore([]() -> int { throw std::runtime_error("x"); }),
                 std::runtime_error);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    EXPECT_EQ(harness.arrayCalls(), (Strings{"cim_sem_wait", "cim_sem_post"}));
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

// Each operation kind reaches exactly the handler of its kind, names operations with the
// instance's path; an unknown kind is ignored.
TEST(HandlerHelpers, EachOperationKindUsesTheHandlerOfItsKind) {
    enum Expected { OBJECTS, PATHS, INSTANCES, NONE };
    const struct {
        cim_method_e method;
        Expected handler;
    } kinds[] = {{KSVCIM_ASSOCIATORS, OBJECTS},          {KSVCIM_ASSOCIATORNAMES, PATHS},
                 {KSVCIM_REFERENCES, OBJECTS},           {KSVCIM_REFERENCENAMES, PATHS},
                 {KSVCIM_GETINSTANCE, INSTANCES},        {KSVCIM_ENUMERATEINSTANCES, INSTANCES},
                 {KSVCIM_ENUMERATEINSTANCENAMES, PATHS}, {static_cast<cim_method_e>(7), NONE}};
    CIMInstance instance("KSV_DiskDrive");
    instance.setPath(path("KSV_DiskDrive.DeviceID=\"X\""));
    const std::vector<std::string> served = {"processing", "deliver", "complete"};
    for (const auto& kind : kinds) {
        RecordingObjectHandler objects;
        RecordingObjectPathHandler paths;
        RecordingInstanceHandler instances;
        cim_handler_u handler;
        if (kind.handler == OBJECTS)
            handler.objectHandler = &objects;
        else if (kind.handler == PATHS)
            handler.objectPathHandler = &paths;
        else
            handler.instanceHandler = &instances; // an unknown kind must not use it

        KSV_Common::handleProcessing(handler, kind.method);
        KSV_Common::handleDeliver(handler, kind.method, instance);
        KSV_Common::handleComplete(handler, kind.method);

        SCOPED_TRACE(kind.method);
        EXPECT_EQ(objects.events(), kind.handler == OBJECTS ? served : std::vector<std::string>());
        EXPECT_EQ(paths.events(), kind.handler == PATHS ? served : std::vector<std::string>());
        EXPECT_EQ(instances.events(),
                  kind.handler == INSTANCES ? served : std::vector<std::string>());
        if (kind.handler == PATHS) {
            EXPECT_EQ(text(paths.delivered.at(0).toString()), "KSV_DiskDrive.DeviceID=\"X\"");
        }
    }
}

} // namespace
} // namespace ksv::test
