#pragma once

/// @file Dialogs and their controls. On Linux they exist in memory only, invisibly, and programs simulate the user. A
/// window must be used by the thread that created it.

#include <cstdint>
#include <string>

#include "platform/WindowHandle.h"

namespace qv::platform {

enum class WindowKind { Dialog, Edit, ComboBox, ListBox };

/// Creates a hidden window; a control needs its dialog. Returns null if the system refuses. Destroying a dialog
/// destroys its controls.
WindowHandle MakeWindow(WindowKind kind, WindowHandle dialog, int id);
void EndWindow(WindowHandle window);

/// Returns the control with this number; null if it does not exist.
WindowHandle ControlOf(WindowHandle dialog, int id);

std::string TextOf(WindowHandle window);
void PutText(WindowHandle window, const std::string& text);
/// Selects the combo box's item that begins with the text, ignoring case; without one the text is stored in its field.
void ChooseText(WindowHandle comboBox, const std::string& text);

/// Gives a window the keyboard focus, and selects all of an edit control's text if requested.
void FocusOn(WindowHandle window, bool markAll);
WindowHandle FocusedWindow();

/// Items of a combo box or list box, from 0; each item of a list box has a number, 0 by default.
void AddItem(WindowHandle box, WindowKind kind, const std::string& text);
int ItemCount(WindowHandle listBox);
void SetItemData(WindowHandle listBox, int item, std::intptr_t data);
std::intptr_t ItemData(WindowHandle listBox, int item);

}  // namespace qv::platform
