#pragma once

/// @file Where a ProfileStore has its texts from.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Profile.h"

namespace qv {

class SettingSource {
public:
    virtual ~SettingSource() = default;

    virtual std::string File() const { return {}; }
    virtual std::vector<std::string> Sections() const = 0;
    virtual std::vector<std::string> Entries(std::string_view section) const = 0;
    virtual std::optional<std::string> Find(std::string_view section, std::string_view entry) const = 0;

    // The rest raises CFileException* and has changed nothing then.

    virtual void Set(std::string_view section, std::string_view entry, std::string_view value) = 0;
    virtual void DeleteEntry(std::string_view section, std::string_view entry) = 0;
    virtual void DeleteSection(std::string_view section) = 0;
    /// Passes a source to `change` and keeps what it sets and deletes there, all at once where the system can.
    virtual void Update(const std::function<void(SettingSource& source)>& change) = 0;
};

/// An INI file; the folder is made on demand when that is wanted.
std::unique_ptr<SettingSource> OpenIniFile(std::string path, bool makeFolder);
/// A profile that the system keeps in a way of its own.
std::unique_ptr<SettingSource> OpenSystemProfile(platform::ProfilePlace place);

}  // namespace qv
