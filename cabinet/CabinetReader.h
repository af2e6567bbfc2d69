#pragma once

/// @file The decompression context: reads cabinets.

#include <functional>
#include <memory>
#include <vector>

#include "cabinet/FolderStream.h"

namespace qv::cabinet {

/// What is refused as corrupt before any of it is given out. Each counts over the whole set.
struct ReadLimits {
    std::uint64_t members;
    std::uint64_t totalSize;  ///< of the members, as the cabinet states them
    std::uint64_t expansion;  ///< totalSize may be so many times the size of the cabinets
    bool tiles = false;       ///< the members of a folder have to be all of its data, without gaps
};

/// What an operation was about when it failed; empty where it was about nothing in particular.
struct FailurePlace {
    CString cabinet;      ///< its path
    CString member;       ///< in the process's code page
    unsigned method = 0;  ///< of the member's folder, for one that is not known
    int others = 0;       ///< members that were passed over for the same reason
};

/// Copies members out of cabinets. Memory is bounded by about 4 MB, the window of LZX included, and what the cabinet's own
/// lists of folders take (8 bytes each); the time is linear in the data: members and folders that overlap, and those out
/// of order, are corrupt.
/// The error record has to outlive the object.
class CabinetReader {
public:
    CabinetReader(IReaderCallbacks& callbacks, QvCabinetError& error);
    ~CabinetReader();
    CabinetReader(const CabinetReader&) = delete;
    CabinetReader& operator=(const CabinetReader&) = delete;

    /// Whether the file is a cabinet, by its head; then `info` is filled in. The error record tells why not.
    bool IsCabinet(const CString& path, QvCabinetInfo& info);

    /// Tells the callbacks of every member of a cabinet, and of the cabinets that continue it, and copies those that they
    /// open. @param folder  where the cabinet lies, with the final separator.
    /// Folders of a compression that is not known are passed over, and are a failure at the end. The handles of their
    /// members, which the callbacks have opened, are closed without the notification.
    /// @return false when that failed or was stopped; members that are complete stay, the handle of the last one was closed
    /// without the notification.
    bool Copy(const CString& name, const CString& folder, const ReadLimits& limits);

    /// Goes from a cabinet back to the one with which its set begins, and changes the name to that one's.
    bool FindFirst(CString& name, const CString& folder);
    /// Gives the first member of a cabinet; false where there is none, too.
    bool ReadFirstMember(const CString& path, MemberEntry& member);

    /// Where the last operation failed.
    const FailurePlace& Where() const { return m_where; }

private:
    struct Place {
        CString name, folder;
        std::uint16_t number, setId;
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
    void TellPartial(const MemberEntry& member, const OpenCabinet& cabinet);
    unsigned FolderOf(const MemberEntry& member, const OpenCabinet& cabinet) const;
    void CheckOrder(const MemberEntry& member, unsigned folder);
    void Count(const MemberEntry& member);
    std::unique_ptr<OpenCabinet> OpenPlace(Serial serial);
    std::unique_ptr<OpenCabinet> OpenPath(const CString& path,
                                          OpenCabinet::Depth depth = OpenCabinet::Depth::Everything);
    std::unique_ptr<OpenCabinet> FindNext(const OpenCabinet& cabinet);
    void Enter(const OpenCabinet& cabinet, const CString& name, const CString& folder);
    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification);

    IReaderCallbacks& m_callbacks;
    QvCabinetError& m_error;
    ReadLimits m_limits{};
    std::vector<Place> m_places;  ///< the cabinets that were opened, by their serials
    Serial m_present = 0;         ///< the cabinet whose members are gone through
    std::unique_ptr<FolderStream> m_stream;
    bool m_goesOn = false;          ///< the present cabinet's first folder began in one before
    int m_lastFolder = -1;          ///< of a member in the present cabinet
    std::uint64_t m_lastEnd = 0;    ///< of the members of that folder
    std::uint32_t m_streamEnd = 0;  ///< of the members of the folder that the stream is on
    std::uint64_t m_members = 0, m_totalSize = 0, m_cabinetSizes = 0;
    FailurePlace m_where;
    FailurePlace m_skipped;  ///< the first member that was passed over
    int m_skippedMembers = 0;
    bool m_skipsFolder = false;  ///< the one that the stream is on
};

}  // namespace qv::cabinet
