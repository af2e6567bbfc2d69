#include "framework/CharacterSet.h"
#include "qvcommon/StringHelper.h"

using qv::CharacterSet;
using qv::ForEachCharacter;
using qv::IsLetterOrDigit;
using qv::platform::IsLetter;
using qv::platform::IsSpace;
using qv::platform::ToLower;
using qv::platform::ToUpper;

namespace {

std::string_view Trimmed(std::string_view text) {
    return qv::platform::TrimmedRight(qv::platform::TrimmedLeft(text));
}

std::string WithFirstInUpperCase(std::string_view text) {
    if (text.empty()) return {};
    const std::size_t first = qv::platform::CharacterLength(text, 0, qv::platform::CurrentCodePage());
    return ToUpper(text.substr(0, first)).append(text.substr(first));
}

std::string TitleCaseWord(std::string_view word, int keepCapitals, int keepRest) {
    if (keepCapitals && CStringHelper::IsUpperCase(word)) return std::string(word);
    return WithFirstInUpperCase(keepRest ? std::string(word) : ToLower(word));
}

}  // namespace

CString CStringHelper::MakeSentenceCase(std::string_view text) {
    return WithFirstInUpperCase(ToLower(text));
}

CString CStringHelper::MakeTitleCase(std::string_view text) {
    const CString sentence = MakeSentenceCase(text);
    std::string out;
    out.reserve(sentence.AsStd().size());
    bool afterSpace = false;
    ForEachCharacter(sentence, [&](std::string_view c) {
        const bool raised = afterSpace && IsLetter(c);
        raised ? out += ToUpper(c) : out += c;
        afterSpace = c == " " || (afterSpace && !raised);
    });
    return out;
}

CString CStringHelper::MakeTitleCase(std::string_view text, int keepCapitals, int keepRest,
                                     std::string_view separators) {
    const CharacterSet parting(separators);
    std::string out, word;
    out.reserve(text.size());
    const auto emitWord = [&] {
        out += TitleCaseWord(word, keepCapitals, keepRest);
        word.clear();
    };
    ForEachCharacter(text, [&](std::string_view c) {
        if (IsSpace(c) || parting.Contains(c)) {
            emitWord();
            out += c;
        } else {
            word += c;
        }
    });
    emitWord();
    return out;
}

CString CStringHelper::TrimString(std::string_view text) {
    return Trimmed(text);
}

void CStringHelper::TrimItems(CStringArray& texts) {
    for (CString& text : texts) {
        text.TrimRight();
        text.TrimLeft();
    }
}

void CStringHelper::RemoveBlanks(CStringArray& texts) {
    std::erase_if(texts.AsStd(), [](const CString& text) { return Trimmed(text).empty(); });
}

CString CStringHelper::GetEditFriendlyNewlines(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && text.substr(i + 1, 1) == "\n") ++i;
        if (text[i] == '\r' || text[i] == '\n')
            out += "\r\n";
        else
            out += text[i];
    }
    return out;
}

CString CStringHelper::PrintableNewlines(std::string_view text) {
    CString out(text);
    out.Replace("\r", "\r\n");
    return out;
}

CString CStringHelper::GetIndentedString(std::string_view text, int tabs, int newline) {
    CString out('\t', tabs);
    out += text;
    if (newline) out += '\n';
    return out;
}

int CStringHelper::StripChars(CString& text, std::string_view characters) {
    const CharacterSet stripped(characters);
    std::string out;
    out.reserve(text.AsStd().size());
    int count = 0;
    ForEachCharacter(text, [&](std::string_view c) {
        if (stripped.Contains(c))
            ++count;
        else
            out += c;
    });
    if (count) text = CString(std::move(out));
    return count;
}

CString CStringHelper::ValidateParameter(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    ForEachCharacter(text, [&](std::string_view c) { out += IsLetterOrDigit(c) ? c : "_"; });
    return out;
}

int CStringHelper::GetWordCount(std::string_view text) {
    int count = 0;
    bool inWord = false;
    ForEachCharacter(text, [&](std::string_view c) {
        const bool letter = IsLetterOrDigit(c);
        count += letter && !inWord;
        inWord = letter;
    });
    return count;
}

CString CStringHelper::AddString(std::string_view text, std::string_view addition, std::string_view separator) {
    std::string out(text);
    if (!text.empty() && !addition.empty()) out += separator;
    return out += addition;
}
