#include "core/UrlDecoding.h"

#include <array>
#include <utility>
#include <vector>

#include "core/ByteChain.h"
#include "platform/PercentCode.h"

namespace qv {
namespace {

constexpr std::string_view kDigits = "0123456789abcdefABCDEF";

int DigitIndex(char c) {
    const std::size_t found = kDigits.find(c);
    return found == kDigits.npos ? -1 : static_cast<int>(found);
}

// Of one of the escapes, which are numbered by their two digits.
char ByteOf(int escape) {
    const auto high = static_cast<std::size_t>(escape) / kDigits.size();
    const auto low = static_cast<std::size_t>(escape) % kDigits.size();
    return static_cast<char>(HexDigitValue(kDigits[high]) << 4 | HexDigitValue(kDigits[low]));
}

// Decoding such a byte may put a new escape together.
bool MayJoinEscape(char c) {
    return c == '%' || IsHexDigit(c);
}

// The general walk. Occurrences are kept in a list for each of the 22 * 22 escapes, so that no search is repeated; an entry
// that no longer holds is found out when the list is used.
class UrlDecoder {
public:
    explicit UrlDecoder(std::string_view text) : m_chain(text), m_passed(text.size() + 1), m_taken(text.size() + 1) {
        for (std::size_t i = text.find('%'); i != text.npos; i = text.find('%', i + 1)) Note(ByteChain::NodeAt(i));
    }

    std::string Run() {
        for (Node at = m_chain.Next(ByteChain::kEnd); at != ByteChain::kEnd;) {
            const int escape = EscapeAt(at);
            at = escape < 0 ? Pass(at) : DecodeEverywhere(escape, at);
        }
        return m_chain.Text();
    }

private:
    using Node = ByteChain::Node;
    static constexpr int kKinds = static_cast<int>(kDigits.size());

    // Which escape stands here; -1 for none.
    int EscapeAt(Node node) const {
        if (node == ByteChain::kEnd || m_chain.Byte(node) != '%') return -1;
        const Node first = m_chain.Next(node), second = m_chain.Next(first);
        if (first == ByteChain::kEnd || second == ByteChain::kEnd) return -1;
        const int high = DigitIndex(m_chain.Byte(first)), low = DigitIndex(m_chain.Byte(second));
        return high < 0 || low < 0 ? -1 : high * kKinds + low;
    }

    void Note(Node node) {
        const int escape = EscapeAt(node);
        if (escape >= 0) m_places[static_cast<std::size_t>(escape)].push_back(node);
    }

    Node Pass(Node node) {
        m_passed[node] = true;
        return m_chain.Next(node);
    }

    // Returns what then stands at the position where `at` stood: further on by two for each escape decoded before it.
    Node DecodeEverywhere(int escape, Node at) {
        std::size_t shifted = 0;
        for (const Node node : TakePlaces(escape)) {
            if (m_passed[node]) shifted += 2;
            Decode(node, ByteOf(escape));
        }
        for (; shifted > 0 && at != ByteChain::kEnd; --shifted) at = Pass(at);
        return at;
    }

    std::vector<Node> TakePlaces(int escape) {
        std::vector<Node> places;
        ++m_event;
        for (const Node node : std::exchange(m_places[static_cast<std::size_t>(escape)], {})) {
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
        if (byte) {
            out.append(text.substr(from, at - from)) += *byte;
            from = at + 3;
        }
        at += byte ? 3 : 1;
    }
    return out.append(text.substr(from));
}

}  // namespace qv
