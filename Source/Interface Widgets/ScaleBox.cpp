#include "Interface Widgets/ScaleBox.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/DisplayWindows.h"

ScaleBox::ScaleBox(const char* name, const InterfaceTexts& texts, const UnitTable* units,
                   const BMessage& unitMenuField)
    : BGroupView(name, B_HORIZONTAL),
      length_(new NumberBox("length", texts.Text(kLabelLength), units, unitMenuField, texts)) {
    references_ = new BPopUpMenu("references");
    for (int32 i = kScreenWidth; i <= kOnePixel; i++)
        references_->AddItem(new BMenuItem(texts.Text(kLabelFirstReference + i - kScreenWidth),
                                           new BMessage(kReferenceChosen)));
    auto* const field = new BMenuField("reference", nullptr, references_);
    field->SetAccessibleName(texts.Text(kLabelReference));
    AddChild(new BStringView("make", texts.Text(kLabelMake)));
    AddChild(field);
    AddChild(new BStringView("be", texts.Text(kLabelBe)));
    AddChild(length_);
}

int32 ScaleBox::GetReference() {
    const BMenuItem* const marked = references_->FindMarked();
    if (marked != nullptr) return references_->IndexOf(marked) + 1;
    SetReference(kWindowWidth);
    return kWindowWidth;
}

void ScaleBox::SetReference(int32 reference) {
    if (BMenuItem* const item = references_->ItemAt(reference - 1); item != nullptr)
        item->SetMarked(true);
}
