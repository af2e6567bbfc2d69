#include "fuzz/FuzzInput.h"
#include "qvcommon/XmlHelper.h"
#include "tools/qv/ChartData.h"

namespace {

constexpr const char* kKinds[] = {"bar", "stacked", "pie", "area", "stacked-area", "scatter"};
constexpr std::size_t kMostBytes = 4 << 20;  // of a picture of these sizes

qv::tool::ChartOptions OptionsOf(std::uint8_t kind, std::uint8_t flags) {
    qv::tool::ChartOptions options;
    options.kind = kKinds[kind % std::size(kKinds)];
    options.width = flags & 1 ? 720 : 160;
    options.height = flags & 2 ? 400 : 120;
    options.dates = flags & 4;
    options.logarithmic = (flags & 8) && !options.kind.starts_with("stacked");
    options.logarithmicX = flags & 16;
    return options;
}

}  // namespace

// The first byte selects the kind of chart, the second has flags; the title and the values follow.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    qv::tool::ChartOptions options = OptionsOf(data[0], data[1]);
    FuzzInput input(data + 2, size - 2);
    options.title = input.Text();
    CString svg;
    try {
        svg = qv::tool::ChartOf(input.Rest(), options);
    } catch (const qv::tool::CommandError&) {
        return 0;
    }
    Require(svg.size() < kMostBytes, "a picture has a bounded size");
    Require(CXmlHelper::LoadXml(CXmlHelper::CreateDocument(), svg), "a chart is well-formed XML");
    return 0;
}
