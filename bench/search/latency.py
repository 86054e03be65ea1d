#!/usr/bin/env python3
"""Time of a query: 1,000 queries of 1 to 4 words drawn from the titles of the
pages, one after the other through `vandrelleSearch -i`, from the line written to
the answer read; and the time that a start on the index takes with no query.

    latency.py PROGRAM ROOT LIST [options of vandrelleSearch...]
"""

import random
import re
import subprocess
import time

from common import arguments, Search, titles


def main():
    program, root, list_file, *options = arguments(__doc__, 3)
    draw = random.Random(20)
    words = sorted({w for _, title in titles(list_file) for w in re.findall(r"[A-Za-z]{2,}", title)})
    queries = [" ".join(draw.sample(words, draw.randint(1, 4))) for _ in range(1000)]

    starts = []
    for _ in range(20):
        begin = time.perf_counter()
        subprocess.run([program, "-R", root, "-i", *options], stdin=subprocess.DEVNULL, check=True)
        starts.append(time.perf_counter() - begin)

    search = Search(program, root, options)
    times = []
    for query in queries:
        begin = time.perf_counter()
        search.ask(query)
        times.append(time.perf_counter() - begin)
    times.sort()
    milliseconds = lambda seconds: f"{1000 * seconds:.3f} ms"
    print(f"start {milliseconds(sorted(starts)[10])} (median of 20)")
    print(f"query median {milliseconds(times[500])}, 99th percentile {milliseconds(times[990])}, "
          f"longest {milliseconds(times[-1])}")


main()
