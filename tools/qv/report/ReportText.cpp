#include "tools/qv/report/ReportText.h"

#include <algorithm>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/DateTime.h"

namespace qv::tool {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

bool IsAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void AppendHex(std::string& out, char c) {
    const auto byte = static_cast<unsigned char>(c);
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

// Escapes the ASCII parts only: the library would read the rest in the process's code page.
template <class Escape>
CString EscapeAscii(std::string_view text, Escape escape) {
    CString out;
    for (auto from = text.begin(); from != text.end();) {
        const auto end = std::find_if_not(from, text.end(), IsAscii);
        const auto next = std::find_if(end, text.end(), IsAscii);
        out += escape(std::string_view(from, end));
        out += std::string_view(end, next);
        from = next;
    }
    return out;
}

}  // namespace

CString EscapedText(std::string_view text) {
    return EscapeAscii(text, CHtmlWriter::Clean);
}

CString EscapedValue(std::string_view text) {
    return EscapeAscii(text, CHtmlWriter::CleanFloatOver);
}

CString ScriptText(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i, 3);
        if (rest == "\xE2\x80\xA8" || rest == "\xE2\x80\xA9") {  // line ends to a script
            out += rest[2] == '\xA8' ? "\\u2028" : "\\u2029";
            i += 2;
        } else if (IsAlphanumeric(text[i]) || !IsAscii(text[i]) ||
                   std::string_view(" -._").find(text[i]) != rest.npos) {
            out += text[i];
        } else {
            out += "\\x";
            AppendHex(out, text[i]);
        }
    }
    return out;
}

std::string EncodeAddress(std::string_view path) {
    std::string out;
    for (const char c : path)
        if (IsAlphanumeric(c) || std::string_view("-._~/").find(c) != path.npos)
            out += c;
        else
            out += '%', AppendHex(out, c);
    return out;
}

CString Number(std::uintmax_t value) {
    CString text;
    text.Format("%d", value);
    for (int i = text.GetLength() - 3; i > 0; i -= 3) text.Insert(i, "\xE2\x80\xAF");  // narrow no-break space
    return text;
}

CString Counted(std::uintmax_t count, const char* one) {
    return Number(count) + " " + one + (count == 1 ? "" : "s");
}

CString Size(std::uintmax_t bytes) {
    if (bytes < 1024) return Counted(bytes, "byte");
    CDoubleArray thresholds;
    CStringArray units;
    double threshold = 1;
    for (const char* const unit : {"KB", "MB", "GB", "TB", "PB"}) thresholds.Add(threshold *= 1024), units.Add(unit);
    return CStringHelper::RebaseUnits(static_cast<double>(bytes), "bytes", thresholds, units, 1, -2);
}

CString Checksum(unsigned long checksum) {
    CString text;
    text.Format("%08X", checksum);
    return text;
}

CString Date(std::time_t time) {
    return COleDateTime(time).Format("%Y-%m-%d %H:%M");
}

}  // namespace qv::tool
