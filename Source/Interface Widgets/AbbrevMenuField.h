// A menu field that shows the short form of the marked item. Rules as for BMenuField.
#pragma once

#include "Platform/Interface/Handles/BMenuField.h"

class AbbrevMenuField : public BMenuField {
public:
    AbbrevMenuField(const char* name, const char* label, BMenu* menu);
    explicit AbbrevMenuField(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

protected:
    [[nodiscard]] bool ShowsMarked() const override { return true; }
};
