#include "Platform/Interface/Handles/BPageView.h"

#include <QImage>
#include <QTextBrowser>
#include <QUrl>
#include <algorithm>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

class Browser : public QTextBrowser {
public:
    Browser() {
        setOpenExternalLinks(true);
        setFrameShape(QFrame::NoFrame);
    }

    QVariant loadResource(int type, const QUrl& name) override {
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource) return resource;
        QImage picture;
        if (!picture.loadFromData(resource.toByteArray())) return resource;
        constexpr int kMargins = 96;  // of the page and of the text in it
        const int widest = std::max(viewport()->width() - kMargins, kMargins);
        if (picture.width() <= widest) return picture;
        return picture.scaledToWidth(widest, Qt::SmoothTransformation);
    }
};

class PagePart : public ViewPart {
protected:
    QWidget* Make() override { return new Browser; }
};

}  // namespace

BPageView::BPageView(const char* name) : BView(name, std::make_shared<PagePart>()) {}

void BPageView::SetFile(const char* path) {
    ChangeWidget<QTextBrowser>(Part(), [url = QUrl::fromLocalFile(ToText(path))](
                                           QTextBrowser& browser) { browser.setSource(url); });
}

void BPageView::SetText(const std::string& text) {
    ChangeWidget<QTextBrowser>(
        Part(), [plain = ToText(text)](QTextBrowser& browser) { browser.setPlainText(plain); });
}
