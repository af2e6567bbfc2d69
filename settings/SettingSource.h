#pragma once

/// @file The storage of a ProfileStore's texts.

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

    // The following members raise CFileException*; nothing has changed then.

    virtual void Set(std::string_view section, std::string_view entry, std::string_view value) = 0;
    virtual void DeleteEntry(std::string_view section, std::string_view entry) = 0;
    virtual void DeleteSection(std::string_view section) = 0;
    /// Passes a source to `change` and stores the changes made to it, atomically if the system supports that.
    virtual void Update(const std::function<void(SettingSource& source)>& change) = 0;
};

/// Opens an INI file; with `makeFolder`, its folder is created when first needed.
std::unique_ptr<SettingSource> OpenIniFile(std::string path, bool makeFolder);
/// Opens a profile that the system stores in its own way.
std::unique_ptr<SettingSource> OpenSystemProfile(platform::ProfilePlace place);

}  // namespace qv
