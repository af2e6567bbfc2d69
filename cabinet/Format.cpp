#include "cabinet/Format.h"

#include <cstring>

namespace qv::cabinet {
namespace {

/// Processes eight bytes at once: two words, whose order does not matter for the exclusive or.
std::uint32_t FoldedWords(const unsigned char* data, std::size_t pairs) {
    std::uint64_t folded = 0;
    for (std::size_t i = 0; i < pairs; ++i) {
        std::uint64_t word;
        std::memcpy(&word, data + 8 * i, sizeof word);
        folded ^= word;
    }
    unsigned char bytes[8];
    std::memcpy(bytes, &folded, sizeof folded);
    return Get32(bytes) ^ Get32(bytes + 4);
}

}  // namespace

std::uint32_t Checksum(const unsigned char* data, std::size_t size, std::uint32_t seed) {
    const std::size_t pairs = size / 8;
    std::uint32_t sum = seed ^ FoldedWords(data, pairs);
    data += 8 * pairs;
    size -= 8 * pairs;
    if (size >= 4) {
        sum ^= Get32(data);
        data += 4;
        size -= 4;
    }
    // The remaining bytes count from the highest byte down.
    std::uint32_t rest = 0;
    for (std::size_t i = 0; i < size; ++i) rest = rest << 8 | data[i];
    return sum ^ rest;
}

void PutDataHeader(unsigned char* header, const unsigned char* data, std::size_t size, std::size_t uncompressed) {
    unsigned char* const sizes = header + 4;
    Put16(Put16(sizes, static_cast<unsigned>(size)), static_cast<unsigned>(uncompressed));
    Put32(header, Checksum(sizes, 4, Checksum(data, size)));
}

}  // namespace qv::cabinet
