// The table that every store holds: made by rule, the same at every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orv::bench {

/// Eight text fields: the record's number; 8 letters; one of 300 city names; a number below a
/// million; a date; 20 to 60 characters; mostly empty; one of 12 words. Plain ASCII, so that no
/// store pays for conversion.
inline constexpr std::int16_t kFields = 8;
inline constexpr std::int16_t kLetters = 2;
inline constexpr std::int16_t kCity = 3;
inline constexpr std::int16_t kNumber = 4;
inline constexpr std::int16_t kText = 6;
inline constexpr std::int16_t kWord = 8;
inline constexpr std::size_t kLettersCount = 8;

/// A well-mixed number for each pair of arguments.
std::uint64_t Mix(std::uint64_t seed, std::uint64_t n);

/// The text of cell (`record`, `field`), both from 1.
std::string CellText(std::int32_t record, std::int16_t field);
/// The city that one record in a hundred holds.
const std::string& FrequentCity();
/// One of the twelve words.
const std::string& FirstWord();

struct CellAt {
  std::int32_t record;
  std::int16_t field;
};
/// `count` cells at random among the first `records` records.
std::vector<CellAt> RandomCells(std::size_t count, std::int32_t records, std::uint64_t seed);

/// A text as bytes and as the engine's hosts have it.
struct Text {
  std::string bytes;
  std::wstring wide;
};
/// Texts of 8 letters to write over others.
std::vector<Text> OtherLetters(std::size_t count);
/// The cells of `records` records, record by record.
std::vector<Text> Rows(std::int32_t records);

std::wstring Widen(const std::string& ascii);

}  // namespace orv::bench
