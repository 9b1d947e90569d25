// A menu field that shows the short form of the marked item. Rules as for BMenuField.
#pragma once

#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BMenuItem.h"

// A menu item with a short form of its label, which an AbbrevMenuField shows while the item is
// marked. Rules as for BMenuItem.
class AbbrevMenuItem : public BMenuItem {
public:
    AbbrevMenuItem(const char* label, const char* abbreviation, BMessage* message,
                   char shortcut = 0, uint32 modifiers = 0);
    explicit AbbrevMenuItem(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // Adds string "Abbreviation" to the item's fields.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    [[nodiscard]] const std::string& Abbreviation() const { return abbreviation_; }
    [[nodiscard]] std::string MarkedLabel() const override { return abbreviation_; }

private:
    std::string abbreviation_;
};

class AbbrevMenuField : public BMenuField {
public:
    AbbrevMenuField(const char* name, const char* label, BMenu* menu);
    explicit AbbrevMenuField(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

protected:
    [[nodiscard]] bool ShowsMarked() const override { return true; }
};
