#include "Interface Widgets/InterfaceTexts.h"

#include <cctype>

char InterfaceTexts::Key(int32 id) const {
    const std::string& text = Label(id);
    return text.empty() ? '\0' : text[0];
}

char InterfaceTexts::LowerKey(int32 id) const {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(Key(id))));
}

char InterfaceTexts::UpperKey(int32 id) const {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(Key(id))));
}
