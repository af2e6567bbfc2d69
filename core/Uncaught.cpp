#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/framework/ComError.h"

namespace {

std::string TextOf(CException& error) {
    if (const auto* details = dynamic_cast<const IErrorDetails*>(&error)) return details->Describe().AsStd();
    char text[1024] = {};
    error.GetErrorMessage(text, sizeof text - 1);
    return text;
}

std::string TextOf(const _com_error& error) {
    const CString description = error.Description();
    return description.IsEmpty() ? error.ErrorMessage() : description.AsStd();
}

/// Returns the message of the exception in flight; empty if the user has already been informed. nullopt if its type has
/// no message, and if no exception is in flight.
std::optional<std::string> UncaughtText() try {
    const std::exception_ptr raised = std::current_exception();
    if (!raised) return std::nullopt;
    std::rethrow_exception(raised);
} catch (CUserException*) {
    return std::string();
} catch (CException* error) {
    return TextOf(*error);
} catch (const _com_error& error) {
    return TextOf(error);
} catch (const std::bad_alloc&) {
    return "not enough memory";
} catch (const std::exception& error) {
    return error.what();
} catch (const char* text) {
    return text;
} catch (...) {
    return std::nullopt;
}

std::string ProgramName() {
    const std::string path = qv::platform::CurrentProgram();
    std::string name = path.substr(path.find_last_of(qv::platform::HasDriveLetters() ? "\\/" : "/") + 1);
    if (name.ends_with(".exe")) name.resize(name.size() - 4);
    return name;
}

void Print(const std::string& text) {
    std::fprintf(stderr, "%s: %s\n", ProgramName().c_str(), text.c_str());
    std::fflush(stderr);
}

[[noreturn]] void EndProgram() {
    std::fflush(stdout);
    const std::optional<std::string> text = UncaughtText();
    if (text) {
        if (!text->empty()) Print(*text);
        std::_Exit(EXIT_FAILURE);
    }
    Print(std::current_exception() ? "ended by an exception of an unknown type" : "ended by std::terminate");
    std::abort();
}

}  // namespace

void QvReportUncaught() {
    std::set_terminate(EndProgram);
}
