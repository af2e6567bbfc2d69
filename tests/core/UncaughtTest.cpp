#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>
#include <thread>

#include "qvcommon/Cabinet.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/XmlException.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"

namespace {

struct Unknown {};

struct Case {
    void (*end)();
    const char* said;  ///< after the program's name; null for nothing at all
    bool aborts = false;
};

const std::map<std::string, Case>& Cases() {
    static const std::map<std::string, Case> cases = {
        {"library", {[] { ThrowQvException("Broken", 16, 7, 1); }, "Broken (7)"}},
        {"cancelled", {[] { ThrowQvCancelException(); }, "User cancelled"}},
        {"cabinet", {[] { CReadCab::CabToDirectory("out", "none.cab"); }, "none.cab: Cabinet not found"}},
        {"file", {[] { CFile("none.txt", CFile::modeRead); }, "none.txt does not exist. ("}},
        {"argument", {AfxThrowInvalidArgException, "An argument was outside what the operation accepts."}},
        {"user", {AfxThrowUserException, nullptr}},
        {"xml", {[] { CXmlException::Throw("No <root>", 16, 3, 0); }, "No <root> (0)"}},
        {"dom", {[] { _com_raise_error(_com_error::kPointer); }, "Invalid pointer"}},
        {"described", {[] { _com_raise_error(_com_error::kFail, "Bad name"); }, "Bad name"}},
        {"standard", {[] { throw std::runtime_error("100 %s"); }, "100 %s"}},
        {"memory", {[] { throw std::bad_alloc(); }, "not enough memory"}},
        {"text", {[] { throw "no bitmap"; }, "no bitmap"}},
        {"thread", {[] { std::thread([] { throw std::logic_error("beside"); }).join(); }, "beside"}},
        {"unknown", {[] { throw Unknown(); }, "ended by an exception of an unknown type", true}},
        {"nothing", {std::terminate, "ended by std::terminate", true}},
    };
    return cases;
}

QV_CHILD(Uncaught) {
    if (!std::freopen(arguments.at(1).c_str(), "w", stderr)) return 0;
    QvReportUncaught();
    std::printf("before");
    Cases().at(arguments.at(0)).end();
    return 0;
}

TEST(Uncaught, PrintsMessageAndExitsWithFailure) {
    const TempFolder folder;
    for (const auto& [name, expected] : Cases()) {
        SCOPED_TRACE(name);
        CProcess child;
        StartChild(child, "Uncaught", {name.c_str(), folder.Native(name).string().c_str()});
        EXPECT_EQ(LineFrom(child), "before");
        const int status = child.Wait();
        EXPECT_TRUE(expected.aborts ? status > 1 : status == 1) << status;

        std::ifstream file(folder.Native(name));
        const std::string said(std::istreambuf_iterator<char>(file), {});
        const std::string start = expected.said ? std::string("qvcommon_tests: ") + expected.said : "";
        EXPECT_EQ(said.substr(0, start.size()), start);
        EXPECT_EQ(said.empty(), !expected.said) << said;
    }
}

}  // namespace
