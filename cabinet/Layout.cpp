#include "cabinet/Layout.h"

#include <algorithm>

#include "cabinet/Callbacks.h"

namespace qv::cabinet {
namespace {

std::size_t EntrySize(const StoredFile& file) {
    return kFileSize + file.name.size() + 1;
}

class Planner {
public:
    Planner(const std::vector<StoredFolder>& folders, const LayoutSizes& sizes) : m_folders(folders), m_sizes(sizes) {}

    Plan Fill(const SplitPoint& start) {
        m_plan.end = start;
        for (SplitPoint next = start; next.folder < m_folders.size(); next = {next.folder + 1, 0, 0})
            if (!Place(next)) return m_plan;
        m_plan.isLast = true;
        return m_plan;
    }

private:
    struct Need {
        std::size_t files = 0;
        std::uint64_t size = 0;
    };

    bool Fits(const Need& need) const {
        return m_plan.files + need.files <= kMostFiles && m_plan.size + need.size <= m_sizes.room;
    }
    void Take(const Need& need) {
        m_plan.files += need.files;
        m_plan.size += need.size;
    }

    /// Places a folder, or its remaining part. Returns false if the cabinet ends before or inside it.
    bool Place(const SplitPoint& from) {
        const Plan before = {{}, m_plan.files, m_plan.size, {}, false};
        const StoredFolder& folder = m_folders[from.folder];
        FolderPart part{from.folder, from.block, from.block, from.bytes, 0, 0};
        m_nextFile = 0;
        Need need = Continued(folder, from);
        need.size += m_sizes.folder;
        if (folder.blocks.empty()) AddNewFiles(folder, 0, need);
        if (m_plan.parts.size() == 0xFFFC || !Fits(need)) return EndBefore(from, before);
        Take(need);
        for (; part.endBlock < folder.blocks.size(); ++part.endBlock)
            if (!PlaceBlock(folder, from, part)) return EndInside(from, part, before);
        Keep(part, before);
        return true;
    }

    /// The members that are listed again because the folder is continued.
    Need Continued(const StoredFolder& folder, const SplitPoint& from) {
        Need need;
        if (!from.IsInsideFolder()) return need;
        for (; m_nextFile < folder.files.size(); ++m_nextFile) {
            const StoredFile& file = folder.files[m_nextFile];
            if (folder.FirstBlock(file) > from.block) break;
            if (!folder.Touches(file, from.block)) continue;
            ++need.files;
            need.size += EntrySize(file);
        }
        return need;
    }

    void AddNewFiles(const StoredFolder& folder, std::size_t block, Need& need) {
        for (; m_nextFile < folder.files.size(); ++m_nextFile) {
            if (folder.FirstBlock(folder.files[m_nextFile]) > block) break;
            ++need.files;
            need.size += EntrySize(folder.files[m_nextFile]);
        }
    }

    bool PlaceBlock(const StoredFolder& folder, const SplitPoint& from, FolderPart& part) {
        const std::size_t block = part.endBlock, skip = block == from.block ? from.bytes : 0;
        const std::size_t filesBefore = m_nextFile;
        Need need;
        AddNewFiles(folder, block, need);
        need.size += m_sizes.data;
        const std::uint64_t data = folder.blocks[block] - skip;
        if (Fits({need.files, need.size + data})) {
            Take({need.files, need.size + data});
            return true;
        }
        if (!Fits({need.files, need.size + 1})) {
            m_nextFile = filesBefore;
            return false;
        }
        // Only a part of it fits.
        part.lastBytes = skip + static_cast<std::size_t>(m_sizes.room - m_plan.size - need.size);
        Take({need.files, m_sizes.room - m_plan.size});
        return false;
    }

    bool EndInside(const SplitPoint& from, FolderPart& part, const Plan& before) {
        const StoredFolder& folder = m_folders[from.folder];
        if (part.lastBytes == 0) {
            // The next block's header does not fit: move the last byte of the previous block to the next cabinet.
            const std::size_t skip = part.endBlock == from.block + 1 ? from.bytes : 0;
            const bool splits = part.endBlock > from.block && folder.blocks[part.endBlock - 1] > skip + 1;
            if (!splits) return EndBefore(from, before);
            --part.endBlock;
            --m_plan.size;
            part.lastBytes = folder.blocks[part.endBlock] - std::size_t{1};
        }
        m_plan.end = {from.folder, part.endBlock, part.lastBytes};
        ++part.endBlock;
        Keep(part, before);
        return false;
    }

    bool EndBefore(const SplitPoint& from, const Plan& before) {
        if (m_plan.parts.empty()) throw EngineFailure{WriteError::CabinetFile};
        m_plan.files = before.files;
        m_plan.size = before.size;
        m_plan.end = from;
        return false;
    }

    void Keep(FolderPart& part, const Plan& before) {
        part.files = m_plan.files - before.files;
        m_plan.parts.push_back(part);
    }

    const std::vector<StoredFolder>& m_folders;
    const LayoutSizes& m_sizes;
    Plan m_plan;
    std::size_t m_nextFile = 0;  ///< of the current folder, not listed yet
};

}  // namespace

std::size_t StoredFolder::FirstBlock(const StoredFile& file) const {
    return blocks.empty() ? 0 : std::min(file.offset / kBlockSize, blocks.size() - 1);
}

bool StoredFolder::Touches(const StoredFile& file, std::size_t block) const {
    const std::uint64_t start = std::uint64_t{block} * kBlockSize;
    return file.size > 0 && file.offset < start + UncompressedBlock(block) &&
           std::uint64_t{file.offset} + file.size > start;
}

Plan PlanCabinet(const std::vector<StoredFolder>& folders, const SplitPoint& start, const LayoutSizes& sizes) {
    return Planner(folders, sizes).Fill(start);
}

int ListedFolder(const StoredFolder& folder, const FolderPart& part, const StoredFile& file, std::size_t index) {
    const std::size_t first = folder.FirstBlock(file);
    const bool from = part.IsContinued() && folder.Touches(file, part.firstBlock);
    if (part.IsContinued() && first <= part.firstBlock && !from) return -1;
    if (part.Continues() && first >= part.endBlock) return -1;
    const bool to = part.Continues() && folder.Touches(file, part.endBlock - 1);
    if (from) return to ? kPreviousAndNext : kFromPrevious;
    return to ? kToNext : static_cast<int>(index);
}

}  // namespace qv::cabinet
