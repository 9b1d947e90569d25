#include "BMenuBar.h"

#include <QMenuBar>

#include "ViewPart.h"

namespace {

class MenuBarPart : public ViewPart {
protected:
    QWidget* Make() override { return new QMenuBar; }
};

}  // namespace

BMenuBar::BMenuBar(const char* name) : BMenu(name, std::make_shared<MenuBarPart>()) {}
