#pragma once

#include <string>
#include <vector>

#include "qvcommon/framework/Process.h"

/// Child processes of a test: the test program starts itself again, and a named function of it runs instead of the tests.
///
///     QV_CHILD(Greeter) { std::cout << arguments.at(0) << std::endl; return 0; }
///     StartChild(process, "Greeter", {"hello"});
///
/// The child communicates with its parent over its standard streams. It must end when its input ends, which is also how it
/// learns that its parent has died.
using ChildMain = int (*)(const std::vector<std::string>& arguments);

struct ChildEntry {
    ChildEntry(const char* name, ChildMain main);
};

#define QV_CHILD(name)                                            \
    static int Child##name(const std::vector<std::string>&);      \
    static const ChildEntry g_entryOf##name(#name, &Child##name); \
    static int Child##name([[maybe_unused]] const std::vector<std::string>& arguments)

void StartChild(CProcess& process, const std::string& name, const CStringArray& arguments = {});

/// Starts a command as another user. False where this program may not become one.
bool StartAs(const char* user, CProcess& process, const CStringArray& command);

/// Runs the child that the command line names; false when it names none.
bool RunChild(int argc, char** argv, int& exitStatus);

/// The next line of a child's output; empty when it has ended.
std::string LineFrom(CProcess& process);
