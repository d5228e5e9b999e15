#include "qt_host/table_model.h"

#include <algorithm>

namespace qt_host {
namespace {

// Some screenfuls of a wide table.
constexpr qsizetype kMostTextsKept = 100'000;

}  // namespace

TableModel::TableModel(orv::Engine& engine, QObject* parent)
    : QAbstractTableModel(parent), engine_(engine) {}

void TableModel::ShowMatrix(const std::wstring& path) {
  beginResetModel();
  path_ = path;
  texts_.clear();
  records_ = std::max(engine_.Records(path_), 0);
  fields_ = std::max(engine_.Fields(path_), 0);
  endResetModel();
}

int TableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : records_;
}

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : fields_;
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole) return {};
  return Text(index.row() + 1, index.column() + 1);
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return section + 1;
  const QString name = Text(0, section + 1);
  return name.isEmpty() ? QString::number(section + 1) : name;
}

QString TableModel::Text(int record, int field) const {
  const quint64 key = static_cast<quint64>(record) << 16 | static_cast<quint64>(field);
  if (const auto known = texts_.constFind(key); known != texts_.constEnd()) return *known;
  if (operationRuns_) return QStringLiteral("…");
  if (texts_.size() >= kMostTextsKept) texts_.clear();

  std::wstring path = path_;
  std::int32_t enginesRecord = record;
  auto enginesField = static_cast<std::int16_t>(field);
  orv::Boolean holdsMatrix{};
  orv::Boolean withFormula = orv::Boolean::kFalse;
  QString text = QString::fromStdWString(
      engine_.GetCellValue(path, enginesRecord, enginesField, holdsMatrix, withFormula));
  texts_.insert(key, text);
  return text;
}

}  // namespace qt_host
