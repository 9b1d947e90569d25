#include "Platform/Storage/ProgramSection.h"

#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Support/ByteOrder.h"

namespace {

using Header = ElfW(Ehdr);
using Section = ElfW(Shdr);

constexpr unsigned char kClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
constexpr unsigned char kData = kHostIsBigEndian ? ELFDATA2MSB : ELFDATA2LSB;

class ElfFile {
public:
    explicit ElfFile(int descriptor) : descriptor_(descriptor) {}

    status_t ReadSection(std::string_view name, std::vector<std::byte>* contents) {
        struct stat info {};
        if (fstat(descriptor_, &info) != 0) return ErrnoStatus(errno);
        size_ = static_cast<uint64>(info.st_size);

        Header header;
        if (!ReadAt(0, sizeof header, &header) || !IsProgramOfThisMachine(header))
            return B_IO_ERROR;
        if (header.e_shoff == 0) return B_IO_ERROR;
        std::vector<Section> sections(header.e_shnum);
        if (header.e_shentsize != sizeof(Section) ||
            !ReadAt(header.e_shoff, sections.size() * sizeof(Section), sections.data()) ||
            header.e_shstrndx >= sections.size())
            return B_BAD_DATA;
        std::vector<std::byte> names;
        if (!ReadContents(sections[header.e_shstrndx], &names)) return B_BAD_DATA;
        names.push_back(std::byte{0});
        for (const Section& section : sections) {
            if (section.sh_type != SHT_PROGBITS || section.sh_name >= names.size()) continue;
            if (reinterpret_cast<const char*>(&names[section.sh_name]) != name) continue;
            return ReadContents(section, contents) ? B_OK : B_BAD_DATA;
        }
        return B_IO_ERROR;
    }

private:
    static bool IsProgramOfThisMachine(const Header& header) {
        return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
               header.e_ident[EI_CLASS] == kClass && header.e_ident[EI_DATA] == kData;
    }

    bool ReadAt(uint64 offset, uint64 size, void* into) const {
        if (offset > size_ || size > size_ - offset) return false;
        auto* to = static_cast<std::byte*>(into);
        while (size > 0) {
            const ssize_t got = pread(descriptor_, to, size, static_cast<off_t>(offset));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return false;
            to += got;
            offset += static_cast<uint64>(got);
            size -= static_cast<uint64>(got);
        }
        return true;
    }

    bool ReadContents(const Section& section, std::vector<std::byte>* contents) const {
        if (section.sh_offset > size_ || section.sh_size > size_ - section.sh_offset) return false;
        contents->resize(section.sh_size);
        return ReadAt(section.sh_offset, section.sh_size, contents->data());
    }

    const int descriptor_;
    uint64 size_ = 0;
};

}  // namespace

status_t ProgramSection::Read(int descriptor, const char* name, std::vector<std::byte>* contents) {
    contents->clear();
    return ElfFile(descriptor).ReadSection(name, contents);
}
