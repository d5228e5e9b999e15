#include "command/rewriting.h"

#include <algorithm>
#include <utility>

#include "command/evaluator.h"
#include "command/names.h"
#include "command/operators.h"
#include "platform/code_page.h"

namespace orv::command {
namespace {

constexpr char kPoint = '.';

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsQuoted(std::string_view operand) { return !operand.empty() && operand[0] == kQuote; }

// The type that a finished value has for a new scan. Plain numbers and logic values are read again.
std::int16_t LastingType(std::string_view operand, std::int16_t typeCode) {
  const bool readAgain = IsNumeric(typeCode) || typeCode == type::kLogic;
  return readAgain && !IsQuoted(operand) ? type::kVariant : typeCode;
}

// Names begin with a letter; most tokens are numbers and texts and need no look-up.
bool MayBeName(std::string_view token) {
  return !token.empty() && token[0] != kQuote && !IsDigit(token[0]);
}

}  // namespace

void RewrittenText::Clear() {
  text.clear();
  values.clear();
}

void RewrittenText::CutTo(std::size_t start) {
  text.resize(start);
  while (!values.empty() && values.back().start >= start) values.pop_back();
}

void RewrittenText::AppendOperand(std::string_view operand, std::int16_t typeCode) {
  values.push_back({text.size(), operand.size(), LastingType(operand, typeCode)});
  text.append(operand);
}

void Slot::Reset(std::size_t newStart) {
  text.clear();
  start = newStart;
  type = type::kVariant;
  filled = false;
}

void Rewriting::Run(std::string_view expression, Value& value) {
  room_.head.Clear();
  tail_ = platform::Trim(expression);
  do {
    StartPass();
  } while (Pass() == Outcome::kStartAgain);
  GiveResult(value);
}

void Rewriting::StartPass() {
  room_.done.Clear();
  text_ = room_.head.text;
  cursor_ = 0;
  nextValue_ = 0;
  inHead_ = true;
  pending_ = Operator::kNone;
  active_ = 0;
  for (Slot& slot : room_.slots) slot.Reset(0);
}

Rewriting::Outcome Rewriting::Pass() {
  for (;;) {
    const Outcome outcome = Step();
    if (outcome != Outcome::kGoOn) return outcome;
  }
}

Rewriting::Outcome Rewriting::Step() {
  if (inHead_ && TakeFinishedValue()) return Outcome::kGoOn;
  if (cursor_ == text_.size()) {
    if (!inHead_) return TakeEnd();
    text_ = tail_;
    cursor_ = 0;
    inHead_ = false;
    return Outcome::kGoOn;
  }
  const char c = text_[cursor_];
  if (c == kQuote) {
    TakeString();
  } else if (c == platform::kBlank) {
    ++cursor_;
  } else if (!IsOperatorCharacter(c)) {
    TakePlainCharacters();
  } else if (c == '-' && IsSign()) {
    Take(cursor_ + 1);
  } else {
    return TakeOperator();
  }
  return Outcome::kGoOn;
}

bool Rewriting::TakeFinishedValue() {
  const std::vector<FinishedValue>& values = room_.head.values;
  if (nextValue_ == values.size() || values[nextValue_].start != cursor_) return false;
  const FinishedValue& value = values[nextValue_++];
  Slot& slot = Active();
  if (slot.IsEmpty()) slot.start = room_.done.text.size();
  const std::string_view operand = text_.substr(cursor_, value.length);
  room_.done.AppendOperand(operand, value.type);
  slot.text.append(operand);
  slot.filled = true;
  if (value.type != type::kVariant) slot.type = value.type;
  cursor_ += value.length;
  return true;
}

void Rewriting::Take(std::size_t end) {
  Slot& slot = Active();
  if (slot.IsEmpty()) slot.start = room_.done.text.size();
  const std::string_view part = text_.substr(cursor_, end - cursor_);
  slot.text.append(part);
  room_.done.text.append(part);
  cursor_ = end;
}

void Rewriting::TakeString() {
  Take(EndOfString(text_, cursor_));
  Active().type = type::kString;
}

void Rewriting::TakePlainCharacters() {
  std::size_t end = cursor_ + 1;
  while (end < text_.size() && !IsOperatorCharacter(text_[end]) && text_[end] != kQuote &&
         text_[end] != platform::kBlank) {
    ++end;
  }
  Take(end);
}

// A "-" where an operand must begin, before a digit, belongs to the number.
bool Rewriting::IsSign() const {
  if (!room_.slots[active_].IsEmpty()) return false;
  const std::string_view rest = platform::TrimLeft(text_.substr(cursor_ + 1));
  if (rest.empty()) return false;
  return IsDigit(rest[0]) || (rest[0] == kPoint && rest.size() > 1 && IsDigit(rest[1]));
}

Rewriting::Outcome Rewriting::TakeOperator() {
  FinishToken();
  if (text_[cursor_] == '(') {
    TakeParentheses();
    return Outcome::kGoOn;
  }
  const Operator op = OperatorAt(text_, cursor_);
  if (Reduce(op) == Outcome::kStartAgain) return Outcome::kStartAgain;
  const std::size_t length = op == Operator::kUnequal ? 2 : 1;
  room_.done.text.append(text_.substr(cursor_, length));
  cursor_ += length;
  pending_ = op;
  active_ = 1;
  if (Active().IsEmpty()) Active().start = room_.done.text.size();
  return Outcome::kGoOn;
}

Rewriting::Outcome Rewriting::TakeEnd() {
  FinishToken();
  const Outcome outcome = Reduce(Operator::kNone);
  return outcome == Outcome::kGoOn ? Outcome::kFinished : outcome;
}

void Rewriting::FinishToken() {
  Slot& slot = Active();
  if (MayBeName(slot.text)) {
    Value& value = room_.value;
    switch (LookUpName(slot.text, context_, evaluator_.services(), value)) {
      case NameKind::kReplaced:
        ReplaceSlot(value.text, value.type);
        break;
      case NameKind::kLogic:
        slot.type = type::kLogic;
        break;
      case NameKind::kNoName:
        break;
    }
  }
  if (slot.type == type::kVariant) slot.type = LiteralType(slot.text);
}

void Rewriting::TakeParentheses() {
  const std::size_t close = MatchingParenthesis(text_, cursor_);
  const std::string_view inner = text_.substr(cursor_ + 1, close - cursor_ - 1);
  cursor_ = std::min(close + 1, text_.size());
  if (Active().text.empty()) {
    EvaluateParentheses(inner);
  } else {
    CallNamedFunction(inner);
  }
}

void Rewriting::EvaluateParentheses(std::string_view inner) {
  Value& value = room_.value;
  evaluator_.Evaluate(inner, context_, value);
  if (!StandsBare(value.text, value.type)) value.text.insert(0, 1, kQuote) += kQuote;
  ReplaceSlot(value.text, value.type);
}

void Rewriting::CallNamedFunction(std::string_view inner) {
  const bool pointFollows = cursor_ < text_.size() && text_[cursor_] == kPoint;
  Value& value = room_.value;
  switch (CallFunction({Active().text, inner, pointFollows}, context_, evaluator_, room_.arguments,
                       value)) {
    case CallKind::kNothing:
      ReplaceSlot({}, Active().type);
      return;
    case CallKind::kReference:
      ++cursor_;
      break;
    case CallKind::kValue:
      break;
  }
  ReplaceSlot(value.text, value.type);
}

void Rewriting::ReplaceSlot(std::string_view operand, std::int16_t typeCode) {
  Slot& slot = Active();
  room_.done.CutTo(slot.start);
  room_.done.AppendOperand(operand, typeCode);
  slot.text = operand;
  slot.type = typeCode;
  slot.filled = true;
}

void Rewriting::Defer() {
  std::swap(room_.slots[0], room_.slots[1]);
  room_.slots[1].Reset(room_.done.text.size());
  pending_ = Operator::kNone;
}

// Applies the pending operator, now that `next` or the end has come, or defers it.
Rewriting::Outcome Rewriting::Reduce(Operator next) {
  if (active_ == 0) return Outcome::kGoOn;
  if (IsMultiplicative(next) && !IsMultiplicative(pending_)) {
    Defer();
    return Outcome::kGoOn;
  }
  if (pending_ == Operator::kNone) return Outcome::kGoOn;
  Slot& first = room_.slots[0];
  Slot& second = room_.slots[1];
  Value& value = room_.value;
  ApplyOperator(pending_, {first.text, first.type}, {second.text, second.type},
                evaluator_.services().Error(), value);
  active_ = 0;
  ReplaceSlot(value.text, value.type);
  active_ = 1;
  second.Reset(room_.done.text.size());
  pending_ = Operator::kNone;
  return first.start == 0 ? Outcome::kGoOn : StartAgain();
}

// The text rewritten so far becomes the head of the new work text. Only one operation can be
// deferred at a time and what precedes it is reduced, so this never happens inside the head itself.
Rewriting::Outcome Rewriting::StartAgain() {
  tail_ = text_.substr(cursor_);
  std::swap(room_.head, room_.done);
  return Outcome::kStartAgain;
}

void Rewriting::GiveResult(Value& value) {
  const std::string_view text = room_.done.text;
  value.type = room_.slots[0].type;
  if (value.type == type::kVariant) value.type = LiteralType(text);
  value.text = WithoutQuotes(text);
}

}  // namespace orv::command
