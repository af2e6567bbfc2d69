#include "core/FileExists.h"
#include "core/UrlDecoding.h"
#include "framework/CharacterSet.h"
#include "platform/PercentCode.h"
#include "qvcommon/StringHelper.h"

namespace {

constexpr std::string_view kSafePunctuation = "!'()*-./:_~", kPathPunctuation = "-._~/", kFileProtocol = "file:";

// The replacement of the "%" at this position, and the number of bytes replaced.
struct UnescapeStep {
    char byte;
    std::size_t length;
};

UnescapeStep UnescapeAt(std::string_view text, std::size_t position) {
    if (const auto byte = qv::PercentByteAt(text, position)) return {*byte, 3};
    const auto page = qv::platform::CurrentCodePage();
    const auto after = [&](std::size_t i) {
        return i < text.size() ? i + qv::platform::CharacterLength(text, i, page) : i;
    };
    const std::size_t first = position + 1;
    const bool hasDigit = first < text.size() && qv::IsHexDigit(text[first]);
    return {'?', (hasDigit ? after(first + 1) : after(first)) - position};
}

CString Unescaped(std::string_view text) {
    CString copy(text);
    CStringHelper::Unescape(copy);
    return copy;
}

void AddParameter(std::string_view field, CStringArray& names, CStringArray& values) {
    const std::size_t equals = field.find('=');
    if (equals == field.npos) return;
    names.Add(Unescaped(field.substr(0, equals)));
    values.Add(Unescaped(field.substr(equals + 1)));
}

}  // namespace

int CStringHelper::IsUnsafeUrlChar(char c) {
    return !qv::ascii::IsLetterOrDigit(c) && kSafePunctuation.find(c) == kSafePunctuation.npos;
}

CString CStringHelper::Escape(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 2);
    for (const char c : text) {
        if (!IsUnsafeUrlChar(c)) {
            out += c;
        } else if (c == ' ') {
            out += '+';
        } else {
            qv::AppendPercent(out, c, qv::HexCase::Lower);
        }
    }
    return out;
}

CString CStringHelper::EscapePath(std::string_view path) {
    std::string out;
    out.reserve(path.size() + path.size() / 2);
    for (const char c : path)
        if (qv::ascii::IsLetterOrDigit(c) || kPathPunctuation.find(c) != kPathPunctuation.npos)
            out += c;
        else
            qv::AppendPercent(out, c);
    return out;
}

void CStringHelper::Unescape(CString& text) {
    const std::string_view source = text;
    std::string out;
    out.reserve(source.size());
    for (std::size_t i = 0; i < source.size();) {
        if (source[i] == '%') {
            const UnescapeStep result = UnescapeAt(source, i);
            out += result.byte;
            i += result.length;
        } else {
            out += source[i] == '+' ? ' ' : source[i];
            ++i;
        }
    }
    text = CString(std::move(out));
}

CString CStringHelper::UnEscapeUrl(std::string_view text) {
    return qv::DecodeUrl(text);
}

void CStringHelper::ParseRawHttpParams(std::string_view text, CStringArray& names, CStringArray& values) {
    CStringArray foundNames, foundValues;  // the text may be one of the elements
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('&', from), text.size());
        AddParameter(text.substr(from, end - from), foundNames, foundValues);
        from = end + 1;
    }
    names.Append(foundNames);
    values.Append(foundValues);
}

CString CStringHelper::RemoveFileProtocol(std::string_view text, int unescape, int backslashes) {
    CString path = unescape ? UnEscapeUrl(text) : CString(text);
    if (qv::ascii::EqualsIgnoreCase(path.Left(kFileProtocol.size()), kFileProtocol)) {
        path.Delete(0, static_cast<int>(kFileProtocol.size()));
        StripFromLeft(path, "/");
    }
    if (backslashes) path.Replace('/', '\\');
    const CString name = RemoveAfter(path, "#", 0);
    if (!qv::FileExists(name) && qv::FileExists("\\" + name)) return "\\" + path;
    return path;
}
