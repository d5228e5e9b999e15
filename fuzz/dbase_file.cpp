// Any bytes as a dBASE III table under all members. The first byte of the input stands for the
// table's: 3, or "0" when it is odd.
#include <cstdlib>
#include <iostream>

#include "fuzz/support/confinement.h"
#include "fuzz/support/entry.h"
#include "support/exercise.h"

namespace orv::fuzz {
namespace {

class Target {
 public:
  Target() {
    ConfineTo(db_.folder().path());
    db_.Use(L"other.orv");
    db_.New();
    db_.CloseAll();
  }

  void Run(std::string table) {
    // The path resolved last is remembered beyond closing; every input starts from the same one.
    db_.Use(L"other.orv");
    db_.Records();
    db_.CloseAll();
    db_.Use(L"table.dbf");
    if (!table.empty()) table[0] = (table[0] & 1) != 0 ? '0' : '\3';
    test::WriteBytes(db_.file(), table);
    Exercise();
    db_.CloseAll();
    Clear(db_.folder().path(), "other.orv");
  }

 private:
  void Exercise() {
    test::Exercise exercise(db_, {.records = 12, .fields = 12, .cells = 20'000});
    for (const auto* steps : {L"", L"/#", L"/[1,1]", L"/f(1)=a", L"/(cell(rec,2)<>cell(1,1))"}) {
      exercise.Read(steps);
    }
    exercise.Export(L"");
    exercise.Convert(L"");
    exercise.Write(L"");
    for (const int r : {-5, 0, 1, 2, 70000}) {
      for (const int f : {0, 1, 2, 300}) db_.Set(L"", r, f, "a text for a cell");
    }
    exercise.Read(L"");
    db_.InsertTop();
    if (exercise.Problems().empty()) return;
    std::cerr << exercise.Problems();
    std::abort();
  }

  test::Driver db_;
};

}  // namespace
}  // namespace orv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static orv::fuzz::Target target;
  target.Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
