// The scripting host: replies, faults, and that nothing on standard input ends it.
#include "cli/host.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidcheck.h>

#include "cli/request.h"
#include "cli/utf8.h"
#include "command_runner.h"
#include "platform/code_page.h"
#include "support/temp_folder.h"

namespace orv::cli {
namespace {

class HostTest : public testing::Test {
 protected:
  ~HostTest() override { Engine().CloseAll(); }

  Json Ask(const Json& request) { return Json::parse(host_.Answer(request.dump())); }
  Json Call(const char* member, Json arguments = Json::array()) {
    return Ask({{"member", member}, {"args", std::move(arguments)}});
  }
  // The sentence of the fault that the line is answered with.
  std::string FaultOf(std::string_view line) {
    const Json reply = Json::parse(host_.Answer(line));
    EXPECT_EQ(reply.size(), 2u) << reply;
    EXPECT_TRUE(reply.contains("id")) << reply;
    return reply.value("fault", "");
  }
  std::string Path(std::wstring_view name = L"a.orv") {
    return ToUtf8(test::Quoted(folder_.Name(name)));
  }
  void MakeFile() {
    Call("CmdNewOrvDB", {Path(), "Title"});
    Call("CmdAddFld", {Path(), 2, 1});
    Call("CmdAddRecord", {Path(), 3, 1});
  }

  test::TempFolder folder_;
  Host host_;
};

TEST_F(HostTest, AnswersWithResultArgumentsErrorAndDialogs) {
  MakeFile();
  Call("SetCellValue", {"Москва", Path(), 1, 1});
  EXPECT_EQ(host_.Answer("{\"id\": 7, \"member\": \"getcellvalue\", \"args\": [" +
                         Json(Path()).dump() + ", 1, 1, true, false]}"),
            "{\"id\":7,\"result\":\"Москва\",\"args\":[" + Json(Path()).dump() +
                ",1,1,false,false],\"error\":0,\"dialogs\":[]}");
}

TEST_F(HostTest, RepeatsAnyIdAndLeavesAMissingOneOut) {
  const Json id = Json::parse(R"({"b": [1, null, "x"], "a": 1.5})");
  EXPECT_EQ(Ask({{"id", id}, {"member", "gt"}})["id"].dump(), id.dump());
  EXPECT_TRUE(Ask({{"id", nullptr}, {"member", "gt"}}).contains("id"));
  EXPECT_FALSE(Ask({{"member", "gt"}}).contains("id"));
}

TEST_F(HostTest, GivesEveryKindOfResult) {
  MakeFile();
  EXPECT_EQ(Call("gt")["result"], nullptr);
  EXPECT_EQ(Call("Records", {Path()})["result"], 3);
  EXPECT_EQ(Call("IsORVorDBF", {Path()})["result"], 1);
  EXPECT_EQ(Call("GetTitle", {Path()})["result"], "Title");
  EXPECT_EQ(Call("ReBit", {Path(), 1, 1, 1})["result"], nullptr);
  EXPECT_EQ(Call("ErrorCode")["result"], 0);
}

TEST_F(HostTest, ErrorIsReadWithoutDisturbingIt) {
  MakeFile();
  EXPECT_EQ(Call("GetCellValue", {Path(), -1, 1, false, false})["error"], 20);
  EXPECT_EQ(Call("ErrorCode")["result"], 20);
  EXPECT_EQ(Call("Cmd", {"x", 1})["error"], 20);
}

TEST_F(HostTest, TheArrayComesBackWithItsTexts) {
  MakeFile();
  Call("SetCellValue", {"x", Path(), 2, 1});
  Call("SetCellValue", {"y", Path(), 3, 2});
  const Json array = {{"fields", {1, 2}}, {"records", {2, 4}}};
  const Json reply = Call("ValueMatrix", {array, Path(), 2, 3, false});
  EXPECT_EQ(reply["args"][0].dump(),
            R"({"fields":[1,2],"records":[2,4],"values":[["x","",""],["","y",""]]})");
}

TEST_F(HostTest, AnEmptyArrayComesBackEmpty) {
  const Json array = {{"fields", {1, 0}}, {"records", {5, 4}}};
  const Json reply = Call("ValueMatrix", {array, "\"\"", 1, 0, false});
  EXPECT_EQ(reply["args"][0]["values"].dump(), "[]");
}

TEST_F(HostTest, EveryByteOfTheCodePageSurvives) {
  MakeFile();
  std::wstring text;
  for (int byte = 1; byte < 256; ++byte) {
    text.push_back(platform::ToWide(static_cast<char>(byte)));
  }
  text.insert(text.begin(), L'\0');
  Call("SetCellValue", {ToUtf8(text), Path(), 1, 1});
  EXPECT_EQ(Call("GetCellValue", {Path(), 1, 1, false, false})["result"], ToUtf8(text));
  Call("SetCellValue", {"a\xE4\xB8\xAD", Path(), 1, 1});
  EXPECT_EQ(Call("GetCellValue", {Path(), 1, 1, false, false})["result"], "a?");
}

TEST_F(HostTest, AFileNameKeepsEveryCharacter) {
  const std::string path = Path(L"\u4E2D\u6587 \u0416.orv");
  Call("CmdNewOrvDB", {path, "T"});
  EXPECT_EQ(Call("GetTitle", {path})["result"], "T");
  EXPECT_TRUE(test::Exists(folder_.Name(L"\u4E2D\u6587 \u0416.orv")));
}

TEST_F(HostTest, AnswersPressTheButtonsOfTheCall) {
  MakeFile();
  const Json refused = Call("CmdNewOrvDB", {Path(), "New"});
  EXPECT_EQ(refused["error"], 51);
  ASSERT_EQ(refused["dialogs"].size(), 1u);
  const Json& box = refused["dialogs"][0];
  EXPECT_EQ(box["kind"], "message");
  EXPECT_EQ(box["caption"], "ORV Server v1.0");
  EXPECT_EQ(box["text"], "Файл уже существует!\rЗаписать вместо него?");
  EXPECT_EQ(box["buttons"], "okcancel");
  EXPECT_EQ(box["answer"], "cancel");
  const Json accepted =
      Ask({{"member", "CmdNewOrvDB"}, {"args", {Path(), "New"}}, {"answers", {"ok"}}});
  EXPECT_EQ(accepted["error"], 0);
  EXPECT_EQ(accepted["dialogs"][0]["answer"], "ok");
  EXPECT_EQ(Call("GetTitle", {Path()})["result"], "New");
  EXPECT_EQ(Call("CmdNewOrvDB", {Path(), "Again"})["error"], 51) << "answers last for one call";
}

TEST_F(HostTest, NumbersReachTheirLimits) {
  EXPECT_EQ(Call("Cmd", {"", 32767})["args"][1], 32767);
  EXPECT_EQ(Call("Cmd", {"", -32768})["args"][1], -32768);
  MakeFile();
  EXPECT_TRUE(Call("GetCellValue", {Path(), 2147483647, 1, false, false}).contains("error"));
  EXPECT_TRUE(Call("GetCellValue", {Path(), -2147483648LL, 1, false, false}).contains("error"));
}

TEST_F(HostTest, FaultsSayWhatIsWrongAndNeverReachTheEngine) {
  MakeFile();
  Call("GetCellValue", {Path(), -1, 1, false, false});  // leaves 20
  const std::pair<const char*, const char*> faults[] = {
      {"", "the line is not valid JSON"},
      {"hello", "the line is not valid JSON"},
      {"{\"member\": \"gt\"", "the line is not valid JSON"},
      {"{\"member\": \"gt\"} x", "the line is not valid JSON"},
      {"{\"member\": \"\xFF\"}", "the line is not valid JSON"},
      {"{\"member\": \"\\ud800\"}", "the line is not valid JSON"},
      {"{\"id\": 1e999, \"member\": \"gt\"}", "the line is not valid JSON"},
      {"[]", "the line is no JSON object"},
      {"null", "the line is no JSON object"},
      {"7", "the line is no JSON object"},
      {"{}", "the request needs \"member\", the name of a member"},
      {"{\"member\": 5}", "the request needs \"member\", the name of a member"},
      {"{\"member\": \"Nope\"}", "there is no member \"Nope\""},
      {"{\"member\": \"Records\"}", "Records takes 1 argument, not 0"},
      {"{\"member\": \"gt\", \"args\": [1]}", "gt takes 0 arguments, not 1"},
      {"{\"member\": \"cmd\", \"args\": {}}", "\"args\" must be a list"},
      {"{\"member\": \"cmd\", \"args\": [1, 1]}", "\"a\" must be a text"},
      {"{\"member\": \"cmd\", \"args\": [null, 1]}", "\"a\" must be a text"},
      {"{\"member\": \"cmd\", \"args\": [\"\", \"1\"]}", "\"Tp\" must be an integer"},
      {"{\"member\": \"cmd\", \"args\": [\"\", true]}", "\"Tp\" must be an integer"},
      {"{\"member\": \"cmd\", \"args\": [\"\", 1.0]}", "\"Tp\" must be an integer of 16 bits"},
      {"{\"member\": \"cmd\", \"args\": [\"\", 32768]}", "\"Tp\" must be an integer of 16 bits"},
      {"{\"member\": \"cmd\", \"args\": [\"\", -32769]}", "\"Tp\" must be an integer of 16 bits"},
      {"{\"member\": \"CmdAddRecord\", \"args\": [\"\", 2147483648, 1]}",
       "\"Number\" must be an integer of 32 bits"},
      {"{\"member\": \"CmdAddRecord\", \"args\": [\"\", 18446744073709551615, 1]}",
       "\"Number\" must be an integer of 32 bits"},
      {"{\"member\": \"CmdAddRecord\", \"args\": [\"\", 99999999999999999999999, 1]}",
       "\"Number\" must be an integer of 32 bits"},
      {"{\"member\": \"GetTypeValue\", \"args\": [\"\", 1, 1, \"\", -1]}",
       "\"Frml\" must be true or false"},
      {"{\"member\": \"ValueMatrix\", \"args\": [[], \"\", 1, 1, true]}",
       "\"m\" must be an object with \"fields\" and \"records\""},
      {"{\"member\": \"ValueMatrix\", \"args\": [{\"fields\": [1, 2]}, \"\", 1, 1, true]}",
       "\"m\" needs \"records\", a pair of integers of 32 bits"},
      {"{\"member\": \"ValueMatrix\", \"args\": [{\"fields\": [1], \"records\": [1, 2]}, \"\", 1, "
       "1, true]}",
       "\"m\" needs \"fields\", a pair of integers of 32 bits"},
      {"{\"member\": \"ValueMatrix\", \"args\": [{\"fields\": [-2147483648, 2147483647], "
       "\"records\": [-2147483648, 2147483647]}, \"\", 1, 1, true]}",
       "\"m\" is too large: an array may hold 10000000 texts"},
      {"{\"member\": \"gt\", \"answers\": \"ok\"}", "\"answers\" must be a list of texts"},
      {"{\"member\": \"gt\", \"answers\": [1]}", "\"answers\" must be a list of texts"},
      {"{\"member\": \"gt\", \"press_cancel_at\": \"1\"}",
       "\"press_cancel_at\" must be an integer"},
      {"{\"member\": \"gt\", \"separators\": [\";\"]}", "\"separators\" must be a pair of texts"},
  };
  for (const auto& [line, sentence] : faults) EXPECT_EQ(FaultOf(line), sentence) << line;
  EXPECT_EQ(Call("ErrorCode")["result"], 20);
}

TEST_F(HostTest, AFaultRepeatsTheIdWhereItCanBeRead) {
  EXPECT_EQ(host_.Answer("{\"id\": [3], \"member\": \"x\"}"),
            "{\"id\":[3],\"fault\":\"there is no member \\\"x\\\"\"}");
  EXPECT_EQ(host_.Answer("x"), "{\"id\":null,\"fault\":\"the line is not valid JSON\"}");
}

TEST_F(HostTest, DeepAndHugeLinesAreAnswered) {
  const std::string deep(2'000'000, '[');
  EXPECT_EQ(FaultOf(deep), "the line nests values too deeply");
  EXPECT_EQ(FaultOf("{\"id\": " + deep + std::string(deep.size(), ']') + "}"),
            "the line nests values too deeply");
  EXPECT_EQ(FaultOf(std::string(5'000'000, '{')), "the line nests values too deeply");
  // Brackets inside a text nest nothing.
  EXPECT_EQ(Call("Cmd", {std::string(100'000, '['), 1})["result"], "");
  EXPECT_EQ(Call("Cmd", {std::string(20'000'000, 'x'), 1})["result"], "");
  EXPECT_EQ(FaultOf(std::string(1000, '\0')), "the line is not valid JSON");
}

TEST_F(HostTest, MutilatedLinesAreAnsweredOneByOne) {
  const std::string line =
      R"({"id":[1,{"k":"v"}],"member":"Cmd","args":["\u0416 text",-5],"answers":["ok"],)"
      R"("press_cancel_at":3,"separators":[";","x"]})";
  EXPECT_TRUE(rc::check("any damage is answered by a JSON object", [&] {
    std::string damaged = line;
    const int wounds = *rc::gen::inRange(1, 6);
    for (int i = 0; i < wounds; ++i) {
      const auto at = *rc::gen::inRange<std::size_t>(0, damaged.size());
      const char byte = *rc::gen::arbitrary<char>();
      switch (*rc::gen::inRange(0, 3)) {
        case 0:
          damaged[at] = byte;
          break;
        case 1:
          damaged.insert(at, 1, byte);
          break;
        default:
          damaged.erase(at, 1);
      }
      if (damaged.empty()) damaged = "{";
    }
    const Json reply = Json::parse(host_.Answer(damaged), nullptr, false);
    RC_ASSERT(reply.is_object());
    RC_ASSERT(reply.contains("fault") != reply.contains("result"));
  }));
}

TEST(RunHostTest, AnswersEveryLineInOrder) {
  std::istringstream in(
      "{\"id\":1,\"member\":\"InsFirstLvlMtx\",\"args\":[\"x\"]}\r\nnonsense\n\n"
      "{\"id\":2,\"member\":\"gt\"}");
  std::ostringstream out;
  RunHost(in, out);
  EXPECT_EQ(out.str(),
            "{\"id\":1,\"result\":null,\"args\":[\"x\"],\"error\":10,\"dialogs\":[]}\n"
            "{\"id\":null,\"fault\":\"the line is not valid JSON\"}\n"
            "{\"id\":null,\"fault\":\"the line is not valid JSON\"}\n"
            "{\"id\":2,\"result\":null,\"args\":[],\"error\":10,\"dialogs\":[]}\n");
}

class HostCommandTest : public test::CommandTest {};

TEST_F(HostCommandTest, DrivesTheEngineOverStandardInputAndEndsWithStatusZero) {
  EXPECT_EQ(Out({"host"}), "");
  const std::string replies =
      Out({"host"},
          "{\"id\":1,\"member\":\"CmdNewOrvDB\",\"args\":[\"h.orv\",\"Из скрипта\"]}\n"
          "garbage \xFF\n"
          "{\"id\":2,\"member\":\"GetTitle\",\"args\":[\"\\\"h.orv\\\"\"]}\n");
  EXPECT_EQ(replies,
            "{\"id\":1,\"result\":null,\"args\":[\"h.orv\",\"Из скрипта\"],\"error\":0,"
            "\"dialogs\":[]}\n"
            "{\"id\":null,\"fault\":\"the line is not valid JSON\"}\n"
            "{\"id\":2,\"result\":\"Из скрипта\",\"args\":[\"\\\"h.orv\\\"\"],\"error\":0,"
            "\"dialogs\":[]}\n");
  EXPECT_EQ(Out({"title", "h.orv"}), "Из скрипта\n");
}

}  // namespace
}  // namespace orv::cli
