// Reads arbitrary bytes as a PNG file: it is read or refused with the documented error, and written again with the same
// pixels. Checksums and compression would keep the search from the code after them, so checksums are corrected here,
// and data that is not a stream is compressed into one.

#include <algorithm>

#include "fuzz/FuzzFile.h"
#include "fuzz/FuzzInput.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/ImageHelper.h"
#include "tests/support/PngMaker.h"

namespace {

bool Reads(CFile& file, CDIBitmap& picture) {
    try {
        CImageHelper::ReadPng(file, picture);
        return true;
    } catch (CVorbexException* refused) {
        Require(refused->GetSeverity() == 48 && refused->GetCode() == 0, "the error is the documented one");
        refused->Delete();
        return false;
    }
}

std::string Repaired(std::string_view bytes) {
    constexpr std::size_t head = 8, tail = 4;
    std::string file(bytes.substr(0, std::min<std::size_t>(bytes.size(), 8)));
    for (bytes.remove_prefix(file.size()); bytes.size() >= head;) {
        std::size_t length = 0;
        for (int i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
        length = std::min(length, bytes.size() - head);
        const std::string name(bytes.substr(4, 4)), content(bytes.substr(head, length));
        const bool isStream = name != "IDAT" || content.starts_with('\x78');
        file += qv::test::Chunk(name, isStream ? content : qv::test::StoredStream(content));
        bytes.remove_prefix(std::min(bytes.size(), head + length + tail));
    }
    return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static FuzzFile input("png"), output("png-written");
    const std::string bytes = Repaired({reinterpret_cast<const char*>(data), size});
    CDIBitmap picture, again;
    if (!Reads(input.Holding(bytes.data(), bytes.size()), picture)) return 0;
    int width = 0, height = 0;
    CImageHelper::GetSize(picture, width, height);
    if (std::int64_t{width} * height > 1 << 16) return 0;  // slow, and finds nothing new
    CFile& written = output.Holding("", 0);
    Require(CImageHelper::WritePng(written, picture), "what is read is written");
    written.Seek(0, CFile::begin);
    Require(Reads(written, again), "what is written is read");
    Require(CImageHelper::AreEqual(picture, again), "with the same pixels");
    Require(CImageHelper::Scale(picture, again, 7, 5) && CImageHelper::Scale(picture, again, 9, 3, CImageHelper::box) &&
                CImageHelper::Rotate(picture, again, 33) && CImageHelper::Emboss(picture, again),
            "what is read can be changed");
    return 0;
}
