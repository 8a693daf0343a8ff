#include "editors/XMLViewController.h"

#include <array>
#include <chrono>
#include <ctime>

#include "app/ProcessState.h"
#include "editors/XmlEntry.h"
#include "editors/XmlSitemapEntries.h"
#include "platform/FileSystem.h"
#include "platform/HtmlDocument.h"
#include "platform/LargeText.h"
#include "platform/Text.h"
#include "sitemap/SitemapFiles.h"
#include "sites/DataPaths.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

std::string today() {
    const time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", &local);
    return text.data();
}

// The elements of an entry in the order the file holds them; a missing one is left out.
std::string rebuiltEntry(std::string_view entry) {
    std::string rebuilt = "<url>";
    for (const std::string_view tag : {"loc", "lastmod", "changefreq", "priority"}) {
        auto element = xmlentry::element(entry, tag);
        if (!element) {
            continue;
        }
        if (tag == "loc") {
            element = replaceAll(*element, "&amp;", "&");
        }
        rebuilt.append("\n\t\t").append(*element);
    }
    return rebuilt + "\n\t</url>";
}

}  // namespace

XMLViewController::XMLViewController(ProcessState& process, AlertPresenter& alerts,
                                     std::function<std::string()> shownSiteName)
    : process_(process), alerts_(alerts), shownSiteName_(std::move(shownSiteName)) {}

bool XMLViewController::viewTBIAction() {
    if (process_.vrlmpCurSite.empty()) {
        refuse("You need to select a sitemap from the sites list to use the XML sitemap viewer.");
        return false;
    }
    urlXMLFileMArray_.clear();
    createTableContent();
    return true;
}

std::string XMLViewController::sitemapFileLocation() const {
    return siteFolderLocation(shownSiteName_()) + "/" + std::string(kXmlSitemap);
}

void XMLViewController::entryChanged(size_t row) {
    if (row < rebuiltEntries_.size()) {
        rebuiltEntries_[row].reset();
    }
}

void XMLViewController::createTableContent() {
    urlXMLFileMArray_.clear();
    rebuiltEntries_.clear();
    selectedRow_.reset();
    const auto text = readTextFile(sitemapFileLocation());
    if (!text) {
        return;
    }
    if (auto entries = xmlentries::plainEntries(*text)) {
        urlXMLFileMArray_ = *std::move(entries);
    } else {
        const auto document = MarkupDocument::parseXml(*text);
        if (!document) {
            return;
        }
        // The entries stand in the sitemap namespace; "//url" means them whatever their prefix.
        for (const MarkupNode& entry : document->select("//*[local-name()='url']")) {
            urlXMLFileMArray_.push_back(entry.markup());
        }
    }
    rebuiltEntries_.resize(urlXMLFileMArray_.size());
    if (entriesChanged_) {
        entriesChanged_();
    }
}

std::string XMLViewController::objectValueForTableColumn(Column column, size_t row) const {
    if (row >= urlXMLFileMArray_.size()) {
        return {};
    }
    const std::string& entry = urlXMLFileMArray_[row];
    switch (column) {
        case URL:
            return replaceAll(xmlentry::value(entry, "loc").value_or(""), "&amp;", "&");
        case LastUpdated:
            return xmlentry::value(entry, "lastmod").value_or("");
        case ChangeFrequency:
            return xmlentry::value(entry, "changefreq").value_or("");
        case Priority:
            return xmlentry::value(entry, "priority").value_or("");
    }
    return {};
}

void XMLViewController::setObjectValue(std::string_view value, Column column, size_t row) {
    if (row >= urlXMLFileMArray_.size()) {
        return;
    }
    std::string& entry = urlXMLFileMArray_[row];
    switch (column) {
        case URL: {
            if (value.empty()) {
                refuse("The URL field cannot be left blank");
                return;
            }
            const std::string old = xmlentry::value(entry, "loc").value_or("");
            entry = replaceAll(entry, old, value);
            break;
        }
        case LastUpdated:
            if (const auto problem = xmlentry::lastUpdatedProblem(value, today())) {
                refuse(*problem);
                return;
            }
            entry = xmlentry::withElement(entry, "lastmod", value);
            break;
        case ChangeFrequency:
            if (value.empty()) {
                refuse("The Change Frequency field cannot be left blank");
                return;
            }
            entry = xmlentry::withElement(entry, "changefreq", value);
            break;
        case Priority:
            if (value.empty()) {
                refuse("The Link Priority field cannot be left blank");
                return;
            }
            entry = xmlentry::withElement(entry, "priority", value);
            break;
    }
    entryChanged(row);
    updateXMLFile();
}

void XMLViewController::cfMenuChangeUpdates(std::string_view value) {
    if (selectedRow_) {
        replaceElementOfRow(*selectedRow_, "changefreq", value);
    }
}

void XMLViewController::priorityMenuChangeUpdates(std::string_view value) {
    if (selectedRow_) {
        replaceElementOfRow(*selectedRow_, "priority", value);
    }
}

void XMLViewController::replaceElementOfRow(size_t row, std::string_view tag,
                                            std::string_view value) {
    if (row >= urlXMLFileMArray_.size()) {
        return;
    }
    urlXMLFileMArray_[row] = xmlentry::withElement(urlXMLFileMArray_[row], tag, value);
    entryChanged(row);
    updateXMLFile();
}

void XMLViewController::updateXMLFile() {
    rebuiltEntries_.resize(urlXMLFileMArray_.size());
    size_t size = xmlSitemapHeader().size() + std::string_view("\n\t</urlset>").size();
    for (size_t i = 0; i < urlXMLFileMArray_.size(); ++i) {
        if (!rebuiltEntries_[i]) {
            rebuiltEntries_[i] = rebuiltEntry(urlXMLFileMArray_[i]);
        }
        size += rebuiltEntries_[i]->size() + 2;
    }
    std::string text;
    reserveLargeText(text, size);
    text.append(xmlSitemapHeader()).append("\n\t");
    for (size_t i = 0; i < urlXMLFileMArray_.size(); ++i) {
        text += *rebuiltEntries_[i];
        text += i + 1 == urlXMLFileMArray_.size() ? "\n" : "\n\t";
    }
    text += "</urlset>";
    if (!saveXMLFile(text)) {
        // The table shows what the file still holds.
        createTableContent();
        return;
    }
    if (entriesChanged_) {
        entriesChanged_();
    }
}

bool XMLViewController::saveXMLFile(std::string_view text) {
    constexpr std::string_view kNotSaved = "The XML sitemap could not be saved.";
    const auto lock = lockSiteForChange(shownSiteName_(), kNotSaved, alerts_);
    if (!lock) {
        return false;
    }
    const WriteResult written = writeFileAtomically(sitemapFileLocation(), text);
    if (!written) {
        alertWriteFailure(alerts_, kNotSaved, written);
    }
    return written.ok();
}

void XMLViewController::delLinkAction() {
    if (!selectedRow_) {
        return;
    }
    const size_t row = *selectedRow_;
    alerts_.presentAlert(
        Alert::question("Do you really want to delete the selected link?\n"
                        "Deleting links cannot be undone!",
                        "", "Delete Link", "", "Cancel"),
        [this, row](int returnCode) { sheetDidEndShouldDeleteXMLLink(returnCode, row); });
}

void XMLViewController::sheetDidEndShouldDeleteXMLLink(int returnCode, size_t row) {
    if (returnCode != kDefaultButtonCode || row >= urlXMLFileMArray_.size()) {
        return;
    }
    urlXMLFileMArray_.erase(urlXMLFileMArray_.begin() + static_cast<std::ptrdiff_t>(row));
    if (row < rebuiltEntries_.size()) {
        rebuiltEntries_.erase(rebuiltEntries_.begin() + static_cast<std::ptrdiff_t>(row));
    }
    selectedRow_.reset();
    updateXMLFile();
}

void XMLViewController::refuse(std::string message) {
    alerts_.presentAlert(Alert::refusal(std::move(message)), [](int) {});
}

}  // namespace loomcrest
