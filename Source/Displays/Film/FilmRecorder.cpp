#include "Displays/Film/FilmRecorder.h"

#include <cerrno>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"

namespace {

constexpr bigtime_t kBetweenNews = 100'000;  // us

}  // namespace

FilmRecorder::FilmRecorder(FilmPainter painter, const FilmPlan& plan,
                           std::unique_ptr<FilmFiles> files, const BMessenger& target)
    : painter_(std::move(painter)),
      plan_(plan),
      files_(std::move(files)),
      target_(target),
      thread_([this] { Work(); }) {}

FilmRecorder::~FilmRecorder() {
    isCancelled_ = true;
    thread_.join();
}

void FilmRecorder::Work() {
    const int error = Record();
    if (isCancelled_) return;
    BMessage end(kEnd);
    end.AddInt32(kError, error);
    WindowServer::Deliver(target_, end);
}

int FilmRecorder::Record() {
    if (const int error = files_->Begin(); error != 0) return error;
    bigtime_t told = system_time();
    for (int64 frame = 0; frame < plan_.CountFrames(); frame++) {
        if (isCancelled_) return ECANCELED;
        const std::vector<std::byte> picture = painter_.FrameAt(plan_.TimeOf(frame));
        if (picture.empty()) return ENODATA;  // what was kept is gone
        if (const int error = files_->Add(picture); error != 0) return error;
        if (system_time() < told + kBetweenNews) continue;
        told = system_time();
        BMessage progress(kProgress);
        progress.AddInt64(kFrame, frame + 1);
        WindowServer::Deliver(target_, progress);
    }
    return files_->End();
}
