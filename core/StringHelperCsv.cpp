#include <algorithm>
#include <span>

#include "core/ByteScan.h"
#include "qvcommon/StringHelper.h"

namespace {

using Texts = std::vector<CString>;

// What ends an unquoted part of a field, or makes a written field need quotes.
using Marks = qv::ByteSet<',', '"'>;

constexpr std::size_t kFieldsAtOnce = 64;

// The bytes of the fields, a comma after each, without quotes.
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

// Writes a few fields, a comma after each. One look at all of them finds whether any needs quotes.
void AppendFields(std::string& out, std::span<const CString> fields) {
    const std::size_t start = out.size();
    for (const CString& field : fields) (out += field.AsStd()) += ',';
    const std::string_view plain = std::string_view(out).substr(start);
    const auto commas = static_cast<std::size_t>(std::count(plain.begin(), plain.end(), ','));
    if (commas == fields.size() && plain.find('"') == plain.npos) return;
    out.resize(start);
    for (const CString& field : fields) {
        if (Marks::Find(field, 0) < field.AsStd().size())
            AppendQuoted(out, field);
        else
            out += field.AsStd();
        out += ',';
    }
}

// A comma ends a field when the number of quotes before it is even: two quotes inside a quoted part leave that as it is.
std::size_t CountFields(std::string_view text) {
    std::size_t count = 1;
    bool quoted = false;
    for (std::size_t i = Marks::Find(text, 0); i < text.size(); i = Marks::Find(text, i + 1)) {
        if (text[i] == '"')
            quoted = !quoted;
        else
            count += !quoted;
    }
    return count;
}

// Reads the quoted part after the quote at `position` and returns the position after it.
std::size_t ReadQuoted(std::string_view text, std::size_t position, std::string& field) {
    for (std::size_t from = position + 1;;) {
        const std::size_t quote = std::min(text.find('"', from), text.size());
        field.append(text.substr(from, quote - from));
        if (text.substr(quote, 2) != "\"\"") return std::min(quote + 1, text.size());
        field += '"';
        from = quote + 2;
    }
}

// Reads the field that begins at `position` and returns the position of the comma, or of the end.
std::size_t ReadField(std::string_view text, std::size_t position, Texts& fields) {
    std::size_t stop = Marks::Find(text, position);
    std::string& field = fields.emplace_back(text.substr(position, stop - position)).AsStd();
    while (stop < text.size() && text[stop] == '"') {
        const std::size_t from = ReadQuoted(text, stop, field);
        stop = Marks::Find(text, from);
        field.append(text.substr(from, stop - from));
    }
    return stop;
}

void ReadFields(std::string_view text, Texts& fields) {
    fields.reserve(CountFields(text));
    std::size_t position = ReadField(text, 0, fields);
    while (position < text.size()) position = ReadField(text, position + 1, fields);
}

}  // namespace

void CStringHelper::CsvToArray(std::string_view text, CStringArray& fields) {
    CStringArray found;
    if (text.find('"') == text.npos)
        SplitString(text, ",", found, 1);
    else
        ReadFields(text, found.AsStd());
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
