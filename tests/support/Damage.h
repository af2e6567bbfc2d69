#pragma once

#include <string>

#include "qvcommon/framework/File.h"

/// Writes every damaged copy of a good file into an open one, first with one bit flipped, then cut to fewer bytes, and calls
/// `look` with the file at its start.
template <class Look>
void ForEachDamage(CFile& file, const std::string& good, Look look) {
    const auto put = [&](std::size_t at, const std::string& bytes) {
        file.Seek(static_cast<std::int64_t>(at), CFile::begin);
        file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    };
    const auto show = [&] {
        file.Seek(0, CFile::begin);
        look();
    };
    file.SetLength(0);
    put(0, good);
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            put(at, std::string(1, static_cast<char>(good[at] ^ (1 << bit))));
            show();
        }
        put(at, good.substr(at, 1));
    }
    for (std::size_t size = good.size(); size-- > 0;) {
        file.SetLength(size);
        show();
    }
}
