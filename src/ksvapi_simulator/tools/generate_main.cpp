// ksvsim-generate: writes a generated array model as JSON.
#include "array_generator.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

namespace {

constexpr const char kUsage[] =
    "usage: ksvsim-generate [--disks N] [--volumes N] [--seed N] [--quad-port] [--output FILE]\n"
    "  Writes an array model for libksvapi (default: 1920 disks, 4096 volumes, seed 1,\n"
    "  to standard output).\n";

std::optional<uint64_t> parseNumber(const char* text) {
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(text, &end, 10);
    if (*text == '\0' || *text == '-' || *end != '\0' || errno != 0) {
        return std::nullopt;
    }
    return value;
}

struct CommandLine {
    ksvsim::tools::GeneratorOptions options;
    std::string output;
};

// Returns an error text, or nothing when the arguments were read.
std::optional<std::string> parseArguments(int argc, char** argv, CommandLine& line) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--quad-port") {
            line.options.quadPort = true;
            continue;
        }
        if (i + 1 == argc) {
            return "unknown option or missing value: " + argument;
        }
        const char* value = argv[++i];
        if (argument == "--output") {
            line.output = value;
            continue;
        }
        const auto number = parseNumber(value);
        if (!number || *number > UINT32_MAX) {
            return "not a number for " + argument + ": " + value;
        }
        if (argument == "--disks") {
            line.options.disks = static_cast<unsigned>(*number);
        } else if (argument == "--volumes") {
            line.options.volumes = static_cast<unsigned>(*number);
        } else if (argument == "--seed") {
            line.options.seed = *number;
        } else {
            return "unknown option: " + argument;
        }
    }
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    CommandLine line;
    if (const auto error = parseArguments(argc, argv, line)) {
        std::cerr << "ksvsim-generate: " << *error << "\n" << kUsage;
        return 2;
    }
    try {
        const std::string text = ksvsim::tools::generateArray(line.options).dump() + "\n";
        if (line.output.empty()) {
            std::cout << text;
            return std::cout ? 0 : 1;
        }
        std::ofstream file(line.output, std::ios::binary);
        file << text;
        if (!file.flush()) {
            std::cerr << "ksvsim-generate: cannot write " << line.output << "\n";
            return 1;
        }
    } catch (const std::exception& error) {
        std::cerr << "ksvsim-generate: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
