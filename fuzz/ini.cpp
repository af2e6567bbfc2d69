// A value that was set is read back, other entries keep theirs, and no text is read beyond its end.
#include "fuzz/FuzzInput.h"
#include "platform/IniText.h"

using qv::platform::FindIniValue;
using qv::platform::WithIniValue;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::string_view section = input.Text(), entry = input.Text(), value = input.Text(), text = input.Rest();
    const std::string changed = WithIniValue(text, section, entry, value);
    Require(FindIniValue(changed, section, entry) == value, "the value comes back");
    Require(WithIniValue(changed, section, entry, value) == changed, "setting it again changes nothing");
    // longer than any name in the input
    const std::string other(size + 1, 'x');
    Require(FindIniValue(WithIniValue(changed, other, entry, ""), section, entry) == value, "other sections stay");
    Require(FindIniValue(WithIniValue(changed, section, other, ""), section, entry) == value, "other entries stay");
    return 0;
}
