#include <utility>

#include "qvcommon/framework/File.h"
#include "settings/SettingSource.h"

namespace qv {
namespace {

/// Refuses zero bytes, at which the registry's and the private profiles' calls would truncate the text.
std::string CheckedText(std::string_view text) {
    if (text.find('\0') != text.npos) AfxThrowInvalidArgException();
    return std::string(text);
}

class SystemProfileSource : public SettingSource {
public:
    explicit SystemProfileSource(platform::ProfilePlace place) : m_place(std::move(place)) {}

    std::vector<std::string> Sections() const override { return platform::ListProfile(m_place, nullptr); }
    std::vector<std::string> Entries(std::string_view section) const override {
        return platform::ListProfile(m_place, std::string(section).c_str());
    }
    std::optional<std::string> Find(std::string_view section, std::string_view entry) const override {
        return platform::ReadProfile(m_place, std::string(section).c_str(), std::string(entry).c_str());
    }
    void Set(std::string_view section, std::string_view entry, std::string_view value) override {
        Check(platform::WriteProfile(m_place, CheckedText(section).c_str(), CheckedText(entry).c_str(),
                                     CheckedText(value).c_str()));
    }
    void DeleteEntry(std::string_view section, std::string_view entry) override {
        Check(platform::WriteProfile(m_place, CheckedText(section).c_str(), CheckedText(entry).c_str(), nullptr));
    }
    void DeleteSection(std::string_view section) override {
        Check(platform::WriteProfile(m_place, CheckedText(section).c_str(), nullptr, nullptr));
    }
    void Update(const std::function<void(SettingSource&)>& change) override { change(*this); }

private:
    void Check(bool kept) const {
        if (!kept) AfxThrowFileException(CFileException::generic, -1, m_place.application.c_str());
    }

    const platform::ProfilePlace m_place;
};

}  // namespace

std::unique_ptr<SettingSource> OpenSystemProfile(platform::ProfilePlace place) {
    return std::make_unique<SystemProfileSource>(std::move(place));
}

}  // namespace qv
