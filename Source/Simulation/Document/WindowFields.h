// The fields of a document's record that belong to displays and windows. No state, any thread.
#pragma once

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;

// Those of `record` that have the right type, in the order in which they are written. The result
// does not keep the memory of the record alive.
[[nodiscard]] BMessage ExtractWindowFields(const BMessage& record);
// Adds every field of `fields` to `record`.
[[nodiscard]] status_t AppendFields(const BMessage& fields, BMessage* record);
void DescribeWindowFields(FieldDescriptions* into);
