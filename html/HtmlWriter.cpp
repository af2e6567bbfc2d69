#include "qvcommon/HtmlWriter.h"

#include <functional>

#include "qvcommon/MultiUserFile.h"

IMPLEMENT_DYNAMIC(CHtmlWriter, CObject)

namespace {

constexpr std::size_t kLargeText = 10000, kStep = 1000000;

bool LiesIn(std::string_view part, std::string_view whole) {
    const std::less_equal<const char*> upTo;
    return upTo(whole.data(), part.data()) && upTo(part.data(), whole.data() + whole.size());
}

}  // namespace

CHtmlWriter::CHtmlWriter(const CHtmlWriter& other) : CObject(other), m_strHtml(other.m_strHtml) {}

CHtmlWriter& CHtmlWriter::operator=(const CHtmlWriter& other) {
    if (this == &other) return *this;
    m_file.Abort();
    m_strHtml = other.m_strHtml;
    m_strFilename.Empty();
    m_bFileOpen = 0;
    m_bMultiUser = 1;
    m_bDropdowns = 0;
    m_strDropdownImageDir.Empty();
    return *this;
}

CHtmlWriter CHtmlWriter::operator+(const CHtmlWriter& other) const {
    CHtmlWriter sum(*this);
    return sum += other;
}

CHtmlWriter& CHtmlWriter::operator+=(const CHtmlWriter& other) {
    AddFormattedText(other.m_strHtml);
    return *this;
}

void CHtmlWriter::AppendElsewhere(std::string_view text) {
    if (m_strFilename.IsEmpty()) {
        AppendInMemory(text);
        return;
    }
    OpenFile();
    m_file.WriteString(text);
}

void CHtmlWriter::AppendInMemory(std::string_view text) {
    std::string& html = m_strHtml.AsStd();
    const bool grows = html.capacity() > kLargeText && html.capacity() < html.size() + kHeadRoom;
    if (!grows) {
        html += text;
    } else if (LiesIn(text, html)) {
        AppendInMemory(std::string(text));
    } else {
        // std::string at least doubles its capacity, so a series of small appends remains O(n) in total.
        html.reserve(html.capacity() + kStep);
        html += text;
    }
}

void CHtmlWriter::AddText(std::string_view text) {
    AddFormattedText(Clean(text));
}

void CHtmlWriter::AddTag(const char* tag, const char* attributes) {
    CString text("<");
    text += tag;
    if (attributes && *attributes) {
        text += ' ';
        text += attributes;
    }
    AddFormattedText(text += '>');
}

void CHtmlWriter::CloseTag(const char* tag) {
    AddFormattedText("</" + CString(tag) + '>');
}

void CHtmlWriter::OpenFile() {
    if (m_bFileOpen) return;
    constexpr UINT flags = CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite | CFile::typeText;
    CFileException error;
    const BOOL opened = m_bMultiUser ? CMultiUserFile::Open(m_file, m_strFilename, flags, &error)
                                     : m_file.Open(m_strFilename, flags, &error);
    if (!opened) AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    m_bFileOpen = 1;
}

void CHtmlWriter::CloseFile() {
    if (!m_bFileOpen) return;
    m_bFileOpen = 0;
    m_file.Close();
}
