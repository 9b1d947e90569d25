// Where widgets and displays get their texts from, by number. The program's main object implements
// it over its resources. Read-only: any thread may call.
#pragma once

#include <string>

#include "Platform/Support/SupportDefs.h"

class InterfaceTexts {
public:
    virtual ~InterfaceTexts() = default;

    // Empty when there is no such text.
    [[nodiscard]] virtual const std::string& Label(int32 id) const = 0;
    [[nodiscard]] const char* Text(int32 id) const { return Label(id).c_str(); }
    // The key of a shortcut: the first letter of the text as it stands, or in the case asked for;
    // 0 when there is no such text.
    [[nodiscard]] char Key(int32 id) const;
    [[nodiscard]] char LowerKey(int32 id) const;
    [[nodiscard]] char UpperKey(int32 id) const;

protected:
    InterfaceTexts() = default;
    InterfaceTexts(const InterfaceTexts&) = default;
    InterfaceTexts& operator=(const InterfaceTexts&) = default;
};
