#include "command/expression_compiler.h"

#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "command/expression_nodes.h"
#include "command/operators.h"
#include "command/scanner.h"
#include "platform/code_page.h"

namespace orv::command {
namespace {

// Deeper expressions are left to rewriting, which bounds its own recursion.
constexpr std::size_t kMostNestedNodes = 64;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::optional<std::int16_t> LiteralField(std::string_view argument) {
  const std::string_view text = platform::Trim(argument);
  if (LiteralType(text) != type::kInteger) return std::nullopt;
  const auto number = storage::RoundToInt32(NumberOf(text));
  using Limits = std::numeric_limits<std::int16_t>;
  if (!number || *number < Limits::min() || *number > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(*number);
}

bool IsRecordName(std::string_view text) { return platform::FoldCase(text) == "rec"; }

}  // namespace

// Reads one expression. Every member that returns a node returns nothing when the text is not of a
// covered shape; reading stops there.
class ExpressionCompiler::Reader {
 public:
  Reader(ExpressionCompiler& compiler, std::string_view text)
      : compiler_(compiler), text_(platform::Trim(text)) {}

  std::unique_ptr<Node> Read() {
    if (text_.empty()) return std::make_unique<LiteralNode>(std::string(), type::kVariant);
    std::unique_ptr<Node> sum = Product(false);
    std::vector<ChainNode::Step> steps;
    while (sum != nullptr && at_ < text_.size()) {
      const Operator op = TakeOperator();
      if (op == Operator::kNone) return nullptr;
      std::unique_ptr<Node> term = Product(true);
      if (term == nullptr) return nullptr;
      steps.push_back({op, std::move(term), isDeferred_});
    }
    if (sum == nullptr || steps.empty()) return sum;
    return Chain(std::move(sum), std::move(steps), false);
  }

 private:
  // An operand with the tighter operations behind it. They are deferred unless they come first.
  std::unique_ptr<Node> Product(bool behindSum) {
    std::unique_ptr<Node> first = ReadOperand();
    std::vector<ChainNode::Step> steps;
    while (first != nullptr && at_ < text_.size() && IsMultiplicative(OperatorAt(text_, at_))) {
      const Operator op = TakeOperator();
      std::unique_ptr<Node> operand = ReadOperand();
      if (operand == nullptr) return nullptr;
      steps.push_back({op, std::move(operand), false});
    }
    isDeferred_ = behindSum && !steps.empty();
    if (first == nullptr || steps.empty()) return first;
    return Chain(std::move(first), std::move(steps), behindSum);
  }

  std::unique_ptr<Node> Chain(std::unique_ptr<Node> first, std::vector<ChainNode::Step> steps,
                              bool deferred) {
    return std::make_unique<ChainNode>(std::move(first), std::move(steps), deferred,
                                       compiler_.evaluator_.services().Error());
  }

  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == platform::kBlank) ++at_;
  }

  Operator TakeOperator() {
    const Operator op = OperatorAt(text_, at_);
    at_ += op == Operator::kUnequal ? 2 : 1;
    return op;
  }

  // An operand, and the blanks behind it.
  std::unique_ptr<Node> ReadOperand() {
    SkipBlanks();
    if (at_ == text_.size()) return nullptr;
    std::unique_ptr<Node> operand = text_[at_] == kQuote ? String() : TokenOrParentheses();
    SkipBlanks();
    return operand;
  }

  std::unique_ptr<Node> String() {
    const std::size_t end = EndOfString(text_, at_);
    const std::string_view operand = text_.substr(at_, end - at_);
    if (operand.size() < 2 || operand.back() != kQuote) return nullptr;
    at_ = end;
    return std::make_unique<LiteralNode>(std::string(WithoutQuotes(operand)), type::kString);
  }

  bool IsSign() const {
    if (text_[at_] != '-') return false;
    const std::string_view rest = platform::TrimLeft(text_.substr(at_ + 1));
    return (!rest.empty() && IsDigit(rest[0])) ||
           (rest.size() > 1 && rest[0] == '.' && IsDigit(rest[1]));
  }

  std::unique_ptr<Node> TokenOrParentheses() {
    std::string token;
    if (IsSign()) token = text_[at_++];
    for (; at_ < text_.size() && !IsOperatorCharacter(text_[at_]); ++at_) {
      if (text_[at_] == kQuote) return nullptr;
      if (text_[at_] != platform::kBlank) token += text_[at_];
    }
    if (at_ < text_.size() && text_[at_] == '(') return Parentheses(token);
    return token.empty() ? nullptr : Token(std::move(token));
  }

  std::unique_ptr<Node> Token(std::string token) {
    if (IsRecordName(token)) return std::make_unique<RecordNode>();
    switch (KindOfName(token)) {
      case NameKind::kLogic:
        return std::make_unique<LiteralNode>(std::move(token), type::kLogic);
      case NameKind::kReplaced:
        return std::make_unique<NameNode>(std::move(token), compiler_.evaluator_);
      case NameKind::kNoName:
        break;
    }
    const std::int16_t typeCode = LiteralType(token);
    return std::make_unique<LiteralNode>(std::move(token), typeCode);
  }

  std::unique_ptr<Node> Parentheses(std::string_view token) {
    const std::size_t close = MatchingParenthesis(text_, at_);
    if (close == text_.size()) return nullptr;
    const std::string_view inner = text_.substr(at_ + 1, close - at_ - 1);
    at_ = close + 1;
    const bool pointFollows = at_ < text_.size() && text_[at_] == '.';
    if (pointFollows || KindOfName(token) != NameKind::kNoName) return nullptr;
    if (!token.empty()) return compiler_.CompileCall(token, inner);
    std::unique_ptr<Node> node = compiler_.Compile(inner);
    if (node == nullptr) return nullptr;
    return std::make_unique<ParenthesesNode>(std::move(node));
  }

  ExpressionCompiler& compiler_;
  std::string_view text_;
  std::size_t at_ = 0;
  bool isDeferred_ = false;  // of the product read last
};

std::unique_ptr<Node> ExpressionCompiler::Compile(std::string_view expression) {
  if (depth_ == kMostNestedNodes) return nullptr;
  ++depth_;
  std::unique_ptr<Node> node = Reader(*this, expression).Read();
  --depth_;
  return node;
}

template <typename FunctionNode>
std::unique_ptr<Node> ExpressionCompiler::CompileArguments(const Arguments& arguments) {
  ArgumentNodes nodes;
  for (std::size_t i = 0; i < FunctionNode::kArguments; ++i) {
    nodes[i] = Compile(arguments[i]);
    if (nodes[i] == nullptr) return nullptr;
  }
  return std::make_unique<FunctionNode>(std::move(nodes), evaluator_);
}

std::unique_ptr<Node> ExpressionCompiler::CompileCell(const Arguments& arguments) {
  const std::optional<std::int16_t> field = LiteralField(arguments[1]);
  std::unique_ptr<Node> record;
  if (!IsRecordName(platform::Trim(arguments[0]))) {
    record = Compile(arguments[0]);
    if (record == nullptr) return nullptr;
  }
  return std::make_unique<CellNode>(std::move(record), *field,
                                    evaluator_.services().OpenColumn(path_, *field),
                                    evaluator_.services());
}

std::unique_ptr<Node> ExpressionCompiler::CompileCall(std::string_view token,
                                                      std::string_view argumentText) {
  const std::string name = platform::FoldCase(token);
  const Arguments arguments = SplitArguments(argumentText);
  if (name == "cell" && LiteralField(arguments[1])) return CompileCell(arguments);
  if (name == "val") return CompileArguments<ValNode>(arguments);
  if (name == "str") return CompileArguments<StrNode>(arguments);
  if (name == "if") return CompileArguments<IfNode>(arguments);
  if (name == "instr") return CompileArguments<InstrNode>(arguments);
  return std::make_unique<CallNode>(std::string(token), argumentText, evaluator_);
}

}  // namespace orv::command
