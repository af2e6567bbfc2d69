#pragma once

/// @file A cheap approximation of the current locale's text order.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Text.h"

namespace qv {

/// Ranks the characters of European texts by their position in the locale's collation, ignoring case and accents if the
/// locale's primary level does. Texts sorted by ranks are nearly in the locale's order, at a tenth of the cost of
/// collation keys; the result must be checked with the collation itself.
class CollationGuess {
public:
    /// Uses the current locale.
    CollationGuess();

    platform::CodePage Page() const { return m_page; }

    /// Appends a byte for each character with a rank.
    void Append(std::string_view text, std::string& ranks) const;

private:
    static constexpr std::size_t kCharacters =
        0x180;  // to the end of Latin Extended-A; covers a whole single-byte page

    std::uint8_t RankAt(std::string_view text, std::size_t position, std::size_t length) const;

    platform::CodePage m_page;
    std::array<std::uint8_t, kCharacters> m_ranks{};
};

}  // namespace qv
