// Public tables that other programs wrote; they lie beside the project, not in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace orv::test {

/// The named table, looked for in the folder that the environment variable ORV_TEST_DATA names,
/// else in ../shared/data beside the project; nothing where it is absent.
inline std::optional<std::filesystem::path> RealData(const std::string& name) {
  const char* const folder = std::getenv("ORV_TEST_DATA");
  const std::filesystem::path root =
      folder != nullptr
          ? std::filesystem::path(folder)
          : (std::filesystem::path(ORV_TEST_DATA_DIR) / "../../../shared/data").lexically_normal();
  if (!std::filesystem::exists(root / name)) return std::nullopt;
  return root / name;
}

}  // namespace orv::test
