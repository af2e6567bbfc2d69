#include "cabinet/CabinetWriter.h"

#include <algorithm>
#include <new>

namespace qv::cabinet {
namespace {

/// Keeps a folder's members within one cabinet's limit, even if others are listed before them.
constexpr std::size_t kMostFilesOfFolder = 60000;

}  // namespace

std::unique_ptr<CabinetWriter> CabinetWriter::Create(IMakerCallbacks& callbacks,
                                                     const QvCabinetDescription& description, QvCabinetError& error,
                                                     unsigned threads) {
    error = {};
    try {
        if (threads == 0) threads = BlockCompressor::ThreadsOfThisMachine();
        std::unique_ptr<CabinetWriter> writer(new CabinetWriter(callbacks, description, error, threads));
        writer->OpenStore();
        return writer;
    } catch (const EngineFailure& failure) {
        error = {failure.error, error.type, 1};
    } catch (const std::bad_alloc&) {
        error = {NumberOf(WriteError::NoMemory), 0, 1};
    }
    return nullptr;
}

CabinetWriter::CabinetWriter(IMakerCallbacks& callbacks, const QvCabinetDescription& description, QvCabinetError& error,
                             unsigned threads)
    : m_callbacks(callbacks),
      m_description(description),
      m_error(error),
      m_store(callbacks),
      m_compressor(callbacks, threads, [this](const CompressedBlock& block) { Store(block); }) {}

CabinetWriter::~CabinetWriter() {
    m_compressor.Abandon();
}

/// Runs an operation; after a failure all further ones fail.
template <class Action>
bool CabinetWriter::Run(Action action) {
    if (m_error.failed) return false;
    try {
        action();
        return true;
    } catch (const EngineFailure& failure) {
        m_error = {failure.error, m_error.type, 1};
    } catch (const std::bad_alloc&) {
        m_error = {NumberOf(WriteError::NoMemory), 0, 1};
    } catch (...) {
        m_error = {NumberOf(WriteError::Aborted), 0, 1};
        throw;
    }
    return false;
}

void CabinetWriter::OpenStore() {
    m_store.Take(m_callbacks.CreateStore());
    if (!m_store) throw EngineFailure{WriteError::TempFile};
}

bool CabinetWriter::AddFile(const CString& source, const CString& name, bool executable, int compression) {
    return Run([&] {
        if (compression != kStored && compression != kMszip) throw EngineFailure{WriteError::UnknownCompression};
        if (name.IsEmpty() || static_cast<std::size_t>(name.GetLength()) >= kLongestName)
            throw EngineFailure{WriteError::CannotCompress};
        OpenedFile file(m_callbacks);
        StoredFile stored;
        file.Take(m_callbacks.GetOpenInfo(source, stored.date, stored.time, stored.attributes));
        if (!file) throw EngineFailure{WriteError::OpenFile};
        stored.attributes &= kFileAttributes | kNameIsUtf8;
        if (executable) stored.attributes |= kExecutable;
        stored.name = name.AsStd();
        const std::int64_t size = m_callbacks.Seek(file.Get(), 0, Origin::End);
        if (size > 0 && m_callbacks.Seek(file.Get(), 0, Origin::Begin) != 0) throw EngineFailure{WriteError::ReadFile};
        MakeRoom(static_cast<std::uint64_t>(std::max<std::int64_t>(size, 0)), static_cast<Compression>(compression));
        ReadInto(file, stored);
        m_pendingEntries += kFileSize + stored.name.size() + 1;
        ++m_pendingFiles;
        m_folder.files.push_back(std::move(stored));
        if (MayStillFit()) return;
        // A file that spans two cabinets ends its folder: readers expect nothing after it in the second one.
        EndFolder();
        WriteCabinets(false, false);
    });
}

/// Starts a new folder if the current one cannot take the file.
void CabinetWriter::MakeRoom(std::uint64_t size, Compression compression) {
    if (size > kLargestFolder) throw EngineFailure{WriteError::CannotCompress};
    const bool full = size > kLargestFolder - m_folder.size || m_folder.files.size() >= kMostFilesOfFolder ||
                      m_folder.size >= m_description.folderThreshold;
    if (full || compression != m_folder.compression) EndFolder();
    if (!m_folder.files.empty()) return;
    m_folder.compression = compression;
    m_folder.offset = m_stored;
    m_compressor.Start(compression);
}

void CabinetWriter::ReadInto(OpenedFile& source, StoredFile& file) {
    file.offset = m_folder.size;
    for (;;) {
        const std::span<unsigned char> room = m_compressor.FreeSpace();
        const std::int64_t count = m_callbacks.Read(source.Get(), room.data(), room.size());
        if (count < 0) throw EngineFailure{WriteError::ReadFile};
        if (count == 0) break;
        if (static_cast<std::uint32_t>(count) > kLargestFolder - m_folder.size)
            throw EngineFailure{WriteError::CannotCompress};
        m_folder.size += static_cast<std::uint32_t>(count);
        m_compressor.Add(static_cast<std::size_t>(count));
        if (static_cast<std::size_t>(count) < room.size()) break;
    }
    file.size = m_folder.size - file.offset;
}

/// Receives the compressor's blocks.
void CabinetWriter::Store(const CompressedBlock& block) {
    if (m_description.failOnIncompressible && m_folder.compression == kMszip && block.size >= block.uncompressed)
        throw EngineFailure{WriteError::CannotCompress};
    const std::size_t header = kDataSize + m_description.dataReserve;
    unsigned char* const record = block.data - header;
    std::fill(record, block.data, static_cast<unsigned char>(0));
    PutDataHeader(record, block.data, block.size, block.uncompressed);
    if (!m_callbacks.Write(m_store.Get(), record, header + block.size)) throw EngineFailure{WriteError::TempFile};
    m_stored += static_cast<std::int64_t>(header + block.size);
    m_folder.blocks.push_back(static_cast<std::uint16_t>(block.size));
    const auto compressed = static_cast<std::uint32_t>(block.size),
               uncompressed = static_cast<std::uint32_t>(block.uncompressed);
    if (m_callbacks.Status(StatusType::File, compressed, uncompressed) == -1) throw EngineFailure{WriteError::Aborted};
}

bool CabinetWriter::FlushFolder() {
    return Run([&] { EndFolder(); });
}

void CabinetWriter::EndFolder() {
    m_compressor.Finish();
    if (!m_folder.files.empty()) m_folders.push_back(std::move(m_folder));
    m_folder = {};
    m_folder.offset = m_stored;
}

bool CabinetWriter::FlushCabinet(bool getNextCabinet) {
    return Run([&] {
        EndFolder();
        WriteCabinets(true, getNextCabinet);
    });
}

}  // namespace qv::cabinet
