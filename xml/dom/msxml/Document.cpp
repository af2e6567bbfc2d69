#include <cstring>

#include "xml/dom/msxml/Problem.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

constexpr CLSID kDomDocument30 = {0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};

HRESULT Create(::IXMLDOMDocument** document) {
    constexpr DWORD anyServer = 7;
    return ::CoCreateInstance(kDomDocument30, nullptr, anyServer, kDocument, reinterpret_cast<void**>(document));
}

// A thread that never spoke of COM is made ready for it, and stays so.
HRESULT CreateWithCom(::IXMLDOMDocument** document) {
    const HRESULT result = Create(document);
    if (result != CO_E_NOTINITIALIZED) return result;
    const HRESULT ready = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    return ready < 0 ? ready : Create(document);
}

void SetProperty(::IXMLDOMDocument* document, std::string_view name, std::string_view value) {
    const auto extended = As<::IXMLDOMDocument2>(document, kDocument2);
    if (extended) extended->setProperty(Text(name).Get(), Variant(value).Get());
}

VARIANT_BOOL Flag(bool flag) {
    return flag ? VARIANT_TRUE : VARIANT_FALSE;
}

class ByteArray {
public:
    explicit ByteArray(std::string_view bytes)
        : m_array(::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()))) {
        void* data = nullptr;
        if (!m_array || ::SafeArrayAccessData(m_array, &data) < 0) _com_raise_error(_com_error::kOutOfMemory);
        if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
        ::SafeArrayUnaccessData(m_array);
    }
    ByteArray(const ByteArray&) = delete;
    ByteArray& operator=(const ByteArray&) = delete;
    ~ByteArray() { ::SafeArrayDestroy(m_array); }

    VARIANT AsVariant() const {
        VARIANT value;
        ::VariantInit(&value);
        value.vt = VT_ARRAY | VT_UI1;
        value.parray = m_array;
        return value;
    }

private:
    SAFEARRAY* m_array;
};

std::string BytesOf(::IStream* stream) {
    STATSTG state{};
    Check(stream->Stat(&state, STATFLAG_NONAME));
    std::string bytes(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
    const LARGE_INTEGER start{};
    Check(stream->Seek(start, STREAM_SEEK_SET, nullptr));
    ULONG count = 0;
    Check(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count));
    bytes.resize(count);
    return bytes;
}

IXMLDOMParseError ReadProblem(::IXMLDOMParseError* error) {
    long code = 0, line = 0, position = 0;
    Check(error->get_errorCode(&code));
    error->get_line(&line);
    error->get_linepos(&position);
    Text reason;
    error->get_reason(&reason);
    std::string text = reason.InCodePage();
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return {code, text, line, position};
}

// A DOM may know that a text is bad, but not where; the reader that it comes with does.
bool Load(Node& document, VARIANT_BOOL loaded, const VARIANT& input) {
    document.problem = {};
    if (loaded == VARIANT_TRUE) return true;
    if (Problem(document).get_line() == 0) document.problem = FindProblem(input);
    return false;
}

}  // namespace

Node* CreateDocument(HRESULT& error) {
    Owned<::IXMLDOMDocument> document;
    error = CreateWithCom(&document);
    if (error < 0) return nullptr;
    SetProperty(document.Get(), "SelectionLanguage", "XPath");
    document->put_resolveExternals(VARIANT_FALSE);
    return new Node{document.Release()};
}

void SetAsync(Node& document, bool async) {
    Check(ComDocument(document)->put_async(Flag(async)));
}

void SetValidate(Node& document, bool validate) {
    Check(ComDocument(document)->put_validateOnParse(Flag(validate)));
}

void SetKeepSpace(Node& document, bool keep) {
    Check(ComDocument(document)->put_preserveWhiteSpace(Flag(keep)));
}

// The document is emptied by a text that no DOM takes.
void SetProblem(Node& document, const IXMLDOMParseError& problem) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(ComDocument(document)->loadXML(Text("<").Get(), &loaded));
    document.problem = problem;
}

IXMLDOMParseError Problem(Node& document) {
    if (document.problem.get_errorCode() != 0) return document.problem;
    Owned<::IXMLDOMParseError> error;
    Check(ComDocument(document)->get_parseError(&error));
    return ReadProblem(error.Get());
}

bool LoadText(Node& document, std::string_view text) {
    const Variant input(text);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(ComDocument(document)->loadXML(input.Get().bstrVal, &loaded));
    return Load(document, loaded, input.Get());
}

bool LoadBytes(Node& document, std::string_view bytes) {
    const ByteArray input(bytes);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(ComDocument(document)->load(input.AsVariant(), &loaded));
    return Load(document, loaded, input.AsVariant());
}

std::string Save(Node& document) {
    Owned<::IStream> stream;
    Check(::CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    Check(ComDocument(document)->save(Variant(stream.Get()).Get()));
    return BytesOf(stream.Get());
}

IXMLDOMNode DocumentElement(Node& document) {
    Owned<::IXMLDOMElement> root;
    return Answer(ComDocument(document)->get_documentElement(&root), root);
}

IXMLDOMNode CreateElement(Node& document, std::string_view tag) {
    Owned<::IXMLDOMElement> element;
    return Answer(ComDocument(document)->createElement(Text(tag).Get(), &element), element);
}

}  // namespace qv::dom
