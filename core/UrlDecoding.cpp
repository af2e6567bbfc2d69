#include "core/UrlDecoding.h"

#include <array>
#include <utility>
#include <vector>

#include "core/ByteChain.h"
#include "platform/PercentCode.h"

namespace qv {
namespace {

constexpr std::string_view kDigits = "0123456789abcdefABCDEF";

// Returns the byte of an escape, which is numbered by its two digits.
char ByteOf(std::size_t escape) {
    const char high = kDigits[escape / kDigits.size()], low = kDigits[escape % kDigits.size()];
    return static_cast<char>(HexDigitValue(high) << 4 | HexDigitValue(low));
}

// Decoding such a byte may form a new escape.
bool MayJoinEscape(char c) {
    return c == '%' || IsHexDigit(c);
}

// The general algorithm. Occurrences are kept in a list for each of the 22 * 22 escapes, so that no search is repeated;
// outdated entries are detected when the list is used.
class UrlDecoder {
public:
    explicit UrlDecoder(std::string_view text) : m_chain(text), m_passed(text.size() + 1), m_taken(text.size() + 1) {
        for (std::size_t i = text.find('%'); i != text.npos; i = text.find('%', i + 1)) Note(ByteChain::NodeAt(i));
    }

    std::string Run() {
        for (Node at = m_chain.Next(ByteChain::kEnd); at != ByteChain::kEnd;) {
            const auto escape = EscapeAt(at);
            at = escape ? DecodeEverywhere(*escape, at) : Pass(at);
        }
        return m_chain.Text();
    }

private:
    using Node = ByteChain::Node;

    // Returns the number of the escape that begins here.
    std::optional<std::size_t> EscapeAt(Node node) const {
        if (node == ByteChain::kEnd || m_chain.Byte(node) != '%') return std::nullopt;
        const Node first = m_chain.Next(node), second = m_chain.Next(first);
        if (first == ByteChain::kEnd || second == ByteChain::kEnd) return std::nullopt;
        const std::size_t high = kDigits.find(m_chain.Byte(first)), low = kDigits.find(m_chain.Byte(second));
        if (high == kDigits.npos || low == kDigits.npos) return std::nullopt;
        return high * kDigits.size() + low;
    }

    void Note(Node node) {
        if (const auto escape = EscapeAt(node)) m_places[*escape].push_back(node);
    }

    Node Pass(Node node) {
        m_passed[node] = true;
        return m_chain.Next(node);
    }

    // Returns the node now at the former position of `at`: two further on for each escape decoded before it.
    Node DecodeEverywhere(std::size_t escape, Node at) {
        std::size_t shifted = 0;
        for (const Node node : TakePlaces(escape)) {
            if (m_passed[node]) shifted += 2;
            Decode(node, ByteOf(escape));
        }
        for (; shifted > 0 && at != ByteChain::kEnd; --shifted) at = Pass(at);
        return at;
    }

    std::vector<Node> TakePlaces(std::size_t escape) {
        std::vector<Node> places;
        ++m_event;
        for (const Node node : std::exchange(m_places[escape], {})) {
            if (!m_chain.IsIn(node) || m_taken[node] == m_event || EscapeAt(node) != escape) continue;
            m_taken[node] = m_event;
            places.push_back(node);
        }
        return places;
    }

    void Decode(Node node, char byte) {
        m_chain.SetByte(node, byte);
        m_chain.Remove(m_chain.Next(node));
        m_chain.Remove(m_chain.Next(node));
        const Node before = m_chain.Previous(node);
        Note(node);
        Note(before);
        Note(m_chain.Previous(before));
    }

    ByteChain m_chain;
    std::array<std::vector<Node>, kDigits.size() * kDigits.size()> m_places;
    std::vector<bool> m_passed;
    std::vector<std::uint32_t> m_taken;
    std::uint32_t m_event = 0;
};

}  // namespace

std::string DecodeUrl(std::string_view text) {
    std::string out;
    std::size_t from = 0;
    for (std::size_t at = text.find('%'); at != text.npos; at = text.find('%', at)) {
        const std::optional<char> byte = PercentByteAt(text, at);
        if (byte && MayJoinEscape(*byte)) return UrlDecoder(text).Run();
        if (!byte) {
            ++at;
            continue;
        }
        out.append(text.substr(from, at - from)) += *byte;
        at += 3;
        from = at;
    }
    return out.append(text.substr(from));
}

}  // namespace qv
