#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
    CLI::App app{"The QvCommon command-line companion"};
    app.require_subcommand(1);
    CLI11_PARSE(app, argc, argv);
    return 0;
}
