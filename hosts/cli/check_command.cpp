// check.
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/raw_file.h"
#include "cli/utf8.h"
#include "inspect/inspection.h"

namespace orv::cli {
namespace {

using inspect::FileKind;
using inspect::Finding;
using inspect::Inspection;
using Json = nlohmann::ordered_json;

double DeadPercent(const Inspection& inspection) {
  constexpr double kWhole = 100;
  if (inspection.bytes == 0) return 0;
  return kWhole * static_cast<double>(inspection.DeadBytes()) /
         static_cast<double>(inspection.bytes);
}

std::string PercentText(double percent) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(1) << percent << " %";
  return std::move(text).str();
}

/// "/[3,1], field 2, record 7, position 1234"
std::string PlaceText(const Finding& finding) {
  std::string text = finding.matrix.empty() ? "" : finding.matrix + ", ";
  if (finding.field > 0) text += "field " + std::to_string(finding.field) + ", ";
  if (finding.record == 0) text += "name, ";
  if (finding.record > 0) text += "record " + std::to_string(finding.record) + ", ";
  return text + "position " + std::to_string(finding.position);
}

void PrintFinding(const Finding& finding) {
  std::cout << PlaceText(finding) << ": " << inspect::DamageWords(finding.damage) << ": "
            << finding.what << "; still readable: " << finding.readable << '\n';
}

void PrintText(const Inspection& inspection) {
  for (const Finding& finding : inspection.findings.listed()) PrintFinding(finding);
  if (const std::int64_t more = inspection.findings.unlisted(); more > 0) {
    std::cout << "and " << Counted(more, "more finding") << '\n';
  }
  const auto findings = std::ssize(inspection.findings.listed()) + inspection.findings.unlisted();
  const std::string matrices =
      inspection.matrices == 1 ? "1 matrix" : GroupedNumber(inspection.matrices) + " matrices";
  std::cout << (findings == 0 ? std::string("clean") : Counted(findings, "finding")) << ": "
            << matrices << ", " << Counted(inspection.fields, "field") << ", "
            << Counted(inspection.records, "record") << ", " << Counted(inspection.cells, "cell")
            << "; " << Counted(inspection.liveBytes, "live byte") << ", "
            << Counted(inspection.DeadBytes(), "dead byte") << " ("
            << PercentText(DeadPercent(inspection)) << ")\n";
}

Json ToJson(const Finding& finding) {
  Json json;
  json["damage"] = inspect::DamageName(finding.damage);
  json["matrix"] = finding.matrix.empty() ? Json() : Json(finding.matrix);
  json["field"] = finding.field > 0 ? Json(finding.field) : Json();
  json["record"] = finding.record >= 0 ? Json(finding.record) : Json();
  json["position"] = finding.position;
  json["what"] = finding.what;
  json["readable"] = finding.readable;
  return json;
}

void PrintJson(const Inspection& inspection, const Target& target) {
  Json json;
  json["file"] = ToUtf8(WideName(target.File()));
  json["kind"] = inspection.kind == FileKind::kContainer ? "container" : "dbase";
  json["clean"] = inspection.IsClean();
  json["findings"] = Json::array();
  for (const Finding& finding : inspection.findings.listed()) {
    json["findings"].push_back(ToJson(finding));
  }
  json["unlisted"] = inspection.findings.unlisted();
  json["matrices"] = inspection.matrices;
  json["fields"] = inspection.fields;
  json["records"] = inspection.records;
  json["cells"] = inspection.cells;
  json["bytes"] = inspection.bytes;
  json["liveBytes"] = inspection.liveBytes;
  json["deadBytes"] = inspection.DeadBytes();
  json["deadPercent"] = DeadPercent(inspection);
  std::cout << json.dump() << '\n';
}

void Check(const Target& target, bool json) {
  const auto file = OpenBytes(target);
  const Inspection inspection = inspect::Inspect(*file);
  CheckIntact(*file, target);
  if (inspection.kind == FileKind::kUnknown) {
    throw Failure(ToUtf8(target.FilePart()) + ": neither a container file nor a dBASE III table");
  }
  if (json) {
    PrintJson(inspection, target);
  } else {
    PrintText(inspection);
  }
  if (!inspection.IsClean()) throw DamageFound();
}

}  // namespace

void AddCheckCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "check",
      "Look for damage in a container file or dBASE III table and count its live and dead bytes");
  struct Options {
    std::string file;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  command.add_option("FILE", options->file, "the file; it is not changed")->required();
  command.add_flag("--json", options->json, "one JSON object instead of lines");
  command.footer("Exit status: 0 clean, 3 damaged, 1 failed, 2 called wrongly.");
  command.callback([options] { Check(Target(options->file, ""), options->json); });
}

}  // namespace orv::cli
