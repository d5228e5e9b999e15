#include "cli/failure.h"

#include <algorithm>
#include <array>

#include "cli/utf8.h"

namespace orv::cli {
namespace {

struct Meaning {
  std::int16_t code;
  std::string_view text;
};

constexpr std::array kMeanings = std::to_array<Meaning>({
    {4, "there is no such property"},
    {5, "the call is not valid here"},
    {6, "a number is too large, or the file would grow beyond 2 GB"},
    {7, "out of memory"},
    {9, "a record or field number is beyond the table, or more than ten files are in use"},
    {10, "the path is not well formed"},
    {11, "division by zero"},
    {13, "the value is of the wrong type"},
    {17, "an unforeseen failure inside the engine"},
    {19, "a step of the path leads to a cell that holds no matrix"},
    {20, "the record number is not valid"},
    {21, "the field number is not valid"},
    {25, "the operation was refused"},
    {26, "a cell is either short (1) or long (4)"},
    {28, "an expression or path is nested too deeply"},
    {51, "the file exists and was not overwritten"},
    {52, "bad file number"},
    {53, "the file does not exist or is empty"},
    {54, "a property matrix has no properties of its own"},
    {55, "the file is already open"},
    {57, "the device failed to read or write"},
    {58, "cells of this field cannot hold a matrix: its storage style is not free"},
    {61, "the disk is full"},
    {67, "too many files are open"},
    {70, "not possible on a dBASE III table, or permission was denied"},
    {75, "the file is locked or its permissions forbid the access"},
    {76, "the folder does not exist"},
    {255, "a number is out of range, or the path leads to no matrix"},
});

}  // namespace

std::string_view MeaningOf(std::int16_t code) {
  const auto* const found = std::ranges::find(kMeanings, code, &Meaning::code);
  return found == kMeanings.end() ? "the operation failed" : found->text;
}

std::string ErrorSentence(std::wstring_view path, std::int16_t code) {
  return ToUtf8(path) + ": error " + std::to_string(code) + ": " + std::string(MeaningOf(code));
}

}  // namespace orv::cli
