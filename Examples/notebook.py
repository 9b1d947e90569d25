#!/usr/bin/env python3
"""Drives orvek-run from Python: a year of the Earth about the Sun, month by month.

Usage: notebook.py [ORVEK-RUN]. Needs nothing but Python's standard library. The same class works in a notebook.
"""

import json
import math
import os
import subprocess
import sys
import tempfile

BODIES = """
body "Sun"
    mass 1.32712440041279e20 m3/s2
body "Earth"
    mass 398600.435507e9 m3/s2
    orbit "Sun" a 1 AU e 0.0167
"""


class Orvek:
    """One running orvek-run. Orders are lines of JSON, and so are the answers."""

    def __init__(self, program="orvek-run", *arguments):
        self.process = subprocess.Popen([program, "--quiet", "--json-lines", *arguments],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, encoding="utf-8")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()

    def order(self, name, value=""):
        """Sends an order and returns the answer; what is refused is raised."""
        self.process.stdin.write(json.dumps({name: value}) + "\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError("orvek-run has ended")
        answer = json.loads(line)
        if "error" in answer:
            raise ValueError(answer["error"])
        return answer


def distance(state, one, other):
    """Between two bodies, in metres."""
    place = {body["name"]: body["r"] for body in state["bodies"]}
    return math.dist(place[one], place[other])


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else "orvek-run"
    with tempfile.NamedTemporaryFile("w", suffix=".txt", encoding="utf-8", delete=False) as file:
        file.write(BODIES)
    try:
        with Orvek(program, "--import", file.name, "--order", "16", "--cutoff", "1e-16") as orvek:
            state = orvek.order("state")
            for month in range(13):
                print(f"{month:3d}  {state['time'] / 86400:8.3f} d  {distance(state, 'Sun', 'Earth') / 1e9:9.4f} Gm")
                state = orvek.order("run", "30.4375 d")
    finally:
        os.unlink(file.name)


if __name__ == "__main__":
    main()
