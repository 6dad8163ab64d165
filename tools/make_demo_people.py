#!/usr/bin/env python3
"""Writes the thousand fictional people of the demo's company, for inetOrgPerson: make_demo_people.py [FILE]

FILE is demo/directory/people.ldif if not given. Run it after changing the people below and check the result in;
the build does not need it. The colleagues among the demo's own contacts are in it, with the same numbers. Telephone
numbers lie in ranges that regulators keep free for fiction, and are written in the many ways that people write them.
"""
import base64
import pathlib
import random
import sys
import unicodedata

import make_demo_contacts

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "demo" / "directory" / "people.ldif"
BASE = "dc=deskbook,dc=example"
PEOPLE_COUNT = 1000

# Office; number ranges as in the contacts: prefix and how many digits follow; mobile range; address.
OFFICES = """
Berlin;+49 30 23125 ;3;de;Beispielstraße {};10999 Berlin;Deutschland
Hamburg;+49 40 66969 ;3;de;Musterkai {};20999 Hamburg;Deutschland
München;+49 89 99998 ;3;de;Probeweg {};80999 München;Deutschland
Köln;+49 221 4710 ;3;de;Mustergasse {};50999 Köln;Deutschland
London;+44 20 7946 0;3;gb;{} Sample Lane;London ZZ1 9ZZ;United Kingdom
Leeds;+44 113 496 0;3;gb;{} Specimen Road;Leeds ZZ2 9ZZ;United Kingdom
Paris;+33 1 99 00 20 ;2;fr;{} rue de l’Exemple;75999 Paris;France
Lyon;+33 4 65 71 3;3;fr;{} quai du Modèle;69999 Lyon;France
Stockholm;+46 8 465 004 ;2;se;Exempelgatan {};119 99 Stockholm;Sverige
Göteborg;+46 31 390 06 ;2;se;Provvägen {};419 99 Göteborg;Sverige
New York;+1 212 555 01;2;us;{} Example Avenue;New York, NY 10999;USA
Boston;+1 617 555 01;2;us;{} Placeholder Street;Boston, MA 02999;USA
Chicago;+1 312 555 01;2;us;{} Specimen Drive;Chicago, IL 60999;USA
""".strip().splitlines()
MOBILES = {"de": ("+49 171 39200 ", 2), "gb": ("+44 7700 900", 3), "fr": ("+33 6 39 98 1", 3),
           "se": ("+46 70 174 06 ", 2), "us": ("+1 415 555 01", 2)}

DEPARTMENTS = {
    "Accounting": ["Accountant", "Controller", "Payroll Officer"],
    "Customer Service": ["Support Agent", "Service Manager", "Trainer"],
    "Development": ["Developer", "Software Architect", "Tester", "Technical Writer"],
    "Facilities": ["Caretaker", "Facility Manager"],
    "Human Resources": ["Recruiter", "HR Partner"],
    "IT": ["Network Engineer", "System Administrator", "Security Officer"],
    "Legal": ["Counsel", "Data Protection Officer"],
    "Logistics": ["Dispatcher", "Warehouse Manager"],
    "Marketing": ["Designer", "Editor", "Campaign Manager"],
    "Purchasing": ["Buyer", "Supplier Manager"],
    "Research": ["Physicist", "Acoustics Engineer", "Librarian"],
    "Sales": ["Account Manager", "Sales Engineer", "Sales Assistant"],
}

# How many; offices; which name comes first and what is between; a title; surnames; first names.
CULTURES = """
155;Berlin Hamburg München Köln;first;Sachbearbeitung;Müller Müller Schmidt Schneider Fischer Weber Meyer Wagner Becker Schulz Hoffmann Schäfer Koch Bauer Richter Klein Wolf Schröder Neumann Schwarz Zimmermann Braun Krüger Hofmann Hartmann Lange Groß Weiß Jäger Strauß;Anna Ben Clara David Emil Frieda Günter Hanna Ida Jürgen Käthe Lukas Mia Noah Otto Paula Renée Sören Theo Ute
130;London Leeds New_York Boston Chicago;first;Team Leader;Smith Smith Jones Taylor Brown Williams Wilson Johnson Davies Miller Milton Mills Wright Walker Hall Green O’Neill MacDonald Fitzgerald Sinclair St_Clair Clarke Clark Lee;Amelia Arthur Beth Charles Daisy Edward Freya George Harriet Isaac Jack Kate Leo Megan Nora Oscar Poppy Ruby Samuel Zoë
70;Paris Lyon;first;Chef de projet;Martin Bernard Dubois Petit Lefèvre Lefebvre Müller Moreau Fournier Garçon Châtelain Noël Leclère Desprès d’Aubigné de_La_Tour Hébert Côté Benoît Étienne;Adèle Amélie André Benoît Céline Chloé Émile François Gaëlle Hélène Inès Joël Léa Maël Noémie Océane Rémy Thaïs Zoé Éloi
60;Stockholm Göteborg;first;Handläggare;Andersson Johansson Karlsson Nilsson Lindström Åberg Åström Öberg Östlund Ängström Björk Sjöström Håkansson Bergström Møller Sørensen Kjær Mäkinen Hämäläinen Guðmundsdóttir;Åke Alva Björn Elsa Göran Håkan Ingrid Jörgen Kåre Liv Märta Nils Øystein Pär Saga Sigrún Tove Ulf Väinö Örjan
70;Berlin Köln Hamburg London;first;Uzman;Yılmaz Kaya Demir Çelik Şahin Yıldız Öztürk Aydın Özdemir Arslan Doğan Kılıç Çetin Şimşek Işık Güneş İnce Uçar Erdoğdu Ünal;Ayşe Barış Çağla Deniz Elif Fırat Gökçe Hülya Ilgın İlker Kıvanç Leyla Mehmet Nilüfer Oğuz Özge Pınar Şule Ümit Yağmur
70;Berlin Hamburg London Leeds;first;Specjalista;Nowak Kowalska Wiśniewska Wójcik Kamińska Lewandowska Zielińska Szymańska Woźniak Dąbrowska Kozłowska Jabłońska Mazur Krawczyk Pająk Łuczak Źrebiec Żak Ćwikła Świątek;Agnieszka Bożena Celina Dorota Elżbieta Grażyna Halina Iwona Justyna Kinga Łucja Małgorzata Natalia Olga Paulina Róża Sława Urszula Wioletta Żaneta
50;München Berlin;first;Odborný pracovník;Novák Svoboda Dvořák Černý Procházka Kučera Veselý Horák Němec Pospíšil Hájek Král Růžička Beneš Fiala Čermák Řezníček Šťastný Žižka Chalupa;Bedřich Čeněk Dušan František Hynek Jiří Kryštof Luboš Matěj Ondřej Přemysl Radek Řehoř Šimon Tomáš Václav Zdeněk Štěpán Miloš Chrudoš
60;Paris Lyon London New_York;first;Coordinación;García Fernández González Rodríguez López Martínez Sánchez Pérez Gómez Núñez Peña Ibáñez Muñoz Araújo Conceição Magalhães Simões Brandão D’Ângelo Càdeva;Álvaro Begoña César Dolores Elías Fátima Gonçalo Hélder Íñigo João Lucía María Nélida Óscar Pilar Ramón Sílvia Tomás Úrsula Xoán
40;München Berlin Paris;first;Munkatárs;Nagy Kovács Tóth Szabó Horváth Kőszegi Fülöp Ördög Popescu Ionescu Țurcanu Brâncuși Stănescu Kralj Đurić Žagar Šimić Petrović Kazlauskas Bērziņš;Ágnes Ödön Béla Győző Ștefan Aurel Zoltán Đorđe Ljiljana Željko Čedo Jānis Ulla Õie Kärt Sándor Ilinca Tünde Márta Émőke
20;Paris Chicago;last ;Chuyên viên;Nguyễn Trần Lê Phạm Hoàng Đặng Bùi Đỗ;An_Bình Thị_Hương Văn_Đức Quỳnh_Anh Minh_Châu Ngọc_Lan
40;London München;first;Σύμβουλος;Παπαδόπουλος Παπαδάκης Γεωργίου Δημητρίου Νικολάου Ιωάννου Βασιλείου Χριστοδούλου Οικονόμου Αγγελίδης Καραγιάννης Ζαχαρίου;Αλέξανδρος Βαγγέλης Γιώργος Δήμητρα Ελένη Ζωή Ήβη Θάλεια Ιωάννα Κώστας Λητώ Ξένια
40;Berlin Hamburg;first;Специалист;Иванов Смирнов Кузнецов Попов Соколов Морозов Шевчук Щербак Ковальчук Гаврилюк Єременко Їжакевич Цветков Жуков Эрдман Юдин;Алексей Борис Вера Галина Дмитрий Елена Жанна Зоя Ирина Олексій Людмила Ярослав Святослав Фёдор Эльвира Юлия
20;München Köln;first;Специјалиста;Јовановић Петровић Николић Ђорђевић Љубичић Његован Димитров Ангелова Стојанов Ќосев;Милица Ђорђе Јелена Љубомир Његош Цветана Борислав Наум Тодор Ћира
30;London New_York Paris;last;工程师;王 李 张 刘 陈 杨 赵 黄 周 吴 徐 孙 欧阳 司马;伟 芳 娜 秀英 敏 静 丽 强 磊 洋 艳 勇 思远 雨桐
25;London Boston;last ;担当;佐藤 鈴木 高橋 田中 伊藤 渡辺 山本 中村 小林 加藤 斎藤 さくらい;太郎 花子 美咲 健 陽菜 大翔 さくら 翔太 結衣 蓮 ひなた ケイ
25;Berlin Chicago;last;대리;김 이 박 최 정 강 조 윤 장 임 남궁 황보;민준 서연 하준 지우 도윤 서현 은우 하은 시우 수아 준서 다은
25;Paris London Berlin;first;مهندس;الخطيب حداد النجار منصور العلي خوري صالح الشامي عبد_الرحمن بن_يوسف;أحمد فاطمة خالد ليلى يوسف مريم عمر نور حسن سلمى
15;Boston Berlin;first;מפתח;כהן לוי מזרחי פרץ ביטון אברהם פרידמן שפירא;אורי נועה דוד תמר יעל איתן מיכל רון
25;London New_York;first;अभियंता;शर्मा वर्मा गुप्ता सिंह कुमार पटेल मिश्रा जोशी अय्यर चौधरी;आरव प्रिया विवान अनन्या रोहन दीपिका अर्जुन कविता मीरा श्रुति
15;London Chicago;first;วิศวกร;แสงทอง ศรีสุข วงศ์ใหญ่ ใจดี บุญมี เพชรดี ทองคำ เกษมสุข;สมชาย สมหญิง อนันต์ มาลี ปรีชา กานดา วิชัย เอื้อมพร
""".strip().splitlines()

# First name; what colleagues call its owners.
NICKNAMES = {"Charles": "Charlie", "Samuel": "Sam", "Edward": "Ted", "Günter": "Gü",
             "Małgorzata": "Gosia", "Agnieszka": "Aga", "Mehmet": "Memo", "François": "Fanfan", "João": "Joca",
             "Дмитрий": "Дима", "Γιώργος": "Γιωργάκης", "健": "ケンちゃん", "Robin": "Rob", "Jörg": "Jogi"}

LATIN = str.maketrans({"ß": "ss", "ø": "o", "Ø": "o", "ł": "l", "Ł": "l", "đ": "d", "Đ": "d", "ð": "d", "Ð": "d",
                       "ı": "i", "æ": "ae", "ä": "ae", "ö": "oe", "ü": "ue", "Ä": "Ae", "Ö": "Oe", "Ü": "Ue"})


class Dice(random.Random):
    """Draws with random() only: its sequence is the one that never changes between versions of Python."""

    def happens(self, share):
        return self.random() < share

    def one_of(self, things):
        return things[int(self.random() * len(things))]


class Numbers:
    """Hands out each number of a range once, beginning after those of the contacts."""

    def __init__(self, given):
        self.taken = {number.replace(" ", "") for number in given}
        self.position = {}

    def next(self, prefix, digits):
        while True:
            number = self.position[prefix] = self.position.get(prefix, -1) + 1
            if number >= 10 ** digits:
                return None
            text = f"{prefix}{number:0{digits}}"
            if text.replace(" ", "") not in self.taken:
                return text


def as_written(number, dice):
    """One of the ways in which people write a number; all of them can be dialled in Berlin."""
    country, area, *rest = number.split()
    local = " ".join(rest)
    packed = local.replace(" ", "")
    ways = [number, number, number, f"{country} ({area}) {local}", f"{country}{area}{packed}",
            f"{country}-{area}-{'-'.join(rest)}", f"00{country[1:]} {area} {local}", f"{country}.{area}.{packed}"]
    if country == "+49":
        ways += [f"0{area} {local}", f"0{area}/{packed}", f"(0{area}) {local}", f"+49 (0){area} {local}"]
    return dice.one_of(ways)


def ascii_only(text):
    plain = unicodedata.normalize("NFKD", text.translate(LATIN)).encode("ascii", "ignore").decode().lower()
    return "".join(character for character in plain if character.isalnum())


class Company:
    def __init__(self):
        self.dice = Dice(1000)
        self.offices = {name: rest for name, *rest in (line.split(";") for line in OFFICES)}
        self.people = []
        self.addresses = set()
        contacts = make_demo_contacts.Numbers()
        self.contacts = [(contact.split(";"), list(make_demo_contacts.telephones(kinds, town, contacts)))
                         for contact in make_demo_contacts.PEOPLE
                         for town, kinds in [contact.split(";")[5:7]]]
        self.numbers = Numbers(line.split(":")[1] for _, lines in self.contacts for line in lines)

    def number_of(self, prefix, digits):
        number = self.numbers.next(prefix, int(digits))
        return as_written(number, self.dice) if number else None

    def mail(self, first, surname, number):
        name = f"{ascii_only(first)}.{ascii_only(surname)}"
        if name.startswith(".") or name.endswith("."):
            name = f"staff{number}"
        if name in self.addresses:
            name += str(number)
        self.addresses.add(name)
        return f"{name}@office.example"

    def add(self, first, surname, whole, office, title, department, numbers, mail=None):
        dice = self.dice
        number = len(self.people) + 1
        street, town, country = self.offices[office][3:]
        street = street.format(1 + number % 80)
        uid = f"e{number:04}"
        person = [("dn", f"uid={uid},ou=People,{BASE}"), ("objectClass", "inetOrgPerson"), ("uid", uid),
                  ("cn", whole), ("sn", surname)]
        if first in NICKNAMES:
            person.append(("uid", NICKNAMES[first]))
        person.append(("givenName", first))
        if not dice.happens(0.05):
            person.append(("displayName", whole))
        if not dice.happens(0.04):
            person.append(("title", title))
        person += [("ou", department), ("o", f"Deskbook {office}")]
        if not dice.happens(0.1):
            person.append(("street", street))
        if not dice.happens(0.1):
            person.append(("postalAddress", "$".join((street, town, country))))
        if not dice.happens(0.05):
            person.append(("l", office))
        if mail or not dice.happens(0.04):
            person.append(("mail", mail or self.mail(first, surname, number)))
        self.people.append(person + [(kind, value) for kind, value in numbers if value])

    def add_contact(self, index, contact, lines):
        surname, first, office, title = contact[:4]
        kinds = {"WORK,VOICE": "telephoneNumber", "CELL,VOICE": "mobile", "HOME,VOICE": "homePhone"}
        numbers = []
        for line in lines:
            types, number = line.removeprefix("TEL;TYPE=").split(":")
            if types.removesuffix(",PREF") in kinds:
                numbers.append((kinds[types.removesuffix(",PREF")], number))
        whole = f"{surname} {first}" if ord(surname[0]) > 0x3000 else f"{first} {surname}"
        department = self.dice.one_of(list(DEPARTMENTS))
        self.add(first, surname, whole, office.removeprefix("Deskbook "), title, department, numbers,
                 f"contact{index:02}@office.example")

    def invent(self, culture):
        dice = self.dice
        count, offices, order, own_title, surnames, firsts = culture.split(";")
        offices, surnames, firsts = ([word.replace("_", " ") for word in words.split()]
                                     for words in (offices, surnames, firsts))
        names = set()
        for position in range(int(count)):
            surname = first = None
            # Twice the same name: at the end of each culture, and for the surnames that stand twice above.
            while not surname or ((surname, first) in names and position + 1 < int(count)):
                surname, first = dice.one_of(surnames), dice.one_of(firsts)
            names.add((surname, first))
            whole = f"{first} {surname}" if order == "first" else surname + order.removeprefix("last") + first
            office = dice.one_of(offices)
            department = dice.one_of(list(DEPARTMENTS))
            title = own_title if dice.happens(0.4) else dice.one_of(DEPARTMENTS[department])
            self.add(first, surname, whole, office, title, department, list(self.invented_numbers(office)))

    def invented_numbers(self, office):
        dice = self.dice
        prefix, digits, country = self.offices[office][:3]
        if dice.happens(0.03):
            return
        if not dice.happens(0.04):
            yield "telephoneNumber", self.number_of(prefix, digits)
        if dice.happens(0.15):  # a direct extension, or a second line
            extension = f"{2000 + len(self.people)}"
            yield "telephoneNumber", extension if dice.happens(0.5) else self.number_of(prefix, digits)
        if dice.happens(0.5):
            yield "mobile", self.number_of(*MOBILES[country])
        if dice.happens(0.2):
            yield "homePhone", self.number_of(prefix, digits)


def attribute(name, value):
    """A line of LDIF (RFC 2849), folded; base64 for what is not plain ASCII."""
    if value.isascii() and value[0] not in " :<":
        line = f"{name}: {value}"
    else:
        line = f"{name}:: {base64.b64encode(value.encode()).decode()}"
    return line[:76] + "".join(f"\n {line[at:at + 75]}" for at in range(76, len(line), 75)) + "\n"


def main(output):
    company = Company()
    for index, (contact, lines) in enumerate(company.contacts, 1):
        if contact[2].startswith("Deskbook "):
            company.add_contact(index, contact, lines)
    for culture in CULTURES:
        company.invent(culture)
    assert len(company.people) == PEOPLE_COUNT, len(company.people)
    top = [[("dn", BASE), ("objectClass", "organization"), ("objectClass", "dcObject"), ("o", "Deskbook"),
            ("dc", "deskbook")],
           [("dn", f"ou=People,{BASE}"), ("objectClass", "organizationalUnit"), ("ou", "People")]]
    entries = ("".join(attribute(*pair) for pair in entry) for entry in top + company.people)
    output.write_text("\n".join(entries), encoding="ascii")
    print(f"{len(company.people)} people, {output.stat().st_size} bytes")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else OUTPUT)
