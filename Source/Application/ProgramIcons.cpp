#include "Application/ProgramIcons.h"

#include "Platform/Storage/BResources.h"

namespace {

constexpr int32 kProgramsIcon = 101;

BBitmap Read(type_code type, float side) {
    BBitmap icon({0.0f, 0.0f, side - 1.0f, side - 1.0f}, B_CMAP8);
    BResources resources;
    if (resources.SetToProgram() != B_OK) return icon;
    std::size_t size = 0;
    if (const void* const bits = resources.LoadResource(type, kProgramsIcon, &size))
        icon.SetBits(bits, size);
    return icon;
}

}  // namespace

BBitmap ProgramIcons::Mini() {
    return Read(FourCC("MICN"), 16.0f);
}

BBitmap ProgramIcons::Large() {
    return Read(FourCC("ICON"), 32.0f);
}
