// What the load run counts, per client and then for the whole run, and how it is printed.
#ifndef KSV_BENCHMARKS_LOAD_LOADREPORT_H
#define KSV_BENCHMARKS_LOAD_LOADREPORT_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ksv::load {

struct Tally {
    std::vector<double> latenciesMs;
    // "request: outcome" of the answers that were meant, and of those that were not.
    std::map<std::string, std::uint64_t> expected;
    std::map<std::string, std::uint64_t> unexpected;
    // Outcomes while the array library failed on purpose, which any answer may meet.
    std::map<std::string, std::uint64_t> underFaults;

    void merge(const Tally& other);
    std::uint64_t requests() const { return latenciesMs.size(); }
    std::uint64_t unexpectedCount() const;
};

// Resident memory of the server, in MB, at seconds since the start.
using MemorySamples = std::vector<std::pair<double, double>>;

// The memory levels off when the second half of the run never rises above the first half's
// peak by more than a quarter (and 8 MB).
bool memoryLevelsOff(const MemorySamples& samples);

void printReport(const Tally& tally, double seconds, const MemorySamples& memory);

} // namespace ksv::load

#endif
