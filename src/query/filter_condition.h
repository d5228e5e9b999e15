// A filter's condition, made ready for the records of its base.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "command/evaluator.h"
#include "command/scanner.h"
#include "query/field_form.h"
#include "query/held_location.h"
#include "storage/storage.h"

namespace orv::query {

/// How the matching records are found.
enum class FilterMode : std::int16_t {
  kDirect = 1,    ///< the storage searches the field for the value
  kEvaluate = 2,  ///< the condition is evaluated for each record
  kUnique = 3,    ///< the view stays empty
};

/// Reads a condition in the context of its base and tests records with it.
class FilterCondition {
 public:
  /// The base must be resolved and outlive the condition.
  FilterCondition(storage::Storage& storage, command::Evaluator& evaluator,
                  const HeldLocation& base)
      : storage_(storage), evaluator_(evaluator), base_(base) {}

  /// Takes the condition apart. False with an error code when it cannot be used: 5 for a malformed
  /// field form, 13 for a field that is neither a number nor a name and for a value that is an
  /// error. A field below 1 raises 5.
  bool Read(std::string_view condition);

  FilterMode mode() const { return mode_; }
  /// The parts of a direct search.
  std::int16_t field() const { return field_; }
  command::Operator op() const { return operator_; }
  const std::string& value() const { return value_; }

  /// A test of the base's records for `kEvaluate`; to be made anew when the base was opened again.
  std::function<bool(std::int32_t)> MakeTest() const;

 private:
  bool ReadFieldNumber(std::string_view expression);
  void ChooseMode();
  command::Value Evaluate(std::string_view expression) const;
  bool CellMatches(std::int32_t record) const;

  storage::Storage& storage_;
  command::Evaluator& evaluator_;
  const HeldLocation& base_;
  FilterMode mode_ = FilterMode::kEvaluate;
  std::string
      expression_;  ///< what is evaluated; empty when the cell is compared with a value instead
  std::int16_t field_ = 0;
  command::Operator operator_ = command::Operator::kEqual;
  std::string value_;
};

}  // namespace orv::query
