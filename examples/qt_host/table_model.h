// A matrix or view of it as a Qt table.
#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QString>

#include "orv/engine.h"

namespace qt_host {

/// Reads the cells that are shown, when they are shown, through the engine, and keeps their texts.
class TableModel final : public QAbstractTableModel {
 public:
  explicit TableModel(orv::Engine& engine, QObject* parent = nullptr);

  /// Shows another matrix, or the same one as it is now.
  void ShowMatrix(const std::wstring& path);
  /// While an operation runs the engine must not be called: cells not yet read show as dots.
  void SetOperationRuns(bool runs) { operationRuns_ = runs; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(int record, int field) const;

  orv::Engine& engine_;
  std::wstring path_;
  int records_ = 0;
  int fields_ = 0;
  bool operationRuns_ = false;
  mutable QHash<quint64, QString> texts_;
};

}  // namespace qt_host
