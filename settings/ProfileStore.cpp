#include "qvcommon/ProfileStore.h"

#include "qvcommon/framework/WinApp.h"
#include "settings/SettingSource.h"
#include "settings/ValueText.h"

namespace {

std::unique_ptr<qv::SettingSource> OpenProfile() {
    const CWinApp& application = *AfxGetApp();
    qv::platform::ProfilePlace place{application.m_pszRegistryKey.AsStd(), application.m_pszAppName.AsStd()};
    std::string file = qv::platform::ProfileFile(place);
    return file.empty() ? qv::OpenSystemProfile(std::move(place)) : qv::OpenIniFile(std::move(file), true);
}

CStringArray AsArray(const std::vector<std::string>& names) {
    return {names.begin(), names.end()};
}

template <class Value, class Read>
Value ValueOr(const qv::SettingSource& source, std::string_view section, std::string_view entry, Read read,
              const Value& otherwise) {
    const auto text = source.Find(section, entry);
    return text ? read(*text).value_or(otherwise) : otherwise;
}

}  // namespace

ProfileStore::ProfileStore() : m_source(OpenProfile()) {}
ProfileStore::ProfileStore(const char* file) : m_source(qv::OpenIniFile(CString(file), false)) {}
ProfileStore::~ProfileStore() = default;

CString ProfileStore::GetFile() const {
    return CString(m_source->File());
}

CStringArray ProfileStore::GetSections() const {
    return AsArray(Source().Sections());
}

CStringArray ProfileStore::GetEntries(std::string_view section) const {
    return AsArray(Source().Entries(section));
}

bool ProfileStore::HasEntry(std::string_view section, std::string_view entry) const {
    return Source().Find(section, entry).has_value();
}

CString ProfileStore::GetString(std::string_view section, std::string_view entry, std::string_view otherwise) const {
    const auto text = Source().Find(section, entry);
    return text ? CString(*text) : CString(otherwise);
}

int ProfileStore::GetInteger(std::string_view section, std::string_view entry, int otherwise) const {
    return ValueOr(Source(), section, entry, qv::ReadIntegerText, otherwise);
}

double ProfileStore::GetDouble(std::string_view section, std::string_view entry, double otherwise) const {
    return ValueOr(Source(), section, entry, qv::ReadDoubleText, otherwise);
}

BOOL ProfileStore::GetBool(std::string_view section, std::string_view entry, BOOL otherwise) const {
    return ValueOr(Source(), section, entry, qv::ReadBoolText, otherwise);
}

COleDateTime ProfileStore::GetDate(std::string_view section, std::string_view entry,
                                   const COleDateTime& otherwise) const {
    return ValueOr(Source(), section, entry, qv::ReadDateText, otherwise);
}

CString ProfileStore::GetBytes(std::string_view section, std::string_view entry, std::string_view otherwise) const {
    return ValueOr(Source(), section, entry, qv::ReadBytesText, CString(otherwise));
}

CStringArray ProfileStore::GetList(std::string_view section, std::string_view entry,
                                   const CStringArray& otherwise) const {
    const auto text = Source().Find(section, entry);
    return text ? qv::ReadListText(*text) : otherwise;
}

void ProfileStore::SetString(std::string_view section, std::string_view entry, std::string_view value) {
    Source().Set(section, entry, value);
}

void ProfileStore::SetInteger(std::string_view section, std::string_view entry, int value) {
    SetString(section, entry, std::to_string(value));
}

void ProfileStore::SetDouble(std::string_view section, std::string_view entry, double value) {
    SetString(section, entry, qv::DoubleText(value));
}

void ProfileStore::SetBool(std::string_view section, std::string_view entry, BOOL value) {
    SetString(section, entry, qv::BoolText(value));
}

void ProfileStore::SetDate(std::string_view section, std::string_view entry, const COleDateTime& value) {
    SetString(section, entry, qv::DateText(value));
}

void ProfileStore::SetBytes(std::string_view section, std::string_view entry, std::string_view value) {
    SetString(section, entry, qv::BytesText(value));
}

void ProfileStore::SetList(std::string_view section, std::string_view entry, const CStringArray& value) {
    SetString(section, entry, qv::ListText(value));
}

void ProfileStore::DeleteEntry(std::string_view section, std::string_view entry) {
    Source().DeleteEntry(section, entry);
}

void ProfileStore::DeleteSection(std::string_view section) {
    Source().DeleteSection(section);
}

void ProfileStore::Update(const std::function<void()>& changes) {
    if (m_update) return changes();
    struct Ended {
        ~Ended() { update = nullptr; }
        qv::SettingSource*& update;
    } const ended{m_update};
    m_source->Update([&](qv::SettingSource& source) {
        m_update = &source;
        changes();
    });
}
