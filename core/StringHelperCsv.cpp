#include <algorithm>
#include <span>

#include "core/ByteScan.h"
#include "core/TextSink.h"
#include "qvcommon/StringHelper.h"

namespace {

using Texts = std::vector<CString>;

// The bytes that end an unquoted part of a field, or require a written field to be quoted.
using Marks = qv::ByteSet<',', '"'>;

constexpr std::size_t kFieldsAtOnce = 64;

// Returns the size of the fields, each followed by a comma, without quotes.
std::size_t WrittenSize(const Texts& fields) {
    std::size_t size = fields.size();
    for (const CString& field : fields) size += field.AsStd().size();
    return size;
}

void AppendQuoted(std::string& out, std::string_view field) {
    out += '"';
    for (char c : field) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

// Writes a few fields, each followed by a comma. One scan of all of them finds whether any needs quotes.
void AppendFields(std::string& out, std::span<const CString> fields) {
    const std::size_t start = out.size();
    qv::TextSink sink(out);
    char* at = sink.Begin();
    for (const CString& field : fields) at = sink.Append(sink.Append(at, field), ',');
    sink.Flush(at);
    if (qv::CountBytes(Marks(), std::string_view(out).substr(start)) == fields.size()) return;
    out.resize(start);
    for (const CString& field : fields) {
        if (qv::FindByte(Marks(), field) < field.AsStd().size())
            AppendQuoted(out, field);
        else
            out += field.AsStd();
        out += ',';
    }
}

// A comma ends a field if the number of preceding quotes is even: two quotes inside a quoted part do not change the
// parity.
std::size_t CountFields(std::string_view text) {
    std::size_t count = 1;
    bool quoted = false;
    qv::ForEachByte(Marks(), text, [&](std::size_t position) {
        if (text[position] == '"')
            quoted = !quoted;
        else
            count += !quoted;
    });
    return count;
}

// Processes the marks of a text in order, and creates fields from the parts between them.
class FieldReader {
public:
    FieldReader(std::string_view text, Texts& fields) : m_text(text), m_fields(fields) {}

    void Read() {
        qv::ForEachByte(Marks(), m_text, [this](std::size_t position) {
            if (position < m_from) return;  // the second of two quotes
            if (m_text[position] == '"')
                TakeQuote(position);
            else if (!m_quoted)
                EndField(position);
        });
        EndField(m_text.size());
    }

private:
    void TakeQuote(std::size_t position) {
        if (m_quoted && m_text.substr(position, 2) == "\"\"") {
            Keep(position + 1);
        } else {
            Keep(position);
            m_quoted = !m_quoted;
        }
    }

    void EndField(std::size_t end) {
        Keep(end);
        if (!m_begun) m_fields.emplace_back();
        m_begun = false;
    }

    // Appends the pending bytes up to `end` to the field, and skips the byte at `end`.
    void Keep(std::size_t end) {
        const std::string_view part = m_text.substr(m_from, end - m_from);
        m_from = end + 1;
        if (m_begun) {
            m_fields.back().append(part);
        } else if (!part.empty()) {
            m_fields.emplace_back(part);
            m_begun = true;
        }
    }

    std::string_view m_text;
    Texts& m_fields;
    std::size_t m_from = 0;
    bool m_quoted = false, m_begun = false;
};

}  // namespace

void CStringHelper::CsvToArray(std::string_view text, CStringArray& fields) {
    CStringArray found;
    if (text.find('"') == text.npos) {
        SplitString(text, ",", found, 1);
    } else {
        found.AsStd().reserve(CountFields(text));
        FieldReader(text, found.AsStd()).Read();
    }
    fields.AsStd() = std::move(found.AsStd());
}

CStringArray CStringHelper::CsvToArray(std::string_view text) {
    CStringArray fields;
    CsvToArray(text, fields);
    return fields;
}

CString CStringHelper::ArrayToCsv(const CStringArray& fields) {
    const Texts& texts = fields.AsStd();
    std::string text;
    text.reserve(WrittenSize(texts));
    for (std::size_t i = 0; i < texts.size(); i += kFieldsAtOnce)
        AppendFields(text, std::span(texts).subspan(i, std::min(kFieldsAtOnce, texts.size() - i)));
    if (!texts.empty()) text.pop_back();
    return text;
}
