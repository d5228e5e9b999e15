// Conversion of a field between storage styles.
#pragma once

#include <cstdint>
#include <string>

#include "orv/value.h"

#include "convert/ports.h"
#include "convert/style_request.h"
#include "dialogs/compress_form.h"
#include "storage/field_reader.h"
#include "storage/storage.h"

namespace orv::convert {

/// Converts fields behind `CompressForm`. Every conversion appends the field's new data at the end
/// of the file and repoints the descriptor last, in one write: until then, and after a cancel or a
/// failure, the field is as it was.
class FieldConversion final : public storage::StylePort {
 public:
  FieldConversion(storage::Storage& storage, TypePropertyPort& properties)
      : storage_(storage), properties_(properties) {}

  /// Fills the dialog's inputs and shows it. Failures raise or leave their error code. A path that
  /// ends in a view means the whole field that the view shows, hidden records included, except
  /// that a dictionary is refused there.
  void ConvertField(const std::wstring& path, const std::string& field,
                    const std::string& request) override;

  /// The text as a value, unchanged.
  static Value ToBinaryMode(std::wstring text) { return Value(std::move(text)); }

 private:
  /// The field under conversion.
  struct Target {
    std::wstring path;
    storage::Location matrix;  ///< without the view
    bool throughView = false;
    std::int16_t field = 0;  ///< of the matrix
    std::int32_t descriptor = 0;
  };

  void ProcessDetector(dialogs::CompressForm& form, const std::wstring& path,
                       const std::string& field, const std::string& newType);
  bool FindTarget(const std::wstring& path, const std::string& field, Target& target);
  void Run(dialogs::CompressForm& form, const Target& target, const StyleRequest& request);

  void SetAsFixed(dialogs::CompressForm& form, const Target& target, std::int16_t cellsize,
                  bool unique, std::int16_t dataType);
  void SetAsFree(dialogs::CompressForm& form, const Target& target, bool flag, bool unique,
                 std::int16_t dataType);
  void SetAsCompressed(dialogs::CompressForm& form, const Target& target);
  storage::FieldReader ReaderOf(const Target& target);

  storage::Storage& storage_;
  TypePropertyPort& properties_;
};

}  // namespace orv::convert
