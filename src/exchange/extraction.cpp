#include "exchange/extraction.h"

#include <algorithm>

namespace orv::exchange {
namespace {

std::string_view ExtensionByContent(std::string_view data) {
  constexpr std::string_view kJpegMark = "JFIF";
  constexpr std::size_t kJpegMarkOffset = 6;
  if (data.size() > kJpegMarkOffset && data.substr(kJpegMarkOffset).starts_with(kJpegMark)) {
    return "jpg";
  }
  if (data.starts_with("GIF")) return "gif";
  return data.starts_with("BM") ? "bmp" : "tmp";
}

/// Whether a character can stand in an extension without changing where the file goes.
bool IsHarmless(char c) {
  constexpr unsigned char kFirstPrintable = 32;
  return static_cast<unsigned char>(c) >= kFirstPrintable && c != '/' && c != '\\' && c != ':';
}

}  // namespace

ContentKind KindOf(std::string_view typeProperty) {
  if (typeProperty == "image" || typeProperty == "wave") return ContentKind::kContent;
  return typeProperty == "file" ? ContentKind::kFile : ContentKind::kText;
}

Extract ExtractOf(ContentKind kind, std::string_view text) {
  if (kind == ContentKind::kContent) return {std::string(ExtensionByContent(text)), text};
  if (text.empty()) return {};
  const auto length = static_cast<std::size_t>(static_cast<unsigned char>(text.front()));
  Extract extract{std::string(text.substr(1, length)), {}};
  extract.data = text.substr(1 + extract.extension.size());
  std::replace_if(
      extract.extension.begin(), extract.extension.end(), [](char c) { return !IsHarmless(c); },
      '_');
  return extract;
}

std::string ExtractName(std::int32_t seconds, std::int32_t r, std::int32_t f,
                        std::string_view extension) {
  constexpr std::size_t kDigits = 4;
  std::string time = std::to_string(seconds);
  if (time.size() > kDigits) time.erase(0, time.size() - kDigits);
  std::string name = "_" + time + "-" + std::to_string(r) + "x" + std::to_string(f) + ".";
  return name.append(extension);
}

}  // namespace orv::exchange
