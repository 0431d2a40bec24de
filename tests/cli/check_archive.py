#!/usr/bin/env python3
"""The archive of each kind of sample backup: every link leads somewhere in OUTPUT, nothing runs that is not the
archive's own, the data is what its schema and the databases say, and a second export makes the same bytes; also
when every text of the backup is hostile. Usage: check_archive.py MAKE_SAMPLE_BACKUP DATAEXPORT DOCS"""

import hashlib
import html.parser
import json
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.parse

import jsonschema

BACKUPS = {
    "of today": [],
    "of old releases": ["--messages-era", "9", "--planner-era", "9", "--old-style"],
    "of the first releases": ["--messages-era", "6", "--planner-era", "6"],
    "with long chats": ["--messages", "2400", "--conversations", "2", "--whatsapp-messages", "1200",
                        "--whatsapp-chats", "1"],
}
# Every character of a path that means something in an address, a shell or on another system.
OUTPUT = "out of “100 %” #1? ünï 日本 'a' & b"

HOSTILE = ("\"'><script>alert(1)</script><img src=http://evil.example/x onerror=alert(1)>`${alert(1)}`</p></ul>"
           "<!--\u2028\u202e</script>\\u003c&lt;javascript:alert(1) ../../../../etc/passwd")
# What must not be changed for the reader to find its rows.
KEPT_COLUMNS = re.compile(
    r"guid|uuid|identifier|path|filename|uri|uti|mime|service|version|key|directory|zone|type|jid|phone|stanza|"
    r"^Z_|account_login|bundle|provider|color|domain|handle|^id$|address|filepath|token|label", re.I)
DATABASES = [
    ("HomeDomain", "Library/SMS/sms.db"), ("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb"),
    ("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata"),
    ("HomeDomain", "Library/Calendar/Calendar.sqlitedb"), ("HomeDomain", "Library/Safari/Bookmarks.db"),
    ("HomeDomain", "Library/Safari/History.db"), ("HomeDomain", "Library/Voicemail/voicemail.db"),
    ("AppDomainGroup-group.net.whatsapp.WhatsApp.shared", "ChatStorage.sqlite"),
    ("AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite"),
    ("CameraRollDomain", "Media/PhotoData/Photos.sqlite"),
]
# A kind of records, its database and the rows that it must have. Shown as they are: no filter, no merging.
ROWS = [
    ("messages", "HomeDomain", "Library/SMS/sms.db", "SELECT ROWID FROM message"),
    ("calls", "HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", "SELECT Z_PK FROM ZCALLRECORD"),
    ("events", "HomeDomain", "Library/Calendar/Calendar.sqlitedb",
     "SELECT ROWID FROM CalendarItem WHERE entity_type = 2 AND calendar_id > 0"),
    ("voicemail", "HomeDomain", "Library/Voicemail/voicemail.db", "SELECT ROWID FROM voicemail"),
    ("people", "HomeDomain", "Library/AddressBook/AddressBook.sqlitedb",
     "SELECT ROWID FROM ABPerson WHERE coalesce(PersonLink, -1) <= 0"),
    ("notes", "AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite",
     "SELECT Z_PK FROM ZICCLOUDSYNCINGOBJECT WHERE ZNOTEDATA IS NOT NULL"),
    ("bookmarks", "HomeDomain", "Library/Safari/Bookmarks.db", "SELECT id FROM bookmarks WHERE type = 0"),
    ("visits", "HomeDomain", "Library/Safari/History.db", "SELECT id FROM history_items"),
    ("memos", "MediaDomain", "Media/Recordings/CloudRecordings.db",
     "SELECT Z_PK FROM ZCLOUDRECORDING"),
    ("whatsapp", "AppDomainGroup-group.net.whatsapp.WhatsApp.shared", "ChatStorage.sqlite",
     "SELECT Z_PK FROM ZWAMESSAGE WHERE coalesce(ZFROMJID, '') <> 'status@broadcast'"),
]


class Page(html.parser.HTMLParser):
    """What a page loads, where it leads, and what it should not have."""

    def __init__(self, text: str):
        super().__init__()
        self.links, self.loads, self.ids, self.faults, self.has_policy = [], [], set(), [], False
        self.in_script = False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if "id" in values:
            if values["id"] in self.ids:
                self.faults.append(f"id {values['id']} twice")
            self.ids.add(values["id"])
        self.has_policy |= tag == "meta" and values.get("http-equiv") == "Content-Security-Policy"
        self.in_script = tag == "script"
        for name, value in values.items():
            if name.startswith("on") or name in ("style", "srcdoc", "action", "formaction"):
                self.faults.append(f"{tag} {name}")
            if name in ("src", "poster", "data-view") or (tag == "link" and name == "href"):
                self.loads.append(value)
            elif name == "href":
                self.links.append((value, values))
        if tag in ("iframe", "object", "embed", "base", "style", "svg", "math"):
            self.faults.append(tag)

    def handle_data(self, data):
        if self.in_script and data.strip():
            self.faults.append("a script in the page")


def page_faults(output: pathlib.Path):
    pages = {path: Page(path.read_text(encoding="utf-8")) for path in output.rglob("*.html")
             if path.parent == output or (output / "Archive") in path.parents}
    assert len(pages) > 10, "there is no archive"
    for path, page in pages.items():
        for fault in page.faults + ([] if page.has_policy else ["no policy"]):
            yield f"{path.name}: {fault}"
        for target in page.loads:
            yield from target_faults(output, pages, path, target)
        for target, attributes in page.links:
            scheme = urllib.parse.urlsplit(target).scheme
            if scheme in ("http", "https", "mailto", "tel"):
                if attributes.get("rel") != "noreferrer":
                    yield f"{path.name}: {target} tells where it was followed from"
                continue
            yield from target_faults(output, pages, path, target)


def target_faults(output, pages, path, target):
    parts = urllib.parse.urlsplit(target)
    if parts.scheme or parts.netloc or parts.path.startswith("/"):
        yield f"{path.name}: {target} leads away"
        return
    there = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
    if output not in there.parents or not there.exists():
        yield f"{path.name}: {target} is not in OUTPUT"
    elif parts.fragment and there in pages and parts.fragment not in pages[there].ids:
        yield f"{path.name}: nothing is at {target}"


def search_faults(output: pathlib.Path):
    """Each hit of the search is in the archive."""
    folder = output / "Archive" / "search"
    places, shards = json.loads("[" + re.fullmatch(r"archivePlaces\((.*)\);\n", (folder / "places.js").read_text(),
                                                   re.S)[1] + "]")
    entries = 0
    for name, newest, oldest, count in shards:
        if newest < oldest:
            yield f"{name}: months are in disorder"
        text = (folder / name).read_text()
        body = re.fullmatch(r"archiveShard\(`(.*)`\);\n", text, re.S)[1]
        if re.search(r"(?<!\\)(\\\\)*(`|\$\{)", body):
            yield f"{name}: the string can be left"
        lines = body.split("\n")[:-1]
        entries += len(lines)
        if len(lines) != count:
            yield f"{name}: {len(lines)} lines, {count} told"
        for line in lines:
            _, place, page, _, _ = line.split("\t")
            file, _, anchor = page.partition("#")
            path = output / "Archive" / places[int(place, 16)][2] / file
            if not path.exists() or (anchor and f' id="{anchor}"' not in path.read_text()):
                yield f"search leads to {path.name}#{anchor}"
    if entries < 100:
        yield f"the search knows {entries} texts only"


def data_of(output: pathlib.Path, schema: dict):
    """All records by the name of their kind, after a look at each."""
    root = output / "Archive" / "data"
    records = {}
    for path in sorted(root.rglob("*.jsonl")):
        kind = path.relative_to(root).with_suffix("")
        name = str(kind) if len(kind.parts) == 1 else kind.parts[0] + "/*"
        validator = jsonschema.Draft7Validator({**schema["files"][name], "$defs": schema["$defs"]})
        for line in path.read_text(encoding="utf-8").split("\n")[:-1]:
            record = json.loads(line)
            fault = jsonschema.exceptions.best_match(validator.iter_errors(record))
            if fault:
                raise SystemExit(f"{name}: {fault.message} at {list(fault.path)}")
            records.setdefault(name, []).append(record)
    return records


def files_of(records):
    """Every path of a file in the data."""
    for key, value in records.items() if isinstance(records, dict) else enumerate(records):
        if isinstance(value, (dict, list)):
            yield from files_of(value)
        elif key in ("file", "film", "editedFile", "preview", "picture") and isinstance(value, str):
            yield value


def database(backup: pathlib.Path, domain: str, path: str) -> pathlib.Path:
    name = hashlib.sha1(f"{domain}-{path}".encode()).hexdigest()
    nested = backup / name[:2] / name
    return nested if nested.exists() else backup / name


def row_faults(backup: pathlib.Path, records: dict):
    compared = 0
    for kind, domain, path, query in ROWS:
        file = database(backup, domain, path)
        found = {record["row"] for record in rows_in(records.get(f"{kind}/*", records.get(kind, [])))}
        try:
            wanted = {row for row, in sqlite3.connect(f"file:{file}?mode=ro", uri=True).execute(query)}
        except sqlite3.Error:
            continue  # this release keeps them elsewhere
        compared += len(wanted)
        for row in sorted(wanted - found):
            yield f"{kind}: row {row} is missing"
    if compared < 150:
        yield f"only {compared} rows were compared"


def rows_in(records):
    for record in records:
        if "row" in record:
            yield record
        yield from rows_in(record.get("reactions", []) if isinstance(record.get("reactions"), list) else [])


def make_hostile(backup: pathlib.Path):
    changed = 0
    for domain, path in DATABASES:
        file = database(backup, domain, path)
        if not file.exists():
            continue
        connection = sqlite3.connect(file)
        for trigger, in connection.execute("SELECT name FROM sqlite_master WHERE type = 'trigger'").fetchall():
            connection.execute(f'DROP TRIGGER "{trigger}"')
        tables = connection.execute("SELECT name FROM sqlite_master WHERE type = 'table'").fetchall()
        for table, in tables:
            columns = connection.execute(f'PRAGMA table_info("{table}")').fetchall()
            for _, column, kind, *_ in columns:
                if kind.upper() in ("TEXT", "VARCHAR", "") and not KEPT_COLUMNS.search(column):
                    changed += connection.execute(
                        f'UPDATE OR IGNORE "{table}" SET "{column}" = ? WHERE typeof("{column}") = ?',
                        (HOSTILE, "text")).rowcount
        connection.commit()
        connection.close()
    assert changed > 200, f"only {changed} texts are hostile"


def export(program: str, backup: pathlib.Path, output: pathlib.Path):
    run = subprocess.run([program, "--quiet", "--formats", "archive,json", str(backup), str(output)],
                         capture_output=True, text=True)
    if run.returncode not in (0, 3):
        raise SystemExit(f"exit code {run.returncode}: {run.stderr}")


def stop_faults(make_sample: str, program: str, folder: pathlib.Path):
    """A run that is stopped says so on its entrance, and every link works."""
    backup, output = folder / "large", folder / "stopped"
    subprocess.run([make_sample, "--messages", "60000", "--conversations", "300", str(backup)], check=True,
                   capture_output=True)
    run = subprocess.Popen([program, "--quiet", "--formats", "archive,json", str(backup), str(output)],
                           stderr=subprocess.DEVNULL)
    while run.poll() is None and len(list(output.glob("Archive/chats/*"))) < 5:
        time.sleep(0.001)
    run.terminate()
    if run.wait() != 130:
        return [f"stopped: exit code {run.returncode}"]
    is_told = "Stopped." in (output / "index.html").read_text()
    left = [path.name for path in output.rglob(".*")]
    return [*page_faults(output.resolve()), *([] if is_told else ["stopped: the entrance does not say so"]), *left]


def digests(output: pathlib.Path):
    return {path.relative_to(output): hashlib.sha1(path.read_bytes()).hexdigest()
            for path in (output / "Archive").rglob("*") if path.is_file()}


def document_faults(docs: pathlib.Path, schema: dict):
    """archive.md tells of every field that the schema has, and of no other."""
    text = (docs / "archive.md").read_text()
    for name, definition in schema["$defs"].items():
        section = re.search(rf"^### {name}\n(.*?)(?=^### |\Z)", text, re.M | re.S)
        told = set(re.findall(r"^\| `(\w+)` \|", section[1], re.M)) if section else set()
        if told != set(definition.get("properties", {})):
            yield f"archive.md and the schema differ in {name}: {told ^ set(definition.get('properties', {}))}"


def main(make_sample: str, program: str, docs: pathlib.Path) -> int:
    schema = json.loads((docs / "archive.schema.json").read_text())
    faults = list(document_faults(docs, schema))
    with tempfile.TemporaryDirectory() as temp:
        for name, options in [*BACKUPS.items(), ("hostile", [])]:
            backup, output = pathlib.Path(temp, name, "backup"), pathlib.Path(temp, name, OUTPUT).resolve()
            backup.parent.mkdir()
            subprocess.run([make_sample, *options, str(backup)], check=True, capture_output=True)
            if name == "hostile":
                make_hostile(backup)
            export(program, backup, output)
            records = data_of(output, schema)
            found = [*page_faults(output), *search_faults(output), *row_faults(backup, records)]
            found += [f"data: {file} is not there" for kind in records.values() for file in files_of(kind)
                      if not (output / file).exists()]
            again = output.parent / "again"
            export(program, backup, again)
            first, second = digests(output), digests(again)
            found += [f"{path} differs in a second export" for path in first.keys() | second.keys()
                      if first.get(path) != second.get(path)]
            faults += [f"backup {name}: {fault}" for fault in found]
        faults += stop_faults(make_sample, program, pathlib.Path(temp))
    print("\n".join(faults[:40]))
    return 1 if faults else 0


sys.exit(main(sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])))
