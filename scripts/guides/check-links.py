#!/usr/bin/env python3
"""Checks what a Markdown linter does not see in the guides: links, anchors, named files and tables.

A link must lead to a file of the project, and its anchor to a heading there. A path in `code` that begins with
a folder of the project must exist; a class may be named without its suffix. Every row of a table must have as
many cells as its head, and a table must follow a blank line: otherwise it is not shown as one.
Addresses of other servers are not tried.
Usage: scripts/guides/check-links.py FILE...
"""
import os
import re
import subprocess
import sys

complaints = []


def project_files():
    """Returns the files of the project, those not yet committed included."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    return {name for name in listed.split("\0") if name and os.path.exists(name)}


FILES = project_files()
FOLDERS = {os.path.dirname(name)[:end] for name in FILES
           for end in [match.start() for match in re.finditer("/|$", os.path.dirname(name))]} - {""}


def without_code_blocks(text):
    """Returns the lines of a page; those of code blocks are empty, so that line numbers stay."""
    lines, fence = [], None
    for line in text.split("\n"):
        mark = re.match(r"\s*(```+|~~~+)", line)
        if mark and fence is None:
            fence = mark.group(1)
        elif mark and mark.group(1).startswith(fence):
            fence, line = None, ""
        lines.append("" if fence or re.match(r" {4}\S", line) else line)
    return lines


def anchors_of(page):
    """Returns the anchors that a forge gives to the headings of a page."""
    anchors = set()
    with open(page, encoding="utf-8") as file:
        for line in without_code_blocks(file.read()):
            heading = re.match(r"#+ +(.*?)[ #]*$", line)
            if not heading:
                continue
            shown = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading.group(1)).lower()
            anchor = base = re.sub(r"[^\w\- ]", "", shown).replace(" ", "-")
            number = 0
            while anchor in anchors:
                number += 1
                anchor = f"{base}-{number}"
            anchors.add(anchor)
    return anchors


def check_link(page, place, target):
    if re.match(r"[a-z]+:", target):
        return
    path, _, anchor = target.partition("#")
    file = os.path.normpath(os.path.join(os.path.dirname(page), path)) if path else page
    if file not in FILES and file not in FOLDERS:
        complaints.append(f"{place}: there is no {file}")
    elif anchor and anchor not in anchors_of(file):
        complaints.append(f"{place}: {file} has no heading for #{anchor}")


def check_named_file(place, name):
    """Checks a piece of code that looks like a path in the project."""
    if not re.fullmatch(r"\.?[a-z]+(/[\w.@+-]+)+/?", name) or name.split("/")[0] not in FOLDERS:
        return
    path = name.rstrip("/")
    if not {path, f"{path}.h", f"{path}.cpp", f"{path}.md"} & (FILES | FOLDERS):
        complaints.append(f"{place}: there is no {name}")


def cells(row):
    return len(re.findall(r"(?<!\\)\|", row.strip())) - 1


def check_tables(page, lines):
    head = None
    for number, line in enumerate(lines, 1):
        if not line.startswith("|"):
            head = None
        elif head is None:
            head = cells(line)
            if number > 1 and lines[number - 2].strip():
                complaints.append(f"{page}:{number}: a table needs a blank line before it")
            if number == len(lines) or not re.fullmatch(r"\|( ?:?-+:? ?\|)+", lines[number].strip()):
                complaints.append(f"{page}:{number}: a table needs a line |---| under its head")
        elif cells(line) != head:
            complaints.append(f"{page}:{number}: {cells(line)} cells under a head of {head}")


def check_page(page):
    with open(page, encoding="utf-8") as file:
        lines = without_code_blocks(file.read())
    check_tables(page, lines)
    links = 0
    for number, line in enumerate(lines, 1):
        place = f"{page}:{number}"
        for code in re.findall(r"`([^`]+)`", line):
            check_named_file(place, code)
        for target in re.findall(r"\]\(([^)\s]+)\)", re.sub(r"`[^`]*`", "", line)):
            check_link(page, place, target)
            links += 1
    return links


pages = sys.argv[1:]
if not pages:
    sys.exit(__doc__)
links = sum(check_page(page) for page in pages)
if not links:
    complaints.append("no links were found")
if complaints:
    sys.exit("\n".join(complaints))
print(f"The {links} links of {len(pages)} guides lead somewhere.")
