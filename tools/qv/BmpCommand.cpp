#include <charconv>
#include <memory>
#include <optional>

#include "tools/qv/Commands.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"
#include "tools/qv/PictureFiles.h"

namespace qv::tool {
namespace {

class Bitmap : public PictureFile {
public:
    using PictureFile::PictureFile;

    struct Figure {
        const char *label, *field;  ///< in lines, and in JSON
        std::int64_t value;
    };

    std::vector<Figure> Figures() const {
        const DibHeader& header = m_info->header;
        const int bits = GetBitsPerPixel(), width = GetWidth();
        return {{"header size", "headerSize", m_headerSize},
                {"width", "width", width},
                {"height", "height", GetHeight()},
                {"planes", "planes", header.planes},
                {"bits per pixel", "bitsPerPixel", bits},
                {"compression", "compression", header.compression},
                {"image size", "imageSize", header.imageSize},
                {"horizontal pixels per metre", "horizontalPixelsPerMetre", header.horizontalPerMetre},
                {"vertical pixels per metre", "verticalPixelsPerMetre", header.verticalPerMetre},
                {"colours used", "coloursUsed", header.coloursUsed},
                {"colours important", "coloursImportant", header.coloursImportant},
                {"packed row", "packedRow", LastByte(bits, width)},
                {"padded row", "paddedRow", GetBytesPerLine(bits, width)},
                {"pixel bytes", "pixelBytes", static_cast<std::int64_t>(m_bitsSize)},
                {"palette", "palette", GetPalette() ? GetPalette()->GetCount() : 0}};
    }
};

void PrintInfo(const std::string& path, bool json) {
    const Bitmap bitmap(path);
    Lines lines;
    JsonObject object;
    if (json)
        object.Text("format", NameOf(bitmap.Format()));
    else
        lines.Add(std::string("format\t") + NameOf(bitmap.Format()));
    for (const auto& [label, field, value] : bitmap.Figures())
        if (json)
            object.Number(field, value);
        else
            lines.Add(std::string(label) + '\t' + std::to_string(value));
    if (json) lines.Add(object.Line());
    lines.Write();
}

struct Conversion {
    std::string path, out, format, background;
    std::vector<std::string> sizes;
};

std::optional<unsigned> NumberOf(const std::string& word, int base) {
    unsigned number = 0;
    const char* const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, number, base);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return number;
}

std::vector<int> SizesOf(const Conversion& conversion) {
    std::vector<int> sizes;
    for (const std::string& word : conversion.sizes) {
        const std::optional<unsigned> size = NumberOf(word, 10);
        if (!size || *size < 1 || *size > 256) throw WrongUsage("--size: '" + word + "' is not between 1 and 256");
        sizes.push_back(static_cast<int>(*size));
    }
    return sizes;
}

std::optional<DWORD> BackgroundOf(const Conversion& conversion) {
    if (conversion.background.empty()) return std::nullopt;
    const std::optional<unsigned> colour = NumberOf(conversion.background, 16);
    if (!colour || conversion.background.size() != 6)
        throw WrongUsage("--background: '" + conversion.background + "' is not a colour as RRGGBB");
    return static_cast<DWORD>(*colour);
}

void Convert(const Conversion& conversion) {
    const PictureFormat format = FormatFor(conversion.format, conversion.out);
    const std::vector<int> sizes = SizesOf(conversion);
    const std::optional<DWORD> background = BackgroundOf(conversion);
    if (!sizes.empty() && format != PictureFormat::Ico) throw WrongUsage("--size is for icons");
    Bitmap bitmap(conversion.path);
    if (background) CImageHelper::Flatten(bitmap, bitmap, *background);
    WritePicture(conversion.out, format, sizes, bitmap, conversion.path);
}

void AddInfo(Command bmp) {
    Command info =
        bmp.Add("info", "Print the format, the header's fields, the sizes of rows in bytes, and the colours");
    const auto path = std::make_shared<std::string>();
    info.AddPath("FILE", *path, "The bitmap, PNG or icon; - is standard input").Require();
    info.SetNotes("A PNG, or the largest picture of an icon, is described as the bitmap that it converts to.");
    info.AddExample("qv bmp info photo.bmp");
    const auto json = std::make_shared<bool>(false);
    info.AddFlag("-j,--json", *json,
                 "Print one JSON object: format, headerSize, width, height and so on; all but format are numbers");
    info.SetAction([path, json] { PrintInfo(*path, *json); });
}

void AddConvert(Command bmp) {
    Command convert = bmp.Add("convert", "Write a bitmap, PNG or icon as a bitmap, PNG or icon");
    const auto conversion = std::make_shared<Conversion>();
    convert.AddPath("FILE", conversion->path, "The picture; - is standard input").Require();
    convert
        .AddPath("OUT", conversion->out,
                 "The new file; may equal FILE, which is replaced atomically; - is standard output")
        .Require();
    convert.AddOption("--format", conversion->format, "The format to write; by default that of OUT's extension, or bmp")
        .CallValue("FORMAT")
        .OneOf({"bmp", "png", "ico"});
    convert.AddOption("--background", conversion->background, "A background colour for transparent pixels, as RRGGBB")
        .CallValue("COLOUR");
    convert.AddOption("--size", conversion->sizes, "The side of a picture in an icon, in pixels; may be repeated")
        .CallValue("N")
        .TakeOneEach();
    convert.SetNotes(
        "Bitmaps get a header of 40 bytes, or of 108 with alpha, and sizes, masks, colours and rows as the format\n"
        "requires. The largest picture of an icon is used.");
    convert.AddExample("qv bmp convert odd.bmp clean.bmp");
    convert.AddExample("qv bmp convert logo.png logo.ico --size 16 --size 32 --size 256");
    convert.SetAction([conversion] { Convert(*conversion); });
}

}  // namespace

void AddBmp(Command app) {
    Command bmp = app.AddFamily("bmp", "Inspect and convert bitmaps, PNG pictures and icons");
    bmp.AddExample("qv bmp convert photo.bmp photo.png");
    AddInfo(bmp);
    AddConvert(bmp);
}

}  // namespace qv::tool
