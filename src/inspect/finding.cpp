#include "inspect/finding.h"

#include <array>
#include <utility>

namespace orv::inspect {
namespace {

struct Words {
  std::string_view name;
  std::string_view words;
};

/// In the order of the enumeration.
constexpr std::array kWords = std::to_array<Words>({
    {"file-header", "wrong file header"},
    {"root-pointer", "wrong root pointer"},
    {"matrix-header", "wrong fixed bytes"},
    {"outside", "pointer outside the file"},
    {"cut", "structure cut off by the file's end"},
    {"loop", "chain that loops"},
    {"shared", "structure reached twice"},
    {"overlap", "overlapping structures"},
    {"length", "impossible text length"},
    {"count", "count that does not agree"},
    {"no-descriptor", "field without a descriptor"},
    {"style", "unknown style"},
    {"cell-size", "impossible cell size"},
    {"cell-code", "impossible cell code"},
    {"index-block", "index block outside the file"},
    {"index", "index above the dictionary"},
    {"no-dictionary", "field without its dictionary"},
    {"table-header", "wrong table header"},
    {"table-field", "wrong field descriptor"},
    {"table-records", "wrong records"},
});
static_assert(kWords.size() == static_cast<std::size_t>(Damage::kTableRecords) + 1);

}  // namespace

std::string_view DamageName(Damage damage) { return kWords[static_cast<std::size_t>(damage)].name; }

std::string_view DamageWords(Damage damage) {
  return kWords[static_cast<std::size_t>(damage)].words;
}

bool FindingList::Add(Finding finding) {
  if (listed_.size() >= kGreatestListed) {
    ++unlisted_;
    return false;
  }
  listed_.push_back(std::move(finding));
  return true;
}

}  // namespace orv::inspect
