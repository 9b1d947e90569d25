// Finds a section of a program file. A static function without state, any thread.
#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Support/Errors.h"

class ProgramSection {
public:
    // Reads the section with this name from an open program file for this machine, and no more of
    // the file than that takes. B_IO_ERROR: not such a program, or it has no such section;
    // B_BAD_DATA: the file is damaged.
    [[nodiscard]] static status_t Read(int descriptor, const char* name,
                                       std::vector<std::byte>* contents);
};
