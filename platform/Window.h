#pragma once

/// @file Dialogs and their controls. On Linux they live in memory only: nobody sees them, and programs take the user's
/// part. A window belongs to the thread that made it.

#include <cstdint>
#include <string>

#include "platform/WindowHandle.h"

namespace qv::platform {

enum class WindowKind { Dialog, Edit, ComboBox, ListBox };

/// Makes a window that is not shown; a control needs its dialog. Null when the system refuses. Ending a dialog ends its
/// controls.
WindowHandle MakeWindow(WindowKind kind, WindowHandle dialog, int id);
void EndWindow(WindowHandle window);

/// The control of this number; null when there is none.
WindowHandle ControlOf(WindowHandle dialog, int id);

std::string TextOf(WindowHandle window);
void PutText(WindowHandle window, const std::string& text);
/// Chooses the combo box's item that begins with the text, without regard to case; without one the text is put into its
/// field.
void ChooseText(WindowHandle comboBox, const std::string& text);

/// Gives the keyboard to a window, and marks all of an edit control's text if asked to.
void FocusOn(WindowHandle window, bool markAll);
WindowHandle FocusedWindow();

/// Items of a combo box or list box, from 0; each of a list box has a number of its own, 0 at first.
void AddItem(WindowHandle box, WindowKind kind, const std::string& text);
int ItemCount(WindowHandle listBox);
void SetItemData(WindowHandle listBox, int item, std::intptr_t data);
std::intptr_t ItemData(WindowHandle listBox, int item);

}  // namespace qv::platform
