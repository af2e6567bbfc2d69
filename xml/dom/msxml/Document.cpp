#include "xml/dom/CodePage.h"
#include "xml/dom/Held.h"
#include "xml/dom/Markup.h"
#include "xml/dom/msxml/Problem.h"
#include "xml/dom/msxml/screening/Decoding.h"
#include "xml/dom/msxml/screening/Screening.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

constexpr CLSID kDomDocument30 = {0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};

HRESULT Create(::IXMLDOMDocument** document) {
    constexpr DWORD anyServer = 7;
    return ::CoCreateInstance(kDomDocument30, nullptr, anyServer, kDocument, reinterpret_cast<void**>(document));
}

// Initializes COM on a thread that has not done so; it stays initialized.
HRESULT CreateWithCom(::IXMLDOMDocument** document) {
    const HRESULT result = Create(document);
    if (result != CO_E_NOTINITIALIZED) return result;
    const HRESULT ready = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    return ready < 0 ? ready : Create(document);
}

void SetProperty(::IXMLDOMDocument* document, std::string_view name, std::string_view value) {
    const auto extended = QueryFor<::IXMLDOMDocument2>(document, kDocument2);
    if (extended) extended->setProperty(Text(name).Get(), Variant(value).Get());
}

VARIANT_BOOL Flag(bool flag) {
    return flag ? VARIANT_TRUE : VARIANT_FALSE;
}

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
    std::string text = ToCodePage(reason.InUtf8());
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return {code, text, line, position};
}

// Returns an empty string if the DOM cannot write the document.
std::string Written(Node& document) {
    ComPtr<::IStream> stream;
    Check(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    return ComDocument(document)->save(Variant(stream.Get()).Get()) < 0 ? std::string() : BytesOf(stream.Get());
}

std::string MarkupIn(Node& document) {
    Retain(document);
    return MarkupOf(IXMLDOMNode(&document));
}

// Whether the bytes, parsed again, equal the document.
bool Means(std::string_view bytes, Node& document) {
    HRESULT error = 0;
    const MSXML2::IXMLDOMDocument copy(CreateDocument(error));
    SetAsync(copy.Get(), false);
    VARIANT_BOOL keepSpace = VARIANT_TRUE;
    ComDocument(document)->get_preserveWhiteSpace(&keepSpace);
    SetKeepSpace(copy.Get(), keepSpace == VARIANT_TRUE);
    return LoadBytes(copy.Get(), bytes) && MarkupIn(copy.Get()) == MarkupIn(document);
}

std::string MarkupOfType(Node& type) {
    Text markup;
    return Com(type)->get_xml(&markup) == S_OK ? markup.InUtf8() : "";
}

// With or without the document type declaration: its defaults may no longer fit the tree.
std::string WrittenHere(Node& document, bool withType) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    for (const IXMLDOMNode& child : ChildrenOfDocument(document))
        if (child.get_nodeType() != MSXML2::NODE_DOCUMENT_TYPE)
            text += MarkupOf(child);
        else if (withType)
            text += MarkupOfType(child.Get());
    return text;
}

// Returns the text with the encoding in its declaration, if any, replaced.
std::string Declared(std::string text, std::string_view encoding) {
    const std::string_view declared = DeclaredEncoding(text);
    if (declared.empty()) return text;
    return text.replace(static_cast<std::size_t>(declared.data() - text.data()), declared.size(), encoding);
}

bool Passes(Node& document, std::string_view text) {
    const IXMLDOMParseError problem = text.size() > kLongestDocument ? TooLong() : Screen(text);
    if (problem.get_errorCode() == 0) return true;
    SetProblem(document, problem);
    return false;
}

// A DOM may report that a text is invalid, but not where; its SAX reader does.
bool Read(Node& document, std::string_view text) {
    const Variant input(text);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(ComDocument(document)->loadXML(input.Get().bstrVal, &loaded));
    document.problem = {};
    if (loaded == VARIANT_TRUE) return true;
    if (Problem(document).get_line() == 0) document.problem = FindProblem(input.Get());
    return false;
}

}  // namespace

Node* CreateDocument(HRESULT& error) {
    ComPtr<::IXMLDOMDocument> document;
    error = CreateWithCom(document.Receive());
    if (error < 0) return nullptr;
    SetProperty(document.Get(), "SelectionLanguage", "XPath");
    document->put_resolveExternals(VARIANT_FALSE);
    return new Node{document.Detach()};
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

// Loading a text that every DOM refuses empties the document.
void SetProblem(Node& document, const IXMLDOMParseError& problem) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(ComDocument(document)->loadXML(Text("<").Get(), &loaded));
    document.problem = problem;
}

IXMLDOMParseError Problem(Node& document) {
    if (document.problem.get_errorCode() != 0) return document.problem;
    ComPtr<::IXMLDOMParseError> error;
    Check(ComDocument(document)->get_parseError(error.Receive()));
    return ReadProblem(error.Get());
}

bool LoadText(Node& document, std::string_view text) {
    return Passes(document, text) && Read(document, text);
}

// Decoded here, so that the screened text is the one that the DOM reads. The DOM may not know the encoding that the
// text still declares.
bool LoadBytes(Node& document, std::string_view bytes) {
    std::optional<std::string> text = Decode(bytes);
    if (!text) {
        SetProblem(
            document,
            {kRefused, "The document is not in the encoding that it declares, or the encoding is unknown", 1, 1});
        return false;
    }
    if (!Passes(document, *text)) return false;
    return Read(document, *text) ||
           (!DeclaredEncoding(*text).empty() && Read(document, Declared(std::move(*text), "UTF-8")));
}

// Some DOMs write UTF-8 regardless of what they declare, and omit declarations that moved nodes need.
std::string Save(Node& document) {
    std::string bytes = Written(document);
    if (Means(bytes, document)) return bytes;
    bytes = Declared(std::move(bytes), "UTF-8");
    for (const bool type : {true, false}) {
        if (Means(bytes, document)) return bytes;
        bytes = WrittenHere(document, type);
    }
    return bytes;
}

IXMLDOMNode DocumentElement(Node& document) {
    ComPtr<::IXMLDOMElement> root;
    return Answer(ComDocument(document)->get_documentElement(root.Receive()), root);
}

IXMLDOMNode CreateElement(Node& document, std::string_view tag, Node* scope) {
    const std::string_view prefix = PrefixOf(tag);
    const std::optional<std::string> uri = prefix.empty() ? std::string()
                                           : scope        ? UriOf(*scope, prefix)
                                                          : std::nullopt;
    if (!uri || (!prefix.empty() && uri->empty())) return nullptr;
    VARIANT type;
    ::VariantInit(&type);
    type.vt = VT_I4;
    type.lVal = ::NODE_ELEMENT;
    ComPtr<::IXMLDOMNode> element;
    return Answer(ComDocument(document)->createNode(type, Text(tag).Get(), Text(*uri).Get(), element.Receive()),
                  element);
}

}  // namespace qv::dom
