#include "tools/qv/Utf8Path.h"

#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/Utf8.h"
#include "tools/qv/Command.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

// In the system's own form of names: bytes, or wide characters.
template <class Text = fs::path::string_type>
Text NativeText(const std::string& argument) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return argument;
    } else {
        const std::string utf8 = QvToUtf8(argument).AsStd();
        if (QvFromUtf8(utf8).AsStd() != argument) throw CommandError(argument + ": not a text of this code page");
        return fs::path(std::u8string(utf8.begin(), utf8.end())).native();
    }
}

template <class Text>
std::string Narrow(const Text& native) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return native;
    } else {
        const auto utf8 = fs::path(native).u8string();
        return QvFromUtf8(std::string(utf8.begin(), utf8.end())).AsStd();
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
    std::string utf8 = QvToUtf8(argument).AsStd();
    if (QvFromUtf8(utf8).AsStd() == argument) return utf8;
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
