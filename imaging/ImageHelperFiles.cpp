#include <algorithm>
#include <cstdint>
#include <new>

#include "framework/WriteInParts.h"
#include "imaging/Icon.h"
#include "imaging/Png.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ImageHelper.h"
#include "qvcommon/SaveFile.h"

using namespace qv::imaging;

namespace {

constexpr UINT kToRead = CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit | CFile::typeBinary;
constexpr UINT kLargestTransfer = 1 << 30;

std::vector<BYTE> RestOf(CFile& file) {
    const std::uint64_t length = file.GetLength(), position = file.GetPosition();
    const std::uint64_t rest = length - std::min(position, length);
    if (rest > PTRDIFF_MAX) throw std::bad_alloc();
    std::vector<BYTE> bytes(static_cast<std::size_t>(rest));
    std::size_t size = 0;
    for (UINT count = 1; count > 0 && size < bytes.size(); size += count)
        count = file.Read(bytes.data() + size,
                          static_cast<UINT>(std::min<std::size_t>(bytes.size() - size, kLargestTransfer)));
    bytes.resize(size);
    return bytes;
}

[[noreturn]] void Throw(const CFile& file, const PictureError& error) {
    constexpr int exclamation = 48;
    const CString& path = file.GetFilePath();
    const CString place = path.IsEmpty() ? CString() : CFileUtils::GetNativePath(path) + ": ";
    ThrowQvException(place + error.what.c_str(), exclamation, 0, 0);
}

void WriteTo(CFile& file, Bytes bytes) {
    qv::WriteInParts({reinterpret_cast<const char*>(bytes.data()), bytes.size()},
                     [&file](const char* data, UINT size) { file.Write(data, size); });
}

template <class Save>
BOOL SaveWholeAs(const char* path, Save save) {
    CSaveFile file(path);
    if (!save(file)) return 0;
    file.Commit();
    return 1;
}

}  // namespace

void CImageHelper::ReadPng(CFile& file, CDIBitmap& picture) {
    const std::vector<BYTE> bytes = RestOf(file);
    try {
        DecodePng(ParsePng(bytes)).MoveTo(picture);
    } catch (const PictureError& error) {
        Throw(file, error);
    }
}

void CImageHelper::ReadPng(const char* path, CDIBitmap& picture) {
    CFile file(path, kToRead);
    ReadPng(file, picture);
}

BOOL CImageHelper::WritePng(CFile& file, const CDIBitmap& picture) {
    const auto rows = PlainRows::Of(picture);
    if (!rows || !IsPictureSize(rows->Info().header.width, rows->Height())) return 0;
    EncodePng(*rows, [&](Bytes piece) { WriteTo(file, piece); });
    return 1;
}

BOOL CImageHelper::WritePng(const char* path, const CDIBitmap& picture) {
    return SaveWholeAs(path, [&](CFile& file) { return WritePng(file, picture); });
}

CImageHelper::Pictures CImageHelper::ReadIcon(CFile& file) {
    const std::vector<BYTE> bytes = RestOf(file);
    Pictures pictures;
    try {
        for (NewDib& dib : DecodeIcon(bytes)) dib.MoveTo(*pictures.emplace_back(std::make_unique<CDIBitmap>()));
    } catch (const PictureError& error) {
        Throw(file, error);
    }
    return pictures;
}

CImageHelper::Pictures CImageHelper::ReadIcon(const char* path) {
    CFile file(path, kToRead);
    return ReadIcon(file);
}

BOOL CImageHelper::WriteIcon(CFile& file, std::span<const CDIBitmap* const> pictures) {
    return EncodeIcon(pictures, [&](Bytes piece) { WriteTo(file, piece); });
}

BOOL CImageHelper::WriteIcon(const char* path, std::span<const CDIBitmap* const> pictures) {
    return SaveWholeAs(path, [&](CFile& file) { return WriteIcon(file, pictures); });
}
