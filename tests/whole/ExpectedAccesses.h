#pragma once

// The register accesses that an update makes: those of the image, and then those that write the identity,
// protect it and read it back.

#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "hw/PromPrograms.h"
#include "images/AccessCount.h"

inline images::Accesses accessesOf(std::span<const uint8_t> image) {
    std::istringstream stream(std::string(image.begin(), image.end()));
    return images::accessesOf(stream).value();
}

// Reading ends at a comparison that fails in all nine attempts, before the last instruction and XCOMPLETE.
inline std::vector<uint8_t> readProgramAsPlayed() {
    constexpr std::size_t bytesNotPlayed = 4 + 1;
    constexpr std::size_t comparisonBytes = 1 + 2 * kUserCodeBytes;
    std::vector<uint8_t> program(kReadProgram.begin(), kReadProgram.end() - bytesNotPlayed);
    const std::vector<uint8_t> attempt(program.end() - comparisonBytes, program.end());
    for (int again = 1; again < 9; ++again) {
        program.insert(program.end(), attempt.begin(), attempt.end());
    }
    program.push_back(static_cast<uint8_t>(XsvfOpcode::XCOMPLETE));
    return program;
}

namespace images {

inline Accesses& operator+=(Accesses& sum, const Accesses& more) {
    sum.stores += more.stores;
    sum.loads += more.loads;
    return sum;
}

}  // namespace images

inline images::Accesses identityAccesses() {
    images::Accesses accesses = accessesOf(kWriteProgram);
    accesses += accessesOf(kProtectProgram);
    accesses += accessesOf(readProgramAsPlayed());
    return accesses;
}
