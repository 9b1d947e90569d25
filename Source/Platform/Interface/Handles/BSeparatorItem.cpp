#include "Platform/Interface/Handles/BSeparatorItem.h"

#include "Platform/Application/BMessage.h"

namespace {

const ArchivableClass kClass("BSeparatorItem", BSeparatorItem::Instantiate);

}  // namespace

BSeparatorItem::BSeparatorItem() : BMenuItem(Separator{}) {}

BSeparatorItem::BSeparatorItem(BMessage* archive) : BMenuItem(Separator{}, archive) {}

BArchivable* BSeparatorItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BSeparatorItem") ? new BSeparatorItem(archive)
                                                             : nullptr;
}
