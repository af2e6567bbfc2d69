#pragma once

/// @file Hashes of untrusted names and numbers. The key is random per process, so that an attacker cannot prepare items
/// that collide.

#include <bit>
#include <cstdint>
#include <cstring>
#include <random>
#include <string_view>
#include <unordered_map>

namespace qv {

struct HashKey {
    std::uint64_t low, high;

    static const HashKey& OfProcess() {
        static const HashKey key = [] {
            std::random_device random;
            const auto word = [&] { return std::uint64_t{random()} << 32 | random(); };
            return HashKey{word(), word()};
        }();
        return key;
    }
};

/// SipHash-1-3: one round per block and three at the end.
class SipHash {
public:
    explicit SipHash(const HashKey& key)
        : m_a(key.low ^ 0x736F6D6570736575),
          m_b(key.high ^ 0x646F72616E646F6D),
          m_c(key.low ^ 0x6C7967656E657261),
          m_d(key.high ^ 0x7465646279746573) {}

    void Add(std::uint64_t block) {
        m_d ^= block;
        Round();
        m_a ^= block;
    }

    std::uint64_t Finish() {
        m_c ^= 0xFF;
        Round();
        Round();
        Round();
        return m_a ^ m_b ^ m_c ^ m_d;
    }

private:
    void Round() {
        m_a += m_b;
        m_c += m_d;
        m_b = std::rotl(m_b, 13) ^ m_a;
        m_d = std::rotl(m_d, 16) ^ m_c;
        m_a = std::rotl(m_a, 32);
        m_c += m_b;
        m_a += m_d;
        m_b = std::rotl(m_b, 17) ^ m_c;
        m_d = std::rotl(m_d, 21) ^ m_a;
        m_c = std::rotl(m_c, 32);
    }

    std::uint64_t m_a, m_b, m_c, m_d;
};

inline std::uint64_t KeyedHash(const HashKey& key, std::string_view text) {
    const auto block = [](const char* bytes, std::size_t count) {
        std::uint64_t value = 0;
        std::memcpy(&value, bytes, count);
        return value;
    };
    SipHash hash(key);
    const char* bytes = text.data();
    std::size_t left = text.size();
    for (; left >= 8; bytes += 8, left -= 8) hash.Add(block(bytes, 8));
    hash.Add((left ? block(bytes, left) : 0) ^ std::uint64_t{text.size()} << 56);
    return hash.Finish();
}

inline std::uint64_t KeyedHash(const HashKey& key, std::uint64_t value) {
    SipHash hash(key);
    hash.Add(value);
    return hash.Finish();
}

/// For standard containers; supports lookup by views.
struct KeyedTextHash {
    using is_transparent = void;

    std::size_t operator()(std::string_view text) const {
        return static_cast<std::size_t>(KeyedHash(HashKey::OfProcess(), text));
    }
};

/// A map with untrusted text keys.
template <class Key, class Value>
using KeyedMap = std::unordered_map<Key, Value, KeyedTextHash, std::equal_to<>>;

}  // namespace qv
