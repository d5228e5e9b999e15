#include "storage/matrix_path.h"

#include <cmath>
#include <limits>
#include <optional>

#include "platform/code_page.h"
#include "platform/run_time_error.h"

namespace orv::storage {
namespace {

using platform::Raise;
using platform::RunTimeError;
using platform::Trim;

constexpr wchar_t kQuote = L'"';

/// Which characters of the path stand outside strings and parentheses.
class Protection {
 public:
  /// Takes the next character; true when it may be a separator.
  bool IsOpen(wchar_t c) {
    if (c == kQuote) inString_ = !inString_;
    if (inString_ || c == kQuote) return false;
    if (c == L'(') ++depth_;
    if (c == L')' && depth_ > 0) {
      --depth_;
      return false;
    }
    return depth_ == 0;
  }

 private:
  bool inString_ = false;
  int depth_ = 0;
};

/// A plain decimal number of at most nine digits; anything else is an expression.
std::optional<std::int32_t> PlainDecimal(std::wstring_view text) {
  constexpr std::size_t kGreatestDigits = 9;
  if (text.empty() || text.size() > kGreatestDigits) return std::nullopt;
  std::int32_t number = 0;
  for (const wchar_t c : text) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + (c - L'0');
  }
  return number;
}

template <typename Integer>
Integer Rounded(double number) {
  const double whole = std::nearbyint(number);
  if (!(whole >= std::numeric_limits<Integer>::min() &&
        whole <= std::numeric_limits<Integer>::max())) {
    Raise(RunTimeError::kOverflow);
  }
  return static_cast<Integer>(whole);
}

/// Reads the steps behind the file part with a machine of four states.
class StepReader {
 public:
  StepReader(const std::wstring& path, std::size_t begin, SubscriptPort* subscripts,
             ErrorCode& error)
      : path_(path), begin_(begin), subscripts_(subscripts), error_(error) {}

  void Read(std::vector<PathStep>& steps) {
    Protection protection;
    for (std::size_t i = begin_; i < path_.size() && !error_.IsSet(); ++i) {
      const wchar_t c = path_[i];
      if (protection.IsOpen(c) && IsSeparator(c)) {
        OnSeparator(c, i, steps);
      } else {
        gathered_ += c;
      }
    }
    if (!error_.IsSet()) Finish(steps);
  }

 private:
  enum class State { kBetween, kStep, kRecord, kField };

  static bool IsSeparator(wchar_t c) {
    return c == L'/' || c == L'[' || c == L',' || c == L']' || c == L'#';
  }

  void OnSeparator(wchar_t c, std::size_t at, std::vector<PathStep>& steps) {
    switch (c) {
      case L'/':
        return OnSlash(at, steps);
      case L'[':
        return OnOpening();
      case L',':
        return OnComma();
      case L']':
        return OnClosing(steps);
      default:
        return OnHash(steps);
    }
  }

  void OnSlash(std::size_t at, std::vector<PathStep>& steps) {
    if (state_ == State::kStep) TakeFilter(steps);
    if (state_ != State::kBetween || !GatheredIsBlank()) return Refuse();
    if (++levels_ > MatrixPath::kGreatestSteps) return Refuse();
    gathered_.clear();
    stepBegin_ = at;
    state_ = State::kStep;
  }

  void OnOpening() {
    if (state_ != State::kStep || !GatheredIsBlank()) return Refuse();
    gathered_.clear();
    state_ = State::kRecord;
  }

  void OnComma() {
    if (state_ != State::kRecord) return Refuse();
    record_ = Rounded<std::int32_t>(Subscript());
    if (record_ < 1) return error_.Set(code::kRecordNumber);
    gathered_.clear();
    state_ = State::kField;
  }

  void OnClosing(std::vector<PathStep>& steps) {
    if (state_ != State::kField) return Refuse();
    const auto field = Rounded<std::int16_t>(Subscript());
    if (field < 1) return error_.Set(code::kFieldNumber);
    steps.push_back({PathStep::Kind::kCell, {}, record_, field});
    gathered_.clear();
    state_ = State::kBetween;
  }

  void OnHash(std::vector<PathStep>& steps) {
    if (state_ != State::kStep || !GatheredIsBlank()) return Refuse();
    steps.push_back({PathStep::Kind::kProperties, {}, 0, 0});
    gathered_.clear();
    state_ = State::kBetween;
  }

  void Finish(std::vector<PathStep>& steps) {
    if (state_ == State::kStep) TakeFilter(steps);
    if (state_ != State::kBetween || !GatheredIsBlank()) Refuse();
  }

  /// The text of a step that is neither a cell nor "#" is a filter; a step without text is a fault.
  void TakeFilter(std::vector<PathStep>& steps) {
    if (GatheredIsBlank()) return;
    steps.push_back({PathStep::Kind::kFilter, gathered_, 0, 0});
    gathered_.clear();
    state_ = State::kBetween;
  }

  double Subscript() {
    if (const auto number = PlainDecimal(Trim(gathered_))) return *number;
    if (subscripts_ == nullptr) {
      Refuse();
      return 1;
    }
    const double number = subscripts_->ReadSubscript(gathered_, path_.substr(0, stepBegin_));
    // The expression may have resolved paths of its own; what it left in the error code is not this
    // path's.
    error_.Clear();
    return number;
  }

  bool GatheredIsBlank() const { return Trim(gathered_).empty(); }
  void Refuse() { error_.Set(code::kPathSyntax); }

  const std::wstring& path_;
  std::size_t begin_;
  SubscriptPort* subscripts_;
  ErrorCode& error_;
  State state_ = State::kBetween;
  std::wstring gathered_;
  std::size_t stepBegin_ = 0;
  std::size_t levels_ = 0;
  std::int32_t record_ = 0;
};

/// The file name of a file part: quotes that enclose it are removed. Empty when there is none or a
/// quote stands alone.
std::wstring FileName(std::wstring_view part) {
  part = Trim(part);
  if (part.empty()) return {};
  if (part.front() == kQuote) {
    if (part.size() < 3 || part.back() != kQuote) return {};
    part = part.substr(1, part.size() - 2);
  }
  return part.find(kQuote) == std::wstring_view::npos ? std::wstring(part) : std::wstring();
}

std::size_t FilePartEnd(const std::wstring& path) {
  bool inString = false;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == kQuote) inString = !inString;
    if (path[i] == L'/' && !inString) return i;
  }
  return path.size();
}

}  // namespace

MatrixPath SplitPath(const std::wstring& path, SubscriptPort* subscripts, ErrorCode& error) {
  MatrixPath result;
  const std::size_t end = FilePartEnd(path);
  result.fileName = FileName(std::wstring_view(path).substr(0, end));
  if (result.fileName.empty()) {
    error.Set(code::kPathSyntax);
    return result;
  }
  StepReader(path, end, subscripts, error).Read(result.steps);
  return result;
}

std::wstring QuotedFile(const std::wstring& fileName) { return kQuote + fileName + kQuote; }

std::wstring NestedPath(const std::wstring& path, std::int32_t record, std::int16_t field) {
  return path + L"/[" + std::to_wstring(record) + L"," + std::to_wstring(field) + L"]";
}

std::wstring PropertyPath(const std::wstring& path) { return path + L"/#"; }

std::wstring CanonicalPath(const MatrixPath& parts, std::size_t count) {
  std::wstring path = QuotedFile(parts.fileName);
  for (std::size_t i = 0; i < count; ++i) {
    const PathStep& step = parts.steps[i];
    switch (step.kind) {
      case PathStep::Kind::kCell:
        path = NestedPath(path, step.record, step.field);
        break;
      case PathStep::Kind::kProperties:
        path = PropertyPath(path);
        break;
      case PathStep::Kind::kFilter:
        path += L"/" + step.condition;
        break;
    }
  }
  return path;
}

bool EndsInProperties(const std::wstring& path) {
  const std::wstring_view trimmed = Trim(std::wstring_view(path));
  return !trimmed.empty() && trimmed.back() == L'#';
}

}  // namespace orv::storage
