// import.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <system_error>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/import_source.h"
#include "cli/matrix.h"
#include "cli/progress_bar.h"
#include "cli/structure.h"
#include "cli/utf8.h"
#include "cli/words.h"
#include "platform/code_page.h"

namespace orv::cli {
namespace {

struct ImportOptions {
  explicit ImportOptions(CLI::App& owner)
      : sourceWord(owner.add_option("SOURCE", source,
                                    "the .dbf, .csv or .tsv file; - is a text on standard input")),
        words(owner) {
    sourceWord->required();
  }

  std::string source;
  CLI::Option* sourceWord;  // declared before the words of the target, so it comes first
  Words words;
  std::string encoding = "utf-8";
  std::string delimiter;
  std::string title;
  bool noHeader = false;
  bool append = false;
  bool force = false;
};

std::string LowerExtension(const std::string& file) {
  std::string extension = std::filesystem::path(file).extension().string();
  for (char& letter : extension) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return extension;
}

char DelimiterOf(const ImportOptions& options, const std::string& extension) {
  if (options.delimiter == "tab" || options.delimiter == "\\t") return '\t';
  if (options.delimiter.size() == 1 && options.delimiter != "\"") return options.delimiter[0];
  if (!options.delimiter.empty()) {
    throw BadUsage("a delimiter is one character or the word tab");
  }
  return extension == ".tsv" || extension == ".tab" ? '\t' : ',';
}

std::unique_ptr<ImportSource> OpenSource(const ImportOptions& options) {
  const std::string extension = LowerExtension(options.source);
  if (extension == ".dbf") {
    if (!std::filesystem::exists(NativePath(WideArgument(options.source)))) {
      throw Failure(options.source + ": error 53: " + std::string(MeaningOf(53)));
    }
    return OpenTableSource(Target(options.source, "").Path());
  }
  const std::optional<Encoding> encoding = EncodingNamed(options.encoding);
  if (!encoding) throw BadUsage("the encoding is utf-8, cp1251 or cp866");
  return OpenTextSource(options.source,
                        {*encoding, DelimiterOf(options, extension), !options.noHeader});
}

std::wstring TitleOf(const ImportOptions& options) {
  if (!options.title.empty()) return WideArgument(options.title);
  return WideName(NativePath(WideArgument(options.source)).stem());
}

// The matrix that a path's last step would nest in a cell.
struct CellStep {
  std::wstring matrix;
  std::int32_t record;
  std::int16_t field;
};

std::optional<CellStep> LastCellStep(const std::wstring& path) {
  const std::size_t start = path.rfind(L"/[");
  if (start == std::wstring::npos || !path.ends_with(L']')) return std::nullopt;
  const std::string inside =
      ToUtf8(std::wstring_view(path).substr(start + 2, path.size() - start - 3));
  const std::size_t comma = inside.find(',');
  if (comma == std::string::npos) return std::nullopt;
  const std::int32_t field = Int32Word(inside.substr(comma + 1), "the field of the last step");
  return CellStep{path.substr(0, start),
                  Int32Word(inside.substr(0, comma), "the record of the last step"),
                  static_cast<std::int16_t>(field)};
}

// Makes sure that the matrix of the target is there.
Matrix Destination(const ImportOptions& options) {
  const Target target = options.words.TargetOf();
  std::error_code failure;
  if (std::filesystem::equivalent(NativePath(WideArgument(options.source)), target.File(),
                                  failure)) {
    throw BadUsage("a file cannot be imported into itself");
  }
  const bool fileExists = std::filesystem::exists(target.File());
  if (!fileExists || (options.force && target.steps().empty())) {
    if (!target.steps().empty()) throw Failure(ErrorSentence(target.Path(), 53));
    CreateFile(target, TitleOf(options), options.force);
    return Matrix(target.Path());
  }
  Matrix matrix(target.Path());
  if (matrix.Exists()) return matrix;
  const std::optional<CellStep> step = LastCellStep(target.Path());
  if (step) Matrix(step->matrix).PutMatrix(step->record, step->field, TitleOf(options));
  return matrix;
}

// The number of the record that the first imported one gets.
std::int32_t MakeRoom(Matrix& matrix, const ImportSource& source, bool append) {
  const std::int16_t present = matrix.Fields();
  const std::int32_t first = matrix.Records() + 1;
  if (present > 0 && !append) {
    throw Failure(ToUtf8(matrix.path()) +
                  ": the matrix is not empty; --append adds to it, --force replaces the file");
  }
  std::vector<std::wstring> names = source.names();
  names.erase(names.begin(), names.begin() + std::min<std::ptrdiff_t>(present, std::ssize(names)));
  AddNamedFields(matrix, names, static_cast<std::int16_t>(present + 1));
  if (source.records() > 0) matrix.AddRecords(source.records(), first);
  return first;
}

// Writes all rows and returns how many of their characters the engine cannot hold.
std::int64_t CopyRows(ImportSource& source, Matrix& matrix, std::int32_t first) {
  ProgressBar progress(L"Importing", source.records());
  std::vector<ImportRow> rows;
  std::int64_t lost = 0;
  std::int32_t record = first;
  for (source.NextRows(rows); !rows.empty(); source.NextRows(rows)) {
    for (const ImportRow& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i].empty()) continue;
        lost += std::ranges::count_if(row[i], [](wchar_t c) { return !platform::HasByte(c); });
        matrix.SetCell(record, static_cast<std::int16_t>(i + 1), row[i]);
      }
      ++record;
      progress.Update(record - first);
    }
  }
  return lost;
}

void Import(const ImportOptions& options) {
  const std::unique_ptr<ImportSource> source = OpenSource(options);
  Matrix matrix = Destination(options);
  const std::int32_t first = MakeRoom(matrix, *source, options.append);
  const std::int64_t lost = CopyRows(*source, matrix, first);
  std::cout << Counted(source->records(), "record") << ", "
            << Counted(std::ssize(source->names()), "field") << '\n';
  if (lost > 0) {
    std::cout.flush();
    std::cerr << "orv: " << Counted(lost, "character") << " not in code page 1251 became \"?\"\n";
  }
}

}  // namespace

void AddImportCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "import",
      "Copy a dBASE III table (.dbf) or delimited text into a new file, an empty matrix or an "
      "empty cell");
  const auto options = std::make_shared<ImportOptions>(command);
  command.add_option("--encoding", options->encoding, "encoding of a text: utf-8, cp1251 or cp866")
      ->capture_default_str();
  command.add_option("--delimiter", options->delimiter,
                     "delimiter of a text: one character or \"tab\"; by default what the file "
                     "name's ending says");
  command.add_flag("--no-header", options->noHeader, "the first line of a text is a record");
  command.add_option("--title", options->title,
                     "title of a new matrix; by default the source's name");
  command.add_flag("--append", options->append, "add the records behind those that are there");
  command.add_flag("--force", options->force, "replace an existing file without asking");
  command.callback([options] { Import(*options); });
}

}  // namespace orv::cli
