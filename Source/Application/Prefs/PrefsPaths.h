// Where the preference store keeps its files. No state, any thread.
#pragma once

#include <string>

#include "Platform/Support/Errors.h"

namespace PrefsPaths {

// Names of applications and sets become names of files.
[[nodiscard]] bool IsName(const char* name);

// The settings directory that holds the directories of all applications.
[[nodiscard]] status_t Root(bool isPerUser, std::string* path);
[[nodiscard]] status_t OfApplication(const std::string& application, bool isPerUser,
                                     std::string* path);
// The directory of its sets.
[[nodiscard]] status_t OfSets(const std::string& application, bool isPerUser, std::string* path);
// Begins the name of an application's directory.
inline constexpr const char* kPrefix = "_LP_";

}  // namespace PrefsPaths
