#include "core/RepeatedReplacement.h"

#include <algorithm>

#include "framework/ExactSearch.h"

namespace qv {
namespace {

constexpr std::uint64_t kBudget = 2 << 20, kBudgetPerByte = 16;
// Cost of a byte in a local pass, for each byte written or examined, relative to a whole pass.
constexpr std::size_t kLocalCost = 32;

}  // namespace

RepeatedReplacement::RepeatedReplacement(std::string find, std::string replacement)
    : m_find(std::move(find)), m_replacement(std::move(replacement)) {}

void RepeatedReplacement::Run(std::string& text) {
    m_budget = kBudget + kBudgetPerByte * text.size();
    // If matches may be parts of characters, only whole passes find valid ones.
    const bool byCharacters = MayMatchPart(text, m_find);
    std::size_t hit = FindExact(text, m_find);
    while (hit != text.npos && !IsOverBudget()) {
        ReplaceOnce(text, hit);
        if (byCharacters) m_written += text.size();
        hit = FindExact(text, m_find);
        if (hit != text.npos && !byCharacters && !IsWorthWholePasses(text.size())) return ReplaceLocally(text);
    }
}

void RepeatedReplacement::ReplaceOnce(std::string& text, std::size_t firstHit) {
    const bool isFirstPass = m_places.empty();
    m_places.clear();
    std::string out;
    std::size_t from = 0;
    ExactSearch search(text, m_find);
    for (std::size_t hit = firstHit; hit != text.npos; hit = search.Find(from)) {
        out.append(text, from, hit - from);
        m_places.push_back(out.size());
        out += m_replacement;
        from = hit + m_find.size();
        if (!isFirstPass) m_written += m_replacement.size();
        if (IsOverBudget()) break;
    }
    out.append(text, from);
    text = std::move(out);
}

bool RepeatedReplacement::IsWorthWholePasses(std::size_t textSize) const {
    const std::size_t around = m_find.size() + m_replacement.size();
    return m_places.size() > textSize / kLocalCost / around;
}

void RepeatedReplacement::ReplaceLocally(std::string& text) {
    ByteChain chain(text);
    m_stamps.assign(text.size() + 1, 0);
    std::vector<Node> candidates = CandidatesAroundPlaces(text.size());
    while (!candidates.empty() && !IsOverBudget()) ReplaceCandidates(chain, candidates);
    text = chain.Text();
}

// A new occurrence overlaps a replacement, or the position of an empty one.
std::vector<ByteChain::Node> RepeatedReplacement::CandidatesAroundPlaces(std::size_t textSize) const {
    std::vector<Node> candidates;
    std::size_t from = 0;
    for (const std::size_t place : m_places) {
        from = std::max(from, place - std::min(place, m_find.size() - 1));
        const std::size_t end = std::min(place + m_replacement.size(), textSize);
        for (; from < end; ++from) candidates.push_back(ByteChain::NodeAt(from));
    }
    return candidates;
}

// Candidates are in text order; replacements written by this pass are not examined.
void RepeatedReplacement::ReplaceCandidates(ByteChain& chain, std::vector<Node>& candidates) {
    ++m_pass;
    std::vector<Node> next;
    for (const Node node : candidates) {
        if (!chain.IsIn(node) || m_stamps[node] == m_pass || !IsAt(chain, node)) continue;
        ReplaceAt(chain, node, next);
        if (IsOverBudget()) break;
    }
    candidates = std::move(next);
}

bool RepeatedReplacement::IsAt(const ByteChain& chain, Node node) const {
    for (const char c : m_find) {
        if (node == ByteChain::kEnd || chain.Byte(node) != c) return false;
        node = chain.Next(node);
    }
    return true;
}

void RepeatedReplacement::ReplaceAt(ByteChain& chain, Node node, std::vector<Node>& next) {
    const auto start = static_cast<std::ptrdiff_t>(next.size());
    Node before = chain.Previous(node);
    for (std::size_t i = 1; i < m_find.size() && before != ByteChain::kEnd && m_stamps[before] != m_pass; ++i) {
        Stamp(before);
        next.push_back(before);
        before = chain.Previous(before);
    }
    std::reverse(next.begin() + start, next.end());

    before = chain.Previous(node);
    const Node after = WriteReplacement(chain, node);
    for (Node written = chain.Next(before); written != after; written = chain.Next(written)) {
        Stamp(written);
        next.push_back(written);
    }
    m_written += m_replacement.size();
}

// Overwrites the nodes of the occurrence that starts here and returns the node after them.
ByteChain::Node RepeatedReplacement::WriteReplacement(ByteChain& chain, Node node) {
    const std::size_t shared = std::min(m_find.size(), m_replacement.size());
    for (std::size_t i = 0; i < shared; ++i, node = chain.Next(node)) chain.SetByte(node, m_replacement[i]);
    for (std::size_t i = shared; i < m_find.size(); ++i) {
        const Node removed = node;
        node = chain.Next(node);
        chain.Remove(removed);
    }
    for (std::size_t i = shared; i < m_replacement.size(); ++i) chain.InsertBefore(node, m_replacement[i]);
    return node;
}

void RepeatedReplacement::Stamp(Node node) {
    if (node >= m_stamps.size()) m_stamps.resize(node + 1);
    m_stamps[node] = m_pass;
}

}  // namespace qv
