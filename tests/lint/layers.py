#!/usr/bin/env python3
"""Arrows between folders go down only. Fails for each include that goes up or to a neighbour.
Usage: layers.py SRC"""

import pathlib
import re
import sys

FILES = "Files"  # below everything
LIBRARY = [f"DataExport/{folder}" for folder in ("platform", "export", "backup")]
FORMATS = [f"PhoneBackup/{folder}" for folder in ("sqlite", "plist", "packed", "crypto")]
ROOMS = ["messages", "whatsapp", "contacts", "notes", "planner", "calls", "safari", "media"]
BELOW_ROOMS = ["PhoneBackup/base", *FORMATS, "PhoneBackup/folder", "PhoneBackup/source"]
ITEM_MODEL = [f"DataExport/{folder}" for folder in ("message", "contact", "table", "backup")]

READER = [*BELOW_ROOMS, *(f"PhoneBackup/{room}" for room in ROOMS)]
ARCHIVE_BELOW = ["Archive/records", "Archive/output", "Archive/html", "PhoneBackup/base"]
WORDS = [f"PhoneItems/{room}" for room in ("messages", "whatsapp", "notes", "planner")]

# Each folder, and those below it whose headers it may include besides its own.
FLOORS = {
    "Files": [],
    "DataExport/platform": [],
    "DataExport/export": LIBRARY[:1],
    "DataExport/backup": LIBRARY[:2],
    **{f"DataExport/{folder}": LIBRARY for folder in ("message", "contact", "table")},
    "PhoneBackup/base": [],
    "PhoneBackup/crypto": ["PhoneBackup/base"],
    "PhoneBackup/plist": ["PhoneBackup/base"],
    "PhoneBackup/packed": ["PhoneBackup/base"],
    "PhoneBackup/sqlite": ["PhoneBackup/base"],
    "PhoneBackup/folder": ["PhoneBackup/base", *FORMATS],
    "PhoneBackup/source": BELOW_ROOMS[:-1],
    **{f"PhoneBackup/{room}": BELOW_ROOMS for room in ROOMS},
    "PhoneItems/words": ["PhoneBackup/base", *LIBRARY[:1]],
    "PhoneItems/shared": ["PhoneItems/words", *BELOW_ROOMS, *LIBRARY[:1], *ITEM_MODEL],
    **{f"PhoneItems/{room}": ["PhoneItems", "PhoneItems/words", "PhoneItems/shared",
                              f"PhoneBackup/{room}", *BELOW_ROOMS, *LIBRARY[:1], *ITEM_MODEL]
       for room in ROOMS},
    "PhoneItems": ["PhoneItems/words", "PhoneItems/shared", *(f"PhoneItems/{room}" for room in ROOMS),
                   *BELOW_ROOMS, *(f"PhoneBackup/{room}" for room in ROOMS), *LIBRARY[:1],
                   *ITEM_MODEL],
    "Archive/records": READER,
    "Archive/output": READER,
    "Archive/html": ["Archive/records", *READER],
    "Archive/search": ["Archive/html", "Archive/output", *READER],
    "Archive/media": [*ARCHIVE_BELOW, "Archive/search", *READER],
    "Archive/data": ARCHIVE_BELOW,
    **{f"Archive/{room}": [*ARCHIVE_BELOW, "Archive/search", "Archive/media", *READER, *WORDS]
       for room in ("lists", "photos")},
    "Archive/people": [*ARCHIVE_BELOW, "Archive/search", "Archive/media", "Archive/lists", *READER, *ITEM_MODEL],
    "Archive/notes": [*ARCHIVE_BELOW, "Archive/search", "Archive/media", "Archive/lists", *READER, *WORDS],
    "Archive/chats": [*ARCHIVE_BELOW, "Archive/search", "Archive/media", *READER, *WORDS],
    "Archive": [f"Archive/{room}" for room in ("records", "output", "html", "search", "media", "data", "lists",
                                               "photos", "people", "notes", "chats")] + READER,
    "Export/HeicToJpeg": LIBRARY[:2],
    "Export/SoundToPlayable": [],
    "Export": ["Archive", "Archive/media", "Archive/html", "Export/HeicToJpeg", "Export/SoundToPlayable", "PhoneItems", "PhoneItems/words", "PhoneItems/shared",
               "PhoneBackup/base", "PhoneBackup/folder", "PhoneBackup/source", *LIBRARY],
    "cli": ["Export", "DataExport/backup"],
}
# Headers of the item model say what an item is; the reader and the program see nothing else of these
# folders.
ITEM_HEADER = re.compile(r"(backup|message|contact|table)/Bk\w+\.h")
# What decodes pictures is for a run, too; nothing else that the library keeps to itself is for it or for
# the program.
PRIVATE_HEADER = re.compile(r"(?!export/(PictureReader|QuietDecoding)_p).*_p\.h")
# Sentences for persons, which the archive shares with the item model; nothing else of it is for the archive.
WORDS_HEADER = re.compile(r"PhoneItems/\w+/(\w+Words|PlannedText|NoteBodyText)\.h")
LONGEST_FILE = 600


def folder_of(include: str) -> str:
    folder = str(pathlib.PurePosixPath(include).parent)
    return folder if folder.startswith(("Phone", "Archive", "Export", FILES)) else f"DataExport/{folder}"


def main(root: pathlib.Path) -> int:
    faults = []
    for file in sorted(root.rglob("*.[ch]*")):
        if file.suffix not in (".cpp", ".h"):
            continue
        name = file.relative_to(root)
        text = file.read_text()
        if text.count("\n") > LONGEST_FILE:
            faults.append(f"{name}: longer than {LONGEST_FILE} lines")
        folder = str(name.parent)
        allowed = FLOORS.get(folder)
        if allowed is None:
            faults.append(f"{name}: no floor is named for its folder")
            continue
        for include in re.findall(r'^#include "([^"]+)"', text, re.M):
            if include.startswith("../"):
                faults.append(f"{name}: {include} climbs")
            if "/" not in include:
                continue
            to = folder_of(include)
            if to == folder:
                continue
            below = to == FILES or to in allowed
            if folder.startswith(("Phone", "cli")) and to in ITEM_MODEL:
                below = below and bool(ITEM_HEADER.fullmatch(include))
            if folder.startswith("Archive") and to.startswith("PhoneItems"):
                below = below and bool(WORDS_HEADER.fullmatch(include))
            if folder.startswith("Archive") and to in ITEM_MODEL:
                below = below and bool(ITEM_HEADER.fullmatch(include))
            if folder.startswith(("Export", "cli")):
                below = below and not PRIVATE_HEADER.fullmatch(include)
            if not below:
                faults.append(f"{name}: {include} is no folder below")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
