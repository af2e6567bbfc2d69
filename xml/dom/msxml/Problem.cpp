#include "xml/dom/msxml/Problem.h"

#include <new>

#include "platform/Text.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

constexpr CLSID kReader30 = {0x3124C396, 0xFB13, 0x4836, {0xA6, 0xAD, 0x13, 0x17, 0xF1, 0x71, 0x36, 0x88}};
constexpr IID kReader = {0xA4F96ED0, 0xF829, 0x476E, {0x81, 0xC0, 0xCD, 0xC7, 0xBD, 0x2A, 0x08, 0x02}};
constexpr IID kErrorHandler = {0xA60511C4, 0xCCF5, 0x479E, {0x98, 0xA3, 0xDC, 0x8D, 0xC5, 0x45, 0xB7, 0xD0}};

std::string Reason(const wchar_t* text) {
    std::string reason = text ? platform::FromWide(reinterpret_cast<const char16_t*>(text)) : "";
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r')) reason.pop_back();
    return reason.empty() ? "error" : reason;
}

// COM interfaces have no virtual destructors; this object is never deleted through one.
#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

// Keeps the first error. Lives on the stack, regardless of its reference count.
class FirstError final : public ::ISAXErrorHandler {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == kErrorHandler || iid == IID_IUnknown ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE error(::ISAXLocator* where, const wchar_t* text, HRESULT code) override {
        return Keep(where, text, code);
    }
    HRESULT STDMETHODCALLTYPE fatalError(::ISAXLocator* where, const wchar_t* text, HRESULT code) override {
        return Keep(where, text, code);
    }
    HRESULT STDMETHODCALLTYPE ignorableWarning(::ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }

    IXMLDOMParseError problem;

private:
    // Exceptions must not reach the reader.
    HRESULT Keep(::ISAXLocator* where, const wchar_t* text, HRESULT code) noexcept try {
        if (problem.get_errorCode() != 0) return S_OK;
        int line = 0, column = 0;
        if (where) {
            where->getLineNumber(&line);
            where->getColumnNumber(&column);
        }
        problem = {code < 0 ? code : E_FAIL, Reason(text), line, column};
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
};

}  // namespace

IXMLDOMParseError FindProblem(const VARIANT& input) {
    ComPtr<::ISAXXMLReader> reader;
    if (::CoCreateInstance(kReader30, nullptr, CLSCTX_ALL, kReader, reader.ReceiveAny()) < 0) return {};
    FirstError first;
    reader->putErrorHandler(&first);
    reader->parse(input);
    reader->putErrorHandler(nullptr);
    return first.problem;
}

}  // namespace qv::dom
