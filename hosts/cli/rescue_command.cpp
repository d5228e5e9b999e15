// rescue.
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/raw_file.h"
#include "cli/structure.h"
#include "cli/utf8.h"
#include "inspect/inspection.h"
#include "inspect/rescue.h"
#include "platform/run_time_error.h"

namespace orv::cli {
namespace {

namespace fs = std::filesystem;
using inspect::Rescued;
using inspect::RescueRemark;

constexpr std::int16_t kNotOverwritten = 51;

void CheckFiles(const Target& source, const Target& copy, bool force) {
  std::error_code missing;
  if (fs::equivalent(source.File(), copy.File(), missing)) {
    throw BadUsage("a file cannot be rescued into itself");
  }
  if (fs::exists(copy.File()) && !force) {
    throw Failure(ErrorSentence(copy.FilePart(), kNotOverwritten));
  }
}

void PrintRemark(const RescueRemark& remark) {
  std::cout << (remark.isLoss ? "lost: " : "changed: ");
  if (!remark.matrix.empty()) std::cout << remark.matrix << ", ";
  if (remark.field > 0) std::cout << "field " << remark.field << ", ";
  if (remark.record == 0) std::cout << "name, ";
  if (remark.record > 0) std::cout << "record " << remark.record << ", ";
  std::cout << remark.what << '\n';
}

void Print(const Rescued& rescued) {
  for (const RescueRemark& remark : rescued.remarks) PrintRemark(remark);
  if (rescued.unlisted > 0) std::cout << "and " << Counted(rescued.unlisted, "more line") << '\n';
  std::cout << (rescued.lost ? "not everything could be copied: " : "everything was copied: ")
            << (rescued.matrices == 1 ? std::string("1 matrix")
                                      : GroupedNumber(rescued.matrices) + " matrices")
            << ", " << Counted(rescued.fields, "field") << ", "
            << Counted(rescued.records, "record") << ", " << Counted(rescued.cells, "cell") << '\n';
}

/// A copy that could not be finished does not stay.
Rescued CopyInto(platform::File& file, const Target& copy) {
  try {
    const auto target = CreateBytes(copy);
    Rescued rescued = inspect::Rescue(file, *target);
    CheckIntact(*target, copy);
    return rescued;
  } catch (const platform::RunTimeFailure& failure) {
    std::error_code ignored;
    fs::remove(copy.File(), ignored);
    throw Failure(ErrorSentence(copy.FilePart(), static_cast<std::int16_t>(failure.number())));
  }
}

void RescueFile(const Target& source, const Target& copy, bool force) {
  const auto file = OpenBytes(source);
  if (inspect::KindOf(*file) != inspect::FileKind::kContainer) {
    throw Failure(ToUtf8(source.FilePart()) + ": no container file");
  }
  CheckFiles(source, copy, force);
  if (force) RemoveForReplacement(copy.File());
  const Rescued rescued = CopyInto(*file, copy);
  CheckIntact(*file, source);
  Print(rescued);
  if (rescued.lost) throw DamageFound();
}

}  // namespace

void AddRescueCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "rescue", "Copy what can still be read of a damaged container file into a new one");
  struct Options {
    std::string file;
    std::string copy;
    bool force = false;
  };
  const auto options = std::make_shared<Options>();
  command.add_option("FILE", options->file, "the damaged file; it is not changed")->required();
  command.add_option("NEW", options->copy, "the file to write")->required();
  command.add_flag("--force", options->force, "overwrite an existing NEW");
  command.footer(
      "Exit status: 0 everything was copied, 3 something was lost, 1 failed, 2 called wrongly.");
  command.callback([options] {
    RescueFile(Target(options->file, ""), Target(options->copy, ""), options->force);
  });
}

}  // namespace orv::cli
