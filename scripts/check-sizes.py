#!/usr/bin/env python3
"""check-sizes.py: fails when a source file or a function grows past its limit.

    check-sizes.py [SRC_DIR] [--file-lines N] [--function-lines N]

Limits default to 600 lines per file and 80 lines per function (from the line of its
signature to its closing brace). Prints every offender and exits 1 if there is one.
"""
import os
import re
import sys


def blank_comments_and_literals(code):
    """The code with comments and literals replaced by blanks, line breaks kept."""
    out, i, n = [], 0, len(code)
    while i < n:
        c = code[i]
        if code.startswith("//", i):
            j = code.find("\n", i)
            j = n if j < 0 else j
        elif code.startswith("/*", i):
            j = code.find("*/", i + 2)
            j = n if j < 0 else j + 2
        elif c == "R" and code.startswith('R"', i) and not (code[i - 1:i].isalnum() or code[i - 1:i] == "_"):
            m = re.match(r'R"([^(\s]*)\(', code[i:])
            delim = m.group(1) if m else ""
            end = code.find(")" + delim + '"', i)
            j = n if end < 0 else end + len(delim) + 2
        elif c in "\"'" and not (c == "'" and code[i - 1:i].isalnum() and code[i + 1:i + 2].isalnum()):
            j = i + 1
            while j < n and code[j] != c and code[j] != "\n":
                j += 2 if code[j] == "\\" else 1
            j += 1
        else:
            out.append(c)
            i += 1
            continue
        out.append(re.sub(r"[^\n]", " ", code[i:j]))
        i = j
    return "".join(out)


SCOPE = re.compile(r"\b(namespace|class|struct|union|enum)\b|extern\s*$")
CONTROL = re.compile(r"^\s*(if|for|while|switch|catch|do|else|try)\b")


def functions(code):
    """(name, first line, last line) of every function body outside other function bodies."""
    stack, result = [], []  # stack entries: "scope" or ("function", name, line)
    head_start = 0
    for i, c in enumerate(code):
        if c in ";}" and not any(s != "scope" for s in stack):
            if c == ";":
                head_start = i + 1
        if c == "{":
            in_function = any(s != "scope" for s in stack)
            head = code[head_start:i]
            if not in_function and "(" in head and not SCOPE.search(head.split("(")[0]) \
                    and not CONTROL.match(head) and not head.rstrip().endswith("="):
                name = re.findall(r"([~A-Za-z_][A-Za-z0-9_:~<>]*)\s*\(", head)
                first = code.count("\n", 0, head_start + len(head) - len(head.lstrip())) + 1
                stack.append(("function", name[0] if name else "?", first))
            else:
                stack.append("scope" if not in_function else "block")
            head_start = i + 1
        elif c == "}":
            if stack:
                top = stack.pop()
                if isinstance(top, tuple):
                    result.append((top[1], top[2], code.count("\n", 0, i) + 1))
            if not any(s != "scope" for s in stack):
                head_start = i + 1
    return result


def main():
    args = [a for a in sys.argv[1:]]
    def option(name, default):
        return int(args[args.index(name) + 1]) if name in args else default
    file_limit = option("--file-lines", 600)
    function_limit = option("--function-lines", 80)
    positional = [a for k, a in enumerate(args) if not a.startswith("--") and (k == 0 or not args[k - 1].startswith("--"))]
    root = positional[0] if positional else "src"
    offenders = []
    for d, _, names in sorted(os.walk(root)):
        for f in sorted(names):
            if not f.endswith((".cpp", ".h")):
                continue
            path = os.path.join(d, f)
            text = open(path, encoding="utf-8").read()
            lines = text.count("\n")
            if lines > file_limit:
                offenders.append(f"{path}: {lines} lines (limit {file_limit})")
            for name, first, last in functions(blank_comments_and_literals(text)):
                if last - first + 1 > function_limit:
                    offenders.append(f"{path}:{first}: {name} has {last - first + 1} lines (limit {function_limit})")
    for o in offenders:
        print(o)
    sys.exit(1 if offenders else 0)


if __name__ == "__main__":
    main()
