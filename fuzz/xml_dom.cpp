// Arbitrary documents and paths: each is accepted or refused, and what is written can be read again.
#include "fuzz/FuzzInput.h"
#include "qvcommon/XmlHelper.h"

namespace {

template <class Action>
void Try(Action action) {
    try {
        action();
    } catch (const _com_error&) {
    }
}

void ReadAll(const CXmlHelper::Node& root, std::string_view path) {
    CString text;
    int number = 0;
    double real = 0;
    BOOL flag = 0;
    COleDateTime date;
    CStringArray texts;
    if (!CXmlHelper::GetString(root, path, text)) return;
    CXmlHelper::GetInteger(root, path, number);
    CXmlHelper::GetDouble(root, path, real);
    CXmlHelper::GetBool(root, path, flag);
    CXmlHelper::GetDate(root, path, date);
    CXmlHelper::GetStringArray(root, path, texts);
    const auto node = root.selectSingleNode(path);
    const CString way = CXmlHelper::GetNodePath(node, nullptr);
    if (way.Find('@') < 0) Require(root.selectSingleNode(way) == node, "a node's path leads to it");
}

// Such a path would create as many elements.
bool HasLongNumber(std::string_view path) {
    int digits = 0;
    for (const char c : path)
        if (digits = c >= '0' && c <= '9' ? digits + 1 : 0; digits > 2) return true;
    return false;
}

void Change(const CXmlHelper::Element& root, std::string_view path) {
    const auto document = root.get_ownerDocument();
    Try([&] { CXmlHelper::SetString(root, path, "x"); });
    Try([&] { CXmlHelper::AppendXml(root, "<x><a/>t<b/></x>", 0); });
    Try([&] { CXmlHelper::Sort(root, ".", 1); });
    Try([&] { CXmlHelper::SetXml(root, CXmlHelper::GetInnerXml(root)); });
    Try([&] { CXmlHelper::DeleteEmptyElements(root, ""); });
    Try([&] { CXmlHelper::CreateXmlPath(document, path, "v"); });
    Try([&] { CXmlHelper::DeleteXmlPath(document, path); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::string_view path = input.Text(), text = input.Text();
    const auto document = CXmlHelper::CreateDocument();
    document.put_preserveWhiteSpace(true);
    document.load(text);
    const auto root = CXmlHelper::GetDocumentElement(text);
    if (!root) return 0;
    const CString markup = root.get_xml();
    const auto again = CXmlHelper::GetDocumentElement(markup);
    Require(static_cast<bool>(again), "what was written is read");
    Require(again.get_xml() == markup, "it is what it was");
    Try([&] { ReadAll(root, path); });
    if (!HasLongNumber(path)) Change(root, path);
    return 0;
}
