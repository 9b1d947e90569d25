// The one panel in which files are chosen to be opened, made when it is first needed; and what is
// remembered about it, which also serves as the save panel's area of documents that hold none.
// Owned by the application, on its thread.
#pragma once

#include <memory>

#include "Platform/Storage/entry_ref.h"
#include "Platform/Support/GraphicsDefs.h"

class BLooper;
class BMessage;
class MyFilePanel;
class Simulation;
struct RememberedSettings;

class OpenPanel {
public:
    explicit OpenPanel(BLooper* target);
    ~OpenPanel();

    void TakeSettings(const RememberedSettings& settings);
    void AddToSettings(RememberedSettings* settings) const;

    // The folder that it shows first.
    [[nodiscard]] const entry_ref& Directory() const { return directory_; }
    void SetDirectory(const entry_ref& directory) { directory_ = directory; }
    // Replaces the area of the save panel in a document's record.
    void PutAreaInto(BMessage* document) const;
    [[nodiscard]] static bool HasArea(const BMessage& document);

    // `requester`: the simulation that an opened file may replace, or null. The target hears of the
    // choice by B_REFS_RECEIVED with it in pointer "Simulation", or by B_CANCEL.
    void Show(Simulation* requester);
    [[nodiscard]] bool IsShowing() const;
    void Close();

private:
    BLooper* const target_;
    entry_ref directory_;
    BPoint at_;
    // In sizes of the plain font; 0: never set.
    float width_ = 0.0f;
    float height_ = 0.0f;
    std::unique_ptr<MyFilePanel> panel_;
};
