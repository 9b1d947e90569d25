// The window server's half of a file panel: the dialog, made when it is first shown. Shared by the
// panel, the dialog and whatever is queued; for the server's thread, except for isShowing.
#pragma once

#include <QFileDialog>
#include <QPointer>
#include <atomic>
#include <memory>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/ViewPart.h"

class FilePanelPart : public std::enable_shared_from_this<FilePanelPart> {
public:
    // `panel` is only named in messages.
    FilePanelPart(bool isSave, bool allowsMultiple, const void* panel)
        : isSave_(isSave), allowsMultiple_(allowsMultiple), panel_(panel) {}

    std::atomic<bool> isShowing{false};

    void Show();
    void Hide();
    void Destroy();
    void SetTarget(const BMessenger& target) { target_ = target; }
    void SetMessage(const BMessage& message) { message_ = message; }
    void SetDirectory(const QString& path);
    void SetSaveText(const QString& name);
    void SetTitle(const QString& title);
    [[nodiscard]] QRect Frame() const;
    void SetFrame(const QRect& frame);

private:
    void Make();
    void Finished(bool isAccepted);
    void EndProposals() const;
    void ForgetName() const;
    void TellOpened(const QStringList& paths) const;
    void TellSaved(const QString& path) const;

    const bool isSave_;
    const bool allowsMultiple_;
    const void* const panel_;
    BMessenger target_;
    BMessage message_;
    QString directory_;
    QString saveText_;
    QString title_;
    QRect frame_;
    QPointer<QFileDialog> dialog_;
};
