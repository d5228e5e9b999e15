// Random expressions over a table of hostile cell texts.
#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace orv::command::test {

class ExpressionMaker {
 public:
  ExpressionMaker(std::uint64_t seed, int records, int fields)
      : random_(seed), records_(records), fields_(fields) {}

  std::string Expression(int depth) {
    std::string text = Operand(depth);
    const int operators = Pick(10) < 3 ? 0 : Pick(4);
    for (int i = 0; i < operators; ++i) {
      text += Blank();
      text += Operator();
      text += Blank();
      if (Pick(60) != 0) text += Operand(depth);  // now and then an operand is missing
    }
    return text;
  }

  /// An expression that compares, as the conditions of views do.
  std::string Condition(int depth) {
    static const char* const kComparisons[] = {"=", "<", ">", "<>"};
    std::string text = Expression(depth) + kComparisons[Pick(4)] + Operand(depth);
    return Pick(3) == 0 ? "(" + text + ")" : text;
  }

  /// Lets records below 1 come up.
  void AllowStrangeRecords() { strange_ = true; }

  int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }

 private:
  std::string Blank() { return Pick(8) == 0 ? " " : ""; }

  std::string Operator() {
    static const char* const kOperators[] = {"+", "-", "*", "/", "\\", "^", "=", "<", ">", "<>"};
    return kOperators[Pick(10)];
  }

  std::string Number() {
    static const char* const kNumbers[] = {
        "0",   "1",   "2",        "3",    "7",   "10",  "100",      "1.5", "2.5",
        "0.1", "3.0", ".5",       "5.",   "1E3", "1E5", "-2",       "-7",  "-2.5",
        "- 3", "1 0", "16777217", "1E20", "300", "999", "123456789"};
    return kNumbers[Pick(25)];
  }

  std::string String() {
    static const char* const kTexts[] = {"\"\"",    "\"a\"",    "\"b\"",   "\"a+b\"",   "\"(\"",
                                         "\",\"",   "\"true\"", "\"5\"",   "\"2.5\"",   "\"alpha\"",
                                         "\"]a[\"", "\" x \"",  "\"a b\"", "\"=1<>2\"", "\"-3\""};
    return kTexts[Pick(15)];
  }

  std::string Name() {
    static const char* const kNames[] = {"rec", "fld", "records", "fields", "true", "false", "True",
                                         "REC", "pi",  "mtx",     "title",  "abc",  "re c",  "x1"};
    return kNames[Pick(14)];
  }

  std::string Record() {
    if (strange_ && Pick(30) == 0) return Pick(2) == 0 ? "-1" : "0";
    return Pick(3) == 0 ? "rec" : std::to_string(1 + Pick(records_));
  }

  std::string Cell() {
    return "cell(" + Record() + "," + Blank() + std::to_string(1 + Pick(fields_)) + ")";
  }

  std::string Operand(int depth) {
    const int kind = Pick(depth > 0 ? 20 : 11);
    if (kind < 4) return Number();
    if (kind < 6) return String();
    if (kind < 7) return Name();
    if (kind < 11) return Cell();
    switch (kind) {
      case 11:
      case 12:
        return "(" + Expression(depth - 1) + ")";
      case 13:
        return "str(" + Expression(depth - 1) + ")";
      case 14:
        return "val(" + Expression(depth - 1) + ")";
      case 15:
        return "if(" + Condition(depth - 1) + "," + Expression(depth - 1) + "," +
               Expression(depth - 1) + ")";
      case 16:
        return "instr(" + Operand(0) + "," + Expression(depth - 1) + "," + Expression(depth - 1) +
               ")";
      case 17:
        return "field(" + std::to_string(1 + Pick(fields_)) + "," + Expression(depth - 1) + ")";
      case 18:
        return "IF(" + Condition(0) + "," + Operand(0) + ")";
      default:
        return "cell(" + Record() + "," + String() + ")";
    }
  }

  std::mt19937_64 random_;
  int records_;
  int fields_;
  bool strange_ = false;
};

inline const std::string& HostileText(std::size_t index) {
  static const std::string kTexts[] = {"",
                                       "\"",
                                       "\"\"",
                                       "a\"b",
                                       "+",
                                       "1+1",
                                       "-5",
                                       "5",
                                       "2.5",
                                       "3,25",
                                       "(",
                                       ")",
                                       "[Type mismatch]",
                                       "]",
                                       ",",
                                       "a,b",
                                       "true",
                                       "True",
                                       "alpha",
                                       "a",
                                       "cell(1,1)",
                                       "rec",
                                       "<>",
                                       "=",
                                       "1E+15",
                                       " x ",
                                       "abc\"+\"def",
                                       "0",
                                       "-0.5abc",
                                       "\xC0\xE0\xA8",
                                       "12345678901234567890",
                                       std::string(300, '9'),
                                       std::string(5000, 'q'),
                                       std::string(1, '\0'),
                                       "10",
                                       "100",
                                       "b",
                                       "x",
                                       "16777217",
                                       ";"};
  return kTexts[index % (sizeof kTexts / sizeof kTexts[0])];
}

inline constexpr std::size_t kHostileTexts = 40;

}  // namespace orv::command::test
