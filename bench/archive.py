#!/usr/bin/env python3
"""Measures the archive: what it costs against page and CSV, and how fast a browser shows and searches it. Prints a
table in Markdown.

Usage: archive.py BUILD [FOLDER [NAME...]]

BUILD is a build folder. FOLDER is for the sample backups, as in program.py, whose names these rows share. NAME
selects rows whose name contains it. Programs: the quicker of two runs; the browser: one."""

import os
import pathlib
import shutil
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/browser"))
import program  # noqa: E402
import web_driver  # noqa: E402

ROWS = [
    ("10,000 messages", {"messages": 10_000, "conversations": 20}),
    ("100,000 messages", {"messages": 100_000, "conversations": 200}),
    ("1,000,000 messages", {"messages": 1_000_000, "conversations": 2_000}),
    ("200,000 messages in one conversation", {"messages": 200_000, "conversations": 1}),
]
QUESTION = "kind:message lighthouse"


def in_browser(out):
    """Milliseconds until a page is there and drawn, MB of its process, seconds to the first and last hit."""
    browser = web_driver.Chromium()
    try:
        pages = sorted((out / "Archive" / "chats").glob("*/1.html"), key=lambda page: page.stat().st_size)
        browser.open(pages[-1].as_uri())
        shown = browser.run("return performance.getEntriesByType('navigation')[0].loadEventEnd")
        heap = browser.run("return performance.memory.usedJSHeapSize") / 1e6
        browser.open((out / "Archive/search/index.html").as_uri())
        browser.run("""window.times = []; const start = performance.now();
            new MutationObserver(() => {
              const status = document.querySelector('#results [role=status]')?.textContent ?? '';
              if (document.querySelector('.hit') && !times[0]) times[0] = performance.now() - start;
              if (/found\\.$|shown\\.$/.test(status)) times[1] ??= performance.now() - start;
            }).observe(document.getElementById('results'), {childList: true, subtree: true, characterData: true});
            location.hash = '#q=' + encodeURIComponent(arguments[0]);""", QUESTION)
        for _ in range(600):
            times = browser.run("return window.times")
            if len(times) > 1:
                return shown, heap, times[0] / 1000, times[1] / 1000
            time.sleep(0.1)
        return shown, heap, float("nan"), float("nan")
    finally:
        browser.close()


def main(build, folder, names):
    folder.mkdir(parents=True, exist_ok=True)
    out = folder / "out"
    print("| What | Page and CSV | Archive and JSON | Ratio | Peak memory | Page shown | Scripts' memory | First hit "
          "| Last hit |\n|---|---|---|---|---|---|---|---|---|", flush=True)
    for name, content in ROWS:
        if names and not any(wanted in name for wanted in names):
            continue
        backup = program.backup_of(build, folder, name, content)
        figures = {}
        for _ in range(2):
            for formats in ("page,csv", "archive,json"):
                shutil.rmtree(out, ignore_errors=True)
                figures.setdefault(formats, []).append(program.run(
                    [build / "src/cli/dataexport", "--quiet", "--only", "messages", "--formats", formats, backup, out]))
        pages, archive = min(figures["page,csv"]), min(figures["archive,json"])
        shown, heap, first, last = in_browser(out)
        print(f"| {name} | {pages[0]:.2f} s | {archive[0]:.2f} s | {archive[0] / pages[0]:.2f} | {archive[2]:.0f} MB "
              f"| {shown:.0f} ms | {heap:.0f} MB | {first:.2f} s | {last:.2f} s |", flush=True)
    shutil.rmtree(out, ignore_errors=True)


if len(sys.argv) < 2:
    sys.exit(__doc__)
main(pathlib.Path(sys.argv[1]).resolve(),
     pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else tempfile.gettempdir() + "/dataexport-bench"), sys.argv[3:])
