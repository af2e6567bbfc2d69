#pragma once

/// @file Replacing without regard to case, where each search goes on one character after the place of the last occurrence.

#include <string>
#include <string_view>

#include "core/CaseRule.h"
#include "framework/PatternAutomaton.h"

namespace qv {

class CaselessReplacement {
public:
    /// `find` is not empty. Refers to both texts.
    CaselessReplacement(std::string_view find, std::string_view replacement);

    std::string Apply(std::string_view text) const;

private:
    std::string ReplaceApart(std::string_view text) const;
    std::string ReplaceChained(std::string_view text) const;

    CaseReader m_reader;
    std::string_view m_find, m_replacement;
    PatternAutomaton m_automaton;
    bool m_endless = false;        // the replacement holds what is sought where the next search would find it
    std::size_t m_afterwards = 0;  // the automaton's state after the replacement but for its first character
};

}  // namespace qv
