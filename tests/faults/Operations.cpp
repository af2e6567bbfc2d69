#include "tests/faults/Operations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "platform/FileCopy.h"
#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/CopyTree.h"
#include "qvcommon/DIBitmap.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/SaveFile.h"
#include "qvcommon/UserMessages.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"
#include "tests/support/Tree.h"

namespace {

using qv::platform::CallKind;
using qv::platform::SystemCallInfo;

std::function<void(const Place&)> Files(std::initializer_list<const char*> names) {
    return [names = std::vector(names)](const Place& place) {
        for (const char* const name : names) MakeTree(place.native, {name});
    };
}

std::function<bool(const Tree&)> Is(Tree expected) {
    return [expected = std::move(expected)](const Tree& tree) { return tree == expected; };
}

bool Holds(const Tree& tree, const std::string& name, std::initializer_list<const char*> contents) {
    const auto found = tree.find(name);
    return found != tree.end() && std::find(contents.begin(), contents.end(), found->second) != contents.end();
}
std::function<bool(const Tree&)> Keeps(const char* name, const char* old, const char* replacement) {
    return [=](const Tree& tree) { return Holds(tree, name, {old, replacement}); };
}

/// Runs the action; true when it raised an exception. One of a file must name a file of the place, or a temporary one.
template <class Action>
bool Raises(const Place& place, Action action) {
    try {
        action();
        return false;
    } catch (CFileException* error) {
        const CString& name = error->m_strFileName;
        EXPECT_TRUE(name.Find(place.path) == 0 || name.Find(qv::platform::TempDirectory().c_str()) == 0)
            << name.AsStd();
        error->Delete();
    } catch (CException* error) {
        error->Delete();
    }
    return true;
}

struct CountedErrors : ICopyProgress {
    int errors = 0;
    int OnError(DWORD, const char*) override { return ++errors; }
};

bool CopyReports(const Place& place) {
    CountedErrors progress;
    CCopyTree copy;
    copy.SetProgressMonitor(&progress);
    copy.CopyTree(place.path + "from", place.path + "to");
    return progress.errors > 0;
}

bool LockReports(const Place& place) {
    CLockFile lock;
    lock.SetSourceFile(place.path + "document");
    const bool locked = lock.Lock(1);
    lock.Unlock();
    return !locked;
}

void PrepareHardLinks(const Place& place) {
    MakeTree(place.native, {"x"});
    std::filesystem::create_hard_link(place.native / "x", place.native / "y");
}

bool SaveInPlaceReports(const Place& place) {
    return Raises(place, [&] {
        CSaveFile file(place.path + "x");
        file.Write("text", 4);
        file.CommitInPlace();
    });
}

bool SettingsReport(const Place& place) {
    return Raises(place, [&] {
        ProfileStore store(place.path + "a.ini");
        store.Update([&] {
            store.SetString("s", "e", "new");
            store.DeleteEntry("s", "f");
        });
    });
}

void PrepareSettings(const Place& place) {
    ProfileStore store(place.path + "a.ini");
    store.SetString("s", "e", "old");
    store.SetString("s", "f", "");
}

std::function<bool(const Tree&)> SettingsAre(std::initializer_list<const char*> versions) {
    return [versions = std::vector(versions)](const Tree& tree) {
        const auto file = tree.find("a.ini");
        return file != tree.end() && std::find(versions.begin(), versions.end(), file->second) != versions.end();
    };
}

bool PackReports(const Place& place) {
    return Raises(place, [&] { CMakeCab::DirectoryToCab(place.path + "in", place.path + "a.cab", 1); });
}

bool UnpackReports(const Place& place) {
    return Raises(place, [&] { CReadCab::CabToDirectory(place.path + "out", place.path + "a.cab"); });
}

/// An archive of "in", with "old" in place of the texts that unpacking brings.
void PrepareArchive(const Place& place) {
    MakeTree(place.native, {"in/a", "in/b/c"});
    CMakeCab::DirectoryToCab(place.path + "in", place.path + "a.cab", 1);
    std::filesystem::remove_all(place.native / "in");
    MakeTree(place.native, {"out/a"});
}

/// A whole archive, by the size in its header.
bool IsArchive(const std::string& bytes) {
    std::uint32_t size = 0;
    if (bytes.size() >= 12) std::memcpy(&size, &bytes[8], sizeof size);
    return bytes.starts_with("MSCF") && size == bytes.size();
}

/// Sends a text to a listener of this thread. What arrives is the whole text, at most once, and is not lost in silence.
bool MessageReports(const Place&) {
    struct Listener : CUserMessageListener {
        int texts = 0;
        void OnUserMessage(const CString& text) override {
            EXPECT_EQ(text, "a text");
            ++texts;
        }
    } listener;
    const CString name(("QvSweep" + std::to_string(qv::platform::CurrentProcessId())).c_str());
    if (!listener.Create(name, 0)) return true;
    const bool sent = CUserMessageListener::SendUserMessage(name, 0, "a text") != 0;
    EXPECT_LE(listener.texts, 1);
    return !sent || listener.texts == 0;
}

bool PageReports(const Place& place) {
    return Raises(place, [&] {
        CHtmlWriter page;
        page.SetFilename(place.path + "page.html");
        page.AddText("text");
        page.CommitFile();
    });
}

// The descriptors of folders have nothing to lose at their close.
bool MayDropRemoval(const SystemCallInfo& call) {
    return call.kind == CallKind::Status || call.kind == CallKind::Remove || call.kind == CallKind::Close;
}

std::vector<Operation> MakeOperations() {
    std::vector<Operation> operations = {
        {.name = "WriteFile",
         .prepare = Files({}),
         .run =
             [](const Place& p) {
                 return Raises(p, [&] { CFileUtils::WriteFile(p.path + "new\\x", CString("text"), 1, 1); });
             },
         .done = Is({{"new/", ""}, {"new/x", "text"}})},
        {.name = "WriteFile over",
         .prepare = Files({"x"}),
         .run =
             [](const Place& p) {
                 return Raises(p, [&] { CFileUtils::WriteFile(p.path + "x", CString("text"), 0, 0); });
             },
         .done = Is({{"x", "text"}})},
        {.name = "SaveFile over",
         .prepare = Files({"x"}),
         .run = [](const Place& p) { return Raises(p, [&] { CFileUtils::SaveFile(p.path + "x", CString("text")); }); },
         .done = Is({{"x", "text"}}),
         .kept = Keeps("x", "x", "text")},
        {.name = "Save in place",
         .prepare = &PrepareHardLinks,
         .run = &SaveInPlaceReports,
         .done = Is({{"x", "text"}, {"y", "text"}}),
         .kept =
             [](const Tree& tree) {
                 return Holds(tree, "y", {"x", "text"}) || Holds(tree, "x.qvold", {"x"});
             }},
        {.name = "Log",
         .prepare = Files({"x"}),
         .run = [](const Place& p) { return !CFileUtils::Log(p.path + "x", "line", 0); },
         // The second line is that of a run after one that was killed behind its last write.
         .done =
             [](const Tree& tree) {
                 return Holds(tree, "x", {"xline\r\n", "xline\r\nline\r\n"});
             },
         .kept = Keeps("x", "x", "xline\r\n")},
        {.name = "BackupFile",
         .prepare = Files({"x.a", "x.bak"}),
         .run = [](const Place& p) { return Raises(p, [&] { CFileUtils::BackupFile(p.path + "x.a"); }); },
         .done = Is({{"x.bak", "x.a"}}),
         .kept = [](const Tree& tree) { return Holds(tree, "x.a", {"x.a"}) || Holds(tree, "x.bak", {"x.a"}); }},
        {.name = "DelTree",
         .prepare = Files({"t/a", "t/b/c", "t/b/d/e", "kept"}),
         .run = [](const Place& p) { return Raises(p, [&] { CFileUtils::DelTree(p.path + "t", 0); }); },
         .done = Is({{"kept", "kept"}, {"t/", ""}}),
         .kept = Keeps("kept", "kept", "kept"),
         .silent = &MayDropRemoval},
        {.name = "CopyWholeFile",
         .prepare = Files({"from", "to"}),
         .run = [](const Place& p) { return !qv::platform::CopyWholeFile(p.path + "from", p.path + "to").ok(); },
         .done = Is({{"from", "from"}, {"to", "from"}}),
         .kept = Keeps("to", "to", "from")},
        {.name = "CopyTree",
         .prepare = Files({"from/a", "from/b/c", "to/a"}),
         .run = &CopyReports,
         .done = Is({{"from/", ""},
                     {"from/a", "from/a"},
                     {"from/b/", ""},
                     {"from/b/c", "from/b/c"},
                     {"to/", ""},
                     {"to/a", "from/a"},
                     {"to/b/", ""},
                     {"to/b/c", "from/b/c"}}),
         .kept = Keeps("to/a", "to/a", "from/a")},
        {.name = "Pack over",
         .prepare = Files({"in/a", "in/b/c", "a.cab"}),
         .run = &PackReports,
         .done =
             [](const Tree& tree) {
                 return tree.size() == 5 && IsArchive(tree.at("a.cab")) &&
                        tree.at("a.cab").find(std::string_view("\0c\0", 3)) != std::string::npos;
             },
         .kept = [](const Tree& tree) { return Holds(tree, "a.cab", {"a.cab"}) || IsArchive(tree.at("a.cab")); },
         // A folder that cannot be read is left out.
         .silent =
             [](const SystemCallInfo& call) {
                 return call.kind == CallKind::Status || call.kind == CallKind::OpenFolder ||
                        call.kind == CallKind::ListFolder;
             }},
        {.name = "Unpack over",
         .prepare = &PrepareArchive,
         .run = &UnpackReports,
         .done =
             [](const Tree& tree) {
                 return tree.size() == 5 && Holds(tree, "out/a", {"in/a"}) && Holds(tree, "out/b/c", {"in/b/c"});
             },
         .kept =
             [](const Tree& tree) {
                 return Holds(tree, "out/a", {"out/a", "in/a"}) &&
                        (!tree.contains("out/b/c") || Holds(tree, "out/b/c", {"in/b/c"}));
             },
         // A member whose time cannot be set is there all the same.
         .silent =
             [](const SystemCallInfo& call) {
                 return call.kind == CallKind::Status || call.kind == CallKind::ChangeStatus;
             }},
        {.name = "Lock and unlock",
         .prepare = Files({}),
         .run = &LockReports,
         .done = Is({}),
         .silent = [](const SystemCallInfo&) { return true; }},
        {.name = "Page",
         .prepare = Files({}),
         .run = &PageReports,
         .done = [](const Tree& tree) { return tree.size() == 1 && tree.at("page.html").ends_with("text"); }},
        {.name = "Message",
         .prepare = Files({}),
         .run = &MessageReports,
         .done = Is({}),
         .silent = [](const SystemCallInfo&) { return true; }},
        {.name = "Settings",
         .prepare = &PrepareSettings,
         .run = &SettingsReport,
         .done = SettingsAre({"[s]\ne=new\n"}),
         .kept = SettingsAre({"[s]\ne=old\nf=\n", "[s]\ne=new\n"})}};
    return operations;
}

}  // namespace

std::span<const Operation> Operations() {
    static const std::vector<Operation> operations = MakeOperations();
    return operations;
}
