// Lays its children out in a row or a column, at any font size. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BGroupView : public BView {
public:
    // `spacing` in logical pixels; negative: as the toolkit thinks best.
    BGroupView(const char* name, orientation direction, float spacing = -1.0f);

    // Room between or after children that takes up what is left over.
    void AddStretch(int32 weight = 1);
    void AddSpace(float size);
    // Around the children; none at first.
    // The toolkit's usual margins of a window.
    void SetWindowInsets();
};
