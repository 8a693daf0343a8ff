#include "sitemap/PreviousSitemaps.h"

#include <array>
#include <vector>

#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/SitemapFiles.h"

namespace loomcrest {

namespace {

struct SitemapFile {
    std::string_view name;
    std::string_view closingTag;
};

constexpr std::array<SitemapFile, 7> kSitemapFiles = {{
    {kOneColumnPagesOnly, "</html>"},
    {kTwoColumnPagesOnly, "</html>"},
    {kThreeColumnPagesOnly, "</html>"},
    {kOneColumnAllLinks, "</html>"},
    {kTwoColumnAllLinks, "</html>"},
    {kThreeColumnAllLinks, "</html>"},
    {kXmlSitemap, "</urlset>"},
}};

// The broken-links list and its details, which a scan keeps in place until its end.
constexpr std::array<std::string_view, 2> kBrokenLinkLists = {kBrokenLinksFile,
                                                              kBrokenLinkDetailsFile};

std::string inFolder(const std::string& folder, std::string_view name) {
    return folder + "/" + std::string(name);
}

std::string previousOf(const std::string& folder, std::string_view name) {
    return inFolder(folder, name) + std::string(kPreviousSuffix);
}

// The broken-links list belongs to the set but is not always there; a missing one is
// carried over as missing.
WriteResult moveBrokenLinksList(const std::string& from, const std::string& to) {
    if (!pathExists(from)) {
        return removeFile(to);
    }
    // Two names of one file (see keepBrokenLinksList): a rename between them does nothing.
    WriteResult moved = movePath(from, to);
    return moved ? removeFile(from) : moved;
}

// Unlike the sitemap files the list stays in place while a scan runs: a scan empties an
// existing list and never creates a missing one. A second name for the same file keeps
// the old contents once the scan replaces it, and needs no room on the disk.
WriteResult keepBrokenLinksList(const std::string& current, const std::string& previous) {
    if (WriteResult removed = removeFile(previous); !removed || !pathExists(current)) {
        return removed;
    }
    return linkPath(current, previous);
}

}  // namespace

bool sitemapsComplete(const std::string& folder) {
    for (const SitemapFile& file : kSitemapFiles) {
        if (!fileEndsWith(inFolder(folder, file.name), file.closingTag)) {
            return false;
        }
    }
    return true;
}

bool hasPreviousSitemaps(const std::string& folder) {
    if (!pathExists(inFolder(folder, kPreviousStatisticsFile))) {
        return false;
    }
    for (const SitemapFile& file : kSitemapFiles) {
        if (!pathExists(previousOf(folder, file.name))) {
            return false;
        }
    }
    return true;
}

std::optional<std::string> previousStatistics(const std::string& folder) {
    if (!hasPreviousSitemaps(folder)) {
        return std::nullopt;
    }
    return readTextFile(inFolder(folder, kPreviousStatisticsFile));
}

WriteResult keepPreviousSitemaps(const std::string& folder, std::string_view statistics) {
    if (!sitemapsComplete(folder)) {
        return {};
    }
    // The one write that needs room on the disk comes first, while nothing has moved.
    const std::string statisticsPath = inFolder(folder, kPreviousStatisticsFile);
    if (WriteResult written = writeFileAtomically(statisticsPath, statistics); !written) {
        return written;
    }
    std::vector<std::string_view> moved;
    WriteResult result;
    for (const SitemapFile& file : kSitemapFiles) {
        result = movePath(inFolder(folder, file.name), previousOf(folder, file.name));
        if (!result) {
            break;
        }
        moved.push_back(file.name);
    }
    for (const std::string_view list : kBrokenLinkLists) {
        if (result) {
            result = keepBrokenLinksList(inFolder(folder, list), previousOf(folder, list));
        }
    }
    if (!result) {
        // The current files go back where they were; the previous set they replaced is
        // incomplete now, so it is given up.
        for (const std::string_view name : moved) {
            (void)movePath(previousOf(folder, name), inFolder(folder, name));
        }
        (void)removeFile(statisticsPath);
    }
    return result;
}

WriteResult putBackPreviousSitemaps(const std::string& folder) {
    for (const SitemapFile& file : kSitemapFiles) {
        if (WriteResult moved =
                movePath(previousOf(folder, file.name), inFolder(folder, file.name));
            !moved) {
            return moved;
        }
    }
    for (const std::string_view list : kBrokenLinkLists) {
        if (WriteResult moved =
                moveBrokenLinksList(previousOf(folder, list), inFolder(folder, list));
            !moved) {
            return moved;
        }
    }
    return removeFile(inFolder(folder, kPreviousStatisticsFile));
}

WriteResult discardUnfinishedSitemaps(const std::string& folder) {
    if (hasPreviousSitemaps(folder)) {
        return putBackPreviousSitemaps(folder);
    }
    WriteResult result;
    for (const SitemapFile& file : kSitemapFiles) {
        if (WriteResult removed = removeFile(inFolder(folder, file.name)); !removed && result) {
            result = removed;
        }
    }
    return result;
}

}  // namespace loomcrest
