#include "support/hex_text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <stdexcept>

namespace orv::test {
namespace {

class HexReader {
 public:
  explicit HexReader(std::string_view text) : text_(text) {}

  std::string Read() {
    while (at_ < text_.size()) Take();
    return bytes_;
  }

 private:
  void Take() {
    const char c = text_[at_];
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++at_;
    } else if (c == '#') {
      at_ = std::min(text_.find('\n', at_), text_.size());
    } else if (c == '"') {
      TakeQuoted();
    } else if (c == '*') {
      TakeRepetition();
    } else {
      TakeByte();
    }
  }

  void TakeQuoted() {
    const std::size_t end = text_.find('"', at_ + 1);
    if (end == std::string_view::npos) Refuse();
    bytes_.append(text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
  }

  void TakeRepetition() {
    std::size_t count = 0;
    for (++at_; at_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[at_])) != 0;
         ++at_) {
      count = count * 10 + static_cast<std::size_t>(text_[at_] - '0');
    }
    if (bytes_.empty() || count == 0) Refuse();
    bytes_.append(count - 1, bytes_.back());
  }

  void TakeByte() {
    if (at_ + 2 > text_.size()) Refuse();
    const std::string digits(text_.substr(at_, 2));
    std::size_t used = 0;
    const int value = std::stoi(digits, &used, 16);
    if (used != 2) Refuse();
    bytes_.push_back(static_cast<char>(value));
    at_ += 2;
  }

  [[noreturn]] void Refuse() const {
    throw std::invalid_argument("golden text, at " + std::string(text_.substr(at_, 20)));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string bytes_;
};

}  // namespace

std::string FromHex(std::string_view text) { return HexReader(text).Read(); }

std::string HexDump(std::string_view bytes) {
  constexpr std::size_t kLine = 16;
  std::string dump;
  char field[32];
  for (std::size_t i = 0; i < bytes.size(); i += kLine) {
    std::snprintf(field, sizeof field, "%6zu:", i + 1);
    dump += field;
    std::string characters;
    for (std::size_t k = i; k < i + kLine && k < bytes.size(); ++k) {
      const auto byte = static_cast<unsigned char>(bytes[k]);
      std::snprintf(field, sizeof field, " %02x", byte);
      dump += field;
      characters += std::isprint(byte) != 0 ? static_cast<char>(byte) : '.';
    }
    dump += "  " + characters + "\n";
  }
  return dump;
}

}  // namespace orv::test
