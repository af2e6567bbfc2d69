#pragma once

/// @file The version resource of a program file. Linux files have none.

#include <string>
#include <vector>

namespace qv::platform {

class VersionResource {
public:
    /// Reads the file's resource. A file that is missing or has no resource gives an object without values.
    explicit VersionResource(const std::string& file);

    /// Returns the bytes of the value under a path such as "\\VarFileInfo\\Translation" or "\\"; empty if it does not
    /// exist. Texts are in the code page of platform/Text.h, with their terminating zero byte.
    std::string Value(const std::string& path) const;

private:
    std::vector<char> m_block;  // in the system's format
};

}  // namespace qv::platform
