#include "qvcommon/ParseEmf.h"

#include <gtest/gtest.h>

#include <set>

#include "qvcommon/Exceptions.h"
#include "tests/support/Damage.h"
#include "tests/support/Metafile.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace qv::test;

// Records the hooks called, and the records as cleaned.
class Walk : public CParseEmf {
public:
    int ProcessMetafileRecords(CFile& file) override {
        m_firstRecord = checkHeader;
        return CParseEmf::ProcessMetafileRecords(file);
    }
    void ParseGenericMetafileRecord(EmfRecord* record) override {
        ++count;
        bytes.append(reinterpret_cast<const char*>(record), record->size);
        CParseEmf::ParseGenericMetafileRecord(record);
    }
    void OnHeader(EmfRecord*) override { hooks += "header "; }
    void OnSetWindowOrgEx(EmfRecord* record) override { hooks += "origin" + std::to_string(record->Word(12)) + " "; }
    void OnEllipse(EmfRecord*) override { hooks += "ellipse "; }
    void OnRectangle(EmfRecord*) override { hooks += "rectangle "; }
    void OnRoundRect(EmfRecord*) override { hooks += "round "; }

    int checkHeader = 0, count = 0;
    std::string bytes, hooks;
};

// Returns the result of a walk, or 100 and the code of the error that it raises.
int Outcome(CParseEmf& parser, const CString& path) {
    int result = -1;
    const auto error = Raised<CVorbexException>([&] { result = parser.ProcessFile(path); });
    return error ? 100 + static_cast<int>(error->GetCode()) : result;
}

// A file that loses its end while it is read.
class ShrinkingFile : public CFile {
public:
    using CFile::CFile;
    std::uint64_t GetLength() const override { return CFile::GetLength() + (1 << 20); }
};

class ParseEmf : public testing::Test {
protected:
    int Process(const std::string& bytes, int checkHeader = 0) {
        walk = Walk();
        walk.checkHeader = checkHeader;
        m_folder.Write("a.emf", bytes);
        return Outcome(walk, m_folder / "a.emf");
    }
    // The only record of a walk, cleaned.
    std::string Cleaned(const std::string& record) {
        EXPECT_EQ(Process(record), 0);
        return walk.bytes;
    }

    TempFolder m_folder;
    Walk walk;
};

TEST_F(ParseEmf, CallsHooksAndChecksTheHeaderOnlyWhenAsked) {
    const std::string figures = Record(42, Words({0})) + Record(43, Words({0})) + Record(44, Words({0})) +
                                Record(10, Words({3, 4})) + Record(45, Words({0})) + EndRecord();
    EXPECT_EQ(Process(HeaderRecord() + EndRecord() + "more"), 1);
    EXPECT_EQ(walk.hooks, "");
    EXPECT_EQ(Process(figures), 1);
    EXPECT_EQ(walk.hooks, "ellipse rectangle round origin4 ");
    EXPECT_EQ(walk.bytes, figures);

    const std::pair<std::string, int> checked[] = {{HeaderRecord() + figures, 1},
                                                   {HeaderRecord().replace(40, 1, "X") + EndRecord(), 103},
                                                   {Record(2, HeaderRecord().substr(8)), 103},
                                                   {Record(1, Words({0})), 103}};
    for (const auto& [bytes, expected] : checked) {
        EXPECT_EQ(Process(bytes, 1), expected);
        EXPECT_EQ(walk.hooks, expected == 1 ? "header ellipse rectangle round origin4 " : "");
    }
}

TEST_F(ParseEmf, RejectsInvalidRecordSizes) {
    const std::string head = HeaderRecord(), end = EndRecord();
    const auto sized = [&](std::uint32_t size) { return head + Words({43, size, 0, 0, 0, 0}) + end; };
    const struct {
        const char* defect;
        std::string bytes;
        int outcome, records;
    } files[] = {{"empty", "", 0, 0},
                 {"no end record", head, 0, 1},
                 {"cut in a record's start", head + end.substr(0, 11), 0, 1},
                 {"cut in a record's body", head + end.substr(0, 12), 105, 1},
                 {"size 0", sized(0), 105, 1},
                 {"size 7", sized(7), 105, 1},
                 {"size 8, then a record of size 24", head + Words({43, 8, 43, 24, 0, 0, 0, 0}) + end, 1, 4},
                 {"unaligned", head + Record(43, "12345") + Record(10, "123456") + end, 1, 4},
                 {"up to the end", sized(44), 0, 2},
                 {"beyond the end", sized(45), 105, 1},
                 {"0xFFFFFFFF", sized(0xFFFFFFFF), 105, 1},
                 {"larger than any block", head + Record(70, std::string(3 << 20, 'c')) + end, 1, 3}};
    for (const auto& file : files) {
        EXPECT_EQ(Process(file.bytes), file.outcome) << file.defect;
        EXPECT_EQ(walk.count, file.records) << file.defect;
    }
    EXPECT_EQ(Outcome(walk, m_folder / "none.emf"), 101);
}

TEST_F(ParseEmf, StopsAfterEndRecordAndClosesOnError) {
    m_folder.Write("a.emf", "xx" + SmallMetafile(7) + "more");
    CFile file(m_folder / "a.emf", CFile::modeRead);
    file.Seek(2, CFile::begin);
    EXPECT_EQ(walk.ProcessMetafileRecords(file), 1);
    EXPECT_EQ(file.GetPosition(), 2 + SmallMetafile(7).size());
    file.Close();
    {
        const SystemFaults faults(SystemFaults::Always(qv::platform::CallKind::Read, qv::platform::FileCause::HardIO));
        EXPECT_EQ(Outcome(walk, m_folder / "a.emf"), 105);
    }
    EXPECT_EQ(Raised<CVorbexException>([&] { walk.ProcessMetafileRecords(file); })->GetCode(), 5) << "it is closed";
    EXPECT_TRUE(file.Open(m_folder / "a.emf", CFile::modeRead | CFile::shareExclusive));

    m_folder.Write("cut.emf", HeaderRecord() + Record(70, std::string(1 << 20, 'c')).substr(0, 1 << 19));
    ShrinkingFile shrinking(m_folder / "cut.emf", CFile::modeRead);
    const auto error = Raised<CVorbexException>([&] { walk.ProcessMetafileRecords(shrinking); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetCode(), 5);
}

TEST_F(ParseEmf, ClearsUndefinedBytes) {
    EXPECT_EQ(Process(SmallMetafile(u'#')), 1);
    EXPECT_EQ(walk.bytes, SmallMetafile(0));
    for (const std::string tail : {"", "1", "123"})
        EXPECT_EQ(Cleaned(FontRecord('#', tail)), FontRecord(0, std::string(tail.size(), '\0')));
    EXPECT_EQ(Cleaned(FontRecord('#', "1234")), FontRecord(0, "1234"));
    EXPECT_EQ(Cleaned(TextRecord(u"even", '#')), TextRecord(u"even", '#'));
    const struct { std::uint32_t style, hatch; } pens[] = {{0, 0}, {1, 0}, {2, 9}};
    for (const auto& [style, hatch] : pens) EXPECT_EQ(Cleaned(PenRecord(style, 9)), PenRecord(style, hatch));
}

TEST_F(ParseEmf, IgnoresFieldsBeyondRecord) {
    // The last one that fits: 3 characters at 78 end the record with their padding.
    EXPECT_EQ(Cleaned(TextRecord(u"odd", '#', 80)), TextRecord(u"odd", '#', 80).replace(86, 2, 2, '\0'));
    for (const std::uint32_t offset : {0u, 1u, 51u, 83u, 0xFFFFFFFEu})
        EXPECT_EQ(Cleaned(TextRecord(u"odd", '#', offset)), TextRecord(u"odd", '#', offset)) << offset;
    for (const std::uint32_t count : {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000001u}) {
        const std::string record = TextRecord(u"odd", '#').replace(44, 4, Words({count}));
        EXPECT_EQ(Cleaned(record), record) << count;
    }
    for (const auto& [rough, clean] :
         {std::pair(FontRecord('#', "12"), FontRecord(0, {2, '\0'})), std::pair(PenRecord(0, 9), PenRecord(0, 0))})
        for (std::size_t size = 12; size < rough.size(); ++size) {
            const auto cut = [&](const std::string& whole) { return Record(whole[0], whole.substr(8, size - 8)); };
            const std::string cleaned = Cleaned(cut(rough));
            // A character or word of which one byte is left stays as it was.
            EXPECT_EQ(cleaned.substr(0, size & ~3u), cut(clean).substr(0, size & ~3u)) << size;
        }
}

TEST(ParseEmfTables, ErrorMessagesAndTypeNames) {
    CParseEmf parser;
    const std::string texts =
        "|File not found.|Expected an EMF file.|Invalid metafile header type.|Error reading metafile header.|"
        "Error reading metafile record.|Unable to allocate memory for the following record.|Unknown error|";
    std::string raised;
    for (int number = 0; number < 8; ++number) {
        const auto error = Raised<CVorbexException>([&] { parser.Error(number); });
        (raised += error->GetText()) += '|';
        EXPECT_EQ(error->GetCode(), number);
        EXPECT_EQ(error->GetSeverity() * 10 + error->GetReportErrorCode(), 480);
    }
    EXPECT_EQ(raised, texts);
    const auto name = [&](unsigned long type) {
        char text[40] = {};
        parser.GetFunctionNameFromId(type, text, sizeof text);
        return std::string(text);
    };
    std::string some;
    for (const unsigned long type : {1ul, 14ul, 66ul, 84ul, 101ul, 0ul, 69ul, 100ul, 0x1ABCDEFul})
        some += name(type) + '|';
    EXPECT_EQ(some,
              "EMR_HEADER|EMR_EOF|EMR_WIDENPATH|EMR_EXTTEXTOUTW|EMR_DELETECOLORSPACE|Unknown function: 0|"
              "Unknown function: 45|Unknown function: 64|Unknown function: CDEF|");
    std::set<std::string> known;
    for (unsigned long type = 0; type < 300; ++type)
        if (name(type).starts_with("EMR_")) known.insert(name(type));
    EXPECT_EQ(known.size(), 99u);
    char filled[] = "1234567";
    parser.GetFunctionNameFromId(14, filled, 5);
    EXPECT_STREQ(filled, "EMR_E67");

    const ID_NAME_PAIR table[] = {{5, "Five"}, {6, "six"}, {5, "FIVE"}};
    EXPECT_EQ(parser.GetTableIndexFromId(5, table, 3), 0);
    EXPECT_EQ(parser.GetTableIndexFromId(7, table, 3), -1);
    for (const char* const locale : {"C", "tr_TR.UTF-8"}) {
        const ScopedLocale scope(locale);
        EXPECT_EQ(parser.GetTableIndexFromName("SIX", table, 3), 1) << locale;
    }
    EXPECT_EQ(parser.GetTableIndexFromName("six", table, 1), -1);
}

// Every cut and every flipped bit of a file ends in a result or a documented error, and the records never exceed the file.
TEST_F(ParseEmf, SurvivesTruncationAndBitFlips) {
    const std::string good = SmallMetafile('#');
    CFile file(m_folder / "a.emf", CFile::modeCreate | CFile::modeReadWrite);
    std::set<int> outcomes;
    ForEachDamage(file, good, [&] {
        walk = Walk();
        walk.checkHeader = 1;
        int result = -1;
        const auto error = Raised<CVorbexException>([&] { result = walk.ProcessMetafileRecords(file); });
        outcomes.insert(error ? 100 + static_cast<int>(error->GetCode()) : result);
        EXPECT_LE(walk.bytes.size(), good.size());
    });
    EXPECT_EQ(outcomes, (std::set<int>{0, 1, 103, 105}));
}

}  // namespace
