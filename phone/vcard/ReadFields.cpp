#include "ReadFields.h"

#include <algorithm>
#include <set>

#include <glib.h>

#include "Text.h"

namespace vcard {

namespace {

// Order of telephones that have no place of their own when the free places are given away.
enum class Use { Work, Home, Cell, Main, Other, Untyped, Machine };

struct Telephone {
    std::size_t index;
    Use use;
    std::string number;
    bool placed = false;
};

// Places of the components of N and of ADR.
constexpr std::size_t nFAMILY = 0;
constexpr std::size_t nGIVEN = 1;
constexpr std::size_t nADDITIONAL = 2;
constexpr std::size_t nPOST_BOX = 0;
constexpr std::size_t nEXTENDED = 1;
constexpr std::size_t nSTREET = 2;
constexpr std::size_t nCITY = 3;
constexpr std::size_t nREGION = 4;
constexpr std::size_t nPOSTCODE = 5;
constexpr std::size_t nCOUNTRY = 6;

bool hasAny(const std::vector<std::string>& types, std::initializer_list<const char*> wanted)
{
    return std::any_of(types.begin(), types.end(), [&](const std::string& type) {
        return std::find(wanted.begin(), wanted.end(), type) != wanted.end();
    });
}

Use useOf(const std::vector<std::string>& types)
{
    if (hasAny(types, {"FAX", "HOMEFAX", "WORKFAX", "PAGER", "MODEM", "BBS", "TELEX", "TLX", "TEXTPHONE"}))
        return Use::Machine;
    if (hasAny(types, {"CELL", "MOBILE", "CAR"}))
        return Use::Cell;
    if (hasAny(types, {"WORK"}))
        return Use::Work;
    if (hasAny(types, {"HOME"}))
        return Use::Home;
    if (hasAny(types, {"MAIN"}))
        return Use::Main;
    return hasAny(types, {"OTHER"}) ? Use::Other : Use::Untyped;
}

bool isFamilyFirst(const std::string& name)
{
    static const std::set<GUnicodeScript> scripts{G_UNICODE_SCRIPT_HAN, G_UNICODE_SCRIPT_HIRAGANA,
                                                  G_UNICODE_SCRIPT_KATAKANA, G_UNICODE_SCRIPT_HANGUL};
    return scripts.contains(g_unichar_get_script(g_utf8_get_char(name.c_str())));
}

// Digits of other scripts and full-width signs are not on the keys of a telephone.
std::string dialable(const std::string& text)
{
    constexpr gunichar fullWidthPlus = 0xFF0B;
    constexpr gunichar leftToRightMark = 0x200E;
    constexpr gunichar rightToLeftMark = 0x200F;
    std::string number;
    for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
        gunichar character = g_utf8_get_char(at);
        if (character == leftToRightMark || character == rightToLeftMark)
            continue;
        if (character == fullWidthPlus)
            character = '+';
        else if (g_unichar_type(character) == G_UNICODE_DASH_PUNCTUATION)
            character = '-';
        else if (const int digit = g_unichar_digit_value(character); digit >= 0)
            character = static_cast<gunichar>('0' + digit);
        char bytes[6];
        number.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(character, bytes)));
    }
    return oneLine(number);
}

bool hasDigit(std::string_view number)
{
    return std::any_of(number.begin(), number.end(), [](char c) { return g_ascii_isdigit(c); });
}

std::string digitsOf(std::string_view number)
{
    std::string digits;
    std::copy_if(number.begin(), number.end(), std::back_inserter(digits),
                 [](char c) { return g_ascii_isdigit(c) || c == '*' || c == '#' || c == '+'; });
    return digits;
}

// One reading of a card; each function takes what it understands.
class FieldReader {
public:
    explicit FieldReader(const Card& card)
        : m_card(card)
        , m_used(card.properties.size(), false)
    {
    }

    CardReading read()
    {
        takeMarked();
        readNumbers();
        take(Field::Email, best({"EMAIL"}, {"PREF"}));
        take(Field::Company, best({"ORG"}, {}));
        take(Field::JobFunction, best({"TITLE"}, {}));
        take(Field::JobFunction, best({"ROLE"}, {}));
        take(Field::Address, best({"ADR"}, {"WORK", "PREF"}));
        take(Field::Uid, best({"UID"}, {}));
        readGroups();
        readPhoto();
        readName();
        listWhatIsNotShown();
        return std::move(m_reading);
    }

private:
    const Property& property(std::size_t index) const { return m_card.properties[index]; }

    std::string& field(Field which) { return m_reading.record[which]; }

    bool hasSource(Field which) const { return m_reading.sources.contains(which); }

    // What the user called the property in his address book: "item1.X-ABLABEL:_$!<Main>!$_".
    std::string label(const Property& of) const
    {
        if (of.group.empty())
            return "";
        for (const auto& other : m_card.properties) {
            if (!other.is("X-ABLABEL") || upper(other.group) != upper(of.group))
                continue;
            auto text = oneLine(other.text());
            if (text.starts_with("_$!<") && text.ends_with(">!$_"))
                text = text.substr(4, text.size() - 8);
            return text;
        }
        return "";
    }

    std::vector<std::string> typesWithLabel(const Property& of) const
    {
        auto types = of.types();
        const auto name = upper(label(of));
        if (!name.empty())
            types.push_back(name);
        return types;
    }

    static bool isPreferred(const Property& of)
    {
        return of.hasType("PREF") || of.parameterText("PREF") == "1";
    }

    void takeMarked()
    {
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            const auto mark = property(i).parameterText(nFIELD_PARAMETER);
            for (std::size_t f = 0; f < nFIELDS; ++f) {
                if (!mark.empty() && mark == upper(fieldName(static_cast<Field>(f))))
                    take(static_cast<Field>(f), i);
            }
        }
    }

    bool isFree(std::size_t index) const
    {
        return !m_used[index] && property(index).parameter(nFIELD_PARAMETER) == nullptr;
    }

    // The first with one of the types, tried in their order, else the first of all.
    std::optional<std::size_t> best(std::initializer_list<const char*> names,
                                    std::initializer_list<const char*> types) const
    {
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            const bool named =
                std::any_of(names.begin(), names.end(), [&](auto name) { return property(i).is(name); });
            if (named && isFree(i) && !valueOf(property(i)).empty())
                found.push_back(i);
        }
        for (const char* type : types) {
            for (const auto i : found) {
                if (property(i).hasType(type) ||
                    (std::string_view(type) == "PREF" && isPreferred(property(i))))
                    return i;
            }
        }
        return found.empty() ? std::nullopt : std::optional(found.front());
    }

    static std::string valueOf(const Property& of)
    {
        if (of.is("ADR"))
            return joinFilled(addressLines(of), " ");
        return of.is("ORG") ? oneLine(of.component(0)) : oneLine(of.text());
    }

    static std::vector<std::string> addressLines(const Property& of)
    {
        const auto part = [&](std::size_t index) { return oneLine(of.component(index)); };
        return {joinFilled({part(nPOST_BOX), part(nEXTENDED), part(nSTREET)}, ", "),
                joinFilled({joinFilled({part(nPOSTCODE), part(nCITY)}, " "), part(nREGION), part(nCOUNTRY)},
                           ", ")};
    }

    void take(Field which, std::optional<std::size_t> index)
    {
        if (!index || hasSource(which))
            return;
        m_reading.sources[which] = *index;
        m_used[*index] = true;
        const auto& from = property(*index);
        if (which == Field::Address) {
            const auto lines = addressLines(from);
            field(Field::Address) = lines[0];
            field(Field::Address2) = lines[1];
        } else if (from.is("TEL")) {
            field(which) = numberOf(from);
        } else {
            field(which) = valueOf(from);
        }
    }

    static std::string numberOf(const Property& telephone)
    {
        auto text = oneLine(telephone.text());
        if (upper(text.substr(0, 4)) == "TEL:")
            text = text.substr(4, text.find(';') - 4);
        return dialable(text);
    }

    void readNumbers()
    {
        std::vector<Telephone> telephones;
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            if (!property(i).is("TEL") || !isFree(i))
                continue;
            const auto number = numberOf(property(i));
            if (hasDigit(number))
                telephones.push_back({i, useOf(typesWithLabel(property(i))), number});
        }
        for (auto& telephone : telephones)
            placeWhereItBelongs(telephone);
        for (const Use use : {Use::Main, Use::Other, Use::Untyped, Use::Work, Use::Home, Use::Cell})
            placeWhereItIsFree(telephones, use);
        const bool nothingToDial =
            std::none_of(nNUMBERS.begin(), nNUMBERS.end(), [&](Field f) { return hasSource(f); });
        if (nothingToDial)
            placeWhereItIsFree(telephones, Use::Machine);
        readPreferred();
    }

    void placeWhereItBelongs(Telephone& telephone)
    {
        switch (telephone.use) {
        case Use::Work:
            place(telephone, hasSource(Field::Office) ? Field::Office2 : Field::Office);
            break;
        case Use::Cell:
            place(telephone, Field::Mobile);
            break;
        case Use::Home:
            place(telephone, Field::Private);
            break;
        case Use::Main:
        case Use::Other:
        case Use::Untyped:
        case Use::Machine:
            break;
        }
    }

    void placeWhereItIsFree(std::vector<Telephone>& telephones, Use use)
    {
        for (auto& telephone : telephones) {
            if (telephone.placed || telephone.use != use)
                continue;
            const bool known = std::any_of(nNUMBERS.begin(), nNUMBERS.end(), [&](Field f) {
                return digitsOf(field(f)) == digitsOf(telephone.number);
            });
            m_used[telephone.index] = known;
            for (const Field number : nNUMBERS) {
                if (!known)
                    place(telephone, number);
            }
        }
    }

    void place(Telephone& telephone, Field where)
    {
        if (telephone.placed || hasSource(where))
            return;
        take(where, telephone.index);
        telephone.placed = true;
    }

    void readPreferred()
    {
        for (const Field number : nNUMBERS) {
            if (!m_reading.record.preferred && hasSource(number) &&
                isPreferred(property(m_reading.sources[number])))
                m_reading.record.preferred = number;
        }
    }

    static std::vector<std::string> groupNames(const Property& list)
    {
        std::vector<std::string> names;
        for (const auto& component : list.components) {
            const bool whole = list.is("CATEGORIES"); // cut already
            for (const auto part : splitUnquoted(component, whole ? '\0' : ','))
                names.push_back(oneLine(part));
        }
        return names;
    }

    void readGroups()
    {
        auto& groups = m_reading.record.groups;
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            if (!isGroupList(property(i)))
                continue;
            m_used[i] = true;
            for (const auto& name : groupNames(property(i))) {
                if (!name.empty() && std::find(groups.begin(), groups.end(), name) == groups.end())
                    groups.push_back(name);
            }
        }
    }

    void readPhoto()
    {
        for (std::size_t i = 0; i < m_card.properties.size() && !m_reading.photoSource; ++i) {
            const auto& picture = property(i);
            if (!picture.is("PHOTO") || !picture.isBase64())
                continue;
            const auto mime = pictureType(picture.value);
            if (mime.empty()) {
                m_reading.problems.push_back("PHOTO: not a picture the phone can show");
                continue;
            }
            m_reading.photoSource = i;
            m_reading.record.photo = Photo{mime, picture.value};
            m_used[i] = true;
        }
    }

    void readName()
    {
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            if (property(i).is("N") && !hasSource(Field::Surname)) {
                m_reading.sources[Field::Surname] = i;
                m_used[i] = true;
            } else if (property(i).is("FN")) {
                m_used[i] = true;
            }
        }
        if (!readStructuredName())
            readFormattedName();
    }

    bool readStructuredName()
    {
        if (!hasSource(Field::Surname))
            return false;
        const auto& name = property(m_reading.sources[Field::Surname]);
        field(Field::Surname) = oneLine(name.component(nFAMILY));
        field(Field::Firstname) = oneLine(name.component(nGIVEN));
        if (field(Field::Firstname).empty())
            field(Field::Firstname) = oneLine(name.component(nADDITIONAL));
        return !field(Field::Surname).empty() || !field(Field::Firstname).empty();
    }

    void readFormattedName()
    {
        const auto* formatted = m_card.find("FN");
        const auto whole = formatted == nullptr ? "" : oneLine(formatted->text());
        if (whole.empty() || whole == field(Field::Company)) {
            field(Field::Surname) = nameOfTheNameless();
            return;
        }
        const auto comma = whole.find(", ");
        const bool familyFirst = isFamilyFirst(whole);
        const auto blank = familyFirst ? whole.find(' ') : whole.rfind(' ');
        if (comma != std::string::npos)
            setName(whole.substr(0, comma), whole.substr(comma + 2));
        else if (blank == std::string::npos)
            setName(whole, "");
        else if (familyFirst)
            setName(whole.substr(0, blank), whole.substr(blank + 1));
        else
            setName(whole.substr(blank + 1), whole.substr(0, blank));
    }

    void setName(const std::string& surname, const std::string& firstname)
    {
        field(Field::Surname) = surname;
        field(Field::Firstname) = firstname;
    }

    std::string nameOfTheNameless()
    {
        if (!field(Field::Company).empty())
            return field(Field::Company);
        if (const auto nickname = best({"NICKNAME"}, {}))
            return valueOf(property(*nickname));
        for (const Field other :
             {Field::Email, Field::Office, Field::Office2, Field::Mobile, Field::Private}) {
            if (!field(other).empty())
                return field(other);
        }
        return "";
    }

    void listWhatIsNotShown()
    {
        static const std::set<std::string> technical{"PRODID", "REV",          "SOURCE",      "CLASS",
                                                     "MAILER", "PROFILE",      "SORT-STRING", "X-ABLABEL",
                                                     "KIND",   "CLIENTPIDMAP", "NAME"};
        for (std::size_t i = 0; i < m_card.properties.size(); ++i) {
            if (!m_used[i] && !technical.contains(upper(property(i).name)))
                addNotShown(property(i), summaryOf(property(i)));
        }
        addRestOf(Field::Surname, nADDITIONAL);
        addRestOf(Field::Company, 1);
    }

    static std::string summaryOf(const Property& of)
    {
        if (of.isBase64())
            return "";
        return of.is("ADR") ? joinFilled(addressLines(of), ", ") : of.text();
    }

    // Middle names, titles and departments have no field although their property has one.
    void addRestOf(Field which, std::size_t first)
    {
        if (!hasSource(which))
            return;
        const auto& from = property(m_reading.sources[which]);
        std::vector<std::string> rest;
        for (std::size_t i = first; i < from.components.size(); ++i) {
            if (oneLine(from.components[i]) != m_reading.record[Field::Firstname])
                rest.push_back(oneLine(from.components[i]));
        }
        const auto text = joinFilled(rest, ", ");
        if (!text.empty())
            addNotShown(from, text);
    }

    void addNotShown(const Property& of, const std::string& text)
    {
        constexpr glong longest = 60;
        auto value = oneLine(text);
        if (g_utf8_strlen(value.c_str(), -1) > longest) {
            value.resize(
                static_cast<std::size_t>(g_utf8_offset_to_pointer(value.c_str(), longest) - value.c_str()));
            value += "\xE2\x80\xA6";
        }
        auto types = joinFilled(typesWithLabel(of), ", ");
        std::transform(types.begin(), types.end(), types.begin(), g_ascii_tolower);
        auto entry = upper(of.name) + (types.empty() ? "" : " (" + types + ")");
        m_reading.notShown.push_back(value.empty() ? entry : entry + ": " + value);
    }

    const Card& m_card;
    std::vector<bool> m_used;
    CardReading m_reading;
};

} // namespace

bool isGroupList(const Property& property)
{
    static const std::set<std::string> names{"CATEGORIES", "X-CATEGORIES", "X-GROUP", "X-GROUPS",
                                             "X-GROUP-NAME"};
    return names.contains(upper(property.name));
}

CardReading readFields(const Card& card)
{
    return FieldReader(card).read();
}

} // namespace vcard
