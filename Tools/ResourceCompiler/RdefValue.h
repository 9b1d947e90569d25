// What a value in a resource script comes to: bytes with a type, or a number or record that is not
// yet turned into bytes. A plain value.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Support/SupportDefs.h"

// A type that scripts know by name.
struct RdefType {
    enum class Form { kInteger, kReal, kBool, kOther };

    const char* name;
    type_code type;
    Form form;
    std::size_t width;  // of numbers, in bytes

    // Null: no such type.
    static const RdefType* Find(std::string_view name);
};

struct RdefValue {
    type_code type = 0;
    std::vector<std::byte> data;
    std::optional<int64> integer;
    std::optional<double> real;  // of integers too
    std::optional<BMessage> message;
    // What a resource with this value is called by unless the script says otherwise.
    int32 defaultId = 1;
    const char* defaultName = "";

    static RdefValue Bool(bool value);
    static RdefValue Integer(int64 value);
    static RdefValue Real(double value);
    static RdefValue Text(const std::string& text);
    static RdefValue Raw(type_code type, std::string_view bytes);
    // The record is stored little-endian until told otherwise.
    static RdefValue Message(BMessage message);

    // Gives the value this type: numbers get its width, anything may become raw. False if it
    // cannot.
    [[nodiscard]] bool ConvertTo(const RdefType& wanted);
    [[nodiscard]] bool StoreBigEndian();
    // A number that has no type yet gets the usual one; false if it does not fit.
    [[nodiscard]] bool Settle();

    // Adds the value to a record as the record's own functions would: numbers as fixed-size items.
    [[nodiscard]] status_t AddTo(BMessage* record, const std::string& name) const;

private:
    template <typename Number>
    void SetNumber(type_code code, Number number);
};
