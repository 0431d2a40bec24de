#!/usr/bin/env python3
"""Each code of a notice has words, once, and all words are of a code that is told.
Usage: notices.py SRC"""

import pathlib
import re
import sys

ENTRY = re.compile(r'\{\s*"(\w+\.\w+)",\s*QT_TRANSLATE_NOOP\(')
LITERAL = re.compile(r'"([a-z]\w*\.[a-z]\w*)"')
TOLD = re.compile(r'\bNotice\w*(?:\s+\w+)?\s*[({]\s*"([^"]*)"')


def main(root: pathlib.Path) -> int:
    faults = []
    worded: dict[str, pathlib.Path] = {}
    texts = {}
    for file in sorted(root.rglob("*.cpp")) + sorted(root.rglob("*.h")):
        name = file.relative_to(root)
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", file.read_text(), flags=re.S)
        if not file.name.endswith("Notices.cpp"):
            texts[name] = text
            continue
        for code in ENTRY.findall(text):
            if code in worded:
                faults.append(f"{name}: {code} has words in {worded[code]}, too")
            worded[code] = name
    rooms = {code.split(".")[0] for code in worded}
    used = set()
    for name, text in texts.items():
        codes = {code for code in LITERAL.findall(text) if code.split(".")[0] in rooms}
        told = {code for code in TOLD.findall(text) if code}
        # A code is also chosen before it is told: then it is a literal of a room like any other.
        wrong = told if name.parts[0] != "PhoneBackup" else told | codes
        faults += [f"{name}: {code} has no words" for code in sorted(wrong - worded.keys())]
        used |= codes | told
    faults += [f"{worded[code]}: nobody tells {code}" for code in sorted(worded.keys() - used)]
    if not worded:
        faults.append("no words were found")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
