// The dialogs as a person meets them: real windows over real operations of the registered server.
#include <gtest/gtest.h>

#include "server.h"
#include "window/person.h"

namespace orv::test {
namespace {

constexpr long kRecords = 60000;
constexpr wchar_t kConversionCaption[] = L"ORV DBServer";
constexpr wchar_t kExportCaption[] = L"ORV DB Server";
constexpr wchar_t kOverwriteCaption[] = L"ORV Server v1.0";
constexpr short kDictionary = 11;

class DialogsTest : public testing::Test {
 protected:
  void SetUp() override {
    CreateByName(L"Orv.Engine", IID_IEngine, engine_.outVoid());
    Text title(L"\u0413\u043E\u0440\u043E\u0434\u0430");
    short fields = 1;
    short first = 1;
    long records = kRecords;
    long row = 1;
    engine_->CmdNewOrvDB(&path_, &title);
    engine_->CmdAddFld(&path_, &fields, &first);
    engine_->CmdAddRecord(&path_, &records, &row);
    for (long record = 1; record <= kRecords; ++record) {
      Text text(L"\u0442\u0435\u043A\u0441\u0442 " + std::to_wstring(record % 5000));
      engine_->SetCellValue(&text, &path_, &record, &first);
    }
    ASSERT_EQ(ErrorCode(), 0);
  }
  void TearDown() override {
    engine_->CloseAll();
    EXPECT_EQ(FindWindowW(L"OrvDialog", nullptr), nullptr) << "no window is left";
  }

  /// Adds so many records that an operation can be met in its middle.
  void MakeLong() {
    long records = 2000000;
    long row = kRecords + 1;
    engine_->CmdAddRecord(&path_, &records, &row);
    ASSERT_EQ(ErrorCode(), 0);
  }

  int ErrorCode() { return ErrorCodeOf(engine_.get()); }

  void Convert() {
    short field = 1;
    short style = kDictionary;
    short cellSize = 2;
    short type = 10;
    VARIANT_BOOL no = VARIANT_FALSE;
    VARIANT_BOOL unique = VARIANT_FALSE;
    EXPECT_EQ(engine_->SetFldStyle(&path_, &field, &style, &cellSize, &no, &unique, &type), S_OK);
  }
  short Style() {
    short field = 1;
    short style = -1;
    short cellSize = 0;
    short type = 0;
    VARIANT_BOOL fixed = VARIANT_FALSE;
    VARIANT_BOOL unique = VARIANT_FALSE;
    EXPECT_EQ(engine_->GetFldStyle(&path_, &field, &style, &cellSize, &fixed, &unique, &type),
              S_OK);
    return style;
  }
  void ExportText() {
    Text target(target_);
    VARIANT_BOOL properties = VARIANT_FALSE;
    short text = 2;
    EXPECT_EQ(engine_->SaveMtxAs(&path_, &target, &properties, &text), S_OK);
  }
  std::wstring Cell(long record) { return CellTextOf(engine_.get(), path_, record, 1); }

  Apartment apartment_;
  TempFolder folder_;
  Text path_{Quoted(folder_.Name(L"table.orv"))};
  std::wstring target_ = folder_.Name(L"table.txt");
  Reference<IEngine> engine_;
};

TEST_F(DialogsTest, AConversionCancelledInTheMiddleChangesNothing) {
  MakeLong();
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    if (!self.WaitUntilBarMoves(dialog) || !self.Press(dialog, IDCANCEL)) return false;
    HWND question = self.WaitForMessage(kConversionCaption);
    self.TakePicture("com-conversion-cancel");
    return self.Press(question, IDYES);
  });
  Convert();
  EXPECT_TRUE(person.Finish());
  EXPECT_EQ(Style(), 0);
  EXPECT_EQ(Cell(kRecords), L"\u0442\u0435\u043A\u0441\u0442 0");
}

TEST_F(DialogsTest, ACancelThatIsTakenBackLetsTheConversionGoOn) {
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    return self.Press(dialog, IDCANCEL) &&
           self.Press(self.WaitForMessage(kConversionCaption), IDNO);
  });
  Convert();
  EXPECT_TRUE(person.Finish());
  EXPECT_EQ(ErrorCode(), 0);
  EXPECT_EQ(Style(), kDictionary);
  EXPECT_EQ(Cell(4999), L"\u0442\u0435\u043A\u0441\u0442 4999");
}

TEST_F(DialogsTest, AnExportTakesTheSeparatorsThatWereTyped) {
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    if (!self.WaitUntilEnabled(dialog, kForwardButton)) return false;
    self.TakePicture("com-export-settings");
    return self.Type(dialog, kFieldSeparatorBox + 1, L"|") && self.Press(dialog, kForwardButton);
  });
  ExportText();
  EXPECT_TRUE(person.Finish());
  EXPECT_NE(ReadBytes(target_).find(" 1|"), std::string::npos);
}

TEST_F(DialogsTest, AnExportCancelledInTheMiddleLeavesNoFile) {
  MakeLong();
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    if (!self.WaitUntilEnabled(dialog, kForwardButton)) return false;
    if (!self.Press(dialog, kForwardButton) || !self.WaitUntilBarMoves(dialog)) return false;
    if (!self.Press(dialog, IDCANCEL)) return false;
    HWND question = self.WaitForMessage(kExportCaption);
    self.TakePicture("com-export-cancel");
    return self.Press(question, IDYES);
  });
  ExportText();
  EXPECT_TRUE(person.Finish());
  EXPECT_FALSE(Exists(target_));
}

TEST_F(DialogsTest, AnExportCancelledOnItsFirstPageWritesNothing) {
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    return self.WaitUntilEnabled(dialog, kForwardButton) && self.Press(dialog, IDCANCEL);
  });
  ExportText();
  EXPECT_TRUE(person.Finish());
  EXPECT_FALSE(Exists(target_));
}

TEST_F(DialogsTest, OverwritingAFileIsAsked) {
  Person person([](Person& self) {
    HWND question = self.WaitForMessage(kOverwriteCaption);
    self.TakePicture("com-overwrite");
    return self.Press(question, IDCANCEL);
  });
  Text title(L"new");
  EXPECT_EQ(engine_->CmdNewOrvDB(&path_, &title), S_OK);
  EXPECT_TRUE(person.Finish());
  EXPECT_EQ(ErrorCode(), 51);
  long count = 0;
  engine_->Records(&path_, &count);
  EXPECT_EQ(count, kRecords);
}

TEST_F(DialogsTest, SortingShowsItsProgressAndIsCancelledAtOnce) {
  Person person([](Person& self) {
    HWND dialog = self.WaitForDialog();
    return self.Press(dialog, IDCANCEL);
  });
  short field = 1;
  EXPECT_EQ(engine_->SortData(&path_, &field), S_OK);
  EXPECT_TRUE(person.Finish());
  EXPECT_EQ(FindWindowW(L"OrvDialog", nullptr), nullptr);
}

/// A host's own window.
class HostWindow {
 public:
  HostWindow()
      : handle_(CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300,
                                200, nullptr, nullptr, nullptr, nullptr)) {
    SetActiveWindow(handle_);
  }
  ~HostWindow() { DestroyWindow(handle_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  HWND handle() const { return handle_; }

 private:
  HWND handle_;
};

TEST_F(DialogsTest, TheHostsWindowTakesNoInputWhileADialogIsOpen) {
  const HostWindow host;
  std::atomic<bool> enabledMeanwhile = true;
  Person person([&](Person& self) {
    HWND dialog = self.WaitForDialog();
    if (!self.WaitUntilEnabled(dialog, kForwardButton)) return false;
    enabledMeanwhile = IsWindowEnabled(host.handle()) != 0;
    return self.Press(dialog, IDCANCEL);
  });
  ExportText();
  EXPECT_TRUE(person.Finish());
  EXPECT_FALSE(enabledMeanwhile);
  EXPECT_TRUE(IsWindowEnabled(host.handle()));
}

TEST_F(DialogsTest, ARequestToQuitClosesTheDialogAndReachesTheHostsLoop) {
  const DWORD host = GetCurrentThreadId();
  constexpr int kCode = 7;
  Person person([host](Person& self) {
    HWND dialog = self.WaitForDialog();
    return self.WaitUntilEnabled(dialog, kForwardButton) &&
           PostThreadMessageW(host, WM_QUIT, kCode, 0) != 0;
  });
  ExportText();
  EXPECT_TRUE(person.Finish());
  EXPECT_FALSE(Exists(target_));
  MSG message = {};
  BOOL more = TRUE;
  while (more > 0 && PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
    more = GetMessageW(&message, nullptr, 0, 0);
  }
  EXPECT_EQ(more, 0) << "the host's loop ends";
  EXPECT_EQ(message.wParam, WPARAM{kCode});
}

}  // namespace
}  // namespace orv::test
