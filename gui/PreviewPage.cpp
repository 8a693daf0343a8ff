#include "PreviewPage.h"

#include <unistd.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QJsonDocument>
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

// Runs apart from the page's own scripts, which are switched off: reports the anchor the user
// presses and keeps the click from navigating. The press is reported at once: on a big page
// the browser is busy for a while after it, before the click arrives. loomcrestHighlight
// outlines the anchors of one line marker through a style sheet of its own, on screen only:
// the anchors themselves are not touched, so changes in place still find them as written.
const QString kClickScript = QStringLiteral(R"js(
function loomcrestAnchor(event) {
    var node = event.target;
    while (node && node.nodeName !== 'A') { node = node.parentNode; }
    return node;
}
document.addEventListener('mousedown', function (event) {
    var node = loomcrestAnchor(event);
    if (!node || event.button !== 0) { return; }
    console.log('loomcrest-click\u001f' + node.href + '\u001f' + node.textContent);
}, true);
document.addEventListener('click', function (event) {
    if (!loomcrestAnchor(event)) { return; }
    event.preventDefault();
    event.stopPropagation();
}, true);
window.loomcrestHighlight = function (number) {
    var sheet = document.getElementById('loomcrest-highlight');
    if (!sheet) {
        sheet = document.createElement('style');
        sheet.id = 'loomcrest-highlight';
        document.documentElement.appendChild(sheet);
    }
    sheet.textContent = number === '' ? '' : 'a[href*="---LINKID:' + number + '---"] {' +
        ' outline: 2px solid #2f74d0; background-color: rgba(47, 116, 208, 0.18); }';
};
)js");

// Changes the loaded page as the text was changed; true when every element was found exactly
// as often as in the text. Elements are compared by their serialisation, which the browser
// makes the same way for the page and for markup parsed here.
const QString kChangeScript = QStringLiteral(R"js(
(function (replacements, style, rows) {
    function parsed(markup) {
        var holder = document.createElement('template');
        holder.innerHTML = markup;
        return holder.content.firstElementChild;
    }
    function occurrences(markup) {
        var element = parsed(markup);
        var anchor = element && (element.nodeName === 'A' ? element : element.querySelector('a'));
        if (!anchor) { return null; }
        var selector = 'a[href="' + CSS.escape(anchor.getAttribute('href') || '') + '"]';
        var found = [];
        document.querySelectorAll(selector).forEach(function (candidate) {
            var node = element.nodeName === 'A' ? candidate : candidate.parentElement;
            if (node && node.outerHTML === element.outerHTML) { found.push(node); }
        });
        return found;
    }
    try {
        for (var i = 0; i < replacements.length; i++) {
            var change = replacements[i];
            var found = occurrences(change[0]);
            if (!found || found.length !== change[2]) { return false; }
            found.forEach(function (node) {
                if (change[1] !== null) { node.outerHTML = change[1]; return; }
                var before = node.previousSibling;
                if (before && before.nodeType === Node.TEXT_NODE &&
                        before.data.endsWith('\n\t\t\t')) {
                    before.data = before.data.slice(0, -4);
                }
                node.remove();
            });
        }
        if (rows !== null) {
            var table = document.querySelector('table');
            if (!table || rows[0] < 1 || table.rows.length !== rows[1]) { return false; }
            var body = table.rows[0].parentNode;
            for (var row = 0; row < rows[0]; row++) {
                Array.from(table.rows[row].cells).forEach(function (cell) {
                    if (cell.getAttribute('width') !== rows[2]) { cell.setAttribute('width', rows[2]); }
                });
            }
            while (table.rows.length > rows[0]) { table.rows[table.rows.length - 1].remove(); }
            body.insertAdjacentHTML('beforeend', rows[3]);
        }
        if (style !== null) {
            var sheets = Array.from(document.querySelectorAll('style')).filter(
                function (sheet) { return sheet.textContent === style[0]; });
            if (sheets.length !== 1) { return false; }
            sheets[0].textContent = style[1];
        }
        // Laid out before answering, so that the answer means the change is on screen.
        void document.documentElement.offsetHeight;
        return true;
    } catch (error) {
        return false;
    }
})(%1, %2, %3)
)js");

}  // namespace

class PreviewPage::SchemeHandler : public QWebEngineUrlSchemeHandler {
public:
    explicit SchemeHandler(PreviewPage& page) : QWebEngineUrlSchemeHandler(&page), page_(page) {}

    void requestStarted(QWebEngineUrlRequestJob* job) override {
        auto* body = new QBuffer(job);
        body->setData(page_.currentHtml());
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
    connect(this, &QWebEnginePage::loadFinished, this, [this](bool ok) {
        loaded_ = ok;
        // A reload replaces the document, and with it the outline.
        highlightLink(highlighted_);
    });
    // A renderer that dies under a change in place (a big page can run it out of memory)
    // takes the page with it: the text is loaded again, but not after a load that died.
    connect(this, &QWebEnginePage::renderProcessTerminated, this,
            [this](RenderProcessTerminationStatus status, int /*exitCode*/) {
                if (status != NormalTerminationStatus && loaded_) {
                    showHtml(currentHtml());
                }
            });
}

PreviewPage::~PreviewPage() {
    alive_.reset();
}

void PreviewPage::highlightLink(const QString& number) {
    // Markers are numbers; anything else highlights nothing.
    static const QRegularExpression digits(QStringLiteral("^[0-9]*$"));
    highlighted_ = digits.match(number).hasMatch() ? number : QString();
    runJavaScript(QStringLiteral("if (window.loomcrestHighlight) loomcrestHighlight('%1');")
                      .arg(highlighted_),
                  QWebEngineScript::ApplicationWorld);
}

const QByteArray& PreviewPage::currentHtml() {
    if (!htmlCurrent_ && currentHtml_) {
        html_ = currentHtml_();
    }
    htmlCurrent_ = true;
    return html_;
}

void PreviewPage::showHtml(const QByteArray& html) {
    html_ = html;
    htmlCurrent_ = true;
    loaded_ = false;
    // A new address each time, so that the page is fetched again.
    load(QUrl(QStringLiteral("loomcrest:preview/%1").arg(++generation_)));
}

void PreviewPage::changeInPlace(const QJsonArray& replacements, const QJsonValue& style,
                                const QJsonValue& rows) {
    htmlCurrent_ = false;
    if (!loaded_) {
        showHtml(currentHtml());
        return;
    }
    const auto json = [](const QJsonValue& value) {
        return value.isArray() ? QString::fromUtf8(
                                     QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact))
                               : QStringLiteral("null");
    };
    const QString script = kChangeScript.arg(json(replacements), json(style), json(rows));
    const quint64 generation = generation_;
    const std::weak_ptr<bool> alive = alive_;
    runJavaScript(script, QWebEngineScript::ApplicationWorld,
                  [this, alive, generation](const QVariant& changed) {
                      if (alive.expired() || generation != generation_) {
                          return;
                      }
                      if (changed.toBool()) {
                          emit changedInPlace();
                      } else {
                          showHtml(currentHtml());
                      }
                  });
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
