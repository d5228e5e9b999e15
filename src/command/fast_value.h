// Values of compiled expressions: numbers stay numbers as long as their text makes no difference.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "command/scanner.h"
#include "command/value.h"
#include "storage/error_code.h"

namespace orv::command {

/// An operand of the rewriting evaluator without the text in hand. What the text would have been is
/// fixed by the form, and every reading gives what reading that text gives.
struct FastValue {
  enum class Form : std::uint8_t {
    kText,     // `text`, without quotes
    kLiteral,  // the same, its numbers read beforehand
    kDouble,   // the text of `number` as a double
    kSingle,   // the text of `number` as a single
  };

  std::string_view text;
  double number = 0;
  float single = 0;  // of kLiteral
  std::int16_t type = type::kVariant;
  Form form = Form::kText;
  bool quoted = false;  // stands in quotes

  void SetText(std::string_view newText, std::int16_t typeCode, bool inQuotes);
  void SetDouble(double newNumber, std::int16_t typeCode);
  void SetLogic(bool value);
  void SetError(std::string_view message);
};

/// A literal, its numbers read.
FastValue Literal(std::string_view text, std::int16_t typeCode);

double DoubleOf(const FastValue& value);
float SingleOf(const FastValue& value);
void AppendText(std::string& text, const FastValue& value);
/// Whether the text is "true".
bool IsTrue(const FastValue& value);
/// Whether the value's text could stand without quotes.
bool StandsBare(const FastValue& value);
/// Gives the value the type that a new scan of the text reads.
void ReadAgain(FastValue& value);

/// Applies the operator as ApplyOperator does; the result replaces `a`. A joined text is put into
/// `room`, which must not be what `a` or `b` refer to.
void ApplyFast(Operator op, FastValue& a, const FastValue& b, storage::ErrorCode& errorCode,
               std::string& room);

}  // namespace orv::command
