// Records a film on a thread of its own, and tells how far it is. Made, used and ended by one
// thread, which may hold the lock of its window.
#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "Displays/Film/FilmFiles.h"
#include "Displays/Film/FilmPainter.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Support/SupportDefs.h"

class FilmRecorder {
public:
    // To the target: a frame is done, with int64 "frame", how many are; and, unless it was
    // cancelled, the end, with int32 "error": 0, or the errno of what failed.
    static constexpr uint32 kProgress = FourCC("flpg");
    static constexpr uint32 kEnd = FourCC("flnd");
    static constexpr const char* kFrame = "frame";
    static constexpr const char* kError = "error";

    // Begins at once.
    FilmRecorder(FilmPainter painter, const FilmPlan& plan, std::unique_ptr<FilmFiles> files,
                 const BMessenger& target);
    // Cancels what is not done.
    ~FilmRecorder();
    FilmRecorder(const FilmRecorder&) = delete;
    FilmRecorder& operator=(const FilmRecorder&) = delete;

private:
    void Work();
    [[nodiscard]] int Record();

    const FilmPainter painter_;
    const FilmPlan plan_;
    const std::unique_ptr<FilmFiles> files_;
    const BMessenger target_;
    std::atomic<bool> isCancelled_{false};
    std::thread thread_;  // last: it uses the above
};
