// The process-wide state behind KSV_Common under requests from several threads at once: the
// class store of the internal cache service and the cached system addresses.
#include "ProviderTestSupport.h"

#include <atomic>

namespace ksv::test {
namespace {

const int THREADS = 8;
const int ROUNDS = 200;

struct Request {
    const char* className;
    bool includeQualifiers;
    bool includeClassOrigin;
    CIMPropertyList propertyList;
    CIMClass expected;
};

TEST(StoredClassesUnderConcurrentRequests, EveryRequestGetsItsVariantAndClassesAreFetchedOnce) {
    ProviderHarness harness;
    std::vector<Request> requests;
    for (const char* className : {"KSV_DiskDrive", "KSV_DiskStorageExtent", "KSV_SystemDisk"}) {
        for (const CIMPropertyList& list :
             {CIMPropertyList(), listOf({"DeviceID", "ElementName"})}) {
            for (bool flags : {true, false}) {
                requests.push_back({className, flags, !flags, list,
                                    harness.shippedClasses().getClass("root/ksv", className, false,
                                                                      flags, !flags, list)});
            }
        }
    }
    std::atomic<int> wrong(0);
    onThreads(THREADS, [&](int t) {
        CIMOMHandle cimom = harness.cimom();
        for (int round = 0; round < ROUNDS; round++) {
            const Request& request = requests[(t + round) % requests.size()];
            const CIMClass served = KSV_Common::getStoredCIMClass(
                cimom, OperationContext(), "root/ksv", request.className, false,
                request.includeQualifiers, request.includeClassOrigin, request.propertyList);
            if (!served.identical(request.expected))
                wrong++;
        }
    });
    EXPECT_EQ(wrong.load(), 0);
    // Requests racing for a class not yet stored may each fetch it; later ones never do.
    EXPECT_LE(harness.calls("getClass").size(), size_t(3 * THREADS));
    harness.clearCalls();
    CIMOMHandle cimom = harness.cimom();
    KSV_Common::getStoredCIMClass(cimom, OperationContext(), "root/ksv", "KSV_DiskDrive", false,
                                  true, true, CIMPropertyList());
    EXPECT_TRUE(harness.calls("getClass").empty());
}

TEST(SystemAddressesUnderConcurrentRequests, AllThreadsSeeTheSameAddresses) {
    ProviderHarness harness;
    std::atomic<int> wrong(0);
    onThreads(THREADS, [&wrong](int t) {
        for (int round = 0; round < ROUNDS; round++) {
            const int type = 1 + (t + round) % 2;
            const String address = KSV_Common::getSystemIPAddr(type);
            if (address != (type == 1 ? "198.51.100.25" : "2001:db8:100::25"))
                wrong++;
        }
    });
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_LE(ksvsim::calls().size(), size_t(1));
}

} // namespace
} // namespace ksv::test
