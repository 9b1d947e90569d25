// One simulation document on disk: the 8-byte tag "KWZXNB00" and one flattened record. No state,
// any thread.
#pragma once

#include <string>
#include <string_view>

#include "Simulation/Document/DocumentError.h"

class BMessage;

class SimulationFile {
public:
    static constexpr std::string_view kTag = "KWZXNB00";
    static constexpr const char* kType = "application/x-vnd.tallowby-N-Body-Simulation";
    static constexpr const char* kPreferredApplication = "application/x-vnd.tallowby-Orvek";

    // Reads the file's record, without a look into the records nested in it. Takes no more memory
    // than the file is long; nothing but the tag is read of a file that is not a document. On
    // failure the record is empty. The digest is checked and taken out.
    // `stamping`: whether the record gets the file's FileStamp, taken from what was read.
    enum class Stamping { kNone, kInRecord };
    static DocumentError Read(const std::string& path, BMessage* record,
                              Stamping stamping = Stamping::kNone);
    // Whether a document could be written there, disk space apart. Leaves no trace.
    static DocumentError CanWrite(const std::string& path);
    // False for the record of a file that is not, byte for byte, what was written.
    static bool IsAsWritten(const BMessage& record);
    // Replaces the file at once or not at all, and marks it as a document of this program. What
    // could not be read again as it is replaces nothing: the reason is the one that reading has.
    // `leftovers`, if given: how many unfinished files of programs that have ended were removed
    // from its folder, whether or not the file could be written.
    static DocumentError Write(const std::string& path, const BMessage& record,
                               int* leftovers = nullptr);
    // The same; the record's memory is given back as soon as it is written.
    static DocumentError Write(const std::string& path, BMessage&& record,
                               int* leftovers = nullptr);
};
