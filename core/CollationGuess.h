#pragma once

/// @file A cheap guess at the order of texts in the current locale.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Text.h"

namespace qv {

/// Ranks the characters of European texts by their place in the locale's collation, regardless of case and accents where
/// the locale disregards them at first. Texts in the order of their ranks are nearly in the locale's order, for a tenth
/// of what their collation keys cost; who sorts by ranks has to check with the collation itself.
class CollationGuess {
public:
    /// For the locale that is current now.
    CollationGuess();

    platform::CodePage Page() const { return m_page; }

    /// Appends a byte for each character that counts.
    void Append(std::string_view text, std::string& ranks) const;

private:
    static constexpr std::size_t kCharacters =
        0x180;  // to the end of Latin Extended-A; the whole of a single-byte page

    std::uint8_t RankAt(std::string_view text, std::size_t position, std::size_t length) const;

    platform::CodePage m_page;
    std::array<std::uint8_t, kCharacters> m_ranks{};
};

}  // namespace qv
