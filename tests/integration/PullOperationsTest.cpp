// The pull operations through CIMClient: every Open operation pages to the same results as its
// one-shot form; contexts end on close, at expiry and at shutdown, belong to their user, and a
// name no open enumeration has is refused; a slow client pages a large array while the server's
// memory stays flat.
#include "array_generator.h"

#include "IntegrationTest.h"

#include <chrono>
#include <fstream>
#include <functional>
#include <set>
#include <thread>

namespace ksv::test {
namespace {

using Paths = std::set<std::string>;

// Pulls until the end, `page` at a time, after a first page already taken.
template <typename Result>
Paths pullRest(CIMClient& client, CIMEnumerationContext& context, Boolean ended, Paths collected,
               Uint32 page) {
    while (!ended) {
        Array<Result> next;
        if constexpr (std::is_same_v<Result, CIMInstance>)
            next = client.pullInstancesWithPath(context, ended, page);
        else
            next = client.pullInstancePaths(context, ended, page);
        const Paths names = bareTexts(next);
        collected.insert(names.begin(), names.end());
    }
    return collected;
}

using PullOperationsTest = IntegrationTest;

TEST_F(PullOperationsTest, EveryOpenOperationPagesToItsOneShotResults) {
    auto admin = client();
    const CIMName disks("KSV_DiskDrive");
    const CIMObjectPath disk = diskPath(0);
    struct Case {
        const char* name;
        std::function<Paths(CIMEnumerationContext&, Boolean&)> open;
        std::function<Paths()> oneShot;
        bool paths;
    };
    const Case cases[] = {
        {"OpenEnumerateInstances",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openEnumerateInstances(
                 context, ended, KSV_NAMESPACE, disks, true, false, CIMPropertyList(),
                 String::EMPTY, String::EMPTY, Uint32Arg(), false, 2));
         },
         [&] { return bareTexts(admin->enumerateInstances(KSV_NAMESPACE, disks)); }, false},
        {"OpenEnumerateInstancePaths",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openEnumerateInstancePaths(context, ended, KSV_NAMESPACE,
                                                                disks, String::EMPTY, String::EMPTY,
                                                                Uint32Arg(), false, 2));
         },
         [&] { return bareTexts(admin->enumerateInstanceNames(KSV_NAMESPACE, disks)); }, true},
        {"OpenReferenceInstances",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openReferenceInstances(
                 context, ended, KSV_NAMESPACE, disk, CIMName(), String::EMPTY, false,
                 CIMPropertyList(), String::EMPTY, String::EMPTY, Uint32Arg(), false, 2));
         },
         [&] { return bareTexts(admin->references(KSV_NAMESPACE, disk)); }, false},
        {"OpenReferenceInstancePaths",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openReferenceInstancePaths(
                 context, ended, KSV_NAMESPACE, disk, CIMName(), String::EMPTY, String::EMPTY,
                 String::EMPTY, Uint32Arg(), false, 2));
         },
         [&] { return bareTexts(admin->referenceNames(KSV_NAMESPACE, disk)); }, true},
        {"OpenAssociatorInstances",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openAssociatorInstances(
                 context, ended, KSV_NAMESPACE, disk, CIMName(), CIMName(), String::EMPTY,
                 String::EMPTY, false, CIMPropertyList(), String::EMPTY, String::EMPTY, Uint32Arg(),
                 false, 2));
         },
         [&] { return bareTexts(admin->associators(KSV_NAMESPACE, disk)); }, false},
        {"OpenAssociatorInstancePaths",
         [&](auto& context, auto& ended) {
             return bareTexts(admin->openAssociatorInstancePaths(
                 context, ended, KSV_NAMESPACE, disk, CIMName(), CIMName(), String::EMPTY,
                 String::EMPTY, String::EMPTY, String::EMPTY, Uint32Arg(), false, 2));
         },
         [&] { return bareTexts(admin->associatorNames(KSV_NAMESPACE, disk)); }, true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        CIMEnumerationContext context;
        Boolean ended = false;
        const Paths first = test.open(context, ended);
        EXPECT_LE(first.size(), 2u);
        const Paths all = test.paths ? pullRest<CIMObjectPath>(*admin, context, ended, first, 2)
                                     : pullRest<CIMInstance>(*admin, context, ended, first, 2);
        const Paths expected = test.oneShot();
        EXPECT_GT(expected.size(), 2u);
        EXPECT_EQ(all, expected);
    }
}

TEST_F(PullOperationsTest, ContextsAreClosedOnceExpireAndBelongToTheirUser) {
    auto admin = client();
    auto monitor = client("monitor", "monitor-pw");
    const CIMName disks("KSV_DiskDrive");
    auto openOne = [&](CIMEnumerationContext& context, Uint32Arg timeout = Uint32Arg()) {
        Boolean ended = false;
        admin->openEnumerateInstancePaths(context, ended, KSV_NAMESPACE, disks, String::EMPTY,
                                          String::EMPTY, timeout, false, 1);
        ASSERT_FALSE(ended);
    };
    auto pullOne = [](CIMClient& client, CIMEnumerationContext& context) {
        return cimErrorOf([&] {
            Boolean ended = false;
            client.pullInstancePaths(context, ended, 1);
        });
    };
    const std::string invalid = "CIM_ERR_INVALID_ENUMERATION_CONTEXT";

    CIMEnumerationContext owned;
    openOne(owned);
    // Nothing is pulled yet: the count, once the provider has delivered everything, is all but
    // the first.
    const Uint32 total = admin->enumerateInstanceNames(KSV_NAMESPACE, disks).size();
    Uint64Arg count;
    for (int wait = 0; wait < 100 && count.isNull(); wait++) {
        count = admin->enumerationCount(owned);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_EQ(count.getValue(), total - 1);
    EXPECT_EQ(pullOne(*monitor, owned).rfind(invalid, 0), 0u);
    EXPECT_EQ(pullOne(*admin, owned), "no exception");
    EXPECT_EQ(pullOne(*admin, owned), "no exception");
    Boolean ended = false;
    EXPECT_EQ(cimErrorOf([&] { admin->pullInstancesWithPath(owned, ended, 1); }).rfind(invalid, 0),
              0u)
        << "a paths enumeration answers no instances";
    admin->closeEnumeration(owned);
    EXPECT_EQ(cimErrorOf([&] { admin->closeEnumeration(owned); }).rfind(invalid, 0), 0u);
    EXPECT_EQ(pullOne(*admin, owned).rfind(invalid, 0), 0u);

    CIMEnumerationContext expiring;
    openOne(expiring, Uint32Arg(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EXPECT_EQ(pullOne(*admin, expiring).rfind(invalid, 0), 0u);

    // A filter, continuation on error, a zero time-out, too large a page.
    const struct {
        const char* filter;
        Boolean continueOnError;
        Uint32Arg timeout;
        Uint32 page;
        const char* code;
    } refused[] = {{"x", false, Uint32Arg(), 0, "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED"},
                   {"", true, Uint32Arg(), 0, "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED"},
                   {"", false, Uint32Arg(0), 0, "CIM_ERR_INVALID_OPERATION_TIMEOUT"},
                   {"", false, Uint32Arg(), 10001, "CIM_ERR_INVALID_PARAMETER"}};
    for (const auto& r : refused) {
        CIMEnumerationContext context;
        const std::string error = cimErrorOf([&] {
            admin->openEnumerateInstancePaths(context, ended, KSV_NAMESPACE, disks,
                                              *r.filter ? "DMTF:FQL" : "", r.filter, r.timeout,
                                              r.continueOnError, r.page);
        });
        EXPECT_EQ(error.rfind(r.code, 0), 0u) << error;
    }
}

// The server's peak and current resident memory, in kilobytes.
std::pair<long, long> residentKilobytes(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    long peak = 0, now = 0;
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0)
            peak = std::stol(line.substr(6));
        if (line.rfind("VmRSS:", 0) == 0)
            now = std::stol(line.substr(6));
    }
    return {peak, now};
}

TEST(PullOperationsLargeArrayTest, ASlowClientPagesThroughInFlatMemory) {
    ksvsim::tools::GeneratorOptions generated;
    generated.disks = 240;
    generated.volumes = 640;
    const TemporaryFile model(ksvsim::tools::generateArray(generated).dump());
    ServerOptions options{model.path(), std::nullopt, 2, {"--max-enumerations=1"}};
    ServerProcess server(options);
    auto admin = server.client("admin", "admin-pw");
    admin->setTimeout(120000);
    const CIMName pairs("KSV_VolumeBasedOnDiskExtent");

    CIMEnumerationContext context;
    Boolean ended = false;
    Paths seen = bareTexts(admin->openEnumerateInstances(context, ended, KSV_NAMESPACE, pairs, true,
                                                         false, CIMPropertyList(), String::EMPTY,
                                                         String::EMPTY, Uint32Arg(), false, 1000));
    // Time for a provider that is not held back to run far ahead.
    std::this_thread::sleep_for(std::chrono::seconds(2));
    [[maybe_unused]] const long afterFirstPage = residentKilobytes(server.pid()).second;
    while (!ended) {
        const Paths page = bareTexts(admin->pullInstancesWithPath(context, ended, 1000));
        EXPECT_LE(page.size(), 1000u);
        seen.insert(page.begin(), page.end());
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_GT(seen.size(), 10000u);
#ifndef KSV_ADDRESS_SANITIZER
    // AddressSanitizer holds freed memory in quarantine, so resident memory says nothing there.
    const long growth = residentKilobytes(server.pid()).first - afterFirstPage;
    EXPECT_LT(growth, 16 * 1024) << "kilobytes the server grew by while paging " << seen.size()
                                 << " instances";
#endif

    // With the one context allowed open and its provider held back, a second is refused, and
    // shutdown releases the held provider.
    CIMEnumerationContext held;
    admin->openEnumerateInstances(held, ended, KSV_NAMESPACE, pairs, true, false, CIMPropertyList(),
                                  String::EMPTY, String::EMPTY, Uint32Arg(), false, 1);
    CIMEnumerationContext refused;
    EXPECT_EQ(cimErrorOf([&] {
                  admin->openEnumerateInstancePaths(refused, ended, KSV_NAMESPACE, pairs);
              }).rfind("CIM_ERR_SERVER_LIMITS_EXCEEDED", 0),
              0u);
    EXPECT_EQ(server.stop(), 0) << server.output();
}

} // namespace
} // namespace ksv::test
