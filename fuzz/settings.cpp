// In any settings file, every listed name is found, typed values are read back as set, and other lines are unchanged by
// setting and deleting.
#include <algorithm>

#include "fuzz/FuzzInput.h"
#include "platform/Ascii.h"
#include "platform/IniText.h"
#include "settings/ValueText.h"

namespace {

using namespace qv::platform;

void ReadAsEveryType(std::string_view text) {
    if (const auto number = qv::ReadIntegerText(text))
        Require(qv::ReadIntegerText(std::to_string(*number)) == number, "integers come back");
    if (const auto number = qv::ReadDoubleText(text); number && *number == *number)
        Require(qv::ReadDoubleText(qv::DoubleText(*number)) == number, "doubles come back");
    if (const auto date = qv::ReadDateText(text))
        Require(qv::ReadDateText(qv::DateText(*date)).has_value(), "dates come back");
    if (const auto bytes = qv::ReadBytesText(text))
        Require(qv::ReadBytesText(qv::BytesText(*bytes)) == bytes, "bytes come back");
    const CStringArray list = qv::ReadListText(text);
    Require(qv::ReadListText(qv::ListText(list)) == list, "lists come back");
}

/// Requires that at most four lines were added.
void RequireOneLineMore(std::string_view before, std::string_view after) {
    const auto lines = [](std::string_view text) { return std::count(text.begin(), text.end(), '\n'); };
    Require(lines(after) - lines(before) <= 4, "no other lines are added");
}

void Walk(const std::string& text) {
    std::string left = text;
    for (const std::string& section : IniSections(text)) {
        for (const std::string& entry : IniEntries(text, section)) {
            const auto value = FindIniValue(text, section, entry);
            Require(value.has_value(), "an entry that is listed is found");
            ReadAsEveryType(*value);
        }
        left = WithoutIniSection(left, section);
    }
    Require(IniSections(left).empty(), "sections that are listed can be deleted");
    Require(IniSections(WithoutIniSections(text, "")).empty(), "all sections begin with nothing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Each section is searched in the whole text.
    if (size > 4096) return 0;
    FuzzInput input(data, size);
    const std::string section(input.Text()), entry(input.Text()), value(input.Text()), text(input.Rest());
    Walk(text);
    const std::string changed = WithIniValue(text, section, entry, value);
    RequireOneLineMore(text, changed);
    const auto sections = IniSections(changed);
    Require(std::any_of(sections.begin(), sections.end(),
                        [&](const std::string& name) { return qv::ascii::EqualsIgnoreCase(name, section); }),
            "a section that was made is listed");
    Require(!FindIniValue(WithoutIniValue(changed, section, entry), section, entry), "a deleted entry is gone");
    Walk(changed);
    return 0;
}
