#include "Platform/Interface/Server/FilePanelPart.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Handles/BFilePanel.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/entry_ref.h"

namespace {

// The question whether to write over a file, or the menu of a file; null: neither is there. One
// that was answered just now is hidden, and there all the same.
QWidget* Awaited(const QFileDialog& dialog) {
    if (auto* const question = dialog.findChild<QMessageBox*>(); question != nullptr)
        return question;
    for (const QAbstractItemView* const files : dialog.findChildren<QAbstractItemView*>())
        if (auto* const menu = files->findChild<QMenu*>(); menu != nullptr) return menu;
    return nullptr;
}

}  // namespace

void FilePanelPart::Make() {
    dialog_ = new QFileDialog;
    QObject::connect(dialog_, &QObject::destroyed, [part = shared_from_this()] {});
    dialog_->setAcceptMode(isSave_ ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog_->setFileMode(isSave_           ? QFileDialog::AnyFile
                         : allowsMultiple_ ? QFileDialog::ExistingFiles
                                           : QFileDialog::ExistingFile);
    if (!title_.isEmpty()) dialog_->setWindowTitle(title_);
    QObject::connect(dialog_, &QDialog::finished, dialog_,
                     [this](int result) { Finished(result == QDialog::Accepted); });
}

void FilePanelPart::Show() {
    if (dialog_ == nullptr) Make();
    if (!dialog_->isVisible()) {
        if (!directory_.isEmpty()) dialog_->setDirectory(directory_);
        if (isSave_)
            dialog_->selectFile(saveText_);
        else
            ForgetName();
        if (frame_.isValid()) dialog_->setGeometry(frame_);
        dialog_->show();
    }
    dialog_->raise();
    dialog_->activateWindow();
}

void FilePanelPart::Hide() {
    if (dialog_ == nullptr || !dialog_->isVisible()) return;
    const QSignalBlocker blocker(dialog_.data());  // nobody has chosen or cancelled
    dialog_->hide();
    EndProposals();
}

// What the toolkit proposes for a name that is half typed may come late. It would stay, and have
// the keyboard.
void FilePanelPart::EndProposals() const {
    for (const QLineEdit* const line : dialog_->findChildren<QLineEdit*>()) {
        QCompleter* const completer = line->completer();
        if (completer == nullptr) continue;
        completer->setCompletionPrefix({});
        completer->popup()->hide();
    }
}

// What was half typed, or opened, the last time.
void FilePanelPart::ForgetName() const {
    for (QLineEdit* const line : dialog_->findChildren<QLineEdit*>())
        line->clear();
    for (const QAbstractItemView* const files : dialog_->findChildren<QAbstractItemView*>())
        if (files->selectionModel() != nullptr) files->selectionModel()->clearSelection();
}

// What the dialog waits for itself lives on its stack: that must have returned first.
void FilePanelPart::Destroy() {
    target_ = {};
    if (dialog_ == nullptr) return;
    dialog_->hide();
    if (QWidget* const inner = Awaited(*dialog_); inner != nullptr) {
        QObject::connect(inner, &QObject::destroyed, dialog_, &QObject::deleteLater);
        inner->close();
    } else {
        dialog_->deleteLater();
    }
}

void FilePanelPart::SetDirectory(const QString& path) {
    directory_ = path;
    if (dialog_ != nullptr && !path.isEmpty()) dialog_->setDirectory(path);
}

void FilePanelPart::SetSaveText(const QString& name) {
    saveText_ = name;
    if (dialog_ != nullptr && isSave_) dialog_->selectFile(name);
}

void FilePanelPart::SetTitle(const QString& title) {
    title_ = title;
    if (dialog_ != nullptr) dialog_->setWindowTitle(title);
}

QRect FilePanelPart::Frame() const {
    return dialog_ == nullptr ? frame_ : dialog_->geometry();
}

void FilePanelPart::SetFrame(const QRect& frame) {
    frame_ = frame;
    if (dialog_ != nullptr && frame.isValid()) dialog_->setGeometry(frame);
}

void FilePanelPart::Finished(bool isAccepted) {
    isShowing = false;
    EndProposals();
    frame_ = dialog_->geometry();
    directory_ = dialog_->directory().absolutePath();
    const QStringList paths = dialog_->selectedFiles();
    if (isAccepted && !paths.isEmpty()) {
        if (isSave_)
            TellSaved(paths.front());
        else
            TellOpened(paths);
        return;
    }
    BMessage message(B_CANCEL);
    message.AddInt32(BFilePanel::kCancelledField, static_cast<int32>(message_.what));
    message.AddPointer(kSourceField, panel_);
    WindowServer::Deliver(target_, message);
}

void FilePanelPart::TellOpened(const QStringList& paths) const {
    BMessage message(message_);
    for (const QString& path : paths) {
        entry_ref ref;
        if (get_ref_for_path(path.toUtf8().constData(), &ref) == B_OK)
            message.AddRef(kRefsField, &ref);
    }
    message.AddPointer(kSourceField, panel_);
    WindowServer::Deliver(target_, message);
}

void FilePanelPart::TellSaved(const QString& path) const {
    const QFileInfo file(path);
    SaveChoice choice;
    if (get_ref_for_path(file.absolutePath().toUtf8().constData(), &choice.directory) != B_OK)
        return;
    choice.name = file.fileName().toStdString();
    BMessage message(message_);
    choice.AddTo(&message);
    message.AddPointer(kSourceField, panel_);
    WindowServer::Deliver(target_, message);
}
