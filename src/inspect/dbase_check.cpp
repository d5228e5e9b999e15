#include "inspect/dbase_check.h"

#include <algorithm>
#include <string>
#include <utility>

namespace orv::inspect {

using platform::File;

namespace {

// Offsets of the published dBASE III format, from 0.
constexpr std::int64_t kRecordsOffset = 4;
constexpr std::int64_t kHeaderLengthOffset = 8;
constexpr std::int64_t kRecordLengthOffset = 10;
constexpr std::int64_t kDescriptorBytes = 32;
constexpr std::int64_t kFieldTypeOffset = 11;
constexpr std::int64_t kFieldWidthOffset = 16;
constexpr std::uint8_t kTerminator = 0x0D;
constexpr std::uint8_t kEndOfFile = 0x1A;
constexpr std::uint8_t kLive = ' ';
constexpr std::uint8_t kDeleted = '*';

/// A position for a zero-based offset.
constexpr std::int64_t At(std::int64_t offset) { return offset + 1; }

std::int64_t Unsigned16At(const File& file, std::int64_t offset) {
  return static_cast<std::uint16_t>(file.Int16At(At(offset)));
}

std::string Number(std::int64_t number) { return std::to_string(number); }

class DbaseCheck {
 public:
  DbaseCheck(const File& file, Inspection& inspection)
      : file_(file),
        inspection_(inspection),
        records_(file.Int32At(At(kRecordsOffset))),
        header_(Unsigned16At(file, kHeaderLengthOffset)),
        recordLength_(Unsigned16At(file, kRecordLengthOffset)),
        fields_(CountFields()) {}

  void Run() {
    inspection_.matrices = 1;
    inspection_.fields = fields_;
    if (!CheckHeader()) return;
    CheckFields();
    if (recordLength_ > 0 && records_ >= 0) CheckRecords();
  }

 private:
  void Report(Damage damage, std::int64_t offset, std::string what, std::string readable,
              std::int32_t field = 0, std::int64_t record = Finding::kNoRecord) {
    inspection_.findings.Add(
        {damage, {}, field, record, At(offset), std::move(what), std::move(readable)});
  }

  /// As many as the header's length has room for, or fewer when the terminator stands before: other
  /// versions of the format keep more in the header.
  std::int64_t CountFields() const {
    const std::int64_t room =
        std::max<std::int64_t>(header_ - kDescriptorBytes, 0) / kDescriptorBytes;
    for (std::int64_t f = 1; f <= room; ++f) {
      if (file_.ByteAt(At(kDescriptorBytes * f)) == kTerminator) return f - 1;
    }
    return room;
  }

  /// False when there is no telling where fields and records are.
  bool CheckHeader() {
    if (records_ < 0) {
      Report(Damage::kTableHeader, kRecordsOffset, "the record count is " + Number(records_),
             "the field names");
    }
    if (header_ <= kDescriptorBytes || header_ > file_.Length()) {
      Report(Damage::kTableHeader, kHeaderLengthOffset,
             "the header's length is " + Number(header_) + " bytes, the file has " +
                 Number(file_.Length()),
             "nothing");
      inspection_.liveBytes = std::min(kDescriptorBytes, file_.Length());
      return false;
    }
    inspection_.liveBytes = header_;
    const std::int64_t terminator = kDescriptorBytes * (fields_ + 1);
    if (terminator >= header_ || file_.ByteAt(At(terminator)) != kTerminator) {
      Report(Damage::kTableHeader, kHeaderLengthOffset,
             "no terminator stands behind the " + Number(fields_) +
                 " fields that the header's length has room for",
             "the cells as they stand");
    }
    return true;
  }

  void CheckFields() {
    constexpr std::int64_t kFlagBytes = 1;
    std::int64_t width = kFlagBytes;
    for (std::int64_t f = 1; f <= fields_; ++f) {
      CheckField(f);
      width += file_.ByteAt(At(kDescriptorBytes * f + kFieldWidthOffset));
    }
    if (width == recordLength_) return;
    Report(Damage::kTableHeader, kRecordLengthOffset,
           "a record is said to take " + Number(recordLength_) +
               " bytes, its flag and fields take " + Number(width),
           "the cells as they stand");
  }

  void CheckField(std::int64_t f) {
    const std::int64_t descriptor = kDescriptorBytes * f;
    const auto field = static_cast<std::int32_t>(f);
    const std::uint8_t first = file_.ByteAt(At(descriptor));
    if (first <= kLive) {
      Report(Damage::kTableField, descriptor, "the field has no name", "the field's cells", field);
    }
    const std::uint8_t type = file_.ByteAt(At(descriptor + kFieldTypeOffset));
    if (type < 'A' || type > 'Z') {
      Report(Damage::kTableField, descriptor + kFieldTypeOffset,
             "the field's type is the byte " + Number(type) + ", not a capital letter",
             "everything", field);
    }
    if (file_.ByteAt(At(descriptor + kFieldWidthOffset)) == 0) {
      Report(Damage::kTableField, descriptor + kFieldWidthOffset, "the field's width is 0",
             "the other fields", field);
    }
  }

  void CheckRecords() {
    const std::int64_t room = file_.Length() - header_;
    const std::int64_t whole = std::min(records_, room / recordLength_);
    inspection_.records = whole;
    inspection_.cells = whole * fields_;
    inspection_.liveBytes += whole * recordLength_;
    CheckFlags(whole);
    if (whole < records_) {
      return Report(
          Damage::kTableRecords, kRecordsOffset,
          Number(records_) + " records are counted, the file ends behind " + Number(whole),
          whole == 0 ? "the field names" : "records 1 to " + Number(whole));
    }
    CheckRest(header_ + whole * recordLength_);
  }

  void CheckFlags(std::int64_t records) {
    std::int64_t wrong = 0;
    std::int64_t first = 0;
    for (std::int64_t r = 1; r <= records; ++r) {
      const std::uint8_t flag = file_.ByteAt(RecordPosition(r));
      if (flag == kLive || flag == kDeleted) continue;
      if (++wrong == 1) first = r;
    }
    if (wrong == 0) return;
    Report(Damage::kTableRecords, RecordPosition(first) - 1,
           "the record begins with the byte " + Number(file_.ByteAt(RecordPosition(first))) +
               ", neither a blank nor \"*\"" +
               (wrong > 1 ? "; so do " + Number(wrong) + " records in all" : ""),
           "the record's cells as they stand", 0, first);
  }

  std::int64_t RecordPosition(std::int64_t r) const {
    return At(header_ + (r - 1) * recordLength_);
  }

  /// Behind the records stands an end mark, or nothing. Whole records there have been left out of
  /// the count.
  void CheckRest(std::int64_t offset) {
    if (file_.Length() > offset && file_.ByteAt(At(offset)) == kEndOfFile) {
      ++inspection_.liveBytes;
      return;
    }
    const std::int64_t more = (file_.Length() - offset) / recordLength_;
    const std::uint8_t flag = file_.ByteAt(At(offset));
    if (more < 1 || (flag != kLive && flag != kDeleted)) return;
    Report(Damage::kTableRecords, kRecordsOffset,
           Number(records_) + " records are counted, " + Number(more) +
               " more seem to stand behind the last one",
           "the records that are counted");
  }

  const File& file_;
  Inspection& inspection_;
  std::int64_t records_;
  std::int64_t header_;
  std::int64_t recordLength_;
  std::int64_t fields_;
};

}  // namespace

void InspectDbase(const File& file, Inspection& inspection) { DbaseCheck(file, inspection).Run(); }

}  // namespace orv::inspect
