#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QListWidget>
#include <QTimer>
#include <csignal>

#include "MainViewControl.h"
#include "PreviewPage.h"
#include "ScanViewWidget.h"
#include "Screenshots.h"

int main(int argc, char** argv) {
    // A write past the file-size limit then fails and is reported like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    loomcrest::gui::prepareWebEngine();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Loomcrest"));
    QApplication::setDesktopFileName(QStringLiteral("loomcrest"));
    QApplication::setApplicationVersion(QStringLiteral(LOOMCREST_VERSION));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("loomcrest"),
                                                 QIcon(QStringLiteral(":/icons/loomcrest.png"))));

    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Loomcrest: sitemaps for the sites you run."));
    options.addHelpOption();
    options.addVersionOption();
    const QCommandLineOption site(QStringLiteral("site"),
                                  QStringLiteral("Select this site at start."),
                                  QStringLiteral("NAME"));
    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QStringLiteral("Save a picture of every view into FOLDER, then quit."),
        QStringLiteral("FOLDER"));
    options.addOption(site);
    options.addOption(screenshots);
    options.process(application);

    loomcrest::gui::MainViewControl window;
    window.show();
    if (options.isSet(site)) {
        const auto items =
            window.scanView().siteTable()->findItems(options.value(site), Qt::MatchExactly);
        if (!items.isEmpty()) {
            window.scanView().siteTable()->setCurrentItem(items.first());
        }
    }
    if (options.isSet(screenshots)) {
        QTimer::singleShot(300, &window, [&window, &options, &screenshots] {
            const bool saved = loomcrest::gui::takeScreenshots(window, options.value(screenshots));
            QCoreApplication::exit(saved ? 0 : 1);
        });
    }
    // Closing the main window ends the application; there is nothing to save.
    return QApplication::exec();
}
