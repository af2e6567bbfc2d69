#include "qvcommon/SortedHtmlWriter.h"

#include "qvcommon/StringHelper.h"

namespace {

void AddIfSet(CHtmlWriter& out, const CMapStringToString& texts, const CString& key) {
    if (CString text; texts.Lookup(key, text)) out.AddFormattedText(text);
}

}  // namespace

CHtmlWriter& CSortedHtmlWriter::GetWriter(std::string_view key, int& created) {
    const auto [place, isNew] = m_places.try_emplace(CString(key), m_writers.size());
    created = isNew;
    if (isNew) {
        m_keys.Add(key);
        m_writers.push_back(std::make_unique<CHtmlWriter>());
    }
    return *m_writers[place->second];
}

CHtmlWriter& CSortedHtmlWriter::GetWriter(std::string_view key) {
    int created;
    return GetWriter(key, created);
}

void CSortedHtmlWriter::Sort() {
    CDWordArray before;
    CStringHelper::IndexSortCStringArray(m_keys, before, 0);
    std::vector<std::unique_ptr<CHtmlWriter>> sorted;
    for (const DWORD index : before) {
        m_places[m_keys[static_cast<int>(sorted.size())]] = sorted.size();
        sorted.push_back(std::move(m_writers[index]));
    }
    m_writers = std::move(sorted);
}

void CSortedHtmlWriter::GetHtml(CHtmlWriter& out) {
    Sort();
    for (std::size_t i = 0; i < m_writers.size(); ++i) {
        const CString& key = m_keys[static_cast<int>(i)];
        out.AddFormattedText(m_strGlobalHeader);
        AddIfSet(out, m_headers, key);
        out.AddFormattedText(m_writers[i]->GetHtml());
        AddIfSet(out, m_footers, key);
        out.AddFormattedText(m_strGlobalFooter);
    }
}

void CSortedHtmlWriter::RemoveAll() {
    m_keys.RemoveAll();
    m_writers.clear();
    m_places.clear();
}
