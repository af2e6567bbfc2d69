#include <algorithm>
#include <array>
#include <memory>

#include "qvcommon/ParseEmf.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

// Requires a header and the record that ends a metafile.
class WholeMetafile : public CParseEmf {
public:
    void Walk(const std::string& path) {
        if (!WalkRecords(path)) throw FailedOn(path, "the file ends before its end-of-file record");
    }

    int ProcessMetafileRecords(CFile& file) override {
        m_firstRecord = 1;
        return CParseEmf::ProcessMetafileRecords(file);
    }

private:
    bool WalkRecords(const std::string& path) {
        if (!IsStandardStream(path)) return ProcessFile(path.c_str());
        MemoryFile file(ReadDocument(path));
        return ProcessMetafileRecords(file);
    }
};

struct Field {
    const char* label;
    std::size_t offset, count;  ///< the byte offset of its first word, and the number of words
};

constexpr Field kFields[] = {{"bounds", 8, 4}, {"frame", 24, 4}, {"device", 72, 2}, {"millimetres", 80, 2}};

std::vector<std::int64_t> NumbersOf(const EmfRecord& header, const Field& field) {
    std::vector<std::int64_t> numbers;
    for (std::size_t i = 0; i < field.count; ++i)
        numbers.push_back(static_cast<LONG>(header.Word(field.offset + i * sizeof(DWORD))));
    return numbers;
}

// Returns the header's description in UTF-8: the program's name, a zero and the picture's name.
std::string Description(const EmfRecord& header) {
    constexpr std::size_t lengthAt = 60, offsetAt = 64;
    const std::uint64_t length = header.Word(lengthAt), offset = header.Word(offsetAt);
    if (offset == 0 || !header.Holds(offset, length * sizeof(char16_t))) return "";
    std::u16string text(static_cast<std::size_t>(length), u'\0');
    std::memcpy(text.data(), header.At(static_cast<std::size_t>(offset)), text.size() * sizeof(char16_t));
    text.erase(text.find_last_not_of(u'\0') + 1);
    std::ranges::replace(text, u'\0', u'|');
    return Utf8(std::filesystem::path(text));
}

class RecordList : public WholeMetafile {
public:
    RecordList(const std::string& path, bool json) : m_json(json) {
        Walk(path);
        m_lines.Write();
    }

    void ParseMetafileRecord(EmfRecord* record) override {
        std::array<char, 32> name = {};
        GetFunctionNameFromId(record->type, name.data(), name.size() - 1);
        ++m_number;
        m_object = JsonObject();
        if (m_json)
            m_object.Number("number", m_number).Text("name", name.data()).Number("size", record->size);
        else
            m_lines.Add(std::to_string(m_number) + '\t' + name.data() + '\t' + std::to_string(record->size));
        WholeMetafile::ParseMetafileRecord(record);
        if (m_json) m_lines.Add(m_object.Line());
    }

    void OnHeader(EmfRecord* record) override {
        const std::string description = Description(*record);
        for (const Field& field : kFields) AddField(field.label, NumbersOf(*record, field));
        if (m_json)
            m_object.Utf8Text("description", description);
        else
            m_lines.Add("description\t" + VisibleOnTerminal(description));
    }

private:
    void AddField(const char* label, const std::vector<std::int64_t>& numbers) {
        if (m_json) {
            m_object.Numbers(label, numbers);
            return;
        }
        std::string line = label;
        for (const std::int64_t& number : numbers)
            line += (&number == numbers.data() ? '\t' : ' ') + std::to_string(number);
        m_lines.Add(line);
    }

    const bool m_json;
    JsonObject m_object;
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
    WriteDocument(out, [&path](CFile& file) { Normaliser(file).Walk(path); });
}

void AddList(Command emf) {
    Command command = emf.Add("list", "List the records of a metafile: number, name and size in bytes");
    const auto path = std::make_shared<std::string>();
    const auto json = std::make_shared<bool>(false);
    command.AddPath("FILE", *path, "The metafile; - is standard input").Require();
    command.AddFlag("-j,--json", *json,
                    "Print one JSON object per line: number, name, size; in the first also bounds, frame, device, "
                    "millimetres, description");
    command.SetNotes(
        "The first record is followed by the header's bounds and frame (left, top, right, bottom), the device's\n"
        "size in pixels and millimetres, and the description.");
    command.AddExample("qv emf list drawing.emf");
    command.SetAction([path, json] { RecordList{*path, *json}; });
}

void AddNormalise(Command emf) {
    Command command = emf.Add("normalise", "Copy a metafile and clear the bytes that the format leaves undefined");
    const auto path = std::make_shared<std::string>(), out = std::make_shared<std::string>();
    command.AddPath("FILE", *path, "The metafile; - is standard input").Require();
    command.AddPath("OUT", *out, "The new file; may equal FILE, which is replaced atomically; - is standard output")
        .Require();
    command.AddExample("qv emf normalise drawing.emf clean.emf");
    command.SetAction([path, out] { Normalise(*path, *out); });
}

}  // namespace

void AddEmf(Command app) {
    Command emf = app.AddFamily("emf", "Inspect enhanced metafiles, and make them comparable");
    emf.AddExample("qv emf list drawing.emf");
    AddList(emf);
    AddNormalise(emf);
}

}  // namespace qv::tool
