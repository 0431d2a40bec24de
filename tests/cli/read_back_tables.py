"""Exports a sample backup and reads every table of it back with two programs of others.

usage: read_back_tables.py MAKE_SAMPLE_BACKUP DATAEXPORT

Python's csv, told to be strict, and LibreOffice have to find the same cells in the same rows.
"""

import csv
import glob
import hashlib
import os
import sqlite3
import subprocess
import sys
import tempfile

TEXT = 2  # LibreOffice's word for a column whose cells stay as they are
COLUMNS = 200
NOTHING_ELSE = [f"--{what}=0" for what in ("photos", "videos", "books", "app-documents")]
CSV_FILTER = "Text - txt - csv (StarCalc):44,34,76,1,"  # comma, quote, UTF-8, from the first line
# Texts, and the cells that they become: quotes, line breaks, what a spreadsheet would run.
HOSTILE = {
    '"=1+1", he said\r\n=HYPERLINK("http://x",A1)\n,;\tend"': '"=1+1", he said\n=HYPERLINK("http://x",A1)\n,;\tend"',
    '=A1&" it': "'=A1&\" it",
    'say "hi"': 'say "hi"',
}


def add_hostile(backup):
    key = hashlib.sha1(b"HomeDomain-Library/SMS/sms.db").hexdigest()
    messages = sqlite3.connect(os.path.join(backup, key[:2], key))
    rows = messages.execute("SELECT ROWID FROM message WHERE text IS NOT NULL LIMIT 3").fetchall()
    for (row,), text in zip(rows, HOSTILE):
        messages.execute(
            "UPDATE message SET text = ?, attributedBody = NULL WHERE ROWID = ?", (text, row)
        )
    messages.commit()
    messages.close()


def rows_of(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        rows = list(csv.reader(file, strict=True))
    rows = [[cell.replace("\r\n", "\n") for cell in row] for row in rows]
    while rows and not any(rows[-1]):  # LibreOffice's sheet ends with the last cell that is not empty
        rows.pop()
    return rows


def by_office(tables, folder):
    columns = "/".join(f"{column}/{TEXT}" for column in range(1, COLUMNS + 1))
    subprocess.run(
        [
            "soffice",
            f"-env:UserInstallation=file://{folder}/profile",
            "--headless",
            f"--infilter={CSV_FILTER}{columns}",
            "--convert-to",
            f"csv:{CSV_FILTER},0,true,true",
            "--outdir",
            folder,
            *tables,
        ],
        check=True,
        stdout=subprocess.DEVNULL,
    )
    return [rows_of(os.path.join(folder, os.path.basename(table))) for table in tables]


def main():
    maker, program = sys.argv[1:]
    failures = []
    with tempfile.TemporaryDirectory() as temp:
        backup, output = os.path.join(temp, "backup"), os.path.join(temp, "out")
        subprocess.run([maker, backup, *NOTHING_ELSE], check=True, stdout=subprocess.DEVNULL)
        add_hostile(backup)
        subprocess.run([program, "--quiet", backup, output], stderr=subprocess.DEVNULL)
        tables = sorted(glob.glob(os.path.join(output, "**", "*.csv"), recursive=True))
        names = [os.path.basename(table) for table in tables]
        if len(names) != 4:
            failures.append(f"tables: {names}")
        read = [rows_of(table) for table in tables]
        for name, ours, theirs in zip(names, read, by_office(tables, temp)):
            if len({len(row) for row in ours}) != 1:
                failures.append(f"{name}: rows of different lengths")
            if len(ours) != len(theirs):
                failures.append(f"{name}: {len(ours)} rows, {len(theirs)} in LibreOffice")
            for row, (our, their) in enumerate(zip(ours, theirs), 1):
                if our != their:
                    failures.append(f"{name}: row {row} is {our!r}, in LibreOffice {their!r}")
        texts = [cell for rows in read for row in rows for cell in row]
        for text in HOSTILE.values():
            if texts.count(text) != 1:
                failures.append(f"{texts.count(text)} cells with {text!r}")
    for failure in failures[:20]:
        print(failure[:1000])
    print(f"{len(texts)} cells in {len(names)} tables read back, {len(failures)} differences")
    return 1 if failures else 0


sys.exit(main())
