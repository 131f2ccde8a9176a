#!/usr/bin/env python3
"""check-includes.py: fails on an #include that points up a layer.

    check-includes.py [SRC_DIR]

The layers, lowest first: workspace; engine; the subsystems (history, picking, filter,
generation, prize, analysis, tools); app. A folder may include its own files and those of the
folders listed for it below; a ui/ folder may also include its own subsystem's logic, the
ui/ folders its subsystem may include, and workspace/ui (the shared widgets). Nothing but app
includes app. Prints every offending line and exits 1 if there is one.
"""
import os
import re
import sys

LOGIC = {
    "workspace": set(),
    "engine": {"workspace"},
    "history": {"workspace"},
    "picking": {"workspace"},
    "filter": {"engine", "workspace", "prize"},  # the back-test prices its tickets
    "generation": {"engine", "workspace"},
    "prize": {"engine", "workspace"},
    "analysis": {"engine", "workspace", "history", "picking", "tools"},
    "tools": {"engine", "workspace", "history"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def owner(path):
    """('filter', True) for filter/ui/x.h, ('engine', False) for engine/x.h."""
    parts = path.split("/")
    return parts[0], "ui" in parts[1:-1]


def allowed(src, target):
    (s, s_ui), (t, t_ui) = owner(src), owner(target)
    if s == "app":
        return True
    if t == "app":
        return False
    reach = {s} | LOGIC.get(s, set())
    if t not in reach:
        return False
    if t_ui:
        return s_ui and (t == s or t == "workspace")
    return True


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else "src"
    bad = []
    for d, _, names in sorted(os.walk(root)):
        for f in sorted(names):
            if not f.endswith((".cpp", ".h")):
                continue
            path = os.path.relpath(os.path.join(d, f), root)
            for m in INCLUDE.finditer(open(os.path.join(d, f), encoding="utf-8").read()):
                target = m.group(1)
                if "/" in target and not allowed(path, target):
                    bad.append(f"{path}: includes {target}")
    for b in bad:
        print(b)
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
