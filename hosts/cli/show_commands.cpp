// show, filter.
#include <iostream>
#include <map>
#include <memory>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/matrix.h"
#include "cli/records.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

RecordFormat FormatNamed(const std::string& name) {
  static const std::map<std::string, RecordFormat> formats = {{"table", RecordFormat::kTable},
                                                              {"tsv", RecordFormat::kTsv},
                                                              {"csv", RecordFormat::kCsv},
                                                              {"json", RecordFormat::kJson}};
  return formats.at(name);
}

// The options that show and filter share.
class ShowOptions {
 public:
  explicit ShowOptions(CLI::App& command) {
    command.add_option("--format", format_, "how the records are laid out")
        ->capture_default_str()
        ->check(CLI::IsMember({"table", "tsv", "csv", "json"}));
    command.add_option("--records", records_, R"(only these records: "5", "2:9", "2:", ":9")");
    command.add_option("--field", fields_, "only this field, by number or name; may be repeated")
        ->allow_extra_args(false);
    command.add_flag("--no-header", noHeader_, "leave the field names out");
    command.add_option("--width", layout_.cellColumns, "longest cell of a table; 0 sets no limit")
        ->capture_default_str();
    command.add_flag("--formulas", formulas_, "evaluate the formulas of the cells' types");
  }

  void Show(Matrix& matrix) const {
    RecordLayout layout = layout_;
    layout.format = FormatNamed(format_);
    layout.header = !noHeader_;
    WriteRecords(matrix, Selection(matrix), layout, std::cout);
  }

 private:
  RecordSelection Selection(Matrix& matrix) const {
    const RecordRange range = ParseRecordRange(records_, matrix.Records());
    RecordSelection selection{range.first, range.last, {}, formulas_};
    for (const std::string& field : fields_) selection.fields.push_back(matrix.FieldNumber(field));
    const std::int16_t count = matrix.Fields();
    for (int field = 1; fields_.empty() && field <= count; ++field) {
      selection.fields.push_back(static_cast<std::int16_t>(field));
    }
    return selection;
  }

  std::string format_ = "table";
  std::string records_;
  std::vector<std::string> fields_;
  RecordLayout layout_;
  bool noHeader_ = false;
  bool formulas_ = false;
};

void AddShow(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("show", "Print the records of a matrix or table");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner), show(owner) {}
    Words words;
    ShowOptions show;
  };
  const auto options = std::make_shared<Options>(command);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    options->show.Show(matrix);
  });
}

void AddFilter(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "filter", "Print the records for which a condition holds, and how many they are");
  struct Options {
    explicit Options(CLI::App& owner)
        : words(owner,
                {{"CONDITION",
                  R"(an expression such as 'cell(rec,2)="Perm"', or f(2)="Perm", f("Town")<>x)"}}),
          show(owner) {}
    Words words;
    ShowOptions show;
    bool countOnly = false;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_flag("--count", options->countOnly, "print only the number of records");
  command.callback([options] {
    const std::wstring base = options->words.TargetOf().Path();
    Matrix view(base + L"/" + WideArgument(options->words.Word(0)));
    const std::int32_t records = view.Records();
    if (options->countOnly) {
      std::cout << records << '\n';
      return;
    }
    options->show.Show(view);
    const std::int32_t all = Matrix(base).Records();
    std::cout.flush();
    std::cerr << GroupedNumber(records) << " of " << Counted(all, "record") << '\n';
  });
}

}  // namespace

void AddShowCommands(CLI::App& app) {
  AddShow(app);
  AddFilter(app);
}

}  // namespace orv::cli
