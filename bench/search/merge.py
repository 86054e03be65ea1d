#!/usr/bin/env python3
"""Merging: the pages of a list are indexed in one run, and in parts that are then
merged. Prints the time and the memory of the merge, which files of the merged index
differ from those of the single run, and on how many of 1,000 queries (1 to 4 words
drawn from the titles) the answers do: documents, ranks, titles, addresses, and scores
by more than float rounding.

    merge.py PROGRAMS LIST FOLDER [PARTS] [-stem TABLE -stop TABLE]

PROGRAMS is the folder of the programs; the indexes are left in FOLDER. PARTS is 8 if
it is not given.
"""

import pathlib
import random
import re
import subprocess

from common import arguments, Search, titles

ROUNDING = 1e-5


def index(programs, root, list_file, tables):
    said = subprocess.run(
        [programs / "vandrelleIndex", "-R", root, "-html", "-fsum", *tables, "-flist", list_file],
        check=True, capture_output=True, text=True).stdout
    if said:
        raise SystemExit(said)


def merge(programs, root, parts, tables):
    """Seconds and kilobytes of the merge, by GNU time (the Debian package time)."""
    said = subprocess.run(
        ["/usr/bin/time", "-f", "%e %M", programs / "vandrelleMerge", "-R", root, *tables, *parts],
        check=True, capture_output=True, text=True).stderr
    return [float(number) for number in said.split()]


def same(answer, other):
    # Rank, document, score, address, title.
    return len(answer) == len(other) and all(
        a[:2] + a[3:] == b[:2] + b[3:] and abs(float(a[2]) - float(b[2])) <= ROUNDING
        for a, b in zip(answer, other))


def main():
    programs, list_file, folder, *tables = arguments(__doc__, 3)
    count = int(tables.pop(0)) if tables and tables[0].isdigit() else 8
    programs, folder = pathlib.Path(programs), pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    paths = pathlib.Path(list_file).read_text(encoding="utf-8").split()
    index(programs, folder / "whole", list_file, tables)
    parts = []
    for i in range(count):
        part = folder / f"part{i}"
        first, last = len(paths) * i // count, len(paths) * (i + 1) // count
        part.with_suffix(".list").write_text("\n".join(paths[first:last]), encoding="utf-8")
        index(programs, part, part.with_suffix(".list"), tables)
        parts.append(part)
    seconds, kilobytes = merge(programs, folder / "merged", parts, tables)
    print(f"{count} parts: merged in {seconds:.2f} s with {kilobytes / 1024:.1f} MB")

    names = sorted(path.name.removeprefix("whole") for path in folder.glob("whole*"))
    differing = [name for name in names if name not in (".log", ".prog") and
                 (folder / f"whole{name}").read_bytes() != (folder / f"merged{name}").read_bytes()]
    print(f"files that differ from those of a single run: {' '.join(differing) or 'none'}")

    draw = random.Random(20)
    words = sorted({w for _, title in titles(list_file) for w in re.findall(r"[A-Za-z]{2,}", title)})
    whole = Search(programs / "vandrelleSearch", folder / "whole", tables)
    merged = Search(programs / "vandrelleSearch", folder / "merged", tables)
    answers = different = 0
    for _ in range(1000):
        query = " ".join(draw.sample(words, draw.randint(1, 4)))
        answer = whole.ask(query)
        answers += len(answer)
        different += not same(answer, merged.ask(query))
    print(f"1000 queries, {answers} answers: {different} queries are answered otherwise")


main()
