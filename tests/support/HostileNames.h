#pragma once

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "platform/Path.h"
#include "platform/Text.h"

/// What names may hold on Linux: all bytes, no text of any code page, what the library's form uses itself.
inline std::set<std::string> AllNames() {
    std::set<std::string> names = {"\\",
                                   std::string(255, 'n'),
                                   std::string(255, '\\'),
                                   "a\\b",
                                   "d\\e/x\\",
                                   "d/e/x",
                                   "end.",
                                   "end ",
                                   " x",
                                   "...",
                                   "Case/x",
                                   "case/X",
                                   "\r\n",
                                   "%s%n",
                                   "-rf",
                                   "*?/<>|\":",
                                   "&#13;",
                                   "*ROOT",
                                   "x\xCC\x88",
                                   "\xE2\x80\xAE"
                                   "cod.exe",
                                   "\xEF\x81\x9C",
                                   "\xEF\x80\xA5",
                                   "\xEF\x81\\\xEF\x80\xA5\xEF\x81\x9C\x9C"};
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/') names.insert({static_cast<char>(byte), 'x'});
    return names;
}

/// What names may hold on Windows: all that the code page holds, but for what the system keeps to itself.
inline std::set<std::string> NamesOfTheCodePage() {
    std::set<std::string> names = {std::string(255, 'n'),
                                   std::string(90, 'd') + "\\" + std::string(90, 'e') + "\\x",
                                   "d\\e\\x",
                                   " x",
                                   "...x",
                                   "%s%n",
                                   "-rf",
                                   "&#13;",
                                   "x;y",
                                   "~1",
                                   "COM10x",
                                   "a^b&c",
                                   "$(x)",
                                   "'x'",
                                   "%PATH%"};
    for (int byte = ' '; byte < 256; ++byte) {
        const std::string name = std::to_string(byte) + static_cast<char>(byte) + "x";
        // The C runtime lets four bytes through that are no characters of a double-byte code page.
        const bool isNone =
            qv::platform::CurrentCodePage() == qv::platform::CodePage::DoubleByte && (byte == 0xA0 || byte > 0xFC);
        const bool isText = !isNone && qv::platform::FromWide(qv::platform::ToWide(name)) == name;
        if (isText && !std::strchr("\"*/:<>?\\|", byte)) names.insert(name);
    }
    return names;
}

/// Windows cuts paths at 260 characters that do not begin like this.
inline std::filesystem::path WithoutLimit(std::filesystem::path path) {
    return qv::platform::HasDriveLetters() ? std::filesystem::path(R"(\\?\)") += path.make_preferred() : path;
}

/// Each file holds its own name.
inline void MakeFiles(const std::filesystem::path& root, const std::set<std::string>& names) {
    for (const std::string& name : names) {
        const std::filesystem::path path =
            root / (qv::platform::HasDriveLetters() ? std::filesystem::path(qv::platform::ToWide(name))
                                                    : std::filesystem::path(name));
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << name;
    }
}
