#pragma once

/// @file Replacing a text repeatedly until it no longer occurs.

#include <string>
#include <vector>

#include "core/ByteChain.h"

namespace qv {

/// Works in passes, each from left to right over the previous result. After the first passes only the positions of
/// replacements are examined, as new occurrences cannot be elsewhere.
class RepeatedReplacement {
public:
    /// `find` must not be empty, nor occur in `replacement`.
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
    std::uint64_t m_written = 0, m_budget = 0;
    std::vector<std::size_t> m_places;    // positions of the replacements of the last whole pass
    std::vector<std::uint32_t> m_stamps;  // the local pass that wrote a node, or made it a candidate of the next pass
    std::uint32_t m_pass = 0;
};

}  // namespace qv
