// The submenu of the documents used last, which follows the program's list while it is in a window.
// Its items are for the application. Rules as for BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class RecentMenu : public BMenu {
public:
    // `clearLabel`: of the item that empties the list.
    RecentMenu(const char* name, const char* clearLabel);
    explicit RecentMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // Adds string "_clear", and no items.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    // The window that a chosen document may replace, for pointer "Simulation" of the items'
    // messages; null, as at first: none. It is not looked at.
    void SetRequester(const void* simulation);

    void AttachedToWindow() override;
    void DetachedFromWindow() override;
    void MessageReceived(BMessage* message) override;

private:
    void Fill();

    std::string clearLabel_;
    const void* requester_ = nullptr;
};
