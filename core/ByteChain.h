#pragma once

/// @file A text with O(1) removal and insertion of bytes at any position.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// A doubly linked ring of nodes, one per byte, closed by a node without a byte; a node keeps its number as long as it
/// is linked.
class ByteChain {
public:
    using Node = std::uint32_t;
    static constexpr Node kEnd = 0;  ///< after the last byte, and before the first

    explicit ByteChain(std::string_view text);

    /// Returns the node of byte i of the text that the chain was constructed from.
    static Node NodeAt(std::size_t i) { return static_cast<Node>(i + 1); }

    char Byte(Node node) const { return m_bytes[node]; }
    void SetByte(Node node, char byte) { m_bytes[node] = byte; }
    Node Next(Node node) const { return m_next[node]; }
    Node Previous(Node node) const { return m_previous[node]; }
    bool IsIn(Node node) const { return m_next[m_previous[node]] == node; }

    void Remove(Node node);
    Node InsertBefore(Node node, char byte);

    std::string Text() const;

private:
    std::string m_bytes;
    std::vector<Node> m_next, m_previous;
};

}  // namespace qv
