#pragma once

#include <gtest/gtest.h>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/framework/File.h"
#include "tests/support/TempFolder.h"

namespace qv::test {

/// Makes the members public that derived classes see.
class Bitmap : public CDIBitmap {
public:
    using CDIBitmap::GetBitsPerPixel;
    using CDIBitmap::GetBytesPerLine;
    using CDIBitmap::GetColorCount;
    using CDIBitmap::GetHeight;
    using CDIBitmap::GetPalEntries;
    using CDIBitmap::GetWidth;
    using CDIBitmap::LastByte;
    using CDIBitmap::m_bits;
    using CDIBitmap::m_bitsSize;
    using CDIBitmap::m_info;
    using CDIBitmap::m_padded;

    std::string Bits() const { return {reinterpret_cast<const char*>(m_bits.get()), m_bitsSize}; }
};

/// A bitmap, and a file to load it from.
class DIBitmapTest : public testing::Test {
protected:
    BOOL Load(const std::string& bytes) { return bitmap.Load(FileOf(bytes)); }
    CFile& FileOf(const std::string& bytes) {
        m_file.SetLength(0);
        m_file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
        m_file.Seek(0, CFile::begin);
        return m_file;
    }
    /// The text that loading raises.
    template <class Load>
    std::string Refusal(Load load) {
        try {
            load();
        } catch (const char* text) {
            return text;
        }
        return "";
    }

    TempFolder m_folder;
    CFile m_file{m_folder / "open.bmp", CFile::modeCreate | CFile::modeReadWrite};
    Bitmap bitmap;
};

}  // namespace qv::test
