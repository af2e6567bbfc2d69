#include "cabinet/Manifest.h"
#include "fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const auto entries = qv::cabinet::ReadManifest(input.Rest());
    CStringArray texts;
    while (!input.Rest().empty())
        if (const std::string_view text = input.Text(); !text.empty()) texts.Add(text);
    const auto again = qv::cabinet::ReadManifest(qv::cabinet::ManifestText(texts));
    Require(again && *again == texts, "what is written is read back");
    if (!entries) return 0;
    for (const CString& entry : *entries) Require(entry.GetLength() <= static_cast<int>(size), "entries are parts");
    return 0;
}
