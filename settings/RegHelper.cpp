#include "qvcommon/RegHelper.h"

#include "framework/FileErrors.h"
#include "platform/Registry.h"
#include "qvcommon/StringHelper.h"
#include "settings/ValueText.h"

namespace {

using qv::platform::RegistryType;
using qv::platform::RegistryValue;

std::string WithoutZero(std::string_view text) {
    if (text.find('\0') != text.npos) AfxThrowInvalidArgException();
    return std::string(text);
}

qv::platform::RegistryKey KeyOf(const CRegHelper& helper, CRegHelper::Root root) {
    using qv::platform::RegistryRoot;
    return {root == CRegHelper::localMachine ? RegistryRoot::Machine : RegistryRoot::User, helper.GetKey().AsStd()};
}

CString TextForm(const RegistryValue& value) {
    switch (value.type) {
        case RegistryType::Bytes: return qv::BytesText(value.data);
        case RegistryType::Texts: {
            const std::string_view texts = std::string_view(value.data).substr(0, value.data.rfind('\0'));
            if (value.data.empty()) return {};
            return qv::ListText(CStringHelper::SplitString(texts, std::string_view("\0", 1), 1));
        }
        case RegistryType::Text:
        case RegistryType::Integer: break;
    }
    return CString(value.data);
}

std::optional<CString> Read(const qv::platform::RegistryKey& key, std::string_view name) {
    RegistryValue value;
    const bool isThere = name.find('\0') == name.npos && ReadRegistryValue(key, std::string(name), value).ok();
    return isThere ? std::optional(TextForm(value)) : std::nullopt;
}

/// Leaves the output unchanged if nothing was found.
template <class Value>
BOOL Take(std::optional<Value> found, Value& value) {
    if (!found) return 0;
    value = std::move(*found);
    return 1;
}

void Write(const qv::platform::RegistryKey& key, std::string_view name, RegistryType type, std::string_view data) {
    qv::ThrowIfFailed(WriteRegistryValue(key, WithoutZero(name), {type, std::string(data)}), key.path.c_str());
}

}  // namespace

CRegHelper::CRegHelper(std::string_view key, Root root) : m_key(WithoutZero(key)), m_root(root) {
    while (m_key.AsStd().ends_with('\\')) m_key.AsStd().pop_back();
}

BOOL CRegHelper::GetString(std::string_view name, CString& value) const {
    return Take(Read(KeyOf(*this, m_root), name), value);
}

BOOL CRegHelper::GetInteger(std::string_view name, DWORD& value) const {
    const auto text = Read(KeyOf(*this, m_root), name);
    return text && Take(qv::ReadUnsignedText(*text), value);
}

BOOL CRegHelper::GetBytes(std::string_view name, CString& value) const {
    const auto text = Read(KeyOf(*this, m_root), name);
    return text && Take(qv::ReadBytesText(*text), value);
}

BOOL CRegHelper::GetList(std::string_view name, CStringArray& value) const {
    const auto text = Read(KeyOf(*this, m_root), name);
    return text && Take(std::optional(qv::ReadListText(*text)), value);
}

void CRegHelper::SetString(std::string_view name, std::string_view value) {
    Write(KeyOf(*this, m_root), name, RegistryType::Text, WithoutZero(value));
}

void CRegHelper::SetInteger(std::string_view name, DWORD value) {
    Write(KeyOf(*this, m_root), name, RegistryType::Integer, std::to_string(value));
}

void CRegHelper::SetBytes(std::string_view name, std::string_view value) {
    Write(KeyOf(*this, m_root), name, RegistryType::Bytes, value);
}

void CRegHelper::SetList(std::string_view name, const CStringArray& value) {
    SetString(name, qv::ListText(value));
}

void CRegHelper::DeleteValue(std::string_view name) {
    qv::ThrowIfFailed(DeleteRegistryValue(KeyOf(*this, m_root), WithoutZero(name)), m_key);
}

void CRegHelper::DeleteKey() {
    if (m_key.IsEmpty()) AfxThrowInvalidArgException();
    qv::ThrowIfFailed(DeleteRegistryKey(KeyOf(*this, m_root)), m_key);
}

CStringArray CRegHelper::GetValueNames() const {
    std::vector<std::string> names;
    ListRegistryValues(KeyOf(*this, m_root), names).IgnoreError();  // empty on failure, as promised
    return {names.begin(), names.end()};
}

CStringArray CRegHelper::GetKeyNames() const {
    std::vector<std::string> names;
    ListRegistryKeys(KeyOf(*this, m_root), names).IgnoreError();  // empty on failure, as promised
    return {names.begin(), names.end()};
}
