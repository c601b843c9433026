#!/usr/bin/env python3
"""Writes the list of tests that are run under Wine, for ctest: several tests of a suite share a process.

Starting a Windows program under Wine takes longer than most tests. The tests of the Windows build are compared with
those on Linux: each must be in both or be excluded. Prints what is not run, and fails if the lists disagree.
LINUX and WINDOWS are what "ctest --show-only=json-v1" prints. EXCLUSIONS has lines "PATTERN: reason"; a pattern must
match the whole of PROGRAM/TEST.
Usage: scripts/windows/group-tests.py EXCLUSIONS LINUX WINDOWS FOLDER
"""
import json
import os
import re
import sys

# More would make the last process that is left run too long.
TESTS_OF_A_PROCESS = 12
# For each test after the first, in seconds. The first has the time limit of the test itself.
MORE_TIME = 30
# The label of tests whose surroundings are set up for each.
OWN_PROCESS = "own-process"
INHERITED = ("ENVIRONMENT", "LABELS", "RESOURCE_LOCK", "RUN_SERIAL", "WORKING_DIRECTORY")


def tests_of(path):
    """Returns the tests of a build folder, each with its PROGRAM/TEST; for scripts the program is "script"."""
    with open(path, encoding="utf-8") as file:
        listed = json.load(file)["tests"]
    named = []
    for test in listed:
        command = test.get("command", [])
        programs = [os.path.basename(argument) for argument in command
                    if os.path.basename(os.path.dirname(argument)) == "tests"]
        program = re.sub(r"\.exe$", "", programs[0]) if programs else "script"
        named.append((f"{program}/{test['name'].split('  # GetParam()')[0].rstrip()}", test))
    return named


def read_exclusions(path):
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n") for line in file if line.strip() and not line.startswith("#")]
    return [(line, re.compile(line.split(": ", 1)[0])) for line in lines]


def filter_of(test):
    """Returns which tests the program is told to run; empty if it is not told."""
    option = "--gtest_filter="
    return next((argument[len(option):] for argument in test["command"] if argument.startswith(option)), "")


def properties_of(test):
    return {entry["name"]: entry["value"] for entry in test.get("properties", [])}


def groups_of(run):
    """Returns the tests by name of the process that they share."""
    suites = {}
    for name, test in run:
        program = name.split("/", 1)[0]
        is_alone = not filter_of(test) or OWN_PROCESS in properties_of(test).get("LABELS", [])
        suites.setdefault(name if is_alone else f"{program}/{filter_of(test).split('.')[0]}", []).append(test)
    groups = {}
    for suite, tests in suites.items():
        for start in range(0, len(tests), TESTS_OF_A_PROCESS):
            number = start // TESTS_OF_A_PROCESS + 1
            groups[suite if len(tests) <= TESTS_OF_A_PROCESS else f"{suite}#{number}"] = (
                tests[start:start + TESTS_OF_A_PROCESS])
    return groups


def quoted(value):
    text = ";".join(value) if isinstance(value, list) else str(value)
    return f"[==[{text}]==]"


def add_test(name, tests):
    """Returns the commands of CTest that add a process with several tests."""
    filters = ":".join(filter_of(test) for test in tests)
    command = [f"--gtest_filter={filters}" if argument.startswith("--gtest_filter=") else argument
               for argument in tests[0]["command"]]
    properties = properties_of(tests[0])
    shared = {key: properties[key] for key in INHERITED if key in properties}
    shared["TIMEOUT"] = int(properties["TIMEOUT"]) + MORE_TIME * (len(tests) - 1)
    # A skipped test has not passed.
    shared["FAIL_REGULAR_EXPRESSION"] = r"\[  SKIPPED \]"
    return (f"add_test({quoted(name)} {' '.join(quoted(argument) for argument in command)})\n"
            f"set_tests_properties({quoted(name)} PROPERTIES "
            + " ".join(f"{key} {quoted(value)}" for key, value in shared.items()) + ")\n")


def main(exclusions, linux, windows, folder):
    linux, windows = tests_of(linux), tests_of(windows)
    linux_names, windows_names = {name for name, _ in linux}, {name for name, _ in windows}
    excluded, failed = set(), False
    print("Not run under Wine:")
    for line, pattern in read_exclusions(exclusions):
        matched = {name for name in linux_names | windows_names if pattern.fullmatch(name)}
        print(f"{len(matched):5}  {line}")
        if not matched:
            print("       It matches no test.")
            failed = True
        excluded |= matched
    run = [(name, test) for name, test in windows if name not in excluded]
    for name in [name for name, test in run if "command" not in test]:
        print(f"This test was not built: {name}")
        return True
    for name in sorted(linux_names - windows_names - excluded):
        print(f"This test is neither in the Windows build nor excluded: {name}")
        failed = True
    groups = groups_of(run)
    print(f"{len(run)} tests to run in {len(groups)} processes, of {len(linux)} on Linux; "
          f"{len([name for name, _ in run if name not in linux_names])} are for Windows alone.", flush=True)
    with open(os.path.join(folder, "CTestTestfile.cmake"), "w", encoding="utf-8") as file:
        file.writelines(add_test(name, tests) for name, tests in groups.items())
    return failed or not run


if len(sys.argv) != 5:
    sys.exit(__doc__)
sys.exit(main(*sys.argv[1:]))
