// What every read operation of the four disk instance providers shares: the user gate first, the
// class check, each disk read bracketed by the global semaphore, an empty answer when the array
// cannot be read, and the trace lines around the work.
#include "InstanceProviderTestSupport.h"

#include <tuple>

namespace ksv::test {
namespace {

struct ProviderCase {
    const char* provider;
    const char* className;
    std::vector<std::pair<std::string, std::string>> keysOfAnInstance;
    size_t instanceCount;
};

std::vector<std::pair<std::string, std::string>> deviceKeys(const char* className) {
    return {{"SystemCreationClassName", "KSV_StorageSystem"},
            {"SystemName", "KSV-MAP"},
            {"CreationClassName", className},
            {"DeviceID", "5001517A0B1C2D30-id-8"}};
}

const ProviderCase PROVIDERS[] = {
    {"KSV_DiskDriveProvider", "KSV_DiskDrive", deviceKeys("KSV_DiskDrive"), 5},
    {"KSV_DiskDrivePackageProvider",
     "KSV_DiskDrivePackage",
     {{"CreationClassName", "KSV_DiskDrivePackage"}, {"Tag", "5001517A0B1C2D30-id-8"}},
     5},
    {"KSV_DiskSoftwareIdentityProvider",
     "KSV_DiskSoftwareIdentity",
     {{"InstanceID", "QUANOR:4.02"}},
     3},
    {"KSV_DiskStorageExtentProvider", "KSV_DiskStorageExtent", deviceKeys("KSV_DiskStorageExtent"),
     5},
};

const char* const OPERATIONS[] = {"getInstance", "enumerateInstances", "enumerateInstanceNames"};

void PrintTo(const ProviderCase& kind, std::ostream* out) {
    *out << kind.provider;
}

class ReadOperationShapeTest
    : public MappingArrayTest,
      public ::testing::WithParamInterface<std::tuple<ProviderCase, const char*>> {
protected:
    const ProviderCase& kind() const { return std::get<0>(GetParam()); }
    std::string operation() const { return std::get<1>(GetParam()); }

    // The operation on the class (on an instance of it for getInstance): how many results, and
    // the handler's events.
    struct Answer {
        size_t count;
        Strings events;
    };
    Answer run(const std::string& className, const std::string& user = "admin") {
        const Query query{nullptr, "", "", CIMPropertyList(), user, className.c_str()};
        if (operation() == "getInstance") {
            const auto handler =
                provider.getInstance(pathOf(className, kind().keysOfAnInstance), query);
            return {handler.delivered.size(), handler.events()};
        }
        if (operation() == "enumerateInstances") {
            const auto handler = provider.enumerateInstances(query);
            return {handler.delivered.size(), handler.events()};
        }
        const auto handler = provider.enumerateInstanceNames(query);
        return {handler.delivered.size(), handler.events()};
    }
    Answer run() { return run(kind().className); }
    size_t expectedCount() const { return operation() == "getInstance" ? 1 : kind().instanceCount; }

    DiskProvider provider{harness, kind().provider};
};

TEST_P(ReadOperationShapeTest, GateFirstThenEachDiskReadUnderTheSemaphore) {
    ksvsim::clearCalls();
    const Answer answer = run();
    EXPECT_EQ(answer.count, expectedCount());
    EXPECT_EQ(answer.events.front(), "processing");
    EXPECT_EQ(answer.events.back(), "complete");
    const Strings calls = arrayCalls();
    EXPECT_EQ(calls.front(), "api_ksvOpenForCimserver(admin)");
    const auto read = std::find_if(calls.begin(), calls.end(), [](const std::string& call) {
        return call.rfind("api_getSystemDisks", 0) == 0;
    });
    ASSERT_NE(read, calls.end());
    EXPECT_EQ(*(read - 1), "cim_sem_wait()");
    EXPECT_EQ(*(read + 1), "cim_sem_post()");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "cim_sem_wait()"), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "cim_sem_post()"), 1);
    EXPECT_FALSE(ksvsim::semaphoreHeld());
}

TEST_P(ReadOperationShapeTest, RefusedUserAndOtherClassesAreTurnedAwayBeforeAnyRead) {
    ksvsim::clearCalls();
    EXPECT_EQ(failureOf([&] { run(kind().className, "guest"); }),
              "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
    EXPECT_EQ(failureOf([&] { run("CIM_ManagedElement"); }),
              "CIM_ERR_NOT_SUPPORTED: " + std::string(kind().provider) +
                  " Invalid class nameCIM_ManagedElement");
    EXPECT_EQ(arrayCalls(),
              (Strings{"api_ksvOpenForCimserver(guest)", "api_ksvOpenForCimserver(admin)"}));

    std::string lowerCase = kind().className;
    std::transform(lowerCase.begin(), lowerCase.end(), lowerCase.begin(), ::tolower);
    EXPECT_EQ(run(lowerCase).count, expectedCount());
}

TEST_P(ReadOperationShapeTest, ArrayThatCannotBeReadGivesAnEmptyAnswer) {
    for (const char* failing : {"cim_sem_wait", "api_getSystemDisks"}) {
        SCOPED_TRACE(failing);
        ksvsim::forceResult(failing, API_E_SEM_TIMEOUT, 1);
        ksvsim::clearCalls();
        if (operation() == "getInstance") {
            EXPECT_EQ(failureOf([&] { run(); }).rfind("CIM_ERR_NOT_FOUND: ", 0), 0u);
        } else {
            EXPECT_EQ(run().events, (Strings{"processing", "complete"}));
        }
        const Strings calls = arrayCalls();
        // A wait that failed is not posted; a failed read still releases the semaphore.
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "cim_sem_post()"),
                  std::string(failing) == "cim_sem_wait" ? 0 : 1);
        EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
        EXPECT_FALSE(ksvsim::semaphoreHeld());
    }
    EXPECT_EQ(run().count, expectedCount());
}

TEST_P(ReadOperationShapeTest, TracesEnterTheOperationAndItsBuilder) {
    ksvsim::clearCapturedLog();
    run();
    const std::string provider = kind().provider;
    const std::string builder =
        operation() == "enumerateInstanceNames" ? "_build_ref" : "_build_instances";
    Strings traces;
    for (const std::string& line : logTexts(4)) {
        if (line.find(provider + "::") != std::string::npos)
            traces.push_back(line);
    }
    EXPECT_EQ(traces, (Strings{"--> " + provider + "::" + operation() + "\n",
                               "--> " + provider + "::" + builder + "\n",
                               "<-- " + provider + "::" + builder + "\n",
                               "<-- " + provider + "::" + operation() + "\n"}));
}

INSTANTIATE_TEST_SUITE_P(
    DiskInstanceProviders, ReadOperationShapeTest,
    ::testing::Combine(::testing::ValuesIn(PROVIDERS), ::testing::ValuesIn(OPERATIONS)),
    [](const ::testing::TestParamInfo<std::tuple<ProviderCase, const char*>>& info) {
        return std::string(std::get<0>(info.param).className) + "_" + std::get<1>(info.param);
    });

} // namespace
} // namespace ksv::test
