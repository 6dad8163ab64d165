#!/usr/bin/env python3
"""Writes demo/contacts.vcf: fictional people in four scripts, some with a drawn portrait.

Run it after changing the people below and check the result in; the build does not need it.
Telephone numbers lie in ranges that regulators keep free for fiction.
"""
import base64
import math
import pathlib
import struct
import zlib

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "demo" / "contacts.vcf"

# Number ranges for drama: prefix and how many digits follow.
RANGES = {
    "berlin": ("+49 30 23125 ", 3), "hamburg": ("+49 40 66969 ", 3), "munich": ("+49 89 99998 ", 3),
    "german-mobile": ("+49 171 39200 ", 2), "london": ("+44 20 7946 0", 3), "leeds": ("+44 113 496 0", 3),
    "british-mobile": ("+44 7700 900", 3), "paris": ("+33 1 99 00 20 ", 2), "french-mobile": ("+33 6 39 98 10 ", 2),
    "stockholm": ("+46 8 465 004 ", 2), "swedish-mobile": ("+46 70 174 06 ", 2),
    "new-york": ("+1 212 555 01", 2), "boston": ("+1 617 555 01", 2),
}
MOBILE = {"berlin": "german-mobile", "hamburg": "german-mobile", "munich": "german-mobile", "london": "british-mobile",
          "leeds": "british-mobile", "paris": "french-mobile", "stockholm": "swedish-mobile"}
ADDRESSES = {
    "berlin": ("Beispielstraße {}", "Berlin", "10999", "Deutschland"),
    "hamburg": ("Musterkai {}", "Hamburg", "20999", "Deutschland"),
    "munich": ("Probeweg {}", "München", "80999", "Deutschland"),
    "london": ("{} Sample Lane", "London", "ZZ1 9ZZ", "United Kingdom"),
    "leeds": ("{} Specimen Road", "Leeds", "ZZ2 9ZZ", "United Kingdom"),
    "paris": ("{} rue de l’Exemple", "Paris", "75999", "France"),
    "stockholm": ("Exempelgatan {}", "Stockholm", "119 99", "Sverige"),
    "new-york": ("{} Example Avenue", "New York, NY", "10999", "USA"),
    "boston": ("{} Placeholder Street", "Boston, MA", "02999", "USA"),
}

# surname; first name; company; job; group(s); town; which numbers; what else.
# Numbers: o office, 2 second office, m mobile, p private, f fax; a capital is the one to dial first.
# Else: birthday, nickname, note, picture with the numbers of skin, hair and style (0 short hair,
# 1 and 3 long hair, 2 beard, 4 bald).
PEOPLE = """
Abel;Greta;Nordwind Logistik;Disponentin;Suppliers;hamburg;Om;picture:031
Åkesson;Björn;Fjärran Foto;Fotograf;Suppliers;stockholm;om;picture:032
Álvarez Peña;Lucía;Luz del Norte;Arquitecta;Customers;paris;o2M;picture:101
Anderson;Maya;Blue Door Books;Buyer;Customers;new-york;om;
Bäcker;Jörg;Deskbook Berlin;Facility manager;Team;berlin;O2mp;picture:054 birthday
Białek;Zofia;Papiernia Wisła;Księgowa;Customers;berlin;o;
Bîrsan;Ștefan;Carpat Design;Designer;Suppliers;munich;oM;
Çelik;Ayşe;Deskbook Berlin;Developer;Team;berlin;Om;picture:101
Chen;Alex;Harbor Dental;Dentist;;boston;o;note
Čížek;Jiří;Sklárna Lípa;Obchodní zástupce;Customers;munich;om;
D’Angelo;Chiara;Tipografia Sole;Stampatrice;Suppliers;paris;om;picture:111
De Vries;Sanne;Molenaar Advies;Adviseur;Customers;london;oM;
Ðorđević;Milica;Deskbook London;Analyst;Team;london;om;
Dupré;Éloïse;Atelier Dupré;Relieuse;Suppliers;paris;O2mp;picture:041
Ebert;Ute;;;Family;berlin;P;picture:051 birthday
Fournier;Noé;Deskbook Paris;Chef de projet;Team;paris;om;picture:200
Garðarsdóttir;Þóra;Ísfell Textil;Hönnuður;Customers;stockholm;m;
Grünwald;Max;;;Friends;berlin;mp;nickname
Hansen;Søren;Ærø Marina;Havnefoged;Customers;hamburg;O2;
Horvath;Árpád;Tiszavirág Zene;Karmester;Friends;munich;m;picture:112
Ihde;Klara;Praxis Ihde;Zahnärztin;;berlin;of;note
İnan;Deniz;Boğaz Tekne;Kaptan;Friends;hamburg;M;
Jørgensen;Åse;Deskbook Stockholm;Support;Team;stockholm;Om;picture:031
Kowalczyk;Łukasz;Deskbook Berlin;Tester;Team;berlin;om;
Kurz;Li;;;Family;munich;;
Lindqvist;Anna;Nordljus Konsult;Säljchef;Customers;stockholm;O2mpf;picture:023 birthday note
Lo;Vivian;Lo & Daughters;Owner;Suppliers;boston;om;
MacLeod;Iain;Deskbook London;Reception;Team;london;O2;picture:042
Martins;João;Azulejos Martins;Ceramista;Suppliers;paris;m;
Mägi;Õnne;Deskbook Stockholm;Writer;Team;stockholm;om;
Müller;Emma;;;Family;hamburg;mP;picture:023 birthday
Müller;Karl;Bäckerei Müller;Bäckermeister;Suppliers;berlin;o;
Muller;Kate;Muller Partners;Lawyer;Customers;new-york;om;
Nguyễn;Thị Mai;Phở Mai;Chef;Friends;berlin;om;picture:103
Núñez;Íñigo;Deskbook Paris;Administrator;Team;paris;om;
O’Brien;Siobhán;Green Hill Stables;Trainer;Friends;leeds;mp;picture:041
Okafor;Chidi;Okafor Robotics;Engineer;Customers;boston;O2m;
Öberg;Måns;Sjöfart Öberg;Kapten;Customers;stockholm;om;
Papp;Zsófia;;;Friends;munich;m;
Quinn;Robin;Deskbook London;Director;Team,Emergency;london;O2mp;picture:200
Ruiz;Mateo;Café Ruiz;Barista;Friends;new-york;m;
Şahin;Emre;Deskbook Berlin;Network engineer;Team,Emergency;berlin;oM;picture:102
Smith;Olivia;Deskbook New York;Sales;Team;new-york;Om;
Smythe;Oliver;;;Family;leeds;;
Straße;Inge;Blumen Straße;Floristin;Suppliers;berlin;o;
Žukauskas;Jonas;Gintaras Import;Direktorius;Suppliers;hamburg;om;
Иванова;Елена;Северный Чай;Бухгалтер;Customers;berlin;om;picture:021
Петренко;Олексій;Deskbook Berlin;Developer;Team;berlin;oM;
Соколов;Дмитрий;;;Friends;hamburg;m;picture:010
Стојановић;Јелена;Дунав Превод;Преводилац;Suppliers;munich;om;
Щербакова;Анна;Музей Бумаги;Куратор;Customers;paris;o;
Δημητρίου;Ελένη;Deskbook London;Accountant;Team;london;Om;picture:101
Ιωάννου;Άγγελος;Ελιές Ιωάννου;Παραγωγός;Suppliers;munich;m;
Παπαδόπουλος;Γιώργος;Αιγαίο Ναυτιλία;Ναυλομεσίτης;Customers;london;o2m;picture:152
Χριστοδούλου;Ζωή;;;Friends;berlin;m;
佐藤;花子;Deskbook London;Translator;Team;london;om;picture:103
山田;太郎;やまだ書店;店長;Customers;london;Om;
高橋;美咲;;;Friends;paris;m;picture:101
すずき;はな;はな工房;陶芸家;Suppliers;boston;m;
;;Night Porter;;Emergency;london;o;
;;Taxi Beispiel;;;berlin;o;
;;Pizzeria Da Elio;;;hamburg;oM;note
""".strip().splitlines()

# Who shows what may become of a call: first name, number on the demo's line (demo/line/serve), what happens.
CALLEES = """
Busy;486;Is always busy
Calls back;300;Calls you when you hang up
Declines;603;Rings, and declines
Hangs up;302;Answers, and hangs up
No such number;404;Does not exist
Rings;201;Never answers: pick it up
""".strip().splitlines()

NOTES = {"Chen": "Closed on Fridays.", "Ihde": "Termine nur telefonisch.",
         "Lindqvist": "Ringer helst på förmiddagen.\nTalar svenska, tyska och engelska.", "": "Ask for the oven bread."}

SIZE = 96
SKINS = [(255, 224, 196), (241, 194, 158), (214, 160, 118), (168, 114, 76), (112, 74, 50)]
HAIRS = [(44, 34, 30), (92, 58, 34), (176, 122, 60), (222, 190, 120), (150, 60, 36), (150, 150, 156)]
CLOTHES = [(38, 84, 124), (170, 62, 62), (58, 120, 86), (112, 82, 140), (206, 138, 44), (70, 78, 92)]
WALLS = [(214, 230, 240), (240, 228, 206), (222, 238, 220), (238, 218, 226), (226, 224, 240)]


def inside(x, y, cx, cy, rx, ry):
    return ((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2 <= 1


def portrait_colour(x, y, look):
    """The colour at a point of the unit square."""
    skin, hair, cloth, wall, style = look
    for eye in (0.42, 0.58):
        if inside(x, y, eye, 0.42, 0.022, 0.028):
            return (40, 36, 40)
    if abs(math.hypot(x - 0.5, y - 0.46) - 0.1) < 0.012 and y > 0.52:
        return tuple(int(c * 0.62) for c in skin)
    if style == 2 and inside(x, y, 0.5, 0.60, 0.15, 0.10) and y > 0.56:  # beard
        return hair
    fringe = 0.30 + 0.05 * math.sin(x * 9 + style)
    if inside(x, y, 0.5, 0.42, 0.2, 0.25):
        return hair if y < fringe and style != 4 else skin
    if style != 4 and inside(x, y, 0.5, 0.36, 0.235, 0.25):
        return hair
    if style in (1, 3) and inside(x, y, 0.5, 0.52, 0.25, 0.30) and y < 0.74:  # long hair
        return hair
    if 0.42 < x < 0.58 and 0.58 < y < 0.76:
        return tuple(int(c * 0.92) for c in skin)
    if inside(x, y, 0.5, 1.06, 0.40, 0.33):
        return cloth
    return wall


def png(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", SIZE, SIZE, 8, 2, 0, 0, 0)
    pixels = b"".join(b"\0" + bytes(row) for row in rows)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b"")


def portrait(number, looks):
    skin, hair, style = map(int, looks)
    look = (SKINS[skin], HAIRS[hair], CLOTHES[number % 6], WALLS[number * 2 % 5], style)
    steps = (1 / 6, 3 / 6, 5 / 6)
    rows = []
    for py in range(SIZE):
        row = []
        for px in range(SIZE):
            samples = [portrait_colour((px + dx) / SIZE, (py + dy) / SIZE, look) for dx in steps for dy in steps]
            row += [sum(channel) // 9 for channel in zip(*samples)]
        rows.append(row)
    return png(rows)


def escape(text):
    return text.replace("\\", "\\\\").replace(";", "\\;").replace(",", "\\,").replace("\n", "\\n")


def fold(line):
    """Lines of at most 75 bytes, characters kept whole."""
    parts, current = [], ""
    for character in line:
        if len((current + character).encode()) > (75 if not parts else 74):
            parts.append(current)
            current = ""
        current += character
    return "\r\n ".join(parts + [current]) + "\r\n"


class Numbers:
    """Hands out each number of a range once."""

    def __init__(self):
        self.given = {}

    def next(self, name):
        prefix, digits = RANGES[name]
        number = self.given[name] = self.given.get(name, -1) + 1
        assert number < 10 ** digits, name
        return f"{prefix}{number:0{digits}}"


def telephones(kinds, town, numbers):
    types = {"o": "WORK,VOICE", "2": "WORK,VOICE", "m": "CELL,VOICE", "p": "HOME,VOICE", "f": "WORK,FAX"}
    for kind in kinds:
        area = MOBILE.get(town, town) if kind.lower() == "m" else town
        preferred = ",PREF" if kind.isupper() else ""
        yield f"TEL;TYPE={types[kind.lower()]}{preferred}:{numbers.next(area)}"


def card(index, person, numbers):
    surname, first, company, job, groups, town, kinds, extras = person.split(";")
    extras = extras.split()
    lines = ["BEGIN:VCARD", "VERSION:3.0"]
    far_east = surname and ord(surname[0]) > 0x3000
    whole = f"{surname} {first}" if far_east else f"{first} {surname}"
    lines += [f"N:{escape(surname)};{escape(first)};;;", f"FN:{escape(whole.strip() or company)}"]
    if "nickname" in extras:
        lines.append("NICKNAME:Maxi")
    lines += telephones(kinds, town, numbers)
    if company:
        lines.append(f"ORG:{escape(company)}")
        lines.append(f"EMAIL;TYPE=INTERNET:contact{index:02}@{'office' if company.startswith('Deskbook') else 'mail'}.example")
    if job:
        lines.append(f"TITLE:{escape(job)}")
    if company or "p" in kinds.lower():
        street, place, code, country = ADDRESSES[town]
        where = "WORK" if company else "HOME"
        lines.append(f"ADR;TYPE={where}:;;{escape(street.format(index))};{escape(place)};;{code};{country}")
    if "birthday" in extras:
        lines.append(f"BDAY:19{60 + index % 35}-{1 + index % 12:02}-{1 + index % 28:02}")
    if "note" in extras:
        lines.append(f"NOTE:{escape(NOTES[surname])}")
    if groups:
        lines.append(f"CATEGORIES:{groups}")
    for looks in (extra.removeprefix("picture:") for extra in extras if extra.startswith("picture:")):
        lines.append("PHOTO;ENCODING=b;TYPE=PNG:" + base64.b64encode(portrait(index, looks)).decode())
    lines += [f"UID:deskbook-demo-{index:02}", "END:VCARD"]
    return "".join(fold(line) for line in lines)


def callee_card(callee):
    first, number, what = callee.split(";")
    lines = ["BEGIN:VCARD", "VERSION:3.0", f"N:Demo;{first};;;", f"FN:Demo {first}",
             f"TEL;TYPE=WORK,VOICE,PREF:{number}", "ORG:Demo line", f"TITLE:{escape(what)}", "CATEGORIES:Demo",
             f"UID:deskbook-demo-line-{number}", "END:VCARD"]
    return "".join(fold(line) for line in lines)


def main():
    numbers = Numbers()
    cards = [card(index, person, numbers) for index, person in enumerate(PEOPLE, 1)]
    cards += [callee_card(callee) for callee in CALLEES]
    OUTPUT.write_bytes("".join(cards).encode())
    print(f"{len(cards)} contacts, {OUTPUT.stat().st_size} bytes")


if __name__ == "__main__":
    main()
