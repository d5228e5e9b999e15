// The window of the example host.
#pragma once

#include <QMainWindow>
#include <QTableView>
#include <QToolBar>
#include <functional>
#include <string>

#include "orv/engine.h"

#include "qt_host/table_model.h"

namespace qt_host {

/// A table and a tool bar with the long operations, which work on the column of the current cell.
/// Each action carries an object name: "open", "sort", "filter", "free", "fixed", "dictionary",
/// "exportText", "exportContainer".
class MainWindow final : public QMainWindow {
 public:
  MainWindow();

  void OpenTable(const QString& fileName);
  /// Shows the records that fulfil the condition; all of them when it is empty.
  void ShowFiltered(const QString& condition);
  void ExportTo(const QString& fileName, bool container);
  /// The error code that the last operation left.
  int lastError() const { return lastError_; }

 private:
  void AddAction(const char* name, const QString& text, std::function<void()> work);
  /// Runs an operation of the engine and shows what it has left.
  void Run(const std::function<void(std::wstring& path, std::int16_t& field)>& operation);
  void Convert(std::int16_t style, std::int16_t width);
  void AskForTable();
  void AskForCondition();
  void AskForTarget(bool container);
  void ShowState();

  orv::Engine engine_;
  std::wstring file_;
  std::wstring path_;
  int lastError_ = 0;
  TableModel* model_;
  QTableView* table_;
  QToolBar* tools_;
};

}  // namespace qt_host
