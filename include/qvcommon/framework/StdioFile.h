#pragma once

/// @file Buffered text files.

#include <string>

#include "qvcommon/framework/File.h"

/// A buffered file, opened with CFile::typeText (the default) or typeBinary.
///
/// In text mode on Windows a line feed is written as carriage return and line feed; on Linux it is written unchanged.
/// Reading text ends a line at a line feed on every system and drops a carriage return before it. No byte ends the text
/// early. Positions and lengths count the bytes of the file. Reading and writing may alternate freely.
///
/// After a failed write, flush or seek the buffered bytes are lost: how many of them reached the file is unspecified.
class QVCOMMON_API CStdioFile : public CFile {
    DECLARE_DYNAMIC(CStdioFile)

public:
    CStdioFile();
    /// Opens the file. @throws CFileException*
    CStdioFile(const char* fileName, UINT openFlags);
    /// Writes buffered data and closes; a failure is not reported: call Close to detect it.
    ~CStdioFile() override;

    /// Takes ownership of a system handle that was opened elsewhere, such as a pipe's end, in text mode. A file that is
    /// open is closed as by Abort.
    void Attach(Handle handle);
    BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr) override;
    /// Writes buffered data, then closes. @throws CFileException*; the file is closed then too.
    void Close() override;
    /// Closes and discards buffered data.
    void Abort() override;
    /// As CFile::CloseAndRemove; buffered data is discarded.
    bool CloseAndRemove();
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    void Flush() override;
    std::uint64_t Seek(std::int64_t offset, UINT from) override;
    std::uint64_t GetPosition() const override;
    std::uint64_t GetLength() const override;
    void SetLength(std::uint64_t length) override;

    /// Reads the next line without its end, of any length. Returns false, and an empty line, at the end of the file. In
    /// binary mode a carriage return before the line feed is kept. @throws CFileException*
    virtual bool ReadString(CString& line);
    /// Writes the text in the file's mode. A failure may be detected only by a later write, Flush or Close.
    /// @throws CFileException*
    virtual void WriteString(std::string_view text);

private:
    enum class Buffered : unsigned char { Nothing, Reading, Writing };

    std::size_t Unread() const { return m_use == Buffered::Reading ? m_buffer.size() - m_next : 0; }
    bool Fill();
    bool SkipsCarriageReturn();
    void StartReading();
    void StartWriting();
    void Settle();
    void WriteBuffer();
    void WriteThrough(std::string_view bytes);
    void Put(std::string_view bytes);
    void Drop();

    std::string m_buffer;    ///< read and not yet consumed from m_next on, or not yet written to the system
    std::size_t m_next = 0;  ///< read position in the buffer
    Buffered m_use = Buffered::Nothing;
    bool m_text = true;
};
