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
// the browser is busy for a while after it, before the click arrives.
// A big page holds hundreds of thousands of anchors, so nothing here walks them per click:
// loomcrestAnchors finds a marker number's anchors in a table made once per load, which
// changes in place keep up to date. loomcrestHighlight marks those anchors alone with an
// attribute that the outline's style sheet picks up, on screen only; loomcrestUnoutlined
// takes the marks off while a change compares anchors with the text as written.
const QString kClickScript = QStringLiteral(R"js(
(function () {
var markerPattern = /---LINKID:(\d+)---/;
var anchorsByNumber = new Map();
var outlinedNumber = '';
var outlined = [];
function markerOf(anchor) {
    var match = markerPattern.exec(anchor.getAttribute('href') || '');
    return match ? match[1] : null;
}
function anchorsIn(node) {
    if (node.nodeType !== Node.ELEMENT_NODE) { return []; }
    var found = Array.from(node.getElementsByTagName('a'));
    if (node.nodeName === 'A') { found.push(node); }
    return found;
}
function file(anchor) {
    var number = markerOf(anchor);
    if (number === null) { return; }
    var list = anchorsByNumber.get(number);
    if (list) { list.push(anchor); } else { anchorsByNumber.set(number, [anchor]); }
}
function unfile(anchor) {
    var list = anchorsByNumber.get(markerOf(anchor));
    var at = list ? list.indexOf(anchor) : -1;
    if (at >= 0) { list.splice(at, 1); }
}
// Filed a slice at a time while the page is idle, so that clicks are not kept waiting; a
// look-up before the end files the rest at once.
var all = document.getElementsByTagName('a');
var filed = 0;
function fileUpTo(end) {
    for (; filed < end; filed++) { file(all[filed]); }
}
function table() {
    if (filed !== null) {
        fileUpTo(all.length);
        filed = null;
    }
    return anchorsByNumber;
}
function fileWhileIdle() {
    if (filed === null) { return; }
    fileUpTo(Math.min(all.length, filed + 20000));
    if (filed < all.length) { setTimeout(fileWhileIdle, 0); } else { filed = null; }
}
window.loomcrestMarkerOf = markerOf;
window.loomcrestAnchors = function (number) {
    return (table().get(number) || []).filter(function (a) { return a.isConnected; });
};
window.loomcrestAdded = function (node) { table(); anchorsIn(node).forEach(file); };
window.loomcrestRemoved = function (node) { table(); anchorsIn(node).forEach(unfile); };
window.loomcrestForgetAnchors = function () {
    anchorsByNumber = new Map();
    filed = 0;
    setTimeout(fileWhileIdle, 0);
};
function unoutline() {
    outlined.forEach(function (anchor) { anchor.removeAttribute('data-loomcrest-outline'); });
    outlined = [];
}
function outline() {
    if (outlinedNumber === '') { return; }
    outlined = loomcrestAnchors(outlinedNumber);
    outlined.forEach(function (anchor) { anchor.setAttribute('data-loomcrest-outline', ''); });
}
window.loomcrestHighlight = function (number) {
    unoutline();
    outlinedNumber = number;
    outline();
};
window.loomcrestUnoutlined = function (change) {
    unoutline();
    try { return change(); } finally { outline(); }
};
function anchorOf(event) {
    var node = event.target;
    while (node && node.nodeName !== 'A') { node = node.parentNode; }
    return node;
}
document.addEventListener('mousedown', function (event) {
    var node = anchorOf(event);
    if (!node || event.button !== 0) { return; }
    console.log('loomcrest-click\u001f' + node.href + '\u001f' + node.textContent);
}, true);
document.addEventListener('click', function (event) {
    if (!anchorOf(event)) { return; }
    event.preventDefault();
    event.stopPropagation();
}, true);
setTimeout(fileWhileIdle, 0);
})();
)js");

// The outline's style sheet, adopted before the page is parsed: one added later would make the
// browser style every element of a big page again.
const QString kOutlineStyleScript = QStringLiteral(R"js(
(function () {
    var sheet = new CSSStyleSheet();
    sheet.replaceSync('a[data-loomcrest-outline] { outline: 2px solid #2f74d0;' +
        ' background-color: rgba(47, 116, 208, 0.18); }');
    document.adoptedStyleSheets = document.adoptedStyleSheets.concat([sheet]);
})();
)js");

// Changes the loaded page as the text was changed; true when every element was found exactly
// as often as in the text. Elements are compared by their serialisation, which the browser
// makes the same way for the page and for markup parsed here; the candidates are the anchors
// with the same marker number, or, for an anchor without one, all anchors.
const QString kChangeScript = QStringLiteral(R"js(
(function (replacements, style, rows) {
    function parsed(markup) {
        var holder = document.createElement('template');
        holder.innerHTML = markup;
        return holder.content.firstElementChild;
    }
    function candidates(anchor) {
        var number = loomcrestMarkerOf(anchor);
        if (number !== null) { return loomcrestAnchors(number); }
        var selector = 'a[href="' + CSS.escape(anchor.getAttribute('href') || '') + '"]';
        return Array.from(document.querySelectorAll(selector));
    }
    function occurrences(markup) {
        var element = parsed(markup);
        var anchor = element && (element.nodeName === 'A' ? element : element.querySelector('a'));
        if (!anchor) { return null; }
        var href = anchor.getAttribute('href');
        var found = [];
        candidates(anchor).forEach(function (candidate) {
            if (candidate.getAttribute('href') !== href) { return; }
            var node = element.nodeName === 'A' ? candidate : candidate.parentElement;
            if (node && node.outerHTML === element.outerHTML) { found.push(node); }
        });
        return found;
    }
    function replace(node, markup) {
        var before = node.previousSibling;
        var parent = node.parentNode;
        node.insertAdjacentHTML('beforebegin', markup);
        for (var added = before ? before.nextSibling : parent.firstChild; added !== node;
                added = added.nextSibling) {
            loomcrestAdded(added);
        }
        loomcrestRemoved(node);
        node.remove();
    }
    function remove(node) {
        var before = node.previousSibling;
        if (before && before.nodeType === Node.TEXT_NODE && before.data.endsWith('\n\t\t\t')) {
            before.data = before.data.slice(0, -4);
        }
        loomcrestRemoved(node);
        node.remove();
    }
    function change() {
        for (var i = 0; i < replacements.length; i++) {
            var found = occurrences(replacements[i][0]);
            if (!found || found.length !== replacements[i][2]) { return false; }
            found.forEach(function (node) {
                if (replacements[i][1] !== null) { replace(node, replacements[i][1]); }
                else { remove(node); }
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
            loomcrestForgetAnchors();
        }
        if (style !== null) {
            var sheets = Array.from(document.querySelectorAll('style')).filter(
                function (sheet) { return sheet.textContent === style[0]; });
            if (sheets.length !== 1) { return false; }
            sheets[0].textContent = style[1];
        }
        return true;
    }
    try {
        if (!loomcrestUnoutlined(change)) { return false; }
        // Laid out before answering, so that the answer means the change is on screen.
        void document.documentElement.offsetHeight;
        return true;
    } catch (error) {
        return false;
    }
})(%1, %2, %3)
)js");

// A layout this big is too much for the browser to lay out as one table after every change:
// the preview, and only the preview, shows its table's rows as boxes of their own, and rows
// off screen are neither styled nor laid out until they are scrolled to. A row's height is
// guessed from the lines per cell until it is first shown; the columns share the width
// equally instead of by their content.
constexpr qsizetype kLargeLayout = qsizetype{1} << 20;
const QString kRowsApartName = QStringLiteral("loomcrest-rows-apart");
const QString kRowsApartScript = QStringLiteral(R"js(
(function () {
    var sheet = new CSSStyleSheet();
    function apart(rowHeight) {
        sheet.replaceSync('table, tbody { display: block; } tbody { padding: 0 2px 2px; }' +
            ' tr { display: flex; column-gap: 2px; margin-top: 2px;' +
            ' content-visibility: auto; contain-intrinsic-size: auto ' + rowHeight + 'px; }' +
            ' td { display: block; flex: 1 1 0; min-width: 0; }');
    }
    apart(800);
    document.adoptedStyleSheets = document.adoptedStyleSheets.concat([sheet]);
    document.addEventListener('DOMContentLoaded', function () {
        var table = document.querySelector('table');
        var line = table && table.querySelector('td div');
        if (!line || table.rows.length < 2) { return; }
        var lines = table.getElementsByTagName('div').length;
        var perCell = lines / table.rows.length / Math.max(1, table.rows[1].cells.length);
        apart(Math.ceil(perCell * line.getBoundingClientRect().height) + 22);
    });
})();
)js");

QWebEngineScript worldScript(const QString& name, const QString& source,
                             QWebEngineScript::InjectionPoint injectionPoint) {
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(injectionPoint);
    script.setRunsOnSubFrames(false);
    return script;
}

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

    scripts().insert(worldScript(QStringLiteral("loomcrest-outline"), kOutlineStyleScript,
                                 QWebEngineScript::DocumentCreation));
    scripts().insert(worldScript(QStringLiteral("loomcrest-clicks"), kClickScript,
                                 QWebEngineScript::DocumentReady));
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

void PreviewPage::keepRowsApart(bool apart) {
    QWebEngineScriptCollection& collection = scripts();
    const QList<QWebEngineScript> present = collection.find(kRowsApartName);
    if (apart && present.isEmpty()) {
        collection.insert(
            worldScript(kRowsApartName, kRowsApartScript, QWebEngineScript::DocumentCreation));
    } else if (!apart) {
        for (const QWebEngineScript& script : present) {
            collection.remove(script);
        }
    }
}

void PreviewPage::showHtml(const QByteArray& html) {
    html_ = html;
    keepRowsApart(html_.size() >= kLargeLayout);
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
