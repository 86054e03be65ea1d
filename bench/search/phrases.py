#!/usr/bin/env python3
"""Phrases drawn from the pages of an index with positions, each looked for with
vandrelleSearch -phrase and by a plain search over the words that the indexer has
read. Exits with 1, after a line for each phrase, if the two ever find other pages.

    phrases.py SEARCH LEXEDWORDS ROOT [options of vandrelleSearch...]

SEARCH is vandrelleSearch; LEXEDWORDS is built by `cmake --build --preset release
--target LexedWords`; ROOT an index built by `vandrelleFeed -type 2 -prox`.
"""

import random
import subprocess
import sys
import time

from common import arguments, Search

PHRASES = 200
LONGEST = 6  # words


def main():
    program, lexed_words, root, *options = arguments(__doc__, 3)
    lines = subprocess.run([lexed_words, root], stdout=subprocess.PIPE, check=True).stdout
    pages = [b" " + line for line in lines.split(b"\n")[:-1]]

    draw = random.Random(20)
    phrases = []
    while len(phrases) < PHRASES:
        words = draw.choice(pages).split()
        length = draw.randint(2, LONGEST)
        if len(words) >= length:
            begin = draw.randint(0, len(words) - length)
            phrases.append(words[begin:begin + length])
    # The same words in another order, mostly on no page.
    phrases += [draw.sample(words, len(words)) for words in phrases[:PHRASES // 4]]

    search = Search(program, root, ["-phrase", "-n", str(len(pages)), *options])
    wrong = found = 0
    times = []
    for words in phrases:
        text = b" ".join(words)
        expected = {n for n, page in enumerate(pages) if b" " + text + b" " in page}
        begin = time.perf_counter()
        answer = {int(row[1]) for row in search.ask(text.decode("latin-1"), "latin-1")}
        times.append(time.perf_counter() - begin)
        found += len(expected)
        if answer != expected:
            wrong += 1
            print(f"{text!r}: {len(answer - expected)} pages too many, "
                  f"{len(expected - answer)} missing")
    times.sort()
    print(f"{len(phrases)} phrases on {found} pages, {wrong} answered wrong; "
          f"median {1000 * times[len(times) // 2]:.2f} ms, longest {1000 * times[-1]:.2f} ms")
    sys.exit(1 if wrong else 0)


main()
