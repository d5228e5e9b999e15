// Each kind of damage, made by hand, is found, named and placed.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspecting.h"
#include "support/container_bytes.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using inspect::Damage;
using inspect::Finding;
using test::ContainerBytes;
using testing::HasSubstr;
namespace styled = test::styled;

/// Three records of every style; record 2 of field 1 holds a matrix with a field and two records.
class DamageKindsTest : public testing::Test {
 protected:
  DamageKindsTest() : file_(Make()), root_(file_.Root()) {}

  static ContainerBytes Make() {
    test::Driver db;
    MakeStyledFile(db);
    db.AddRecords(L"", 3, 1);
    db.Set(L"", 1, 1, "first");
    db.Set(L"", 3, 1, "third");
    db.Set(L"", 0, 1, "Name");
    for (int r = 1; r <= 3; ++r) db.Set(L"", r, styled::kDictionary, "value");
    db.Put(L"", 2, 1, "nested");
    db.AddFields(L"/[2,1]", 1, 1);
    db.AddRecords(L"/[2,1]", 2, 1);
    db.Set(L"/[2,1]", 2, 1, "deep");
    EXPECT_EQ(db.Error(), 0);
    db.CloseAll();
    return ContainerBytes(db.Bytes());
  }

  std::int64_t Descriptor(int f) const { return file_.Descriptor(root_, f); }
  std::int64_t Slot(int r) const { return file_.Entry(file_.Int32(Descriptor(1)), r, 4); }
  std::int64_t Nested() const { return file_.Cell(root_, 2, 1); }

  /// The one finding, which must be of this kind.
  Finding Only(Damage damage) const {
    const inspect::Inspection inspection = test::InspectBytes(file_.bytes());
    EXPECT_EQ(inspection.findings.listed().size(), 1U) << test::FindingText(inspection);
    if (inspection.findings.empty()) return {};
    const Finding& finding = inspection.findings.listed().front();
    EXPECT_EQ(inspect::DamageName(finding.damage), inspect::DamageName(damage));
    return finding;
  }
  /// Whether some finding is of this kind and has this place.
  void Expect(Damage damage, const std::string& matrix, int field, std::int64_t record) const {
    const inspect::Inspection inspection = test::InspectBytes(file_.bytes());
    for (const Finding& finding : inspection.findings.listed()) {
      if (finding.damage == damage && finding.matrix == matrix && finding.field == field &&
          finding.record == record) {
        return;
      }
    }
    ADD_FAILURE() << inspect::DamageName(damage) << " missing in:\n"
                  << test::FindingText(inspection);
  }

  ContainerBytes file_;
  std::int64_t root_;
};

constexpr std::int64_t kNone = Finding::kNoRecord;

TEST_F(DamageKindsTest, TheWholeFileIsClean) {
  EXPECT_EQ(test::FindingText(test::InspectBytes(file_.bytes())), "");
}

TEST_F(DamageKindsTest, FileHeader) {
  file_.PutByte(1, 2);
  const Finding first = Only(Damage::kFileHeader);
  EXPECT_EQ(first.position, 1);
  EXPECT_EQ(first.readable, "nothing, the file is not recognised");
  file_.PutByte(1, 1);
  file_.PutByte(9, 'X');
  EXPECT_EQ(Only(Damage::kFileHeader).position, 8);
}

TEST_F(DamageKindsTest, AFileWithHalfOfTheMarksIsAContainerWithoutAnyItIsNone) {
  file_.PutByte(9, 'X');
  EXPECT_EQ(test::InspectBytes(file_.bytes()).kind, inspect::FileKind::kContainer);
  file_.PutByte(1, 0);
  EXPECT_EQ(test::InspectBytes(file_.bytes()).kind, inspect::FileKind::kUnknown);
}

TEST_F(DamageKindsTest, RootPointer) {
  for (const std::int64_t wrong : {std::int64_t{0}, std::int64_t{-1}, file_.size() - 3}) {
    file_.PutInt32(4, wrong);
    EXPECT_EQ(Only(Damage::kRootPointer).position, 4) << wrong;
  }
}

TEST_F(DamageKindsTest, HeaderWordAndReservedBytes) {
  file_.PutInt16(Nested() + 6, 7);
  EXPECT_EQ(Only(Damage::kMatrixHeader).matrix, "/[2,1]");
  file_.PutInt16(Nested() + 6, 1);
  file_.PutInt32(Descriptor(2) + 4, 9);
  EXPECT_EQ(Only(Damage::kMatrixHeader).field, 2);
}

TEST_F(DamageKindsTest, PointersOutsideTheFile) {
  for (const std::int64_t wild : {std::int64_t{-5}, file_.size() + 1, std::int64_t{INT32_MAX}}) {
    ContainerBytes whole = file_;
    file_.PutInt32(Slot(3), wild);
    const Finding cell = Only(Damage::kOutside);
    EXPECT_EQ(cell.matrix, "/");
    EXPECT_EQ(cell.field, 1);
    EXPECT_EQ(cell.record, 3);
    EXPECT_EQ(cell.position, Slot(3));
    EXPECT_THAT(cell.what, HasSubstr(std::to_string(wild)));
    EXPECT_EQ(cell.readable, "the other cells");
    file_ = whole;
    file_.PutInt32(Nested() + 2, wild);
    EXPECT_EQ(Only(Damage::kOutside).matrix, "/[2,1]");
    file_ = whole;
    file_.PutInt32(Nested() + 8, wild);
    EXPECT_EQ(Only(Damage::kOutside).position, Nested() + 8);
    file_ = whole;
    file_.PutInt32(Nested() + 12, wild);
    EXPECT_EQ(Only(Damage::kOutside).readable, "the matrix's title");
    file_ = whole;
    file_.PutInt32(file_.FieldTable(root_) + 6 + 4 + 4, wild);
    EXPECT_EQ(Only(Damage::kOutside).field, 2);
    file_ = whole;
  }
}

TEST_F(DamageKindsTest, ATitlePointerOfNoneIsOutside) {
  file_.PutInt32(Nested() + 2, 0);
  EXPECT_EQ(Only(Damage::kOutside).position, Nested() + 2);
}

TEST_F(DamageKindsTest, AStructureCutOffByTheEnd) {
  const std::int64_t end = file_.size();
  file_.PutInt32(Nested() + 12, end - 2);
  const Finding finding = Only(Damage::kCut);
  EXPECT_EQ(finding.matrix, "/[2,1]");
  EXPECT_EQ(finding.position, end - 2);
}

TEST_F(DamageKindsTest, AFileCutAtEveryLengthIsDamaged) {
  for (std::int64_t length = 14; length < file_.size(); ++length) {
    const std::string cut = file_.bytes().substr(0, static_cast<std::size_t>(length));
    EXPECT_FALSE(test::InspectBytes(cut).IsClean()) << length;
  }
}

TEST_F(DamageKindsTest, LoopsOfBlocksAndPieces) {
  const std::int64_t data = file_.Int32(Descriptor(1));
  const ContainerBytes whole = file_;
  file_.PutInt32(data + 4 + 3 * 4, data);
  const Finding blocks = Only(Damage::kLoop);
  EXPECT_EQ(blocks.field, 1);
  EXPECT_EQ(blocks.readable, "records 1 to 3");
  file_ = whole;
  const std::int64_t text = file_.Cell(root_, 3, 1) + 2;
  file_.PutInt32(text + 1 + 5, text);
  const Finding pieces = Only(Damage::kLoop);
  EXPECT_EQ(pieces.record, 3);
  EXPECT_EQ(pieces.readable, "the text up to there");
}

TEST_F(DamageKindsTest, TwoPointersToOneCell) {
  file_.PutInt32(Slot(3), file_.Int32(Slot(1)));
  const Finding finding = Only(Damage::kShared);
  EXPECT_EQ(finding.record, 3);
  EXPECT_THAT(finding.what, HasSubstr("is also the cell of /, field 1, record 1"));
}

TEST_F(DamageKindsTest, AMatrixThatContainsItselfIsWalkedOnce) {
  file_.PutInt32(Slot(3), root_);
  const Finding finding = Only(Damage::kShared);
  EXPECT_EQ(finding.record, 3);
  EXPECT_THAT(finding.what, HasSubstr("is also the matrix /"));
}

TEST_F(DamageKindsTest, ATextThatReachesIntoItsNeighbour) {
  file_.PutByte(file_.Cell(root_, 1, 1) + 2, 9);
  Expect(Damage::kOverlap, "/", 1, 3);
}

TEST_F(DamageKindsTest, TextLengths) {
  const std::int64_t title = file_.Int32(Nested() + 2);
  for (const std::int64_t length : {std::int64_t{-1}, file_.size(), std::int64_t{INT32_MAX}}) {
    file_.PutInt32(title, length);
    const Finding finding = Only(Damage::kLength);
    EXPECT_EQ(finding.matrix, "/[2,1]");
    EXPECT_EQ(finding.position, title);
    EXPECT_EQ(finding.readable, "everything but the title");
  }
}

TEST_F(DamageKindsTest, RecordCounts) {
  const std::int64_t table = file_.FieldTable(root_);
  file_.PutInt32(table, 2);
  Expect(Damage::kCount, "/", 1, kNone);
  Expect(Damage::kCount, "/", styled::kText, kNone);
  file_.PutInt32(table, -1);
  Expect(Damage::kCount, "/", 0, kNone);
  file_.PutInt32(table, INT32_MAX);
  Expect(Damage::kCount, "/", 0, kNone);
}

TEST_F(DamageKindsTest, FieldCounts) {
  const std::int64_t count = file_.FieldTable(root_) + 4;
  file_.PutInt16(count, styled::kFields + 1);
  EXPECT_THAT(Only(Damage::kCount).what, HasSubstr("the descriptor array reaches to 5"));
  file_.PutInt16(count, styled::kFields - 1);
  EXPECT_EQ(Only(Damage::kCount).field, styled::kFields);
  file_.PutInt16(count, -3);
  Expect(Damage::kCount, "/", 0, kNone);
}

TEST_F(DamageKindsTest, BlockCounts) {
  const std::int64_t data = file_.Int32(Descriptor(1));
  file_.PutInt32(data, -1);
  EXPECT_EQ(Only(Damage::kCount).position, data);
  file_.PutInt32(data, INT32_MAX);
  EXPECT_EQ(Only(Damage::kCut).position, data);
}

TEST_F(DamageKindsTest, AFieldWithoutADescriptor) {
  file_.PutInt32(file_.FieldTable(root_) + 6 + 4 + 4, 0);
  const Finding finding = Only(Damage::kNoDescriptor);
  EXPECT_EQ(finding.field, 2);
  EXPECT_EQ(finding.readable, "the other fields");
}

TEST_F(DamageKindsTest, UnknownStylesAndDataTypes) {
  for (const int style : {0, 8, 9, 10, 12, 255}) {
    file_.PutByte(Descriptor(1) + 8, style);
    EXPECT_EQ(Only(Damage::kStyle).position, Descriptor(1) + 8) << style;
  }
  file_.PutByte(Descriptor(1) + 8, 7);
  EXPECT_THAT(Only(Damage::kStyle).what, HasSubstr("nobody can read"));
  file_.PutByte(Descriptor(1) + 8, 1);
  file_.PutInt16(Descriptor(1) + 11, 12);
  EXPECT_EQ(Only(Damage::kStyle).position, Descriptor(1) + 11);
}

TEST_F(DamageKindsTest, ImpossibleCellSizes) {
  const ContainerBytes whole = file_;
  for (const int size : {0, -1}) {
    file_.PutInt16(Descriptor(styled::kText) + 9, size);
    EXPECT_EQ(Only(Damage::kCellSize).field, styled::kText);
  }
  file_ = whole;
  for (const int width : {0, 3, 5, 16, -2}) {
    file_.PutInt16(Descriptor(styled::kDictionary) + 9, width);
    EXPECT_EQ(Only(Damage::kCellSize).field, styled::kDictionary);
  }
}

TEST_F(DamageKindsTest, ImpossibleCellCodes) {
  for (const int code : {0, 16380, 32760}) {
    file_.PutInt16(file_.Cell(root_, 3, 1), code);
    Expect(Damage::kCellCode, "/", 1, 3);
  }
  file_.PutInt16(Nested(), -32768);
  Expect(Damage::kCellCode, "/[2,1]", 0, kNone);
}

TEST_F(DamageKindsTest, AMatrixFlagWithoutAMatrix) {
  const std::int64_t cell = file_.Cell(root_, 1, 1);
  file_.PutInt16(cell, -1);
  EXPECT_FALSE(test::InspectBytes(file_.bytes()).IsClean());
  file_ = Make();
  file_.PutInt16(Descriptor(1) + 15, -1);
  Expect(Damage::kCellCode, "/", 1, kNone);
  file_ = Make();
  file_.PutInt16(root_, 1);
  EXPECT_EQ(Only(Damage::kCellCode).matrix, "/");
}

TEST_F(DamageKindsTest, DictionaryIndexes) {
  const std::int64_t index = file_.Int32(Descriptor(styled::kDictionary));
  file_.PutByte(index + 4 + 1, 2);
  const Finding finding = Only(Damage::kIndex);
  EXPECT_EQ(finding.field, styled::kDictionary);
  EXPECT_EQ(finding.record, 2);
  EXPECT_EQ(finding.position, index + 5);
  EXPECT_THAT(finding.what, HasSubstr("the index is 2, the dictionary has 1 values"));
  file_.PutByte(index + 4 + 2, 200);
  EXPECT_THAT(Only(Damage::kIndex).what, HasSubstr("so in 2 records in all"));
}

TEST_F(DamageKindsTest, AnIndexBlockThatTheFileCutsOff) {
  file_.PutInt32(Descriptor(styled::kDictionary), file_.size() - 4);
  EXPECT_EQ(Only(Damage::kIndexBlock).field, styled::kDictionary);
}

TEST_F(DamageKindsTest, AFieldWithoutItsDictionary) {
  file_.PutInt16(Descriptor(styled::kDictionary) + 13, 1);
  EXPECT_EQ(Only(Damage::kNoDictionary).field, styled::kDictionary);
  file_ = Make();
  file_.PutInt32(root_ + 8, 0);
  EXPECT_EQ(Only(Damage::kNoDictionary).field, styled::kDictionary);
}

TEST_F(DamageKindsTest, DamageInPropertyMatricesHasItsPath) {
  const std::int64_t types = file_.Int32(root_ + 8);
  file_.PutInt32(file_.Cell(types, 1, 3) + 2, -1);
  EXPECT_EQ(Only(Damage::kOutside).matrix, "/#/[1,3]");
}

}  // namespace
}  // namespace orv
