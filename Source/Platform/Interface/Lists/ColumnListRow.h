// One row of a column list, as both of its sides know it. A plain value.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

struct ColumnListRow {
    static constexpr int64 kNoKey = -1;

    struct Cell {
        std::string text;
        // Sorts the rows instead of the text, unless it is no number.
        double number = std::numeric_limits<double>::quiet_NaN();
    };

    int64 key = kNoKey;     // names the row; unique in the list
    int64 parent = kNoKey;  // the key of an earlier row; none: a top-level row
    std::vector<Cell> cells;
    bool isEditable = false;  // its first cell can be renamed
    bool isMarked = false;    // stands out from the others
    bool isBranch = false;    // has the sign of a branch
    std::string tip;          // told when the mouse rests on it
};
