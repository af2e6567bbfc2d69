#pragma once

/// @file Building a text from many short pieces.

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace qv {

/// Buffers pieces and appends them to a string some KB at a time, which saves a call for each.
///
/// The write position is a variable of the caller, so that the compiler can keep it in a register: it is initialized by
/// Begin(), updated by each Append, and finally passed to Flush.
class TextSink {
public:
    /// The string is not owned; it must outlive the sink.
    explicit TextSink(std::string& out) : m_out(out) {}
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    char* Begin() { return m_gathered; }

    char* Append(char* at, std::string_view text) {
        if (text.size() == 1) return Append(at, text[0]);
        if (text.size() > kLong) return AppendLong(at, text);
        at = WithRoom(at, kLong);
        CopyShort(at, text.data(), text.size());
        return at + text.size();
    }

    char* Append(char* at, char c) {
        at = WithRoom(at, 1);
        *at = c;
        return at + 1;
    }

    /// Appends the buffered pieces to the string and returns Begin().
    char* Flush(const char* at);

private:
    static constexpr std::size_t kRoom = 4096, kLong = 64, kWorthGathering = 512;

    char* WithRoom(char* at, std::size_t size) {
        return static_cast<std::size_t>(m_gathered + kRoom - at) < size ? Flush(at) : at;
    }

    char* AppendLong(char* at, std::string_view text);

    // Copies N bytes twice, from the piece's start and to its end, for a piece of N to 2 N bytes.
    template <std::size_t N>
    static void CopyEnds(char* to, const char* from, std::size_t size) {
        char first[N], last[N];
        std::memcpy(first, from, N);
        std::memcpy(last, from + size - N, N);
        std::memcpy(to, first, N);
        std::memcpy(to + size - N, last, N);
    }

    static void CopyShort(char* to, const char* from, std::size_t size) {
        if (size > 32) return CopyEnds<32>(to, from, size);
        if (size > 16) return CopyEnds<16>(to, from, size);
        if (size >= 8) return CopyEnds<8>(to, from, size);
        if (size >= 4) return CopyEnds<4>(to, from, size);
        if (size > 1) return CopyEnds<2>(to, from, size);
    }

    std::string& m_out;
    char m_gathered[kRoom];
};

}  // namespace qv
