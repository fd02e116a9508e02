// Many server threads read one repository at once: every reader must see
// exactly what a single reader sees.

#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>

#include "MofTestSupport.h"
#include "OnThreads.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

TEST(RepositoryConcurrency, ParallelReadersSeeTheSameDefinitions) {
    MofCompiler compiler;
    compiler.compileFile(shippedMof("standalone.mof"));
    const ClassRepository repository = compiler.repository();
    const char* const classes[] = {"KSV_DiskDrive", "KSV_DiskStorageExtent", "KSV_SystemDisk",
                                   "KSV_MagazineContainer"};
    std::vector<CIMClass> expected;
    for (const char* className : classes)
        expected.push_back(repository.getClass("root/ksv", className, false, true, true));
    Array<CIMInstance> expectedCapabilities =
        repository.enumerateInstances("root/PG_InterOp", "PG_ProviderCapabilities");

    constexpr int threadCount = 4;
    constexpr int rounds = 50;
    std::vector<int> mismatches(threadCount, 0);
    onThreads(threadCount, [&](int t) {
        ClassRepository copy = repository; // copies share the same definitions
        for (int round = 0; round < rounds; ++round) {
            std::size_t which = std::size_t(round + t) % expected.size();
            CIMClass cimClass = copy.getClass("root/ksv", classes[which], false, true, true);
            if (!cimClass.identical(expected[which]))
                ++mismatches[t];
            copy.getClass("root/ksv", classes[which], true, false, false);
            Array<CIMInstance> capabilities =
                copy.enumerateInstances("root/PG_InterOp", "PG_ProviderCapabilities");
            if (capabilities.size() != expectedCapabilities.size() ||
                !capabilities[0].identical(expectedCapabilities[0]))
                ++mismatches[t];
        }
    });
    EXPECT_EQ(mismatches, std::vector<int>(threadCount, 0));
}

} // namespace
} // namespace ksv::mof::test
