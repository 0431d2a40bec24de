#!/usr/bin/env python3
"""README tells the truth: ./run and --help print what it shows, its example is part of the one in examples/, and
every link of README and docs leads somewhere. Usage: check_readme.py PROJECT BUILD"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.parse


def blocks(text: str, language: str) -> list[str]:
    found = re.findall(r"^```(\w*)\n(.*?)^```$", text, re.M | re.S)
    return [content for kind, content in found if kind == language]


def shown_by_run(project: pathlib.Path, build: str) -> str:
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(project / "run", folder)
        environment = {**os.environ, "DATAEXPORT_BUILD": build, "TZ": "UTC"}
        run = subprocess.run(["./run"], cwd=folder, env=environment, text=True, check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if not pathlib.Path(folder, "exported", "index.html").is_file():
            raise SystemExit("./run made no exported/index.html")
        return "$ ./run\n" + run.stdout.replace(f"“{folder}/", "“…/")


def dead_links(project: pathlib.Path):
    for page in [project / "README.md", project / "CONTRIBUTING.md", *project.glob("docs/**/*.md")]:
        for target in re.findall(r"\]\(([^)#]+)(?:#[^)]*)?\)", page.read_text()):
            if ":" not in target and not (page.parent / urllib.parse.unquote(target)).exists():
                yield f"{page.relative_to(project)}: {target} is not there"


def main(project: pathlib.Path, build: str) -> int:
    readme = (project / "README.md").read_text()
    faults = list(dead_links(project))
    expected = blocks(readme, "")[0].splitlines()
    shown = shown_by_run(project, build).splitlines()
    if shown != expected:
        faults.append("./run prints something else than README shows:")
        faults += [f"  README: {a}\n  ./run:  {b}" for a, b in zip(expected, shown) if a != b]
        faults += [f"  {len(expected)} and {len(shown)} lines"]
    program = pathlib.Path(build, "src/cli/dataexport")
    if blocks(readme, "")[1] not in subprocess.check_output([program, "--help"], text=True):
        faults.append("--help prints other options than README shows")
    example = (project / "examples/own-item-model/main.cpp").read_text()
    for line in blocks(readme, "cpp")[0].splitlines():
        if line.split("//")[0].strip() not in example:
            faults.append(f"no line of the example: {line}")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2]))
