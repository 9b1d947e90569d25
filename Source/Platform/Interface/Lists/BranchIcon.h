// The sign of a row that begins a branch: a line that leaves another one. Drawn in the colour of
// the texts, sharp at every scale. Server's thread.
#pragma once

#include <QIcon>

[[nodiscard]] QIcon MakeBranchIcon();
