// Where this user's and this machine's files of a kind belong. Reads the environment; any thread,
// as long as none changes it.
#pragma once

#include "Platform/Support/Errors.h"

class BPath;

enum directory_which {
    B_USER_SETTINGS_DIRECTORY,    // $XDG_CONFIG_HOME, else ~/.config
    B_COMMON_SETTINGS_DIRECTORY,  // the first of $XDG_CONFIG_DIRS, else /etc/xdg
    B_USER_STATE_DIRECTORY,       // $XDG_STATE_HOME, else ~/.local/state
    // What user-dirs.dirs among the settings says, if that is there, else ~
    B_USER_DOCUMENTS_DIRECTORY,
};

// `create`: makes the directory, for its owner only, when it is missing.
[[nodiscard]] status_t find_directory(directory_which which, BPath* path, bool create = false);
