// Where the file layer can be made to fail, or be stopped, on purpose.
//
// Before each of its operations the file layer asks the installed fault points, if there are any.
// In production there are none, and the question is one test of a pointer; reading asks nothing at
// all.
#pragma once

#include <cstdint>

namespace orv::platform {

/// What the file layer does to files. Every store into a map is one operation, however many bytes
/// it has.
enum class FileOperation : std::uint8_t {
  kOpen,          ///< opening or creating a file under a number
  kScratch,       ///< creating the private scratch file
  kGrow,          ///< making the file longer; asked again for the smaller step near a full disk
  kStore,         ///< storing bytes into the map
  kTrim,          ///< cutting a grown file to its true length
  kClose,         ///< giving up map and file
  kDelete,        ///< deleting a file by its name
  kOutputCreate,  ///< creating or emptying a file that is written from its beginning to its end
  kOutputWrite,   ///< writing a piece of such a file
  kOutputClose,   ///< closing such a file
};

class FaultPoints {
 public:
  virtual ~FaultPoints() = default;

  /// Called before each operation. Raises the run-time failure that the operation shall meet, which
  /// is then not carried out. `kTrim` and `kClose` cannot fail and must not raise; false leaves a
  /// trimming out, as a system does that refuses it. For all others the result means nothing.
  virtual bool Before(FileOperation operation) = 0;
};

/// The fault points in force, owned by whoever installs them; nullptr outside tests.
inline FaultPoints* installedFaultPoints = nullptr;

/// Asks the installed fault points, of which there must be some. Out of line, so that the code
/// around a question pays for nothing but the test.
bool AskFaultPoints(FileOperation operation);

/// Asks the fault points if any are installed; true when there are none.
inline bool PassFaultPoint(FileOperation operation) {
  if (installedFaultPoints == nullptr) [[likely]]
    return true;
  return AskFaultPoints(operation);
}

}  // namespace orv::platform
