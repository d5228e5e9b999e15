// Figures as readers like them.
#pragma once

#include <cstdint>
#include <string>

namespace orv::bench {

/// With commas between groups of three digits.
std::string Grouped(std::int64_t number);
/// Whole from 100 on, else with one decimal.
std::string Rounded(double number);

}  // namespace orv::bench
