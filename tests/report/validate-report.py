#!/usr/bin/env python3
"""validate-report.py SCHEMA FILE

Validates the report in FILE against the JSON schema. Prints what is wrong and exits with 1 if
something is.
"""
import json
import sys

import jsonschema


def main(schema_file, report_file):
    with open(schema_file, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    try:
        with open(report_file, encoding="utf-8") as file:
            report = json.load(file)
    except (OSError, ValueError) as problem:
        print(problem)
        return 1
    errors = list(jsonschema.Draft7Validator(schema).iter_errors(report))
    for error in errors[:10]:
        print("/".join(str(part) for part in error.absolute_path), error.message[:500])
    return 1 if errors else 0


sys.exit(main(*sys.argv[1:]))
