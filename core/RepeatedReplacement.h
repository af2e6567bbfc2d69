#pragma once

/// @file Replacing a text by another until it is found no more.

#include <string>
#include <vector>

#include "core/ByteChain.h"

namespace qv {

/// Pass after pass, each from left to right over what the one before has left. After the first passes only the places where
/// something was replaced are looked at again, as new occurrences can stand nowhere else.
class RepeatedReplacement {
public:
    /// `find` is not empty and does not stand in `replacement`.
    RepeatedReplacement(std::string find, std::string replacement);

    void Run(std::string& text);

private:
    using Node = ByteChain::Node;

    void ReplaceOnce(std::string& text, std::size_t firstHit);
    bool IsWorthWholePasses(std::size_t textSize) const;
    bool IsOverBudget() const { return m_replacement.size() >= m_find.size() && m_written > m_budget; }

    void ReplaceLocally(std::string& text);
    std::vector<Node> CandidatesAroundPlaces(std::size_t textSize) const;
    void ReplaceCandidates(ByteChain& chain, std::vector<Node>& candidates);
    bool IsAt(const ByteChain& chain, Node node) const;
    void ReplaceAt(ByteChain& chain, Node node, std::vector<Node>& next);
    Node WriteReplacement(ByteChain& chain, Node node);
    void Stamp(Node node);

    std::string m_find, m_replacement;
    std::size_t m_written = 0, m_budget = 0;
    std::vector<std::size_t> m_places;  // of the replacements of the last whole pass
    std::vector<std::uint32_t>
        m_stamps;  // the local pass that wrote a node, or put it among the next pass's candidates
    std::uint32_t m_pass = 0;
};

}  // namespace qv
