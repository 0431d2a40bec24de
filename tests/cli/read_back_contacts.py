"""Exports the contacts of sample backups and reads them back with tools that others wrote.

usage: read_back_contacts.py MAKE_SAMPLE_BACKUP DATAEXPORT TOOLS

The address book is asked through Python's sqlite3, the cards are parsed by vobject, ical.js (in the
folder TOOLS) and libebook-contacts, the table by csv.
"""

import base64
import collections
import csv
import glob
import hashlib
import json
import os
import quopri
import re
import sqlite3
import subprocess
import sys
import tempfile

import gi
import vobject

gi.require_version("EBookContacts", "1.2")
from gi.repository import EBookContacts

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


def path_of(backup, name):
    key = hashlib.sha1(("HomeDomain-Library/AddressBook/" + name).encode()).hexdigest()
    return os.path.join(backup, key[:2], key)


def database(backup, name):
    connection = sqlite3.connect(f"file:{path_of(backup, name)}?immutable=1", uri=True)
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


# What N and ADR consist of, in the standard's order.
NAME_PARTS = ("Last", "First", "Middle", "Prefix", "Suffix")
ADDRESS_PARTS = ("Street", "City", "State", "ZIP", "Country")


def card_of(contact):
    """What a reader is to find in the card of the contact: the values by the property's name."""
    first_to_last = [contact.field(part) for part in ("Prefix", "First", "Middle", "Last", "Suffix")]
    full = " ".join(part for part in first_to_last if part)
    if contact.field("Kind") == 1:
        full = contact.field("Organization")
    if not full:
        full = contact.field("Nickname")
    if not full:
        full = (contact.values[PHONE] + contact.values[EMAIL] + [""])[0]
    company, department = contact.field("Organization"), contact.field("Department")
    work = [company, department] if department else [company] if company else []
    day = contact.field("Birthday") and day_of(contact.field("Birthday"))
    card = {
        # A blank keeps a last backslash apart from the semicolon that follows.
        "N": [[re.sub(r"\\$", r"\\ ", contact.field(part)) for part in NAME_PARTS]],
        "FN": [one_line(full)],
        "TITLE": [contact.field("JobTitle")],
        "ORG": [work],
        "NICKNAME": [contact.field("Nickname")],
        "BDAY": ["--" + day if len(day) == 5 else day],
        "NOTE": [contact.field("Note")],
        "ADR": [["", ""] + [a.get(k, "") for k in ADDRESS_PARTS] for a in contact.values[ADDRESS]],
        "TEL": contact.values[PHONE],
        "EMAIL": contact.values[EMAIL],
        "URL": contact.values[URL],
        "PHOTO": [base64.b64encode(contact.photo or b"").decode()],
    }
    for account in contact.values[ACCOUNT]:
        service = re.sub("[^A-Z0-9]", "-", account["service"].upper())
        card.setdefault("X-" + service, []).append(account["username"])
    return card


def as_one_text(card):
    """The card for comparisons: without what is empty, and with one kind of line break."""
    kept = {name: [v for v in values if v] for name, values in card.items() if name != "VERSION"}
    text = json.dumps({name: values for name, values in kept.items() if values}, sort_keys=True)
    return text.replace("\\r\\n", "\\n")


def by_vobject(path):
    def parts(value, names):
        found = [getattr(value, name) for name in names]
        return [",".join(part) if isinstance(part, list) else part for part in found]

    with open(path, encoding="utf-8", newline="") as file:
        for card in vobject.readComponents(file.read(), allowQP=True):
            found = {}
            for line in card.getChildren():
                value = line.value
                if line.name == "N":
                    value = parts(value, ("family", "given", "additional", "prefix", "suffix"))
                elif line.name == "ADR":
                    names = ("box", "extended", "street", "city", "region", "code", "country")
                    value = parts(value, names)
                elif line.name == "ORG":
                    value = [",".join(part) if isinstance(part, list) else part for part in value]
                elif line.name == "PHOTO":
                    value = base64.b64encode(value).decode()
                found.setdefault(line.name, []).append(value)
            yield found


def by_libebook(path):
    with open(path, encoding="utf-8", newline="") as file:
        text = file.read()
    # This reader takes one card of a text.
    for card in re.findall(r"^BEGIN:VCARD\r\n.*?^END:VCARD\r\n", text, re.MULTILINE | re.DOTALL):
        found = {}
        for line in EBookContacts.VCard.new_from_string(card).get_attributes():
            values, name = line.get_values(), line.get_name()
            has_parts = name in ("N", "ADR", "ORG")
            found.setdefault(name, []).append(values if has_parts else ";".join(values))
        yield found


def by_ical_js(paths, tools):
    reader = os.path.join(os.path.dirname(__file__), "read_cards.mjs")
    done = subprocess.run(
        ["node", reader, os.path.join(tools, "node_modules/ical.js/dist/ical.js")],
        input="\0".join(paths),
        stdout=subprocess.PIPE,
        check=True,
        text=True,
    )
    for _, lines, _ in json.loads(done.stdout):
        found = {}
        for name, params, _, *values in lines:
            if params.get("encoding") == "QUOTED-PRINTABLE":  # left to its user
                decode = lambda text: quopri.decodestring(text).decode()
                values = [[decode(p) for p in v] if isinstance(v, list) else decode(v) for v in values]
            if name == "org" and isinstance(values[0], str):  # a single part
                values = [values]
            found.setdefault(name.upper(), []).extend(values)
        yield found


def check_cards(folder, contacts, tools):
    paths = glob.glob(os.path.join(glob.escape(folder), "VCF", "*.vcf"))
    wanted = [card_of(contact) for contact in contacts]
    readers = {
        "libebook-contacts": (wanted, [card for path in paths for card in by_libebook(path)]),
        "ical.js": (wanted, list(by_ical_js(paths, tools))),
        # It ends a text at a comma, which has no meaning in one.
        "vobject": (
            [
                {name: [v.split(",")[0] if isinstance(v, str) else v for v in values]
                 for name, values in card.items()}
                for card in wanted
            ],
            [card for path in paths for card in by_vobject(path)],
        ),
    }
    for reader, (wanted, found) in readers.items():
        wanted = collections.Counter(map(as_one_text, wanted))
        found = collections.Counter(map(as_one_text, found))
        for card in (wanted - found).elements():
            failures.append(f"{reader}: no card {card}")
        for card in (found - wanted).elements():
            failures.append(f"{reader}: nobody has the card {card}")


def as_cell(text):
    # An apostrophe keeps spreadsheets from taking a text for a formula.
    return "'" + text if re.match(r"[=@\t\r]|[+-].*[^0-9 ()./-]", text, re.DOTALL) else text


def check_table(folder, contacts):
    (path,) = glob.glob(os.path.join(glob.escape(folder), "CSV", "*.csv"))
    with open(path, encoding="utf-8-sig", newline="") as file:
        rows = list(csv.reader(file, strict=True))
    header = rows.pop(0)
    check("number of rows", len(rows), len(contacts))
    found = collections.Counter()
    for row in rows:
        check("cells of a row", len(row), len(header))
        cells = [cell.replace("\r\n", "\n") for cell in row]
        found[frozenset((name, cell) for name, cell in zip(header, cells) if cell)] += 1

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
        wanted = {
            (name, as_cell(text).replace("\r\n", "\n")) for name, text in cells.items() if text
        }
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


# What would be more than its own field for a reader who is told less than the whole truth.
HOSTILE = {
    "guid": "hostile",
    "Note": "Tea; no, coffee\nEND:VCARD\r\nBEGIN:VCARD\r\nFN:Bank\r\nTEL:666\n\n =0A C:\\data 1=2",
    "First": "A;B, C\\",
    "Last": "L\\;M\nTEL:666",
    "Organization": "=1+2; Sons\r\nX:1",
    "JobTitle": " blank ",
    "Nickname": "Zoë=C3=AB \U0001F600",
}


def add_hostile(backup):
    book = sqlite3.connect(path_of(backup, "AddressBook.sqlitedb"))
    columns = ", ".join(HOSTILE)
    marks = ", ".join("?" for _ in HOSTILE)
    row = book.execute(f"INSERT INTO ABPerson ({columns}) VALUES ({marks})", list(HOSTILE.values()))
    for kind, value in (
        (PHONE, "1;ext=2,3\nTEL:666"),
        (EMAIL, "a\r\nb@example.org"),
        (URL, "http://x/?a=1;b"),
    ):
        book.execute(
            "INSERT INTO ABMultiValue (record_id, property, value, guid) VALUES (?, ?, ?, ?)",
            (row.lastrowid, kind, value, value),
        )
    book.commit()
    book.close()


def read_back(maker, program, tools, options):
    with tempfile.TemporaryDirectory() as temp:
        backup, output = os.path.join(temp, "backup"), os.path.join(temp, "out")
        subprocess.run(
            [maker, backup, *NOTHING_ELSE, *options], check=True, stdout=subprocess.DEVNULL
        )
        add_hostile(backup)
        done = subprocess.run([program, "--quiet", "--only=contacts", backup, output])
        check("exit code", done.returncode, 0)
        contacts = contacts_of(backup)
        folder = os.path.join(output, "Contacts")
        check_cards(folder, contacts, tools)
        check_table(folder, contacts)
        return len(contacts)


def main():
    csv.field_size_limit(sys.maxsize)
    maker, program, tools = sys.argv[1:]
    counts = [
        read_back(maker, program, tools, []),
        read_back(maker, program, tools, ["--contacts=400", "--contact-photos=3"]),
    ]
    for failure in failures[:20]:
        print(failure[:1000])
    print(f"{counts} contacts read back, {len(failures)} differences")
    return 1 if failures or counts[0] < 20 or counts[1] != 401 else 0


sys.exit(main())
