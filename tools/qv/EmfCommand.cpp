#include <algorithm>
#include <array>
#include <memory>

#include "qvcommon/ParseEmf.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"
#include "tools/qv/WholeFile.h"

namespace qv::tool {
namespace {

// A walk that insists on a header and on the record that ends a metafile.
class WholeMetafile : public CParseEmf {
public:
    void Walk(const std::string& path) {
        if (!ProcessFile(path.c_str())) throw FailedOn(path, "the file ends before its end-of-file record");
    }

    int ProcessMetafileRecords(CFile& file) override {
        m_firstRecord = 1;
        return CParseEmf::ProcessMetafileRecords(file);
    }
};

// "LABEL<tab>NUMBER NUMBER...", of the record's words from `offset` on.
std::string Numbers(const char* label, const EmfRecord& record, std::size_t offset, std::size_t count) {
    std::string line = label;
    for (std::size_t i = 0; i < count; ++i)
        (line += i ? ' ' : '\t') += std::to_string(static_cast<LONG>(record.Word(offset + i * sizeof(DWORD))));
    return line;
}

// The header's description in UTF-8: the program's name, a zero and the picture's name.
std::string Description(const EmfRecord& header) {
    constexpr std::size_t lengthAt = 60, offsetAt = 64;
    const std::uint64_t length = header.Word(lengthAt), offset = header.Word(offsetAt);
    if (offset == 0 || !header.Holds(offset, length * sizeof(char16_t))) return "";
    std::u16string text(static_cast<std::size_t>(length), u'\0');
    std::memcpy(text.data(), header.At(static_cast<std::size_t>(offset)), text.size() * sizeof(char16_t));
    text.erase(text.find_last_not_of(u'\0') + 1);
    std::ranges::replace(text, u'\0', u'|');
    return VisibleOnTerminal(Utf8(std::filesystem::path(text)));
}

class RecordList : public WholeMetafile {
public:
    explicit RecordList(const std::string& path) {
        Walk(path);
        m_lines.Write();
    }

    void ParseMetafileRecord(EmfRecord* record) override {
        std::array<char, 32> name = {};
        GetFunctionNameFromId(record->type, name.data(), name.size() - 1);
        m_lines.Add(std::to_string(++m_number) + '\t' + name.data() + '\t' + std::to_string(record->size));
        WholeMetafile::ParseMetafileRecord(record);
    }

    void OnHeader(EmfRecord* record) override {
        m_lines.Add(Numbers("bounds", *record, 8, 4));
        m_lines.Add(Numbers("frame", *record, 24, 4));
        m_lines.Add(Numbers("device", *record, 72, 2));
        m_lines.Add(Numbers("millimetres", *record, 80, 2));
        m_lines.Add("description\t" + Description(*record));
    }

private:
    Lines m_lines;
    std::uint64_t m_number = 0;
};

class Normaliser : public WholeMetafile {
public:
    explicit Normaliser(CFile& out) : m_out(out) {}

    void ParseGenericMetafileRecord(EmfRecord* record) override {
        WholeMetafile::ParseGenericMetafileRecord(record);
        m_out.Write(record, record->size);
    }

private:
    CFile& m_out;
};

void Normalise(const std::string& path, const std::string& out) {
    WholeFile file(out);
    Normaliser(file).Walk(path);
    file.Commit();
}

void AddList(Command emf) {
    Command command = emf.Add("list", "List the records of a metafile: number, name and size in bytes");
    const auto path = std::make_shared<std::string>();
    command.AddPath("FILE", *path, "The metafile").Require();
    command.SetFooter(
        "After the first record come the header's bounds and frame (left, top, right, bottom), the device's size in "
        "pixels\n"
        "and millimetres, and the description.\nExample:\n  qv emf list drawing.emf");
    command.SetAction([path] { RecordList{*path}; });
}

void AddNormalise(Command emf) {
    Command command = emf.Add("normalise", "Copy a metafile, with the bytes cleared that the format leaves undefined");
    const auto path = std::make_shared<std::string>(), out = std::make_shared<std::string>();
    command.AddPath("FILE", *path, "The metafile").Require();
    command.AddPath("OUT", *out, "The new file; may equal FILE, which is replaced atomically").Require();
    command.SetFooter("Example:\n  qv emf normalise drawing.emf clean.emf");
    command.SetAction([path, out] { Normalise(*path, *out); });
}

}  // namespace

void AddEmf(Command app) {
    Command emf = app.AddFamily("emf", "Inspect enhanced metafiles, and make them comparable");
    emf.SetFooter("Example: qv emf list drawing.emf");
    AddList(emf);
    AddNormalise(emf);
}

}  // namespace qv::tool
