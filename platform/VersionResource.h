#pragma once

/// @file The version resource of a program file. Linux files have none.

#include <string>
#include <vector>

namespace qv::platform {

class VersionResource {
public:
    /// Reads the file's resource. A file that is missing or has none gives an object without values.
    explicit VersionResource(const std::string& file);

    /// The bytes of the value under a path such as "\\VarFileInfo\\Translation" or "\\"; empty when there is none.
    /// Texts are in the code page of platform/Text.h, with their final zero byte.
    std::string Value(const std::string& path) const;

private:
    std::vector<char> m_block;  // as the system keeps it
};

}  // namespace qv::platform
