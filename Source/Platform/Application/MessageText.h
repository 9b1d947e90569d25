// A record as text for people: one line an item with its type, name and value, nested records
// indented. Numbers are printed so that they read back as they were. Works through nested records
// without recursion. Used by one thread, while the record lives.
#pragma once

#include "Platform/Application/BMessage.h"

class MessageText {
public:
    explicit MessageText(const BMessage& message);

    [[nodiscard]] const std::string& Text() const { return text_; }

private:
    using Field = MessageFields::Field;
    using Record = MessageFields::Record;

    // A record that has been begun, and its next item.
    struct Open {
        Record record;
        std::size_t field = 0;
        int32 item = 0;
    };

    // Prints up to the next nested record or the record's end, and steps into the one or out.
    void Continue();
    void PrintItem(const Open& open, const Field& field);
    void Enter(Record record);
    void Indent(std::size_t levels);

    std::vector<Open> open_;
    std::string text_;
};
