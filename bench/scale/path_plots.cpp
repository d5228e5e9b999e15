#include <memory>

#include "scale/plots.h"

namespace orv::bench {
namespace {

constexpr std::int16_t kNestedField = 1;
constexpr std::int16_t kTextField = 2;
constexpr std::int32_t kTextRecord = 1;
constexpr int kOpenFiles = 10;

/// A matrix or view and the text of its cell (1, 2), by which the readers know it.
struct Place {
  EngineMatrix matrix;
  std::string text;
};
using Places = std::vector<Place>;

/// Texts of one length, so that places differ in their paths alone.
std::string NumberedText(int number) { return "place " + std::to_string(100 + number); }

std::wstring Step(std::int32_t record) {
  return L"/[" + std::to_wstring(record) + L"," + std::to_wstring(kNestedField) + L"]";
}

/// Gives an empty matrix its two fields, nested matrices and texts.
void Furnish(EngineMatrix& matrix, std::int32_t records, const std::string& text) {
  matrix.AddFields(2);
  matrix.AddRecords(records);
  matrix.PutText(kTextRecord, kTextField, text);
}

/// Puts a furnished matrix into a record.
Place Nest(EngineMatrix& matrix, std::int32_t record, std::int32_t records, int number) {
  matrix.PutMatrix(record, kNestedField);
  Place nested{EngineMatrix(matrix.path() + Step(record)), NumberedText(number)};
  Furnish(nested.matrix, records, nested.text);
  return nested;
}

/// A fresh file whose root has two fields and so many records.
EngineTable NewFile(const std::string& file, std::int32_t records) {
  EngineTable root(file);
  root.Create(2);
  root.AddRecords(records);
  return root;
}

std::uint64_t ReadInTurn(Places& places, int reads, int closeAfter) {
  Check check;
  for (int n = 0; n < reads; ++n) {
    EngineMatrix& matrix = places[static_cast<std::size_t>(n) % places.size()].matrix;
    if (closeAfter > 0 && n % closeAfter == 0) matrix.Close();
    check.Add(std::wstring_view(matrix.ReadCell(kTextRecord, kTextField)));
  }
  return check.sum();
}

/// Reads the places' cells in turn, files and views being there already if there is room for them.
/// With `closeAfter` a host that has more files than can be open closes all of them after so many.
Point InTurn(const char* curve, double x, const Places& places, int reads, int closeAfter = 0) {
  Check expected;
  for (int n = 0; n < reads; ++n) {
    expected.Add(std::string_view(places[static_cast<std::size_t>(n) % places.size()].text));
  }
  const auto own = std::make_shared<Places>(places);
  return {curve, x,
          [own, reads, closeAfter] {
            return Pass{reads, ReadInTurn(*own, reads, closeAfter)};
          },
          expected.sum(),
          [own, closeAfter] {
            own->front().matrix.Close();
            ReadInTurn(*own, static_cast<int>(own->size()), closeAfter);
          }};
}

Places FirstOf(const Places& places, int count) { return {places.begin(), places.begin() + count}; }

/// Matrices nested in one file, side by side.
Places NestedInOneFile(const BenchFolder& folder, int count) {
  EngineTable root = NewFile(folder.File("side-by-side.orv"), count);
  Places places;
  for (int n = 1; n <= count; ++n) places.push_back(Nest(root, n, 1, n));
  return places;
}

/// One nested matrix in each of so many files.
Places NestedInFiles(const BenchFolder& folder, int count) {
  Places places;
  for (int n = 1; n <= count; ++n) {
    EngineTable root = NewFile(folder.File("turn-" + std::to_string(n) + ".orv"), 1);
    places.push_back(Nest(root, 1, 1, n));
    root.Close();
  }
  return places;
}

/// Views of one matrix of `records` records, each of which shows one record in `count`.
Places ViewsOfOneMatrix(const BenchFolder& folder, int count, std::int32_t records) {
  EngineTable root = NewFile(folder.File("views.orv"), records);
  Places places;
  for (int n = 1; n <= count; ++n) {
    const std::wstring condition = L"/f(1)=v" + std::to_wstring(n);
    places.push_back({EngineMatrix(root.path() + condition), NumberedText(n)});
    root.PutText(n, kTextField, places.back().text);
  }
  for (std::int32_t record = 1; record <= records; ++record) {
    root.PutText(record, 1, "v" + std::to_string((record - 1) % count + 1));
  }
  return places;
}

/// Matrices in matrices: at each depth two of them, the first of which holds the next two.
std::vector<Places> NestedInEachOther(const BenchFolder& folder, int depth) {
  EngineTable root = NewFile(folder.File("deep.orv"), 2);
  std::vector<Places> levels;
  EngineMatrix outer = root;
  for (int level = 1; level <= depth; ++level) {
    levels.push_back({Nest(outer, 1, 2, 2 * level), Nest(outer, 2, 2, 2 * level + 1)});
    outer = levels.back().front().matrix;
  }
  return levels;
}

}  // namespace

Plot PathDepths(const BenchFolder& folder) {
  constexpr int kReads = 20000;
  constexpr int kDepths[] = {1, 2, 5, 10, 15, 20};
  Plot plot{"path-depths",
            "One cell through a path of several steps",
            {"steps of the path"},
            {"ns a cell"},
            1,
            {}};
  const std::vector<Places> levels = NestedInEachOther(folder, std::end(kDepths)[-1]);
  const auto level = [&](int depth) { return levels[static_cast<std::size_t>(depth - 1)]; };
  for (int depth : kDepths) {
    plot.points.push_back(
        InTurn("the same path each time", depth, FirstOf(level(depth), 1), kReads));
  }
  for (int depth : kDepths) {
    plot.points.push_back(InTurn("two paths in turn", depth, level(depth), kReads));
  }
  return plot;
}

Plot PathsInTurn(const BenchFolder& folder) {
  constexpr int kReads = 20000;
  constexpr int kCostlyReads = 1200;
  constexpr int kViewedRecords = 1200;
  constexpr int kKeptViews = 8;
  constexpr int kCounts[] = {1, 2, 5, 8, 9, 10, 11, 12};
  const int most = std::end(kCounts)[-1];
  Plot plot{"paths-in-turn",
            "One cell of each of several paths in turn",
            {"paths"},
            {"ns a cell", true},
            1,
            {}};
  const Places inOneFile = NestedInOneFile(folder, most);
  const Places inFiles = NestedInFiles(folder, most);
  const Places views = ViewsOfOneMatrix(folder, most, kViewedRecords);
  for (int count : kCounts) {
    plot.points.push_back(InTurn("matrices of one file", count, FirstOf(inOneFile, count), kReads));
  }
  for (int count : kCounts) {
    const bool fits = count <= kOpenFiles;
    plot.points.push_back(InTurn("a file each: ten can be open", count, FirstOf(inFiles, count),
                                 fits ? kReads : kCostlyReads, fits ? 0 : kOpenFiles));
  }
  for (int count : kCounts) {
    plot.points.push_back(InTurn("views of 1,200 records: eight are kept", count,
                                 FirstOf(views, count),
                                 count <= kKeptViews ? kReads : kCostlyReads));
  }
  return plot;
}

}  // namespace orv::bench
