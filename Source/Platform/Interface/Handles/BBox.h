// A frame with a title around its children, which lie one below the other. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BBox : public BView {
public:
    BBox(const char* name, const char* label);

    [[nodiscard]] const std::string& Label() const { return label_; }
    void SetLabel(const char* label);

private:
    std::string label_;
};
