"""Exports a sample backup and reads every table of it back with two programs of others.

usage: read_back_tables.py MAKE_SAMPLE_BACKUP DATAEXPORT

Python's csv, told to be strict, and LibreOffice have to find the same cells in the same rows; every
message of the database has its row, every copied file its name in one.
"""

import csv
import glob
import hashlib
import os
import sqlite3
import subprocess
import sys
import tempfile
import time

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
TO_UNIX = 978307200  # seconds from the epoch of time() to that of the phone
# All that stand for themselves: no reactions and no votes.
MESSAGES = """
    SELECT m.ROWID, m.date, m.text, m.is_from_me, h.id,
           (SELECT count(*) FROM chat_message_join j JOIN chat_handle_join c ON c.chat_id = j.chat_id
            WHERE j.message_id = m.ROWID)
    FROM message m LEFT JOIN handle h ON h.ROWID = m.handle_id
    WHERE m.associated_message_type = 0 ORDER BY length(m.text) DESC"""


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


def missing_messages(backup, table):
    """What the database says and no row of the table does."""
    key = hashlib.sha1(b"HomeDomain-Library/SMS/sms.db").hexdigest()
    database = sqlite3.connect(os.path.join(backup, key[:2], key))
    rows, senders, failures = table[1:], {}, []
    for number, nanoseconds, text, from_me, address, others in database.execute(MESSAGES):
        minute = time.strftime("%Y-%m-%d %H:%M", time.localtime(nanoseconds // 10**9 + TO_UNIX))
        parts = [HOSTILE.get(part, part) for part in (text or "").split("\ufffc")]
        in_group = others > 1 and not from_me
        for row in rows:
            _, _, _, date, kind, sender, content, _ = row
            is_of_type = kind in (("Sent", "Unknown") if from_me else ("Received",))
            is_sender = senders.get(address, sender) == sender != "" if in_group else not sender
            if date == minute and is_of_type and is_sender and all(p in content for p in parts):
                if in_group:
                    senders[address] = sender
                rows.remove(row)
                break
        else:
            failures.append(f"message {number} from {address} has no row: {minute} {parts!r}")
    if len(set(senders.values())) != len(senders) or len(senders) < 2:
        failures.append(f"senders: {senders}")
    return failures


def missing_names(output, kind, table):
    """The copied files that the table does not name."""
    named = {name for row in table[1:] for name in row[-1].split("; ")}
    files = glob.glob(os.path.join(output, f"{kind} Attachments", "*", "*"))
    unnamed = {os.path.basename(file) for file in files} - named
    return [] if files and not unnamed else [f"{kind}: of {len(files)} not named: {unnamed}"]


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
        by_type = dict(zip([name.split("'s ")[-1] for name in names], read))
        failures += missing_messages(backup, by_type["Messages.csv"])
        for kind, folder in (("Message", "Messages"), ("WhatsApp", "WhatsApp")):
            failures += missing_names(output, kind, by_type[f"{folder}.csv"])
        texts = [cell for rows in read for row in rows for cell in row]
        for text in HOSTILE.values():
            if texts.count(text) != 1:
                failures.append(f"{texts.count(text)} cells with {text!r}")
    for failure in failures[:20]:
        print(failure[:1000])
    print(f"{len(texts)} cells in {len(names)} tables read back, {len(failures)} differences")
    return 1 if failures else 0


sys.exit(main())
