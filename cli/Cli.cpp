#include "Cli.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "DemoCommand.h"
#include "ExportCommand.h"
#include "FilterCommands.h"
#include "HtmlCommands.h"
#include "ScanCommand.h"
#include "SiteCommands.h"
#include "XmlCommands.h"

namespace loomcrest::cli {

int runLoomcrest(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app{"Loomcrest: sitemaps for the sites you run.", "loomcrest"};
    app.set_version_flag("--version", std::string{"loomcrest "} + LOOMCREST_VERSION);
    app.require_subcommand(1);
    std::function<int()> command;

    std::string name;
    std::string url;
    app.add_subcommand("sites",
                       "List the sites: name, start URL, pages found, total links, "
                       "pages used")
        ->callback([&] { command = [&] { return listSites(out, err); }; });

    auto* add = app.add_subcommand("add", "Add a site");
    add->add_option("NAME", name, "Site name")->required();
    add->add_option("URL", url, "Start URL")->required();
    add->callback([&] { command = [&] { return addSite(name, url, err); }; });

    EditRequest edit;
    auto* editCommand =
        app.add_subcommand("edit", "Edit or rename a site; fields not given keep their values");
    editCommand->add_option("NAME", edit.name, "Site name")->required();
    editCommand->add_option("--name", edit.newName, "New site name");
    editCommand->add_option("--url", edit.newURL, "New start URL");
    editCommand->callback([&] { command = [&] { return editSite(edit, err); }; });

    auto* remove = app.add_subcommand("delete", "Delete a site and its folder");
    remove->add_option("NAME", name, "Site name")->required();
    remove->callback([&] { command = [&] { return deleteSite(name, err); }; });

    auto* show = app.add_subcommand("show", "Select a site and print its details");
    show->add_option("NAME", name, "Site name")->required();
    show->callback([&] { command = [&] { return showSite(name, out, err); }; });

    std::string robotsChoice;
    auto* robots = app.add_subcommand("robots", "Ignore or obey the site's robots.txt rules");
    robots->add_option("NAME", name, "Site name")->required();
    robots->add_option("RULES", robotsChoice, "ignore or obey")
        ->required()
        ->check(CLI::IsMember({"ignore", "obey"}));
    robots->callback(
        [&] { command = [&] { return setIgnoreRobots(name, robotsChoice == "ignore", err); }; });

    std::string onWarning;
    auto* scan = app.add_subcommand("scan", "Scan a site into its sitemaps");
    scan->add_option("NAME", name, "Site name")->required();
    scan->add_option("--on-warning", onWarning,
                     "Answer to the warning about URLs with several \"?\" (default: continue; "
                     "asked on a terminal)")
        ->check(CLI::IsMember({"continue", "cancel"}));
    scan->callback([&] {
        command = [&] {
            WarningAnswer answer = WarningAnswer::AskOnTerminal;
            if (onWarning == "continue") {
                answer = WarningAnswer::Continue;
            } else if (onWarning == "cancel") {
                answer = WarningAnswer::Cancel;
            }
            return scanSite(name, answer, out, err);
        };
    });

    app.add_subcommand("demo", "Serve the bundled demo site on 127.0.0.1 and scan it as \"Demo\"")
        ->callback([&] { command = [&] { return runDemo(out, err); }; });

    std::vector<std::string> xmlArguments;
    auto* xml = app.add_subcommand(
        "xml",
        "List a scanned site's XML sitemap entries, change one (set ROW FIELD VALUE) or "
        "delete one (delete ROW)");
    xml->add_option("NAME", name, "Site name")->required();
    xml->add_option("ACTION", xmlArguments,
                    "set ROW loc|lastmod|changefreq|priority VALUE, or "
                    "delete ROW (rows from 1)");
    xml->callback([&] { command = [&] { return runXmlCommand(name, xmlArguments, out, err); }; });

    HtmlRequest htmlRequest;
    auto* html = app.add_subcommand(
        "html", "Work on one HTML sitemap layout: lines, style, edit LINE, delete LINE, preview");
    html->add_option("NAME", htmlRequest.name, "Site name")->required();
    html->add_option("LAYOUT", htmlRequest.layout, "3c, 2c, 1c, 3cpo, 2cpo or 1cpo")->required();
    html->add_option("ACTION", htmlRequest.arguments,
                     "lines | style | edit LINE | delete LINE | preview (lines from 1)")
        ->required();
    for (const auto& [prefix, options] :
         {std::pair<std::string, StyleOptions*>{"pt", &htmlRequest.pageTitles},
          std::pair<std::string, StyleOptions*>{"pl", &htmlRequest.pageLinks}}) {
        const std::string group = prefix == "pt" ? "page titles" : "page links";
        html->add_option("--" + prefix + "-face", options->face, "Font face of " + group);
        html->add_option("--" + prefix + "-size", options->size, "Font size of " + group);
        html->add_option("--" + prefix + "-bold", options->bold, "on or off")
            ->check(CLI::IsMember({"on", "off"}));
        html->add_option("--" + prefix + "-italic", options->italic, "on or off")
            ->check(CLI::IsMember({"on", "off"}));
        html->add_option("--" + prefix + "-underline", options->underline, "hover, none or always")
            ->check(CLI::IsMember({"hover", "none", "always"}));
        html->add_option("--" + prefix + "-colour", options->colour,
                         "Hex colour, as typed into the colour field");
    }
    html->add_option("--title", htmlRequest.title, "New title of the line (edit)");
    html->add_option("--link", htmlRequest.link, "New address of the line (edit)");
    html->callback([&] { command = [&] { return runHtmlCommand(htmlRequest, out, err); }; });

    std::string exportLayout;
    std::string exportFile;
    auto* exporting = app.add_subcommand(
        "export", "Export a layout without its markers, the XML sitemap or the broken links");
    exporting->add_option("NAME", name, "Site name")->required();
    exporting
        ->add_option("LAYOUT", exportLayout,
                     "3c, 2c, 1c, 3cpo, 2cpo, 1cpo, xml, broken-html or broken-txt")
        ->required();
    exporting->add_option("FILE", exportFile, "The file to write")->required();
    exporting->callback(
        [&] { command = [&] { return exportSitemap(name, exportLayout, exportFile, err); }; });

    std::vector<std::string> filterArguments;
    auto* filters = app.add_subcommand(
        "filters", "List a site's filters, add one (add TEXT) or delete some (delete ROW...)");
    filters->add_option("NAME", name, "Site name")->required();
    filters->add_option("ACTION", filterArguments, "add TEXT, or delete ROW... (rows from 1)");
    filters->callback(
        [&] { command = [&] { return runFilterCommand(name, filterArguments, out, err); }; });

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error, out, err);
        return status == static_cast<int>(CLI::ExitCodes::Success) ? kExitSuccess : kExitUsage;
    }
    return command ? command() : kExitUsage;
}

}  // namespace loomcrest::cli
