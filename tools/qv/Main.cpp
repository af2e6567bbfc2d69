#include <clocale>
#include <cstdio>

#include "qvcommon/framework/Exception.h"
#include "tools/qv/Commands.h"

namespace {

constexpr int kDone = 0, kFailed = 1, kWrongUsage = 2;

int Fail(const char* reason) {
    std::fprintf(stderr, "qv: %s\n", reason);
    return kFailed;
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
        char text[512] = {};
        error->GetErrorMessage(text, sizeof text - 1);
        error->Delete();
        return Fail(text);
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    CLI::App app{"The QvCommon command-line companion"};
    app.require_subcommand(1);
    qv::tool::AddArchiveCommands(app);
    qv::tool::AddBackup(app);
    qv::tool::AddBmp(app);
    qv::tool::AddCopy(app);
    qv::tool::AddCrc(app);
    qv::tool::AddDelete(app);
    qv::tool::AddEmf(app);
    qv::tool::AddFind(app);
    qv::tool::AddListen(app);
    qv::tool::AddLog(app);
    qv::tool::AddLockCommand(app);
    qv::tool::AddReport(app);
    qv::tool::AddSend(app);
    qv::tool::AddText(app);
    qv::tool::AddWatch(app);
    qv::tool::AddXml(app);
    return Run(app, argc, argv);
}
