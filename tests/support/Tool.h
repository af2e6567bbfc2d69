#pragma once

#include <string>

#include "platform/Process.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/Process.h"

/// What a program answers to arguments and standard input, byte for byte.
struct ToolAnswer {
    int status;
    std::string output;
};

inline ToolAnswer AnswerOf(CProcess& process, std::string_view input = {}) {
    process.WriteInput(input);
    process.CloseInput();
    ToolAnswer answer{0, {}};
    char buffer[4096];
    while (const UINT count = process.Output().CFile::Read(buffer, sizeof buffer)) answer.output.append(buffer, count);
    answer.status = process.Wait();
    return answer;
}

inline ToolAnswer RunProgram(const char* program, const CStringArray& arguments, std::string_view input = {}) {
    CProcess process;
    process.Start(program, arguments, CProcess::pipeInput | CProcess::pipeOutput);
    return AnswerOf(process, input);
}

/// Whether a program is installed; it is asked for its version.
inline bool HasProgram(const char* program) {
    try {
        RunProgram(program, {"-version"});
        return true;
    } catch (CException* missing) {
        missing->Delete();
        return false;
    }
}

/// The tool is beside the test program.
inline std::string ToolPath() {
    const std::string self = qv::platform::CurrentProgram();
    return self.substr(0, self.find_last_of("/\\") + 1) + "qv";
}

/// Absolute paths in the library's form are passed in the system's form, as users write them.
inline ToolAnswer RunTool(CStringArray arguments, std::string_view input = {}) {
    for (CString& argument : arguments)
        if (argument.AsStd().starts_with('\\')) argument = CFileUtils::GetNativePath(argument);
    return RunProgram(ToolPath().c_str(), arguments, input);
}

inline int ToolStatus(const CStringArray& arguments) {
    return RunTool(arguments).status;
}
