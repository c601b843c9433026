#!/usr/bin/env python3
"""Writes the SPDX list of a package: its files with their sums, the components that they come from, with versions
and licences, and what the package needs. packaging/components.txt says which file is whose.

Usage: make-spdx.py windows|linux FOLDER NAME VERSION [--libraries FOLDER] [--depends TEXT] >LIST
FOLDER holds the package's files. The libraries' folder is that of scripts/windows/libraries.sh, and the text the
package's field "Depends". The list's date is SOURCE_DATE_EPOCH.
"""
import argparse
import datetime
import fnmatch
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parent.parent
COMPONENTS = PROJECT / "packaging" / "components.txt"
LICENCE_TEXTS = {
    "LicenseRef-hidapi": "This software may be used by anyone for any reason so long as the copyright notice in the "
                         "source files remains intact.",
}


class Row:
    def __init__(self, line):
        cells = [cell.strip() for cell in line.split(" | ")]
        if len(cells) != 5:
            sys.exit(f"{COMPONENTS}: not a row of five cells: {line}")
        self.system, patterns, self.component, self.licence, self.version = cells
        self.patterns = patterns.split()

    def fits(self, name):
        return any(fnmatch.fnmatchcase(name, pattern) for pattern in self.patterns)


def read_rows():
    lines = COMPONENTS.read_text().splitlines()
    return [Row(line) for line in lines if line and not line.startswith("#")]


def debian_version(package):
    shown = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], capture_output=True, text=True)
    if shown.returncode != 0 or not shown.stdout:
        sys.exit(f"{package} is not installed, so its version is not known.")
    return shown.stdout


def version_of(row, options, path=None):
    kind, _, name = row.version.partition(":")
    if kind == "project":
        return options.version
    if kind == "pc":
        text = (pathlib.Path(options.libraries) / "lib" / "pkgconfig" / f"{name}.pc").read_text()
        return re.search(r"^Version:\s*(\S+)", text, re.M).group(1)
    if kind == "deb":
        return debian_version(name)
    if kind == "found":
        found = re.search(name.encode(), path.read_bytes())
        if not found:
            sys.exit(f"{path} does not tell the version of {row.component}.")
        return found.group(1).decode()
    if kind == "with":
        return f"as part of {name}"
    if kind == "unknown":
        return "NOASSERTION"
    sys.exit(f"{COMPONENTS}: unknown source of a version: {row.version}")


def identifier(*parts):
    return "SPDXRef-" + "-".join(re.sub(r"[^A-Za-z0-9.]+", "-", part) for part in parts)


def component(name, licence, version, kind="Component"):
    return {
        "SPDXID": identifier(kind, name),
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
    }


def file_entry(path, name, licence):
    contents = path.read_bytes()
    return {
        "SPDXID": identifier("File", name),
        "fileName": f"./{name}",
        "checksums": [
            {"algorithm": "SHA1", "checksumValue": hashlib.sha1(contents).hexdigest()},
            {"algorithm": "SHA256", "checksumValue": hashlib.sha256(contents).hexdigest()},
        ],
        "licenseConcluded": licence,
        "licenseInfoInFiles": ["NOASSERTION"],
        "copyrightText": "NOASSERTION",
    }


def verification_code(entries):
    sums = sorted(entry["checksums"][0]["checksumValue"] for entry in entries)
    return hashlib.sha1("".join(sums).encode()).hexdigest()


def needed_packages(text):
    """The first alternative of each dependency, without its version."""
    return sorted({entry.split("|")[0].split("(")[0].strip() for entry in text.split(",") if entry.strip()})


def main():
    parser = argparse.ArgumentParser()
    for name in ("system", "folder", "name", "version"):
        parser.add_argument(name)
    parser.add_argument("--libraries")
    parser.add_argument("--depends", default="")
    options = parser.parse_args()
    rows = read_rows()
    folder = pathlib.Path(options.folder)

    components, files, relationships = {}, [], []
    owned = {}

    def relate(one, kind, other):
        relationships.append({"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other})

    def first_row(system, name):
        row = next((row for row in rows if row.system == system and row.fits(name)), None)
        if row is None:
            sys.exit(f"{name} belongs to no component: add it to {COMPONENTS}.")
        return row

    for path in sorted(path for path in folder.rglob("*") if path.is_file() and not path.is_symlink()):
        name = path.relative_to(folder).as_posix()
        row = first_row(options.system, name)
        if row.component not in components:
            components[row.component] = component(row.component, row.licence, version_of(row, options))
        entry = file_entry(path, name, row.licence)
        files.append(entry)
        owned.setdefault(row.component, []).append(entry)
        for part in (part for part in rows if part.system == "inside" and part.fits(name)):
            components[part.component] = component(part.component, part.licence, version_of(part, options, path))
            relate(components[row.component]["SPDXID"], "CONTAINS", components[part.component]["SPDXID"])
    for name, entries in owned.items():
        components[name]["filesAnalyzed"] = True
        components[name]["packageVerificationCode"] = {"packageVerificationCodeValue": verification_code(entries)}
        for entry in entries:
            relate(components[name]["SPDXID"], "CONTAINS", entry["SPDXID"])
    own = components["quillmarsh"]
    for name in owned:
        if name != "quillmarsh":
            relate(own["SPDXID"], "DEPENDS_ON", components[name]["SPDXID"])
    for needed in needed_packages(options.depends):
        row = first_row("depends", needed)
        components[needed] = component(needed, row.licence, debian_version(needed), "Needed")
        relate(own["SPDXID"], "DEPENDS_ON", components[needed]["SPDXID"])

    created = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    used = " ".join(part["licenseConcluded"] for part in components.values())
    json.dump({
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": options.name,
        "documentNamespace": f"https://quillmarsh.example/spdx/{options.name}-{verification_code(files)}",
        "creationInfo": {
            "created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": ["Organization: The quillmarsh authors", "Tool: make-spdx.py"],
        },
        "hasExtractedLicensingInfos": [
            {"licenseId": name, "extractedText": text} for name, text in LICENCE_TEXTS.items() if name in used],
        "packages": list(components.values()),
        "files": files,
        "relationships": [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                           "relatedSpdxElement": own["SPDXID"]}] + relationships,
    }, sys.stdout, indent=1)
    print()


main()
