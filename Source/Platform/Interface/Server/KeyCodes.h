// Keys of the platform and of the toolkit. No state, any thread.
#pragma once

#include <QKeyEvent>
#include <QKeySequence>

#include "Platform/Interface/Handles/InterfaceDefs.h"

// The sequence for a character with the command key and further modifiers; empty for 0. The
// help key has none of them, and one that is to be alone has no command key.
[[nodiscard]] QKeySequence ToSequence(uint32 key, uint32 modifiers);
[[nodiscard]] uint32 ToModifiers(Qt::KeyboardModifiers modifiers);
// The character, or a constant of InterfaceDefs.h; 0 for a key that has neither.
[[nodiscard]] uint32 ToKey(const QKeyEvent& event);
[[nodiscard]] uint32 ToButtons(Qt::MouseButtons buttons);
