#!/usr/bin/python3
"""Writes the dial-pad reading table PinYin.txt from the Unihan database.

Usage: pinyin_table.py [--unihan DIR] OUT

Each Han character gets one reading: its Mandarin reading in keypad digits,
grouped into lines of the form

    94264=张章彰...

(the digits, "=", the characters with that reading, a newline). The reader
takes the text before the first "=" as the reading and every UTF-8
character after it, up to the line's final byte, as a character with that
reading; it reads lines into a 2048-byte buffer, so a group with many
characters is split over several lines with the same digits, each well
below that size. Every line, the last one included, ends with "\n".

Which reading: the first value of kMandarin, which Unihan defines as the
customary reading in mainland China. For the few characters without one we
fall back, in order, to the most frequent reading of kHanyuPinlu, then the
first reading of kHanyuPinyin, kXHC1983 and kTGHZ2013. One reading per
character keeps the search predictable: a character listed twice would get
whichever reading its hash chain happens to put first.

Spelling: tone marks are removed, ü (and u with a combining diaeresis) is
written v as on Chinese phone keypads, and the letters are mapped to digits
with the E.161 keypad (abc 2, def 3, ... wxyz 9).

Order within a group: characters with a kHanyuPinlu corpus count for the
chosen reading come first, most frequent first; then by kFrequency (1 is
most common), then kGradeLevel (school grade where it is taught), then by
code point. The most common character for a reading is therefore found
first when one looks a reading up by eye.
"""

import argparse
import bz2
import os
import re
import sys
import unicodedata

KEYPAD = dict(zip("abcdefghijklmnopqrstuvwxyz", "22233344455566677778889999"))
# Bytes per line, newline included, kept well below the reader's 2048-byte
# buffer.
MAX_LINE_BYTES = 1024


def read_unihan(path, wanted):
    fields = {}
    with bz2.open(path, "rt", encoding="utf-8") as f:
        for line in f:
            if line.startswith("#") or not line.strip():
                continue
            code, key, value = line.rstrip("\n").split("\t", 2)
            if key in wanted:
                fields.setdefault(int(code[2:], 16), {})[key] = value
    return fields


def plain_letters(reading):
    """zhāng -> zhang, lǜ -> lv; None when something else remains."""
    reading = reading.lower().replace("ü", "v")
    reading = unicodedata.normalize("NFD", reading).replace("u\u0308", "v")
    letters = "".join(c for c in reading if not unicodedata.combining(c))
    return letters if re.fullmatch(r"[a-z]+", letters) else None


def pinlu_counts(value):
    """'xíng(2943) háng(218)' -> {'xing': 2943, 'hang': 218} (plain)."""
    counts = {}
    for m in re.finditer(r"(\S+?)\((\d+)\)", value):
        letters = plain_letters(m.group(1))
        if letters:
            counts[letters] = counts.get(letters, 0) + int(m.group(2))
    return counts


def first_listed(value):
    """First reading of 'page.pos:a,b page.pos:c' or 'a b' style values."""
    first = value.split()[0]
    if ":" in first:
        first = first.split(":", 1)[1]
    return first.split(",")[0]


def choose_reading(info):
    if "kMandarin" in info:
        return plain_letters(info["kMandarin"].split()[0])
    if "kHanyuPinlu" in info:
        counts = pinlu_counts(info["kHanyuPinlu"])
        if counts:
            return max(sorted(counts), key=lambda r: counts[r])
    for key in ("kHanyuPinyin", "kXHC1983", "kTGHZ2013"):
        if key in info:
            letters = plain_letters(first_listed(info[key]))
            if letters:
                return letters
    return None


def build_groups(readings, likes):
    groups = {}
    for code, info in readings.items():
        letters = choose_reading(info)
        if not letters:
            continue
        digits = "".join(KEYPAD[c] for c in letters)
        pinlu = pinlu_counts(info.get("kHanyuPinlu", "")).get(letters, 0)
        like = likes.get(code, {})
        frequency = int(like.get("kFrequency", 9))
        grade = int(like.get("kGradeLevel", 99))
        key = (-pinlu, frequency, grade, code)
        groups.setdefault(digits, []).append((key, chr(code)))
    return {d: [c for _, c in sorted(v)] for d, v in groups.items()}


def table_lines(groups):
    for digits in sorted(groups, key=lambda d: (len(d), d)):
        head = digits + "="
        line = head
        for ch in groups[digits]:
            if len((line + ch + "\n").encode()) > MAX_LINE_BYTES:
                yield line + "\n"
                line = head
            line += ch
        yield line + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--unihan", default="/usr/share/unicode",
                        help="directory with the Unihan_*.txt.bz2 files")
    parser.add_argument("out", help="table file to write")
    args = parser.parse_args()
    try:
        readings = read_unihan(
            os.path.join(args.unihan, "Unihan_Readings.txt.bz2"),
            {"kMandarin", "kHanyuPinlu", "kHanyuPinyin", "kXHC1983",
             "kTGHZ2013"})
        likes = read_unihan(
            os.path.join(args.unihan, "Unihan_DictionaryLikeData.txt.bz2"),
            {"kFrequency", "kGradeLevel"})
    except OSError as e:
        sys.exit(f"pinyin_table: {e}")
    groups = build_groups(readings, likes)
    tmp = args.out + ".tmp"
    with open(tmp, "w", encoding="utf-8", newline="\n") as f:
        f.writelines(table_lines(groups))
    os.replace(tmp, args.out)


if __name__ == "__main__":
    main()
