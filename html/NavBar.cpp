#include "qvcommon/NavBar.h"

#include "html/RollupRestoreScript.h"
#include "html/RollupScript.h"
#include "html/ScriptText.h"
#include "qvcommon/StringHelper.h"

CString CNavBar::ms_strRolledUpImage, CNavBar::ms_strRolledDownImage;

CNavBar::CNavBar() : m_strRollupGuid(CStringHelper::GetNewGuid(0)) {}

void CNavBar::GenerateHtml(CHtmlWriter& writer) {
    writer.OpenTag("TABLE", m_bAllowRollup ? "width=\"100%\" id=\"NavMenu\"" : "width=\"100%\"");
    writer.OpenTag("TBODY");
    AddHeading(writer);
    writer.CloseTag("TBODY");
    // The style is not a valid declaration: strict browsers ignore it and show the body.
    writer.OpenTag("TBODY", m_bAllowRollup ? "id=\"" + m_strRollupGuid + "\" style=\"display='none'\"" : CString());
    AddBody(writer);
    writer.CloseTag("TBODY");
    writer.CloseTag("TABLE");
}

void CNavBar::AddHeading(CHtmlWriter& writer) {
    writer.OpenTag("TR");
    if (m_bAllowRollup) {
        writer.OpenTag("TH", "onclick=\"ToggleNavBar('" + m_strRollupGuid + "')\" style=\"cursor:hand\"");
        writer.AddUppercaseImage(ms_strRolledUpImage, CHtmlWriter::alignNone, "click rollup/rolldown menu", 0, 0,
                                 "id=\"i" + m_strRollupGuid + '"');
        writer.AddFormattedText("&nbsp;");
    } else {
        writer.OpenTag("TH");
    }
    writer.AddText(m_strName);
    if (m_bAllowRollup) {
        writer.OpenTag("i", "id=\"s" + m_strRollupGuid + '"');
        if (const CString summary = GetSubHeading(); !summary.IsEmpty()) {
            writer.OpenTag("small");
            writer.AddText(" (" + summary + ")");
            writer.CloseTag("small");
        }
        writer.CloseTag("i");
    }
    writer.CloseTag("TH");
    writer.CloseTag("TR");
}

void CNavBar::AddChoice(CHtmlWriter& writer, bool isCurrent, const CString& key, const CString& text) const {
    writer.OpenTag("TR");
    writer.OpenTag("TD", isCurrent ? "class=\"clsSelected\"" : nullptr);
    if (!isCurrent) {
        writer.OpenHotlink(m_strCommand + key);
    } else if (!m_strSelectionImage.IsEmpty()) {
        writer.AddImage(m_strSelectionImage);
        writer.AddFormattedText("&nbsp;");
    }
    writer.AddText(text);
    if (!isCurrent) writer.CloseHotlink();
    writer.CloseTag("TD");
    writer.CloseTag("TR");
}

int CNavBar::ProcessCommand(const char* command) {
    CString rest;
    const bool ours = !m_strCommand.IsEmpty() && CStringHelper::StartsWith(command, m_strCommand, rest, 1);
    return ours ? ProcessSubcommand(rest) : 0;
}

void CNavBar::SetName(const char* name) {
    m_strName = name;
}

CString CNavBar::GetName() {
    return m_strName;
}

void CNavBar::SetCommand(const char* prefix) {
    m_strCommand = prefix;
}

void CNavBar::SetSelectionImage(const char* image) {
    m_strSelectionImage = image;
}

CString CNavBar::GetSelectionImage() {
    return m_strSelectionImage;
}

void CNavBar::SetRollupGuid(const char* id) {
    m_strRollupGuid = id;
}

void CNavBar::SetAllowRollup(int allow) {
    m_bAllowRollup = allow;
}

void CNavBar::AddBody(CHtmlWriter&) {}

int CNavBar::ProcessSubcommand(const char*) {
    return 0;
}

CString CNavBar::GetSubHeading() {
    return {};
}

void CNavBar::SaveState() const {}

void CNavBar::RestoreState() {}

void CNavBar::AddRollupScript(const char* rolledUpImage, const char* rolledDownImage, CHtmlWriter& writer) {
    ms_strRolledUpImage = rolledUpImage;
    ms_strRolledDownImage = rolledDownImage;
    writer.AddFormattedText(
        qv::html::FillScript(qv::html::kRollupScript, {{"{rolledUpImage}", qv::html::ScriptPath(rolledUpImage)},
                                                       {"{rolledDownImage}", qv::html::ScriptPath(rolledDownImage)}}));
}

void CNavBar::AddRollupScriptCookie(CHtmlWriter& writer) {
    writer.AddFormattedText(qv::html::kRollupRestoreScript);
}
