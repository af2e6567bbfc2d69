#include "core/ByteChain.h"

namespace qv {

ByteChain::ByteChain(std::string_view text) : m_next(text.size() + 1), m_previous(text.size() + 1) {
    m_bytes.reserve(text.size() + 1);
    m_bytes += '\0';
    m_bytes += text;
    const Node last = static_cast<Node>(text.size());
    for (Node node = 0; node <= last; ++node) {
        m_next[node] = node == last ? kEnd : node + 1;
        m_previous[node] = node == 0 ? last : node - 1;
    }
}

// A removed node is one that its neighbours no longer link to.
void ByteChain::Remove(Node node) {
    m_next[m_previous[node]] = m_next[node];
    m_previous[m_next[node]] = m_previous[node];
}

ByteChain::Node ByteChain::InsertBefore(Node node, char byte) {
    const Node added = static_cast<Node>(m_bytes.size());
    m_bytes += byte;
    m_next.push_back(node);
    m_previous.push_back(m_previous[node]);
    m_next[m_previous[node]] = added;
    m_previous[node] = added;
    return added;
}

std::string ByteChain::Text() const {
    std::string text;
    for (Node node = m_next[kEnd]; node != kEnd; node = m_next[node]) text += m_bytes[node];
    return text;
}

}  // namespace qv
