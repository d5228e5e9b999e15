#include "command/scanner.h"

#include <string>

#include <gtest/gtest.h>

namespace orv::command {
namespace {

TEST(ScannerTest, OperatorCharacters) {
  const std::string operators("+-*/\\^()[],=<>\0", 15);
  for (int b = 0; b < 256; ++b) {
    const char c = static_cast<char>(b);
    EXPECT_EQ(IsOperatorCharacter(c), operators.find(c) != std::string::npos) << b;
  }
}

TEST(ScannerTest, OperatorCodes) {
  const auto code = [](std::string_view text) { return static_cast<int>(OperatorAt(text, 0)); };
  EXPECT_EQ(code("="), 236);
  EXPECT_EQ(code("<"), 237);
  EXPECT_EQ(code(">"), 238);
  EXPECT_EQ(code("<>"), 239);
  EXPECT_EQ(code("<="), 237);
  EXPECT_EQ(code("< >"), 237);
  EXPECT_EQ(code("+"), 242);
  EXPECT_EQ(code("-"), 243);
  EXPECT_EQ(code("*"), 244);
  EXPECT_EQ(code("/"), 245);
  EXPECT_EQ(code("\\"), 246);
  EXPECT_EQ(code("^"), 247);
  for (const char* bracket : {"(", ")", "[", "]", ","}) EXPECT_EQ(code(bracket), 0) << bracket;
}

TEST(ScannerTest, MatchingParenthesis) {
  EXPECT_EQ(MatchingParenthesis("(a(b)c)d", 0), 6U);
  EXPECT_EQ(MatchingParenthesis("(\")\")", 0), 4U);
  EXPECT_EQ(MatchingParenthesis("(a(b)", 0), 5U);
  EXPECT_EQ(MatchingParenthesis("(\")", 0), 3U);
}

TEST(ScannerTest, ArgumentsStandAsWritten) {
  const Arguments arguments = SplitArguments("a b,\"c,d\",(e,f),[g,h]");
  EXPECT_EQ(arguments[0], "a b");
  EXPECT_EQ(arguments[1], "\"c,d\"");
  EXPECT_EQ(arguments[2], "(e,f)");
  EXPECT_EQ(arguments[3], "[g,h]");
  EXPECT_EQ(arguments[4], "");
}

TEST(ScannerTest, AtMostFiveArguments) {
  const Arguments arguments = SplitArguments("1,2,3,4,5,6");
  EXPECT_EQ(arguments[4], "5");
}

TEST(ScannerTest, NumberLiterals) {
  for (const char* text : {"0", "12", "1.5", "1.", ".5", "-3", "1E5", "1e+05", "-1.5E-10"}) {
    EXPECT_TRUE(IsNumberLiteral(text)) << text;
  }
  for (const char* text :
       {"", "-", ".", "-.", "1.2.3", "1E", "1E+", "E5", "+1", "1,5", " 1", "1x"}) {
    EXPECT_FALSE(IsNumberLiteral(text)) << text;
  }
}

TEST(ScannerTest, OnlyEnclosingQuotesAreTaken) {
  EXPECT_EQ(WithoutQuotes("\"a\""), "a");
  EXPECT_EQ(WithoutQuotes("\"\""), "");
  EXPECT_EQ(WithoutQuotes("\"a\"b\""), "a\"b");
  EXPECT_EQ(WithoutQuotes("\""), "\"");
  EXPECT_EQ(WithoutQuotes("\"a"), "\"a");
  EXPECT_EQ(WithoutQuotes("a\""), "a\"");
}

}  // namespace
}  // namespace orv::command
