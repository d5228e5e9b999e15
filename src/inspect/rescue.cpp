#include "inspect/rescue.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inspect/chained_data_rescue.h"
#include "inspect/field_table_rescue.h"
#include "inspect/index_rescue.h"
#include "inspect/matrix_queue.h"
#include "inspect/matrix_search.h"
#include "inspect/packed_check.h"
#include "inspect/rescue_copy.h"
#include "inspect/rescue_log.h"
#include "inspect/rescued_structure.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;
namespace free_size = storage::free_size;
using platform::File;

namespace {

/// Where the root of a new file stands.
constexpr std::int32_t kUsualRoot = 52;

/// The root matrix of the source; 0 when none can be found.
std::int32_t FindRoot(const File& source, RescueLog& log) {
  if (const std::int32_t root = RootOf(source); root != 0) return root;
  if (!CanBeMatrix(source, kUsualRoot) || source.Int16At(kUsualRoot) >= 0) return 0;
  log.LoseOfFile("the root pointer is wrong; the matrix at " + std::to_string(kUsualRoot) +
                 " was taken for the root");
  return kUsualRoot;
}

/// Goes from the root through all matrices, those of one level before those of the next.
class FileRescue {
 public:
  explicit FileRescue(const RescueJob& job) : job_(job), matrices_(job), data_(job, matrices_) {}

  void Run(std::int32_t root) {
    matrices_.EnterRoot(root);
    while (const RescuedMatrix* matrix = matrices_.Next()) CopyMatrix(*matrix);
    job_.copy.Flush();
    PackedCheck check(job_);
    for (const PackedField& field : packed_) check.Verify(field);
  }

 private:
  void CopyMatrix(const RescuedMatrix& matrix) {
    job_.log.CountMatrix();
    CopyProperties(matrix);
    if (storage::FieldTablePosition(job_.source, matrix.from) == 0) return;
    std::vector<RescuedField> fields = FindFields(job_, matrix);
    if (fields.empty() || job_.copy.full()) return;
    const std::int32_t records = CountRecords(job_, matrix, fields);
    CreateFields(job_, matrix, fields, records);
    for (const RescuedField& field : fields) CopyData(field, records);
  }

  void CopyProperties(const RescuedMatrix& matrix) {
    const std::int32_t properties =
        job_.source.Int32At(std::int64_t{matrix.from} + layout::matrix::kProperties);
    if (properties == 0) return;
    if (const auto obstacle = matrices_.Obstacle(properties, matrix)) {
      return job_.log.LoseOfMatrix(matrix.Path(),
                                   "the property matrix cannot be copied: " + *obstacle);
    }
    const std::int32_t copy = matrices_.Enter(properties, matrix, "/#");
    if (copy == 0) return;
    job_.copy.file().WriteInt32(std::int64_t{matrix.to} + layout::matrix::kProperties, copy);
  }

  void CopyData(const RescuedField& field, std::int32_t records) {
    if (field.from == 0 || field.start == 0 || job_.copy.full()) return;
    switch (field.style.freeSize) {
      case free_size::kFree:
        return data_.CopyFree(field, records);
      case free_size::kFixed:
        return Keep(data_.CopyFixed(field, records));
      case free_size::kDictionary:
        return Keep(CopyIndex(job_, field, records));
      default:
        return job_.log.LoseOfField(field, "the cells of a compressed field cannot be read");
    }
  }

  void Keep(const std::optional<PackedField>& packed) {
    if (packed) packed_.push_back(*packed);
  }

  RescueJob job_;
  MatrixQueue matrices_;
  ChainedDataRescue data_;
  std::vector<PackedField> packed_;  ///< to be verified when everything else is there
};

}  // namespace

Rescued Rescue(File& source, File& target) {
  RescueLog log;
  RescueCopy copy(target, source.Length(), log);
  if (const std::int32_t root = FindRoot(source, log); root != 0) {
    FileRescue({source, copy, log}).Run(root);
  } else {
    storage::CreateContainer(target, {});
    log.LoseOfFile("no root matrix was found; the copy is empty");
  }
  return log.Take();
}

}  // namespace orv::inspect
