#!/usr/bin/env python3
"""The catalog site of the embedded installation in headless Chromium, driven
over the WebDriver protocol through chromedriver: the search box filters the
list as one types, a column heading sorts it, a link leads to a board's page, and its diagram is shown.
Screenshots of both pages are saved beside the site. Exits with 77 (skipped)
where chromium or chromedriver is not installed.

    site-browser-test.py BOARDTOOL OUTDIR
"""
import base64
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import time
import urllib.error
import urllib.request

SKIP = 77
CHROMIUM = shutil.which("chromium") or "/usr/bin/chromium"
DRIVER = shutil.which("chromedriver") or "/usr/bin/chromedriver"
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the key of an element reference

tool, out = sys.argv[1:3]
for program in (CHROMIUM, DRIVER):
    if not os.access(program, os.X_OK):
        print("SKIPPED: %s is not installed (scripts/install-deps.sh installs the Debian "
              "packages chromium and chromium-driver)" % program)
        sys.exit(SKIP)


class Browser:
    """A chromedriver of its own and one session in it."""

    def __init__(self):
        with socket.socket() as s:
            s.bind(("127.0.0.1", 0))
            self.port = s.getsockname()[1]
        self.driver = subprocess.Popen([DRIVER, "--port=%d" % self.port],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.session = None
        deadline = time.time() + 20
        while True:
            try:
                if self._call("GET", "/status")["ready"]:
                    break
            except (OSError, urllib.error.URLError):
                pass
            if time.time() > deadline or self.driver.poll() is not None:
                raise RuntimeError("chromedriver did not start")
            time.sleep(0.1)
        options = {"binary": CHROMIUM,
                   "args": ["--headless", "--no-sandbox", "--disable-gpu",
                            "--window-size=1280,900"]}
        caps = {"capabilities": {"alwaysMatch": {"browserName": "chrome",
                                                 "goog:chromeOptions": options}}}
        self.session = self._call("POST", "/session", caps)["sessionId"]

    def _call(self, method, path, body=None):
        if body is None and method == "POST":
            body = {}
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request("http://127.0.0.1:%d%s" % (self.port, path), data=data,
                                         method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=60) as response:
                return json.load(response)["value"]
        except urllib.error.HTTPError as e:
            raise RuntimeError("%s %s: %s" % (method, path, e.read().decode(errors="replace")))

    def call(self, method, path, body=None):
        return self._call(method, "/session/%s%s" % (self.session, path), body)

    def script(self, text, *args):
        return self.call("POST", "/execute/sync", {"script": text, "args": list(args)})

    def find(self, css):
        return self.call("POST", "/element", {"using": "css selector", "value": css})[ELEMENT]

    def screenshot(self, path):
        with open(path, "wb") as f:
            f.write(base64.b64decode(self.call("GET", "/screenshot")))
        print("screenshot:", path)

    def close(self):
        try:
            if self.session:
                self.call("DELETE", "")
        except Exception:
            pass
        self.driver.terminate()
        try:
            self.driver.wait(10)
        except subprocess.TimeoutExpired:
            self.driver.kill()
            self.driver.wait()


def wait_for(what, test, seconds=10):
    deadline = time.time() + seconds
    while True:
        value = test()
        if value:
            return value
        if time.time() > deadline:
            raise AssertionError("timed out waiting for " + what)
        time.sleep(0.1)


# A timeout of ctest ends the test with SIGTERM: end it through the finally
# below, which stops chromedriver and its browser.
signal.signal(signal.SIGTERM, lambda *_: sys.exit("terminated"))
shutil.rmtree(out, ignore_errors=True)
site = os.path.join(out, "site")
subprocess.run([tool, "site", site], check=True)

VISIBLE_ROWS = ("return Array.from(document.querySelectorAll('#boards tbody tr'))"
                ".filter(function (r) { return !r.hidden; })"
                ".map(function (r) { return r.getAttribute('data-search'); });")
browser = None
try:
    browser = Browser()
    browser.call("POST", "/url", {"url": "file://" + os.path.join(site, "index.html")})
    everything = browser.script(VISIBLE_ROWS)
    assert len(everything) > 1, everything

    # A click on a heading sorts by its column, a second the other way.
    counts = ("return Array.from(document.querySelectorAll('#boards tbody tr'))"
              ".map(function (r) { return parseInt(r.cells[5].textContent, 10); });")
    heading = browser.find("#boards thead th.num button")
    browser.call("POST", "/element/%s/click" % heading)
    ascending = browser.script(counts)
    assert ascending == sorted(ascending) and ascending[0] < ascending[-1], ascending
    browser.call("POST", "/element/%s/click" % heading)
    assert browser.script(counts) == sorted(ascending, reverse=True), browser.script(counts)

    browser.call("POST", "/element/%s/value" % browser.find("#search"), {"text": "sample"})
    shown = wait_for("the list to filter",
                     lambda: (lambda rows: rows if len(rows) < len(everything) else None)(
                         browser.script(VISIBLE_ROWS)))
    assert shown and all("sample" in row for row in shown), shown
    browser.screenshot(os.path.join(out, "index.png"))

    browser.call("POST", "/element/%s/click" % browser.find("#boards tbody tr:not([hidden]) a"))
    url = wait_for("the board's page",
                   lambda: (lambda u: u if "/boards/" in u else None)(browser.call("GET", "/url")))
    size = wait_for("the diagram", lambda: browser.script(
        "var s = document.querySelector('.diagram svg');"
        "if (!s) return null; var r = s.getBoundingClientRect();"
        "return r.width > 0 && r.height > 0 ? [r.width, r.height] : null;"))
    browser.screenshot(os.path.join(out, "board.png"))
    print("%d of %d boards shown for 'sample'; %s shows its diagram at %dx%d"
          % (len(shown), len(everything), url, size[0], size[1]))
finally:
    if browser:
        browser.close()
