#!/usr/bin/env python3
"""Writes a synthetic static site of N pages for the scan benchmark.

Pages live in 100 folders; each has about 40 links: its neighbours (so every page is
reachable), pages elsewhere on the site, a few external links and, now and then, a link
to a page that does not exist. robots.txt keeps /private/ out.
"""
import os
import random
import sys


def page_path(index):
    return f"/d{index % 100}/p{index}.html"


def main():
    root, count = sys.argv[1], int(sys.argv[2])
    rng = random.Random(7)
    os.makedirs(os.path.join(root, "private"), exist_ok=True)
    for folder in range(100):
        os.makedirs(os.path.join(root, f"d{folder}"), exist_ok=True)
    with open(os.path.join(root, "robots.txt"), "w") as robots:
        robots.write("User-agent: *\nDisallow: /private/\n")
    with open(os.path.join(root, "private", "p.html"), "w") as private:
        private.write("<html><head><title>Private</title></head><body></body></html>")

    for index in range(count):
        links = [page_path((index + 1) % count), page_path((index + count - 1) % count)]
        links += [page_path(rng.randrange(count)) for _ in range(33)]
        links += [f"https://external{rng.randrange(50)}.example/page{rng.randrange(9)}.html"
                  for _ in range(3)]
        links.append("/private/p.html")
        if index % 10 == 0:
            links.append(f"/missing/m{index}.html")
        anchors = "\n".join(f'<li><a href="{href}">Link {n} of page {index}</a></li>'
                            for n, href in enumerate(links))
        html = (f"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">"
                f"<title>Page {index} &amp; friends</title></head>\n<body><h1>Page {index}</h1>"
                f"<p>{'Some text of the page. ' * 20}</p>\n<ul>\n{anchors}\n</ul></body></html>\n")
        target = os.path.join(root, page_path(index).lstrip("/"))
        with open(target, "w") as out:
            out.write(html)
    with open(os.path.join(root, "index.html"), "w") as index_page:
        index_page.write('<html><head><title>Home</title></head><body>'
                         f'<a href="{page_path(0)}">Start</a></body></html>')


if __name__ == "__main__":
    main()
