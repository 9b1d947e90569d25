// The window server's half of a view: its widget. Shared by the view, the widget and whatever is
// queued, so it outlives them all; a late event finds a messenger whose target is gone. Everything
// here is for the server's thread, unless it says otherwise.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/WindowServer.h"

// What parts send to their views: the user changed something.
inline constexpr uint32 kViewChanged = FourCC("_VCH");

class ViewPart : public std::enable_shared_from_this<ViewPart> {
public:
    ViewPart() = default;
    virtual ~ViewPart() = default;
    ViewPart(const ViewPart&) = delete;
    ViewPart& operator=(const ViewPart&) = delete;

    // Makes the widget; once, before everything else.
    void Create();
    // The widget may be in the middle of an event of its own.
    void Destroy();
    // Null after the widget has gone with the one around it.
    [[nodiscard]] QWidget* Widget() const { return widget_; }
    // Puts the widget of a child view in its place, and takes it out again.
    virtual void Place(ViewPart& child);
    static void Remove(ViewPart& child);

    // The keyboard does not go on to the neighbour of what is disabled, where the user would type
    // on into something else; and it comes back when that is enabled, unless it is elsewhere by
    // then.
    void SetEnabled(bool isEnabled);

    virtual void SetHandle(const BMessenger& handle) { handle_ = handle; }
    void Tell(const BMessage& message) const { WindowServer::Deliver(handle_, message); }

protected:
    [[nodiscard]] virtual QWidget* Make();

private:
    QPointer<QWidget> widget_;
    QPointer<QWidget> hadFocus_;  // until the widget was disabled
    BMessenger handle_;
};

// Any thread: queues a change of the part's widget, dropped if that is gone by then.
template <typename WidgetType, typename Change>
void ChangeWidget(const std::shared_ptr<ViewPart>& part, Change change) {
    WindowServer::Queue([part, change = std::move(change)] {
        if (auto* const widget = static_cast<WidgetType*>(part->Widget())) change(*widget);
    });
}

// Any thread: queues a change of the part itself.
template <typename PartType, typename Change>
void ChangePart(const std::shared_ptr<ViewPart>& part, Change change) {
    WindowServer::Queue([part, change = std::move(change)] {
        if (part->Widget() != nullptr) change(static_cast<PartType&>(*part));
    });
}

// Texts of the looper's side, which may be null.
[[nodiscard]] QString ToText(const char* text);
[[nodiscard]] QString ToText(const std::string& text);
// A label that is shown as it stands: "&" would mark a letter.
[[nodiscard]] QString ToLabel(const std::string& label);

// Server's thread: a tip that is in nobody's way, for what is clicked is what lies below it. At
// that place on the screen, for `owner`; until the toolkit thinks that it was read, or for so many
// milliseconds. An empty text hides it.
void ShowPassingTip(QPoint place, const QString& text, QWidget* owner, int milliseconds = -1);

// What a part tells its control: int32 "value", as the user has moved it, and bool "final" when
// that is where it stays. A plain value.
struct ValueChange {
    int32 value = 0;
    bool isFinal = false;

    [[nodiscard]] BMessage ToMessage() const {
        BMessage message(kViewChanged);
        message.AddInt32(kValueField, value);
        message.AddBool(kFinalField, isFinal);
        return message;
    }
    [[nodiscard]] static ValueChange From(const BMessage& message) {
        ValueChange change;
        message.FindInt32(kValueField, &change.value);
        message.FindBool(kFinalField, &change.isFinal);
        return change;
    }

private:
    static constexpr const char* kFinalField = "final";
};
