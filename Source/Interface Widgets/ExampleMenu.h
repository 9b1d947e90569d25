// The submenu of the examples that are installed with the program: each by its title, with what
// there is to see in it as the item's tip. Its items are for the application. Rules as for BMenu.
#pragma once

#include <vector>

#include "Platform/Interface/Handles/BMenu.h"

struct Example {
    std::string path;
    std::string title;
    std::vector<std::string> lines;  // what there is to see
    std::string source;              // where its numbers come from; may be empty
    std::string picture;             // the path of a small picture, or where it would be
};

class ExampleMenu : public BMenu {
public:
    // To the application, with string "path": show a copy of that document.
    static constexpr uint32 kOpenExample = FourCC("exop");
    // To the application: show the gallery.
    static constexpr uint32 kShowGallery = FourCC("exga");

    ExampleMenu(const char* name, const std::vector<Example>& examples);
    explicit ExampleMenu(BMessage* archive) : BMenu(archive) {}

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

    void AttachedToWindow() override;
};
