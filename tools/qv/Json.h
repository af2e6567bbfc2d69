#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::tool {

/// One JSON object (RFC 8259) on one line. Field names are plain ASCII.
class JsonObject {
public:
    template <class Integer>
    JsonObject& Number(const char* name, Integer value) {
        Name(name);
        m_text += std::to_string(value);
        return *this;
    }
    JsonObject& Truth(const char* name, bool value);
    JsonObject& Numbers(const char* name, const std::vector<std::int64_t>& values);
    /// Adds seconds since 1970 as "2026-11-22T09:30:00Z". Adds no field for nullopt.
    JsonObject& Time(const char* name, std::optional<std::int64_t> seconds);
    JsonObject& TimeNow(const char* name);
    /// Adds a text of the process's code page. In an invalid text, U+FFFD replaces the invalid bytes, and a second
    /// field has all bytes as hexadecimal digits: "nameBytes" beside "name".
    JsonObject& Text(const char* name, std::string_view text);
    JsonObject& Utf8Text(const char* name, std::string_view text);
    /// Adds a path, given in the library's form, in the system's form.
    JsonObject& Path(const char* name, std::string_view path);

    std::string Line() const { return m_text + '}'; }

private:
    void Name(std::string_view name);
    bool AddText(std::string_view name, std::string_view utf8);

    std::string m_text = "{";
};

}  // namespace qv::tool
