#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// Splits the bytes of an input into texts at each byte 0xFF; the last one is the rest.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

    std::string_view Rest() const { return m_rest; }

    std::string_view Text() {
        const std::size_t end = m_rest.find('\xFF');
        const std::string_view text = m_rest.substr(0, end);
        m_rest.remove_prefix(end == m_rest.npos ? m_rest.size() : end + 1);
        return text;
    }

    bool Flag() {
        if (m_rest.empty()) return false;
        const bool flag = m_rest.front() & 1;
        m_rest.remove_prefix(1);
        return flag;
    }

private:
    std::string_view m_rest;
};

/// Checks a property that must hold for every input.
inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
