// The library used from several threads at once, as the CIM server does.
#include "OnThreads.h"
#include "simulator_test_support.h"

#include <atomic>
#include <map>
#include <set>
#include <thread>

namespace ksvsim::testing {
namespace {

class Concurrency : public SimulatorTest {};

// The LED bit of every disk of each (cage, magazine), for disks present.
std::map<std::pair<std::string, int>, std::set<bool>> ledsByMagazine() {
    std::map<std::pair<std::string, int>, std::set<bool>> leds;
    for (const api_Disk_t& disk : readDisks()) {
        leds[{disk.cageElementName, disk.magPosition}].insert(
            (disk.u.locate.flags & API_DISK_LOCATE_LIT) != 0);
    }
    return leds;
}

TEST_F(Concurrency, LocateChangesAreAtomicPerMagazine) {
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("demo.json")));
    const std::pair<const char*, uint16_t> magazines[] = {
        {"cage0", 0}, {"cage0", 1}, {"cage0", 2}, {"cage0", 3}};
    std::atomic<bool> writing{true};
    std::atomic<int> splitMagazines{0};
    std::thread reader([&] {
        while (writing.load()) {
            for (const auto& entry : ledsByMagazine())
                splitMagazines += entry.second.size() > 1;
        }
    });
    onThreads(4, [&](int m) {
        for (int i = 0; i < 200; ++i) {
            const int value = i % 2 == 0 ? API_LOCATE_ON : API_LOCATE_OFF;
            EXPECT_EQ(api_locateMagazine(magazines[m].first, magazines[m].second, value), API_OK);
        }
    });
    writing = false;
    reader.join();
    EXPECT_EQ(splitMagazines.load(), 0) << "a reader saw a magazine half switched";
    const auto leds = ledsByMagazine();
    for (const auto& [cage, position] : magazines) {
        const std::set<bool> off = {false};
        EXPECT_EQ(leds.at({cage, position}), off) << cage << " " << position;
    }
}

TEST_F(Concurrency, SemaphoreSerializesArrayAccess) {
    ksvsim::setSemaphoreTimeout(std::chrono::seconds(30));
    int inside = 0;
    int maxInside = 0;
    long long work = 0;
    onThreads(4, [&](int) {
        for (int i = 0; i < 100; ++i) {
            ASSERT_EQ(cim_sem_wait(), API_OK);
            maxInside = std::max(maxInside, ++inside);
            work += static_cast<long long>(readDisks().size());
            --inside;
            ASSERT_EQ(cim_sem_post(), API_OK);
        }
    });
    EXPECT_EQ(maxInside, 1);
    EXPECT_EQ(work, 4 * 100 * 6);
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

// The way providers de-duplicate: lock, walk from an empty table, clear, unlock.
TEST_F(Concurrency, TableLockKeepsEachWalkToItself) {
    hashtable_t* table = create_string_hashtable(2048, 0.75f);
    std::atomic<int> dirtyStarts{0};
    std::atomic<int> duplicates{0};
    onThreads(4, [&](int) {
        for (int walk = 0; walk < 50; ++walk) {
            hashtable_lock(table);
            dirtyStarts += hashtable_contains_key(table, "4.0");
            for (int disk = 0; disk < 20; ++disk) {
                const char* version = disk % 3 == 0 ? "4.02" : "4.0";
                if (hashtable_contains_key(table, version) == 0) {
                    hashtable_put(table, version, disk);
                } else if (hashtable_get(table, version) != (disk % 3 == 0 ? 0 : 1)) {
                    ++duplicates;
                }
            }
            hashtable_clear(table);
            hashtable_unlock(table);
        }
    });
    delete_hashtable(table);
    EXPECT_EQ(dirtyStarts.load(), 0);
    EXPECT_EQ(duplicates.load(), 0);
}

TEST_F(Concurrency, ReadersSeeWholeModelsWhileModelsChange) {
    std::atomic<bool> loading{true};
    std::atomic<int> oddCounts{0};
    std::thread reader([&] {
        while (loading.load()) {
            const std::size_t count = readDisks().size();
            oddCounts += count != 6 && count != 38;
            api_MapsVVtoCh_t maps{};
            if (api_getMapsVVtoCh("", &maps) == API_OK)
                oddCounts += maps.count != 4 && maps.count != 10;
            api_freeMapsVVtoCh(&maps);
        }
    });
    for (int i = 0; i < 20; ++i)
        ASSERT_FALSE(ksvsim::loadModelFile(examplePath(i % 2 == 0 ? "demo.json" : "small.json")));
    loading = false;
    reader.join();
    EXPECT_EQ(oddCounts.load(), 0);
}

} // namespace
} // namespace ksvsim::testing
