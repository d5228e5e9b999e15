"""Makes the demo's CSV files from the data of the Debian package iso-codes.

usage: demo_tables.py ISO_CODES_ROOT OUTPUT_FOLDER

Writes countries.csv, and for the country of record n its subdivisions as subdivisions/n.csv.
"""

import csv
import gettext
import json
import pathlib
import sys
import unicodedata


def entries(root, number):
    path = root / "usr/share/iso-codes/json" / f"iso_{number}.json"
    return json.loads(path.read_text(encoding="utf-8"))[number]


def russian(root, number):
    path = root / "usr/share/locale/ru/LC_MESSAGES" / f"iso_{number}.mo"
    with path.open("rb") as file:
        return gettext.GNUTranslations(file).gettext


def fitted(text):
    """The text with letters that code page 1251 lacks reduced to those it has."""
    letters = []
    for letter in text:
        for part in (letter, unicodedata.normalize("NFKD", letter)[0], "'"):
            if part.encode("cp1251", "ignore"):
                letters.append(part)
                break
    return "".join(letters)


def write(path, rows):
    with path.open("w", encoding="utf-8", newline="") as file:
        csv.writer(file, lineterminator="\n").writerows(
            [fitted(cell) for cell in row] for row in rows)


def main():
    root, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    (output / "subdivisions").mkdir(parents=True, exist_ok=True)
    subdivisions = {}
    for entry in entries(root, "3166-2"):
        subdivisions.setdefault(entry["code"].split("-")[0], []).append(entry)
    country_name, part_name = russian(root, "3166-1"), russian(root, "3166-2")
    countries = sorted(entries(root, "3166-1"), key=lambda entry: entry["alpha_2"])
    rows = [["Код", "Код 3", "Страна", "Country", "Регионы"]]
    for record, country in enumerate(countries, start=1):
        name = country_name(country["name"])
        rows.append([country["alpha_2"], country["alpha_3"], name, country["name"], ""])
        parts = subdivisions.get(country["alpha_2"], [])
        if parts:
            table = [["Код", "Название", "Вид"]]
            table += [[p["code"], part_name(p["name"]), p["type"]] for p in parts]
            write(output / "subdivisions" / f"{record}.csv", table)
    write(output / "countries.csv", rows)


main()
