#include "Displays/Projection/AxisRequester.h"

#include "Displays/Base/Display.h"
#include "Displays/Projection/RequesterButtons.h"
#include "Interface Widgets/AxisBox.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/CommonTexts.h"

AxisRequester::AxisRequester(int32 axis, Display* display)
    : BWindow(BRect{}, display->Texts().Text(kLabelChooseAxis), B_MODAL_WINDOW,
              B_NOT_RESIZABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE),
      display_(display),
      axes_(new AxisBox("axes", display->Texts())) {
    axes_->SetAxis(axis);
    AddRequesterContent(this, axes_, display, kCancel);
    axes_->MakeFocus();
}

bool AxisRequester::QuitRequested() {
    if (!IsHidden()) Hide();
    BMessage answer(kSetAxis);
    if (const int32 axis = axes_->Axis(); axis != 0) answer.AddInt32(kAxisField, axis);
    WindowServer::Deliver(display_, answer);
    return false;
}
