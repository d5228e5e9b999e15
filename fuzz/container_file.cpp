// A damaged container file under all members. The input says how a rich sound file is edited: its
// first byte counts the edits, each of seven bytes (which integer of the file, how, a value); a
// byte says where the file is cut, and what is left is appended to it.
#include <cstdlib>
#include <iostream>

#include "fuzz/support/confinement.h"
#include "fuzz/support/entry.h"
#include "fuzz/support/input.h"
#include "support/exercise.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv::fuzz {
namespace {

using test::ContainerBytes;
using test::Driver;
using test::Word;
namespace styled = test::styled;

/// Every style, formulas, properties, a dictionary, texts in several pieces, nested matrices.
std::string RichFile(Driver& db) {
  MakeStyledFile(db);
  AddStyledRecords(db, 4, 3, [](int r) { return "free " + std::to_string(r); });
  db.Set(L"", 2, 1, std::string(300, 'x'));
  db.Set(L"", 2, 1, "short");
  db.Set(L"", 2, 1, std::string(400, 'y'));
  db.SetType(L"", 3, 1, "comp", "=cell(rec-1,fld)+1;");
  db.SetType(L"", -8, 1, "font", "bold");
  NestMatrices(db, {{4, 1}, {2, 2}});
  db.CloseAll();
  return db.Bytes();
}

class Target {
 public:
  Target() : sound_(RichFile(db_)), words_(test::MeaningfulWords(sound_)) {
    if (!test::WalkStructures(sound_).problems.empty()) std::abort();
    ConfineTo(db_.folder().path());
    test::WriteBytes(db_.folder().Name(L"other.orv"), sound_);
  }

  void Run(Input input) {
    // The path resolved last is remembered beyond closing; every input starts from the same one.
    db_.Use(L"other.orv");
    db_.Records();
    db_.CloseAll();
    db_.Use(L"file.orv");
    const std::uint8_t parts = input.Byte();
    test::WriteBytes(db_.file(), Damaged(input));
    Exercise(parts);
    db_.CloseAll();
    Clear(db_.folder().path(), "other.orv");
  }

 private:
  std::string Damaged(Input& input) {
    constexpr int kGreatestEdits = 32;
    constexpr std::size_t kGreatestTail = 2048;
    constexpr std::size_t kCuts = 256;
    ContainerBytes file(sound_);
    const int edits = input.Byte() % (kGreatestEdits + 1);
    for (int i = 0; i < edits && !input.IsEmpty(); ++i) {
      const Word& word = words_[input.Word() % words_.size()];
      const std::uint8_t how = input.Byte();
      Put(file, word, Value(word, how, input.Long()));
    }
    const std::size_t kept = kCuts - input.Byte();
    return file.bytes().substr(0, sound_.size() * kept / kCuts) + input.Bytes(kGreatestTail);
  }

  std::int64_t Value(const Word& word, std::uint8_t how, std::int32_t value) {
    const auto size = static_cast<std::int64_t>(sound_.size());
    const auto small = static_cast<std::int8_t>(value);
    switch (how % 8) {
      case 0:
        return value;
      case 1:  // where another structure stands
        return words_[static_cast<std::uint32_t>(value) % words_.size()].position;
      case 2:
        return word.position + small;
      case 3:
        return size + small;
      case 4:
        return std::int64_t{INT32_MAX} - static_cast<std::uint8_t>(small);
      case 5:
        return std::int64_t{INT32_MIN} + static_cast<std::uint8_t>(small);
      case 6:  // somewhere in the file
        return 1 + static_cast<std::uint32_t>(value) % size;
      default:
        return small;
    }
  }

  static void Put(ContainerBytes& file, const Word& word, std::int64_t value) {
    if (word.width == 1) file.PutByte(word.position, value);
    if (word.width == 2) file.PutInt16(word.position, value);
    if (word.width == 4) file.PutInt32(word.position, value);
  }

  /// Each bit of `parts` leaves a kind of members out.
  void Exercise(std::uint8_t parts) {
    constexpr std::uint8_t kNoReading = 1;
    constexpr std::uint8_t kNoExport = 2;
    constexpr std::uint8_t kNoConversion = 4;
    constexpr std::uint8_t kNoWriting = 8;
    test::Exercise exercise(db_, {.records = 6, .fields = 6, .cells = 20'000});
    if ((parts & kNoReading) == 0) {
      for (const auto* steps : {L"", L"/#", L"/#/[2,3]/[1,2]", L"/[4,1]", L"/[4,1]/[2,2]",
                                L"/f(1)=short", L"/(cell(rec,3)>150)"}) {
        exercise.Read(steps);
      }
    }
    if ((parts & kNoExport) == 0) exercise.Export(L"");
    if ((parts & kNoConversion) == 0) exercise.Convert(L"");
    if ((parts & kNoWriting) == 0) {
      for (const auto* steps : {L"/#/[2,3]", L"/[4,1]/[2,2]", L"/[4,1]", L""}) {
        exercise.Write(steps);
      }
      exercise.Read(L"");
      db_.InsertTop();
      exercise.Read(L"/[1,1]");
    }
    if (exercise.Problems().empty()) return;
    std::cerr << exercise.Problems();
    std::abort();
  }

  Driver db_;
  std::string sound_;
  std::vector<Word> words_;
};

}  // namespace
}  // namespace orv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static orv::fuzz::Target target;
  target.Run(orv::fuzz::Input(data, size));
  return 0;
}
