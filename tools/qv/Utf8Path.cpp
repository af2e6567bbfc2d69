#include "tools/qv/Utf8Path.h"

#include <cstdlib>

#include "tools/qv/Commands.h"

namespace qv::tool {

namespace fs = std::filesystem;

constexpr bool kWidePaths = std::is_same_v<fs::path::value_type, wchar_t>;

fs::path PathFromArgument(const std::string& argument) {
    if constexpr (!kWidePaths) return argument;
    std::wstring wide(argument.size(), L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), argument.c_str(), wide.size());
    if (length == static_cast<std::size_t>(-1)) throw Failed(argument + ": not a text of this code page");
    wide.resize(length);
    return wide;
}

std::string Utf8(const fs::path& path) try {
    const auto text = path.generic_u8string();
    return {text.begin(), text.end()};
} catch (const std::exception&) {
    return "?";
}

}  // namespace qv::tool
