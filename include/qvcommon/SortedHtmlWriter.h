#pragma once

/// @file Sections of a page, written in any order and put out sorted.

#include <memory>
#include <unordered_map>

#include "qvcommon/HtmlWriter.h"

/// Collects sections under keys. One object, one thread.
class QVCOMMON_API CSortedHtmlWriter : public CObject {
public:
    CSortedHtmlWriter() = default;
    CSortedHtmlWriter(const CSortedHtmlWriter&) = delete;
    CSortedHtmlWriter& operator=(const CSortedHtmlWriter&) = delete;

    /// The writer of the key's section, an empty one when the key is new; `created` says which. Keys differ in case. The
    /// writer belongs to this object and is valid until RemoveAll.
    CHtmlWriter& GetWriter(std::string_view key, int& created);
    CHtmlWriter& GetWriter(std::string_view key);

    /// Each: What stands before and after one section, and before and after every section outside of that. A header
    /// without a section is not written; it serves when its key comes.
    void SetHeader(std::string_view key, std::string_view text) { m_headers.SetAt(key, text); }
    void SetFooter(std::string_view key, std::string_view text) { m_footers.SetAt(key, text); }
    void SetGlobalHeader(std::string_view text) { m_strGlobalHeader = text; }
    void SetGlobalFooter(std::string_view text) { m_strGlobalFooter = text; }

    /// Writes the sections that are kept in memory, sorted by the locale's collation, keys that sort alike in the order
    /// they came. The sections stay, in that order. Beyond the sorting, time grows in line with what is written.
    void GetHtml(CHtmlWriter& out);
    /// Removes all sections; headers and footers stay.
    void RemoveAll();

private:
    void Sort();

    CStringArray m_keys;
    std::vector<std::unique_ptr<CHtmlWriter>> m_writers;  // one a key
    CMapStringToString m_headers;
    CMapStringToString m_footers;
    CString m_strGlobalHeader;
    CString m_strGlobalFooter;
    std::unordered_map<CString, std::size_t> m_places;  // of the keys
};
