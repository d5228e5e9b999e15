// Keeps the engine's files inside one folder while inputs name whatever they like.
#pragma once

#include <filesystem>

namespace orv::fuzz {

/// Makes the folder the working folder and refuses, as for want of permission, every opening and
/// deletion of a file outside it that the engine asks for from now on. Links are not followed, for
/// nothing in here makes any.
void ConfineTo(const std::filesystem::path& folder);

/// Deletes all files of the folder that are not called `kept`.
void Clear(const std::filesystem::path& folder, const std::filesystem::path& kept = {});

}  // namespace orv::fuzz
