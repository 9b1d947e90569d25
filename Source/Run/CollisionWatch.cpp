#include "Run/CollisionWatch.h"

#include "Calculation/CollisionMailbox.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessenger.h"

class CollisionWatch::CollisionLooper final : public BLooper {
public:
    void MessageReceived(BMessage* message) override {
        switch (message->what) {
            case CollisionMailbox::kCollisionMessage:
                pairs_ = *message;
                break;
            case RunEnding::kMessage:
                ending_ = *message;
                break;
            case kTakePairs:
                SendReply(pairs_);
                pairs_.MakeEmpty();
                break;
            case kTakeEnding:
                SendReply(ending_);
                ending_.MakeEmpty();
                break;
            default:
                BLooper::MessageReceived(message);
        }
    }

private:
    // One message of each at the most: the calculator parks with it.
    BMessage pairs_{CollisionMailbox::kCollisionMessage};
    BMessage ending_{RunEnding::kMessage};
};

CollisionWatch::CollisionWatch() : looper_(new CollisionLooper) {
    looper_->Run();
}

CollisionWatch::~CollisionWatch() {
    BLooper::QuitIfAlive(looper_);
}

BLooper* CollisionWatch::Target() const {
    return looper_;
}

BMessage CollisionWatch::Ask(uint32 what) const {
    const BMessage request(what);
    BMessage answer;
    if (BMessenger(looper_).SendMessage(&request, &answer) != B_OK) answer.MakeEmpty();
    return answer;
}
