#include "qvcommon/UnicodeString.h"

#include "platform/Text.h"

const CString& CUnicodeString::GetBytes() const {
    if (m_has == Form::Wide) MakeOther();
    return m_bytes;
}

const std::u16string& CUnicodeString::GetWide() const {
    if (m_has == Form::Bytes) MakeOther();
    return m_wide;
}

bool CUnicodeString::IsExact() const {
    MakeOther();
    return m_has == Form::Bytes ? qv::platform::FromWide(m_wide) == m_bytes.AsStd()
                                : qv::platform::ToWide(m_bytes) == m_wide;
}

void CUnicodeString::MakeOther() const {
    if (m_hasBoth) return;
    if (m_has == Form::Bytes)
        m_wide = qv::platform::ToWide(m_bytes);
    else
        m_bytes = CString(qv::platform::FromWide(m_wide));
    m_hasBoth = true;
}
