// Where the windows of a simulation stand and whether they are seen, as a document holds it. Any
// thread.
#pragma once

class BMessage;
class BWindow;

// Moves the window to the point `at`, confined to its screen, and shows or hides it as the bool
// `shown` tells; each only if it is there.
void FindWindowInfo(const BMessage& archive, BWindow* window, const char* at, const char* shown);
// Null: no such field.
void SetWindowInfo(BMessage* archive, const BWindow& window, const char* at, const char* shown);

// Sizes are stored in sizes of the plain font, so that they fit another one as well; both or none.
void FindWindowSize(const BMessage& archive, BWindow* window, const char* width,
                    const char* height);
void SetWindowSize(BMessage* archive, const BWindow& window, const char* width, const char* height);
