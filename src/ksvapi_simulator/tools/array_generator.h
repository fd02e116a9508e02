// Builds large, realistic array models for benchmarks, deterministically
// from a seed.
#ifndef KSVSIM_ARRAY_GENERATOR_H
#define KSVSIM_ARRAY_GENERATOR_H

#include <nlohmann/json.hpp>

#include <cstdint>

namespace ksvsim::tools {

struct GeneratorOptions {
    unsigned disks = 1920;
    unsigned volumes = 4096;
    uint64_t seed = 1;
    bool quadPort = false;
};

// The model document; throws std::invalid_argument when the options cannot
// make an array (no disks, or more volume data than the disks hold).
nlohmann::json generateArray(const GeneratorOptions& options);

} // namespace ksvsim::tools

#endif // KSVSIM_ARRAY_GENERATOR_H
