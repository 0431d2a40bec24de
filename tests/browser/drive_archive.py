#!/usr/bin/env python3
"""The archive as a person uses it in a browser: searching, paging, looking at pictures, with the keyboard, in light
and dark. Usage: drive_archive.py BROWSER MAKE_SAMPLE_BACKUP DATAEXPORT TOOLS SCREENSHOTS"""

import base64
import functools
import http.server
import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unicodedata
import urllib.parse

import web_driver

WIDTHS = (400, 1100, 2560)
ARROW_RIGHT, ARROW_LEFT, ESCAPE, ENTER, TAB = "\ue014", "\ue012", "\ue00c", "\ue007", "\ue004"
# Questions, and whether a message with this text, of this sender in this conversation, answers it.
QUESTIONS = {
    "lighthouse": lambda m: "lighthouse" in m["all"],
    "LIGHTHOUSE": lambda m: "lighthouse" in m["all"],
    "ighthous": lambda m: "ighthous" in m["all"],
    "boat harbour": lambda m: "boat" in m["all"] and "harbour" in m["all"],
    "cafe": lambda m: "cafe" in m["all"],
    '"the morning tide"': lambda m: "the morning tide" in m["all"],
    "from:you tide": lambda m: m["mine"] and "tide" in m["all"],
    "tide after:2024-03-01": lambda m: "tide" in m["all"] and m["date"] >= "2024-03-01",
    "tide before:2024-03-01": lambda m: "tide" in m["all"] and "" < m["date"] < "2024-03-01",
    "nothing says this": lambda m: False,
}


def fold(text):
    parts = unicodedata.normalize("NFD", text)
    return "".join(c for c in parts if not unicodedata.category(c).startswith("M")).lower()


def messages(archive):
    """The messages of the data that a search of kind:message finds, as far as their words go."""
    for conversation in (archive / "data" / "messages.jsonl").read_text().splitlines():
        for line in (archive / json.loads(conversation)["messages"]).read_text().splitlines():
            record = json.loads(line)
            if record.get("text") and "parts" not in record and "reaction" not in record:
                yield {"text": record["text"], "all": fold(record["text"]), "mine": record.get("fromOwner", False),
                       "date": record.get("date", "")[:10]}


def opus_in_caf(seconds):
    """A recording as phones make it: silence of Opus, 20 ms each, in a CAF file."""
    packet, count = b"\xf8\xff\xfe", seconds * 50
    chunk = lambda name, content: name + struct.pack(">q", len(content)) + content
    return (b"caff" + struct.pack(">HH", 1, 0)
            + chunk(b"desc", struct.pack(">d4sIIIII", 48000, b"opus", 0, 0, 960, 1, 0))
            + chunk(b"pakt", struct.pack(">qqii", count, count * 960, 0, 0) + bytes([len(packet)]) * count)
            + chunk(b"data", bytes(4) + packet * count))


def put_opus(backup):
    """In the place of the sample's own CAF file."""
    for path in backup.glob("??/*"):
        if path.read_bytes()[:4] == b"caff":
            path.write_bytes(opus_in_caf(7))


class Run:
    def __init__(self, browser, output, axe, screenshots):
        self.browser, self.output, self.axe, self.screenshots = browser, output, axe, screenshots
        self.faults = []

    def check(self, is_right, what):
        if not is_right:
            self.faults.append(what)

    def open(self, path):
        self.browser.open((self.output / path).as_uri() if "#" not in path else
                          (self.output / path.split("#")[0]).as_uri() + "#" + path.split("#")[1])

    def run(self, script, *arguments):
        return self.browser.run(script, *arguments)

    def until(self, script, *arguments):
        for _ in range(200):
            value = self.run(script, *arguments)
            if value:
                return value
            time.sleep(0.05)
        self.faults.append(f"never came: {script}")
        return None

    def search(self, question):
        """The texts of all hits."""
        self.browser.open("about:blank")
        self.open("Archive/search/index.html#q=" + urllib.parse.quote(question))
        self.until("return /found\\.|Nothing found|are shown/.test(document.querySelector('#results [role=status]')?.textContent)")
        return self.run("return [...document.querySelectorAll('#results .hit > span:last-child')].map(e => e.textContent)")

    def finds_what_is_there(self):
        known = list(messages(self.output / "Archive"))
        self.check(len(known) > 200, f"{len(known)} messages only")
        for question, answers in QUESTIONS.items():
            found = self.search(question + " kind:message")
            wanted = [m["text"] for m in known if answers(m)]
            self.check(len(found) == len(wanted), f"{question}: {len(found)} found, {len(wanted)} are there")
        for question, texts in ({"cafe": "café", "café": "café"}).items():
            self.check(any(texts in text for text in self.search(question)), f"{question} does not find {texts}")
        self.search("lighthouse kind:message")
        target = self.run("const hit = document.querySelector('.hit'); const to = hit.href; hit.click(); return to")
        self.until("return location.href === arguments[0] && document.querySelector(':target')", target)

    def finds_parts_of_words_of_any_script(self):
        for part, whole in (("ープ", "スープ!"), ("魚のス", "魚のスープ"), ("RÜß", "Grüße")):
            self.check(any(whole in text for text in self.all_texts(part)), f"{part} does not find {whole}")

    def all_texts(self, question):
        self.search(question)
        return self.run("return [...document.querySelectorAll('#results .hit')].map(e => e.textContent)")

    def entrance_leads_to_the_search(self):
        self.open("index.html")
        self.run("document.querySelector('.hero input').focus()")
        self.browser.keys(*"tide", ENTER)
        self.until("return location.pathname.endsWith('/Archive/search/index.html')")
        self.until("return document.querySelectorAll('.hit').length > 0")
        self.browser.keys(TAB)
        self.open("index.html")
        self.browser.keys("/")
        self.check(self.run("return document.activeElement.name") == "q", "“/” does not lead to the search field")

    def pages_and_months(self):
        long = max((self.output / "Archive" / "chats").iterdir(), key=lambda path: len(list(path.glob("[0-9]*.html"))) if path.is_dir() else 0)
        count = len(list(long.glob("[0-9]*.html")))
        self.check(count > 1, "no conversation has pages")
        self.open(f"Archive/chats/{long.name}/{count}.html#end")
        self.run("document.querySelector('a[rel=prev]').click()")
        self.until(f"return location.pathname.endsWith('/{count - 1}.html')")
        self.run("document.querySelector('a[rel=next]').click()")
        self.until(f"return location.pathname.endsWith('/{count}.html')")
        options = self.until("return document.querySelectorAll('.head select option[value]').length")
        self.check(options and options > 1, "there are no months to jump to")
        self.run("const s = document.querySelector('.head select'); s.selectedIndex = s.options.length - 1;"
                 "s.dispatchEvent(new Event('change'))")
        self.until("return document.querySelector('.msg:target, .event:target')")
        self.check(self.run("return document.querySelectorAll('#chats li').length") > 1, "no list beside it")
        self.run("const i = document.querySelector('#chats input'); i.value = 'no such name';"
                 "i.dispatchEvent(new Event('input'))")
        self.check(self.run("return [...document.querySelectorAll('#chats li')].every(e => e.hidden)"), "the list is not filtered")

    def looks_at_pictures(self):
        month = sorted((self.output / "Archive" / "photos").glob("2*.html"))[-1]
        self.open(f"Archive/photos/{month.name}")
        self.run("document.querySelector('a[data-view]').focus()")
        self.browser.keys(ENTER)
        self.until("return document.querySelector('.viewer[open] img')?.naturalWidth > 0")
        first = self.run("return document.querySelector('.viewer img').src")
        self.browser.keys(ARROW_RIGHT)
        self.until("return document.querySelector('.viewer img, .viewer video')?.src !== arguments[0]", first)
        self.browser.keys(ARROW_LEFT)
        self.until("return document.querySelector('.viewer img')?.src === arguments[0]", first)
        self.check(self.run("return document.querySelector('.viewer a').hasAttribute('download')"), "no download")
        self.browser.keys(ESCAPE)
        self.until("return !document.querySelector('.viewer[open]')")
        self.check(self.run("return 'view' in document.activeElement.dataset"), "the focus is lost")

    def plays_recordings(self):
        """Voicemail in AMR and a voice message in CAF, once they are converted."""
        talk = next(path for path in (self.output / "Archive" / "chats").glob("*/1.html")
                    if "Audio Message.caf" in path.read_text())
        for page, seconds in (("Archive/voicemail/index.html", 0), (str(talk.relative_to(self.output)), 7)):
            self.open(page)
            self.run("window.sound = document.querySelector('audio'); sound.preload = 'metadata'; sound.load()")
            length = self.until("return window.sound.error ? -1 : window.sound.duration")
            self.check(length and (abs(length - seconds) < 0.2 if seconds else length > 0.5),
                       f"{page}: a recording of {length} seconds")

    def switches_its_theme(self):
        self.open("index.html")
        before = self.run("return getComputedStyle(document.body).backgroundColor")
        self.run("document.querySelector('.theme').click()")
        after = self.run("return getComputedStyle(document.body).backgroundColor")
        self.check(before != after, "the theme does not change")
        self.open("Archive/chats/index.html")
        self.run("document.querySelector('.theme').click()")

    def works_behind_a_server(self):
        class Quiet(http.server.SimpleHTTPRequestHandler):
            log_message = lambda *_: None
        handler = functools.partial(Quiet, directory=str(self.output))
        with http.server.ThreadingHTTPServer(("localhost", 0), handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            self.browser.open(f"http://localhost:{server.server_port}/Archive/search/index.html#q=lighthouse")
            self.until("return document.querySelectorAll('.hit').length > 0")
            self.browser.open(f"http://localhost:{server.server_port}/index.html")
            self.check(self.run("return [...document.images].every(i => i.naturalWidth)"), "no pictures from a server")
            server.shutdown()

    def looks_right(self):
        """Each kind of page at each width in both themes: nothing reaches over the edge, nothing is unreadable."""
        archive = self.output / "Archive"
        pages = ["index.html"] + [f"Archive/{folder.name}/index.html" for folder in sorted(archive.iterdir())
                                  if (folder / "index.html").exists()]
        for folder, pattern in (("chats", "*/1.html"), ("chats", "*/media-1.html"), ("notes", "?*-*.html"),
                                ("chats", "*/index.html"), ("photos", "2*.html"), ("notes", "[0-9a-f]*.html")):
            pages += [str(path.relative_to(self.output)) for path in sorted((archive / folder).glob(pattern))[:4]]
        for page in dict.fromkeys(pages):
            for theme in ("light", "dark"):
                for width in WIDTHS:
                    self.browser.resize(width, 1000)
                    self.open(page)
                    self.run("document.documentElement.dataset.theme = arguments[0]", theme)
                    name = f"{page.replace('/', '-')} at {width} {theme}"
                    over = self.run("return document.documentElement.scrollWidth - document.documentElement.clientWidth")
                    self.check(over <= 0, f"{name} reaches {over} pixels over the edge")
                    missing = self.run("return [...document.images].filter(i => i.complete && !i.naturalWidth).map(i => i.src)")
                    self.check(not missing, f"{name}: pictures are not shown: {missing}")
                    (self.screenshots / f"{name}.png").write_bytes(base64.b64decode(self.browser.picture()))
                if not self.axe:
                    continue
                self.run(self.axe)
                self.run("window.axeDone = null; axe.run({preload: false}).then(r => { window.axeDone = r.violations.map("
                         "v => v.id + ': ' + v.nodes.slice(0, 3).map(n => n.html.slice(0, 160)).join(' | ')) })")
                for violation in self.until("return window.axeDone && [window.axeDone]")[0]:
                    self.faults.append(f"{page} in {theme}: {violation}")


def main(name, make_sample, program, tools, screenshots) -> int:
    screenshots.mkdir(parents=True, exist_ok=True)
    axe = (tools / "node_modules/axe-core/axe.min.js").read_text() if name == "Chromium" else ""
    with tempfile.TemporaryDirectory() as temp:
        faults = []
        for what, options, only in (("showcase", [], []), ("long", ["--messages", "2500", "--conversations", "2"],
                                                          ["--only", "messages,contacts"])):
            backup, output = pathlib.Path(temp, what), pathlib.Path(temp, f"out # {what} ü").resolve()
            subprocess.run([make_sample, *options, str(backup)], check=True, capture_output=True)
            put_opus(backup)
            subprocess.run([program, "--quiet", "--convert-audio", "--formats", "archive,json", *only, str(backup), str(output)],
                           capture_output=True)
            browser = getattr(web_driver, name)()
            try:
                browser.resize(1300, 1000)
                run = Run(browser, output, axe, screenshots)
                if what == "long":
                    run.finds_what_is_there()
                    run.pages_and_months()
                else:
                    run.finds_parts_of_words_of_any_script()
                    run.entrance_leads_to_the_search()
                    run.looks_at_pictures()
                    run.plays_recordings()
                    run.switches_its_theme()
                    run.works_behind_a_server()
                    run.looks_right()
                faults += run.faults + [f"the browser says: {line}" for line in browser.complaints()
                                        if "/favicon.ico" not in line]  # browsers ask every server for one
            finally:
                browser.close()
    print("\n".join(dict.fromkeys(faults)))
    return 1 if faults else 0


sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3], pathlib.Path(sys.argv[4]), pathlib.Path(sys.argv[5])))
