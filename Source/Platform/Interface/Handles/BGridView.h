// Lays its children out in rows and columns that fit each other. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BGridView : public BView {
public:
    enum class Align { kFill, kLeft, kCenter, kRight };

    // Spacings in logical pixels; negative: as the toolkit thinks best.
    explicit BGridView(const char* name, float horizontalSpacing = -1.0f,
                       float verticalSpacing = -1.0f);

    // Takes the view over and puts it into a cell, or over several.
    void AddView(BView* view, int32 column, int32 row, int32 columnCount = 1, int32 rowCount = 1,
                 Align align = Align::kFill);
    void SetColumnWeight(int32 column, int32 weight);
};
