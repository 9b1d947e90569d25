// What a user does to a column list, done to the real widget, and what is seen in it. On the tests'
// thread. (The toolkit's own headers and ours both have a `Display`: this keeps them apart.)
#pragma once

#include <string>

class BColumnListView;

namespace ListHand {

enum class Key { kEnter, kDelete };

void Press(const BColumnListView* list, Key key);
// The column's texts from top to bottom; "*" after one that stands out.
[[nodiscard]] std::string Column(const BColumnListView* list, int column);

}  // namespace ListHand
