#include <clocale>
#include <cmath>
#include <cstdlib>

#include "platform/Ascii.h"
#include "platform/Text.h"
#include "qvcommon/Validators.h"
#include "qvcommon/framework/MessageBox.h"

namespace {

constexpr UINT kPleaseEnterANumber = 0xF111;

void Trim(CString& text) {
    text.TrimLeft();
    text.TrimRight();
}

// Rejects what strtod also accepts, such as "inf", "nan" and "0x10": users who type it do not mean a number.
bool IsDecimal(std::string_view text) {
    const std::string_view point = std::localeconv()->decimal_point;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool known = qv::ascii::IsDigit(text[i]) || std::string_view("+-eE").find(text[i]) != text.npos;
        if (!known && !text.substr(i).starts_with(point)) return false;
        if (!known) i += point.size() - 1;
    }
    return true;
}

/// Parses the whole text as a number; surrounding white space is allowed.
bool ReadNumber(const CString& text, double& number) {
    const std::string plain(qv::platform::TrimmedLeft(qv::platform::TrimmedRight(text)));
    char* end = nullptr;
    number = std::strtod(plain.c_str(), &end);
    return IsDecimal(plain) && end != plain.c_str() && end == plain.c_str() + plain.size() && std::isfinite(number);
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
    double number = 0;
    if (!ReadNumber(typed.Left(kLongest), number)) {
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
