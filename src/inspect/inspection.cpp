#include "inspect/inspection.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "inspect/container_walk.h"
#include "inspect/dbase_check.h"
#include "inspect/dictionary_check.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;

namespace {

/// Counts structures and gathers findings. A conflict is listed without its other side, which is
/// not known yet.
class Collector final : public WalkObserver {
 public:
  Collector(platform::File& file, Inspection& inspection) : file_(file), inspection_(inspection) {}

  struct Open {
    Conflict conflict;
    std::size_t finding = 0;
  };

  void Watch(const ContainerWalk& walk) { walk_ = &walk; }
  const std::vector<Open>& open() const { return open_; }

  void OnStructure(const Structure& structure) override {
    switch (structure.kind) {
      case StructureKind::kMatrix:
        ++inspection_.matrices;
        inspection_.cells += structure.count;
        break;
      case StructureKind::kFieldTable:
        inspection_.records +=
            std::max(0, file_.Int32At(structure.position + layout::field_table::kRecords));
        break;
      case StructureKind::kDescriptor:
        ++inspection_.fields;
        break;
      case StructureKind::kCell:
        ++inspection_.cells;
        break;
      case StructureKind::kFixedBlock:
      case StructureKind::kIndex:
        inspection_.cells += structure.count;
        break;
      default:
        break;
    }
  }

  void OnFinding(const Finding& finding) override { inspection_.findings.Add(finding); }

  void OnConflict(const Conflict& conflict) override {
    const Structure& wanted = conflict.wanted;
    Finding finding;
    finding.matrix = walk_->PathOf(wanted.place.matrix);
    finding.field = wanted.place.field;
    finding.record = wanted.place.record;
    finding.position = conflict.slot;
    finding.readable = "what stands there, taken for both";
    const bool listed = inspection_.findings.Add(std::move(finding));
    if (listed) open_.push_back({conflict, inspection_.findings.listed().size() - 1});
  }

 private:
  platform::File& file_;
  Inspection& inspection_;
  const ContainerWalk* walk_ = nullptr;
  std::vector<Open> open_;
};

/// Finds the other side of conflicts in a second walk: which structure the bytes belong to.
class OwnerSearch final : public WalkObserver {
 public:
  OwnerSearch(const std::vector<Collector::Open>& open, FindingList& findings)
      : findings_(findings) {
    for (const Collector::Open& conflict : open)
      byPosition_.emplace(conflict.conflict.at, conflict);
  }

  void Watch(const ContainerWalk& walk) { walk_ = &walk; }

  void OnStructure(const Structure& structure) override {
    const std::int64_t end = structure.position + structure.bytes;
    for (auto at = byPosition_.lower_bound(structure.position);
         at != byPosition_.end() && at->first < end; ++at) {
      Settle(at->second.conflict, structure, findings_.listed()[at->second.finding]);
    }
  }

 private:
  void Settle(const Conflict& conflict, const Structure& owner, Finding& finding) const {
    const Structure& wanted = conflict.wanted;
    const std::string name =
        "the " + std::string(KindWords(wanted.kind)) + " at " + std::to_string(wanted.position);
    if (wanted.kind == owner.kind && wanted.place == owner.place && wanted.first > owner.first) {
      finding.damage = Damage::kLoop;
      finding.what = "the pointer to " + name + " leads back into the same chain";
      finding.readable = StillReadable(wanted);
      return;
    }
    const bool same = wanted.kind == owner.kind && wanted.position == owner.position;
    finding.damage = same ? Damage::kShared : Damage::kOverlap;
    finding.what = name + (same ? " is also the " : " shares bytes with the ") +
                   OwnerText(owner, walk_->PathOf(owner.place.matrix)) +
                   (same ? std::string() : " at " + std::to_string(owner.position));
  }

  FindingList& findings_;
  std::multimap<std::int64_t, Collector::Open> byPosition_;
  const ContainerWalk* walk_ = nullptr;
};

void CheckDictionaries(platform::File& file, const ContainerWalk& walk, FindingList& findings) {
  DictionaryCheck check(file);
  for (const DictionaryField& field : walk.dictionaryFields()) {
    if (std::optional<Finding> finding = check.Check(field)) {
      finding->matrix = walk.PathOf(field.place.matrix);
      findings.Add(*std::move(finding));
    }
  }
}

void NameOwners(platform::File& file, const Collector& collector, FindingList& findings) {
  if (collector.open().empty()) return;
  OwnerSearch search(collector.open(), findings);
  ContainerWalk walk(file, search);
  search.Watch(walk);
  walk.WalkFile();
}

void InspectContainer(platform::File& file, Inspection& inspection) {
  Collector collector(file, inspection);
  ContainerWalk walk(file, collector);
  collector.Watch(walk);
  walk.WalkFile();
  inspection.liveBytes = walk.liveBytes();
  CheckDictionaries(file, walk, inspection.findings);
  NameOwners(file, collector, inspection.findings);
}

}  // namespace

FileKind KindOf(const platform::File& file) {
  using namespace layout::file;
  if (storage::CheckOwnFormat(file)) return FileKind::kContainer;
  const bool magic = file.View(kMagicPosition, std::ssize(kMagic)) == kMagic;
  if (magic) return FileKind::kContainer;
  if (storage::CheckDbaseFormat(file)) return FileKind::kDbase;
  const bool begins = file.View(1, std::ssize(kBeginning)) == kBeginning;
  return begins ? FileKind::kContainer : FileKind::kUnknown;
}

Inspection Inspect(platform::File& file) {
  Inspection inspection;
  inspection.kind = KindOf(file);
  inspection.bytes = file.Length();
  if (inspection.kind == FileKind::kContainer) InspectContainer(file, inspection);
  if (inspection.kind == FileKind::kDbase) InspectDbase(file, inspection);
  return inspection;
}

}  // namespace orv::inspect
