#pragma once

#include <random>
#include <string>

/// Bytes that no method compresses, the same for the same seed.
inline std::string Noise(std::size_t size, unsigned seed) {
    std::minstd_rand random(seed);
    std::string bytes(size, '\0');
    for (char& c : bytes) c = static_cast<char>(random() >> 7);
    return bytes;
}
