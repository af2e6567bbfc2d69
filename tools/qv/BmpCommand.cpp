#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include "qvcommon/DIBitmap.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"

namespace qv::tool {
namespace {

/// What a file is that is no bitmap, as far as its first bytes tell.
std::string WhatIs(CFile& file) {
    constexpr std::pair<std::string_view, const char*> kKinds[] = {
        {"\x89PNG", "a PNG picture"},     {"\xFF\xD8\xFF", "a JPEG picture"}, {"GIF8", "a GIF picture"},
        {{"II*\0", 4}, "a TIFF picture"}, {{"MM\0*", 4}, "a TIFF picture"},   {"RIFF", "a RIFF file"}};
    std::array<char, 18> start = {};
    file.Seek(0, CFile::begin);
    const std::string_view read(start.data(), file.Read(start.data(), start.size()));
    for (const auto& [mark, kind] : kKinds)
        if (read.starts_with(mark)) return std::string("not a bitmap but ") + kind;
    if (!read.starts_with("BM")) return "not a bitmap";
    DWORD size = 0;
    std::memcpy(&size, start.data() + 14, sizeof size);
    return "a bitmap with a header of " + std::to_string(size) + " bytes, which is not known";
}

class Bitmap : public CDIBitmap {
public:
    explicit Bitmap(const std::string& path) {
        if (IsStandardStream(path)) {
            MemoryFile file(ReadDocument(path));
            LoadFrom(file, path);
        } else {
            CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit);
            LoadFrom(file, path);
        }
    }

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

private:
    void LoadFrom(CFile& file, const std::string& path) try {
        m_headerSize = LoadConverted(file);
    } catch (const char*) {
        throw FailedOn(path, WhatIs(file));
    }

    int m_headerSize = 0;
};

void PrintInfo(const std::string& path, bool json) {
    Lines lines;
    JsonObject object;
    for (const auto& [label, field, value] : Bitmap(path).Figures())
        if (json)
            object.Number(field, value);
        else
            lines.Add(std::string(label) + '\t' + std::to_string(value));
    if (json) lines.Add(object.Line());
    lines.Write();
}

void Convert(const std::string& path, const std::string& out) {
    Bitmap bitmap(path);
    WriteDocument(out, [&](CFile& file) {
        if (!bitmap.SaveWhole(file)) throw FailedOn(path, "rows are missing, or no bitmap has this depth");
    });
}

}  // namespace

void AddBmp(Command app) {
    Command bmp = app.AddFamily("bmp", "Inspect and convert bitmap files");
    bmp.SetFooter("Example: qv bmp info photo.bmp");
    const auto path = std::make_shared<std::string>(), out = std::make_shared<std::string>();

    Command info = bmp.Add("info", "Print the header's fields, the sizes of rows in bytes, and the colours");
    info.AddPath("FILE", *path, "The bitmap; - is standard input").Require();
    info.SetFooter("Example:\n  qv bmp info photo.bmp");
    const auto json = std::make_shared<bool>(false);
    info.AddFlag("-j,--json", *json,
                 "Print one JSON object: headerSize, width, height and so on, a number for each line");
    info.SetAction([path, json] { PrintInfo(*path, *json); });

    Command convert =
        bmp.Add("convert",
                "Write a bitmap with a header of 40 bytes, and sizes, masks, colours and rows as the format asks for");
    convert.AddPath("FILE", *path, "The bitmap; - is standard input").Require();
    convert.AddPath("OUT", *out, "The new file; may equal FILE, which is replaced atomically; - is standard output")
        .Require();
    convert.SetFooter("Example:\n  qv bmp convert odd.bmp clean.bmp");
    convert.SetAction([path, out] { Convert(*path, *out); });
}

}  // namespace qv::tool
