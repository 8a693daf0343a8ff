#pragma once

#include <QByteArray>
#include <QString>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>

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

    // Shows `html`, replacing what was shown.
    void showHtml(const QByteArray& html);
    const QByteArray& shownHtml() const { return html_; }
    // Outlines the anchors of the line with this marker number, here and after every
    // reload; an empty number outlines none.
    void highlightLink(const QString& number);

signals:
    // A click on an anchor: its absolute address and visible label.
    void linkClicked(const QString& address, const QString& label);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int lineNumber, const QString& sourceID) override;

private:
    class SchemeHandler;
    class Interceptor;

    QByteArray html_;
    QString highlighted_;
    quint64 generation_ = 0;
};

}  // namespace loomcrest::gui
