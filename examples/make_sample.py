#!/usr/bin/env python3
"""Writes the sample data file: a survey of the customers of a retail network.

Produces sample.csv and its dictionary sample.csv.dict.json beside this script. The seed is
fixed, so running it again gives the same files byte for byte.

What the file exercises: case names (some longer than 8 bytes), numeric codes with text
labels in the dictionary (REGION, SEX, where a few SEX cells are written as their label),
columns of text that become coded variables (AGEGROUP, CHANNEL, one text with a comma, so
quoted), continuous variables, missing values written as empty cells and as NA, a weight
variable with a few zero weights, a date variable, a missing code given in the dictionary
(SATISFACTION) and a short name longer than 8 bytes.
"""

import csv
import datetime
import json
import math
import os
import random

CASES = 1500
SEED = 20240611
HERE = os.path.dirname(os.path.abspath(__file__))

REGIONS = [
    (11, "Île-de-France", 0.22),
    (24, "Centre-Val de Loire", 0.04),
    (27, "Bourgogne-Franche-Comté", 0.04),
    (28, "Normandie", 0.05),
    (32, "Hauts-de-France", 0.09),
    (44, "Grand Est", 0.08),
    (52, "Pays de la Loire", 0.06),
    (53, "Bretagne", 0.05),
    (75, "Nouvelle-Aquitaine", 0.09),
    (76, "Occitanie", 0.09),
    (84, "Auvergne-Rhône-Alpes", 0.12),
    (93, "Provence-Alpes-Côte d'Azur", 0.06),
    (94, "Corse", 0.01),
]
CHANNELS = [
    ("Magasin", 0.46),
    ("Site web", 0.24),
    ("Application mobile", 0.17),
    ("Web, retrait en magasin", 0.09),
    ("Téléphone", 0.04),
]
AGE_GROUPS = [(18, 24), (25, 34), (35, 49), (50, 64), (65, 120)]


def weighted_choice(rng, items):
    """Picks the first element of one of the tuples, with the probability in the last."""
    point = rng.random() * sum(item[-1] for item in items)
    for item in items:
        point -= item[-1]
        if point <= 0:
            return item[0]
    return items[-1][0]


def age_group(age):
    for low, high in AGE_GROUPS:
        if low <= age <= high:
            return f"{low}-{high}" if high < 120 else f"{low} et plus"
    raise ValueError(age)


def or_missing(rng, rate, token, value):
    """`token`, which marks a missing value, with probability `rate`; else `value`."""
    return token if rng.random() < rate else value


def make_case(rng, number):
    region = weighted_choice(rng, REGIONS)
    sex = rng.choice([1, 2])
    age = max(18, min(88, int(rng.gauss(46, 16))))
    channel = weighted_choice(rng, CHANNELS)
    if age < 35 and rng.random() < 0.35:
        channel = "Application mobile"
    income = round(math.exp(rng.gauss(10.4, 0.45)) / 10) * 10
    spend = round(income * rng.uniform(0.01, 0.06) * (1.3 if channel == "Magasin" else 1.0), 2)
    visits = max(0, int(rng.gauss(14 if channel == "Magasin" else 6, 5)))
    satisfaction = max(1, min(10, round(rng.gauss(7.2 - (1.0 if visits < 3 else 0.0), 1.8))))
    weight = round(rng.uniform(0.5, 2.5), 3) if rng.random() > 0.01 else 0
    first_buy = datetime.date(2015, 1, 1) + datetime.timedelta(days=rng.randrange(0, 3469))

    # Professional accounts carry a longer identifier.
    customer = f"C{number:05d}"
    if rng.random() < 0.06:
        customer += "-PRO-" + rng.choice(["IDF", "LYON", "MARSEILLE", "LILLE"])

    sex_cell = str(sex)
    if rng.random() < 0.03:
        sex_cell = "Femme" if sex == 1 else "Homme"
    age_known = rng.random() >= 0.03
    return [
        customer,
        region,
        sex_cell,
        age if age_known else "",
        age_group(age) if age_known else "",
        channel,
        or_missing(rng, 0.05, "NA", income),
        or_missing(rng, 0.03, "", f"{spend:.2f}"),
        visits,
        or_missing(rng, 0.04, "NA", satisfaction),
        weight,
        or_missing(rng, 0.03, "", first_buy.isoformat()),
    ]


def dictionary():
    return {
        "header": "Enquête clients 2024 - réseau de magasins",
        "caseNames": "CUSTOMER",
        "weight": "WEIGHT",
        "variables": {
            "REGION": {
                "longName": "Région de résidence",
                "labels": {str(code): name for code, name, _ in REGIONS},
            },
            "SEX": {"longName": "Sexe", "labels": [[1, "Femme"], [2, "Homme"]]},
            "AGE": {"longName": "Âge (années révolues)"},
            "AGEGROUP": {"longName": "Tranche d'âge"},
            "CHANNEL": {"longName": "Canal d'achat principal"},
            "INCOME": {"longName": "Revenu annuel du foyer (euros)"},
            "SPEND": {"longName": "Dépenses annuelles dans le réseau (euros)"},
            "VISITS": {"longName": "Nombre de visites sur 12 mois"},
            "SATISFACTION": {
                "longName": "Satisfaction globale (1 à 10)",
                "missingCode": -1,
            },
            "WEIGHT": {"longName": "Poids de redressement"},
            "FIRSTBUY": {"longName": "Date du premier achat", "format": "date"},
        },
    }


def main():
    rng = random.Random(SEED)
    header = ["CUSTOMER", "REGION", "SEX", "AGE", "AGEGROUP", "CHANNEL", "INCOME", "SPEND",
              "VISITS", "SATISFACTION", "WEIGHT", "FIRSTBUY"]
    with open(os.path.join(HERE, "sample.csv"), "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(header)
        for number in range(1, CASES + 1):
            writer.writerow(make_case(rng, number))
    with open(os.path.join(HERE, "sample.csv.dict.json"), "w", encoding="utf-8") as out:
        json.dump(dictionary(), out, ensure_ascii=False, indent=2)
        out.write("\n")


if __name__ == "__main__":
    main()
