#pragma once

#include <map>

#include "qvcommon/framework/String.h"

/// Walked in the byte order of its keys.
class CMapStringToInt {
public:
    int GetCount() const { return static_cast<int>(m_items.size()); }
    bool IsEmpty() const { return m_items.empty(); }
    void RemoveAll() { m_items.clear(); }
    void SetAt(std::string_view key, int value) { m_items.insert_or_assign(CString(key), value); }
    int& operator[](std::string_view key) { return m_items[CString(key)]; }
    /// False, and `value` left alone, when the key is absent.
    bool Lookup(std::string_view key, int& value) const {
        const auto found = m_items.find(key);
        if (found != m_items.end()) value = found->second;
        return found != m_items.end();
    }

    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::map<CString, int, std::less<>> m_items;
};
