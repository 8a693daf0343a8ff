#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QString>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>
#include <functional>
#include <memory>

class QWebEngineProfile;

namespace loomcrest::gui {

// What the embedded web view needs before the application object is made: the preview's
// URL scheme, shared OpenGL contexts, and no Chromium sandbox when running as root, where
// Chromium refuses to start with one.
void prepareWebEngine();

// The sitemap preview's page. It shows text held in memory through the application's own
// "loomcrest" scheme (so that its size is not limited), runs none of the page's scripts,
// loads nothing from the network, and never follows a link: an injected script in an
// isolated world reports each click on an anchor instead.
class PreviewPage : public QWebEnginePage {
    Q_OBJECT
public:
    // Must run before the application object exists.
    static void registerScheme();

    // `profile` is the page's own and must outlive it.
    PreviewPage(QWebEngineProfile* profile, QObject* parent);

    ~PreviewPage() override;

    // Shows `html`, replacing what was shown.
    void showHtml(const QByteArray& html);
    // The text of the last load; changes in place since then are not in it.
    const QByteArray& shownHtml() const { return html_; }
    // Gives the text the page shows now, when the page has to be loaded again after changes
    // in place; copying a big text after every change would cost more than the change.
    void setCurrentHtml(std::function<QByteArray()> currentHtml) {
        currentHtml_ = std::move(currentHtml);
    }
    // The text changed through `replacements` (each [before, after or null, count]: elements
    // written as the text holds them), then, where they are not null, `rows` ([rows kept,
    // rows before, width of the kept rows' cells, markup of the rows after them]) and `style`
    // ([old text of the style element, new text]). The loaded page is changed in place; when
    // that cannot be done exactly, the current text is loaded.
    void changeInPlace(const QJsonArray& replacements, const QJsonValue& style,
                       const QJsonValue& rows);
    // Outlines the anchors of the line with this marker number, here and after every
    // reload; an empty number outlines none.
    void highlightLink(const QString& number);

signals:
    // A click on an anchor: its absolute address and the text it shows.
    void linkClicked(const QString& address, const QString& label);
    // The page was changed in place by changeInPlace.
    void changedInPlace();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int lineNumber, const QString& sourceID) override;

private:
    class SchemeHandler;
    const QByteArray& currentHtml();
    // Whether the next loads lay the table's rows out apart (see kRowsApartScript).
    void keepRowsApart(bool apart);
    class Interceptor;

    QByteArray html_;
    // Whether html_ still holds what the page shows; changes in place leave it behind.
    bool htmlCurrent_ = true;
    std::function<QByteArray()> currentHtml_;
    QString highlighted_;
    quint64 generation_ = 0;
    // Whether the last load finished, so that the page can be changed in place.
    bool loaded_ = false;
    // Answers from scripts that arrive while the page is destroyed are dropped.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace loomcrest::gui
