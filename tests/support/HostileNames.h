#pragma once

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "platform/Path.h"
#include "platform/Text.h"

/// Names on Linux: all bytes, texts of no code page, and what the library uses in its own form of them.
inline std::set<std::string> AllNames() {
    std::set<std::string> names = {"\\",           "a\\b",         "d\\e/x\\",
                                   "d/e/x",        "end.",         "end ",
                                   " x",           "...",          "Case/x",
                                   "case/X",       "\r\n",         "%s%n",
                                   "-rf",          "*?/<>|\":",    "&#13;",
                                   "*ROOT",        "x\xCC\x88",    "\u202Ecod.exe",
                                   "\xEF\x81\x9C", "\xEF\x80\xA5", "\xEF\x81\\\xEF\x80\xA5\xEF\x81\x9C\x9C"};
    names.insert({std::string(255, 'n'), std::string(255, '\\')});
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/') names.insert({static_cast<char>(byte), 'x'});
    return names;
}

/// Names on Windows: all that the code page holds except what the system reserves.
inline std::set<std::string> NamesOfTheCodePage() {
    std::set<std::string> names = {"d\\e\\x", " x",     "...x",  "%s%n", "-rf", "&#13;", "x;y",
                                   "~1",      "COM10x", "a^b&c", "$(x)", "'x'", "%PATH%"};
    names.insert({std::string(255, 'n'), std::string(90, 'd') + "\\" + std::string(90, 'e') + "\\x"});
    for (int byte = ' '; byte < 256; ++byte) {
        const std::string name = std::to_string(byte) + static_cast<char>(byte) + "x";
        // The C runtime passes four bytes that are no characters of a double-byte code page.
        const bool isNone =
            qv::platform::CurrentCodePage() == qv::platform::CodePage::DoubleByte && (byte == 0xA0 || byte > 0xFC);
        const bool isText = !isNone && qv::platform::FromWide(qv::platform::ToWide(name)) == name;
        if (isText && !std::strchr("\"*/:<>?\\|", byte)) names.insert(name);
    }
    return names;
}

/// Windows limits other paths to 260 characters.
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
