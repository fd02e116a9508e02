// Each provider of the loaded module through its life: initialize against the in-process server
// over the demo array, the refused operations, terminate.
#include "DiskModuleTestSupport.h"

#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

#include <algorithm>
#include <vector>

namespace ksv::test {
namespace {

using namespace Pegasus;

using Lines = std::vector<std::string>;

struct Lifecycle {
    const char* provider;
    const char* entryTrace;
    const char* exitTrace;
    // What initialize asks the server, in order.
    Lines serverRequests;
    // The library's hash-table calls of initialize, "function(argument)".
    Lines tableCalls;
};

const Lines NAME_HOST_QUAD = {"invokeMethod GetSystemName", "invokeMethod GetSystemHostName",
                              "invokeMethod IsQuadPortSystem"};
const Lines NAME_HOST = {"invokeMethod GetSystemName", "invokeMethod GetSystemHostName"};
const Lines HOST = {"invokeMethod GetSystemHostName"};
const Lines SYSTEM_PATH = {"enumerateInstanceNames KSV_StorageSystem",
                           "invokeMethod GetSystemHostName"};

Lines operator+(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Lifecycle LIFECYCLES[] = {
    {"KSV_DiskDriveProvider",
     "--> KSV_DiskDriveProvider::initialize()\n",
     "-->KSV_DiskDriveProvider::initialize()\n",
     NAME_HOST_QUAD,
     {}},
    {"KSV_DiskDrivePackageProvider",
     "-->KSV_DiskDrivePackageProvider::initialize()\n",
     "<--KSV_DiskDrivePackageProvider::initialize()\n",
     HOST,
     {}},
    {"KSV_DiskSoftwareIdentityProvider",
     "--> KSV_DiskSoftwareIdentityProvider::initialize()\n",
     "<--KSV_DiskSoftwareIdentityProvider::initialize()\n",
     HOST,
     {"create_string_hashtable(2048)", "set_invalid_value(0)"}},
    {"KSV_DiskStorageExtentProvider",
     "--> KSV_DiskStorageExtentProvider::initialize()\n",
     "-->KSV_DiskStorageExtentProvider::initialize()\n",
     NAME_HOST,
     {}},
    {"KSV_DiskPackageRealizesProvider",
     "--> KSV_DiskPackageRealizesProvider::initialize(cimom)\n)",
     "<-- KSV_DiskPackageRealizesProvider::initialize(cimom)\n)",
     NAME_HOST_QUAD,
     {}},
    {"KSV_DiskSoftwareProvider",
     "--> KSV_DiskSoftwareProvider::initialize(cimom)\n)",
     "<-- KSV_DiskSoftwareProvider::initialize(cimom)\n)",
     NAME_HOST_QUAD,
     {}},
    {"KSV_DiskPresentProvider",
     "--> KSV_DiskPresentProvider::initialize(cimom)\n)",
     "<-- KSV_DiskPresentProvider::initialize(cimom)\n)",
     NAME_HOST_QUAD,
     {}},
    {"KSV_MagazineContainerProvider",
     "--> KSV_MagazineContainerProvider::initialize(cimom)\n)",
     "<-- KSV_MagazineContainerProvider::initialize(cimom)\n)",
     NAME_HOST,
     {}},
    {"KSV_SystemDiskProvider",
     "--> KSV_SystemDiskProvider::initialize(cimom)\n)",
     "<-- KSV_SystemDiskProvider::initialize(cimom)\n)",
     SYSTEM_PATH + NAME_HOST_QUAD,
     {}},
    {"KSV_SystemExtentProvider",
     "--> KSV_SystemExtentProvider::initialize(cimom)\n)",
     "<-- KSV_SystemExtentProvider::initialize(cimom)\n)",
     SYSTEM_PATH + NAME_HOST,
     {}},
    {"KSV_VolumeBasedOnDiskExtentProvider",
     "--> KSV_VolumeBasedOnDiskExtentProvider::initialize(cimom)\n)",
     "<-- KSV_VolumeBasedOnDiskExtentProvider::initialize(cimom)\n)",
     NAME_HOST,
     {"create_int_hashtable(2048)", "set_invalid_value(-1)"}},
    {"KSV_AssociatedPrimordialDisksProvider",
     "--> KSV_AssociatedPrimordialDisksProvider::initialize(cimom)\n)",
     "<-- KSV_AssociatedPrimordialDisksProvider::initialize(cimom)\n)",
     NAME_HOST,
     {"create_int_hashtable(2048)", "create_string_hashtable(2048)", "set_invalid_value(0)"}},
};

class ProviderLifecycle : public DiskModuleTest {
protected:
    ProviderHarness harness;

    Lines serverRequests() {
        Lines requests;
        for (const ServerCall& call : harness.server().calls()) {
            EXPECT_EQ(call.route, Route::LocalClient) << call.operation;
            requests.push_back(call.operation + " " + call.target);
        }
        return requests;
    }

    static Lines tableCalls() {
        Lines calls;
        for (const ksvsim::CallRecord& call : ksvsim::calls()) {
            if (call.function.find("hashtable") != std::string::npos ||
                call.function == "set_invalid_value")
                calls.push_back(call.function + "(" + call.argument + ")");
        }
        return calls;
    }
};

TEST_F(ProviderLifecycle, InitializeTracesCachesTheIdentityAndCreatesItsTables) {
    for (const Lifecycle& expected : LIFECYCLES) {
        SCOPED_TRACE(expected.provider);
        harness.clearLog();
        harness.clearArrayCalls();
        harness.server().clearCalls();
        CIMProvider* provider = create(expected.provider);
        CIMOMHandle cimom = harness.cimom();
        provider->initialize(cimom);

        const Lines traces = harness.logTexts(4);
        ASSERT_FALSE(traces.empty());
        EXPECT_EQ(traces.front(), expected.entryTrace);
        EXPECT_EQ(traces.back(), expected.exitTrace);
        EXPECT_EQ(serverRequests(), expected.serverRequests);
        EXPECT_EQ(tableCalls(), expected.tableCalls);

        harness.clearArrayCalls();
        provider->terminate();
        EXPECT_EQ(tableCalls(),
                  Lines(std::count_if(
                            expected.tableCalls.begin(), expected.tableCalls.end(),
                            [](const std::string& call) { return call.rfind("create_", 0) == 0; }),
                        "delete_hashtable()"));
    }
}

TEST_F(ProviderLifecycle, InstanceCapsFollowTheAddressSpaceLimit) {
    for (const char* name :
         {"KSV_VolumeBasedOnDiskExtentProvider", "KSV_AssociatedPrimordialDisksProvider"}) {
        CIMProvider* provider = create(name);
        CIMOMHandle cimom = harness.cimom();
        provider->initialize(cimom);
        provider->terminate();
    }
    const Lines traces = harness.logTexts(4);
    const auto scales = std::count_if(traces.begin(), traces.end(), [](const std::string& line) {
        return line.rfind("soft limit = ", 0) == 0;
    });
    EXPECT_EQ(scales, 2);
    EXPECT_NE(std::find_if(traces.begin(), traces.end(),
                           [](const std::string& line) {
                               return line.find(", maxInstScale factor = 110\n") !=
                                      std::string::npos;
                           }),
              traces.end());
    EXPECT_NE(std::find_if(traces.begin(), traces.end(),
                           [](const std::string& line) {
                               return line.find(", maxInstScale factor = 150\n") !=
                                      std::string::npos;
                           }),
              traces.end());
}

TEST_F(ProviderLifecycle, UnreadableIdentityFailsInitialize) {
    for (Route route : {Route::LocalClient, Route::ServerHandle})
        harness.server().setCacheAnswer("GetSystemName", route, {CacheAnswer::Kind::Throws, ""});
    CIMProvider* provider = create("KSV_DiskDriveProvider");
    CIMOMHandle cimom = harness.cimom();
    EXPECT_THROW(provider->initialize(cimom), CIMException);
    EXPECT_EQ(harness.logTexts(4).front(), "--> KSV_DiskDriveProvider::initialize()\n");
    EXPECT_NE(harness.logTexts(4).back(), "-->KSV_DiskDriveProvider::initialize()\n");
    provider->terminate();
}

TEST_F(ProviderLifecycle, WritingOperationsAreRefusedWithTheProvidersName) {
    for (const char* name : PROVIDER_NAMES) {
        CIMInstanceProvider* provider = dynamic_cast<CIMInstanceProvider*>(create(name));
        ASSERT_NE(provider, nullptr);
        RecordingResponseHandler handler;
        RecordingObjectPathHandler pathHandler;
        const std::string prefix = std::string(name) + " does not support ";
        try {
            provider->createInstance(OperationContext(), CIMObjectPath(), CIMInstance(),
                                     pathHandler);
            ADD_FAILURE() << name << " created an instance";
        } catch (const CIMNotSupportedException& e) {
            EXPECT_EQ(text(e.getMessage()), prefix + "createInstance.");
        }
        try {
            provider->deleteInstance(OperationContext(), CIMObjectPath(), handler);
            ADD_FAILURE() << name << " deleted an instance";
        } catch (const CIMNotSupportedException& e) {
            EXPECT_EQ(text(e.getMessage()), prefix + "deleteInstance.");
        }
        // The disk drive provider modifies the locate indicator instead.
        if (std::string(name) != "KSV_DiskDriveProvider") {
            try {
                provider->modifyInstance(OperationContext(), CIMObjectPath(), CIMInstance(), false,
                                         CIMPropertyList(), handler);
                ADD_FAILURE() << name << " modified an instance";
            } catch (const CIMNotSupportedException& e) {
                EXPECT_EQ(text(e.getMessage()), prefix + "modifyInstance.");
            }
        }
        EXPECT_TRUE(handler.events().empty());
        EXPECT_TRUE(pathHandler.events().empty());
        provider->terminate();
    }
    EXPECT_TRUE(harness.log().empty());
    EXPECT_TRUE(harness.arrayCalls().empty());
}

template <typename Provider>
std::string refusalOfConstructionFromAPath() {
    try {
        Provider provider(CIMObjectPath("root/ksv:KSV_DiskDrive.DeviceID=\"X\""));
    } catch (const CIMNotSupportedException& e) {
        return text(e.getMessage());
    }
    return "constructed";
}

TEST(InstanceProviders, RefuseConstructionFromAnObjectPath) {
    EXPECT_EQ(refusalOfConstructionFromAPath<KSV_DiskDriveProvider>(),
              "KSV_DiskDriveProvider does not support constructor with object path.");
    EXPECT_EQ(refusalOfConstructionFromAPath<KSV_DiskDrivePackageProvider>(),
              "KSV_DiskDrivePackageProvider does not support constructor with object path.");
    EXPECT_EQ(refusalOfConstructionFromAPath<KSV_DiskSoftwareIdentityProvider>(),
              "KSV_DiskSoftwareIdentityProvider does not support constructor with object path.");
    EXPECT_EQ(refusalOfConstructionFromAPath<KSV_DiskStorageExtentProvider>(),
              "KSV_DiskStorageExtentProvider does not support constructor with object path.");
}

} // namespace
} // namespace ksv::test
