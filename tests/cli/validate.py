#!/usr/bin/env python3
"""validate.py SCHEMA: names every line of standard input that does not follow the JSON schema."""
import json
import sys

from jsonschema import Draft202012Validator

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
Draft202012Validator.check_schema(schema)
status = 0
for line in filter(str.strip, sys.stdin):
    value = json.loads(line)
    definition = "event" if "event" in value else "test"
    validator = Draft202012Validator({**schema, "anyOf": [{"$ref": f"#/$defs/{definition}"}]})
    for error in validator.iter_errors(value):
        print(f"{error.message}\n  in {line}")
        status = 1
sys.exit(status)
