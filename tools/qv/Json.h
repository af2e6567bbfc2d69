#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::tool {

/// One object of JSON (RFC 8259) on one line. Names of fields are plain ASCII.
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
    /// Of seconds since 1970, as "2026-11-22T09:30:00Z". No field without a time.
    JsonObject& Time(const char* name, std::optional<std::int64_t> seconds);
    JsonObject& TimeNow(const char* name);
    /// A text of the process's code page. One that is not has U+FFFD in the place of what is not, and its bytes in
    /// hexadecimal digits in a second field: "nameBytes" beside "name".
    JsonObject& Text(const char* name, std::string_view text);
    JsonObject& Utf8Text(const char* name, std::string_view text);
    /// A path in the library's form, as the system writes it.
    JsonObject& Path(const char* name, std::string_view path);

    std::string Line() const { return m_text + '}'; }

private:
    void Name(std::string_view name);
    bool AddText(std::string_view name, std::string_view utf8);

    std::string m_text = "{";
};

}  // namespace qv::tool
