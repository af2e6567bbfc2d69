#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "cabinet/Format.h"

namespace qv::test {

struct FolderOf {
    unsigned compression;
    std::vector<std::string> blocks;                           ///< compressed
    std::vector<std::pair<std::string, std::size_t>> members;  ///< names and sizes
};

/// Makes a cabinet of any blocks.
inline std::string CabinetOf(const std::vector<FolderOf>& folders) {
    using namespace cabinet;
    std::string list, entries, data;
    std::uint32_t count = 0;
    const auto put = [](std::string& to, std::initializer_list<std::uint32_t> words) {
        for (const std::uint32_t word : words)
            for (int shift = 0; shift < 32; shift += 8) to += static_cast<char>(word >> shift);
    };
    for (std::uint32_t i = 0; i < folders.size(); ++i) {
        std::uint32_t total = 0;
        for (const auto& [name, size] : folders[i].members) {
            put(list, {static_cast<std::uint32_t>(size), total, 0x5A210000 | i, 0x00206000});
            (list += name) += '\0';
            total += static_cast<std::uint32_t>(size);
            ++count;
        }
    }
    const auto files = static_cast<std::uint32_t>(kHeaderSize + kFolderSize * folders.size());
    for (const FolderOf& folder : folders) {
        const std::size_t place = files + list.size() + data.size();
        put(entries, {static_cast<std::uint32_t>(place),
                      static_cast<std::uint32_t>(folder.blocks.size()) | folder.compression << 16});
        std::size_t left = 0;
        for (const auto& member : folder.members) left += member.second;
        for (const std::string& block : folder.blocks) {
            unsigned char head[kDataSize];
            const std::size_t uncompressed = std::min(kBlockSize, left);
            PutDataHeader(head, reinterpret_cast<const unsigned char*>(block.data()), block.size(), uncompressed);
            data.append(reinterpret_cast<const char*>(head), sizeof head) += block;
            left -= uncompressed;
        }
    }
    std::string cabinet;
    const auto size = static_cast<std::uint32_t>(files + list.size() + data.size());
    put(cabinet,
        {kSignature, 0, size, 0, files, 0, 0x0103 | static_cast<std::uint32_t>(folders.size()) << 16, count, 0});
    return cabinet + entries + list + data;
}

}  // namespace qv::test
