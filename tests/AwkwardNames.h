// Names that are hard to sort and to find: some hundred for each script, for tests of every language.

#pragma once

#include <string>
#include <vector>

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

// The languages whose order of names is tested.
inline const char* const nSORTED_LANGUAGES[] = {"en", "de", "fr", "es", "it", "pt", "nl", "pl", "cs",
                                                "tr", "ru", "el", "sv", "da", "nb", "fi", "hu", "sk",
                                                "hr", "ro", "uk", "ja", "zh", "th", "ar", "he"};

namespace awkward {

using Strings = std::vector<std::string>;

// Names as they are, then pieces that are put together in pairs and with what stands between names.
struct Script {
    Strings names;
    Strings pieces;
};

inline const std::vector<Script>& scripts()
{
    static const std::vector<Script> all{
        // Latin: accents, ligatures, letters of their own, contractions, what is neither letter nor digit
        {{"",
          " ",
          "  Adams",
          "Adams ",
          "adams",
          "ADAMS",
          "Adam-s",
          "Ad ams",
          "A. Adams",
          "Aagaard",
          "Ågård",
          "AAGAARD",
          "aAgaard",
          "Azgaard",
          "Åberg",
          "Ärlig",
          "Öberg",
          "Zorn",
          "Østergård",
          "Ærø",
          "Aero",
          "Müller",
          "Mueller",
          "Muller",
          "MÜLLER",
          "Mulligan",
          "Muñoz",
          "Munoz",
          "Munz",
          "Strauß",
          "Strauss",
          "STRAUSS",
          "Strausz",
          "STRAUẞ",
          "Straus",
          "Chalupa",
          "chalupa",
          "CHALUPA",
          "cHalupa",
          "Cibula",
          "Hora",
          "Ihned",
          "Čapek",
          "Capek",
          "Cz",
          "Llorente",
          "Lorente",
          "Luz",
          "Łukasz",
          "Lukasz",
          "IJssel",
          "Ĳssel",
          "Ijssel",
          "Ysselmeer",
          "Ik",
          "Işık",
          "Isik",
          "ışık",
          "İnci",
          "inci",
          "Inci",
          "INCI",
          "O'Neill",
          "O’Neill",
          "ONeill",
          "O Neill",
          "O-Neill",
          "o'neill",
          "d'Arc",
          "D'Arc",
          "Darc",
          "de la Cruz",
          "De La Cruz",
          "delacruz",
          "van Dijk",
          "Van Dyk",
          "vanDijk",
          "Smith-Jones",
          "Smith Jones",
          "Smithjones",
          "Smith–Jones",
          "Dupont & Cie",
          "Dupont, Cie",
          "3M",
          "3 M",
          "10",
          "9",
          "007",
          "1. FC",
          "２４",
          "#1",
          "*",
          "+49 30",
          "(Büro)",
          "“Zitat”",
          "@home",
          "_x",
          "Œuvre",
          "Oeuvre",
          "œuvre",
          "Dž",
          "Ǆ",
          "Lj",
          "Ǉ",
          "Njegoš",
          "Ǌegoš",
          "Đorđe",
          "Dorde",
          "ﬁscher",
          "Fischer",
          "ſankt",
          "Côte",
          "Coté",
          "Cote",
          "Côté",
          "Ţepeş",
          "Țepeș",
          "Tepes",
          "Þór",
          "Thor",
          "Eiður",
          "Gyula",
          "Guy",
          "Szabó",
          "Szűcs",
          "Szucs",
          "Dzsesszy",
          "Nyíri",
          "Tyúk",
          "Zsolt",
          "Zoltan",
          "🙂 Smile",
          "🙂",
          "Ann🙂",
          "Ann",
          "👩‍👩‍👧 Family",
          "e\u0301\u0323x",
          "x\u0327\u0301",
          "q\u0307"},
         {"a",  "Á", "ä", "å", "aa", "æ", "c", "Č", "ch", "CH", "d",  "dz", "đ", "i", "ı", "İ", "ij", "l",
          "Ll", "ł", "n", "ñ", "o",  "ö", "ø", "ő", "s",  "ß",  "SS", "š",  "u", "ü", "ű", "y", "z",  "ž"}},
        // Greek: final sigma, accents and dialytika, both normal forms of the tonos
        {{"Παπαδόπουλος",
          "ΠΑΠΑΔΟΠΟΥΛΟΣ",
          "Παπαδοπούλου",
          "παπαδοπουλοσ",
          "Οδυσσεύς",
          "Οδυσσευσ",
          "Άννα",
          "Αννα",
          "ΑΝΝΑ",
          "άννα",
          "Ήρα",
          "Ηρα",
          "Ιωάννης",
          "Ϊωάννης",
          "Ωμέγα",
          "Ω",
          "Ώ",
          "Ρωμαΐδης",
          "Ρωμαιδης",
          "ΐ",
          "ΰ",
          "Ψ-Ω",
          "Ο’Νηλ"},
         {"α", "Ά", "β", "γ", "ε", "έ", "η", "ι", "ϊ", "ΐ", "κ", "ο", "σ", "ς", "Σ", "υ", "ω", "Ώ"}},
        // Cyrillic: io, short i, the letters that only Ukrainian has
        {{"Ёлкин",  "Елкин",  "ёлкин",         "Ежов",          "Жуков",   "Йодль",  "Иодль", "Иванов",
          "ИВАНОВ", "иванов", "Иванов-Петров", "Иванов Петров", "Щукин",   "Шукин",  "Цой",   "Чайка",
          "Ґонта",  "Гонта",  "Євген",         "Евген",         "Їжак",    "Іжак",   "Ижак",  "О’Коннор",
          "Объект", "Обект",  "Љубица",        "Ђорђе",         "Мальцев", "Малцев", "Я",     "Ія"},
         {"а", "Б", "в", "г", "ґ", "д", "е", "ё", "є", "ж", "и", "і", "ї", "й", "о", "ъ", "ь", "я"}},
        // Hebrew and Arabic: vowel signs, final letters, alef with hamza
        {{"כהן",     "כֹּהֵן",  "לוי",  "אברהם", "מלך",   "שלום",    "שָׁלוֹם", "בן־דוד",
          "בן דוד",  "محمد", "مُحَمَّد", "أحمد",  "احمد",  "إبراهيم", "آدم",  "عبد الله",
          "عبدالله", "علي",  "على",  "فاطمة", "فاطمه", "ﷲ"},
         {"א", "ב", "ך", "כ", "ם", "מ", "שׁ", "ש", "ا", "أ", "إ", "آ", "ب", "ة", "ه", "ي", "ى", "ؤ"}},
        // Thai (vowels written before their consonant), Japanese, Chinese, Korean
        {{"เก่ง",    "กา",       "แก้ว",      "ไก่",   "ขวัญ",    "น้ำ",   "นํ้า",   "โอ๋",     "ฯ",
          "さとう", "サトウ",   "ｻﾄｳ",      "佐藤", "がく",   "かく", "カク", "はは",   "はば",
          "はぱ",   "ハーバー", "ハアバア", "きゃ", "きや",   "々",   "王",   "王小明", "李",
          "张",     "張",       "中田",     "김",   "김영수", "이",   "각",   "가"},
         {"ก", "เ", "แ", "า", "น", "ำ", "あ", "ア", "か", "が", "ー", "っ", "つ", "王", "李", "中", "가",
          "각"}},
    };
    return all;
}

inline std::string normalized(const std::string& name, const icu::Normalizer2* form)
{
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    form->normalize(icu::UnicodeString::fromUTF8(name), status).toUTF8String(text);
    return text;
}

// In both normal forms where they differ.
inline void appendForms(Strings& names, const std::string& name)
{
    UErrorCode status = U_ZERO_ERROR;
    names.push_back(normalized(name, icu::Normalizer2::getNFCInstance(status)));
    auto decomposed = normalized(name, icu::Normalizer2::getNFDInstance(status));
    if (decomposed != names.back())
        names.push_back(std::move(decomposed));
}

} // namespace awkward

inline std::vector<std::string> awkwardNames(const awkward::Script& script)
{
    const char* const between[] = {"", "-", " ", "'", ", "};
    awkward::Strings names;
    for (const auto& name : script.names)
        awkward::appendForms(names, name);
    std::size_t turn = 0;
    for (const auto& first : script.pieces)
        for (std::size_t i = turn % 4; i < script.pieces.size(); i += 4)
            awkward::appendForms(names, first + between[turn++ % std::size(between)] + script.pieces[i]);
    return names;
}
