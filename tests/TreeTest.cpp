// The rules of this source tree that no compiler checks: where system headers may stand, which way includes run, and what
// an exported header may ask of its users.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using Findings = std::vector<std::string>;

struct Source {
    Findings includes;      // as they are written, with their quotes or brackets
    Findings conditionals;  // the lines of #if and its kin
};

using Tree = std::map<std::string, Source>;  // by path from the tree's root

Source ReadSource(std::istream& in) {
    static const std::regex include(R"(\s*#\s*include\s*([<"][^>"]*[>"]).*)");
    static const std::regex conditional(R"(\s*#\s*(if|el)\w*\s+(.*))");
    Source source;
    std::smatch match;
    for (std::string line; std::getline(in, line);) {
        if (std::regex_match(line, match, include)) source.includes.push_back(match[1]);
        if (std::regex_match(line, match, conditional)) source.conditionals.push_back(match[2]);
    }
    return source;
}

Tree ReadTree(const fs::path& root) {
    Tree tree;
    for (const char* const folder : {"benchmarks", "core", "examples", "files", "framework", "fuzz", "html", "imaging",
                                     "include", "platform", "tests", "tools", "xml"}) {
        if (!fs::exists(root / folder)) continue;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / folder)) {
            if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
            std::ifstream in(entry.path());
            tree[entry.path().lexically_relative(root).generic_string()] = ReadSource(in);
        }
    }
    return tree;
}

// The peers of some benchmarks are the system's own services.
bool MaySpeakToTheSystem(const std::string& path) {
    return path.starts_with("platform/") || path.starts_with("xml/dom/libxml2/") ||
           path.starts_with("xml/dom/msxml/") || path.starts_with("benchmarks/threads/system/");
}

std::string Inner(const std::string& include) {
    return include.substr(1, include.size() - 2);
}

// The file that an include means, when it is one of the tree.
std::string Resolve(const Tree& tree, const std::string& include) {
    for (const std::string& path : {Inner(include), "include/" + Inner(include)})
        if (tree.contains(path)) return path;
    return "";
}

Findings SystemHeadersAndConditionals(const Tree& tree) {
    static const std::regex headers(
        R"((sys|linux|asm|bits|net|netinet|arpa|gnu)/.*|win\w*\.h|ws2\w*\.h|ole\w*\.h|obj\w*\.h|shl\w*\.h|shell\w*\.h|)"
        R"(comm(ctrl|dlg)\.h|(tchar|io|direct|process|conio|share|unistd|fcntl|dirent|pthread|dlfcn|langinfo|nl_types|)"
        R"(monetary|pwd|grp|glob|fnmatch|ftw|poll|sched|semaphore|spawn|strings|syslog|termios|utime|netdb|iconv|)"
        R"(libgen|ucontext|features)\.h)",
        std::regex::icase);
    static const std::regex macros(
        R"(.*\b(_?WIN(32|64)|__WIN(32|64)__|__CYGWIN__|__MINGW(32|64)__|_MSC_VER|_?_?linux(__)?|__gnu_linux__|)"
        R"(__?unix(__)?|unix|__APPLE__|__ANDROID__|__GLIBC__|_POSIX_\w+|_WIN32_WINNT)\b.*)");
    Findings findings;
    for (const auto& [path, source] : tree) {
        if (MaySpeakToTheSystem(path)) continue;
        for (const std::string& include : source.includes)
            if (std::regex_match(Inner(include), headers)) findings.push_back(path + " includes " + include);
        for (const std::string& line : source.conditionals)
            if (std::regex_match(line, macros)) findings.push_back(path + " asks for a system: " + line);
    }
    return findings;
}

Findings UnequalPlatforms(const Tree& tree) {
    Findings findings;
    for (const auto& [path, source] : tree)
        for (const auto& [here, there] : {std::pair<std::string, std::string>("platform/posix/", "platform/windows/"),
                                          {"platform/windows/", "platform/posix/"},
                                          {"xml/dom/libxml2/", "xml/dom/msxml/"},
                                          {"xml/dom/msxml/", "xml/dom/libxml2/"}})
            if (path.starts_with(here) && !tree.contains(there + path.substr(here.size())))
                findings.push_back(path + " has no fellow in " + there);
    return findings;
}

// An exported header lives on the floor of the sources that carry its name.
int FloorOfHeader(const Tree& tree, const std::string& name) {
    static const std::set<std::string> core = {"Replacers"};
    if (name == "Export") return 0;
    const std::string prefix = "core/" + name;
    const auto source = tree.lower_bound(prefix);
    return core.contains(name) || (source != tree.end() && source->first.starts_with(prefix)) ? 2 : 3;
}

std::optional<int> FloorOf(const Tree& tree, const std::string& path) {
    static const std::map<std::string, int> floors = {{"platform", 0}, {"framework", 1}, {"core", 2},    {"files", 3},
                                                      {"xml", 3},      {"html", 3},      {"imaging", 3}, {"tools", 4}};
    if (path.starts_with("include/qvcommon/framework/")) return 1;
    if (path.starts_with("include/")) return FloorOfHeader(tree, fs::path(path).stem().string());
    const auto floor = floors.find(path.substr(0, path.find('/')));
    if (floor == floors.end()) return std::nullopt;
    return floor->second;
}

Findings IncludesThatRunUp(const Tree& tree) {
    Findings findings;
    for (const auto& [path, source] : tree) {
        const std::optional<int> from = FloorOf(tree, path);
        for (const std::string& include : source.includes) {
            const std::string target = Resolve(tree, include);
            if (from && !target.empty() && FloorOf(tree, target).value_or(9) > *from)
                findings.push_back(path + " includes " + include + " of a higher floor");
        }
    }
    return findings;
}

// Files that include each other, directly or by way of others.
class Circles {
public:
    explicit Circles(const Tree& tree) : m_tree(tree) {
        for (const auto& [path, source] : tree) Walk(path);
    }

    Findings found;

private:
    void Walk(const std::string& path) {
        if (const auto open = std::find(m_way.begin(), m_way.end(), path); open != m_way.end()) {
            std::string circle;
            for (auto it = open; it != m_way.end(); ++it) circle += *it + " > ";
            found.push_back(circle + path);
        } else if (m_done.insert(path).second) {
            m_way.push_back(path);
            for (const std::string& include : m_tree.at(path).includes)
                if (const std::string target = Resolve(m_tree, include); !target.empty()) Walk(target);
            m_way.pop_back();
        }
    }

    const Tree& m_tree;
    Findings m_way;
    std::set<std::string> m_done;
};

Findings ExportedHeadersThatAskTooMuch(const Tree& tree) {
    static const std::regex standard(
        "<(algorithm|any|array|atomic|barrier|bit|bitset|c(assert|ctype|errno|fenv|float|inttypes|limits|locale|math|"
        "setjmp|signal|stdarg|stddef|stdint|stdio|stdlib|string|time|uchar|wchar|wctype)|charconv|chrono|codecvt|"
        "compare|"
        "complex|concepts|condition_variable|coroutine|deque|exception|execution|filesystem|format|forward_list|"
        "fstream|"
        "functional|future|initializer_list|iomanip|ios|iosfwd|iostream|istream|iterator|latch|limits|list|locale|map|"
        "memory|memory_resource|mutex|new|numbers|numeric|optional|ostream|queue|random|ranges|ratio|regex|"
        "scoped_allocator|semaphore|set|shared_mutex|source_location|span|sstream|stack|stdexcept|stop_token|streambuf|"
        "string|string_view|strstream|syncstream|system_error|thread|tuple|type_traits|typeindex|typeinfo|"
        "unordered_map|unordered_set|utility|valarray|variant|vector|version)>");
    Findings findings;
    for (const auto& [path, source] : tree) {
        if (!path.starts_with("include/")) continue;
        for (const std::string& include : source.includes)
            if (!Resolve(tree, include).starts_with("include/") && !std::regex_match(include, standard))
                findings.push_back(path + " includes " + include);
    }
    return findings;
}

Findings ExportedHeadersThatQvCommonLacks(const Tree& tree) {
    static const std::string prefix = "include/", all = prefix + "qvcommon/QvCommon.h";
    const auto in = tree.find(all);
    Findings missing;
    for (const auto& [path, source] : tree) {
        if (!path.starts_with(prefix) || path == all || path.ends_with("/Export.h")) continue;
        const std::string include = '"' + path.substr(prefix.size()) + '"';
        if (in == tree.end() || std::ranges::count(in->second.includes, include) != 1) missing.push_back(path);
    }
    return missing;
}

class TheTree : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(fs::path(QV_SOURCE_DIR) / "platform"))
            GTEST_SKIP() << "the source tree is not at " << QV_SOURCE_DIR;
        tree = ReadTree(QV_SOURCE_DIR);
        ASSERT_TRUE(tree.contains("tests/TreeTest.cpp"));
    }

    Tree tree;
};

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(TheTree, KeepsSystemsApart) {
    EXPECT_THAT(SystemHeadersAndConditionals(tree), IsEmpty());
    EXPECT_THAT(UnequalPlatforms(tree), IsEmpty());
}

TEST_F(TheTree, IncludesRunDownAndInNoCircle) {
    EXPECT_THAT(IncludesThatRunUp(tree), IsEmpty());
    EXPECT_THAT(Circles(tree).found, IsEmpty());
}

TEST_F(TheTree, ExportsHeadersThatStandAlone) {
    EXPECT_THAT(ExportedHeadersThatAskTooMuch(tree), IsEmpty());
    EXPECT_THAT(ExportedHeadersThatQvCommonLacks(tree), IsEmpty());
}

TEST_F(TheTree, NamesEveryHeaderInTheReadme) {
    std::stringstream readme;
    readme << std::ifstream(fs::path(QV_SOURCE_DIR) / "README.md").rdbuf();
    Findings missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(QV_SOURCE_DIR) / "include/qvcommon")) {
        const std::string name = entry.path().filename().string();
        if (!entry.is_directory() && name != "Export.h" && name != "QvCommon.h" &&
            readme.str().find('`' + name + '`') == std::string::npos)
            missing.push_back(name);
    }
    EXPECT_THAT(missing, IsEmpty());
}

// A tree that breaks each rule.
TEST(TreeRules, FindWhatBreaksThem) {
    const std::pair<const char*, const char*> files[] = {
        {"platform/Time.h", "#include <unistd.h>\n#include \"qvcommon/Export.h\"\n"},
        {"platform/posix/Time.cpp", "#include \"framework/Name.h\"\n#ifdef __linux__\n"},
        {"platform/windows/Clock.cpp", "#include <windows.h>"},
        {"framework/Name.h", "#include \"framework/Other.h\"\n"},
        {"framework/Other.h", "#include \"framework/Third.h\"\n"},
        {"framework/Third.h", "  #  include \"framework/Name.h\" // why\n#include \"qvcommon/MathHelper.h\""},
        {"core/MathHelperSum.cpp", "#include <sys/stat.h>\n#include \"qvcommon/FilePath.h\"\n#if defined(_WIN32)\n"},
        {"files/FilePath.cpp", "#include \"qvcommon/MathHelper.h\"\n#  elif __APPLE__ && X\n#ifndef __WIN32_STORY\n"},
        {"include/qvcommon/Export.h", "#if defined(QVCOMMON_DLL_EXPORT)\n"},
        {"include/qvcommon/FilePath.h", "#include \"files/Private.h\"\n#include <gtest/gtest.h>\n#include <vector>\n"},
        {"include/qvcommon/MathHelper.h", "#include \"qvcommon/Export.h\"\n#include \"platform/Time.h\"\n"},
        {"benchmarks/threads/Lock.cpp", "#include <pthread.h>\n"},
        {"benchmarks/threads/system/Lock.h", "#include <pthread.h>\n"},
        {"tests/SomeTest.cpp", "#include <Windows.h>\n#include \"core/MathHelper.h\"\n"},
        {"xml/dom/Path.cpp", "#include <ole2.h>\n"},
        {"xml/dom/msxml/Tree.cpp", "#include <windows.h>\n"}};
    Tree tree;
    for (const auto& [path, text] : files) {
        std::istringstream in(text);
        tree[path] = ReadSource(in);
    }
    EXPECT_THAT(
        SystemHeadersAndConditionals(tree),
        ElementsAre("benchmarks/threads/Lock.cpp includes <pthread.h>", "core/MathHelperSum.cpp includes <sys/stat.h>",
                    "core/MathHelperSum.cpp asks for a system: defined(_WIN32)",
                    "files/FilePath.cpp asks for a system: __APPLE__ && X", "tests/SomeTest.cpp includes <Windows.h>",
                    "xml/dom/Path.cpp includes <ole2.h>"));
    EXPECT_THAT(UnequalPlatforms(tree), ElementsAre("platform/posix/Time.cpp has no fellow in platform/windows/",
                                                    "platform/windows/Clock.cpp has no fellow in platform/posix/",
                                                    "xml/dom/msxml/Tree.cpp has no fellow in xml/dom/libxml2/"));
    EXPECT_THAT(IncludesThatRunUp(tree),
                ElementsAre("core/MathHelperSum.cpp includes \"qvcommon/FilePath.h\" of a higher floor",
                            "framework/Third.h includes \"qvcommon/MathHelper.h\" of a higher floor",
                            "platform/posix/Time.cpp includes \"framework/Name.h\" of a higher floor"));
    EXPECT_THAT(Circles(tree).found,
                ElementsAre("framework/Name.h > framework/Other.h > framework/Third.h > framework/Name.h"));
    EXPECT_THAT(ExportedHeadersThatQvCommonLacks(tree),
                ElementsAre("include/qvcommon/FilePath.h", "include/qvcommon/MathHelper.h"));
    EXPECT_THAT(ExportedHeadersThatAskTooMuch(tree),
                ElementsAre("include/qvcommon/FilePath.h includes \"files/Private.h\"",
                            "include/qvcommon/FilePath.h includes <gtest/gtest.h>",
                            "include/qvcommon/MathHelper.h includes \"platform/Time.h\""));
}

}  // namespace
