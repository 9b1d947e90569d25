#include "CollisionWatch.h"

#include <utility>

#include "BLooper.h"
#include "BMessenger.h"
#include "CollisionMailbox.h"

namespace {

// Asks for the pairs; what was posted before has been handled when it is answered.
constexpr uint32 kTakePairs = FourCC("take");

}  // namespace

class CollisionWatch::CollisionLooper final : public BLooper {
public:
    void MessageReceived(BMessage* message) override {
        if (message->what == CollisionMailbox::kCollisionMessage) {
            pairs_ = *message;
        } else if (message->what == kTakePairs) {
            SendReply(pairs_);
            pairs_.MakeEmpty();
        } else {
            BLooper::MessageReceived(message);
        }
    }

private:
    // One message at the most: the calculator parks with each.
    BMessage pairs_{CollisionMailbox::kCollisionMessage};
};

CollisionWatch::CollisionWatch() : looper_(new CollisionLooper) {
    looper_->Run();
}

CollisionWatch::~CollisionWatch() {
    if (looper_->Lock()) looper_->Quit();
}

BLooper* CollisionWatch::Target() const {
    return looper_;
}

BMessage CollisionWatch::Take() {
    const BMessage request(kTakePairs);
    BMessage pairs;
    if (BMessenger(looper_).SendMessage(&request, &pairs) != B_OK) pairs.MakeEmpty();
    return pairs;
}
