#include "tests/faults/Operations.h"

#include <algorithm>
#include <cstring>

#include "platform/FileCopy.h"
#include "platform/Process.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/SaveFile.h"
#include "qvcommon/UserMessages.h"
#include "tests/support/FileTests.h"
#include "tests/support/Walks.h"

namespace {

using qv::platform::SystemCallInfo;

std::function<void(const Place&)> Files(std::initializer_list<const char*> names) {
    return [names = std::vector(names)](const Place& place) {
        for (const char* const name : names) MakeTree(place.native, {name});
    };
}

/// Runs the action and reports its exceptions. One of a file must name a file of the place, or a temporary one.
template <class Action>
std::function<bool(const Place&)> Raising(Action action) {
    return [=](const Place& place) {
        try {
            action(place);
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
    };
}

std::function<bool(const Tree&)> Is(const char* expected) {
    return [=](const Tree& tree) { return ShowTree(tree) == expected; };
}

bool Holds(const Tree& tree, const std::string& name, std::initializer_list<const char*> contents) {
    const auto found = tree.find(name);
    return found != tree.end() && std::find(contents.begin(), contents.end(), found->second) != contents.end();
}
std::function<bool(const Tree&)> Keeps(const char* name, const char* old, const char* replacement) {
    return [=](const Tree& tree) { return Holds(tree, name, {old, replacement}); };
}

std::function<bool(const SystemCallInfo&)> AnyOf(std::initializer_list<CallKind> kinds) {
    return [kinds = std::vector(kinds)](const SystemCallInfo& call) {
        return std::find(kinds.begin(), kinds.end(), call.kind) != kinds.end();
    };
}

bool Always(const SystemCallInfo&) {
    return true;
}

/// An archive of "in", with other contents where it unpacks to.
void PrepareArchive(const Place& place) {
    MakeTree(place.native, {"in/a", "in/b/c"});
    CMakeCab::DirectoryToCab(place.path + "in", place.path + "a.cab", 1);
    fs::remove_all(place.native / "in");
    MakeTree(place.native, {"out/a"});
}

/// A whole archive, by the size in its header.
bool IsArchive(const std::string& bytes) {
    std::uint32_t size = 0;
    if (bytes.size() >= 12) std::memcpy(&size, &bytes[8], sizeof size);
    return bytes.starts_with("MSCF") && size == bytes.size();
}

/// Sends a text to a listener of this thread. The text arrives whole and at most once, and its loss is reported.
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

std::vector<Operation> MakeOperations() {
    return {
        {.name = "WriteFile",
         .run = Raising([](const Place& p) { CFileUtils::WriteFile(p.path + "new\\x", CString("text"), 1, 1); }),
         .done = Is("new/ new/x=text")},
        {.name = "WriteFileOver",
         .prepare = Files({"x"}),
         .run = Raising([](const Place& p) { CFileUtils::WriteFile(p.path + "x", CString("text"), 0, 0); }),
         .done = Is("x=text")},
        {.name = "SaveFileOver",
         .prepare = Files({"x"}),
         .run = Raising([](const Place& p) { CFileUtils::SaveFile(p.path + "x", CString("text")); }),
         .done = Is("x=text"),
         .kept = Keeps("x", "x", "text")},
        {.name = "SaveInPlace",
         .prepare =
             [](const Place& p) {
                 MakeTree(p.native, {"x"});
                 fs::create_hard_link(p.native / "x", p.native / "y");
             },
         .run = Raising([](const Place& p) {
             CSaveFile file(p.path + "x");
             file.Write("text", 4);
             file.CommitInPlace();
         }),
         .done = Is("x=text y=text"),
         .kept =
             [](const Tree& t) {
                 return Holds(t, "y", {"x", "text"}) || Holds(t, "x.qvold", {"x"});
             }},
        {.name = "Log",
         .prepare = Files({"x"}),
         .run = [](const Place& p) { return !CFileUtils::Log(p.path + "x", "line", 0); },
         // The second line is of a run after one that was killed after its last write.
         .done = Keeps("x", "xline\r\n", "xline\r\nline\r\n"),
         .kept = Keeps("x", "x", "xline\r\n")},
        {.name = "BackupFile",
         .prepare = Files({"x.a", "x.bak"}),
         .run = Raising([](const Place& p) { CFileUtils::BackupFile(p.path + "x.a"); }),
         .done = Is("x.bak=x.a"),
         .kept = [](const Tree& t) { return Holds(t, "x.a", {"x.a"}) || Holds(t, "x.bak", {"x.a"}); }},
        {.name = "DelTree",
         .prepare = Files({"t/a", "t/b/c", "t/b/d/e", "kept"}),
         .run = Raising([](const Place& p) { CFileUtils::DelTree(p.path + "t", 0); }),
         .done = Is("kept t/"),
         .kept = Keeps("kept", "kept", "kept"),
         // Closing the descriptor of a folder loses nothing.
         .silent = AnyOf({CallKind::Status, CallKind::Remove, CallKind::Close})},
        {.name = "CopyWholeFile",
         .prepare = Files({"from", "to"}),
         .run = [](const Place& p) { return !qv::platform::CopyWholeFile(p.path + "from", p.path + "to").ok(); },
         .done = Is("from to=from"),
         .kept = Keeps("to", "to", "from")},
        {.name = "CopyTree",
         .prepare = Files({"from/a", "from/b/c", "to/a"}),
         .run = [](const Place& p) { return CopyErrors(p.path + "from", p.path + "to") > 0; },
         .done = Is("from/ from/a from/b/ from/b/c to/ to/a=from/a to/b/ to/b/c=from/b/c"),
         .kept = Keeps("to/a", "to/a", "from/a")},
        {.name = "PackOver",
         .prepare = Files({"in/a", "in/b/c", "a.cab"}),
         .run = Raising([](const Place& p) { CMakeCab::DirectoryToCab(p.path + "in", p.path + "a.cab", 1); }),
         .done =
             [](const Tree& tree) {
                 return tree.size() == 5 && IsArchive(tree.at("a.cab")) &&
                        tree.at("a.cab").find(std::string_view("\0c\0", 3)) != std::string::npos;
             },
         .kept = [](const Tree& tree) { return Holds(tree, "a.cab", {"a.cab"}) || IsArchive(tree.at("a.cab")); },
         // A folder that cannot be read is left out.
         .silent = AnyOf({CallKind::Status, CallKind::OpenFolder, CallKind::ListFolder})},
        {.name = "UnpackOver",
         .prepare = &PrepareArchive,
         .run = Raising([](const Place& p) { CReadCab::CabToDirectory(p.path + "out", p.path + "a.cab"); }),
         .done =
             [](const Tree& t) {
                 return t.size() == 5 && Holds(t, "out/a", {"in/a"}) && Holds(t, "out/b/c", {"in/b/c"});
             },
         .kept =
             [](const Tree& t) {
                 return Holds(t, "out/a", {"out/a", "in/a"}) &&
                        (!t.contains("out/b/c") || Holds(t, "out/b/c", {"in/b/c"}));
             },
         // A member whose time cannot be set is unpacked.
         .silent = AnyOf({CallKind::Status, CallKind::ChangeStatus})},
        {.name = "LockAndUnlock",
         .run =
             [](const Place& p) {
                 CLockFile lock;
                 lock.SetSourceFile(p.path + "document");
                 return !lock.Lock(1);
             },
         .done = Is(""),
         .silent = &Always},
        {.name = "Page",
         .run = Raising([](const Place& p) {
             CHtmlWriter page;
             page.SetFilename(p.path + "page.html");
             page.AddText("text");
             page.CommitFile();
         }),
         .done = [](const Tree& tree) { return tree.size() == 1 && tree.at("page.html").ends_with("text"); }},
        {.name = "Message", .run = &MessageReports, .done = Is(""), .silent = &Always},
        {.name = "Settings",
         .prepare = [](const Place& p) { std::ofstream(p.native / "a.ini", std::ios::binary) << "[s]\ne=old\nf=\n"; },
         .run = Raising([](const Place& p) {
             ProfileStore store(p.path + "a.ini");
             store.Update([&] {
                 store.SetString("s", "e", "new");
                 store.DeleteEntry("s", "f");
             });
         }),
         .done = [](const Tree& t) { return Holds(t, "a.ini", {"[s]\ne=new\n"}); },
         .kept = Keeps("a.ini", "[s]\ne=old\nf=\n", "[s]\ne=new\n")}};
}

}  // namespace

std::span<const Operation> Operations() {
    static const std::vector<Operation> operations = MakeOperations();
    return operations;
}
