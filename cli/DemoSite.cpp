#include "DemoSite.h"

#include <array>
#include <string_view>

namespace loomcrest::cli {

namespace {

constexpr std::string_view kNavigation =
    R"(<ul class="nav"><li><a href="/">Home</a></li><li><a href="/about.html">About us</a></li>)"
    R"(<li><a href="/products/">Products</a></li><li><a href="/blog/">Blog</a></li>)"
    R"(<li><a href="/team/">Team</a></li><li><a href="/contact.html">Contact</a></li></ul>)";

constexpr std::array<std::string_view, 8> kProducts = {
    "Copper kettle", "Oak shelf", "Wool blanket",  "Linen apron",
    "Stone mortar",  "Glass jar", "Cast-iron pan", "Willow basket"};
constexpr std::array<std::string_view, 4> kTeam = {"Ada", "Bram", "Carys", "Dov"};
constexpr int kBlogPosts = 10;

std::string page(std::string_view title, std::string_view content) {
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + std::string(title) +
           "</title></head>\n<body>\n" + std::string(kNavigation) + "\n" + std::string(content) +
           "\n</body></html>\n";
}

DemoResource html(std::string_view title, std::string_view content) {
    return {"text/html; charset=utf-8", page(title, content)};
}

void addProducts(std::map<std::string, DemoResource>& site) {
    std::string list = "<h1>Products</h1><ul>";
    for (size_t i = 0; i < kProducts.size(); ++i) {
        const std::string path = "/products/item" + std::to_string(i + 1) + ".html";
        list += "<li><a href=\"item" + std::to_string(i + 1) + ".html\">" +
                std::string(kProducts[i]) + "</a></li>";
        site[path] = html(kProducts[i], "<h1>" + std::string(kProducts[i]) +
                                            "</h1><p><a href=\"./\">All products</a> &middot; "
                                            "<a href=\"../contact.html\">Ask about it</a></p>");
    }
    site["/products/"] = html("Products & Prices", list + "</ul>");
}

void addBlog(std::map<std::string, DemoResource>& site) {
    std::string list = "<h1>Blog</h1><ul>";
    for (int i = 1; i <= kBlogPosts; ++i) {
        const std::string name = "post-" + std::to_string(i) + ".html";
        list += "<li><a href=\"2024/" + name + "\">Post number " + std::to_string(i) + "</a></li>";
        std::string content = "<h1>Post " + std::to_string(i) + "</h1>";
        if (i > 1) {
            content += "<a href=\"post-" + std::to_string(i - 1) + ".html\">Older post</a> ";
        }
        if (i < kBlogPosts) {
            content += "<a href=\"post-" + std::to_string(i + 1) + ".html\">Newer post</a>";
        }
        site["/blog/2024/" + name] = html("Post " + std::to_string(i), content);
    }
    site["/blog/"] = html("Blog", list + "</ul>");
}

void addTeam(std::map<std::string, DemoResource>& site) {
    std::string list = "<h1>Team</h1><ul>";
    for (const std::string_view member : kTeam) {
        const std::string name(member);
        list += "<li><a href=\"" + name + ".html\">" + name + "</a></li>";
        site["/team/" + name + ".html"] =
            html(name + " - Team", "<h1>" + name + "</h1><a href=\"mailto:" + name +
                                       "@demo.invalid\">Write to " + name + "</a>");
    }
    site["/team/"] = html("Team", list + "</ul>");
}

}  // namespace

std::map<std::string, DemoResource> demoSite() {
    std::map<std::string, DemoResource> site;
    site["/"] = html(
        "Demo Shop",
        "<h1>Welcome</h1>"
        "<p><a href=\"gallery/\"><img src=\"/logo.png\" alt=\"Our gallery\"></a></p>"
        "<p><a href=\"news.php?id=1\">Latest news</a> <a href=\"news.php?id=2\">Older news</a></p>"
        "<p><a href=\"files/brochure.pdf\">Brochure (PDF)</a> "
        "<a href=\"spring-sale.html\">Spring sale</a> "
        "<a href=\"private/stock.html\">Stock list</a> "
        "<a href=\"https://www.example.org/partners\">Our partners</a></p>");
    site["/about.html"] = html("About us", "<h1>About us</h1><p>Since 1999.</p>");
    site["/contact.html"] = html("Contact", "<h1>Contact</h1><a href=\"#form\">Form</a>");
    site["/news.php?id=1"] = html("News 1", "<h1>Latest news</h1>");
    site["/news.php?id=2"] = html("News 2", "<h1>Older news</h1>");
    site["/gallery/"] = html("Gallery", "<h1>Gallery</h1><a href=\"../\">Back home</a>");
    site["/private/stock.html"] = html("Stock", "<h1>Not for robots</h1>");
    site["/files/brochure.pdf"] = {"application/pdf", "%PDF-1.4\n%demo\n"};
    site["/robots.txt"] = {"text/plain", "User-agent: *\nDisallow: /private/\n"};
    addProducts(site);
    addBlog(site);
    addTeam(site);
    return site;
}

}  // namespace loomcrest::cli
