#include "export/BrokenLinksReport.h"

namespace loomcrest {

std::string brokenLinksHtml(const std::vector<std::string>& urls) {
    std::string page =
        "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\"\n"
        "\t\"http://www.w3.org/TR/html4/strict.dtd\">\n"
        "\t<html lang=\"en\">\n"
        "<head>\n"
        "\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\n"
        "\t<title>Broken Links Export</title>\n"
        "</head>\n"
        "<body>";
    for (const std::string& url : urls) {
        page.append("\n\t<p><a href=\"").append(url).append("\">").append(url).append("</a></p>");
    }
    return page + "\n</body>\n</html>\n";
}

std::string brokenLinksText(const std::vector<std::string>& urls) {
    std::string text;
    for (const std::string& url : urls) {
        text.append(url).append("\n");
    }
    return text + "\n";
}

}  // namespace loomcrest
