#!/usr/bin/env python3
"""follows.py OPENAPI: names what does not follow the description, in pairs of lines on standard input:
"STATUS METHOD TARGET [BODY]" and the JSON answer, empty for a sentence."""
import json
import re
import sys

from jsonschema import Draft202012Validator

with open(sys.argv[1], encoding="utf-8") as file:
    description = json.load(file)
asked = set()


def operation(method, path):
    for pattern, methods in description["paths"].items():
        if re.fullmatch(re.sub(r"\{[a-z]+\}", "[^/]+", pattern), path) and method in methods:
            asked.add((pattern, method))
            return methods[method]
    return None


lines = sys.stdin.read().split("\n")
for head, body in zip(lines[::2], lines[1::2]):
    status, method, target = head.replace("own ", "").split(" ", 3)[:3]
    path = "/" + target.split("?")[0]
    known = operation(method.lower(), path)
    answer = known and known["responses"].get(status)
    if not answer:
        if status not in ("404", "405"):
            print(f"not described: {head}")
        continue
    if "$ref" in answer:
        answer = description["components"]["responses"][answer["$ref"].split("/")[-1]]
    schema = answer["content"].get("application/json", {}).get("schema")
    if (schema is None) != (body == ""):
        print(f"JSON or a sentence: {head}")
    if schema and body:
        validator = Draft202012Validator({**schema, "components": description["components"]})
        for error in validator.iter_errors(json.loads(body)):
            print(f"{head}\n  {error.json_path}: {error.message}")
for pattern, methods in description["paths"].items():
    for method in methods:
        if (pattern, method) not in asked and pattern != "/openapi.json":
            print(f"never asked: {method} {pattern}")
