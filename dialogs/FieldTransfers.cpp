#include <cstdlib>

#include "platform/Text.h"
#include "qvcommon/Validators.h"
#include "qvcommon/framework/MessageBox.h"

namespace {

constexpr UINT kPleaseEnterANumber = 0xF111;

void Trim(CString& text) {
    text.TrimLeft();
    text.TrimRight();
}

/// The whole text as a number, blanks around it allowed.
bool ReadNumber(const CString& text, double& number) {
    const std::string_view digits = qv::platform::TrimmedRight(text);
    const std::string plain(digits);
    char* end = nullptr;
    number = std::strtod(plain.c_str(), &end);
    return end != plain.c_str() && *end == '\0' && end == plain.c_str() + plain.size();
}

CString Formatted(double value, const char* format) {
    CString text;
    text.Format(qv::RuntimeFormat{format}, value);
    return text;
}

}  // namespace

void DDX_TrimText(CDataExchange* exchange, int id, CString& text) {
    DDX_Text(exchange, id, text);
    Trim(text);
}

void DDX_TrimCBString(CDataExchange* exchange, int id, CString& text) {
    DDX_CBString(exchange, id, text);
    Trim(text);
}

void DDX_ExtendedText(CDataExchange* exchange, int id, CString& text) {
    if (const auto* const edit = dynamic_cast<CCharacterFilterEdit*>(exchange->m_pDlgWnd->GetDlgItem(id))) {
        const std::string_view all = text;
        const auto page = qv::platform::CurrentCodePage();
        CString accepted;
        for (std::size_t i = 0, length; i < all.size(); i += length) {
            length = qv::platform::CharacterLength(all, i, page);
            if (edit->IsAccepted(all.substr(i, length))) accepted += all.substr(i, length);
        }
        text = accepted;
    }
    DDX_Text(exchange, id, text);
}

void DDX_Text_Display_Formatted(CDataExchange* exchange, int id, double& value, const char* format) {
    constexpr int kLongest = 32;
    CString text = Formatted(value, format);
    if (!exchange->m_bSaveAndValidate) return DDX_Text(exchange, id, text);
    CString typed;
    DDX_Text(exchange, id, typed);
    typed = typed.Left(kLongest);
    double number = 0;
    if (!ReadNumber(typed, number)) {
        AfxMessageBox(kPleaseEnterANumber);
        exchange->Fail();
    }
    if (typed != text) value = number;
}

void DDX_Text(CDataExchange* exchange, CCodeEditCtrl& control, CString& text) {
    if (exchange->m_bSaveAndValidate)
        control.GetWindowText(text);
    else
        control.SetWindowText(text);
}
