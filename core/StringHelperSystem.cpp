#include <cstring>
#include <optional>
#include <random>

#include "platform/Clipboard.h"
#include "platform/Error.h"
#include "platform/Guid.h"
#include "platform/Hex.h"
#include "platform/Locale.h"
#include "platform/VersionResource.h"
#include "qvcommon/StringHelper.h"

using qv::platform::VersionResource;

namespace {

constexpr std::size_t kCurrencySymbolBytes = 10, kCurrencyBytes = 260, kListSeparatorBytes = 4;
constexpr unsigned kPlainText = 1;

std::optional<std::string> ReadHexPairs(std::string_view text) {
    if (text.size() % 2) return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::optional<char> byte = qv::HexByteAt(text, i);
        if (!byte) return std::nullopt;
        bytes += *byte;
    }
    return bytes;
}

// The bytes that a text is combined with, derived from the salt, the key, and the preceding text.
class Mask {
public:
    Mask(unsigned char salt, std::string_view key) {
        Stir(salt);
        for (char c : key) Stir(static_cast<unsigned char>(c));
    }

    unsigned char Next() const { return static_cast<unsigned char>(m_state >> 24 ^ m_state >> 11); }
    void Stir(unsigned char byte) { m_state = (m_state ^ byte) * 0x2C9277B5 + 0x3C6EF35F; }

private:
    std::uint32_t m_state = 0x5EED1E55;
};

// Reads a little-endian number of the resource.
unsigned long Number(std::string_view bytes, std::size_t position, std::size_t size) {
    unsigned long number = 0;
    while (size--) number = number << 8 | static_cast<unsigned char>(bytes[position + size]);
    return number;
}

unsigned long Translation(const VersionResource& resource) {
    const std::string first = resource.Value("\\VarFileInfo\\Translation");
    return first.size() < 4 ? 0 : Number(first, 0, 2) << 16 | Number(first, 2, 2);
}

void AppendScriptLine(std::string& script, std::string_view line, std::string_view variable, bool escapePercent) {
    const std::size_t start = script.size();
    if (!variable.empty()) script.append(variable).append(" = ").append(variable).append(" + ");
    bool quoted = false;
    for (char c : line) {
        if (c == '\t') {
            script += quoted ? "\" + chr(9) + " : "chr(9) + ";
            quoted = false;
            continue;
        }
        if (!quoted) script += '"';
        quoted = true;
        if (c == '"') script += '"';
        if (c == '%' && escapePercent) script += '\\';
        script += c;
    }
    if (quoted)
        script += '"';
    else if (script.size() > start)
        script.resize(script.size() - std::strlen(" + "));
    script += variable.empty() ? " + chr(10) + " : " + chr(10)\n";
}

}  // namespace

CString CStringHelper::GetLocalCurrency() {
    std::string symbol = qv::platform::CurrencySymbol(kCurrencySymbolBytes);
    return symbol.empty() ? CString("$") : CString(std::move(symbol));
}

CString CStringHelper::InternationalizeCurrency(double amount) {
    return qv::platform::FormatCurrency(amount, kCurrencyBytes);
}

CString CStringHelper::GetLocaleListSeperator() {
    std::string separator = qv::platform::ListSeparator(kListSeparatorBytes);
    return separator.empty() ? CString(",") : CString(std::move(separator));
}

unsigned long CStringHelper::GetLanguageCodepage(std::string_view file) {
    return Translation(VersionResource(std::string(file)));
}

CString CStringHelper::GetVersionInfo(std::string_view file, std::string_view key) {
    const VersionResource resource{std::string(file)};
    CString path;
    path.Format("\\StringFileInfo\\%08lx\\%s", Translation(resource), key);
    return resource.Value(path.AsStd()).c_str();
}

CString CStringHelper::GetVersionString(std::string_view file) {
    return GetVersionInfo(file, "FileVersion");
}

CString CStringHelper::GetFileVersionAsString(std::string_view file) {
    constexpr std::size_t kMost = 8, kLeast = 12;  // positions of the two double words of the file version
    const std::string fixed = VersionResource(std::string(file)).Value("\\");
    CString text;
    if (fixed.size() >= kLeast + 4)
        text.Format("%d.%d.%d.%d", Number(fixed, kMost + 2, 2), Number(fixed, kMost, 2), Number(fixed, kLeast + 2, 2),
                    Number(fixed, kLeast, 2));
    return text;
}

CString CStringHelper::GetErrorMessage(unsigned long error) {
    return qv::platform::ErrorMessage(error);
}

CString CStringHelper::GetLastErrorString() {
    return GetErrorMessage(qv::platform::LastError());
}

CString CStringHelper::GetNewGuid(int braces) {
    const auto guid = qv::platform::NewGuid();
    if (!guid) return {};
    std::string text;
    for (std::size_t i = 0; i < guid->size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        qv::AppendHex(text, (*guid)[i]);
    }
    return braces ? "{" + text + "}" : text;
}

CString CStringHelper::GetClipboard(HWND window, unsigned int format) {
    return qv::platform::ReadClipboard(window, format).value_or("");
}

void CStringHelper::SetClipboard(HWND window, std::string_view text, unsigned int format) {
    qv::platform::WriteClipboard(window, text, format);
}

CString CStringHelper::GetClipboardAsVbScript(HWND window, std::string_view variable, int escapePercent) {
    const qv::platform::WaitCursor cursor;
    const auto text = qv::platform::ReadClipboard(window, kPlainText);
    return text ? TextAsVbScript(*text, variable, escapePercent) : CString();
}

CString CStringHelper::TextAsVbScript(std::string_view text, std::string_view variable, int escapePercent) {
    std::string script;
    for (;;) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        AppendScriptLine(script, text.substr(0, end), variable, escapePercent != 0);
        if (end == text.size()) return script;
        text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
    }
}

CString CStringHelper::SimpleEncrypt(std::string_view text, std::string_view key) {
    const auto salt = static_cast<unsigned char>(std::random_device()());
    std::string coded;
    coded.reserve(2 * text.size() + 2);
    qv::AppendHex(coded, salt);
    Mask mask(salt, key);
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        qv::AppendHex(coded, static_cast<unsigned char>(byte ^ mask.Next()));
        mask.Stir(byte);
    }
    return coded;
}

CString CStringHelper::SimpleDecrypt(std::string_view coded, std::string_view key) {
    std::optional<std::string> bytes = ReadHexPairs(coded);
    if (!bytes || bytes->empty()) return {};
    Mask mask(static_cast<unsigned char>((*bytes)[0]), key);
    for (std::size_t i = 1; i < bytes->size(); ++i) {
        char& c = (*bytes)[i];
        c = static_cast<char>(static_cast<unsigned char>(c) ^ mask.Next());
        mask.Stir(static_cast<unsigned char>(c));
    }
    return bytes->substr(1);
}
