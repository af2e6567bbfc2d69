#pragma once

#include <memory>

/// What ends an exception object that was caught by pointer.
struct ExceptionDelete {
    template <class E>
    void operator()(E* exception) const {
        exception->Delete();
    }
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
