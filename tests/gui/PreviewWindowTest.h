#pragma once

#include <QWebEngineScript>
#include <QWebEngineView>
#include <optional>

#include "HtmlSitemapView.h"
#include "PreviewPage.h"
#include "WindowTest.h"

namespace loomcrest::test {

// The main window with the HTML sitemap view's preview driven as a person drives it: scripts
// read what the page shows, and the mouse clicks where they say.
class PreviewWindowTest : public WindowTest {
protected:
    gui::HtmlSitemapView& html() { return window_->htmlView(); }

    // How long a script in the preview may take to answer; a big site's page is slow.
    int answerTimeout_ = 10000;
    // Runs `script` in the preview beside the click script and waits for its answer.
    QVariant askPreview(const QString& script) {
        std::optional<QVariant> answer;
        html().previewPage()->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                                            [&answer](const QVariant& result) { answer = result; });
        const bool answered =
            QTest::qWaitFor([&answer] { return answer.has_value(); }, answerTimeout_);
        return answered ? *answer : QStringLiteral("no answer");
    }
    // Where a person would click the anchor number `index` of the preview.
    QPoint anchorPoint(int index) {
        const QVariantList xy =
            askPreview(QStringLiteral("(r => [r.left + 3, r.top + r.height / 2])"
                                      "(document.links[%1].getBoundingClientRect())")
                           .arg(index))
                .toList();
        return xy.size() == 2 ? QPoint(xy[0].toInt(), xy[1].toInt()) : QPoint(-1, -1);
    }

    void clickAt(const QPoint& point) {
        QWidget* surface = html().preview()->focusProxy();
        QVERIFY(surface != nullptr);
        QVERIFY(point.x() >= 0);
        QTest::mouseClick(surface, Qt::LeftButton, {}, point);
    }

    void clickAnchor(int index) { clickAt(anchorPoint(index)); }
};

}  // namespace loomcrest::test
