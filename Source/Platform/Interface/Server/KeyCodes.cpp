#include "Platform/Interface/Server/KeyCodes.h"

#include <QChar>
#include <array>

#include "Platform/Interface/Handles/InterfaceDefs.h"

namespace {

struct KeyPair {
    int qtKey;
    uint32 key;
};

constexpr std::array kSpecialKeys = {
    KeyPair{Qt::Key_Home, B_HOME},
    KeyPair{Qt::Key_End, B_END},
    KeyPair{Qt::Key_Insert, B_INSERT},
    KeyPair{Qt::Key_Backspace, B_BACKSPACE},
    KeyPair{Qt::Key_Tab, B_TAB},
    KeyPair{Qt::Key_Return, B_ENTER},
    KeyPair{Qt::Key_Enter, B_ENTER},
    KeyPair{Qt::Key_PageUp, B_PAGE_UP},
    KeyPair{Qt::Key_PageDown, B_PAGE_DOWN},
    KeyPair{Qt::Key_Escape, B_ESCAPE},
    KeyPair{Qt::Key_Left, B_LEFT_ARROW},
    KeyPair{Qt::Key_Right, B_RIGHT_ARROW},
    KeyPair{Qt::Key_Up, B_UP_ARROW},
    KeyPair{Qt::Key_Down, B_DOWN_ARROW},
    KeyPair{Qt::Key_Delete, B_DELETE},
};

}  // namespace

QKeySequence ToSequence(uint32 key, uint32 modifiers) {
    if (key == 0) return {};
    if (key == B_HELP_KEY) return QKeySequence(Qt::Key_F1);
    Qt::KeyboardModifiers with = Qt::ControlModifier;
    if ((modifiers & B_NO_COMMAND_KEY) != 0) with = Qt::NoModifier;
    if ((modifiers & B_SHIFT_KEY) != 0) with |= Qt::ShiftModifier;
    if ((modifiers & B_OPTION_KEY) != 0) with |= Qt::AltModifier;
    const auto code = static_cast<Qt::Key>(QChar::toUpper(static_cast<char32_t>(key)));
    return QKeySequence(QKeyCombination(with, code));
}

uint32 ToModifiers(Qt::KeyboardModifiers modifiers) {
    uint32 result = 0;
    if (modifiers.testFlag(Qt::ShiftModifier)) result |= B_SHIFT_KEY;
    if (modifiers.testFlag(Qt::ControlModifier)) result |= B_COMMAND_KEY;
    if (modifiers.testFlag(Qt::AltModifier)) result |= B_OPTION_KEY;
    return result;
}

uint32 ToKey(const QKeyEvent& event) {
    for (const KeyPair& pair : kSpecialKeys)
        if (pair.qtKey == event.key()) return pair.key;
    const auto characters = event.text().toUcs4();
    return characters.isEmpty() ? 0 : characters.first();
}

uint32 ToButtons(Qt::MouseButtons buttons) {
    uint32 result = 0;
    if (buttons.testFlag(Qt::LeftButton)) result |= B_PRIMARY_MOUSE_BUTTON;
    if (buttons.testFlag(Qt::RightButton)) result |= B_SECONDARY_MOUSE_BUTTON;
    if (buttons.testFlag(Qt::MiddleButton)) result |= B_TERTIARY_MOUSE_BUTTON;
    return result;
}
