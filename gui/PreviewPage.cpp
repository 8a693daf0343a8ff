#include "PreviewPage.h"

#include <unistd.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

namespace loomcrest::gui {

namespace {

const QByteArray kScheme = QByteArrayLiteral("loomcrest");
const QString kClickMarker = QStringLiteral("loomcrest-click");
const QChar kSeparator(0x1f);

// Runs apart from the page's own scripts, which are switched off: reports the anchor the
// user clicked and keeps the click from navigating. loomcrestHighlight outlines the anchors
// of one line marker, on screen only: the page's text is not touched.
const QString kClickScript = QStringLiteral(R"js(
document.addEventListener('click', function (event) {
    var node = event.target;
    while (node && node.nodeName !== 'A') { node = node.parentNode; }
    if (!node) { return; }
    event.preventDefault();
    event.stopPropagation();
    console.log('loomcrest-click\u001f' + node.href + '\u001f' + node.innerText);
}, true);
window.loomcrestHighlight = function (number) {
    var marker = '---LINKID:' + number + '---';
    var anchors = document.getElementsByTagName('a');
    for (var i = 0; i < anchors.length; ++i) {
        var href = anchors[i].getAttribute('href') || '';
        var chosen = number !== '' && href.indexOf(marker) >= 0;
        anchors[i].style.outline = chosen ? '2px solid #2f74d0' : '';
        anchors[i].style.backgroundColor = chosen ? 'rgba(47, 116, 208, 0.18)' : '';
    }
};
)js");

}  // namespace

class PreviewPage::SchemeHandler : public QWebEngineUrlSchemeHandler {
public:
    explicit SchemeHandler(PreviewPage& page) : QWebEngineUrlSchemeHandler(&page), page_(page) {}

    void requestStarted(QWebEngineUrlRequestJob* job) override {
        auto* body = new QBuffer(job);
        body->setData(page_.html_);
        body->open(QIODevice::ReadOnly);
        job->reply(QByteArrayLiteral("text/html;charset=utf-8"), body);
    }

private:
    PreviewPage& page_;
};

// Everything but the preview itself is refused: images, style sheets, frames and scripts of
// other people's sites stay where they are.
class PreviewPage::Interceptor : public QWebEngineUrlRequestInterceptor {
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo& info) override {
        const QString scheme = info.requestUrl().scheme();
        if (scheme != QString::fromLatin1(kScheme) && scheme != QStringLiteral("data")) {
            info.block(true);
        }
    }
};

void prepareWebEngine() {
    PreviewPage::registerScheme();
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    if (geteuid() == 0) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
}

void PreviewPage::registerScheme() {
    QWebEngineUrlScheme scheme(kScheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::LocalScheme);
    QWebEngineUrlScheme::registerScheme(scheme);
}

PreviewPage::PreviewPage(QWebEngineProfile* ownProfile, QObject* parent)
    : QWebEnginePage(ownProfile, parent) {
    ownProfile->installUrlSchemeHandler(kScheme, new SchemeHandler(*this));
    ownProfile->setUrlRequestInterceptor(new Interceptor(ownProfile));
    QWebEngineSettings* config = settings();
    config->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    config->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    config->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, false);
    config->setAttribute(QWebEngineSettings::AutoLoadImages, false);
    config->setAttribute(QWebEngineSettings::PluginsEnabled, false);

    QWebEngineScript clicks;
    clicks.setName(QStringLiteral("loomcrest-clicks"));
    clicks.setSourceCode(kClickScript);
    clicks.setWorldId(QWebEngineScript::ApplicationWorld);
    clicks.setInjectionPoint(QWebEngineScript::DocumentReady);
    clicks.setRunsOnSubFrames(false);
    scripts().insert(clicks);
    // A reload replaces the document, and with it the outline.
    connect(this, &QWebEnginePage::loadFinished, this, [this] { highlightLink(highlighted_); });
}

void PreviewPage::highlightLink(const QString& number) {
    // Markers are numbers; anything else highlights nothing.
    static const QRegularExpression digits(QStringLiteral("^[0-9]*$"));
    highlighted_ = digits.match(number).hasMatch() ? number : QString();
    runJavaScript(QStringLiteral("if (window.loomcrestHighlight) loomcrestHighlight('%1');")
                      .arg(highlighted_),
                  QWebEngineScript::ApplicationWorld);
}

void PreviewPage::showHtml(const QByteArray& html) {
    html_ = html;
    // A new address each time, so that the page is fetched again.
    load(QUrl(QStringLiteral("loomcrest:preview/%1").arg(++generation_)));
}

bool PreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    return isMainFrame && url.scheme() == QString::fromLatin1(kScheme) &&
           type != NavigationTypeLinkClicked;
}

void PreviewPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                           const QString& message, int /*lineNumber*/,
                                           const QString& /*sourceID*/) {
    const QStringList parts = message.split(kSeparator);
    if (parts.size() == 3 && parts[0] == kClickMarker) {
        emit linkClicked(parts[1], parts[2]);
    }
}

}  // namespace loomcrest::gui
