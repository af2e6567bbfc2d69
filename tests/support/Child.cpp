#include "tests/support/Child.h"

#include <map>
#include <string_view>

#include "platform/Process.h"

namespace {

constexpr std::string_view kFlag = "--child=";

std::map<std::string, ChildMain, std::less<>>& Entries() {
    static std::map<std::string, ChildMain, std::less<>> entries;
    return entries;
}

}  // namespace

ChildEntry::ChildEntry(const char* name, ChildMain main) {
    Entries().emplace(name, main);
}

void StartChild(CProcess& process, const std::string& name, const CStringArray& arguments) {
    CStringArray words = {CString(std::string(kFlag) + name)};
    words.Append(arguments);
    process.Start(qv::platform::CurrentProgram().c_str(), words, CProcess::pipeInput | CProcess::pipeOutput);
}

bool StartAs(const char* user, CProcess& process, const CStringArray& command) try {
    CStringArray words = {CString("--reuid=") + user, "--regid=65534", "--clear-groups"};
    words.Append(command);
    process.Start("setpriv", words, CProcess::pipeInput | CProcess::pipeOutput);
    return true;
} catch (CFileException* error) {
    error->Delete();
    return false;
}

bool RunChild(int argc, char** argv, int& exitStatus) {
    const std::string_view flag = argc > 1 ? argv[1] : "";
    if (!flag.starts_with(kFlag)) return false;
    const auto entry = Entries().find(flag.substr(kFlag.size()));
    exitStatus = entry == Entries().end() ? 127 : entry->second({argv + 2, argv + argc});
    return true;
}

std::string LineFrom(CProcess& process) {
    CString line;
    process.Output().ReadString(line);
    return line.AsStd();
}
