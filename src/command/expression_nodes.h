// The steps of compiled expressions.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "command/compiled_expression.h"
#include "command/functions.h"
#include "command/names.h"

namespace orv::command {

/// A literal or a value that stays the same.
class LiteralNode : public Node {
 public:
  LiteralNode(std::string text, std::int16_t typeCode)
      : text_(std::move(text)), value_(Literal(text_, typeCode)) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::string text_;
  FastValue value_;
};

/// The name "rec".
class RecordNode : public Node {
 public:
  void Evaluate(const Context& context, FastValue& value) override;
};

/// Any other built-in name.
class NameNode : public Node {
 public:
  NameNode(std::string token, Evaluator& evaluator)
      : token_(std::move(token)), evaluator_(evaluator) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::string token_;
  Evaluator& evaluator_;
  Value value_;
};

/// A function that works on the texts of its arguments.
class CallNode : public Node {
 public:
  CallNode(std::string token, std::string_view argumentText, Evaluator& evaluator)
      : token_(std::move(token)), argumentText_(argumentText), evaluator_(evaluator) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::string token_;
  std::string_view argumentText_;
  Evaluator& evaluator_;
  ArgumentValues values_;
  Value value_;
};

/// A sub-expression in parentheses.
class ParenthesesNode : public Node {
 public:
  explicit ParenthesesNode(std::unique_ptr<Node> inner) : inner_(std::move(inner)) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::unique_ptr<Node> inner_;
};

/// Operations of one level, from left to right.
class ChainNode : public Node {
 public:
  struct Step {
    Operator op;
    std::unique_ptr<Node> operand;
    bool readAgain;  // the operand held a deferred operation: what is left of it is read again
  };
  /// `deferred`: the chain is deferred behind an operation that binds weaker, so each of its
  /// results is read again.
  ChainNode(std::unique_ptr<Node> first, std::vector<Step> steps, bool deferred,
            storage::ErrorCode& errorCode)
      : first_(std::move(first)),
        steps_(std::move(steps)),
        deferred_(deferred),
        errorCode_(errorCode) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::unique_ptr<Node> first_;
  std::vector<Step> steps_;
  bool deferred_;
  storage::ErrorCode& errorCode_;
  std::array<std::string, 2> rooms_;
};

/// `cell` with a field that stays the same.
class CellNode : public Node {
 public:
  CellNode(std::unique_ptr<Node> record, std::int16_t field, std::unique_ptr<Column> column,
           Services& services)
      : record_(std::move(record)),
        field_(field),
        column_(std::move(column)),
        services_(services) {}
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  void Read(const Context& context, std::int32_t record, FastValue& value);
  std::int16_t TypeOf(std::string_view name);

  std::unique_ptr<Node> record_;
  std::int16_t field_;
  std::unique_ptr<Column> column_;  // none: the services are asked cell by cell
  Services& services_;
  std::string room_;
  std::string lastTypeName_;
  std::int16_t lastType_ = type::kString;
};

/// Functions whose arguments are compiled.
using ArgumentNodes = std::array<std::unique_ptr<Node>, 3>;

class ArgumentsNode : public Node {
 public:
  ArgumentsNode(ArgumentNodes arguments, Evaluator& evaluator)
      : arguments_(std::move(arguments)), evaluator_(evaluator) {}

 protected:
  Node& argument(std::size_t index) { return *arguments_[index]; }
  storage::ErrorCode& errorCode() { return evaluator_.services().Error(); }

 private:
  ArgumentNodes arguments_;
  Evaluator& evaluator_;
};

class ValNode : public ArgumentsNode {
 public:
  static constexpr std::size_t kArguments = 1;
  using ArgumentsNode::ArgumentsNode;
  void Evaluate(const Context& context, FastValue& value) override;
};

class StrNode : public ArgumentsNode {
 public:
  static constexpr std::size_t kArguments = 1;
  using ArgumentsNode::ArgumentsNode;
  void Evaluate(const Context& context, FastValue& value) override;

 private:
  std::string room_;
};

class IfNode : public ArgumentsNode {
 public:
  static constexpr std::size_t kArguments = 3;
  using ArgumentsNode::ArgumentsNode;
  void Evaluate(const Context& context, FastValue& value) override;
};

class InstrNode : public ArgumentsNode {
 public:
  static constexpr std::size_t kArguments = 3;
  using ArgumentsNode::ArgumentsNode;
  void Evaluate(const Context& context, FastValue& value) override;
};

}  // namespace orv::command
