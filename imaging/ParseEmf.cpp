#include "qvcommon/ParseEmf.h"

#include "imaging/EmfRecordReader.h"
#include "qvcommon/Exceptions.h"

namespace {

using qv::imaging::EmfRecordReader;

enum RecordType : DWORD {
    kHeader = 1,
    kSetWindowOrgEx = 10,
    kEndOfFile = 14,
    kEllipse = 42,
    kRectangle = 43,
    kRoundRect = 44,
    kExtCreateFontIndirectW = 82,
    kExtTextOutW = 84,
    kExtCreatePen = 95
};

enum ErrorNumber { kNotFound = 1, kBadHeader = 3, kUnreadableRecord = 5, kNoMemory = 6 };

const char* TextOf(int number) {
    switch (number) {
        case 0: return "";
        case kNotFound: return "File not found.";
        case 2: return "Expected an EMF file.";
        case kBadHeader: return "Invalid metafile header type.";
        case 4: return "Error reading metafile header.";
        case kUnreadableRecord: return "Error reading metafile record.";
        case kNoMemory: return "Unable to allocate memory for the following record.";
        default: return "Unknown error";
    }
}

}  // namespace

CParseEmf::~CParseEmf() = default;

int CParseEmf::ProcessFile(const char* path) {
    m_firstRecord = 0;
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone | CFile::modeNoInherit | CFile::typeBinary)) {
        Error(kNotFound);
        return 0;
    }
    const int result = ProcessMetafileRecords(file);
    file.Close();
    return result;
}

void CParseEmf::OnRoundRect(EmfRecord*) {}

void CParseEmf::OnRectangle(EmfRecord*) {}

void CParseEmf::OnEllipse(EmfRecord*) {}

void CParseEmf::OnHeader(EmfRecord*) {}

void CParseEmf::OnSetWindowOrgEx(EmfRecord*) {}

void CParseEmf::Error(int number) {
    ThrowQvException(TextOf(number), 48, number, 0);
}

int CParseEmf::ProcessMetafileRecords(CFile& file) {
    EmfRecordReader reader(file);
    EmfRecordReader::Result result;
    while ((result = reader.Next()) == EmfRecordReader::Result::Record) {
        const DWORD type = reader.Record()->type;  // before a hook changes it
        ParseMetafileRecord(reader.Record());
        if (type != kEndOfFile) continue;
        if (reader.Settle()) return 1;
        result = EmfRecordReader::Result::Unreadable;
        break;
    }
    if (result == EmfRecordReader::Result::Unreadable) Error(kUnreadableRecord);
    if (result == EmfRecordReader::Result::NoMemory) Error(kNoMemory);
    return 0;
}

void CParseEmf::CheckMetafileHeaderRecord(EmfRecord* record) {
    constexpr DWORD signature = 0x464D4520;  // the bytes " EMF"
    constexpr std::size_t signatureAt = 40;
    if (record->type != kHeader || record->Word(signatureAt) != signature) Error(kBadHeader);
}

void CParseEmf::ParseMetafileRecord(EmfRecord* record) {
    switch (record->type) {
        case kExtCreateFontIndirectW: return ParseExtCreateFontIndirectW(record);
        case kExtTextOutW: return ParseExtTextOutW(record);
        case kExtCreatePen: return ParseExtCreatePen(record);
        default: return ParseGenericMetafileRecord(record);
    }
}

void CParseEmf::ParseGenericMetafileRecord(EmfRecord* record) {
    if (m_firstRecord) {
        CheckMetafileHeaderRecord(record);
        OnHeader(record);
        m_firstRecord = 0;
        return;
    }
    switch (record->type) {
        case kSetWindowOrgEx: return OnSetWindowOrgEx(record);
        case kEllipse: return OnEllipse(record);
        case kRectangle: return OnRectangle(record);
        case kRoundRect: return OnRoundRect(record);
        default: return;
    }
}
