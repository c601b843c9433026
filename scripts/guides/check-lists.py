#!/usr/bin/env python3
"""Checks the lists in the guides against what they list, both ways: nothing missing, nothing invented.

A list is the first column of the tables with a certain head, such as "Script" in CONTRIBUTING.md. The graph in
docs/architecture.md is generated from the list of modules: --write brings it up to date.
Usage: scripts/guides/check-lists.py [--write]
"""
import json
import os
import re
import subprocess
import sys

complaints = []
checked = 0


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout


def rows(page, head):
    """Returns the cells of all rows of the tables in `page` whose first column is headed `head`."""
    found, current = [], None
    for line in read(page).split("\n"):
        if not line.startswith("|"):
            current = None
            continue
        cells = [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if current is None:
            current = cells[0]
        elif current == head and not set(line) <= set("|-: "):
            found.append(cells)
    return found


def codes(cell):
    return re.findall(r"`([^`]+)`", cell)


MODULES = run("cmake", "-P", "cmake/print-modules.cmake").splitlines()


def compare(page, head, actual, source):
    """Compares the names in the first column with those that `source` has."""
    global checked
    listed = [name for row in rows(page, head) for name in codes(row[0])]
    checked += len(listed)
    if not actual:
        complaints.append(f"{source} has nothing to compare the table \"{head}\" of {page} with")
    for name in sorted(set(actual) - set(listed)):
        complaints.append(f"{page}: the table \"{head}\" lacks `{name}` (of {source})")
    for name in sorted(set(listed) - set(actual)):
        complaints.append(f"{page}: the table \"{head}\" names `{name}`, which {source} does not have")
    for name in sorted({name for name in listed if listed.count(name) > 1}):
        complaints.append(f"{page}: the table \"{head}\" names `{name}` twice")


def strings(path, pattern, begin="", end=None):
    """Returns what `pattern` captures in a source, between two texts if they are given."""
    text = read(path)
    text = text[text.index(begin):] if begin in text else ""
    return re.findall(pattern, text[:text.find(end)] if end else text, re.MULTILINE)


def check_scripts():
    files = run("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.sh", "*.py", "*.rb",
                ".ci/run")
    scripts = [name for name in files.split() if not name.startswith("tests/") and os.path.exists(name)]
    compare("CONTRIBUTING.md", "Script", scripts, "the project")
    allowed = {"scripts/demo.sh", "scripts/test.sh"}
    for name in sorted(set(re.findall(r"[\w.-]+(?:/[\w.-]+)+\.(?:sh|py)\b", read("README.md")))):
        if name.removeprefix("./") not in allowed:
            complaints.append(f"README.md names {name}: the place for scripts is CONTRIBUTING.md")


def check_presets():
    presets = json.loads(read("CMakePresets.json"))["configurePresets"]
    shown = [preset["name"] for preset in presets if not preset.get("hidden")]
    compare("CONTRIBUTING.md", "Preset", shown, "CMakePresets.json")


def check_simulator():
    page, faults = "simulator/README.md", "simulator/server/ServerFault.cpp"
    compare(page, "Fault", strings(faults, r'^    \{"([^"]+)"', "FaultKind kinds[]", "\n};"), faults)
    compare(page, "Key", strings(faults, r'\{"([^"]+)", read', "Key keys[]", "\n};"), faults)
    player = "simulator/standin/ScriptPlayer.cpp"
    compare(page, "Step", strings(player, r'step\.contains\("([^"]+)"\)'), player)
    operation = r'operation [!=]= QLatin1String\("([^"]+)"\)'
    for head, source in (("Request", "BusServer"), ("Library request", "ListedBus")):
        compare(page, head, set(strings(f"simulator/bus/{source}.cpp", operation)), source)


def check_harness():
    source = "harness/probe/ProbeRequestHandler.cpp"
    compare("harness/README.md", "Operation", strings(source, r'operation == QLatin1String\("([^"]+)"\)'), source)


def modules():
    """Returns the modules, each with those that it may include beside itself, from the ground up."""
    allowed = {}
    for line in MODULES:
        name, _, others = line.partition(":")
        name = name.split()[0]
        allowed[name] = [other for other in dict.fromkeys(others.split()) if other != name]
    return allowed


def reachable(allowed, module):
    return set(allowed[module]).union(*(reachable(allowed, other) for other in allowed[module]))


def graph(allowed):
    """Draws the modules. An arrow that follows from two others is left out."""
    lines = ["```mermaid", "graph TD"]
    for module in reversed(list(allowed)):
        implied = set().union(*(reachable(allowed, other) for other in allowed[module]))
        arrows = [other for other in allowed[module] if other not in implied]
        lines += [f"    {module} --> {other}" for other in arrows] or [f"    {module}"]
    return "\n".join(lines + ["```"])


def check_modules():
    page = "docs/architecture.md"
    allowed = modules()
    compare(page, "Module", [f"{module}/" for module in allowed], "cmake/ModuleList.cmake")
    for cells in rows(page, "Module"):
        module = codes(cells[0])[0].rstrip("/")
        listed = set(re.findall(r"[a-z]+", cells[-1])) if cells[-1] != "–" else set()
        everything = cells[-1] == "all of the above"
        if module in allowed and not everything and listed != set(allowed[module]):
            complaints.append(f"{page}: {module}/ may include: {', '.join(allowed[module]) or '–'}")
        above = set(list(allowed)[:list(allowed).index(module)]) if module in allowed else set()
        if everything and set(allowed[module]) != above:
            complaints.append(f"{page}: {module}/ may not include all of the above")

    drawn = "<!-- modules: scripts/guides/check-lists.py --write -->\n\n"
    text = read(page)
    before, mark, rest = text.partition(drawn)
    old, end, after = rest.partition("\n```\n")
    if not mark or not end:
        complaints.append(f"{page} has no graph of the modules")
    elif old + "\n```" != graph(allowed):
        if "--write" in sys.argv[1:]:
            with open(page, "w", encoding="utf-8") as file:
                file.write(before + mark + graph(allowed) + "\n" + after)
        else:
            complaints.append(f"{page}: the graph of the modules is out of date: {sys.argv[0]} --write")


def check_functions():
    """Looks for each function that the maintainers' pages name in the sources."""
    sources = run("git", "grep", "-hI", "--untracked", "-oE", r"\b[A-Za-z]\w+\(", "--", "*.cpp", "*.h")
    known = set(sources.split())
    pages = ("CONTRIBUTING.md", "docs/architecture.md", "harness/README.md", "simulator/README.md")
    for page in pages:
        for name in sorted(set(re.findall(r"\b[A-Za-z]\w+\((?=\w*\))", read(page)))):
            if name not in known:
                complaints.append(f"{page}: no source has {name})")


def check_variables():
    """Looks for each variable that a guide names in what is no guide."""
    named = run("git", "grep", "-oE", "--untracked", r"QUILLMARSH_[A-Z_]*[A-Z]", "--", "*.md")
    known = set(run("git", "grep", "-hoE", "--untracked", r"QUILLMARSH_[A-Z_]*[A-Z]", "--", ".", ":!*.md").split())
    for line in sorted(set(named.split())):
        page, name = line.split(":")
        if name not in known:
            complaints.append(f"{page}: nothing uses {name}")


def check_threads():
    """Looks for each product file that starts a thread in the section on threads."""
    page = "docs/architecture.md"
    section = read(page).partition("## Threads\n")[2].partition("\n## ")[0]
    product = [line.split()[0] for line in MODULES if " product:" in line]
    files = run("git", "grep", "-lI", "--untracked", "-E", r"std::thread( m_\w+;|\()|QtConcurrent::run\(|new QThread", "--",
                *[f"{module}/*.{suffix}" for module in product for suffix in ("cpp", "h")]).split()
    for name in sorted({re.sub(r"_(win|linux)$", "", os.path.splitext(os.path.basename(file))[0]) for file in files}):
        if f"`{name}`" not in section:
            complaints.append(f"{page}: the section on threads lacks `{name}`")


def check_version():
    version = re.search(r"^project\(.* VERSION ([\d.]+)", read("CMakeLists.txt"), re.MULTILINE).group(1)
    newest = {
        "CHANGELOG.md": r"^## ([\d.]+) - ",
        "docs/support.md": r"quillmarsh ([\d.]+),",
        "packaging/linux/changelog": r"\Aquillmarsh \(([\d.]+)\)",
        "packaging/linux/quillmarsh.1": r"\"quillmarsh ([\d.]+)\"",
        "packaging/linux/quillmarsh-cli.1": r"\"quillmarsh ([\d.]+)\"",
        "packaging/linux/example.quillmarsh.quillmarsh.metainfo.xml": r"<release version=\"([\d.]+)\"",
        "packaging/windows/quillmarsh.exe.manifest": r"name=\"quillmarsh\" version=\"([\d.]+)\.0\"",
    }
    for path, pattern in newest.items():
        found = re.search(pattern, read(path), re.MULTILINE)
        if not found or found.group(1) != version:
            complaints.append(f"{path} names {found.group(1) if found else 'no version'}, CMakeLists.txt {version}")


for check in (check_scripts, check_presets, check_simulator, check_harness, check_modules, check_functions,
              check_variables, check_threads, check_version):
    try:
        check()
    except FileNotFoundError as error:
        complaints.append(f"{error.filename} is gone, which {check.__name__}() reads")
if complaints:
    sys.exit("\n".join(complaints))
print(f"The guides' lists have the {checked} names that they should have.")
