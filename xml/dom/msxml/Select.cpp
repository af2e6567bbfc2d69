#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

// Returns the expression or raises an error: some DOMs accept a text that is not a path.
std::string Checked(std::string_view path) {
    const std::optional<std::string> xpath = ToXPath(path);
    if (!xpath || xpath->empty()) _com_raise_error(_com_error::kFail, "the path cannot be read");
    return *xpath;
}

HRESULT CheckPath(HRESULT result) {
    if (result < 0) _com_raise_error(_com_error::kFail, "the path selects no nodes");
    return result;
}

}  // namespace

IXMLDOMNode SelectFirst(Node& context, std::string_view path) {
    ComPtr<::IXMLDOMNode> found;
    CheckPath(Com(context)->selectSingleNode(Text(Checked(path)).Get(), found.Receive()));
    return HandleTo(found.Detach());
}

std::vector<IXMLDOMNode> SelectAll(Node& context, std::string_view path) {
    ComPtr<::IXMLDOMNodeList> list;
    CheckPath(Com(context)->selectNodes(Text(Checked(path)).Get(), list.Receive()));
    std::vector<IXMLDOMNode> all;
    for (;;) {
        ComPtr<::IXMLDOMNode> node;
        if (Check(list->nextNode(node.Receive())) != S_OK || !node) return all;
        all.push_back(HandleTo(node.Detach()));
    }
}

}  // namespace qv::dom
