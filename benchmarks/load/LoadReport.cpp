#include "LoadReport.h"

#include <algorithm>
#include <cstdio>

namespace ksv::load {

namespace {

void add(std::map<std::string, std::uint64_t>& into,
         const std::map<std::string, std::uint64_t>& from) {
    for (const auto& [kind, count] : from)
        into[kind] += count;
}

double percentile(const std::vector<double>& sorted, double fraction) {
    if (sorted.empty())
        return 0;
    const auto index = static_cast<std::size_t>(fraction * static_cast<double>(sorted.size() - 1));
    return sorted[index];
}

void printCounts(const char* title, const std::map<std::string, std::uint64_t>& counts) {
    std::printf("%s\n", title);
    if (counts.empty())
        std::printf("  none\n");
    for (const auto& [kind, count] : counts)
        std::printf("  %-58s %10llu\n", kind.c_str(), static_cast<unsigned long long>(count));
}

} // namespace

void Tally::merge(const Tally& other) {
    latenciesMs.insert(latenciesMs.end(), other.latenciesMs.begin(), other.latenciesMs.end());
    add(expected, other.expected);
    add(unexpected, other.unexpected);
    add(underFaults, other.underFaults);
}

std::uint64_t Tally::unexpectedCount() const {
    std::uint64_t count = 0;
    for (const auto& entry : unexpected)
        count += entry.second;
    return count;
}

bool memoryLevelsOff(const MemorySamples& samples) {
    if (samples.size() < 4)
        return true;
    const auto half = samples.begin() + static_cast<long>(samples.size() / 2);
    auto peakOf = [](auto begin, auto end) {
        double peak = 0;
        for (auto it = begin; it != end; ++it)
            peak = std::max(peak, it->second);
        return peak;
    };
    const double firstPeak = peakOf(samples.begin(), half);
    return peakOf(half, samples.end()) <= firstPeak * 1.25 + 8;
}

void printReport(const Tally& tally, double seconds, const MemorySamples& memory) {
    std::vector<double> sorted = tally.latenciesMs;
    std::sort(sorted.begin(), sorted.end());
    std::printf("requests                 %llu in %.1f s: %.1f per second\n",
                static_cast<unsigned long long>(tally.requests()), seconds,
                static_cast<double>(tally.requests()) / seconds);
    std::printf("latency ms               p50 %.2f  p90 %.2f  p99 %.2f  p99.9 %.2f  max %.2f\n",
                percentile(sorted, 0.5), percentile(sorted, 0.9), percentile(sorted, 0.99),
                percentile(sorted, 0.999), sorted.empty() ? 0.0 : sorted.back());
    printCounts("answers as meant (request: outcome)", tally.expected);
    printCounts("answers under array faults (request: outcome)", tally.underFaults);
    printCounts("answers NOT as meant (request: outcome)", tally.unexpected);
    std::printf("server memory (resident MB over time)\n");
    for (const auto& [at, mb] : memory)
        std::printf("  %7.1f s %8.1f MB\n", at, mb);
    std::printf("memory levels off        %s\n", memoryLevelsOff(memory) ? "yes" : "NO");
}

} // namespace ksv::load
