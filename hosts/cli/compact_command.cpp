// compact.
#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>

#include "cli/commands.h"
#include "cli/comparison.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/saving.h"
#include "cli/session.h"
#include "cli/target.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

namespace fs = std::filesystem;

struct CompactOptions {
  std::string file;
  std::string copy;
  bool inPlace = false;
  bool force = false;
};

// Deletes a copy that is not to stay.
class TemporaryFile {
 public:
  explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
  ~TemporaryFile() {
    std::error_code ignored;
    if (!kept_) fs::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  void Keep() { kept_ = true; }

 private:
  fs::path path_;
  bool kept_ = false;
};

fs::path CopyPath(const CompactOptions& options, const fs::path& file) {
  if (!options.inPlace) return NativePath(WideArgument(options.copy));
  for (int attempt = 1;; ++attempt) {
    fs::path path = file;
    path += ".compact-" + std::to_string(attempt);
    if (!fs::exists(path)) return path;
  }
}

// A copy of a matrix without a title has been given one.
void CopyTitle(Matrix& source, Matrix& copy) {
  if (const std::wstring title = source.Title(); copy.Title() != title) copy.SetTitle(title);
}

void Compact(const CompactOptions& options) {
  if (options.inPlace != options.copy.empty()) throw BadUsage("give either COPY or --in-place");
  const Target target(options.file, "");
  Matrix source(target.Path());
  if (source.Kind() != FileKind::kContainer) {
    throw Failure(options.file + ": only container files can be compacted");
  }
  const fs::path copyPath = CopyPath(options, target.File());
  std::error_code failure;
  if (fs::equivalent(target.File(), copyPath, failure)) {
    throw BadUsage("the copy must be another file; --in-place replaces the file");
  }
  const ConsoleSession session;
  SaveMatrix(source, WideName(copyPath), SaveKind::kContainerWithProperties, options.force,
             session);
  TemporaryFile temporary(copyPath);
  Matrix copy(L'"' + WideName(copyPath) + L'"');
  CopyTitle(source, copy);
  const std::int64_t cells = CompareMatrices(source, copy);
  source.engine().CloseAll();
  const auto before = static_cast<std::int64_t>(fs::file_size(target.File()));
  const auto after = static_cast<std::int64_t>(fs::file_size(copyPath));
  if (options.inPlace) {
    fs::permissions(copyPath, fs::status(target.File()).permissions());
    fs::rename(copyPath, fs::canonical(target.File()));
  }
  temporary.Keep();
  std::cout << GroupedNumber(cells) << " cells compared, " << GroupedNumber(before)
            << " bytes became " << GroupedNumber(after) << ", " << GroupedNumber(before - after)
            << " bytes won\n";
}

}  // namespace

void AddCompactCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "compact", "Copy a container file without its dead space and compare the copy cell by cell");
  const auto options = std::make_shared<CompactOptions>();
  command.add_option("FILE", options->file, "the container file")->required();
  command.add_option("COPY", options->copy, "the file to write")->type_name(kOptionalWord);
  command.add_flag("--in-place", options->inPlace,
                   "let the copy replace the file once it has been found equal");
  command.add_flag("--force", options->force, "overwrite an existing COPY without asking");
  command.callback([options] { Compact(*options); });
}

}  // namespace orv::cli
