// The module as the CIM server loads it: PegasusCreateProvider and each provider's life from
// initialize to terminate, with the operations every provider refuses.
#include "ProviderTestSupport.h"

#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

#include <cctype>
#include <iterator>
#include <memory>
#include <set>

namespace ksv::test {
namespace {

class ModuleTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        module = std::make_unique<server::ProviderLibrary>(
            "KSV_DiskDriveProvider", std::vector<std::string>{KSV_DISK_MODULE_DIR});
    }
    static void TearDownTestSuite() { module.reset(); }
    static CIMProvider* create(const std::string& name) {
        return module->createProvider(name.c_str());
    }

    static inline std::unique_ptr<server::ProviderLibrary> module;
};

// The refusal of each writing operation, which opens with the provider's own name. The disk drive
// provider modifies the locate indicator instead.
Strings refusals(CIMProvider* provider, bool modifies) {
    auto* instances = dynamic_cast<CIMInstanceProvider*>(provider);
    if (!instances)
        return {"not an instance provider"};
    RecordingResponseHandler handler;
    RecordingObjectPathHandler pathHandler;
    Strings refused = {failureOf([&] {
                           instances->createInstance(OperationContext(), CIMObjectPath(),
                                                     CIMInstance(), pathHandler);
                       }),
                       failureOf([&] {
                           instances->deleteInstance(OperationContext(), CIMObjectPath(), handler);
                       })};
    if (!modifies) {
        refused.push_back(failureOf([&] {
            instances->modifyInstance(OperationContext(), CIMObjectPath(), CIMInstance(), false,
                                      CIMPropertyList(), handler);
        }));
    }
    EXPECT_TRUE(handler.events().empty() && pathHandler.events().empty());
    return refused;
}

std::string alternatingCase(std::string name) {
    for (size_t i = 0; i < name.size(); i++)
        name[i] = static_cast<char>(i % 2 ? std::tolower(name[i]) : std::toupper(name[i]));
    return name;
}

struct Lifecycle {
    const char* provider;
    const char* entryTrace;
    const char* exitTrace;
    // What initialize asks the server, in order.
    Strings serverRequests;
    // The library's hash-table calls of initialize, "function(argument)".
    Strings tableCalls;
};

const Strings NAME_HOST_QUAD = {"invokeMethod GetSystemName", "invokeMethod GetSystemHostName",
                                "invokeMethod IsQuadPortSystem"};
const Strings NAME_HOST = {"invokeMethod GetSystemName", "invokeMethod GetSystemHostName"};
const Strings HOST = {"invokeMethod GetSystemHostName"};
const Strings SYSTEM = {"enumerateInstanceNames KSV_StorageSystem",
                        "invokeMethod GetSystemHostName"};

Strings operator+(Strings first, const Strings& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The instance providers' traces differ from each other; those of the association providers
// carry a ")" after the newline.
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
    {"KSV_DiskPackageRealizesProvider", nullptr, nullptr, NAME_HOST_QUAD, {}},
    {"KSV_DiskSoftwareProvider", nullptr, nullptr, NAME_HOST_QUAD, {}},
    {"KSV_DiskPresentProvider", nullptr, nullptr, NAME_HOST_QUAD, {}},
    {"KSV_MagazineContainerProvider", nullptr, nullptr, NAME_HOST, {}},
    {"KSV_SystemDiskProvider", nullptr, nullptr, SYSTEM + NAME_HOST_QUAD, {}},
    {"KSV_SystemExtentProvider", nullptr, nullptr, SYSTEM + NAME_HOST, {}},
    {"KSV_VolumeBasedOnDiskExtentProvider",
     nullptr,
     nullptr,
     NAME_HOST,
     {"create_int_hashtable(2048)", "set_invalid_value(-1)"}},
    {"KSV_AssociatedPrimordialDisksProvider",
     nullptr,
     nullptr,
     NAME_HOST,
     {"create_int_hashtable(2048)", "create_string_hashtable(2048)", "set_invalid_value(0)"}},
};

TEST_F(ModuleTest, EachNameInAnyCaseYieldsANewProviderThatRefusesWriting) {
    EXPECT_EQ(std::string(KSV_DISK_MODULE).substr(std::string(KSV_DISK_MODULE).rfind('/') + 1),
              "libKSV_DiskDriveProvider.so.1");
    ProviderHarness harness;
    for (const Lifecycle& lifecycle : LIFECYCLES) {
        const std::string name = lifecycle.provider;
        SCOPED_TRACE(name);
        std::string lower = name;
        std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
        std::set<CIMProvider*> made;
        for (const std::string& asked : {name, lower, alternatingCase(name)}) {
            CIMProvider* provider = create(asked);
            ASSERT_NE(provider, nullptr) << asked;
            made.insert(provider);
            // Only the instance providers trace their own way.
            EXPECT_EQ(dynamic_cast<CIMAssociationProvider*>(provider) == nullptr,
                      lifecycle.entryTrace != nullptr);
            const std::string refused = "CIM_ERR_NOT_SUPPORTED: " + name + " does not support ";
            Strings expected = {refused + "createInstance.", refused + "deleteInstance."};
            if (name != "KSV_DiskDriveProvider")
                expected.push_back(refused + "modifyInstance.");
            EXPECT_EQ(refusals(provider, name == "KSV_DiskDriveProvider"), expected);
        }
        EXPECT_EQ(made.size(), 3u) << "each call makes a new provider";
        for (CIMProvider* provider : made)
            provider->terminate();
    }
    // Making, refusing and terminating uninitialized providers asks neither library nor server.
    EXPECT_TRUE(ksvsim::calls().empty());
    EXPECT_TRUE(ksvsim::capturedLog().empty());
    EXPECT_TRUE(harness.calls().empty());
    for (const char* name :
         {"KSV_DiskDrive", "", "KSV_DiskDriveProvider ", "KSV_DiskDriveProviderX",
          "KSV_MagazineProvider", "KSV_StorageVolumeProvider"})
        EXPECT_EQ(create(name), nullptr) << '"' << name << '"';
}

template <typename Provider>
std::string constructionRefusal() {
    return failureOf([] { Provider refused{CIMObjectPath("KSV_DiskDrive.DeviceID=\"X\"")}; });
}

TEST(InstanceProviders, RefuseConstructionFromAnObjectPath) {
    Strings expected;
    for (const char* name : {"KSV_DiskDriveProvider", "KSV_DiskDrivePackageProvider",
                             "KSV_DiskSoftwareIdentityProvider", "KSV_DiskStorageExtentProvider"})
        expected.push_back(std::string("CIM_ERR_NOT_SUPPORTED: ") + name +
                           " does not support constructor with object path.");
    EXPECT_EQ(Strings({constructionRefusal<KSV_DiskDriveProvider>(),
                       constructionRefusal<KSV_DiskDrivePackageProvider>(),
                       constructionRefusal<KSV_DiskSoftwareIdentityProvider>(),
                       constructionRefusal<KSV_DiskStorageExtentProvider>()}),
              expected);
}

Strings tableCalls() {
    Strings calls;
    for (const std::string& call : arrayCalls()) {
        if (call.find("hashtable") != std::string::npos || call.rfind("set_invalid_value", 0) == 0)
            calls.push_back(call);
    }
    return calls;
}

TEST_F(ModuleTest, InitializeTracesCachesTheIdentityAndCreatesTheTablesThatTerminateDeletes) {
    ProviderHarness harness;
    Strings capLines;
    for (const Lifecycle& expected : LIFECYCLES) {
        SCOPED_TRACE(expected.provider);
        ksvsim::clearCapturedLog();
        ksvsim::clearCalls();
        harness.clearCalls();
        CIMProvider* provider = create(expected.provider);
        CIMOMHandle cimom = harness.cimom();
        provider->initialize(cimom);

        const std::string name = expected.provider;
        const Strings traces = logTexts(4);
        ASSERT_FALSE(traces.empty());
        std::copy_if(traces.begin(), traces.end(), std::back_inserter(capLines),
                     [](const std::string& line) { return line.rfind("soft limit = ", 0) == 0; });
        EXPECT_EQ(traces.front(), expected.entryTrace ? expected.entryTrace
                                                      : "--> " + name + "::initialize(cimom)\n)");
        EXPECT_EQ(traces.back(), expected.exitTrace ? expected.exitTrace
                                                    : "<-- " + name + "::initialize(cimom)\n)");
        Strings requests;
        for (const ServerCall& call : harness.calls()) {
            EXPECT_EQ(call.route, Route::LocalClient) << call.operation;
            requests.push_back(call.operation + " " + call.target);
        }
        EXPECT_EQ(requests, expected.serverRequests);
        EXPECT_EQ(tableCalls(), expected.tableCalls);

        ksvsim::clearCalls();
        provider->terminate();
        const auto created =
            std::count_if(expected.tableCalls.begin(), expected.tableCalls.end(),
                          [](const std::string& call) { return call.rfind("create_", 0) == 0; });
        EXPECT_EQ(tableCalls(), Strings(created, "delete_hashtable()"));
    }
    // The two instance caps follow the address-space limit with their own scales.
    ASSERT_EQ(capLines.size(), 2u);
    EXPECT_NE(capLines[0].find(", maxInstScale factor = 110\n"), std::string::npos);
    EXPECT_NE(capLines[1].find(", maxInstScale factor = 150\n"), std::string::npos);
}

TEST_F(ModuleTest, UnreadableIdentityFailsInitialize) {
    ProviderHarness harness;
    for (Route route : {Route::LocalClient, Route::ServerHandle})
        harness.failOperation(route, "invokeMethod");
    CIMProvider* provider = create("KSV_DiskDriveProvider");
    CIMOMHandle cimom = harness.cimom();
    EXPECT_THROW(provider->initialize(cimom), CIMException);
    EXPECT_EQ(logTexts(4).front(), "--> KSV_DiskDriveProvider::initialize()\n");
    EXPECT_NE(logTexts(4).back(), "-->KSV_DiskDriveProvider::initialize()\n");
    provider->terminate();
}

} // namespace
} // namespace ksv::test
