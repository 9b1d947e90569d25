// A pop-up menu in a window, with a label before it. Rules as for BView; archives can be made and
// read without a window or a window server.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BView.h"

class BMenuField : public BView {
public:
    // Takes the menu over. An empty or null label: none.
    BMenuField(const char* name, const char* label, BMenu* menu);
    explicit BMenuField(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // "class" (the object's own class, once), "_name", "_label", "_disable" where true, and deep
    // the menu as nested "_menu".
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    // Null if an archive had none.
    [[nodiscard]] BMenu* Menu() const;
    [[nodiscard]] const std::string& Label() const { return label_; }
    void SetLabel(const char* label);
    void SetEnabled(bool isEnabled);
    [[nodiscard]] bool IsEnabled() const { return isEnabled_; }
    // Room for at least so many characters.
    void SetColumns(int32 count);

    void AttachedToWindow() override;

protected:
    // Whether the field shows the marked item's MarkedLabel and not the menu's name; here: if the
    // menu is labelled from the marked item.
    [[nodiscard]] virtual bool ShowsMarked() const;

private:
    friend class BMenu;

    void ShowMenu();
    void UpdateText();

    std::string label_;
    bool isEnabled_ = true;
};
