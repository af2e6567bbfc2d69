#pragma once

#include "qvcommon/XmlDom.h"

/// The code of the _com_error that the action raises; 0 when it raises none.
template <class Action>
HRESULT ComCodeOf(Action action) {
    try {
        action();
        return 0;
    } catch (const _com_error& error) {
        return error.Error();
    }
}
