#pragma once

/// @file Case-insensitive replacement, where each search continues one character after the position of the last
/// occurrence.

#include <string>
#include <string_view>

#include "core/CaseRule.h"
#include "framework/PatternAutomaton.h"

namespace qv {

class CaselessReplacement {
public:
    /// `find` must not be empty. Keeps references to both texts.
    CaselessReplacement(std::string_view find, std::string_view replacement);

    std::string Apply(std::string_view text) const;

private:
    std::string ReplaceApart(std::string_view text) const;
    std::string ReplaceChained(std::string_view text) const;

    CaseReader m_reader;
    std::string_view m_find, m_replacement;
    PatternAutomaton m_automaton;
    bool m_endless = false;        // the replacement contains `find` where the next search would find it
    std::size_t m_afterwards = 0;  // the automaton's state after the replacement, excluding its first character
};

}  // namespace qv
