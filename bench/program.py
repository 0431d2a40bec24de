#!/usr/bin/env python3
"""Measures the program from end to end and prints a table in Markdown.

Usage: program.py BUILD [FOLDER [NAME...]]

BUILD is a build folder. FOLDER is for the sample backups, needs 6 GB for all rows, and defaults to
"dataexport-bench" in the folder for temporary files; backups in it are used again. NAME selects rows
whose name contains it. Each row is the quickest of three runs."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

RUNS = 3
EMPTY = {"photos": 0, "videos": 0, "shared-photos": 0, "voice-memos": 0, "books": 0, "ringtones": 0,
         "app-documents": 0, "voicemail": 0, "messages": 0, "calls": 0, "bookmarks": 0,
         "history": 0, "notes": 0, "events": 0, "reminders": 0}
PHOTOS = {"photos": 300, "file-size": 2_500_000}
PASSWORD = "bench"

# Name, what the sample backup holds besides nothing, arguments of the program.
ROWS = [
    ("10,000 messages", {"messages": 10_000, "conversations": 20}, ["--only", "messages"]),
    ("1,000,000 messages", {"messages": 1_000_000, "conversations": 2_000}, ["--only", "messages"]),
    ("100,000 messages in one conversation", {"messages": 100_000, "conversations": 1},
     ["--only", "messages"]),
    ("100,000 WhatsApp messages", {"whatsapp-messages": 100_000, "whatsapp-chats": 50},
     ["--only", "whatsapp"]),
    ("1,000,000 WhatsApp messages", {"whatsapp-messages": 1_000_000, "whatsapp-chats": 500},
     ["--only", "whatsapp"]),
    ("5,000 contacts, 500 photos", {"contacts": 5_000, "contact-photos": 500},
     ["--only", "contacts"]),
    ("20,000 contacts, 2,000 photos", {"contacts": 20_000, "contact-photos": 2_000},
     ["--only", "contacts"]),
    ("10,000 calls, 20,000 visits", {"calls": 10_000, "history": 20_000},
     ["--only", "calls,safari"]),
    ("100,000 calls, 200,000 visits", {"calls": 100_000, "history": 200_000},
     ["--only", "calls,safari"]),
    ("list of 500,000 files", {"index-rows": 500_000}, ["--list"]),
    ("300 photos, 750 MB", PHOTOS, ["--only", "photos"]),
    ("300 photos, 750 MB, encrypted", {**PHOTOS, "encrypted": PASSWORD, "iterations": 10},
     ["--only", "photos"]),
]


def backup_of(build, folder, name, content):
    backup = folder / "".join(c for c in name if c.isalnum())
    if not (backup / "Manifest.db").exists():
        options = [f"--{key}={value}" for key, value in {**EMPTY, **content}.items()]
        subprocess.run([build / "sample/make-sample-backup", backup, *options], check=True,
                       stdout=subprocess.DEVNULL)
    return backup


def run(command):
    """Seconds of the clock and of the processor, and the peak of memory in MB."""
    started = os.times().elapsed
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    if status != 0:
        sys.exit(f"{command[0]} ended with {os.waitstatus_to_exitcode(status)}")
    return (usage.ru_utime + usage.ru_stime, os.times().elapsed - started, usage.ru_maxrss / 1024)


def main(build, folder, names):
    os.environ["DATAEXPORT_PASSWORD"] = PASSWORD
    folder.mkdir(parents=True, exist_ok=True)
    out = folder / "out"
    print("| What | Processor time | Wall time | Peak memory |\n|---|---|---|---|", flush=True)
    for name, content, arguments in ROWS:
        if names and not any(wanted in name for wanted in names):
            continue
        backup = backup_of(build, folder, name, content)
        target = [] if "--list" in arguments else [out]
        figures = []
        for _ in range(RUNS):
            shutil.rmtree(out, ignore_errors=True)
            figures.append(run([build / "src/cli/dataexport", "--quiet", *arguments, backup,
                                *target]))
        shutil.rmtree(out, ignore_errors=True)
        processor, wall, memory = min(figures)
        print(f"| {name} | {processor:.2f} s | {wall:.2f} s | {memory:.0f} MB |", flush=True)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(pathlib.Path(sys.argv[1]).resolve(),
         pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else tempfile.gettempdir() + "/dataexport-bench"),
         sys.argv[3:])
