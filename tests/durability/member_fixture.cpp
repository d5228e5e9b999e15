#include "durability/member_fixture.h"

#include <algorithm>
#include <filesystem>

#include "support/structure_walk.h"

namespace orv::test {
namespace {

constexpr int kContainerKind = 1;
constexpr int kDbaseKind = 2;

bool IsOfTypes(const std::string& key) { return key.find("/#") != key.npos; }

/// What a call on the file brings elsewhere in it: counts, and the types and dictionaries.
bool MayChange(const std::string& key) {
  return IsOfTypes(key) || key == " records" || key == " fields";
}

/// The snapshot without what bears traces of a failed call: types, dictionaries and cell codes.
Snapshot TextsOf(const Snapshot& snapshot) {
  Snapshot texts;
  for (const auto& [key, value] : snapshot) {
    if (!IsOfTypes(key) && !key.ends_with(" code")) texts.emplace(key, value);
  }
  return texts;
}

}  // namespace

void MemberTest::SetUp() {
  MakeRichFile(db_);
  if (Case().prepare) Case().prepare(db_);
  db_.CloseAll();
  bytes_ = Exists(db_.file()) ? db_.Bytes() : std::string();
  Restore(false);
  before_ = Look();
  Restore(false);
  ASSERT_EQ(Act(), 0);
  after_ = Look();
  db_.CloseAll();
  ASSERT_EQ(Look(), after_) << "before and after closing";
}

void MemberTest::Restore(bool warm) {
  db_.CloseAll();
  for (const auto& entry : std::filesystem::directory_iterator(db_.folder().path())) {
    std::filesystem::remove(entry.path());
  }
  if (!bytes_.empty()) WriteBytes(db_.file(), bytes_);
  if (warm) Look();
}

int MemberTest::Act() {
  Case().act(db_);
  return db_.Error();
}

Snapshot MemberTest::Look() { return TakeSnapshot(db_); }

Snapshot MemberTest::ExpectRecoverable(Outcomes& outcomes) {
  db_.CloseAll();
  const Snapshot seen = Look();
  db_.CloseAll();
  const Comparison comparison = Compare(before_, after_, seen);
  if (comparison.isOld) {
    ++outcomes.old;
  } else if (comparison.isNew) {
    ++outcomes.whole;
  } else {
    const bool covered = IsGuaranteed(comparison, seen);
    ++(covered ? outcomes.between : outcomes.window);
    const StateCheck& check = covered ? Case().also : Case().window;
    EXPECT_TRUE(covered || check) << "no such state is stated:\n" << comparison.strange;
    if (check) {
      EXPECT_EQ(check(before_, after_, seen), "") << comparison.strange;
    }
  }
  EXPECT_EQ(comparison.lost, "") << "texts that the call does not name are gone";
  if (seen.at("kind") == std::to_string(kContainerKind)) ExpectSound();
  if (!Case().target.empty()) ExpectTargetReadable();
  return seen;
}

bool MemberTest::IsGuaranteed(const Comparison& comparison, const Snapshot& seen) const {
  if (!comparison.strange.empty() || Case().guarantee == Guarantee::kWhole) return false;
  if (Case().guarantee == Guarantee::kEachValue) return true;
  const Snapshot texts = TextsOf(seen);
  return texts == TextsOf(before_) || texts == TextsOf(after_);
}

void MemberTest::ExpectSound() {
  const StructureWalk walk = WalkStructures(db_.Bytes());
  for (const std::string& problem : walk.problems) {
    const auto& problems = Case().problems;
    const bool stated = std::any_of(problems.begin(), problems.end(), [&](const std::string& part) {
      return problem.find(part) != problem.npos;
    });
    EXPECT_TRUE(stated) << problem;
  }
}

/// A target that was left behind opens, or is none of our files; nothing more is promised.
void MemberTest::ExpectTargetReadable() {
  const std::wstring source = db_.file();
  db_.Use(Case().target);
  TakeSnapshot(db_);
  db_.CloseAll();
  db_.Use(std::filesystem::path(source).filename().wstring());
}

void MemberTest::ExpectContinuation(const Snapshot& seen) {
  if (Case().again == Again::kNothing) return ExpectUsable(seen);
  EXPECT_EQ(Act(), 0) << "once more";
  const Snapshot again = Look();
  if (Case().again == Again::kSame) {
    EXPECT_EQ(again, after_) << "once more";
  } else {
    EXPECT_EQ(TextsOf(again), TextsOf(after_)) << "once more";
  }
  ExpectUsable(again);
}

void MemberTest::ExpectUsable(const Snapshot& seen) {
  if (seen.at("kind") == std::to_string(kDbaseKind) || seen.at("kind") == "0") return;
  const int fields = db_.Fields();
  const int records = db_.Records();
  db_.AddFields(L"", 1, fields + 1);
  EXPECT_EQ(db_.Error(), 0) << "a new field";
  db_.AddRecords(L"", 1, records + 1);
  EXPECT_EQ(db_.Error(), 0) << "a new record";
  for (int f = 1; f <= fields + 1; ++f) {
    db_.Set(L"", records + 1, f, "7");
    if (Case().window && db_.Error() == 255) continue;  // a slot without a field
    EXPECT_EQ(db_.Error(), 0) << "field " << f;
    EXPECT_EQ(db_.Get(L"", records + 1, f), "7") << "field " << f;
  }
  db_.CloseAll();
  ExpectSound();
  const Snapshot later = Look();
  for (const auto& [key, value] : seen) {
    if (MayChange(key)) continue;
    const auto found = later.find(key);
    ASSERT_TRUE(found != later.end()) << key;
    EXPECT_EQ(found->second, value) << key;
  }
}

std::string CaseName(const testing::TestParamInfo<std::size_t>& info) {
  std::string name;
  for (const char c : MemberCases()[info.param].name) {
    const bool isWord = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (isWord) name += c;
    if (!isWord && !name.empty() && name.back() != '_') name += '_';
  }
  return name;
}

}  // namespace orv::test
