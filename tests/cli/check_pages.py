"""Exports a sample backup and has the Nu Html Checker look at each page, which may find no error.

usage: check_pages.py MAKE_SAMPLE_BACKUP DATAEXPORT TOOLS
"""

import glob
import os
import subprocess
import sys
import tempfile

FOLDERS = (
    "",
    "Calendar",
    "Call History",
    "Contacts/HTML",
    "Messages",
    "Notes",
    "Reminders",
    "Safari",
    "WhatsApp",
)
NOTHING_ELSE = [f"--{what}=0" for what in ("photos", "videos", "books", "app-documents")]

maker, program, tools = sys.argv[1:]
with tempfile.TemporaryDirectory() as temp:
    backup, output = os.path.join(temp, "backup"), os.path.join(temp, "out")
    subprocess.run([maker, backup, *NOTHING_ELSE], check=True, stdout=subprocess.DEVNULL)
    subprocess.run([program, "--quiet", backup, output], stderr=subprocess.DEVNULL)
    pages = [glob.glob(os.path.join(output, folder, "*.html")) for folder in FOLDERS]
    pages.append(glob.glob(os.path.join(output, "Archive", "**", "*.html"), recursive=True))
    missing = [folder for folder, found in zip((*FOLDERS, "Archive"), pages) if not found]
    checker = os.path.join(tools, "node_modules/vnu-jar/build/dist/vnu.jar")
    done = subprocess.run(
        ["java", "-jar", checker, "--errors-only", *(page for found in pages for page in found)],
        stderr=subprocess.PIPE,
        text=True,
    )
print(done.stderr, f"folders without a page: {missing}")
sys.exit(1 if missing or done.returncode != 0 else 0)
