// Reading records of all stored forms.
#include "Platform/Application/BMessage.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

// A nested record is read when it is asked for.
void ReadNested(const BMessage& record) {
    std::string name;
    type_code type = 0;
    int32 count = 0;
    for (int32 field = 0; record.GetInfo(B_MESSAGE_TYPE, field, &name, &type, &count) == B_OK;
         field++)
        for (int32 i = 0; i < count; i++)
            if (BMessage nested; record.FindMessage(name.c_str(), i, &nested) == B_OK)
                static_cast<void>(nested.ToText());
}

void CheckWritten(const BMessage& record, BMessage::ByteOrder order) {
    std::vector<std::byte> bytes;
    if (record.Flatten(&bytes, order) != B_OK) return;  // a damaged record is nested in it
    fuzz::Check(bytes.size() == record.FlattenedSize(), "a record knows its size");
    BMessage again;
    std::size_t used = 0;
    fuzz::Check(again.Unflatten(bytes.data(), bytes.size(), &used) == B_OK,
                "what was written can be read");
    fuzz::Check(used == bytes.size(), "all that was written is read");
    fuzz::Check(again == record, "what was read is what was written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    BMessage record;
    std::size_t used = 0;
    if (record.Unflatten(data, size, &used) != B_OK) {
        fuzz::Check(record.IsEmpty() && record.what == 0, "a record that cannot be read is empty");
        return 0;
    }
    fuzz::Check(used <= size, "a record lies in its bytes");
    static_cast<void>(record.ToText());
    ReadNested(record);
    CheckWritten(record, BMessage::ByteOrder::kLittleEndian);
    CheckWritten(record, BMessage::ByteOrder::kBigEndian);
    return 0;
}
