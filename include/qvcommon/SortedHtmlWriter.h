#pragma once

/// @file Sections of a page, written in any order and output sorted.

#include <memory>
#include <unordered_map>

#include "qvcommon/HtmlWriter.h"

/// Collects sections by key. Not thread-safe.
class QVCOMMON_API CSortedHtmlWriter : public CObject {
public:
    CSortedHtmlWriter() = default;
    CSortedHtmlWriter(const CSortedHtmlWriter&) = delete;
    CSortedHtmlWriter& operator=(const CSortedHtmlWriter&) = delete;

    /// Returns the writer of the key's section, creating an empty one for a new key; `created` reports which. Keys are
    /// case-sensitive. The writer is owned by this object and valid until RemoveAll.
    CHtmlWriter& GetWriter(std::string_view key, int& created);
    CHtmlWriter& GetWriter(std::string_view key);

    /// Each: Sets the text before and after one section, and before and after every section outside of that. A header
    /// without a section is not written, but kept until its key is added.
    void SetHeader(std::string_view key, std::string_view text) { m_headers.SetAt(key, text); }
    void SetFooter(std::string_view key, std::string_view text) { m_footers.SetAt(key, text); }
    void SetGlobalHeader(std::string_view text) { m_strGlobalHeader = text; }
    void SetGlobalFooter(std::string_view text) { m_strGlobalFooter = text; }

    /// Writes the sections, sorted by the locale's collation; keys that compare equal keep their insertion order. The
    /// sections are kept, in that order. O(n) in the output, plus the sorting.
    void GetHtml(CHtmlWriter& out);
    /// Removes all sections, keeping headers and footers.
    void RemoveAll();

private:
    void Sort();

    CStringArray m_keys;
    std::vector<std::unique_ptr<CHtmlWriter>> m_writers;  // one per key
    CMapStringToString m_headers;
    CMapStringToString m_footers;
    CString m_strGlobalHeader;
    CString m_strGlobalFooter;
    std::unordered_map<CString, std::size_t> m_places;  // indexes by key
};
