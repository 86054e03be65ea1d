"""Pages, their titles and a running vandrelleSearch, for the measurements here."""

import html
import re
import subprocess
import sys
from collections import Counter

TITLE = re.compile(rb"<title[^>]*>(.*?)</title>", re.IGNORECASE | re.DOTALL)


def arguments(usage, needed):
    """The command line; if it has fewer than `needed` arguments, ends with the usage."""
    given = sys.argv[1:]
    if len(given) < needed:
        print(usage, file=sys.stderr, end="")
        sys.exit(2)
    return given


def titles(list_file):
    """Path and title of each page of a file list whose title no other page has."""
    pairs = []
    for path in open(list_file, encoding="utf-8").read().split():
        with open(path, "rb") as page:
            found = TITLE.search(page.read())
        if found:
            text = html.unescape(found.group(1).decode("utf-8", "replace"))
            # No-break spaces stay: they are a part of the title as it is written.
            text = " ".join(re.split(r"[ \t\r\n]+", text)).strip(" ")
            if text:
                pairs.append((path, text))
    count = Counter(title for _, title in pairs)
    return [(path, title) for path, title in pairs if count[title] == 1]


class Search:
    """vandrelleSearch on one open index: a query in, its answer lines out."""

    def __init__(self, program, root, options):
        self.process = subprocess.Popen(
            [program, "-R", root, "-i", "-plain", *options],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def ask(self, query, encoding="utf-8"):
        self.process.stdin.write(query.encode(encoding, "replace") + b"\n")
        self.process.stdin.flush()
        lines = []
        while True:
            line = self.process.stdout.readline()
            if not line:
                raise SystemExit("vandrelleSearch has ended")
            if line == b"\n":
                return lines
            lines.append(line.rstrip(b"\n").split(b"\t"))
