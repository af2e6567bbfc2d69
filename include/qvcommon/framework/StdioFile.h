#pragma once

/// @file Buffered files of lines.

#include <string>

#include "qvcommon/framework/File.h"

/// A file with a buffer of its own, opened with CFile::typeText (the default) or typeBinary.
///
/// In text mode on Windows a line feed is written as carriage return and line feed; on Linux it is written as it is.
/// Reading text ends a line at a line feed on every system and drops a carriage return before it. No byte ends the text
/// early. Positions and lengths count the bytes of the file. Reading and writing may alternate freely.
///
/// After a failed write, flush or seek the bytes that were still in the buffer are gone: how many of them reached the file
/// is not known.
class QVCOMMON_API CStdioFile : public CFile {
    DECLARE_DYNAMIC(CStdioFile)

public:
    CStdioFile();
    /// Opens at once. @throws CFileException*
    CStdioFile(const char* fileName, UINT openFlags);
    /// Writes what is buffered and closes; a failure is not reported: call Close to learn of it.
    ~CStdioFile() override;

    /// Takes over a system handle that was opened elsewhere, as a pipe's end, in text mode. The file open before is
    /// closed as by Abort.
    void Attach(Handle handle);
    BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr) override;
    /// Writes what is buffered, then closes. @throws CFileException*; the file is closed then too.
    void Close() override;
    /// Closes and drops what is buffered.
    void Abort() override;
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    void Flush() override;
    std::uint64_t Seek(std::int64_t offset, UINT from) override;
    std::uint64_t GetPosition() const override;
    std::uint64_t GetLength() const override;
    void SetLength(std::uint64_t length) override;

    /// The next line without its end, however long. False, and an empty line, at the end of the file. In binary mode a
    /// carriage return before the line feed stays. @throws CFileException*
    virtual bool ReadString(CString& line);
    /// Writes the text in the file's mode. A failure may show only at a later write, Flush or Close.
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

    std::string m_buffer;    ///< read and not yet taken from m_next on, or written and not yet handed to the system
    std::size_t m_next = 0;  ///< of reading
    Buffered m_use = Buffered::Nothing;
    bool m_text = true;
};
