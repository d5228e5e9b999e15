// The evaluation of one expression by rewriting its text.
//
// The text is scanned from left to right. A finished operand gives way to the text of its value, a
// finished operation to the text of its result, and the precedence of the language follows from the
// order in which that happens; it is defined by this process and not by a grammar:
//
// - Two slots hold the operands of the operation under way. An operator character that finds both
// of
//   them filled applies the pending operator to them, unless it binds tighter than the pending one:
//   then the pending operation is deferred, and the second operand starts an operation of its own.
// - When such an operation is reduced, something before it is still unreduced. The scan starts
// again
//   at position 1 of the rewritten text with empty slots.
// - After a new start types are read from the text again: the real 3 has become the integer 3. What
//   cannot be read again stays a finished value, whole and with its type: texts in quotes (which
//   may hold quotes themselves), error messages, numbers with a sign or an exponent.
//
// The rewritten text is kept in two parts: `done`, what the scan has passed, and the rest. All
// replacements end at the cursor, so they only touch the end of `done`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "command/context.h"
#include "command/functions.h"
#include "command/scanner.h"
#include "command/value.h"

namespace orv::command {

/// A value that a scan takes as a whole.
struct FinishedValue {
  std::size_t start = 0;
  std::size_t length = 0;
  std::int16_t type = type::kVariant;  // 0: to be read from the text
};

/// Rewritten text with the finished values in it, in order.
struct RewrittenText {
  std::string text;
  std::vector<FinishedValue> values;

  void Clear();
  /// Forgets everything from position `start` on.
  void CutTo(std::size_t start);
  /// Adds an operand as a finished value.
  void AppendOperand(std::string_view operand, std::int16_t typeCode);
};

/// An operand while it is put together.
struct Slot {
  std::string text;
  std::size_t start = 0;  // where it begins in `done`
  std::int16_t type = type::kVariant;
  bool filled = false;  // holds a value, which may be the empty text

  bool IsEmpty() const { return text.empty() && !filled; }
  void Reset(std::size_t newStart);
};

/// What an evaluation works in. It is kept and used again: a token costs no allocation.
struct RewritingRoom {
  RewrittenText head;  // the rewritten text under scan, before the untouched rest
  RewrittenText done;
  std::array<Slot, 2> slots;
  Value value;
  ArgumentValues arguments;
};

class Rewriting {
 public:
  Rewriting(Evaluator& evaluator, const Context& context, RewritingRoom& room)
      : evaluator_(evaluator), context_(context), room_(room) {}

  void Run(std::string_view expression, Value& value);

 private:
  enum class Outcome { kGoOn, kStartAgain, kFinished };

  void StartPass();
  Outcome Pass();
  Outcome Step();
  bool TakeFinishedValue();
  void Take(std::size_t end);
  void TakeString();
  void TakePlainCharacters();
  bool IsSign() const;
  Outcome TakeOperator();
  Outcome TakeEnd();
  void FinishToken();
  void TakeParentheses();
  void EvaluateParentheses(std::string_view inner);
  void CallNamedFunction(std::string_view inner);
  void ReplaceSlot(std::string_view operand, std::int16_t typeCode);
  void Defer();
  Outcome Reduce(Operator next);
  Outcome StartAgain();
  void GiveResult(Value& value);

  Slot& Active() { return room_.slots[active_]; }

  Evaluator& evaluator_;
  const Context& context_;
  RewritingRoom& room_;
  std::string_view text_;  // the part of the work text that is being scanned
  std::string_view tail_;  // what comes after it
  std::size_t cursor_ = 0;
  std::size_t nextValue_ = 0;  // the first finished value of `head` at or behind the cursor
  bool inHead_ = false;
  Operator pending_ = Operator::kNone;
  std::size_t active_ = 0;
};

}  // namespace orv::command
