#include "Platform/Interface/Handles/BBox.h"

#include <QGroupBox>
#include <QVBoxLayout>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class BoxPart : public ViewPart {
public:
    explicit BoxPart(std::string label) : label_(std::move(label)) {}

protected:
    QWidget* Make() override {
        auto* const box = new QGroupBox(ToLabel(label_));
        new QVBoxLayout(box);
        return box;
    }

private:
    const std::string label_;
};

}  // namespace

BBox::BBox(const char* name, const char* label)
    : BView(name, std::make_shared<BoxPart>(label == nullptr ? "" : label)),
      label_(label == nullptr ? "" : label) {}

void BBox::SetLabel(const char* label) {
    label_ = label == nullptr ? "" : label;
    ChangeWidget<QGroupBox>(Part(),
                            [text = ToLabel(label_)](QGroupBox& box) { box.setTitle(text); });
}
