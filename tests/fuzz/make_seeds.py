#!/usr/bin/env python3
"""Writes a few whole inputs for each parser of fuzz-parsers, and messages as the phone kept them before
system version 6 in place of those of a backup: make_seeds.py FOLDER BACKUP"""
import contextlib
import datetime
import pathlib
import plistlib
import sqlite3
import struct
import sys

folder = pathlib.Path(sys.argv[1])


def seed(parser, *contents):
    place = folder / parser
    place.mkdir(parents=True, exist_ok=True)
    for number, content in enumerate(contents):
        (place / str(number)).write_bytes(content)


def binary(value):
    return plistlib.dumps(value, fmt=plistlib.FMT_BINARY)


def archive(root, *others):
    uid = plistlib.UID
    return binary({"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": uid(1)},
                   "$objects": ["$null", root, *others]})


def field(number, content):  # of a protobuf message, up to 127 bytes
    if isinstance(content, int):
        return bytes([number << 3, content])
    return bytes([number << 3 | 2, len(content)]) + content


def box(kind, content):
    return struct.pack(">I", 8 + len(content)) + kind + content


def counted(text):  # of Manifest.mbdb
    return struct.pack(">H", len(text)) + text


uid = plistlib.UID
values = {"text": "Zo\u00eb \U0001f600", "whole": 42, "negative": -7, "huge": 2**64 - 2, "real": 0.5,
          "yes": True, "bytes": b"\0\xff", "date": datetime.datetime(2024, 2, 29),
          "list": [1, "two", {"three": 3}], "uid": uid(5)}
seed("property-list", binary(values), plistlib.dumps({k: v for k, v in values.items() if k != "uid"}))
seed("keyed-archive",
     archive({"NS.keys": [uid(2)], "NS.objects": [uid(3)]}, "a", {"NS.string": "b"}),
     archive({"URL": uid(2), "when": uid(4)}, {"NS.base": uid(0), "NS.relative": uid(3)},
             "https://example.org/", {"NS.time": 1.5}))
seed("index-record",
     archive({"Mode": 33188, "Size": 12, "LastModified": 1700000000, "Birth": 1700000000,
              "ExtendedAttributes": uid(2), "EncryptionKey": uid(3)},
             binary({"name": b"value"}), {"NS.data": b"\3\0\0\0" + bytes(40)}))
seed("typed-stream",
     b"\x04\x0bstreamtyped\x81\xe8\x03\x84\x01@\x84\x84\x84\x12NSAttributedString\x00\x84\x84\x08NSObject"
     b"\x00\x85\x92\x84\x84\x84\x08NSString\x01\x94\x84\x01+\x05hello\x86\x84\x02iI\x01\x05\x92\x84\x84\x84"
     b"\x0cNSDictionary\x00\x94\x84\x01i\x00\x86\x86")
body = field(2, b"Title\nline") + field(5, field(1, 5) + field(2, field(1, 100))) \
    + field(5, field(1, 5) + field(9, b"https://example.org"))
seed("note", field(2, field(2, field(3, body))))
seed("note-table", field(2, field(3, field(4, b"crRows") + field(5, b"com.apple.table")
                                  + field(3, field(13, field(1, 0))))))
seed("note-html",
     b"<ul><li>a<ol><li><a href='https://example.org'>b</a></ol></ul><table><tr><td>c<td><font "
     b"color=#f00><b>d</b></font></table><pre> e\n&lt;&#8364;</pre><img alt=f><object><!-- g -->")
seed("manifest-mbdb",
     b"mbdb\5\0" + counted(b"HomeDomain") + counted(b"Library/a.db") + b"\xff\xff" * 3
     + struct.pack(">HQIIIIIQBB", 0o100644, 7, 0, 0, 1700000000, 0, 0, 12, 0, 1) + counted(b"n")
     + counted(b"v"))
seed("keybag",
     b"".join(tag + struct.pack(">I", len(value)) + value for tag, value in
              [(b"VERS", b"\0\0\0\3"), (b"TYPE", b"\0\0\0\1"), (b"UUID", bytes(16)), (b"SALT", bytes(20)),
               (b"ITER", b"\0\0\0\1"), (b"UUID", bytes(16)), (b"CLAS", b"\0\0\0\1"),
               (b"WRAP", b"\0\0\0\2"), (b"WPKY", bytes(40))]))
full = b"\0\0\0\0"
meta = full + box(b"pitm", full + b"\0\1") \
    + box(b"iinf", full + b"\0\1" + box(b"infe", b"\2\0\0\0\0\1\0\0hvc1\0")) \
    + box(b"iloc", full + b"\x44\0\0\1\0\1\0\0\0\1" + struct.pack(">II", 16, 16)) \
    + box(b"iprp", box(b"ipco", box(b"ispe", full + struct.pack(">II", 64, 64)))
          + box(b"ipma", full + b"\0\0\0\1\0\1\1\1"))
seed("heif", box(b"ftyp", b"heic\0\0\0\0mif1heic") + box(b"meta", meta) + box(b"mdat", bytes(16)))
seed("jpeg",
     b"\xff\xd8\xff\xc2\0\x0b\x08\0\x10\0\x10\1\1\x11\0" + b"\xff\xda\0\x08\1\1\0\0\0\0ab" * 2 + b"\xff\xd9")
seed("vcard", b"BEGIN:VCARD\r\nFN:Zo\xc3\xab\r\nitem1.TEL;type=CELL:+1 555\r\n 0100\r\nEND:VCARD\r\n")
seed("repeat-rule", b"BYDAY=MO,-1FR;BYMONTH=2,3", b"D=0MO,0WE;S=-1", b"BYMONTHDAY=1,-1;BYSETPOS=2")

# Changes that change nothing: the number of the database's own version.
change = [bytes([database, 0, 0, 63, 0]) for database in range(20)]
seed("backup", *change)
seed("old-messages", *change[:3])
messages = pathlib.Path(sys.argv[2]) / "3d" / "3d0d7e5fb2ce288813306e4d4636395e047a3d28"
messages.unlink()
with contextlib.closing(sqlite3.connect(messages)) as database:
    database.executescript("""
        CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER,
            text TEXT, flags INTEGER, group_id INTEGER, subject TEXT, recipients BLOB,
            is_madrid INTEGER, madrid_handle TEXT, madrid_roomname TEXT, madrid_flags INTEGER,
            madrid_error INTEGER, madrid_attributedBody BLOB);
        CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY, group_id INTEGER, address TEXT);
        CREATE TABLE madrid_chat (room_name TEXT, participants BLOB);
        CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY, message_id INTEGER, data BLOB,
            part_id INTEGER, content_type TEXT);
        INSERT INTO group_member(group_id, address) VALUES (1, '(555) 010-0123'), (2, '28777'),
            (2, 'bob@example.org');
        INSERT INTO message(ROWID, address, date, text, flags, group_id) VALUES
            (1, '+15550100123', 1300000000, 'in', 2, 1), (2, '28777', 1200000000, NULL, 2, 2);
        INSERT INTO msg_pieces(message_id, part_id, content_type, data) VALUES
            (2, 0, 'application/smil', '<smil><par><img src="2.jpg"/></par></smil>'),
            (2, 1, 'text/plain; charset=utf-8', 'Look'), (2, 2, 'image/jpeg', NULL),
            (2, 3, 'audio/amr', NULL);""")
    names = binary(["bob@example.org", "+15550100123"])
    database.execute("INSERT INTO message(ROWID, date, flags, recipients) VALUES (3, 1300000060, 3, ?)",
                     [names])
    database.execute("INSERT INTO madrid_chat VALUES ('room', ?)", [names])
    database.execute("""INSERT INTO message(ROWID, date, flags, is_madrid, madrid_handle, madrid_roomname,
                     madrid_flags, madrid_attributedBody) VALUES (4, 330000000, 0, 1, '28777', 'room', 1, ?)""",
                     [(folder / "typed-stream" / "0").read_bytes()])
    database.commit()
