#include "engine/members.h"

#include <cctype>
#include <cwctype>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orv::engine {
namespace {

// The interface written out a second time, as a host's declarations would have it: the table may
// not drift from it. One line a member: result, name, parameters.
const std::vector<std::string> kInterface = {
    "none UnloadServer()",
    "none SortData(Pth text, f int16)",
    "value dBASEFldSize(Pth text, f int16)",
    "int16 IsORVorDBF(Pth text)",
    "none InsFirstLvlMtx(Pth text)",
    "text GetTitle(Pth text)",
    "none SaveMtxAs(Pth text, file text, WithProp boolean, FileType int16)",
    "none PutMatrix(Pth text, r int32, f int16, MtxName text)",
    "int32 Records(p text)",
    "int32 Fields(p text)",
    "none SetCellValue(v text, p text, Rec int32, Fld int16)",
    "text Cmd(a text, Tp int16)",
    "none CmdAddRecord(Pth text, Number int32, row int32)",
    "text GetCellValue(p text, Rec int32, Fld int16, isMtx boolean, Frml boolean)",
    "int32 MtxFindFirst(Pth text, Rec int32, Fld int16, Vlu text, Region int16, inCell boolean, "
    "Direct int16, Register boolean)",
    "int32 MtxFindMin(Pth text, Col int16)",
    "int32 MtxFindMax(Pth text, Col int16)",
    "none SetTypeValue(Pth text, r int32, f int16, Prop text, Vlu text)",
    "text GetTypeValue(Pth text, r int32, f int16, Prop text, Frml boolean)",
    "value ReBit(Pth text, r int32, f int16, b int16)",
    "none CmdNewOrvDB(file text, MtxName text)",
    "none SetFldStyle(p text, f int16, FreeSize int16, cellsize int16, FixedType boolean, "
    "Unique boolean, DataType int16)",
    "none GetFldStyle(p text, f int16, FreeSize int16, cellsize int16, FixedType boolean, "
    "Unique boolean, DataType int16)",
    "none CmdAddFld(Pth text, NumOfFields int16, f int16)",
    "none CmdDelFld(Pth text, f int16)",
    "value ExecCmd(a text, Mtx text, Rec int32, Fld int16)",
    "int16 GetID(Pth text, r int32, f int16)",
    "int16 GetCellDataType(Pth text, r int32, f int16)",
    "none SetTitle(Vlu text, Pth text)",
    "none CopyCell(Mtx text, r1 int32, f1 int16, toMtx text, r2 int32, f2 int16, "
    "WhatToCopy boolean, WithNested boolean)",
    "none ValueMatrix(m text matrix, Pth text, r1 int32, r2 int32, Frml boolean)",
    "value ErrorCode()",
    "none CloseAll()",
    "none gt()",
};

std::string NameOf(ParameterType type) {
  switch (type) {
    case ParameterType::kText:
      return "text";
    case ParameterType::kInt16:
      return "int16";
    case ParameterType::kInt32:
      return "int32";
    case ParameterType::kBoolean:
      return "boolean";
    case ParameterType::kTextMatrix:
      return "text matrix";
  }
  return "?";
}

std::string NameOf(ResultType type) {
  switch (type) {
    case ResultType::kNone:
      return "none";
    case ResultType::kText:
      return "text";
    case ResultType::kInt16:
      return "int16";
    case ResultType::kInt32:
      return "int32";
    case ResultType::kValue:
      return "value";
  }
  return "?";
}

std::string Declaration(const Member& member) {
  std::string text = NameOf(member.result()) + " " + std::string(member.name()) + "(";
  bool first = true;
  for (const Parameter& parameter : member.parameters()) {
    if (!first) text += ", ";
    first = false;
    text += std::string(parameter.name) + " " + NameOf(parameter.type);
  }
  return text + ")";
}

TEST(MembersTest, DeclareTheInterfaceInItsFixedOrder) {
  std::vector<std::string> declarations;
  for (const Member& member : Members()) declarations.push_back(Declaration(member));
  EXPECT_EQ(declarations, kInterface);
}

TEST(MembersTest, AreNumberedFromOneInInterfaceOrder) {
  std::int32_t number = 0;
  for (const Member& member : Members()) EXPECT_EQ(member.number(), ++number);
  EXPECT_EQ(number, 34);
}

TEST(MembersTest, AreFoundByNumber) {
  for (const Member& member : Members()) EXPECT_EQ(FindMember(member.number()), &member);
  EXPECT_EQ(FindMember(0), nullptr);
  EXPECT_EQ(FindMember(-1), nullptr);
  EXPECT_EQ(FindMember(35), nullptr);
}

TEST(MembersTest, AreFoundByNameInAnyLetterCase) {
  for (const Member& member : Members()) {
    std::string lower(member.name());
    for (char& letter : lower) letter = static_cast<char>(std::tolower(letter));
    std::wstring upper(member.name().begin(), member.name().end());
    for (wchar_t& letter : upper)
      letter = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(letter)));
    EXPECT_EQ(FindMember(member.name()), &member);
    EXPECT_EQ(FindMember(lower), &member);
    EXPECT_EQ(FindMember(upper), &member);
  }
}

TEST(MembersTest, OtherNamesAreNotFound) {
  EXPECT_EQ(FindMember(""), nullptr);
  EXPECT_EQ(FindMember("g"), nullptr);
  EXPECT_EQ(FindMember("gt "), nullptr);
  EXPECT_EQ(FindMember("GetCellValues"), nullptr);
  EXPECT_EQ(FindMember(L"\u0421md"), nullptr);  // a Cyrillic letter that looks like C
}

TEST(MembersTest, AcceptOnlyTheirOwnNumberAndTypesOfArguments) {
  const Member& member = *FindMember("Cmd");
  const Argument text{std::wstring(L"a")};
  const Argument number{std::int16_t{1}};
  const Argument wideNumber{std::int32_t{1}};
  EXPECT_TRUE(member.Accepts(std::vector{text, number}));
  EXPECT_FALSE(member.Accepts(std::vector{text}));
  EXPECT_FALSE(member.Accepts(std::vector{text, number, number}));
  EXPECT_FALSE(member.Accepts(std::vector{number, text}));
  EXPECT_FALSE(member.Accepts(std::vector{text, wideNumber}));
}

TEST(MembersTest, InvokeReturnsTheResultUnderItsType) {
  Engine engine;
  std::vector<Argument> arguments{std::wstring(L"any"), std::int16_t{1}};
  EXPECT_EQ(FindMember("Cmd")->Invoke(engine, arguments), Result(std::wstring()));
  EXPECT_EQ(FindMember("gt")->Invoke(engine, {}), Result());
  const Result code = FindMember("ErrorCode")->Invoke(engine, {});
  ASSERT_TRUE(std::holds_alternative<Value>(code));
  EXPECT_NE(std::get<Value>(code).Int16(), nullptr);
}

TEST(MembersTest, InvokeGivesTheArgumentsBackAsTheCallLeftThem) {
  Engine engine;
  // A record number of -1 fails before anything is opened; the out parameter is cleared first.
  std::vector<Argument> arguments{std::wstring(L"\"none.orv\""), std::int32_t{-1}, std::int16_t{1},
                                  Boolean::kTrue, Boolean::kFalse};
  const Result text = FindMember("GetCellValue")->Invoke(engine, arguments);
  EXPECT_EQ(text, Result(std::wstring(L"<Error=20>")));
  EXPECT_EQ(std::get<Boolean>(arguments[3]), Boolean::kFalse);
  const Value code = std::get<Value>(FindMember("ErrorCode")->Invoke(engine, {}));
  ASSERT_NE(code.Int16(), nullptr);
  EXPECT_EQ(*code.Int16(), 20);
}

}  // namespace
}  // namespace orv::engine
