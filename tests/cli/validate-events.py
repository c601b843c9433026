#!/usr/bin/env python3
"""validate-events.py SCHEMA FILE

Validates each line of FILE against the JSON schema. Prints the lines that are wrong and exits with 1 if there is
one, or if FILE has no lines at all.
"""
import json
import sys

import jsonschema


def main(schema_file, events_file):
    with open(schema_file, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    with open(events_file, encoding="utf-8", newline="\n") as file:
        lines = file.read().split("\n")
    wrong = 0
    if lines.pop() != "":
        print("The last line has no end.")
        wrong += 1
    if not lines:
        print("There is no line.")
        wrong += 1
    for number, line in enumerate(lines, 1):
        try:
            error = jsonschema.exceptions.best_match(validator.iter_errors(json.loads(line)))
        except json.JSONDecodeError as problem:
            error = problem
        if error:
            print(f"Line {number}: {line}\n{error}")
            wrong += 1
    return 1 if wrong else 0


sys.exit(main(*sys.argv[1:]))
