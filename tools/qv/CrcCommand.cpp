#include <memory>
#include <optional>

#include "qvcommon/Checksum.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Crc.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::vector<std::string> files;
    bool check = false, json = false, zero = false, quiet = false;
};

/// A line of a list: a name in the library's form, and the checksum that its file has to have.
struct Expected {
    std::string path;
    unsigned long crc;
};

unsigned long CrcOfOperand(const std::string& path) {
    return path == "-" ? MemCRC(AfxReadStandardInput().AsStd()) : CrcOf(path);
}

// The checksum, or nothing with a complaint when the file cannot be read.
std::optional<unsigned long> TryCrcOf(const std::string& path) try {
    return CrcOfOperand(path);
} catch (CFileException* error) {
    Complain(MessageOf(*error));
    error->Delete();
    return std::nullopt;
}

std::string HexOf(unsigned long crc) {
    CString digits;
    digits.Format("%08X", crc);
    return digits.AsStd();
}

void Print(const Options& options) {
    std::size_t failures = 0;
    Progress progress("files read");
    Lines lines(options.zero ? '\0' : '\n');
    for (const std::string& path : options.files) {
        const auto crc = TryCrcOf(path);
        progress.Add();
        if (!crc)
            ++failures;
        else if (options.json)
            lines.Add(JsonObject().Path("path", path).Text("crc32", HexOf(*crc)).Line());
        else
            lines.Add(HexOf(*crc) + "  " + (options.zero ? Native(path) : ForOutput(Native(path))));
    }
    lines.Write();
    if (failures)
        throw Failed(std::to_string(failures) + " of " + std::to_string(options.files.size()) + " could not be read");
}

std::optional<unsigned long> CrcFrom(const std::string& digits) {
    if (digits.size() != 8 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos) return std::nullopt;
    return std::stoul(digits, nullptr, 16);
}

std::string PathFrom(const std::string& name) {
    return CFileUtils::GetLibraryPath(name.c_str()).AsStd();
}

// "DIGITS  NAME", with "*" for the second blank at will, as this tool and rhash write it, or "NAME DIGITS", as in SFV files.
std::optional<Expected> ParseLine(const std::string& line) {
    constexpr std::size_t kDigits = 8;
    if (line.size() > kDigits + 1) {
        const std::size_t name = line.find_first_not_of(" \t*", kDigits);
        const auto first = CrcFrom(line.substr(0, kDigits));
        if (first && name > kDigits && name != line.npos) return Expected{PathFrom(line.substr(name)), *first};
        const std::size_t last = line.size() - kDigits, end = line.find_last_not_of(" \t", last - 1);
        const auto crc = CrcFrom(line.substr(last));
        if (crc && end + 1 < last && end != line.npos) return Expected{PathFrom(line.substr(0, end + 1)), *crc};
    }
    return std::nullopt;
}

class Checker {
public:
    explicit Checker(const Options& options) : m_options(options) {}

    void CheckList(const std::string& list) {
        const CString text = list == "-" ? AfxReadStandardInput() : CFileUtils::ReadFile(list.c_str());
        const char end = m_options.zero ? '\0' : '\n';
        for (std::size_t from = 0; from < text.AsStd().size();) {
            const std::size_t stop = std::min(text.AsStd().find(end, from), text.AsStd().size());
            std::string line = text.AsStd().substr(from, stop - from);
            if (!m_options.zero && line.ends_with('\r')) line.pop_back();
            if (!line.empty() && line[0] != ';') CheckLine(list, line);
            from = stop + 1;
        }
    }

    /// @throws Failed when a file is not as it has to be, or no line was one of a list.
    void Finish() {
        m_lines.Write();
        if (m_malformed) Complain(std::to_string(m_malformed) + " lines are not those of a list of checksums");
        if (m_mismatches)
            throw Failed(std::to_string(m_mismatches) + " of " + std::to_string(m_count) + " did not match");
        if (m_count == 0) throw Failed("no checksums were found");
    }

private:
    void CheckLine(const std::string& list, const std::string& line) {
        const auto expected = ParseLine(line);
        if (!expected) {
            ++m_malformed;
            return;
        }
        ++m_count;
        const auto crc = TryCrcOf(expected->path);
        const bool matches = crc == expected->crc;
        m_mismatches += !matches;
        if (m_options.json)
            m_lines.Add(JsonObject().Path("path", expected->path).Truth("matches", matches).Path("list", list).Line());
        else if (!matches || !m_options.quiet)
            m_lines.Add(ForOutput(Native(expected->path)) + (matches ? ": OK" : crc ? ": FAILED" : ": FAILED to read"));
    }

    const Options& m_options;
    Lines m_lines;
    std::size_t m_count = 0, m_mismatches = 0, m_malformed = 0;
};

void Check(const Options& options) {
    Checker checker(options);
    for (const std::string& list : options.files) checker.CheckList(list);
    checker.Finish();
}

}  // namespace

void AddCrc(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("crc", "Print the CRC-32 of files: 8 hex digits, two blanks, name");
    command.AddPath("FILE", options->files, "The files; - is standard input").Require();
    command.AddFlag("-c,--check", options->check, "Read such lists, or SFV files, and check the files that they name");
    command.AddFlag("-q,--quiet", options->quiet, "With --check: print only what does not match");
    command.AddFlag("-0,--null", options->zero, "End lines with a zero byte; with --check, read lists of such lines");
    command.AddFlag("-j,--json", options->json, "Print one JSON object a line: path, crc32; or path, matches, list");
    command.SetFooter(
        "Lists of rhash --crc32 --simple and of cksfv are read too; those of cksum hold another checksum.\n"
        "Example: qv crc *.zip > zips.crc; qv crc --check zips.crc");
    command.SetAction([options] { options->check ? Check(*options) : Print(*options); });
}

}  // namespace qv::tool
