"""Writes the jobs of scripts/test-farm.sh, and a set that some of them read, into a folder."""

import json
import math
import os
import random
import sys

import orvanekit as kit

FIELDS, SLICES = 200, 4  # 200 fields, and a picture in 4 * 4 slices


def jobs():
    draws = random.Random(20)
    for number in range(FIELDS):
        yield {"id": "field-%03d" % number, "do": "gaussians", "seed": 7, "samples": 192,
               "given": [[draws.uniform(0, math.pi), draws.uniform(0, 2 * math.pi),
                          draws.uniform(0.1, 0.4), draws.uniform(-1, 1)] for _ in range(8)],
               "then": [{"do": "filter", "hann": True}]}
    for number in range(SLICES * SLICES):
        yield {"id": "slice-%02d" % number, "do": "render", "given": "globe.json", "width": 1024,
               "slices": SLICES, "slice": number}


def main(folder):
    kit.save(os.path.join(folder, "globe.json"), kit.make_set(
        [math.sin(1 + place * place) / (1 + place) for place in range(400)]))
    with open(os.path.join(folder, "jobs.jsonl"), "w") as opened:
        for job in jobs():
            opened.write(json.dumps(job, sort_keys=True) + "\n")


if __name__ == "__main__":
    main(sys.argv[1])
