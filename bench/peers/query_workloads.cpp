#include <cstdio>
#include <filesystem>

#include "peers/analysis_clock.h"
#include "peers/workloads.h"

namespace orv::bench {
namespace {

/// A text that no field holds, 8 characters long as the letters are.
constexpr const char* kAbsent = "NOWHERE1";
constexpr const char* kAbsentPart = "qx7jz";

constexpr std::int16_t kFixedStyle = 1;
constexpr std::int16_t kDictionaryStyle = 11;

/// Runs a query and counts its rows.
std::uint64_t CountRows(const SqliteTable& table, const std::string& sql) {
  const SqliteStatement rows = table.Prepare(sql);
  std::uint64_t count = 0;
  while (table.Step(rows.get())) ++count;
  return count;
}

/// SQLite doing the whole of a query, at so many nanoseconds a record of the table.
Entrant Query(std::string name, SqliteTable& table, std::int32_t records, std::string sql,
              double mustReach) {
  return {std::move(name),
          [&table, records, sql = std::move(sql)] {
            return Pass{records, CountRows(table, sql)};
          },
          mustReach};
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

std::string Where(std::int16_t field, const std::string& condition) {
  return "SELECT rowid FROM t WHERE f" + std::to_string(field) + condition;
}

/// A search that goes through all records and finds none.
Pass SearchInVain(EngineTable& table, std::int32_t records, std::int16_t field, const char* text,
                  bool inCell, bool exactCase) {
  std::wstring path = table.path();
  std::int32_t first = 1;
  std::wstring value = Widen(text);
  std::int16_t region = 0;
  Boolean part = ToBoolean(inCell);
  std::int16_t direction = 0;
  Boolean letterCase = ToBoolean(exactCase);
  const std::int32_t found =
      table.engine().MtxFindFirst(path, first, field, value, region, part, direction, letterCase);
  table.CheckError("MtxFindFirst");
  return {records, found == -1 ? 0U : 1U};
}

Workload ExactSearch(Stores& stores, std::string name, EngineTable& table, std::int16_t field,
                     double mustReach) {
  const std::int32_t records = stores.records();
  return {
      std::move(name),
      "record",
      {{"engine", [&table, records,
                   field] { return SearchInVain(table, records, field, kAbsent, false, true); }},
       Query("SQLite tuned", stores.sqliteTuned(), records, Where(field, "=" + Quoted(kAbsent)),
             mustReach)}};
}

Workload SubstringSearch(Stores& stores, std::string name) {
  const std::int32_t records = stores.records();
  EngineTable& table = stores.engine();
  return {std::move(name),
          "record",
          {{"engine",
            [&table, records] {
              return SearchInVain(table, records, kText, kAbsentPart, true, false);
            }},
           Query("SQLite tuned", stores.sqliteTuned(), records,
                 Where(kText, " LIKE '%" + std::string(kAbsentPart) + "%'"), 6)}};
}

/// Building a view; the check is how many records it shows.
Workload BuildView(Stores& stores, std::string name, EngineTable& table,
                   const std::string& condition, const std::string& sql, double mustReach) {
  const std::int32_t records = stores.records();
  Entrant engine{"engine", [&table, records, condition] {
                   return Pass{records, static_cast<std::uint64_t>(table.Records(condition))};
                 }};
  engine.prepare = [&table] {
    table.Close();  // drops the views
    table.Records();
  };
  return {std::move(name),
          "record",
          {engine, Query("SQLite tuned", stores.sqliteTuned(), records, sql, mustReach)}};
}

Workload FieldView(Stores& stores, std::string name, EngineTable& table, double mustReach) {
  return BuildView(stores, std::move(name), table,
                   "f(" + std::to_string(kCity) + ")=\"" + FrequentCity() + "\"",
                   Where(kCity, "=" + Quoted(FrequentCity())), mustReach);
}

Workload ConditionView(Stores& stores, std::string name) {
  return BuildView(stores, std::move(name), stores.engine(),
                   "if(cell(rec,8)=\"" + FirstWord() + "\",val(cell(rec,4))>500000,false)",
                   Where(kWord, "=" + Quoted(FirstWord()) + " AND CAST(f4 AS INTEGER)>500000"), 1);
}

/// Only the analysis of the conversion to a dictionary is timed; then the conversion is cancelled.
Workload Analysis(Stores& stores, std::string name, std::int16_t field, double mustReach) {
  const std::int32_t records = stores.records();
  const std::string file = stores.Copy("analysed.orv");
  const auto table = std::make_shared<EngineTable>(file);
  const TimeKind kind = stores.timeKind();
  return {std::move(name),
          "record",
          {{"engine",
            [table, records, field, kind] {
              AnalysisClock clock(kind);
              std::wstring path = table->path();
              std::int16_t number = field;
              std::int16_t style = kDictionaryStyle;
              std::int16_t size = 0;
              std::int16_t type = 0;
              Boolean no = Boolean::kFalse;
              table->engine().SetFldStyle(path, number, style, size, no, no, type);
              return Pass{records, 0, clock.nanoseconds()};
            }},
           {"SQLite",
            [&sqlite = stores.sqliteDefault(), records, field] {
              const std::string f = "f" + std::to_string(field);
              const std::uint64_t groups =
                  CountRows(sqlite, "SELECT " + f + ", count(*) FROM t GROUP BY " + f);
              return Pass{records, groups > 0 ? 0U : 1U};
            },
            mustReach}}};
}

Workload Sort(Stores& stores, std::string name) {
  const std::int32_t records = stores.records();
  EngineTable& table = stores.engine();
  return {std::move(name),
          "record",
          {{"engine",
            [&table, records] {
              std::wstring path = table.path();
              std::int16_t field = kLetters;
              table.engine().SortData(path, field);
              table.CheckError("SortData");
              return Pass{records, static_cast<std::uint64_t>(records)};
            }},
           Query("SQLite", stores.sqliteDefault(), records, "SELECT rowid FROM t ORDER BY f2", 2)}};
}

std::uint64_t WriteRows(const SqliteTable& table, const std::string& file) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> out(std::fopen(file.c_str(), "wb"),
                                                            std::fclose);
  if (!out) throw NotMeasured("cannot write " + file);
  const SqliteStatement all = table.Prepare("SELECT * FROM t");
  std::string line;
  while (table.Step(all.get())) {
    line.clear();
    for (int column = 0; column < kFields; ++column) {
      line += SqliteTable::Column(all.get(), column);
      line += column + 1 < kFields ? "\t" : "\r\n";
    }
    std::fwrite(line.data(), 1, line.size(), out.get());
  }
  return static_cast<std::uint64_t>(std::ftell(out.get()));
}

/// The engine's file begins with the line of field names, here seven separators and a line end, and
/// has no line end behind the last record.
constexpr std::uint64_t kNameLineBytes = kFields - 1 + 2;
constexpr std::uint64_t kLastLineEndBytes = 2;

Workload Export(Stores& stores, std::string name) {
  const std::int32_t records = stores.records();
  EngineTable& table = stores.engine();
  const std::string ours = stores.File("export-engine.txt");
  const std::string theirs = stores.File("export-sqlite.txt");
  Entrant engine{"engine", [&table, records, ours] {
                   std::wstring path = table.path();
                   std::wstring file = Widen(ours);
                   Boolean no = Boolean::kFalse;
                   std::int16_t type = 0;
                   table.engine().SaveMtxAs(path, file, no, type);
                   table.CheckError("SaveMtxAs");
                   return Pass{records, std::filesystem::file_size(ours)};
                 }};
  engine.prepare = [ours] { std::filesystem::remove(ours); };
  Entrant sqlite{"SQLite tuned",
                 [&tuned = stores.sqliteTuned(), records, theirs] {
                   const std::uint64_t bytes = WriteRows(tuned, theirs);
                   return Pass{records, bytes + kNameLineBytes - kLastLineEndBytes};
                 },
                 2};
  sqlite.prepare = [theirs] { std::filesystem::remove(theirs); };
  return {std::move(name), "record", {engine, sqlite}};
}

template <typename Make>
Planned Plan(std::string name, Make make) {
  return {name, [name, make](Stores& stores) { return make(stores, name); }};
}

}  // namespace

void AddQueryWorkloads(std::vector<Planned>& plan) {
  using Name = const std::string&;
  plan.push_back(Plan("exact search, free field",
                      [](Stores& s, Name n) { return ExactSearch(s, n, s.engine(), kCity, 4); }));
  plan.push_back(Plan("exact search, fixed field", [](Stores& s, Name n) {
    return ExactSearch(s, n, s.styled(), kLetters, 20);
  }));
  plan.push_back(Plan("exact search, dictionary field",
                      [](Stores& s, Name n) { return ExactSearch(s, n, s.styled(), kCity, 20); }));
  plan.push_back(
      Plan("substring ignoring case", [](Stores& s, Name n) { return SubstringSearch(s, n); }));
  plan.push_back(Plan("filter field=value, free field",
                      [](Stores& s, Name n) { return FieldView(s, n, s.engine(), 4); }));
  plan.push_back(Plan("filter field=value, dictionary field",
                      [](Stores& s, Name n) { return FieldView(s, n, s.styled(), 20); }));
  plan.push_back(
      Plan("filter with a condition", [](Stores& s, Name n) { return ConditionView(s, n); }));
  plan.push_back(Plan("analysis, 300 distinct values",
                      [](Stores& s, Name n) { return Analysis(s, n, kCity, 8); }));
  plan.push_back(Plan("analysis, all values distinct",
                      [](Stores& s, Name n) { return Analysis(s, n, 1, 1.5); }));
  plan.push_back(Plan("sort by 8 letters", [](Stores& s, Name n) { return Sort(s, n); }));
  plan.push_back(Plan("export to text", [](Stores& s, Name n) { return Export(s, n); }));
}

void ConvertStyles(EngineTable& table) {
  table.Convert(kLetters, kFixedStyle, kLettersCount);
  table.Convert(kCity, kDictionaryStyle, 0);
  table.Convert(kWord, kDictionaryStyle, 0);
}

}  // namespace orv::bench
