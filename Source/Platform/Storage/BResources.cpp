#include "Platform/Storage/BResources.h"

#include <fcntl.h>
#include <link.h>

#include <cerrno>
#include <cstring>

#include "Platform/Storage/BFile.h"
#include "Platform/Storage/ProgramSection.h"
#include "Platform/Storage/ResourceFormat.h"

using namespace ResourceFormat;

namespace {

// Larger than any resource file is; a limit to what is read into memory.
constexpr off_t kMaxFileSize = 64 << 20;

bool BeginsWith(const std::vector<std::byte>& bytes, const void* prefix, std::size_t size) {
    return bytes.size() >= size && std::memcmp(bytes.data(), prefix, size) == 0;
}

status_t ReadWhole(BFile& file, std::vector<std::byte>* bytes) {
    off_t size = 0;
    if (const status_t status = file.GetSize(&size); status != B_OK) return status;
    if (size > kMaxFileSize) return B_IO_ERROR;
    bytes->resize(static_cast<std::size_t>(size));
    const ssize_t got = file.ReadAt(0, bytes->data(), bytes->size());
    if (got < 0) return static_cast<status_t>(got);
    bytes->resize(static_cast<std::size_t>(got));
    return B_OK;
}

}  // namespace

status_t BResources::SetTo(const char* path) {
    *this = BResources();
    BFile file(path, B_READ_ONLY);
    if (file.InitCheck() != B_OK) return file.InitCheck();
    char magic[SELFMAG] = {};
    const ssize_t got = file.ReadAt(0, magic, sizeof magic);
    if (got < 0) return static_cast<status_t>(got);
    const bool isProgram = std::memcmp(magic, ELFMAG, SELFMAG) == 0;
    std::vector<std::byte> bytes;
    const status_t status = isProgram
                                ? ProgramSection::Read(file.Descriptor(), kSectionName, &bytes)
                                : ReadWhole(file, &bytes);
    return status == B_OK ? SetTo(std::move(bytes)) : status;
}

status_t BResources::SetTo(std::vector<std::byte> file) {
    *this = BResources();
    if (file.empty()) return B_OK;
    std::size_t blockOffset = 0;
    if (BeginsWith(file, kLittleEndianPrefix, sizeof kLittleEndianPrefix))
        blockOffset = sizeof kLittleEndianPrefix;
    else if (BeginsWith(file, kBigEndianPrefix, sizeof kBigEndianPrefix))
        blockOffset = kBigEndianBlockOffset;
    else
        return B_IO_ERROR;
    if (file.size() < blockOffset) return B_BAD_DATA;
    file.erase(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(blockOffset));
    return SetToBlock(std::move(file));
}

status_t BResources::SetToProgram() {
    return SetTo("/proc/self/exe");
}

status_t BResources::SetToBlock(std::vector<std::byte> block) {
    std::vector<ResourceBlock::Resource> found;
    if (const status_t status = ResourceBlock::Read(&block, &found); status != B_OK) return status;
    block_ = std::move(block);
    // A second resource of one type and number replaces the first.
    for (ResourceBlock::Resource& resource : found) {
        const auto [place, isNew] = byId_.try_emplace({resource.type, resource.id}, all_.size());
        if (isNew)
            all_.push_back(std::move(resource));
        else
            all_[place->second] = std::move(resource);
    }
    return B_OK;
}

const void* BResources::DataOf(std::size_t index, std::size_t* size) const {
    if (size != nullptr) *size = all_[index].size;
    return all_[index].size == 0 ? block_.data() : block_.data() + all_[index].offset;
}

const void* BResources::LoadResource(type_code type, int32 id, std::size_t* size) const {
    const auto found = byId_.find({type, id});
    return found == byId_.end() ? nullptr : DataOf(found->second, size);
}

const void* BResources::LoadResource(type_code type, const char* name, std::size_t* size) const {
    for (std::size_t i = 0; i < all_.size(); i++)
        if (all_[i].type == type && all_[i].name == name) return DataOf(i, size);
    return nullptr;
}

std::optional<std::string> BResources::LoadString(int32 id) const {
    std::size_t size = 0;
    const auto* const text = static_cast<const char*>(LoadResource(B_STRING_TYPE, id, &size));
    if (text == nullptr) return std::nullopt;
    return std::string(text, strnlen(text, size));
}

bool BResources::GetResourceInfo(int32 index, type_code* type, int32* id, const char** name,
                                 std::size_t* size) const {
    if (index < 0 || index >= CountResources()) return false;
    const ResourceBlock::Resource& resource = all_[static_cast<std::size_t>(index)];
    if (type != nullptr) *type = resource.type;
    if (id != nullptr) *id = resource.id;
    if (name != nullptr) *name = resource.name.c_str();
    if (size != nullptr) *size = resource.size;
    return true;
}
