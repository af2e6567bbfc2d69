#pragma once

#include <string>
#include <vector>

#include "qvcommon/framework/Process.h"

/// Child processes of a test: the test program starts itself anew, and a named function of it runs instead of the tests.
///
///     QV_CHILD(Greeter) { std::cout << arguments.at(0) << std::endl; return 0; }
///     StartChild(process, "Greeter", {"hello"});
///
/// The child talks to its parent over its standard streams. It ends by itself when its input ends; a parent that dies takes
/// it along that way.
using ChildMain = int (*)(const std::vector<std::string>& arguments);

struct ChildEntry {
    ChildEntry(const char* name, ChildMain main);
};

#define QV_CHILD(name)                                            \
    static int Child##name(const std::vector<std::string>&);      \
    static const ChildEntry g_entryOf##name(#name, &Child##name); \
    static int Child##name([[maybe_unused]] const std::vector<std::string>& arguments)

void StartChild(CProcess& process, const std::string& name, const CStringArray& arguments = {});

/// Runs the child that the command line names; false when it names none.
bool RunChild(int argc, char** argv, int& exitStatus);

/// The next line of a child's output; empty when it has ended.
std::string LineFrom(CProcess& process);
