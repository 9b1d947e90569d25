// Scroll bars that lie over the edges of a scroll area and show what there is beyond them, where
// its content has no size of its own. For the server's thread.
#pragma once

#include <QString>
#include <functional>

#include "Platform/Interface/Server/ScrollRange.h"

class EdgeBar;
class QScrollArea;

class EdgeBars {
public:
    // The area owns the bars. `move` is told by how many pixels the user wants to see what is
    // further right, and further down.
    EdgeBars(QScrollArea* area, std::function<void(double right, double down)> move);

    // A bar goes when all is shown.
    void Show(const ScrollRange& horizontal, const ScrollRange& vertical);
    void SetNames(const QString& horizontal, const QString& vertical);
    // The area has another size, or another content, which covered the bars.
    void Place();

private:
    QScrollArea* const area_;
    EdgeBar* const horizontal_;
    EdgeBar* const vertical_;
};
