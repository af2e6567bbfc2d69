#include "core/CaselessReplacement.h"

#include "core/TextSearch.h"

namespace qv {
namespace {

// A text as case-folded characters and their start positions.
struct Characters {
    Characters(std::string_view bytes, const CaseReader& reader) : text(bytes) {
        for (std::size_t i = 0; i < text.size();) {
            const platform::CasedCharacter c = reader.Read(text, i);
            codes.push_back(c.code);
            starts.push_back(i);
            i += c.length;
        }
        starts.push_back(text.size());
    }

    std::size_t Count() const { return codes.size(); }

    std::string_view text;
    std::vector<char32_t> codes;
    std::vector<std::size_t> starts;
};

// The result as a stack of ranges of the text and of the replacement, so that removing its end is cheap.
class Stretches {
public:
    void Append(const Characters& source, std::size_t first, std::size_t last) {
        if (!m_items.empty() && m_items.back().source == &source && m_items.back().last == first)
            m_items.back().last = last;
        else if (first < last)
            m_items.push_back({&source, first, last});
    }

    void TakeBack(std::size_t count) {
        while (count > 0) {
            Stretch& top = m_items.back();
            const std::size_t taken = std::min(count, top.last - top.first);
            top.last -= taken;
            count -= taken;
            if (top.first == top.last) m_items.pop_back();
        }
    }

    std::string Join() const {
        std::string out;
        for (const Stretch& item : m_items) {
            const std::size_t start = item.source->starts[item.first];
            out += item.source->text.substr(start, item.source->starts[item.last] - start);
        }
        return out;
    }

private:
    struct Stretch {
        const Characters* source;
        std::size_t first, last;
    };

    std::vector<Stretch> m_items;
};

}  // namespace

CaselessReplacement::CaselessReplacement(std::string_view find, std::string_view replacement)
    : m_reader(CaseRule::Ignore), m_find(find), m_replacement(replacement), m_automaton(m_reader.ReadAll(find)) {
    const std::vector<char32_t> codes = m_reader.ReadAll(replacement);
    for (std::size_t i = 1; i < codes.size(); ++i) {
        m_afterwards = m_automaton.Next(m_afterwards, codes[i]);
        if (m_afterwards == m_automaton.Size()) m_endless = true;
    }
}

std::string CaselessReplacement::Apply(std::string_view text) const {
    return m_endless || m_afterwards == 0 ? ReplaceApart(text) : ReplaceChained(text);
}

// No occurrence overlaps a replacement: the search continues after it, and after the character that follows an empty
// one.
std::string CaselessReplacement::ReplaceApart(std::string_view text) const {
    TextSearch search(text, m_find, CaseRule::Ignore);
    std::string out;
    std::size_t copied = 0;
    for (Occurrence hit = search.Find(0); hit;) {
        out.append(text.substr(copied, hit.position - copied)).append(m_replacement);
        copied = hit.End();
        std::size_t from = copied;
        if (m_replacement.empty() && from < text.size()) from += m_reader.Read(text, from).length;
        hit = search.Find(from);
    }
    return out.append(text.substr(copied));
}

// The end of a replacement may start the next occurrence.
std::string CaselessReplacement::ReplaceChained(std::string_view text) const {
    const Characters source(text, m_reader), replacement(m_replacement, m_reader);
    Stretches out;
    std::size_t state = 0;
    for (std::size_t i = 0; i < source.Count(); ++i) {
        out.Append(source, i, i + 1);
        state = m_automaton.Next(state, source.codes[i]);
        if (state != m_automaton.Size()) continue;
        out.TakeBack(m_automaton.Size());
        out.Append(replacement, 0, replacement.Count());
        state = m_afterwards;
    }
    return out.Join();
}

}  // namespace qv
