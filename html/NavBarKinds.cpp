#include <algorithm>
#include <cstdlib>

#include "qvcommon/NavBar.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/WinApp.h"

// COptionNavBar

int COptionNavBar::SetOptionByText(std::string_view text) {
    m_nOption = -1;
    for (int i = 0; i < m_options.GetSize() && m_nOption < 0; ++i)
        if (CStringHelper::Equals(m_options[i], text, 0)) m_nOption = i;
    return m_nOption >= 0;
}

CString COptionNavBar::GetOptionText() const {
    return m_nOption >= 0 && m_nOption < m_options.GetSize() ? m_options[m_nOption] : CString();
}

void COptionNavBar::AddBody(CHtmlWriter& writer) {
    for (int i = 0; i < m_options.GetSize(); ++i)
        AddChoice(writer, i == m_nOption, CStringHelper::Format("%d", i), m_options[i]);
}

int COptionNavBar::ProcessSubcommand(const char* rest) {
    m_nOption = std::atoi(rest);
    return 1;
}

// StoredText

namespace qv {

CString StoredText::Read(const CString& otherwise) const {
    return m_section.IsEmpty() ? otherwise : AfxGetApp()->GetProfileString(m_section, m_entry, "");
}

void StoredText::Write(const CString& text) const {
    if (!m_section.IsEmpty()) AfxGetApp()->WriteProfileString(m_section, m_entry, text);
}

}  // namespace qv

// CStringOptionNavBar

CStringOptionNavBar::CStringOptionNavBar(const char* section, const char* entry) : m_stored(section, entry) {
    CStringOptionNavBar::RestoreState();
}

CString CStringOptionNavBar::GetOption() {
    RestoreState();
    return CStringHelper::Find(m_options, m_strOption, 0) ? m_strOption : CString();
}

void CStringOptionNavBar::SetOption(const char* option) {
    m_strOption = option;
    SaveState();
}

CString CStringOptionNavBar::GetReadableName(const CString& option) {
    return option;
}

CString CStringOptionNavBar::GetSubHeading() {
    const CString option = GetOption();
    return option.IsEmpty() ? CString() : GetReadableName(option);
}

void CStringOptionNavBar::AddBody(CHtmlWriter& writer) {
    RestoreState();
    bool found = false;
    for (const CString& option : m_options) {
        const bool isCurrent = option == m_strOption;
        found |= isCurrent;
        AddChoice(writer, isCurrent, option, GetReadableName(option));
    }
    if (!found) SetOption("");
}

int CStringOptionNavBar::ProcessSubcommand(const char* rest) {
    const int index = CStringHelper::GetIndex(m_options, rest, 1, -1);
    if (index < 0) return 0;
    SetOption(m_options[index]);
    return 1;
}

void CStringOptionNavBar::SaveState() const {
    m_stored.Write(m_strOption);
}

void CStringOptionNavBar::RestoreState() {
    m_strOption = m_stored.Read(m_strOption);
}

// CGroupNavBar

CGroupNavBar::CGroupNavBar(const char* section, const char* entry) : m_stored(section, entry) {
    CGroupNavBar::RestoreState();
}

void CGroupNavBar::SetGroups(const CStringArray& names, const CStringArray& keys) {
    if (keys.GetSize() < names.GetSize()) AfxThrowInvalidArgException();
    m_names = names;
    m_keys = keys;
    m_keys.SetSize(names.GetSize());
}

int CGroupNavBar::FindKey(std::string_view key) const {
    return CStringHelper::GetIndex(m_keys, key, 0, -1);
}

CString CGroupNavBar::GetGroup() const {
    const int index = FindKey(m_strKey);
    return index >= 0 ? m_names[index] : CString();
}

void CGroupNavBar::SetOption(const char* key) {
    m_strKey = key;
    SaveState();
}

void CGroupNavBar::AddBody(CHtmlWriter& writer) {
    RestoreState();
    for (int i = 0; i < m_keys.GetSize(); ++i) AddChoice(writer, m_keys[i] == m_strKey, m_keys[i], m_names[i]);
    if (!m_strKey.IsEmpty() && FindKey(m_strKey) < 0) SetOption("");
}

int CGroupNavBar::ProcessSubcommand(const char* rest) {
    if (FindKey(rest) < 0) return 0;
    SetOption(rest);
    return 1;
}

void CGroupNavBar::SaveState() const {
    m_stored.Write(m_strKey);
}

void CGroupNavBar::RestoreState() {
    m_strKey = m_stored.Read(m_strKey);
}

// CMruNavBar

CMruNavBar::CMruNavBar(int capacity, const char* section, const char* entry)
    : m_stored(section, entry), m_nCapacity(std::max(capacity, 1)) {
    CMruNavBar::LoadFromRegistry();
}

void CMruNavBar::LoadFromRegistry() {
    const CString list = m_stored.Read(CStringHelper::MakeString(m_ids, ",", -1, 1));
    m_ids.RemoveAll();
    CStringHelper::SplitString(list, ",", m_ids, 1);
    m_ids.SetSize(m_nCapacity);
}

void CMruNavBar::SaveToRegistry() {
    m_stored.Write(CStringHelper::MakeString(m_ids, ",", -1, 1));
}

void CMruNavBar::AddId(const char* id) {
    auto& ids = m_ids.AsStd();
    const CString added(id);  // `id` may point into m_ids
    const auto old = std::find(ids.begin(), ids.end() - 1, added);
    std::rotate(ids.begin(), old, old + 1);
    ids.front() = m_strCurrent = added;
    SaveToRegistry();
}

CString CMruNavBar::GetDisplayText(const CString& id) {
    return id;
}

CString CMruNavBar::GetSubHeading() {
    return m_strCurrent.IsEmpty() ? CString() : GetDisplayText(m_strCurrent);
}

void CMruNavBar::AddBody(CHtmlWriter& writer) {
    LoadFromRegistry();
    for (const CString& id : m_ids) {
        const CString text = id.IsEmpty() ? CString() : GetDisplayText(id);
        if (!text.IsEmpty()) AddChoice(writer, id == m_strCurrent, id, text);
    }
}

int CMruNavBar::ProcessSubcommand(const char*) {
    return 0;
}
