// Before each system call of a walk in turn, another user replaces a folder by a link. Nothing outside may change, and
// nothing from outside may come in, whichever call it is.

#include "qvcommon/CopyTree.h"
#include "tests/support/FileTests.h"

namespace {

struct Case {
    const char* name;
    const char* victim;  ///< the folder that becomes a link
    void (*walk)(const TempFolder&);
};

void Copy(const TempFolder& folder) {
    CCopyTree().CopyTree(folder / "from", folder / "to");
}

void Delete(const TempFolder& folder) {
    Raised<CFileException>([&] { CFileUtils::DelTree(folder / "from", 1); });
}

/// What must stay as it is: names, contents, modes and times.
std::string Describe(const fs::path& root) {
    std::string described;
    for (const auto& [name, bytes] : ReadTree(root)) {
        const fs::path path = root / name;
        described += name + ' ' + bytes + ' ' + std::to_string(static_cast<int>(fs::status(path).permissions())) + ' ' +
                     std::to_string(fs::last_write_time(path).time_since_epoch().count()) + '\n';
    }
    return described + std::to_string(static_cast<int>(fs::status(root).permissions()));
}

class SwappedFolder : public testing::TestWithParam<Case> {
protected:
    void Prepare(const TempFolder& folder) {
        MakeTree(folder.Native(), {"from/a", "from/sub/deep/x", "from/sub/x", "to/sub/deep/x", "to/sub/x"});
        for (const char* const name : {"outside/x", "outside/deep/x"}) folder.Write(name, "secret");
        for (const char* const name :
             {"outside/x", "outside/deep/x", "outside/deep", "outside", "from/sub/x", "to/sub/x"})
            fs::permissions(folder.Native(name), fs::perms::owner_read | fs::perms::owner_exec);
    }

    /// False when the walk makes fewer calls.
    bool SwapAt(int nth) {
        const TempFolder folder;
        Prepare(folder);
        const std::string before = Describe(folder.Native("outside"));
        int calls = 0;
        {
            const SystemFaults swap([&](const SystemFaults::Call&) {
                std::error_code gone;
                if (++calls == nth) fs::rename(folder.Native(GetParam().victim), folder.Native("moved"), gone);
                if (calls == nth) folder.Link(folder.Native("outside").string(), GetParam().victim);
                return SystemFaults::Fault{};
            });
            GetParam().walk(folder);
        }
        EXPECT_EQ(Describe(folder.Native("outside")), before) << "call " << nth;
        for (const auto& [name, bytes] : ReadTree(folder.Native("to"))) EXPECT_NE(bytes, "secret") << name << nth;
        fs::permissions(folder.Native("outside"), fs::perms::owner_all);
        fs::permissions(folder.Native("outside/deep"), fs::perms::owner_all);
        return calls >= nth;
    }
};

TEST_P(SwappedFolder, WalksStayInsideTree) {
    const TempFolder probe;
    if (!probe.Link(".", "link")) GTEST_SKIP() << "the system lets this user make no links";
    int nth = 1;
    while (SwapAt(nth) && !HasFailure()) ++nth;
    EXPECT_GT(nth, 10);
}

INSTANTIATE_TEST_SUITE_P(Walks, SwappedFolder,
                         testing::Values(Case{"CopyFrom", "from/sub", &Copy}, Case{"CopyTo", "to/sub", &Copy},
                                         Case{"CopyToDeep", "to/sub/deep", &Copy}, Case{"Delete", "from/sub", &Delete},
                                         Case{"DeleteRoot", "from", &Delete}),
                         [](const auto& one) { return one.param.name; });

}  // namespace
