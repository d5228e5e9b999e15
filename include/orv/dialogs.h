// The port that a user interface implements: message boxes and the long-operation dialogs.
//
// The engine never draws anything. It hands message boxes and dialog models to the installed
// `UserInterface` and lets it service its events between two records of a long operation. Without
// one the built-in silent interface shows nothing and presses the safe button.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orv {

enum class Icon { kNone, kCritical, kQuestion, kExclamation };
enum class Buttons { kOk, kOkCancel, kYesNo };
enum class Button { kOk, kCancel, kYes, kNo };

/// The button that changes nothing: Cancel, else No, else OK.
Button SafeButton(Buttons buttons);
/// Whether a box with these buttons has that one.
bool HasButton(Buttons buttons, Button button);

/// A message box. A line break in the text is the single character 13; an empty caption means the
/// host's own.
struct Message {
  std::wstring caption;
  std::wstring text;
  Icon icon = Icon::kNone;
  Buttons buttons = Buttons::kOk;
};

/// One label of a dialog. The name identifies it within the dialog and never changes.
struct DialogLabel {
  std::wstring name;
  std::wstring text;
  bool bold = false;
  bool visible = true;
};

/// The settings page of the export dialog. A user interface reads and changes it until the forward
/// button is pressed.
struct ExportSettings {
  bool choicesAvailable = false;     ///< whether the two container choices can be changed
  bool separatorsAvailable = false;  ///< whether the two separator boxes can be changed
  bool withProperties = true;    ///< the choice taken: a copy with properties, or of values only
  std::wstring fieldSeparator;   ///< as typed
  std::wstring recordSeparator;  ///< as typed
};

/// The model of one long-operation dialog. The operation owns it and writes it; a user interface
/// shows it, reads it and calls the handlers, none of which throws. A reference is good from
/// `UserInterface::Show` or `RunModal` until `Close` returns.
class Dialog {
 public:
  virtual ~Dialog() = default;

  /// "Progress", "CrFlt", "CompressForm" or "ExportData".
  virtual const std::wstring& name() const = 0;
  virtual const std::wstring& caption() const = 0;
  virtual const std::vector<DialogLabel>& labels() const = 0;
  /// The bar, in records or entries.
  virtual std::int32_t minimum() const = 0;
  virtual std::int32_t maximum() const = 0;
  virtual std::int32_t value() const = 0;
  /// The settings page, or nullptr for the dialogs that have none.
  virtual ExportSettings* settings() { return nullptr; }
  /// Whether the dialog waits for its forward button (its settings page is shown).
  virtual bool AwaitsForward() const { return false; }
  /// Whether the operation has closed the dialog.
  virtual bool closed() const = 0;
  /// Whether the cancel button of this dialog has made the cancel request (its confirmation, if
  /// any, answered with Yes).
  virtual bool cancelled() const = 0;

  /// The one-shot timer: starts the work. Returns when the work has ended, refused or been
  /// cancelled, or at once when the dialog first waits for its forward button.
  virtual void OnTimer() = 0;
  /// The forward button of the settings page; runs the work like `OnTimer`.
  virtual void OnForward() {}
  /// The cancel button. May show a question; never ends the work itself, the running loop does. A
  /// dialog whose work does not run is closed by a confirmed press.
  virtual void OnCancel() = 0;
  /// The window's close box: the cancel button while the work runs, otherwise the dialog closes
  /// without a question.
  virtual void OnClose() = 0;

 protected:
  Dialog() = default;
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;
};

/// What of a dialog has changed since it was last shown.
enum class DialogChange { kCaption, kLabel, kBar, kPage };

/// What a user interface implements. All calls come on the host's thread; none may throw.
class UserInterface {
 public:
  virtual ~UserInterface() = default;

  /// Shows a message box and returns the button chosen, one that the box has.
  virtual Button ShowMessage(const Message& message) = 0;
  /// Shows a dialog without blocking; the operation is running already and calls `Close` itself.
  /// `OnTimer` is not called.
  virtual void Show(Dialog& dialog) = 0;
  /// Shows a dialog, calls its `OnTimer` once when it is painted, and returns after `Close`. A
  /// dialog that is still open when `OnTimer` has returned stays until its forward or cancel button
  /// or its close box closes it. An interface without a person behind it calls `RunUnattended`.
  virtual void RunModal(Dialog& dialog) = 0;
  /// Something of the dialog changed. `label` is the label's index when `change` is kLabel.
  /// Painting may be coalesced.
  virtual void Changed(Dialog& dialog, DialogChange change, std::size_t label) = 0;
  /// Lets pending events run; called once a record. Handlers of the dialog may be called from
  /// inside.
  virtual void ServiceEvents() = 0;
  /// Takes the dialog off the screen. The model may be destroyed afterwards.
  virtual void Close(Dialog& dialog) = 0;
  /// Shows the busy pointer, or the arrow again.
  virtual void SetBusyPointer(bool busy) = 0;
  virtual void Beep() = 0;
};

/// Installs the interface that every operation of this process uses from now on and returns the
/// former one (nullptr for the silent one). nullptr installs the silent one. The caller keeps
/// ownership and keeps the object alive as long as it is installed. Not to be called while a dialog
/// is open.
UserInterface* InstallUserInterface(UserInterface* userInterface);

/// What `UserInterface::RunModal` does where nobody sits in front of the dialog: starts the work,
/// presses forward once if the dialog awaits that, and closes a dialog that is open even then.
void RunUnattended(Dialog& dialog);

}  // namespace orv
