#include "command/statements.h"

#include "command/messages.h"
#include "command/scanner.h"
#include "platform/run_time_error.h"

namespace orv::command {
namespace {

constexpr std::string_view kSet = "set ";
constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';
constexpr char kPoint = '.';

class CommandRun {
 public:
  CommandRun(std::string_view text, std::int16_t mode, const Context& context, Evaluator& evaluator)
      : text_(text), mode_(mode), context_(context), evaluator_(evaluator) {}

  std::optional<std::string> Run() {
    for (std::size_t at = 0; at < text_.size() && !ended_; ++at) Take(text_[at]);
    return result_;
  }

 private:
  enum class State { kPlain, kFormula, kAssignment };

  void Take(char c) {
    if (inString_) {
      statement_ += c;
      inString_ = c != kQuote;
      return;
    }
    if (c == kCarriageReturn || c == kLineFeed) return TakeLineEnd(c);
    if (depth_ == 0 && c == '=') return TakeEquals();
    if (depth_ == 0 && c == ';') return EndStatement();
    if (c == kQuote) inString_ = true;
    if (c == '(') ++depth_;
    if (c == ')' && depth_ > 0) --depth_;
    statement_ += c;
    if (depth_ == 0 && statement_ == kSet) TakeSet();
  }

  // A point directly before a carriage return ends the statement as ";" does.
  void TakeLineEnd(char c) {
    const bool ends = c == kCarriageReturn && depth_ == 0 && statement_.ends_with(kPoint);
    if (!ends) return;
    statement_.pop_back();
    EndStatement();
  }

  // The "=" is not kept, and what stands before it is given up: nothing is ever stored, so the
  // target of an assignment has no use.
  void TakeEquals() {
    if (mode_ >= kPropertyMode && state_ != State::kAssignment) return Refuse(message::kInvalidUse);
    if (state_ == State::kPlain) state_ = State::kFormula;
    statement_.clear();
  }

  void TakeSet() {
    if (state_ != State::kPlain) return Refuse(message::kExpectedExpression);
    state_ = State::kAssignment;
    statement_.clear();
  }

  void Refuse(std::string_view text) {
    evaluator_.services().Error().Set(storage::code::kBadArgument);
    End(text);
  }

  void EndStatement() {
    switch (state_) {
      case State::kPlain:
        result_ = evaluator_.Evaluate(statement_, context_).text;
        statement_.clear();
        return;
      case State::kFormula:
        return End(evaluator_.Evaluate(statement_, context_).text);
      case State::kAssignment:
        return EndAssignment();
    }
  }

  void EndAssignment() {
    try {
      evaluator_.Evaluate(statement_, context_);
    } catch (const platform::RunTimeFailure& failure) {
      evaluator_.services().Error().Set(failure.number());
    }
    if (evaluator_.services().Error().IsSet()) return End(message::kErrorAcure);
    End(evaluator_.Evaluate(statement_, context_).text);
  }

  void End(std::string_view result) {
    result_ = std::string(result);
    ended_ = true;
  }

  std::string_view text_;
  std::int16_t mode_;
  const Context& context_;
  Evaluator& evaluator_;
  State state_ = State::kPlain;
  std::string statement_;
  std::size_t depth_ = 0;
  bool inString_ = false;
  bool ended_ = false;
  std::optional<std::string> result_;
};

}  // namespace

std::optional<std::string> RunCommand(std::string_view text, std::int16_t mode,
                                      const Context& context, Evaluator& evaluator) {
  return CommandRun(text, mode, context, evaluator).Run();
}

}  // namespace orv::command
