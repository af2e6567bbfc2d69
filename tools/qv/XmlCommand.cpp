#include <filesystem>
#include <functional>
#include <locale>
#include <memory>

#include "qvcommon/LockFile.h"
#include "qvcommon/XmlHelper.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Numbers.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"
#include "tools/qv/XmlValueEdit.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;
using Document = MSXML2::IXMLDOMDocument;

struct Options {
    std::string file, path, value, type = "string";
};

Document Load(const Options& options, const std::string& bytes, bool keepSpace) {
    Document document = CXmlHelper::CreateDocument();
    document.put_preserveWhiteSpace(keepSpace);
    if (document.load(bytes)) return document;
    const auto problem = document.get_parseError();
    throw CommandError(Native(options.file) + ": line " + std::to_string(problem.get_line()) + ", column " +
                       std::to_string(problem.get_linepos()) + ": " + problem.get_reason().AsStd());
}

/// Holds the document's lock while a value is changed: no other qv, and no program that locks its documents, changes
/// the file meanwhile. Standard input has no lock.
class LockedDocument {
public:
    explicit LockedDocument(const std::string& document) {
        constexpr UINT kPatience = 30000;
        if (IsStandardStream(document)) return;
        m_lock.SetSourceFile(document.c_str());
        if (m_lock.LockFor(kPatience)) return;
        const CString holder = m_lock.GetLockedBy();
        if (!holder.IsEmpty()) throw CommandError(Native(document) + " is locked by " + holder.AsStd());
        throw new CFileException(m_lock.GetLockException());
    }

private:
    CLockFile m_lock;
};

/// Returns the file's bytes with only the value changed, if nothing else was changed; otherwise the document as saved.
std::string BytesOf(const Document& document, const std::string& before, const Options& options) {
    std::string saved = document.save();
    const auto place = PlaceOfValue(document, options.path);
    const auto edited = place ? WithValueOf(before, saved, *place) : std::nullopt;
    if (!edited) return saved;
    const Document check = CXmlHelper::CreateDocument();
    check.put_preserveWhiteSpace(true);
    return check.load(*edited) && check.save() == saved ? *edited : saved;
}

void Save(const Options& options, const Document& document, const std::string& before) {
    const std::string bytes = BytesOf(document, before, options);
    WriteDocument(options.file, [&bytes](CFile& file) { file.Write(bytes.data(), static_cast<UINT>(bytes.size())); });
}

void Print(const CString& line) {
    AfxWriteStandardOutput(line + "\n");
}

template <class T>
T Number(const std::string& text) {
    T value{};
    if (!ParseNumber(text, value)) throw std::invalid_argument(text);
    return value;
}

BOOL TruthValue(const std::string& text) {
    std::string value = text;
    for (char& c : value) c = std::tolower(c, std::locale::classic());
    if (value != "true" && value != "false") throw std::invalid_argument(text);
    return value == "true";
}

COleDateTime Date(const std::string& text) {
    COleDateTime date;
    if (!date.ParseDateTime(text)) throw std::invalid_argument(text);
    return date;
}

// Refuses texts that the library would read as 0.
void CheckValue(const std::string& type, const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n"), last = text.find_last_not_of(" \t\r\n");
    const std::string value = first == text.npos ? "" : text.substr(first, last - first + 1);
    if (type == "integer") Number<int>(value);
    if (type == "double") Number<double>(value);
    if (type == "bool" && value.find_first_not_of("-0123456789") != value.npos) TruthValue(value);
    if (type == "date") Date(value);
}

// Sets the value at the path in the form of its type; returns false if nothing is there.
bool SetValue(const Document& document, const Options& options) {
    const std::string& value = options.value;
    try {
        if (options.type == "integer") return CXmlHelper::SetInteger(document, options.path, Number<int>(value));
        if (options.type == "double") return CXmlHelper::SetDouble(document, options.path, Number<double>(value));
        if (options.type == "bool") return CXmlHelper::SetBool(document, options.path, TruthValue(value));
        if (options.type == "date") return CXmlHelper::SetDate(document, options.path, Date(value));
    } catch (const std::invalid_argument&) {
        throw CommandError("\"" + value + "\" is not a valid " + options.type);
    }
    return CXmlHelper::SetString(document, options.path, value);
}

// Returns the value as its type reads and writes it.
bool GetValue(const Document& document, const Options& options, CString& text) {
    if (const auto node = document.selectSingleNode(options.path)) try {
            CheckValue(options.type, CString(node.get_text()).AsStd());
        } catch (const std::invalid_argument&) {
            throw CommandError("\"" + CString(node.get_text()).AsStd() + "\" at " + options.path + " is not a valid " +
                               options.type);
        }
    const auto formatted = [&](auto value, auto get, auto set) {
        if (!get(document, options.path, value, 0)) return false;
        const auto scratch = CXmlHelper::GetDocumentElement("<value/>");
        set(scratch, ".", value, 0);
        return CXmlHelper::GetString(scratch, ".", text, 0) != 0;
    };
    using Helper = CXmlHelper;
    if (options.type == "integer") return formatted(0, Helper::GetInteger, Helper::SetInteger);
    if (options.type == "double") return formatted(0.0, Helper::GetDouble, Helper::SetDouble);
    if (options.type == "bool") return formatted(BOOL{0}, Helper::GetBool, Helper::SetBool);
    if (options.type == "date") return formatted(COleDateTime(), Helper::GetDate, Helper::SetDate);
    const auto node = document.selectSingleNode(options.path);
    if (node) text = node.get_text();
    return static_cast<bool>(node);
}

[[noreturn]] void NothingThere(const Options& options) {
    throw CommandError("there is nothing at " + options.path + " in " + Native(options.file));
}

void Get(const Options& options) {
    CString text;
    if (!GetValue(Load(options, ReadDocument(options.file), false), options, text)) NothingThere(options);
    Print(text);
}

void Set(const Options& options) {
    const LockedDocument lock(options.file);
    const std::string before = ReadDocument(options.file);
    const Document document = Load(options, before, true);
    if (!SetValue(document, options)) NothingThere(options);
    Save(options, document, before);
}

void Create(const Options& options, bool hasValue) {
    const LockedDocument lock(options.file);
    const bool isStream = IsStandardStream(options.file),
               exists = isStream || fs::exists(PathFromArgument(options.file));
    const std::string before = exists ? ReadDocument(options.file) : std::string();
    const bool isNew = isStream ? before.empty() : !exists;
    const Document document = !isNew ? Load(options, before, true) : CXmlHelper::CreateDocument();
    const CString made = CXmlHelper::CreateXmlPath(document, options.path);
    if (hasValue && !SetValue(document, options)) NothingThere(options);
    Save(options, document, before);
    if (!isStream && !IsQuiet()) Print(made);
}

void Run(const std::function<void()>& action) {
    try {
        action();
    } catch (const _com_error& error) {
        const std::string reason = error.Description().AsStd();
        throw CommandError(std::string(error.ErrorMessage()) + (reason.empty() ? "" : ": ") + reason);
    }
}

Command AddAction(Command xml, const char* name, const char* description, const char* example,
                  const std::shared_ptr<Options>& options) {
    Command action = xml.Add(name, description);
    action.AddExample(example);
    action.AddPath("FILE", options->file, "The XML document; - reads standard input").Require();
    action.AddOption("PATH", options->path, "The path from the document: names, indexes from 0, a final @name")
        .Require();
    action.AddOption("-t,--type", options->type, "How the value is read and written")
        .OneOf({"string", "integer", "double", "bool", "date"})
        .ShowDefault();
    return action;
}

}  // namespace

void AddXml(Command app) {
    Command xml = app.AddFamily("xml", "Read and change values in XML documents, by path");
    xml.AddExample("qv xml get settings.xml settings/window/@width --type integer");
    const auto options = std::make_shared<Options>();
    AddAction(xml, "get", "Write the value at a path", "qv xml get settings.xml settings/name[2]", options)
        .SetAction([options] { Run([&] { Get(*options); }); });
    Command set =
        AddAction(xml, "set", "Change the value at an existing path; with -, write the document to standard output",
                  "qv xml set settings.xml settings/seen \"5 May 2004\" --type date", options);
    set.AddOption("VALUE", options->value, "The new value").Require();
    set.SetAction([options] { Run([&] { Set(*options); }); });
    Command create =
        AddAction(xml, "create",
                  "Create a path, and the file if missing, and write the path with all indexes; with -, the document",
                  "qv xml create settings.xml settings/name[2] Anna", options);
    const Option value = create.AddOption("VALUE", options->value, "The value to set");
    AddQuiet(create, "Do not write the path");
    create.SetAction([options, value] { Run([&] { Create(*options, value.IsGiven()); }); });
}

}  // namespace qv::tool
