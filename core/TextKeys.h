#pragma once

/// @file Looking up the texts of one array in another.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/FirstOccurrences.h"
#include "platform/Text.h"
#include "qvcommon/framework/Collections.h"

namespace qv {

/// The comparison keys of texts: the texts themselves, or their lower-case forms, which are stored here. The arrays
/// must not change meanwhile.
class TextKeys {
public:
    explicit TextKeys(bool noCase) : m_noCase(noCase) {}

    void Add(const CStringArray& texts) {
        if (m_noCase)
            AddLower(texts);
        else
            m_views.insert(m_views.end(), texts.begin(), texts.end());
    }

    /// Returns the texts in insertion order.
    std::span<const std::string_view> All() {
        if (m_noCase) m_views.clear();
        m_views.reserve(m_ends.size());
        std::size_t start = 0;
        for (std::size_t end : m_ends) {
            m_views.push_back(std::string_view(m_lower).substr(start, end - start));
            start = end;
        }
        return m_views;
    }

private:
    void AddLower(const CStringArray& texts) {
        std::size_t size = m_lower.size();
        for (const CString& text : texts) size += text.AsStd().size();
        m_lower.reserve(size);
        m_ends.reserve(m_ends.size() + texts.AsStd().size());
        for (const CString& text : texts) {
            m_lower += platform::ToLower(text);
            m_ends.push_back(m_lower.size());
        }
    }

    bool m_noCase;
    std::string m_lower;  // the concatenated texts
    std::vector<std::size_t> m_ends;
    std::vector<std::string_view> m_views;
};

/// Looks up the elements of an array in another one.
class TextLookup {
public:
    TextLookup(const CStringArray& texts, const CStringArray& wanted, bool noCase) : m_count(texts.AsStd().size()) {
        TextKeys keys(noCase);
        keys.Add(texts);
        keys.Add(wanted);
        m_first = FirstOccurrences(keys.All(), m_count);
    }

    static constexpr std::size_t kNowhere = kUnknown;

    std::size_t WantedCount() const { return m_first.size() - m_count; }
    /// Returns the index of the first element of `texts` equal to element `i` of `wanted`; kNowhere if not found.
    std::size_t Find(std::size_t i) const { return m_first[m_count + i]; }
    /// Returns the index of the first element of `texts` equal to element `i` of the same array.
    std::size_t FirstLike(std::size_t i) const { return m_first[i]; }

private:
    std::size_t m_count;
    std::vector<std::uint32_t> m_first;
};

}  // namespace qv
