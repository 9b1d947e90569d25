// A view that the user operates: label, value, enabled or not, and a message that it sends when it
// is used. Without a target of its own it sends to its window. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BInvoker.h"
#include "Platform/Interface/Handles/BView.h"

class BControl : public BView, public BInvoker {
public:
    [[nodiscard]] const std::string& Label() const { return label_; }
    virtual void SetLabel(const char* label);
    [[nodiscard]] int32 Value() const { return value_; }
    // Sends nothing.
    virtual void SetValue(int32 value);
    [[nodiscard]] bool IsEnabled() const { return isEnabled_; }
    virtual void SetEnabled(bool isEnabled);

    // Adds int64 "when" (microseconds), pointer "source" and int32 "value".
    status_t Invoke(const BMessage* message = nullptr) override;

protected:
    BControl(const char* name, const char* label, BMessage* message,
             std::shared_ptr<ViewPart> part);

    // A copy of the message with what Invoke adds.
    [[nodiscard]] BMessage Invocation(const BMessage& message) const;
    // Takes int32 "value" over and invokes.
    void Changed(const BMessage& message) override;
    [[nodiscard]] BMessenger DefaultTarget() const override;
    // Only the handle's own copy.
    void TakeValue(int32 value) { value_ = value; }

private:
    std::string label_;
    int32 value_ = 0;
    bool isEnabled_ = true;
};
