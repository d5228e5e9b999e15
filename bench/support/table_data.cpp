#include "support/table_data.h"

#include <array>
#include <cstdio>

namespace orv::bench {
namespace {

constexpr std::uint64_t kTableSeed = 20240229;
constexpr std::size_t kCities = 300;
constexpr std::uint64_t kFrequentShare = 100;

std::string Letters(std::uint64_t random, std::size_t count) {
  constexpr std::uint64_t kAlphabet = 26;
  std::string text(count, ' ');
  for (char& letter : text) {
    letter = static_cast<char>('a' + random % kAlphabet);
    random /= kAlphabet;
  }
  return text;
}

std::vector<std::string> MakeCities() {
  constexpr std::array<const char*, 20> kFirst = {
      "Alder", "Birch", "Clear", "Dawn", "Elm",  "Fair",  "Green", "High",   "Iron",  "King",
      "Long",  "Mill",  "North", "Oak",  "Pine", "Queen", "River", "Silver", "Stone", "West"};
  constexpr std::array<const char*, 15> kSecond = {"bridge", "brook", "bury", "field", "ford",
                                                   "gate",   "haven", "hill", "land",  "mouth",
                                                   "port",   "stead", "ton",  "ville", "wood"};
  std::vector<std::string> cities;
  for (const char* first : kFirst) {
    for (const char* second : kSecond) cities.push_back(std::string(first) + second);
  }
  return cities;
}

const std::vector<std::string>& Cities() {
  static const std::vector<std::string> cities = MakeCities();
  return cities;
}

const std::vector<std::string>& Words() {
  static const std::vector<std::string> words = {"amber", "black", "blue",   "brown",
                                                 "green", "grey",  "orange", "pink",
                                                 "red",   "white", "violet", "yellow"};
  return words;
}

std::string Date(std::uint64_t random) {
  constexpr std::uint64_t kDays = 28;
  constexpr std::uint64_t kMonths = 12;
  constexpr std::uint64_t kYears = 60;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02d.%02d.%04d", static_cast<int>(random % kDays + 1),
                static_cast<int>(random / kDays % kMonths + 1),
                static_cast<int>(random / (kDays * kMonths) % kYears + 1960));
  return text.data();
}

std::string Sentence(std::uint64_t random) {
  constexpr std::size_t kLeast = 20;
  constexpr std::size_t kSpread = 41;
  const std::size_t length = kLeast + random % kSpread;
  std::string text;
  for (std::uint64_t n = 0; text.size() < length; ++n) {
    text += Letters(Mix(random, n), 3 + n % 5);
    text += ' ';
  }
  text.resize(length);
  if (text.back() == ' ') text.back() = '.';
  return text;
}

}  // namespace

std::uint64_t Mix(std::uint64_t seed, std::uint64_t n) {
  std::uint64_t z = seed + (n + 1) * 0x9E3779B97F4A7C15;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
  return z ^ (z >> 31);
}

std::string CellText(std::int32_t record, std::int16_t field) {
  constexpr std::uint64_t kNumberEnd = 1000000;
  constexpr std::uint64_t kFilledShare = 20;
  const auto n = static_cast<std::uint64_t>(record) * kFields + static_cast<std::uint64_t>(field);
  const std::uint64_t random = Mix(kTableSeed, n);
  switch (field) {
    case 1:
      return std::to_string(record);
    case kLetters:
      return Letters(random, kLettersCount);
    case kCity:
      if (random % kFrequentShare == 0) return FrequentCity();
      return Cities()[1 + random / kFrequentShare % (kCities - 1)];
    case kNumber:
      return std::to_string(random % kNumberEnd);
    case 5:
      return Date(random);
    case kText:
      return Sentence(random);
    case 7:
      return random % kFilledShare == 0 ? Letters(random / kFilledShare, 6) : std::string();
    default:
      return Words()[random % Words().size()];
  }
}

const std::string& FrequentCity() { return Cities().front(); }

const std::string& FirstWord() { return Words().front(); }

std::vector<CellAt> RandomCells(std::size_t count, std::int32_t records, std::uint64_t seed) {
  std::vector<CellAt> cells(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t random = Mix(seed, i);
    cells[i] = {
        static_cast<std::int32_t>(random / kFields % static_cast<std::uint64_t>(records)) + 1,
        static_cast<std::int16_t>(random % kFields + 1)};
  }
  return cells;
}

std::vector<Text> OtherLetters(std::size_t count) {
  std::vector<Text> texts(count);
  for (std::size_t i = 0; i < count; ++i) {
    texts[i].bytes = Letters(Mix(kTableSeed + 1, i), kLettersCount);
    texts[i].wide = Widen(texts[i].bytes);
  }
  return texts;
}

std::vector<Text> Rows(std::int32_t records) {
  std::vector<Text> cells;
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t field = 1; field <= kFields; ++field) {
      const std::string text = CellText(record, field);
      cells.push_back({text, Widen(text)});
    }
  }
  return cells;
}

std::wstring Widen(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace orv::bench
