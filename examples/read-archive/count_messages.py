#!/usr/bin/env python3
"""Counts messages by person and month. Usage: count_messages.py OUTPUT"""

import collections
import json
import pathlib
import sys


def records(path):
    with path.open(encoding="utf-8") as lines:
        for line in lines:
            yield json.loads(line)


archive = pathlib.Path(sys.argv[1], "Archive")
counts = collections.Counter()
for kind in ("messages", "whatsapp"):
    conversations = archive / "data" / f"{kind}.jsonl"
    for conversation in records(conversations) if conversations.exists() else ():
        for message in records(archive / conversation["messages"]):
            sender = message.get("sender", "unknown")
            if isinstance(sender, dict):  # WhatsApp knows names
                sender = sender.get("name") or sender.get("number", "unknown")
            who = "me" if message.get("fromOwner") else sender
            counts[message.get("date", "without a date")[:7], who] += 1

for (month, who), count in sorted(counts.items()):
    print(f"{month}  {count:6}  {who}")
