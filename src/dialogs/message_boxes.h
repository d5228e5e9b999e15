// Message boxes, and the questions that more than one operation asks.
#pragma once

#include <string>

#include "orv/dialogs.h"

namespace orv::dialogs {

/// Shows a message box through the installed interface. The button returned is one that the box
/// has: any other answer counts as the safe button.
Button ShowMessage(const Message& message);

/// Shows a box with an OK button. An empty caption means the host's own.
void ShowNotice(std::wstring text, Icon icon, std::wstring caption = {});

/// Asks a Yes/No question and says whether the answer was Yes.
bool Confirm(std::wstring text, std::wstring caption);

/// Asks whether an existing file may be replaced. Only OK allows it.
bool ConfirmOverwrite();

}  // namespace orv::dialogs
