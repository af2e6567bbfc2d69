#include <clocale>
#include <exception>
#include <iostream>

#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/CommandLine.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace {

using qv::tool::kFailed;

int Fail(const char* reason) {
    qv::tool::Complain(reason);
    return kFailed;
}

// Whether a write failed because the reader of our output has closed the pipe, as "head" does: not an error.
bool IsReaderGone(const CException& error) {
    const auto* const file = dynamic_cast<const CFileException*>(&error);
    return file && AfxIsReaderGone(*file);
}

int Report(CException* error) {
    const std::string text = qv::tool::MessageOf(*error);
    const bool quiet = IsReaderGone(*error);
    error->Delete();
    return quiet ? kFailed : Fail(text.c_str());
}

int Run(int argc, char** argv) {
    try {
        return qv::tool::Run(argc, argv);
    } catch (const std::exception& error) {
        return Fail(error.what());
    } catch (CException* error) {
        return Report(error);
    }
}

}  // namespace

int main(int argc, char** argv) {
    AfxPrepareConsole();
    int status = qv::tool::kDone;
    if (!qv::tool::PrintVersion(argc, argv)) {
        std::setlocale(LC_ALL, "");
        status = Run(argc, argv);
    }
    return std::cout.flush() || status ? status : Fail("standard output could not be written");
}
