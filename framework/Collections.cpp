#include "qvcommon/framework/Collections.h"

bool CMapStringToString::Lookup(std::string_view key, CString& value) const {
    const auto found = m_items.find(key);
    if (found == m_items.end()) return false;
    value = found->second;
    return true;
}

bool CMapStringToString::RemoveKey(std::string_view key) {
    const auto found = m_items.find(key);
    if (found == m_items.end()) return false;
    m_items.erase(found);
    return true;
}
