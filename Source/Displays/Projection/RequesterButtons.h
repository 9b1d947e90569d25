// What the dialogs of a display have in common. No state; the thread that makes the dialog.
#pragma once

#include "Platform/Support/SupportDefs.h"

class BView;
class BWindow;
class Display;

// Lays out the content with "Cancel", which sends `cancel` to the display, and "Use", which asks
// the dialog to quit, below it. Takes the content over.
void AddRequesterContent(BWindow* dialog, BView* content, Display* display, uint32 cancel);
