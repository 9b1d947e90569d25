// Reading an optional field of an archive: its value, or a default when it is absent or of another
// type.
#pragma once

#include "Platform/Application/BMessage.h"

template <typename T>
T FieldOr(const BMessage* archive, status_t (BMessage::*find)(const char*, int32, T*) const,
          const char* name, T fallback, int32 index = 0) {
    T value{};
    return (archive->*find)(name, index, &value) == B_OK ? value : fallback;
}
