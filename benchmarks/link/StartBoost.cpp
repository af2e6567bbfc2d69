// The Boost libraries with QvCommon's functions: files, threads, and locale-dependent text.
#include <boost/filesystem/operations.hpp>
#include <boost/locale/generator.hpp>
#include <boost/thread/thread.hpp>

int main(int argc, char**) {
    const boost::locale::generator generator;
    const bool wrong = boost::filesystem::exists("/none") || !boost::thread::hardware_concurrency();
    return wrong + !generator.use_ansi_encoding() - 1 + argc - 1;
}
