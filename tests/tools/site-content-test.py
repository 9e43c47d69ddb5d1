#!/usr/bin/env python3
"""The catalog site of a small installation with hostile board texts, read
back: a page for every board, every link leading to a file that is there,
the links between user and hidden boards and from a connector to the cards
that fit it, safe page names, and no text of a board file that became markup.

    site-content-test.py BOARDTOOL TEST_DATA OUTDIR
"""
import html.parser
import json
import os
import re
import shutil
import subprocess
import sys
import urllib.parse

tool, data, out = sys.argv[1:4]
load = ["--data-dir", os.path.join(data, "site_install"), "--repo", os.path.join(data, "site_user")]
failures = []


def check(condition, what):
    if not condition:
        failures.append(what)


class Page(html.parser.HTMLParser):
    """Every element with its attributes, and the text under each id'd
    section and each h1."""

    def __init__(self, path):
        super().__init__(convert_charrefs=True)
        self.path = path
        self.elements = []  # (tag, attrs)
        self.h1 = ""
        self._in_h1 = False
        self.svg_roots = 0
        self._svg_depth = 0
        with open(path, encoding="utf-8") as f:
            self.feed(f.read())

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, dict(attrs)))
        if tag == "svg":
            self.svg_roots += self._svg_depth == 0
            self._svg_depth += 1
        self._in_h1 = tag == "h1"

    def handle_endtag(self, tag):
        if tag == "svg":
            self._svg_depth -= 1
        if tag == "h1":
            self._in_h1 = False

    def handle_data(self, text):
        if self._in_h1:
            self.h1 += text

    def links(self):
        return [a.get("href") for t, a in self.elements if t == "a" and a.get("href")]


shutil.rmtree(out, ignore_errors=True)
run = subprocess.run([tool, "site", *load, out], capture_output=True, text=True)
check(run.returncode == 0, "site failed: %d %s" % (run.returncode, run.stderr))
catalog = json.loads(subprocess.run([tool, "catalog", "--json", *load], capture_output=True,
                                    text=True, check=True).stdout)

pages_dir = os.path.join(out, "boards")
page_files = sorted(os.listdir(pages_dir))
for name in page_files:
    check(re.fullmatch(r"[A-Za-z0-9_-][A-Za-z0-9_.-]*\.html", name) and ".." not in name,
          "unsafe page name %r" % name)
check(len({n.lower() for n in page_files}) == len(page_files), "page names clash in case")
# One page per board of the catalog, and one per installed board that a user
# board hides.
hidden = [b for b in catalog if b["hides"]]
check(len(page_files) == len(catalog) + len(hidden),
      "%d pages for %d boards and %d hidden" % (len(page_files), len(catalog), len(hidden)))

pages = {"index.html": Page(os.path.join(out, "index.html"))}
for name in page_files:
    pages["boards/" + name] = Page(os.path.join(pages_dir, name))

by_h1 = {}
for rel, page in pages.items():
    base = os.path.dirname(os.path.join(out, rel))
    for tag, attrs in page.elements:
        # Nothing from a board file may become an element that runs code or
        # loads something: the only script is the site's own, every handler
        # attribute is absent, and no image is there outside the diagram.
        check(tag != "script" or attrs.get("src", "").endswith("site.js"),
              "%s: a script element %r" % (rel, attrs))
        check(tag != "img", "%s: an img element %r" % (rel, attrs))
        check(not any(k.startswith("on") for k in attrs), "%s: a handler in %r" % (rel, attrs))
        for key in ("href", "src"):
            target = attrs.get(key)
            if not target or target.startswith("#"):
                continue
            scheme = urllib.parse.urlparse(target).scheme
            if scheme:
                check(scheme in ("http", "https"), "%s: a link to %r" % (rel, target))
                continue
            path = os.path.join(base, urllib.parse.unquote(target.split("#")[0]))
            check(os.path.isfile(path), "%s: %s %r leads to no file" % (rel, key, target))
    if rel != "index.html":
        check(page.svg_roots == 1, "%s: %d diagrams" % (rel, page.svg_roots))
        by_h1.setdefault(page.h1, []).append(rel)

index_links = sorted(h for h in pages["index.html"].links() if h.startswith("boards/"))
check(index_links == sorted("boards/" + n for n in page_files), "the index does not list every page")

# The hostile names are there, as text.
check("<script>alert(4)</script>" in by_h1, "the card's display name is not shown as text")
check('Carrier "><img src=x onerror=alert(1)>' in by_h1, "the carrier's name is not shown as text")

# The user carrier and the installed one it hides link to each other; the
# carrier's PMOD links to the card that fits it, and the card back to it.
user = by_h1.get("Carrier, user copy", [None])[0]
installed = by_h1.get('Carrier "><img src=x onerror=alert(1)>', [None])[0]
card = by_h1.get("<script>alert(4)</script>", [None])[0]
if user and installed and card:
    check(os.path.basename(installed) in pages[user].links(), "user board: no link to the hidden one")
    check(os.path.basename(user) in pages[installed].links(), "hidden board: no link to the user one")
    check(os.path.basename(card) in pages[user].links(), "user carrier: no link to the fitting card")
    check(os.path.basename(user) in pages[card].links(), "card: no link to the carrier it fits")

for failure in failures:
    print("FAILED:", failure)
if not failures:
    print("site of %d pages as expected" % len(pages))
sys.exit(1 if failures else 0)
