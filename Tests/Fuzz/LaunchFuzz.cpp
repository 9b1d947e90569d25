// Reading what other starts of the program send: records in a stream that arrives in pieces.
#include <algorithm>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/RecordStream.h"
#include "Platform/Storage/entry_ref.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

using RecordStream::Found;

void CheckRecord(const BMessage& record) {
    QByteArray frame = RecordStream::Frame(record);
    if (frame.isEmpty()) return;  // a damaged record is nested in it
    BMessage again;
    fuzz::Check(RecordStream::Take(&frame, &again) == Found::kRecord && frame.isEmpty(),
                "what is sent arrives");
    fuzz::Check(again == record, "it arrives as it was sent");
    std::string path;
    entry_ref ref;
    for (int32 i = 0; record.FindString("path", i, &path) == B_OK; i++)
        static_cast<void>(get_ref_for_path(path.c_str(), &ref));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A first piece that may end anywhere, then the rest.
    const std::size_t first = size == 0 ? 0 : data[size - 1] % size;
    const char* const bytes = fuzz::TextOf(data, size).data();
    QByteArray arrived;
    for (const auto& [from, to] : {std::pair(std::size_t{0}, first), std::pair(first, size)}) {
        arrived.append(bytes + from, static_cast<qsizetype>(to - from));
        for (;;) {
            const qsizetype before = arrived.size();
            BMessage record;
            const Found found = RecordStream::Take(&arrived, &record);
            if (found == Found::kGarbage) return 0;  // the connection is given up
            if (found == Found::kTooLittle) break;
            fuzz::Check(arrived.size() < before, "a record is taken once");
            CheckRecord(record);
        }
    }
    return 0;
}
