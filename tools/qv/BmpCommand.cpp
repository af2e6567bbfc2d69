#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/WholeFile.h"

namespace qv::tool {
namespace {

/// What a file is that is no bitmap, as far as its first bytes tell.
std::string WhatIs(const std::string& path) {
    constexpr std::pair<std::string_view, const char*> kKinds[] = {
        {"\x89PNG", "a PNG picture"},     {"\xFF\xD8\xFF", "a JPEG picture"}, {"GIF8", "a GIF picture"},
        {{"II*\0", 4}, "a TIFF picture"}, {{"MM\0*", 4}, "a TIFF picture"},   {"RIFF", "a RIFF file"}};
    std::array<char, 18> start = {};
    CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyNone | CFile::modeNoInherit);
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
    explicit Bitmap(const std::string& path) try {
        CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit);
        m_headerSize = LoadConverted(file);
    } catch (const char*) {
        throw FailedOn(path, WhatIs(path));
    }

    std::string Info() const {
        const DibHeader& header = m_info->header;
        const int bits = GetBitsPerPixel(), width = GetWidth();
        std::string lines;
        const auto add = [&](const char* label, std::int64_t number) {
            (((lines += label) += '\t') += std::to_string(number)) += '\n';
        };
        add("header size", m_headerSize);
        add("width", width);
        add("height", GetHeight());
        add("planes", header.planes);
        add("bits per pixel", bits);
        add("compression", header.compression);
        add("image size", header.imageSize);
        add("horizontal pixels per metre", header.horizontalPerMetre);
        add("vertical pixels per metre", header.verticalPerMetre);
        add("colours used", header.coloursUsed);
        add("colours important", header.coloursImportant);
        add("packed row", LastByte(bits, width));
        add("padded row", GetBytesPerLine(bits, width));
        add("pixel bytes", static_cast<std::int64_t>(m_bitsSize));
        add("palette", GetPalette() ? GetPalette()->GetCount() : 0);
        return lines;
    }

private:
    int m_headerSize = 0;
};

void Convert(const std::string& path, const std::string& out) {
    Bitmap bitmap(path);
    WholeFile file(out);
    if (!bitmap.SaveWhole(file)) throw FailedOn(path, "rows are missing, or no bitmap has this depth");
    file.Commit();
}

}  // namespace

void AddBmp(Command app) {
    Command bmp = app.AddFamily("bmp", "Look into bitmap files, and write them anew");
    bmp.SetFooter("Example: qv bmp info photo.bmp");
    const auto path = std::make_shared<std::string>(), out = std::make_shared<std::string>();

    Command info = bmp.Add("info", "Print the header's fields, the sizes of rows in bytes, and the colours");
    info.AddPath("FILE", *path, "The bitmap").Require();
    info.SetFooter("Example:\n  qv bmp info photo.bmp");
    info.SetAction([path] { AfxWriteStandardOutput(Bitmap(*path).Info()); });

    Command convert =
        bmp.Add("convert",
                "Write a bitmap with a header of 40 bytes, and sizes, masks, colours and rows as the format asks for");
    convert.AddPath("FILE", *path, "The bitmap").Require();
    convert.AddPath("OUT", *out, "The new file, which may be the same; it is replaced only by a whole one").Require();
    convert.SetFooter("Example:\n  qv bmp convert odd.bmp clean.bmp");
    convert.SetAction([path, out] { Convert(*path, *out); });
}

}  // namespace qv::tool
