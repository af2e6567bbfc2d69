#include <memory>
#include <optional>

#include "qvcommon/Checksum.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Crc.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::vector<std::string> files;
    std::string filesFrom;
    bool check = false, json = false, zero = false;

    char LineEnd() const { return zero ? '\0' : '\n'; }
};

/// A line of a list: a name in the library's form, and the expected checksum of its file.
struct Expected {
    std::string path;
    unsigned long crc;
};

// Returns the lines of a file, or of standard input, without empty ones. In text lists, a CR is part of the line end.
std::vector<std::string> LinesOf(const std::string& file, const Options& options) {
    std::vector<std::string> lines;
    const std::string text = ReadDocument(file);
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t stop = std::min(text.find(options.LineEnd(), from), text.size());
        std::string line = text.substr(from, stop - from);
        if (!options.zero && line.ends_with('\r')) line.pop_back();
        if (!line.empty()) lines.push_back(std::move(line));
        from = stop + 1;
    }
    return lines;
}

std::string PathFrom(const std::string& name) {
    return CFileUtils::GetLibraryPath(name.c_str()).AsStd();
}

// Returns the operands and the names in the list.
std::vector<std::string> FilesOf(const Options& options) {
    std::vector<std::string> files = options.files;
    if (!options.filesFrom.empty())
        for (const std::string& name : LinesOf(options.filesFrom, options)) files.push_back(PathFrom(name));
    return files;
}

std::string HexOf(unsigned long crc) {
    CString digits;
    digits.Format("%08X", crc);
    return digits.AsStd();
}

void Print(const Options& options) {
    std::size_t failures = 0;
    const std::vector<std::string> files = FilesOf(options);
    Progress progress("files read");
    if (progress.IsShown()) progress.SetTotalBytes(BytesOf(files));
    Lines lines(options.LineEnd());
    SumEach(files, progress, [&](std::size_t index, std::optional<unsigned long> crc) {
        if (!crc)
            ++failures;
        else if (options.json)
            lines.Add(JsonObject().Path("path", files[index]).Text("crc32", HexOf(*crc)).Line());
        else
            lines.AddName(Native(files[index]), HexOf(*crc) + "  ");
    });
    lines.Write();
    if (failures)
        throw CommandError(std::to_string(failures) + " of " + std::to_string(files.size()) + " could not be read");
}

std::optional<unsigned long> CrcFrom(const std::string& digits) {
    if (digits.size() != 8 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos) return std::nullopt;
    return std::stoul(digits, nullptr, 16);
}

constexpr std::size_t kDigits = 8;

std::optional<Expected> ParseNameAt(std::size_t name, const std::string& line) {
    const auto crc = CrcFrom(line.substr(0, kDigits));
    if (!crc || name <= kDigits || name >= line.size()) return std::nullopt;
    return Expected{PathFrom(line.substr(name)), *crc};
}

// Parses "NAME DIGITS", as in SFV files.
std::optional<Expected> ParseNameFirst(const std::string& line) {
    const std::size_t last = line.size() - kDigits, end = line.find_last_not_of(" \t", last - 1);
    const auto crc = CrcFrom(line.substr(last));
    if (!crc || end == line.npos || end + 1 == last) return std::nullopt;
    return Expected{PathFrom(line.substr(0, end + 1)), *crc};
}

// Parses "DIGITS  NAME" and "DIGITS *NAME", as this tool and rhash write them, then "NAME DIGITS", whose name may begin
// with digits and one space, then digits with other separators, with which the name cannot begin.
std::optional<Expected> ParseLine(const std::string& line) {
    if (line.size() <= kDigits + 1) return std::nullopt;
    const std::string marks = line.substr(kDigits, 2);
    std::optional<Expected> expected;
    if (marks == "  " || marks == " *") expected = ParseNameAt(kDigits + 2, line);
    if (!expected) expected = ParseNameFirst(line);
    if (!expected) expected = ParseNameAt(line.find_first_not_of(" \t*", kDigits), line);
    return expected;
}

class Checker {
public:
    explicit Checker(const Options& options) : m_options(options) {}

    void CheckList(const std::string& list) {
        std::vector<std::string> paths;
        std::vector<unsigned long> wanted;
        for (const std::string& line : LinesOf(list, m_options)) {
            if (line[0] == ';') continue;
            if (const auto expected = ParseLine(line)) {
                paths.push_back(expected->path);
                wanted.push_back(expected->crc);
            } else {
                ++m_malformed;
            }
        }
        SumEach(paths, m_progress, [&](std::size_t index, std::optional<unsigned long> crc) {
            Print(list, paths[index], crc, wanted[index]);
        });
    }

    /// @throws CommandError if a file does not match, or if no line could be parsed.
    void Finish() {
        m_lines.Write();
        if (m_malformed)
            Complain(std::to_string(m_malformed) + (m_malformed == 1 ? " line is" : " lines are") +
                     " improperly formatted");
        if (m_mismatches)
            throw CommandError(std::to_string(m_mismatches) + " of " + std::to_string(m_count) + " did not match");
        if (m_count == 0) throw CommandError("no checksums were found");
    }

private:
    void Print(const std::string& list, const std::string& path, std::optional<unsigned long> crc,
               unsigned long wanted) {
        const bool matches = crc == wanted;
        ++m_count;
        m_mismatches += !matches;
        if (m_options.json)
            m_lines.Add(JsonObject().Path("path", path).Truth("matches", matches).Path("list", list).Line());
        else if (!matches || !IsQuiet())
            m_lines.AddName(Native(path), "", matches ? ": OK" : crc ? ": FAILED" : ": FAILED to read");
    }

    const Options& m_options;
    Progress m_progress{"files checked"};
    Lines m_lines;
    std::size_t m_count = 0, m_mismatches = 0, m_malformed = 0;
};

void Check(const Options& options) {
    Checker checker(options);
    for (const std::string& list : FilesOf(options)) checker.CheckList(list);
    checker.Finish();
}

}  // namespace

void AddCrc(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("crc", "Print the CRC-32 of files: 8 hex digits, two spaces, name");
    command.AddPath("FILE", options->files, "The files; - is standard input");
    command.AddFlag("-c,--check", options->check, "Verify the files listed in such output or in SFV files");
    command
        .AddPath("-T,--files-from", options->filesFrom,
                 "Read the names of the files from this one, one per line; - is standard input")
        .CallValue("LIST");
    AddQuiet(command, "Show no progress; with --check, print mismatches only");
    command.AddFlag("-0,--null", options->zero, "End lines with a zero byte, in output and in lists");
    command.AddFlag("-j,--json", options->json, "Print one JSON object per line: path, crc32; or path, matches, list");
    command.SetNotes(
        "--check also reads lists of rhash --crc32 --simple and of cksfv; those of cksum use another checksum.");
    command.AddExample("qv crc *.zip > zips.crc; qv crc --check zips.crc");
    command.SetAction([options] {
        if (options->files.empty() && options->filesFrom.empty()) throw WrongUsage("FILE is required");
        options->check ? Check(*options) : Print(*options);
    });
}

}  // namespace qv::tool
