#include <clocale>
#include <cstdio>
#include <iostream>

#include "platform/StandardStreams.h"
#include "qvcommon/framework/File.h"
#include "tools/qv/CommandLine.h"

namespace {

constexpr int kDone = 0, kFailed = 1, kWrongUsage = 2;

int Fail(const char* reason) {
    std::fprintf(stderr, "qv: %s\n", reason);
    return kFailed;
}

// Whether a write failed because the reader of our output has had enough, as "head" has: that is nobody's mistake.
bool IsReaderGone(const CException& error) {
    const auto* const file = dynamic_cast<const CFileException*>(&error);
    return file && qv::platform::IsReaderGone(static_cast<std::uint32_t>(file->m_lOsError));
}

int Report(CException* error) {
    char text[512] = {};
    const bool quiet = IsReaderGone(*error);
    error->GetErrorMessage(text, sizeof text - 1);
    error->Delete();
    return quiet ? kFailed : Fail(text);
}

int Run(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return kDone;
    } catch (const CLI::RuntimeError& status) {
        return status.get_exit_code();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    } catch (const std::exception& error) {
        return Fail(error.what());
    } catch (CException* error) {
        return Report(error);
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    CLI::App app{"The QvCommon command-line companion"};
    qv::tool::SetUp(app);
    const int status = Run(app, argc, argv);
    return std::cout.flush() || status ? status : Fail("standard output could not be written");
}
