#include "CollisionWatch.h"

#include "BLooper.h"
#include "BMessage.h"
#include "CollisionMailbox.h"

namespace {

class CollisionLooper final : public BLooper {
public:
    explicit CollisionLooper(std::vector<CollisionWatch::Pair>* pairs) : pairs_(pairs) {}

    void MessageReceived(BMessage* message) override {
        if (message->what != CollisionMailbox::kCollisionMessage) return;
        int64 later = 0;
        int64 earlier = 0;
        for (int32 i = 0; message->FindInt64(CollisionMailbox::kLaterField, i, &later) == B_OK &&
                          message->FindInt64(CollisionMailbox::kEarlierField, i, &earlier) == B_OK;
             i++)
            pairs_->emplace_back(later, earlier);
    }

private:
    std::vector<CollisionWatch::Pair>* const pairs_;
};

}  // namespace

CollisionWatch::CollisionWatch() : looper_(new CollisionLooper(&pairs_)) {
    looper_->Run();
}

CollisionWatch::~CollisionWatch() {
    Finish();
}

void CollisionWatch::Finish() {
    if (looper_ == nullptr || !looper_->Lock()) return;
    // Waits until the looper has handled its messages and is gone.
    std::exchange(looper_, nullptr)->Quit();
}
