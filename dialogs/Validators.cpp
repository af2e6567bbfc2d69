#include "qvcommon/Validators.h"

#include "platform/Text.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/MessageBox.h"

namespace {

[[noreturn]] void Fail(CDataExchange& exchange, const CString& message) {
    constexpr UINT kExclamation = 48;
    AfxMessageBox(message, kExclamation);
    exchange.Fail();
}

/// Returns the first character of the text that is in the set; empty if not found.
std::string_view FirstOf(std::string_view text, std::string_view set) {
    using qv::platform::CharacterLength;
    const auto page = qv::platform::CurrentCodePage();
    for (std::size_t i = 0, length; i < text.size(); i += length) {
        length = CharacterLength(text, i, page);
        for (std::size_t j = 0, other; j < set.size(); j += other) {
            other = CharacterLength(set, j, page);
            if (text.substr(i, length) == set.substr(j, other)) return text.substr(i, length);
        }
    }
    return {};
}

}  // namespace

void DDV_NotEmpty(CDataExchange* exchange, const CString& text) {
    if (exchange->m_bSaveAndValidate && text.IsEmpty()) Fail(*exchange, "The field can not be blank.");
}

void DDV_ValidPath(CDataExchange* exchange, const CString& path) {
    if (exchange->m_bSaveAndValidate && !CFileUtils::IsExist(path))
        Fail(*exchange, "The path specified can not be found");
}

void DDV_ValidDir(CDataExchange* exchange, const CString& folder) {
    if (exchange->m_bSaveAndValidate && !ValidateDir(folder)) exchange->Fail();
}

void DDV_ReservedChars(CDataExchange* exchange, const CString& text, const char* characters) {
    if (!exchange->m_bSaveAndValidate) return;
    const std::string_view found = FirstOf(text, CString(characters));
    if (found.empty()) return;
    // A character may have more bytes than "%c" accepts.
    CString message;
    message.Format("The '%s' character is not valid in this field.", found);
    Fail(*exchange, message);
}

void DDV_ReservedWord(CDataExchange* exchange, const CString& text, const char* word) {
    const CString reserved = word;
    if (!exchange->m_bSaveAndValidate || CStringHelper::FindNoCase(text, reserved) < 0) return;
    CString message;
    message.Format("The '%s' word is reserved and not valid in this field.", reserved);
    Fail(*exchange, message);
}

void DDV_SomeListItemsChecked(CDataExchange* exchange, const CCheckListBox& list) {
    constexpr int kChecked = 1;  // 2 is the indeterminate state
    if (!exchange->m_bSaveAndValidate) return;
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.GetCheck(i) == kChecked) return;
    Fail(*exchange, "You must select at least one option.");
}
