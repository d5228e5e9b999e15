#include "model_evaluator.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace orv::command::test {
namespace {

// An operand: its text without quotes, and whether it stands in quotes.
struct Item {
  std::string text;
  int type = 0;
  bool quoted = false;
};

constexpr int kError = 255;

Item Error(const std::string& text) { return {text, kError, false}; }
Item Logic(bool value) { return {value ? "true" : "false", 7, false}; }

std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

bool Digit(char c) { return c >= '0' && c <= '9'; }

// 1 or 3 for a number, else 0. Works on the characters, one state after another.
int NumberType(const std::string& text) {
  std::size_t i = 0;
  int digits = 0;
  int points = 0;
  if (i < text.size() && text[i] == '-') ++i;
  for (; i < text.size() && (Digit(text[i]) || text[i] == '.'); ++i) {
    if (text[i] == '.') {
      ++points;
    } else {
      ++digits;
    }
  }
  if (digits == 0 || points > 1) return 0;
  if (i < text.size()) {
    if (text[i] != 'e' && text[i] != 'E') return 0;
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    if (i == text.size()) return 0;
    for (; i < text.size(); ++i) {
      if (!Digit(text[i])) return 0;
    }
  }
  return points == 1 ? 3 : 1;
}

// The number a text begins with, cut out and given to strtod (strtof): the "C" locale is assumed.
std::string NumberPrefix(const std::string& text) {
  std::size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  std::string number;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) number += text[i++];
  bool digits = false;
  bool point = false;
  for (; i < text.size(); ++i) {
    if (Digit(text[i])) {
      digits = true;
    } else if (text[i] == '.' && !point) {
      point = true;
    } else {
      break;
    }
    number += text[i];
  }
  if (!digits) return "0";
  std::string exponent;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    exponent += text[i++];
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) exponent += text[i++];
    if (i < text.size() && Digit(text[i])) {
      while (i < text.size() && Digit(text[i])) exponent += text[i++];
      number += exponent;
    }
  }
  return number;
}

std::string WithPoint(std::string text) {
  const auto comma = text.find(',');
  if (comma != std::string::npos) text[comma] = '.';
  return text;
}

std::string Format(double value, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*G", digits, value == 0 ? 0.0 : value);
  return text;
}

struct Arithmetic {
  int digits;
  bool single;
  double Round(double v) const { return single ? static_cast<double>(static_cast<float>(v)) : v; }
  double Read(const std::string& text) const {
    const std::string number = NumberPrefix(WithPoint(text));
    return single ? static_cast<double>(std::strtof(number.c_str(), nullptr))
                  : std::strtod(number.c_str(), nullptr);
  }
  double Power(double a, double b) const {
    if (single) return static_cast<double>(std::pow(static_cast<float>(a), static_cast<float>(b)));
    return std::pow(a, b);
  }
};

Item Whole(double a, double b, const Arithmetic& arithmetic, int type) {
  const double dividend = std::nearbyint(a);
  const double divisor = std::nearbyint(b);
  const auto fits = [](double v) { return v >= -2147483648.0 && v <= 2147483647.0; };
  if (!fits(dividend) || !fits(divisor)) return Error("[Overflow]");
  if (divisor == 0) return Error("[Division by zero]");
  const double quotient = std::trunc(dividend / divisor);
  if (!fits(quotient)) return Error("[Overflow]");
  // A whole result is a 32-bit number even where a single would have fewer digits.
  (void)arithmetic;
  return {Format(quotient, 15), type, type == 4};
}

Item Numbers(const std::string& op, const Item& a, const Item& b, bool single, int type) {
  const Arithmetic arithmetic{single ? 7 : 15, single};
  const double x = arithmetic.Read(a.text);
  const double y = arithmetic.Read(b.text);
  if (op == "=") return Logic(!(x < y) && !(x > y));
  if (op == "<") return Logic(x < y);
  if (op == ">") return Logic(x > y);
  if (op == "<>") return {a.text, type, a.quoted};
  if (op == "\\") return Whole(x, y, arithmetic, type);
  double result = 0;
  if (op == "+") result = arithmetic.Round(x + y);
  if (op == "-") result = arithmetic.Round(x - y);
  if (op == "*") result = arithmetic.Round(x * y);
  if (op == "/") {
    if (y == 0) return Error("[Division by zero]");
    result = arithmetic.Round(x / y);
  }
  if (op == "^") {
    if (x == 0 && y < 0) return Error("[Division by zero]");
    result = arithmetic.Power(x, y);
    if (std::isnan(result)) return Error("[Invalid command]");
  }
  if (!std::isfinite(result)) return Error("[Overflow]");
  return {Format(result, arithmetic.digits), type, type == 4};
}

Item Strings(const std::string& op, const Item& a, const Item& b) {
  const int order = a.text.compare(b.text);
  if (op == "=") return Logic(order == 0);
  if (op == "<") return Logic(order < 0);
  if (op == ">") return Logic(order > 0);
  if (op == "<>") return Logic(order != 0);
  if (op == "+") return {a.text + b.text, 10, true};
  return Error("[Invalid command]");
}

Item Apply(const std::string& op, const Item& a, const Item& b) {
  if (a.type > 3 && a.type != b.type) return Error("[Type mismatch]");
  if (a.type == 1 && b.type != 2 && b.type != 3) return Numbers(op, a, b, false, 1);
  if (a.type >= 1 && a.type <= 3) return Numbers(op, a, b, true, 3);
  if (a.type == 4) return Numbers(op, a, b, true, 4);
  if (a.type == 7) {
    const bool equal = (a.text == "True") == (b.text == "True");
    if (op == "=") return Logic(equal);
    if (op == "<>") return Logic(!equal);
    return Error("[Invalid command]");
  }
  if (a.type == 10) return Strings(op, a, b);
  if (a.type == kError) return a;
  return Error("[Invalid command]");
}

// What a new scan of the text makes of an operand.
Item ReadAgain(Item item) {
  if (!item.quoted && item.type >= 1 && item.type <= 3) item.type = NumberType(item.text);
  return item;
}

class Parser {
 public:
  Parser(const std::string& text, const ModelContext& context) : text_(text), context_(context) {}

  ModelValue Value() {
    const Item item = Sum();
    return {item.text, item.type};
  }

 private:
  // Left to right; a product behind a sum sends the scan back to the beginning, once a product.
  Item Sum() {
    Item sum = Operand();
    for (std::string op = Operator("*/\\^"); !op.empty(); op = Operator("*/\\^")) {
      sum = Apply(op, sum, Operand());
    }
    for (std::string op = Operator("+-=<>"); !op.empty(); op = Operator("+-=<>")) {
      Item term = Operand();
      for (std::string mul = Operator("*/\\^"); !mul.empty(); mul = Operator("*/\\^")) {
        term = ReadAgain(Apply(mul, term, Operand()));
        sum = ReadAgain(sum);
      }
      sum = Apply(op, sum, term);
    }
    if (at_ != text_.size()) throw std::logic_error("not for the model: " + text_);
    return sum;
  }

  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }

  std::string Operator(const std::string& set) {
    SkipBlanks();
    if (at_ == text_.size() || set.find(text_[at_]) == std::string::npos) return {};
    std::string op(1, text_[at_++]);
    if (op == "<" && at_ < text_.size() && text_[at_] == '>') op += text_[at_++];
    return op;
  }

  Item Operand() {
    SkipBlanks();
    std::string token;
    if (at_ + 1 < text_.size() && text_[at_] == '-') {
      std::size_t next = at_ + 1;
      while (next < text_.size() && text_[next] == ' ') ++next;
      const bool digit = next < text_.size() && Digit(text_[next]);
      const bool point = next + 1 < text_.size() && text_[next] == '.' && Digit(text_[next + 1]);
      if (digit || point) {
        token = "-";
        at_ = next;
      }
    }
    static const std::string kEnds = "+-*/\\^()[],=<>";
    while (at_ < text_.size() && kEnds.find(text_[at_]) == std::string::npos) {
      if (text_[at_] == '"') {
        const auto close = text_.find('"', at_ + 1);
        const std::string inner = text_.substr(at_ + 1, close - at_ - 1);
        at_ = close + 1;
        SkipBlanks();
        return {inner, 10, true};
      }
      if (text_[at_] != ' ') token += text_[at_];
      ++at_;
    }
    if (at_ < text_.size() && text_[at_] == '(') return Parentheses(token);
    return Named(token);
  }

  Item Named(const std::string& token) {
    const std::string name = Lower(token);
    if (name == "rec") return Literal(std::to_string(context_.record));
    if (name == "fld") return Literal(std::to_string(context_.field));
    if (name == "records") return Literal(std::to_string(context_.records));
    if (name == "fields") return Literal(std::to_string(context_.fields));
    if (name == "pi") return {"3.141592654", 3, false};
    if (name == "mtx") return {context_.path, 10, true};
    if (name == "title") return {context_.cell(context_.record, context_.field).text, 10, true};
    if (name == "true" || name == "false") return {token, 7, false};
    return Literal(token);
  }

  static Item Literal(const std::string& token) { return {token, NumberType(token), false}; }

  Item Parentheses(const std::string& name) {
    std::vector<std::string> arguments(1);
    int depth = 0;
    for (++at_; at_ < text_.size(); ++at_) {
      const char c = text_[at_];
      if (c == '"') {
        const auto close = text_.find('"', at_ + 1);
        arguments.back() += text_.substr(at_, close - at_ + 1);
        at_ = close;
        continue;
      }
      if (c == '(') ++depth;
      if (c == ')' && depth-- == 0) break;
      if (c == ',' && depth == 0) {
        arguments.emplace_back();
      } else {
        arguments.back() += c;
      }
    }
    ++at_;
    SkipBlanks();
    if (name.empty()) return Again(arguments[0]);
    arguments.resize(5);
    return Called(Lower(name), arguments);
  }

  Item Again(const std::string& text) {
    const ModelValue value = ModelEvaluate(text, context_);
    const bool bare = value.type == 0 || value.type == kError || value.type == 7 ||
                      (value.type <= 3 && NumberType(value.text) != 0);
    return {value.text, value.type, !bare};
  }

  static bool WholeNumber(const ModelValue& value, double limit, int& number) {
    if (value.type < 1 || value.type > 3) return false;
    const double n =
        std::nearbyint(std::strtod(NumberPrefix(WithPoint(value.text)).c_str(), nullptr));
    if (!(n >= -limit - 1 && n <= limit)) return false;
    number = static_cast<int>(n);
    return true;
  }

  Item Called(const std::string& name, const std::vector<std::string>& arguments) {
    const auto value = [&](std::size_t i) { return ModelEvaluate(arguments[i], context_); };
    int number = 0;
    if (name == "cell") {
      int field = 0;
      if (!WholeNumber(value(0), 2147483647.0, number)) return Error("[Invalid Record value]");
      if (!WholeNumber(value(1), 32767, field)) return Error("[Invalid Field value]");
      const ModelValue cell = context_.cell(number, field);
      return {cell.text, cell.type == 0 ? 10 : cell.type, true};
    }
    if (name == "instr") {
      if (!WholeNumber(value(0), 2147483647.0, number)) return Error("[Invalid entering value]");
      const ModelValue text = value(1);
      if (text.type != 10) return Error("[Invalid first value]");
      const ModelValue part = value(2);
      if (part.type != 10) return Error("[Invalid second value]");
      int found = 0;
      if (number >= 1) {
        const auto start = static_cast<std::size_t>(number - 1);
        const auto at =
            start > text.text.size() ? std::string::npos : text.text.find(part.text, start);
        found = part.text.empty() ? number : static_cast<int>(at + 1);
      }
      return {std::to_string(found), 3, false};
    }
    if (name == "field") {
      if (!WholeNumber(value(0), 32767, number)) return Error("[Invalid field number]");
      const ModelValue wanted = value(1);
      if (wanted.type != 10) return Error("[Invalid first value]");
      return {std::to_string(context_.find(number, wanted.text)), 1, false};
    }
    if (name == "str") {
      const ModelValue x = value(0);
      if (x.type < 1 || x.type > 3) return Error("[Type mismuch]");
      return {x.text, 10, true};
    }
    if (name == "val") {
      const double x = std::strtod(NumberPrefix(value(0).text).c_str(), nullptr);
      if (!std::isfinite(x)) return Error("[Overflow]");
      return {Format(x, 15), 3, false};
    }
    if (name == "if") {
      const ModelValue chosen = value(value(0).text == "true" ? 1 : 2);
      if (chosen.type == kError) return Error(chosen.text);
      // In quotes, an untyped text is a string for whatever comes next.
      return {chosen.text, chosen.type == 0 ? 10 : chosen.type, true};
    }
    return {"", 0, false};
  }

  const std::string& text_;
  const ModelContext& context_;
  std::size_t at_ = 0;
};

}  // namespace

ModelValue ModelEvaluate(const std::string& expression, const ModelContext& context) {
  return Parser(expression, context).Value();
}

}  // namespace orv::command::test
