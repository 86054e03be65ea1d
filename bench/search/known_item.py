#!/usr/bin/env python3
"""Known-item search: each page that has a title of its own is looked for by that
title. Prints the share of pages found first, and among the first ten.

    known_item.py PROGRAM ROOT LIST [options of vandrelleSearch...]
    known_item.py swish-e INDEX LIST

PROGRAM is vandrelleSearch and ROOT an index built with -flist LIST. The second
form asks swish-e (a Debian package) for the same on an index that it has built
of the same pages: `swish-e -S fs -i DIR -f INDEX`, with IndexContents HTML* .html.
"""

import re
import subprocess

from common import arguments, Search, titles


def ask_swish(index, title):
    words = [w for w in re.findall(r"[0-9A-Za-z_\u00c0-\u00ff]+", title)
             if w.lower() not in ("and", "or", "not", "near")]
    if not words:
        return []
    said = subprocess.run(
        ["swish-e", "-f", index, "-m", "10", "-H", "0", "-x", "%p\\n", "-w", " ".join(words)],
        capture_output=True, text=True, errors="replace", check=False)
    return said.stdout.splitlines()


def main():
    program, index, list_file, *options = arguments(__doc__, 3)
    if program.endswith("swish-e"):
        answer = lambda title: ask_swish(index, title)
    else:
        search = Search(program, index, options)
        answer = lambda title: [row[3].decode("utf-8", "replace") for row in search.ask(title)]
    first = ten = 0
    pages = titles(list_file)
    for path, title in pages:
        found = answer(title.lstrip("("))
        if path in found[:10]:
            ten += 1
            first += found[0] == path
    print(f"{len(pages)} pages with a title of their own: "
          f"{100 * first / len(pages):.2f} % first, {100 * ten / len(pages):.2f} % in the first ten")


main()
