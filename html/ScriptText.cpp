#include "html/ScriptText.h"

#include <algorithm>

namespace qv::html {

CString FillScript(std::string_view script, std::initializer_list<ScriptValue> values) {
    std::string out;
    out.reserve(script.size());
    while (!script.empty()) {
        const auto at = std::find_if(values.begin(), values.end(),
                                     [&](const ScriptValue& value) { return script.starts_with(value.mark); });
        out += at == values.end() ? script.substr(0, 1) : at->value;
        script.remove_prefix(at == values.end() ? 1 : at->mark.size());
    }
    return out;
}

CString ScriptPath(std::string_view path) {
    CString doubled(path);
    doubled.Replace("\\", "\\\\");
    return doubled;
}

}  // namespace qv::html
