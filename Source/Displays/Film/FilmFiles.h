// Where the frames of a film go: PNG files in a folder, or an encoder's film. Owned by whoever
// records, and used on one thread.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Support/SupportDefs.h"

class FilmFiles {
public:
    virtual ~FilmFiles() = default;

    // Each returns 0, or the errno of what failed.
    [[nodiscard]] virtual int Begin() = 0;
    [[nodiscard]] virtual int Add(std::span<const std::byte> png) = 0;
    // Without it the film is not complete, and an encoder's is none.
    [[nodiscard]] virtual int End() = 0;

protected:
    FilmFiles() = default;
    FilmFiles(const FilmFiles&) = default;
    FilmFiles& operator=(const FilmFiles&) = default;
};

// "frame-00000.png" and so on, in a folder that is made if it is not there.
class FilmFolder final : public FilmFiles {
public:
    // `replaces`: frames that are there already go; else they are EEXIST.
    FilmFolder(std::string path, bool replaces) : path_(std::move(path)), replaces_(replaces) {}

    [[nodiscard]] int Begin() override;
    [[nodiscard]] int Add(std::span<const std::byte> png) override;
    [[nodiscard]] int End() override { return 0; }

private:
    const std::string path_;
    const bool replaces_;
    int64 count_ = 0;
};

// What ffmpeg makes of the frames. The file is seen under its name when it is complete.
class FilmEncoder final : public FilmFiles {
public:
    FilmEncoder(std::string path, int32 framesPerSecond);
    ~FilmEncoder() override;
    FilmEncoder(const FilmEncoder&) = delete;
    FilmEncoder& operator=(const FilmEncoder&) = delete;

    [[nodiscard]] static bool IsInstalled();

    [[nodiscard]] int Begin() override;
    [[nodiscard]] int Add(std::span<const std::byte> png) override;
    // EINVAL: the encoder could not make this film.
    [[nodiscard]] int End() override;

private:
    // What it ended with; its input is closed.
    int Wait();

    const std::string path_;
    const std::string unfinished_;
    const std::string rate_;
    FileDescriptor input_;
    pid_t encoder_ = -1;
};
