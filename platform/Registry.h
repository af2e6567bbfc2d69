#pragma once

/// @file Typed values of keys: the system's registry on Windows, INI files on Linux.
///
/// A key is a path of names separated by "\". On Linux "Software\COMPANY\APPLICATION\REST" is the section REST of that
/// application's profile, and any other key a section of QvCommon/registry.ini; both are in the user's configuration
/// folder, or in the machine's. Every value is stored as text there, and read with the type Text.

#include <string>
#include <vector>

#include "platform/Status.h"

namespace qv::platform {

enum class RegistryRoot { User, Machine };

enum class RegistryType {
    Text,
    Integer,  ///< decimal digits, at most 64 bits; at most 32 when written
    Bytes,    ///< on Linux stored as hexadecimal digits
    Texts     ///< zero-terminated each; read-only
};

struct RegistryValue {
    RegistryType type = RegistryType::Text;
    std::string data;
};

struct RegistryKey {
    RegistryRoot root = RegistryRoot::User;
    std::string path;
};

/// Fails with FileNotFound if the value does not exist. An empty name is the key's default value.
Status ReadRegistryValue(const RegistryKey& key, const std::string& name, RegistryValue& value);
/// Creates the key if missing. Data that the system cannot store unchanged, such as a text that is not well-formed in
/// the code page, is rejected with InvalidFile.
Status WriteRegistryValue(const RegistryKey& key, const std::string& name, const RegistryValue& value);

/// Deletes a value, or a key with all its subkeys. Succeeds if it does not exist.
Status DeleteRegistryValue(const RegistryKey& key, const std::string& name);
Status DeleteRegistryKey(const RegistryKey& key);

/// Lists the names of the values of a key, or of its direct subkeys; none if the key is missing. The order is the
/// system's.
Status ListRegistryValues(const RegistryKey& key, std::vector<std::string>& names);
Status ListRegistryKeys(const RegistryKey& key, std::vector<std::string>& names);

}  // namespace qv::platform
