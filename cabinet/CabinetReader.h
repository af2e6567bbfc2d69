#pragma once

/// @file The decompression context: reads cabinets.

#include <functional>
#include <memory>
#include <vector>

#include "cabinet/FolderStream.h"

namespace qv::cabinet {

/// What the members of a folder must cover of its data.
enum class Coverage {
    Any,
    WithoutGaps,
    All,  ///< without gaps, up to the end, which takes reading all of it
};

/// Cabinets beyond these limits are refused as corrupt before the member that exceeds them is extracted. Each counts
/// over the whole set: its further cabinets are opened early if the expansion depends on their sizes.
struct ReadLimits {
    std::uint64_t members;
    std::uint64_t totalSize;  ///< of the members, as stated by the cabinet
    std::uint64_t expansion;  ///< the maximum ratio of totalSize to the size of the cabinets
    Coverage coverage = Coverage::Any;
};

/// What an operation was working on when it failed; empty if nothing in particular.
struct FailurePlace {
    CString cabinet;      ///< its path
    CString member;       ///< in the process's code page
    unsigned method = 0;  ///< of the member's folder, if it is unknown
    int others = 0;       ///< other members skipped for the same reason
};

/// Extracts members from cabinets. Memory is bounded by about 4 MB, including the LZX window, plus the cabinet's list
/// of folders (8 bytes each). O(n) in the data: members and folders that overlap or are out of order are corrupt.
/// The error record must outlive the object.
class CabinetReader {
public:
    CabinetReader(IReaderCallbacks& callbacks, QvCabinetError& error);
    ~CabinetReader();
    CabinetReader(const CabinetReader&) = delete;
    CabinetReader& operator=(const CabinetReader&) = delete;

    /// Whether the file is a cabinet, judged by its header; if so, sets `info`. Otherwise the error record says why.
    bool IsCabinet(const CString& path, QvCabinetInfo& info);

    /// Reports every member of a cabinet, and of the cabinets that continue it, to the callbacks, and copies those that
    /// they open. Folders with an unknown compression are skipped and reported as a failure at the end; the handles
    /// that the callbacks opened for their members are closed without the notification.
    /// @param folder  the folder of the cabinet, with the final separator.
    /// @return false after a failure or a stop; complete members stay, and the handle of the last one was closed
    /// without the notification.
    bool Copy(const CString& name, const CString& folder, const ReadLimits& limits);

    /// Goes back to the first cabinet of the set and sets `name` to its name.
    bool FindFirst(CString& name, const CString& folder);
    /// Reads the first member of a cabinet; also false if it has none.
    bool ReadFirstMember(const CString& path, MemberEntry& member);

    /// Where the last operation failed.
    const FailurePlace& Where() const { return m_where; }

private:
    struct Place {
        CString name, folder;
        std::uint16_t number, setId;
        bool hasNext;
    };

    void CopySet(const CString& name, const CString& folder);
    void CopyCabinet(OpenCabinet& cabinet);
    void CopyMember(const MemberEntry& member, const OpenCabinet& cabinet);
    bool TryExtract(const MemberEntry& member, const OpenCabinet& cabinet, Handle target);
    void Extract(const MemberEntry& member, Handle target);
    void SelectFolder(unsigned folder);
    void FinishFolder();
    void GoBack(CString& name, const CString& folder);
    template <class Action>
    bool Run(Action action);
    void ReportPartial(const MemberEntry& member, const OpenCabinet& cabinet);
    unsigned FolderOf(const MemberEntry& member, const OpenCabinet& cabinet) const;
    void CheckOrder(const MemberEntry& member, unsigned folder);
    void Count(const MemberEntry& member);
    bool ExpandsTooFar() const;
    std::unique_ptr<OpenCabinet> OpenPlace(Serial serial);
    std::unique_ptr<OpenCabinet> OpenPath(const CString& path,
                                          OpenCabinet::Depth depth = OpenCabinet::Depth::Everything);
    std::unique_ptr<OpenCabinet> FindNext(const OpenCabinet& cabinet);
    void Enter(const OpenCabinet& cabinet, const CString& name, const CString& folder);
    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification);

    IReaderCallbacks& m_callbacks;
    QvCabinetError& m_error;
    ReadLimits m_limits{};
    std::vector<Place> m_places;  ///< the opened cabinets, by serial
    Serial m_present = 0;         ///< the cabinet whose members are being processed
    std::unique_ptr<FolderStream> m_stream;
    bool m_goesOn = false;          ///< the current cabinet's first folder began in an earlier one
    int m_lastFolder = -1;          ///< of a member in the current cabinet
    std::uint64_t m_lastEnd = 0;    ///< of the members of that folder
    std::uint32_t m_streamEnd = 0;  ///< of the members in the stream's folder
    std::uint64_t m_members = 0, m_totalSize = 0, m_cabinetSizes = 0;
    FailurePlace m_where;
    FailurePlace m_skipped;  ///< the first skipped member
    int m_skippedMembers = 0;
    bool m_skipsFolder = false;  ///< the stream's folder is skipped
};

}  // namespace qv::cabinet
