// The fields of a document's record that belong to displays and windows. No state, any thread.
#pragma once

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;

// Of each display, in step: its record, and its type.
inline constexpr const char* kDisplaysField = "Displays";
inline constexpr const char* kDisplayTypesField = "Disp type";
// Where windows stand (points), how large they are (floats), and whether they are shown (bools).
inline constexpr const char* kWindowAtField = "Edit at";  // the simulation's own
inline constexpr const char* kAnimationAtField = "Anim at";
inline constexpr const char* kAnimationShownField = "Anim Show";
inline constexpr const char* kColorsAtField = "Colors at";
inline constexpr const char* kColorsShownField = "Colors Show";
inline constexpr const char* kEpochsAtField = "Epoch at";
inline constexpr const char* kEpochsShownField = "Epoch Show";
inline constexpr const char* kEpochsWidthField = "Epoch W";
inline constexpr const char* kEpochsHeightField = "Epoch H";
inline constexpr const char* kSaveAtField = "Save at";
inline constexpr const char* kSaveWidthField = "Save W";
inline constexpr const char* kSaveHeightField = "Save H";

// Those of `record` that have the right type, in the order in which they are written. The result
// does not keep the memory of the record alive.
[[nodiscard]] BMessage ExtractWindowFields(const BMessage& record);
// Adds every field of `fields` to `record`.
[[nodiscard]] status_t AppendFields(const BMessage& fields, BMessage* record);
void DescribeWindowFields(FieldDescriptions* into);
