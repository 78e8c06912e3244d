#!/usr/bin/python3
"""Checks a compiled China area database against the geocoding data of
python3-phonenumbers, through `zorvel area`.

  check_area.py --zorvel BUILD/zorvel --db FILE [--samples 4000] [--seed 1]

It takes every prefix of up to three digits (the two-digit area codes 10 and
20-29, the three-digit ones) and a seeded random sample of the longer ones,
makes a full number under each, and writes it in every form people use:
with "+86", "0086" or "86" in front, fixed lines with the trunk prefix 0,
grouped with blanks or dashes, area codes in parentheses. Each form must
name the location that the public data gives for the number's longest
prefix. Mismatches are printed, one a line, and the exit status is 1.
Exit status 2: the tool could not run (missing program or database).

Run it with /usr/bin/python3 (the system python that sees the Debian
package).
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from area_source import MAX_PREFIX, longest, national_table  # noqa: E402
from phonenumbers.geodata import GEOCODE_DATA  # noqa: E402


def is_fixed(national):
    # Chinese mobile numbers start with 1; the one fixed-line area code that
    # does is Beijing's 10.
    return national.startswith("10") or not national.startswith("1")


def area_code_length(national):
    if national[:2] == "10" or national[0] == "2":
        return 2
    return 3


def full_number(prefix, rng):
    """An 11-digit mobile number or a fixed number with an 8-digit
    subscriber part under `prefix`."""
    if is_fixed(prefix):
        length = area_code_length(prefix) + 8
    else:
        length = 11
    tail = "".join(rng.choice("0123456789")
                   for _ in range(length - len(prefix)))
    return prefix + tail


def written_forms(national):
    if is_fixed(national):
        n = area_code_length(national)
        code, rest = national[:n], national[n:]
        return [
            "+86" + national,
            "+86 %s %s %s" % (code, rest[:4], rest[4:]),
            "+86-%s-%s" % (code, rest),
            "0086 %s %s" % (code, rest),
            "86" + national,
            "0" + national,
            "0%s-%s" % (code, rest),
            "0%s %s %s" % (code, rest[:4], rest[4:]),
            "(0%s) %s-%s" % (code, rest[:4], rest[4:]),
        ]
    return [
        national,
        "+86" + national,
        "+86 %s %s %s" % (national[:3], national[3:7], national[7:]),
        "+86-%s-%s-%s" % (national[:3], national[3:7], national[7:]),
        "0086%s" % national,
        "86 " + national,
        "%s %s %s" % (national[:3], national[3:7], national[7:]),
        "%s-%s-%s" % (national[:3], national[3:7], national[7:]),
    ]


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("--zorvel", required=True, help="the zorvel program")
    ap.add_argument("--db", required=True, help="compiled China database")
    ap.add_argument("--samples", type=int, default=4000,
                    help="longer prefixes to sample")
    ap.add_argument("--seed", type=int, default=1)
    args = ap.parse_args()
    for path in (args.zorvel, args.db):
        if not os.path.isfile(path):
            sys.stderr.write("check_area.py: no file " + path + "\n")
            return 2

    geo = national_table(GEOCODE_DATA, "86", "zh")
    geo = {p: t for p, t in geo.items() if len(p) <= MAX_PREFIX}
    rng = random.Random(args.seed)
    short = sorted(p for p in geo if len(p) <= 3)
    rest = sorted(p for p in geo if len(p) > 3)
    prefixes = short + rng.sample(rest, min(args.samples, len(rest)))

    cases = []  # (prefix, written number, expected location)
    for prefix in prefixes:
        national = full_number(prefix, rng)
        expected = longest(geo, national)
        for form in written_forms(national):
            cases.append((prefix, form, expected))

    # An empty device root: no overrides and no dialling prefix apply.
    with tempfile.TemporaryDirectory() as root:
        os.makedirs(os.path.join(root, "var", "mobile", "Library"))
        run = subprocess.run(
            [args.zorvel, "area", "--root", root, "--db",
             os.path.abspath(args.db), "--name"],
            input="".join(c[1] + "\n" for c in cases),
            capture_output=True, text=True)
    if run.returncode != 0:
        sys.stderr.write("check_area.py: zorvel failed: " + run.stderr)
        return 2
    answers = run.stdout.split("\n")[:-1]
    if len(answers) != len(cases):
        sys.stderr.write("check_area.py: %d answers for %d numbers\n"
                         % (len(answers), len(cases)))
        return 2

    bad = 0
    for (prefix, form, expected), got in zip(cases, answers):
        if got != expected:
            bad += 1
            print("%s (prefix %s): got %r, public data says %r"
                  % (form, prefix, got, expected))
    print("%d numbers in %d forms from %d prefixes, %d mismatches"
          % (len(cases), len(cases) // max(len(prefixes), 1), len(prefixes),
             bad), file=sys.stderr)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
