#include "dialogs/silent_interface.h"

#include <gtest/gtest.h>

#include "dialogs/compress_form.h"
#include "dialogs/cr_flt.h"
#include "dialogs/installed_interface.h"
#include "dialogs/message_boxes.h"
#include "dialogs/progress.h"

namespace orv::dialogs {
namespace {

TEST(SilentInterface, IsThereWhenNothingIsInstalled) {
  EXPECT_NE(dynamic_cast<SilentInterface*>(&InstalledInterface()), nullptr);
}

TEST(SilentInterface, PressesTheSafeButton) {
  EXPECT_EQ(ShowMessage({L"", L"", Icon::kNone, Buttons::kOk}), Button::kOk);
  EXPECT_FALSE(Confirm(L"q", L"c"));
  EXPECT_FALSE(ConfirmOverwrite());
}

TEST(SilentInterface, RunsTheWorkOfAModalDialog) {
  int runs = 0;
  CrFlt dialog([&runs](CrFlt&) { runs++; });
  dialog.RunModal();
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(dialog.closed());
}

TEST(SilentInterface, ClosesADialogThatItsWorkLeavesOpen) {
  CompressForm dialog([](CompressForm&) {});
  dialog.RunModal();
  EXPECT_TRUE(dialog.closed());
  EXPECT_FALSE(dialog.cancelled());
  EXPECT_FALSE(DialogModel::CancelRequested());
}

TEST(SilentInterface, LetsAnOperationRunBehindAModelessDialog) {
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(1, 3);
  dialog.ServiceEvents();
  EXPECT_FALSE(dialog.closed());
  dialog.Close();
  EXPECT_TRUE(dialog.closed());
}

}  // namespace
}  // namespace orv::dialogs
