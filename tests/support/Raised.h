#pragma once

#include <memory>

#include "qvcommon/framework/Exception.h"

/// Deletes an exception object that was caught by a pointer of any of these types.
struct ExceptionDelete {
    void operator()(CException* exception) const { exception->Delete(); }
    void operator()(CObject* exception) const { dynamic_cast<CException&>(*exception).Delete(); }
};

/// Runs the action and returns the exception it raised by pointer to E, or null when it raised none.
template <class E, class Action>
std::unique_ptr<E, ExceptionDelete> Raised(Action action) {
    try {
        action();
    } catch (E* exception) {
        return std::unique_ptr<E, ExceptionDelete>(exception);
    }
    return nullptr;
}
