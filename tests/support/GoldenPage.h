#pragma once

#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include "html/DropdownRestoreScript.h"
#include "html/DropdownScript.h"
#include "html/PopupScript.h"
#include "html/QuickMenuScript.h"
#include "html/RollupRestoreScript.h"
#include "html/RollupScript.h"

/// Returns a page of tests/data/html/ in full: "{{Name key=value ...}}" is the script of that name, in which
/// "{key}" is the value.
inline std::string GoldenPage(std::string_view page) {
    const std::map<std::string_view, std::string_view> scripts{
        {"Dropdown", qv::html::kDropdownScript}, {"DropdownRestore", qv::html::kDropdownRestoreScript},
        {"Popup", qv::html::kPopupScript},       {"QuickMenu", qv::html::kQuickMenuScript},
        {"Rollup", qv::html::kRollupScript},     {"RollupRestore", qv::html::kRollupRestoreScript}};
    std::string whole(page);
    for (std::size_t at = 0; (at = whole.find("{{", at)) != whole.npos;) {
        const std::size_t end = whole.find("}}", at);
        std::istringstream words(whole.substr(at + 2, end - at - 2));
        std::string name, value;
        words >> name;
        std::string script(scripts.at(name));
        while (words >> value) {
            const std::size_t equals = value.find('=');
            const std::string mark = '{' + value.substr(0, equals) + '}';
            value.erase(0, equals + 1);
            for (std::size_t i = 0; (i = script.find(mark, i)) != script.npos; i += value.size())
                script.replace(i, mark.size(), value);
        }
        whole.replace(at, end + 2 - at, script);
        at += script.size();
    }
    return whole;
}
