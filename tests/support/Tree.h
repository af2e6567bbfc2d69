#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

/// The files below a folder with their contents, by their paths from it. Folders end in "/" and links in "@".
inline std::map<std::string, std::string> ReadTree(const std::filesystem::path& root) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> tree;
    if (!fs::exists(root)) return tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        std::string name = entry.path().lexically_relative(root).generic_string();
        std::ostringstream bytes;
        if (entry.is_symlink())
            name += '@';
        else if (entry.is_directory())
            name += '/';
        else if (entry.is_regular_file())
            bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        tree[name] = bytes.str();
    }
    return tree;
}

/// Such a tree as a text: its names, with "=content" where a file does not hold its own path.
inline std::string ShowTree(const std::map<std::string, std::string>& tree) {
    std::string text;
    for (const auto& [name, content] : tree) {
        if (!text.empty()) text += ' ';
        text += name;
        const bool isFile = name.back() != '/' && name.back() != '@';
        if (isFile && content != name) text += '=' + content;
    }
    return text;
}

/// Makes files, each with its own path as content, and folders where a name ends in "/".
inline void MakeTree(const std::filesystem::path& root, std::initializer_list<const char*> names) {
    for (const std::filesystem::path name : names) {
        std::filesystem::create_directories((root / name).parent_path());
        if (name.has_filename()) std::ofstream(root / name, std::ios::binary) << name.generic_string();
    }
}
