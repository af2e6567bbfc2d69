#include "tools/qv/Json.h"

#include <chrono>
#include <cstdio>

#include "tools/qv/Utf8Path.h"
#include "tools/qv/Utf8Text.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Appends without quotes. Returns false if the text is not UTF-8.
bool AppendString(std::string& out, std::string_view utf8) {
    bool isText = true;
    while (!utf8.empty()) {
        const std::size_t length = FirstCharacter(utf8).length;
        const char c = utf8[0];
        char escape[8];
        if (!length) {
            out += kReplacement;
            isText = false;
        } else if (c == '"' || c == '\\') {
            (out += '\\') += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
            out += escape;
        } else {
            out += utf8.substr(0, length);
        }
        utf8.remove_prefix(length ? length : 1);
    }
    return isText;
}

std::string HexOf(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits;
    }
    return text;
}

}  // namespace

void JsonObject::Name(std::string_view name) {
    if (m_text.size() > 1) m_text += ',';
    m_text.append("\"").append(name).append("\":");
}

JsonObject& JsonObject::Truth(const char* name, bool value) {
    Name(name);
    m_text += value ? "true" : "false";
    return *this;
}

JsonObject& JsonObject::Numbers(const char* name, const std::vector<std::int64_t>& values) {
    Name(name);
    m_text += '[';
    for (const std::int64_t value : values) m_text += (m_text.back() == '[' ? "" : ",") + std::to_string(value);
    m_text += ']';
    return *this;
}

JsonObject& JsonObject::Time(const char* name, std::optional<std::int64_t> time) {
    using namespace std::chrono;
    if (!time) return *this;
    const sys_seconds at{seconds(*time)};
    const sys_days day = floor<days>(at);
    const year_month_day date(day);
    const hh_mm_ss clock(at - day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    AddText(name, text);
    return *this;
}

JsonObject& JsonObject::TimeNow(const char* name) {
    using namespace std::chrono;
    return Time(name, duration_cast<seconds>(system_clock::now().time_since_epoch()).count());
}

// Returns false if the text is not UTF-8.
bool JsonObject::AddText(std::string_view name, std::string_view utf8) {
    Name(name);
    m_text += '"';
    const bool isText = AppendString(m_text, utf8);
    m_text += '"';
    return isText;
}

JsonObject& JsonObject::Text(const char* name, std::string_view text) {
    if (!AddText(name, Utf8FromArgument(std::string(text)))) AddText(std::string(name) + "Bytes", HexOf(text));
    return *this;
}

JsonObject& JsonObject::Utf8Text(const char* name, std::string_view text) {
    AddText(name, text);
    return *this;
}

JsonObject& JsonObject::Path(const char* name, std::string_view path) {
    return Text(name, Native(path));
}

}  // namespace qv::tool
