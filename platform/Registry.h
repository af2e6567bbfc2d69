#pragma once

/// @file Values with types below keys: the system's registry on Windows, INI files on Linux.
///
/// A key is a path of names with "\" between them. On Linux "Software\COMPANY\APPLICATION\REST" is the section REST of that
/// application's profile, and any other key a section of QvCommon/registry.ini; both are in the user's configuration
/// folder, or in the machine's. Every value is a text there: it comes back with the type Text.

#include <string>
#include <vector>

#include "platform/Status.h"

namespace qv::platform {

enum class RegistryRoot { User, Machine };

enum class RegistryType {
    Text,
    Integer,  ///< the data are decimal digits, at most 64 bits; what is written has at most 32
    Bytes,    ///< on Linux written as hexadecimal digits
    Texts     ///< each ends with a zero byte; only read
};

struct RegistryValue {
    RegistryType type = RegistryType::Text;
    std::string data;
};

struct RegistryKey {
    RegistryRoot root = RegistryRoot::User;
    std::string path;
};

/// Fails with FileNotFound where there is no such value. An empty name is the key's default value.
Status ReadRegistryValue(const RegistryKey& key, const std::string& name, RegistryValue& value);
/// Makes the key when it is missing. What the system cannot hold as it is, such as a text that is not well-formed in the
/// code page, is refused with InvalidFile.
Status WriteRegistryValue(const RegistryKey& key, const std::string& name, const RegistryValue& value);

/// Deletes a value, or a key with all below it. What is not there is deleted already.
Status DeleteRegistryValue(const RegistryKey& key, const std::string& name);
Status DeleteRegistryKey(const RegistryKey& key);

/// The names of the values of a key, or of the keys directly below it; none where the key is missing. Their order is the
/// system's.
Status ListRegistryValues(const RegistryKey& key, std::vector<std::string>& names);
Status ListRegistryKeys(const RegistryKey& key, std::vector<std::string>& names);

}  // namespace qv::platform
