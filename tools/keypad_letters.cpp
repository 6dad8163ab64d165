// Writes phone/system/keypad-letters.txt: which letters the digit keys give in each language.
//
// Run it when a language is added, and check the result in; the build does not need it:
//   g++ -std=c++20 tools/keypad_letters.cpp -o build/keypad_letters $(pkg-config --cflags --libs icu-i18n)
//   build/keypad_letters > phone/system/keypad-letters.txt

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/ulocdata.h>
#include <unicode/uniset.h>
#include <unicode/uscript.h>
#include <unicode/usetiter.h>
#include <unicode/uversion.h>

namespace {

constexpr const char* nLANGUAGES[] = {"bg", "ca", "cs", "da", "de", "el", "en", "es", "et",
                                      "fi", "fr", "hr", "hu", "it", "lt", "lv", "nb", "nl",
                                      "pl", "pt", "ro", "ru", "sk", "sl", "sv", "tr", "uk"};

// ITU-T E.161 for Latin, ETSI ES 202 130 for Greek and Cyrillic; keys 2 to 9.
constexpr const char16_t* nLATIN[] = {u"abc", u"def", u"ghi", u"jkl", u"mno", u"pqrs", u"tuv", u"wxyz"};
constexpr const char16_t* nGREEK[] = {u"αβγ", u"δεζ", u"ηθι", u"κλμ", u"νξο", u"πρσς", u"τυφ", u"χψω"};
constexpr const char16_t* nCYRILLIC[] = {u"абвг", u"дежз", u"ийкл", u"мноп",
                                         u"рсту", u"фхцч", u"шщъы", u"ьэюя"};

// Letters of their own whose neighbours in the alphabet say where they belong.
const std::map<UChar32, UChar32> nNEIGHBOURS{{u'ґ', u'г'}, {u'є', u'е'}, {u'і', u'и'}};

void must(UErrorCode status, const char* what)
{
    if (U_SUCCESS(status))
        return;
    std::cerr << what << ": " << u_errorName(status) << '\n';
    std::exit(1);
}

icu::UnicodeSet exemplars(const char* language)
{
    UErrorCode status = U_ZERO_ERROR;
    ULocaleData* data = ulocdata_open(language, &status);
    must(status, language);
    icu::UnicodeSet letters;
    ulocdata_getExemplarSet(data, letters.toUSet(), 0, ULOCDATA_ES_STANDARD, &status);
    must(status, language);
    ulocdata_close(data);
    letters.removeAllStrings();
    return letters;
}

// The letter that is printed on the key: "ä" is on the key of "a", "ø" on that of "o".
UChar32 baseLetter(UChar32 letter)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text(letter);
    if (uscript_getScript(letter, &status) == USCRIPT_LATIN) {
        static const std::unique_ptr<icu::Transliterator> toAscii(
            icu::Transliterator::createInstance("Latin-ASCII", UTRANS_FORWARD, status));
        must(status, "Latin-ASCII");
        toAscii->transliterate(text);
        return text.char32At(0);
    }
    text = icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
    must(status, "NFD");
    const UChar32 base = text.char32At(0);
    const auto neighbour = nNEIGHBOURS.find(base);
    return neighbour == nNEIGHBOURS.end() ? base : neighbour->second;
}

class Key {
public:
    Key(const icu::Collator& collator, const icu::UnicodeSet& letters)
        : m_collator(collator)
        , m_letters(letters)
    {
    }

    // The plain letters, then those of the language that are kin to one of them.
    void addAlphabet(const icu::UnicodeString& plain)
    {
        m_text += plain;
        std::vector<icu::UnicodeString> kin;
        for (icu::UnicodeSetIterator it(m_letters); it.next();) {
            const UChar32 letter = it.getCodepoint();
            if (m_text.indexOf(letter) < 0 && plain.indexOf(baseLetter(letter)) >= 0)
                kin.emplace_back(letter);
        }
        std::sort(kin.begin(), kin.end(), [this](const auto& a, const auto& b) {
            UErrorCode status = U_ZERO_ERROR;
            return m_collator.compare(a, b, status) == UCOL_LESS;
        });
        for (const auto& letter : kin)
            m_text += letter;
    }

    const icu::UnicodeString& text() const { return m_text; }

private:
    const icu::Collator& m_collator;
    const icu::UnicodeSet& m_letters;
    icu::UnicodeString m_text;
};

bool writesWith(const icu::UnicodeSet& letters, const char16_t* firstKey)
{
    return letters.contains(firstKey[0]);
}

void writeLine(const char* language, char key, const icu::UnicodeString& characters)
{
    std::string text;
    characters.toUTF8String(text);
    std::cout << language << ' ' << key << ' ' << text << key << '\n';
}

void writeLanguage(const char* language)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale(language), status));
    must(status, language);
    const auto letters = exemplars(language);

    writeLine(language, '0', u" ");
    writeLine(language, '1', u".,-'&");
    for (int i = 0; i < 8; ++i) {
        Key key(*collator, letters);
        key.addAlphabet(nLATIN[i]);
        for (const auto* alphabet : {nGREEK, nCYRILLIC}) {
            if (writesWith(letters, alphabet[0]))
                key.addAlphabet(alphabet[i]);
        }
        writeLine(language, static_cast<char>('2' + i), key.text());
    }
}

} // namespace

int main()
{
    // The file is included by the source that reads it, as one string.
    std::cout << "R\"keypad(# Written by tools/keypad_letters.cpp with ICU " U_ICU_VERSION
                 ": language, key, characters in their order.\n";
    for (const char* language : nLANGUAGES)
        writeLanguage(language);
    std::cout << ")keypad\"\n";
}
