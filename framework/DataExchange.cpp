#include "platform/Window.h"
#include "qvcommon/framework/Window.h"

namespace platform = qv::platform;

HWND CDataExchange::PrepareCtrl(int id) {
    const HWND control = platform::ControlOf(m_pDlgWnd->m_hWnd, id);
    if (!control) AfxThrowInvalidArgException();
    m_hWndLastControl = control;
    m_bEditLastControl = 0;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
    const HWND control = PrepareCtrl(id);
    m_bEditLastControl = 1;
    return control;
}

void CDataExchange::Fail() {
    if (m_bSaveAndValidate && m_hWndLastControl) platform::FocusOn(m_hWndLastControl, m_bEditLastControl != 0);
    AfxThrowUserException();
}

void DDX_Text(CDataExchange* exchange, int id, CString& text) {
    const HWND control = exchange->PrepareEditCtrl(id);
    if (exchange->m_bSaveAndValidate)
        text = CString(platform::TextOf(control));
    else
        platform::PutText(control, text.AsStd());
}

void DDX_CBString(CDataExchange* exchange, int id, CString& text) {
    const HWND control = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate)
        text = CString(platform::TextOf(control));
    else
        platform::ChooseText(control, text.AsStd());
}
