#include "tools/qv/Utf8Path.h"

#include <cstdlib>

#include "qvcommon/FileUtils.h"
#include "tools/qv/Command.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

// In what the system makes its names of: bytes, or wide characters.
template <class Text = fs::path::string_type>
Text NativeText(const std::string& argument) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return argument;
    } else {
        Text wide(argument.size(), 0);
        const std::size_t length = std::mbstowcs(wide.data(), argument.c_str(), wide.size());
        if (length == static_cast<std::size_t>(-1)) throw Failed(argument + ": not a text of this code page");
        wide.resize(length);
        return wide;
    }
}

template <class Text>
std::string Narrow(const Text& native) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return native;
    } else {
        std::string text;
        for (const auto c : native) {
            char bytes[16];
            const int length = std::wctomb(bytes, c);
            text.append(length > 0 ? bytes : "?", length > 0 ? static_cast<std::size_t>(length) : 1);
        }
        return text;
    }
}

}  // namespace

CString ArgumentFromPath(const fs::path& path) {
    return CFileUtils::GetLibraryPath(Narrow(path.native()).c_str());
}

fs::path PathFromArgument(const std::string& argument) {
    return NativeText(CFileUtils::GetNativePath(argument.c_str()).AsStd());
}

std::string Utf8FromArgument(const std::string& argument) {
    const auto text = fs::path(NativeText(argument)).u8string();
    return {text.begin(), text.end()};
}

std::string Utf8FromLibrary(const CString& path) {
    const auto text = PathFromArgument(path.AsStd()).generic_u8string();
    return {text.begin(), text.end()};
}

std::string Utf8(const fs::path& path) try {
    const auto text = path.generic_u8string();
    return {text.begin(), text.end()};
} catch (const std::exception&) {
    return "?";
}

}  // namespace qv::tool
