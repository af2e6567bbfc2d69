#include <utility>

#include "framework/FileErrors.h"
#include "platform/IniFile.h"
#include "platform/IniText.h"
#include "platform/UserFolders.h"
#include "settings/SettingSource.h"

namespace qv {
namespace {

/// A source over a text in memory.
class IniTextSource : public SettingSource {
public:
    explicit IniTextSource(std::string text) : m_text(std::move(text)) {}

    std::vector<std::string> Sections() const override { return platform::IniSections(m_text); }
    std::vector<std::string> Entries(std::string_view section) const override {
        return platform::IniEntries(m_text, section);
    }
    std::optional<std::string> Find(std::string_view section, std::string_view entry) const override {
        return platform::FindIniValue(m_text, section, entry);
    }
    void Set(std::string_view section, std::string_view entry, std::string_view value) override {
        m_text = platform::WithIniValue(m_text, section, entry, value);
    }
    void DeleteEntry(std::string_view section, std::string_view entry) override {
        m_text = platform::WithoutIniValue(m_text, section, entry);
    }
    void DeleteSection(std::string_view section) override { m_text = platform::WithoutIniSection(m_text, section); }
    void Update(const std::function<void(SettingSource&)>& change) override { change(*this); }

    std::string Take() { return std::move(m_text); }

private:
    std::string m_text;
};

class IniFileSource : public SettingSource {
public:
    IniFileSource(std::string path, bool makeFolder) : m_path(std::move(path)), m_makeFolder(makeFolder) {}

    std::string File() const override { return m_path; }
    std::vector<std::string> Sections() const override { return platform::IniSections(Text()); }
    std::vector<std::string> Entries(std::string_view section) const override {
        return platform::IniEntries(Text(), section);
    }
    std::optional<std::string> Find(std::string_view section, std::string_view entry) const override {
        return platform::FindIniValue(Text(), section, entry);
    }
    void Set(std::string_view section, std::string_view entry, std::string_view value) override {
        Update([&](SettingSource& text) { text.Set(section, entry, value); });
    }
    void DeleteEntry(std::string_view section, std::string_view entry) override {
        Update([&](SettingSource& text) { text.DeleteEntry(section, entry); });
    }
    void DeleteSection(std::string_view section) override {
        Update([&](SettingSource& text) { text.DeleteSection(section); });
    }
    void Update(const std::function<void(SettingSource&)>& change) override {
        if (m_makeFolder) ThrowIfFailed(platform::MakeUserFolder(m_path.substr(0, m_path.rfind('\\'))), m_path.c_str());
        const auto changed = [&](std::string text) {
            IniTextSource source(std::move(text));
            change(source);
            return source.Take();
        };
        ThrowIfFailed(platform::ChangeIniFile(m_path, changed), m_path.c_str());
    }

private:
    std::string Text() const {
        std::string text;
        // A file that cannot be read has no values, as the store promises.
        platform::ReadIniFile(m_path, text).IgnoreError();
        return text;
    }

    const std::string m_path;
    const bool m_makeFolder;
};

}  // namespace

std::unique_ptr<SettingSource> OpenIniFile(std::string path, bool makeFolder) {
    return std::make_unique<IniFileSource>(std::move(path), makeFolder);
}

}  // namespace qv
