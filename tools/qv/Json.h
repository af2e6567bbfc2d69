#pragma once

#include <string>
#include <string_view>

#include "qvcommon/framework/FileFind.h"

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
    /// As "2026-11-22T09:30:00Z", in whole seconds.
    JsonObject& Time(const char* name, QvFileTime time);
    /// A text of the process's code page.
    JsonObject& Text(const char* name, std::string_view text);
    /// A path in the library's form, as the system writes it. One that is not text has U+FFFD in the place of what is not,
    /// and its bytes in hexadecimal digits in a second field: "pathBytes" beside "path".
    JsonObject& Path(const char* name, std::string_view path);

    std::string Line() const { return m_text + '}'; }

private:
    void Name(std::string_view name);

    std::string m_text = "{";
};

}  // namespace qv::tool
