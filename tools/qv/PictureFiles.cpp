#include "tools/qv/PictureFiles.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "qvcommon/Exceptions.h"
#include "tools/qv/Command.h"
#include "tools/qv/Documents.h"

namespace qv::tool {
namespace {

constexpr std::string_view kPngMark = "\x89PNG";
constexpr std::string_view kIconMark = {"\0\0\1\0", 4};

using Start = std::array<char, 18>;

std::string_view ReadStart(CFile& file, Start& start) {
    const std::string_view read(start.data(), file.Read(start.data(), start.size()));
    file.Seek(0, CFile::begin);
    return read;
}

/// Describes the type of a file that is not a supported picture, judged by its first bytes.
std::string WhatIs(CFile& file) {
    constexpr std::pair<std::string_view, const char*> kKinds[] = {{"\xFF\xD8\xFF", "a JPEG picture"},
                                                                   {"GIF8", "a GIF picture"},
                                                                   {{"II*\0", 4}, "a TIFF picture"},
                                                                   {{"MM\0*", 4}, "a TIFF picture"},
                                                                   {"RIFF", "a RIFF file"}};
    Start start = {};
    file.Seek(0, CFile::begin);
    const std::string_view read = ReadStart(file, start);
    for (const auto& [mark, kind] : kKinds)
        if (read.starts_with(mark)) return std::string("not a bitmap, PNG or icon but ") + kind;
    if (!read.starts_with("BM")) return "not a bitmap, PNG or icon";
    DWORD size = 0;
    std::memcpy(&size, start.data() + 14, sizeof size);
    return "a bitmap with a header of " + std::to_string(size) + " bytes, which is not known";
}

bool HasExtension(const std::string& path, std::string_view extension) {
    const std::size_t length = extension.size();
    return path.size() > length &&
           std::equal(extension.begin(), extension.end(), path.end() - static_cast<std::ptrdiff_t>(length),
                      [](char wanted, char c) { return wanted == (c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c); });
}

/// Scales to the largest size that fits into a square.
void Fit(const CDIBitmap& picture, int side, CDIBitmap& fitted) {
    int width = 0, height = 0;
    CImageHelper::GetSize(picture, width, height);
    const int longer = std::max({width, height, 1});
    const auto scaled = [&](int length) {
        return std::max<int>(1, static_cast<int>((std::int64_t{length} * side + longer / 2) / longer));
    };
    CImageHelper::Scale(picture, fitted, scaled(width), scaled(height));
}

BOOL WriteAsIcon(CFile& file, const std::vector<int>& sizes, const CDIBitmap& picture) {
    CImageHelper::Pictures fitted;
    std::vector<const CDIBitmap*> all;
    for (const int side : sizes) {
        Fit(picture, side, *fitted.emplace_back(std::make_unique<CDIBitmap>()));
        all.push_back(fitted.back().get());
    }
    if (sizes.empty()) all.push_back(&picture);
    return CImageHelper::WriteIcon(file, all);
}

}  // namespace

const char* NameOf(PictureFormat format) {
    constexpr const char* names[] = {"BMP", "PNG", "ICO"};
    return names[static_cast<int>(format)];
}

PictureFormat FormatFor(const std::string& word, const std::string& path) {
    const auto is = [&](const char* extension) {
        return word.empty() ? HasExtension(path, extension) : word == extension + 1;
    };
    return is(".png") ? PictureFormat::Png : is(".ico") ? PictureFormat::Ico : PictureFormat::Bmp;
}

PictureFile::PictureFile(const std::string& path) {
    if (IsStandardStream(path)) {
        MemoryFile file(ReadDocument(path));
        LoadFrom(file, path);
    } else {
        CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit);
        LoadFrom(file, path);
    }
}

void PictureFile::LoadFrom(CFile& file, const std::string& path) try {
    Start start = {};
    const std::string_view read = ReadStart(file, start);
    if (read.starts_with(kPngMark)) {
        m_format = PictureFormat::Png;
        CImageHelper::ReadPng(file, *this);
    } else if (read.starts_with(kIconMark)) {
        m_format = PictureFormat::Ico;
        LoadLargest(file);
    } else {
        m_headerSize = LoadConverted(file);
    }
} catch (const char*) {
    throw FailedOn(path, WhatIs(file));
} catch (CVorbexException* refused) {
    const std::string text = refused->GetText().AsStd();
    refused->Delete();
    throw IsStandardStream(path) ? FailedOn(path, text) : CommandError(text);  // an exception that names the file
}

void PictureFile::LoadLargest(CFile& file) {
    const CImageHelper::Pictures pictures = CImageHelper::ReadIcon(file);
    const auto sizeOf = [](const std::unique_ptr<CDIBitmap>& picture) {
        std::pair size(0, 0);
        CImageHelper::GetSize(*picture, size.first, size.second);
        return size;
    };
    const auto largest = std::ranges::max_element(pictures, {}, [&](const std::unique_ptr<CDIBitmap>& picture) {
        const auto [width, height] = sizeOf(picture);
        return std::int64_t{width} * height;
    });
    const auto [width, height] = sizeOf(*largest);
    CImageHelper::Crop(**largest, *this, 0, 0, width, height);
}

void WritePicture(const std::string& path, PictureFormat format, const std::vector<int>& iconSizes, CDIBitmap& picture,
                  const std::string& source) {
    int width = 0, height = 0;
    CImageHelper::GetSize(picture, width, height);
    if (format == PictureFormat::Ico && iconSizes.empty() && std::max(width, height) > 256)
        throw FailedOn(source, "pictures of icons have at most 256 by 256 pixels: use --size");
    WriteDocument(path, [&](CFile& file) {
        const BOOL written = format == PictureFormat::Png   ? CImageHelper::WritePng(file, picture)
                             : format == PictureFormat::Ico ? WriteAsIcon(file, iconSizes, picture)
                                                            : picture.SaveWhole(file);
        if (!written) throw FailedOn(source, "rows are missing, or no bitmap has this depth");
    });
}

}  // namespace qv::tool
