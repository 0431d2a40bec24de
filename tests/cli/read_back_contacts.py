"""Exports the contacts of sample backups and reads them back with tools that others wrote.

usage: read_back_contacts.py MAKE_SAMPLE_BACKUP DATAEXPORT

The address book is asked through Python's sqlite3, the cards are parsed by vobject, the table by
csv. Where docs/formats/contacts.md says that a format differs on purpose, what it says is expected.
"""

import collections
import csv
import glob
import hashlib
import logging
import os
import re
import sqlite3
import subprocess
import sys
import tempfile

import vobject

PHONE, EMAIL, ADDRESS, DATE, ACCOUNT, URL = 3, 4, 5, 12, 13, 22
NOTHING_ELSE = [
    f"--{what}=0"
    for what in (
        "photos videos shared-photos voice-memos books ringtones app-documents voicemail messages"
    ).split()
]
failures = []


def check(what, found, wanted):
    if found != wanted:
        failures.append(f"{what}: found {found!r}, wanted {wanted!r}")


def database(backup, name):
    path = "Library/AddressBook/" + name
    key = hashlib.sha1(("HomeDomain-" + path).encode()).hexdigest()
    file = os.path.join(backup, key[:2], key)
    connection = sqlite3.connect(f"file:{file}?immutable=1", uri=True)
    connection.row_factory = sqlite3.Row
    return connection


class Contact:
    """What the address book holds of one person, all cards together."""

    def __init__(self):
        self.cards = []
        self.fields = {}
        self.values = collections.defaultdict(list)
        self.photo = None

    def field(self, name):
        return self.fields.get(name) or ""


def contacts_of(backup):
    book = database(backup, "AddressBook.sqlitedb")
    images = database(backup, "AddressBookImages.sqlitedb")
    name_cards = dict(book.execute("SELECT ROWID, PreferredNamePersonID FROM ABPersonLink"))
    parts = collections.defaultdict(dict)
    for row in book.execute(
        "SELECT parent_id, k.value AS key, e.value FROM ABMultiValueEntry e "
        "JOIN ABMultiValueEntryKey k ON k.rowid = e.key"
    ):
        parts[row["parent_id"]][row["key"]] = row["value"]
    people = {}
    of_card = {}
    for row in book.execute("SELECT * FROM ABPerson"):
        link = row["PersonLink"]
        key = ("link", link) if link in name_cards else ("card", row["ROWID"])
        contact = people.setdefault(key, Contact())
        contact.cards.append(row["ROWID"])
        of_card[row["ROWID"]] = contact
        is_name = name_cards.get(link, row["ROWID"]) == row["ROWID"]
        for column in row.keys():
            if row[column] not in (None, "") and (is_name or column not in contact.fields):
                contact.fields[column] = row[column]
    for row in book.execute(
        "SELECT UID, record_id, property, v.value, l.value AS label FROM ABMultiValue v "
        "LEFT JOIN ABMultiValueLabel l ON l.rowid = v.label ORDER BY record_id, property, identifier"
    ):
        values = of_card[row["record_id"]].values[row["property"]]
        value = parts[row["UID"]] if row["value"] is None else row["value"]
        if value not in values:
            values.append(value)
    for row in images.execute("SELECT record_id, data FROM ABThumbnailImage ORDER BY length(data)"):
        of_card[row["record_id"]].photo = row["data"]
    for row in images.execute("SELECT record_id, data FROM ABFullSizeImage"):
        of_card[row["record_id"]].photo = row["data"]
    return list(people.values())


def one_line(text):
    return text.replace("\n", " ")


def day_of(seconds):
    noon = float(seconds)
    days = noon // 86400 + (1 if noon % 86400 > 43200 else 0)
    year, month, day = sqlite3.connect(":memory:").execute(
        "SELECT strftime('%Y', j), strftime('%m', j), strftime('%d', j) FROM "
        "(SELECT julianday('2001-01-01') + ? AS j)", (days,)
    ).fetchone()
    return f"{month}-{day}" if year == "1604" else f"{year}-{month}-{day}"


def as_text(text):
    # Commas are not escaped; vobject takes what follows one for another text.
    return text.split(",")[0]


def check_cards(folder, contacts):
    cards = []
    for path in glob.glob(os.path.join(glob.escape(folder), "VCF", "*.vcf")):
        with open(path, encoding="utf-8", newline="") as file:
            text = file.read()
        # The lines of accounts have no colon, and notes may go on in lines of their own.
        found = list(vobject.readComponents(text, ignoreUnreadable=True, transform=False))
        check(path + " cards", len(found), 1)
        cards.append((found[0], text))
    check("number of cards", len(cards), len(contacts))

    def texts(card, name):
        return [line.value for line in card.contents.get(name, [])]

    def key(name_parts, nickname, phones, emails):
        return (tuple(name_parts), tuple(nickname), tuple(phones), tuple(emails))

    by_key = collections.defaultdict(list)
    for card, text in cards:
        name = [part for value in texts(card, "n") for part in value.split(";")]
        nickname = texts(card, "nickname")
        by_key[key(name, nickname, texts(card, "tel"), texts(card, "email"))].append((card, text))
    for contact in contacts:
        parts = [contact.field(part) for part in ("Prefix", "First", "Middle", "Last", "Suffix")]
        wanted = key(
            [part for part in parts if part],
            [contact.field("Nickname")] if contact.field("Nickname") else [],
            [as_text(phone) for phone in contact.values[PHONE]],
            contact.values[EMAIL],
        )
        if not by_key[wanted]:
            failures.append(f"no card with {wanted!r}")
            continue
        card, text = by_key[wanted].pop()
        about = contact.field("First") or contact.field("Organization") or str(contact.cards)

        def compare(name, wanted_texts):
            check(f"{about} {name}", texts(card, name), [t for t in wanted_texts if t])

        full = " ".join(part for part in parts if part)
        if contact.field("Kind") == 1:
            full = contact.field("Organization")
        if not full:
            full = contact.field("Nickname")
        if not full:
            full = (contact.values[PHONE] + contact.values[EMAIL] + [""])[0]
        compare("fn", [full])
        compare("title", [as_text(contact.field("JobTitle"))])
        work = [contact.field("Organization"), contact.field("Department")]
        compare("org", [";".join(part for part in work if part)])
        compare("bday", [contact.field("Birthday") and day_of(contact.field("Birthday"))])
        compare("url", contact.values[URL])
        compare(
            "adr",
            [
                ";;" + ";".join(one_line(a[k]) for k in ("Street", "City", "State", "ZIP", "Country") if k in a)
                for a in contact.values[ADDRESS]
            ],
        )
        compare("note", [as_text(contact.field("Note").split("\n")[0])])
        check(f"{about} whole note", contact.field("Note") in text, True)
        check(f"{about} photo", texts(card, "photo") == [contact.photo], contact.photo is not None)
        for account in contact.values[ACCOUNT]:
            line = f"X-{account['service'].upper()};{account['username']}\r\n"
            check(f"{about} {line!r}", line in text, True)


def as_cell(text):
    # Quotes are doubled in every cell; a reader takes that back only where quotes enclose it.
    return text if re.search(r"[,\r\n]", text) else text.replace('"', '""')


def check_table(folder, contacts):
    (path,) = glob.glob(os.path.join(glob.escape(folder), "CSV", "*.csv"))
    with open(path, encoding="utf-16", newline="") as file:
        rows = list(csv.reader(file))
    header = rows.pop(0)
    check("number of rows", len(rows), len(contacts))
    check("cells behind the last comma", {row[-1] for row in rows + [header]}, {""})
    found = collections.Counter()
    for row in rows:
        check("cells of a row", len(row), len(header))
        found[frozenset((name, cell) for name, cell in zip(header, row) if cell)] += 1

    for contact in contacts:
        cells = {
            "Given Name": contact.field("First"),
            "Additional Name": contact.field("Middle"),
            "Family Name": contact.field("Last"),
            "Given Name Yomi": contact.field("FirstPhonetic"),
            "Family Name Yomi": contact.field("LastPhonetic"),
            "Name Prefix": contact.field("Prefix"),
            "Name Suffix": contact.field("Suffix"),
            "Nickname": contact.field("Nickname"),
            "Organization 1 - Name": contact.field("Organization"),
            "Organization 1 - Department": contact.field("Department"),
            "Organization 1 - Title": contact.field("JobTitle"),
            "Notes": contact.field("Note"),
            "Birthday": contact.field("Birthday") and day_of(contact.field("Birthday")),
            # The last account comes first.
            "IM 1 - Value": " ::: ".join(a["username"] for a in reversed(contact.values[ACCOUNT])),
        }
        for number, value in enumerate(contact.values[PHONE], 1):
            cells[f"Phone {number} - Value"] = value
        for number, value in enumerate(contact.values[EMAIL], 1):
            cells[f"E-mail {number} - Value"] = value
        for number, value in enumerate(contact.values[URL], 1):
            cells[f"Website {number} - Value"] = value
        for number, value in enumerate(contact.values[DATE], 1):
            cells[f"Event {number} - Value"] = day_of(value)
        for number, value in enumerate(contact.values[ADDRESS], 1):
            get = lambda key: one_line(value.get(key, ""))
            cells[f"Address {number} - Street"] = get("Street")
            cells[f"Address {number} - Postal Code"] = get("ZIP")
            cells[f"Address {number} - Country"] = get("Country")
            cells[f"Address {number} - City"] = " ".join(filter(None, [get("City"), get("State")]))
        wanted = {(name, as_cell(text)) for name, text in cells.items() if text}
        # Types of entries and services are words of the exports.
        match = next(
            (
                row
                for row, count in found.items()
                if count
                and {c for c in row if not c[0].endswith((" - Type", " - Service"))} == wanted
            ),
            None,
        )
        if match is None:
            failures.append(f"no row with {sorted(wanted)!r}")
        else:
            found[match] -= 1


def read_back(maker, program, options):
    with tempfile.TemporaryDirectory() as temp:
        backup, output = os.path.join(temp, "backup"), os.path.join(temp, "out")
        subprocess.run(
            [maker, backup, *NOTHING_ELSE, *options], check=True, stdout=subprocess.DEVNULL
        )
        done = subprocess.run([program, "--quiet", "--only=contacts", backup, output])
        check("exit code", done.returncode, 0)
        contacts = contacts_of(backup)
        folder = os.path.join(output, "Contacts")
        check_cards(folder, contacts)
        check_table(folder, contacts)
        return len(contacts)


def main():
    logging.disable(logging.ERROR)  # vobject tells of each line that it leaves out
    csv.field_size_limit(sys.maxsize)
    maker, program = sys.argv[1:]
    counts = [
        read_back(maker, program, []),
        read_back(maker, program, ["--contacts=400", "--contact-photos=3"]),
    ]
    for failure in failures[:20]:
        print(failure)
    print(f"{counts} contacts read back, {len(failures)} differences")
    return 1 if failures or counts[0] < 20 or counts[1] != 400 else 0


sys.exit(main())
