#include <gtest/gtest.h>

#include <iostream>

#include "qvcommon/framework/File.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr UINT kAccesses[] = {CFile::modeRead, CFile::modeWrite, CFile::modeReadWrite};
constexpr UINT kShares[] = {CFile::shareExclusive, CFile::shareDenyWrite, CFile::shareDenyRead, CFile::shareDenyNone};

/// Opens the file as each line of its input says, keeps it open until the next line, and answers with 1 or 0.
QV_CHILD(HoldAsAsked) {
    CFile file;
    for (std::string flags; std::getline(std::cin, flags);)
        std::cout << file.Open(arguments.at(0).c_str(), static_cast<UINT>(std::stoul(flags))) << std::endl;
    return 0;
}

class Holder {
public:
    explicit Holder(const CString& path) { StartChild(m_child, "HoldAsAsked", {path}); }

    bool Hold(UINT flags) {
        m_child.WriteInput(std::to_string(flags) + "\n");
        return LineFrom(m_child) == "1";
    }

    void Kill() {
        m_child.Kill();
        m_child.Wait();
    }

private:
    CProcess m_child;
};

/// What the published rule says: each side's access must be in what the other side shares.
bool MayBothBeOpen(UINT first, UINT second) {
    constexpr UINT kAccess[] = {1, 2, 3}, kShare[] = {0, 0, 1, 2, 3};  // 1: reading, 2: writing
    const auto access = [&](UINT flags) { return kAccess[flags & 3]; };
    const auto shared = [&](UINT flags) { return kShare[(flags & 0x70) / 16]; };
    return !(access(first) & ~shared(second)) && !(access(second) & ~shared(first));
}

/// Everything of a file that an open might change.
auto StateOf(const TempFolder& folder, const std::string& name) {
    CFileStatus status;
    const bool exists = CFile::GetStatus(folder / name, status);
    return std::tuple(exists, status.m_size, status.m_ctime, status.m_attribute,
                      std::filesystem::last_write_time(folder.Native(name)));
}

TEST(ShareModes, EnforcedBetweenProcesses) {
    const TempFolder folder;
    folder.Write("shared", "content");
    Holder holder(folder / "shared");
    int refused = 0;
    for (const UINT access : kAccesses)
        for (const UINT share : kShares) {
            ASSERT_TRUE(holder.Hold(access | share));
            const auto before = StateOf(folder, "shared");
            for (const UINT otherAccess : kAccesses)
                for (const UINT otherShare : kShares) {
                    const UINT held = access | share, asked = otherAccess | otherShare;
                    CFile file;
                    CFileException error;
                    const bool opened = file.Open(folder / "shared", asked, &error);
                    EXPECT_EQ(opened, MayBothBeOpen(held, asked)) << std::hex << held << " " << asked;
                    if (opened) continue;
                    ++refused;
                    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
                    EXPECT_FALSE(file.Open(folder / "shared", asked | CFile::modeCreate));
                }
            EXPECT_EQ(StateOf(folder, "shared"), before);
        }
    EXPECT_EQ(refused, 144 - 25);
    EXPECT_EQ(folder.Read("shared"), "content");
}

TEST(ShareModes, EnforcedWithinProcess) {
    const TempFolder folder;
    const UINT create = CFile::modeCreate | CFile::modeWrite;
    CFile first(folder / "new", create | CFile::shareDenyRead), second;
    EXPECT_FALSE(second.Open(folder / "new", CFile::modeRead | CFile::shareDenyNone));
    EXPECT_FALSE(second.Open(folder / "new", create | CFile::shareCompat));
    EXPECT_TRUE(second.Open(folder / "new", CFile::modeWrite | CFile::shareDenyNone));
    first.Write("12", 2);
    second.Write("3", 1);
    first.Close();
    second.Close();
    EXPECT_EQ(folder.Read("new"), "32");
    // The compatibility mode is the exclusive one.
    EXPECT_TRUE(first.Open(folder / "new", CFile::modeRead));
    EXPECT_FALSE(second.Open(folder / "new", CFile::modeRead | CFile::shareDenyNone));
}

TEST(ShareModes, ReleasedWhenHolderIsKilled) {
    const TempFolder folder;
    folder.Write("file", "x");
    Holder holder(folder / "file");
    ASSERT_TRUE(holder.Hold(CFile::modeReadWrite | CFile::shareExclusive));
    CFile file;
    EXPECT_FALSE(file.Open(folder / "file", CFile::modeRead | CFile::shareDenyNone));
    holder.Kill();
    EXPECT_TRUE(file.Open(folder / "file", CFile::modeReadWrite | CFile::shareExclusive));
}

/// Creates, writes, and looks whether what it wrote is still alone in the file.
QV_CHILD(CreateAgainAndAgain) {
    int torn = 0, made = 0;
    std::cout << "ready" << std::endl;
    std::cin.get();
    for (int i = 0; i < 300; ++i) {
        CFile file;
        if (!file.Open(arguments.at(0).c_str(), CFile::modeCreate | CFile::modeReadWrite | CFile::shareExclusive))
            continue;
        ++made;
        if (file.GetLength() != 0) ++torn;
        file.Write("mine", 4);
        if (file.GetLength() != 4) ++torn;
        if (i % 2) file.CloseAndRemove();
    }
    std::cout << torn << " " << (made > 0) << std::endl;
    return 0;
}

TEST(ShareModes, AppliedAtomicallyOnCreation) {
    const TempFolder folder;
    CProcess children[3];
    for (CProcess& child : children) {
        StartChild(child, "CreateAgainAndAgain", {folder / "contended"});
        EXPECT_EQ(LineFrom(child), "ready");
    }
    for (CProcess& child : children) child.WriteInput("\n");
    for (CProcess& child : children) EXPECT_EQ(LineFrom(child), "0 1");
}

}  // namespace
