#include "support/damage.h"

#include "support/styled_file.h"

namespace orv::test {

namespace {

/// Positions whose int32 could be a pointer into the file or a count.
std::vector<std::int64_t> PointerPositions(const ContainerBytes& file) {
  std::vector<std::int64_t> positions;
  for (std::int64_t at = 1; at + 3 <= file.size(); ++at) {
    const std::int64_t value = file.Int32(at);
    if (value > 0 && value <= file.size()) positions.push_back(at);
  }
  return positions;
}

}  // namespace

std::string RichFile() {
  Driver db;
  MakeStyledFile(db);
  AddStyledRecords(db, 30, 9,
                   [](int r) { return std::string(static_cast<std::size_t>(r * r), 'f'); });
  db.Set(L"", 2, 1, std::string(3000, 'x'));
  db.Set(L"", 2, 1, "short");
  db.Set(L"", 2, 1, std::string(5000, 'y'));
  db.SetType(L"", 3, 1, "comp", "=cell(1,1);");
  db.SetType(L"", 0, 1, "hint", "a title");
  db.SetType(L"", -8, 1, "font", "bold");
  NestMatrices(db, {{5, 1}, {2, 2}, {1, 1}});
  db.CloseAll();
  return db.Bytes();
}

Damage::Damage(const ContainerBytes& whole, unsigned seed)
    : whole_(whole), pointers_(PointerPositions(whole)), random_(seed) {}

std::string Damage::Next() {
  ContainerBytes file = whole_;
  for (std::uint32_t times = 1 + Below(3); times > 0; --times) Hurt(file);
  return Below(5) == 0 ? file.bytes().substr(0, Below(static_cast<std::uint32_t>(file.size())))
                       : file.bytes();
}

void Damage::Hurt(ContainerBytes& file) {
  const auto size = static_cast<std::uint32_t>(file.size());
  switch (Below(5)) {
    case 0: {  // a bit
      const std::int64_t at = 1 + Below(size);
      file.PutByte(at, file.Byte(at) ^ (1 << Below(8)));
      return;
    }
    case 1: {  // a byte
      file.PutByte(1 + Below(size), Below(256));
      return;
    }
    default:  // a pointer or a count
      const std::int64_t at = pointers_[Below(static_cast<std::uint32_t>(pointers_.size()))];
      file.PutInt32(at, WildValue(at, size));
  }
}

std::int64_t Damage::WildValue(std::int64_t at, std::uint32_t size) {
  switch (Below(9)) {
    case 0:
      return at;  // itself
    case 1:
      return at - static_cast<std::int64_t>(Below(64));  // something just before, itself included
    case 2:
      return size + Below(100);
    case 3:
      return INT32_MAX - static_cast<std::int64_t>(Below(3));
    case 4:
      return INT32_MIN + static_cast<std::int64_t>(Below(3));
    case 5:
      return -static_cast<std::int64_t>(Below(100));
    case 6:
      return 1 + Below(size);  // anywhere inside
    case 7:
      return std::int64_t{1} << Below(31);
    default:
      return 52;  // the root
  }
}

}  // namespace orv::test
