#include "system/ConfigurationItems.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace {

using Type = ConfigurationItem::Type;

std::optional<int> numberIn(const std::string& text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string joined(const std::vector<std::string>& words, const std::string& between)
{
    std::string all;
    for (const auto& word : words)
        all += (all.empty() ? "" : between) + word;
    return all;
}

bool hasControlCharacter(const std::string& text)
{
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

ConfigurationItem text(std::string name, std::string byDefault, std::string help)
{
    return {std::move(name), Type::Text, "", 0, 0, {}, std::move(byDefault), std::move(help)};
}

ConfigurationItem list(std::string name, std::string byDefault, std::string help)
{
    return {std::move(name), Type::List, "", 0, 0, {}, std::move(byDefault), std::move(help)};
}

// Which attributes of the directory make a field.
ConfigurationItem attributes(const std::string& field, const std::string& bySchema)
{
    return list("ldap-attribute-" + field, "",
                "Attributes in order of preference; \"-\": none. Without it " + bySchema + ".");
}

ConfigurationItem number(std::string name, std::string unit, int least, int most, int byDefault,
                         std::string help)
{
    return {std::move(name),           Type::Number,   std::move(unit), least, most, {},
            std::to_string(byDefault), std::move(help)};
}

ConfigurationItem yesNo(std::string name, bool byDefault, std::string help)
{
    return {std::move(name), Type::YesNo, "", 0, 0, {}, byDefault ? "true" : "false", std::move(help)};
}

ConfigurationItem choice(std::string name, std::vector<std::string> choices, std::string help)
{
    auto first = choices.front();
    return {std::move(name), Type::Choice, "", 0, 0, std::move(choices), std::move(first), std::move(help)};
}

} // namespace

std::string ConfigurationItem::range() const
{
    switch (type) {
    case Type::Number:
        return "a number from " + std::to_string(least) + " to " + std::to_string(most);
    case Type::YesNo:
        return "true or false";
    case Type::Choice:
        return "one of: " + joined(choices, ", ");
    case Type::List:
        return "a list of texts without commas";
    case Type::Text:
        break;
    }
    return "a line of text";
}

Result<std::string> ConfigurationItem::accept(const std::string& value) const
{
    const auto refused = [this] {
        return Error{ErrorCode::Malformed, "\"" + name + "\" must be " + range()};
    };

    if (hasControlCharacter(value))
        return refused();
    if (type == Type::Number) {
        const auto given = numberIn(value);
        if (!given || *given < least || *given > most)
            return refused();
        return std::to_string(*given);
    }
    if (type == Type::YesNo && value != "true" && value != "false")
        return refused();
    if (type == Type::Choice && std::find(choices.begin(), choices.end(), value) == choices.end())
        return refused();
    return value;
}

std::vector<ConfigurationItem> configurationItems(const std::string& language)
{
    return {
        text("language", language,
             "Language of the screen, of sorting and of the keypad: cs, de, el, en, es, fr, it, nl, pl, "
             "pt, ru, sv or tr. Any other code has English texts and sorts in its own way."),
        choice("software-type", {"Veltrix SIP", "Veltrix QRA", "Veltrix TDM"},
               "What the telephone is attached to."),
        number("hardware-variant", "", 1, 99, 1,
               "Which hardware it is; 10 and 11 have no corporate directory. Needs a restart."),
        yesNo("soft-key-bar", true, "Whether the screen has a row of soft keys. Needs a restart."),
        number("visible-rows", "rows", 3, 40, 8, "Height of the screen's lists. Needs a restart."),
        text("localDeviceID", "", "Directory number of this telephone's own device."),
        number("group-slots", "groups", 1, 200, 20,
               "How many groups of contacts there can be. Needs a restart."),
        text("country-code", "49", "Digits of this country's code, without + or 00."),
        text("area-code", "30", "Digits of this place's area code, without the national prefix."),
        text("international-prefix", "00", "What is dialled before a country code."),
        text("national-prefix", "0", "What is dialled before an area code."),
        number("national-digits", "digits", 0, 14, 0,
               "How long all numbers of the country are without the national prefix; 0: they differ."),
        number("least-local-digits", "digits", 0, 12, 3, "Numbers shorter than this are never local ones."),
        yesNo("local-dialling", false, "Whether numbers of this place are dialled without the area code."),
        text("outside-line", "", "What is dialled for an outside line; empty when nothing is."),
        list("other-outside-lines", "", "Further codes for an outside line that people write."),
        number("internal-digits", "digits", 0, 12, 4,
               "Numbers up to this length are internal and left as they are. Where some begin like an "
               "emergency number (1101, 1125), say so in internal-first-digits or internal-patterns: "
               "with the handset lifted the emergency number is dialled as soon as it is complete."),
        list("internal-patterns", "",
             "If given, only these internal numbers exist; x is any digit: \"2xxx\"."),
        text("internal-first-digits", "", "If given, internal numbers begin with one of these: \"2345\"."),
        text("enterprise-prefix", "",
             "What stands before internal numbers for callers from outside: \"+49 30 23125\"."),
        list("emergency-numbers", "110,112",
             "Numbers that the telephone dials itself; with the handset lifted as soon as the last digit is "
             "typed, unless internal or service numbers are said to begin so."),
        list("service-numbers", "115,116xxx,118xx",
             "Outside numbers that need no area code anywhere in the country; x is any digit."),
        number("initial-digit-timeout", "s", 1, 120, 15, "How long the telephone waits for a first digit."),
        number("inter-digit-timeout", "s", 1, 60, 5,
               "A number is complete when no digit came for this long."),
        text("sip-user", "", "Number or name of the telephone's own line; empty: there is none."),
        text("sip-server", "",
             "Registrar of the line: NAME or NAME:PORT, an IPv6 address in brackets; empty: it is not "
             "registered. Names are looked up in the DNS only. \"deskphone sip-password\" takes the "
             "password."),
        choice("sip-transport", {"udp", "tcp", "tls"},
               "How the line's messages travel. tls encrypts them, but does not check who the server is."),
        text("sip-display-name", "", "The name that those who are called see."),
        text("sip-auth-user", "", "Whose password it is; empty: sip-user."),
        text("sip-outbound-proxy", "",
             "Whom everything is sent to: NAME or NAME:PORT; empty: the registrar. Without a registrar calls "
             "go there."),
        number("sip-registration-time", "s", 10, 3600, 300, "How long the registrar is to know the line."),
        number("sip-port", "", 0, 65534, 0,
               "Port on which calls come in; 0: any that is free, which a registrar gets to know. "
               "The port behind it must be free too."),
        text("sip-pickup-code", "*8",
             "What is dialled before the number of a colleague whose call is taken."),
        number("sip-no-answer-time", "s", 5, 600, 60, "How long a call may ring before it is given up."),
        choice("sip-audio", {"auto", "devices", "none"},
               "Whether calls use the computer's microphone and loudspeaker; auto: if it has any. With none, "
               "callers hear themselves."),
        text("pbx-server", "",
             "The PBX that the telephone is attached to, NAME:PORT; it speaks CSTA XML (ECMA-323). Empty: "
             "there is none."),
        text("pbx-device", "", "The telephone's own number at the PBX; empty: localDeviceID."),
        yesNo("pbx-calls", true,
              "Whether calls are placed over the PBX. They never are with a line of one's own (sip-user)."),
        number("pbx-request-timeout", "s", 1, 60, 3, "How long the PBX may take for an answer."),
        list("ldap-servers", "",
             "Servers of the corporate directory, in the order in which they are tried: ldap://NAME or "
             "ldaps://NAME, with :PORT if need be."),
        text("ldap-base", "", "Where the directory is searched: \"ou=people,dc=example,dc=com\"."),
        text("ldap-bind-dn", "",
             "The name that the telephone shows the directory; empty: it asks unnamed. \"deskphone "
             "ldap-password\" takes the password."),
        text("ldap-ca-file", "/etc/ssl/certs/ca-certificates.crt",
             "Certificates (PEM) of those who may sign the server's own; a relative path is looked up in "
             "the profile."),
        choice("ldap-schema", {"inetOrgPerson", "activeDirectory"},
               "Which attributes and which kind of entries the directory has."),
        choice("ldap-security", {"starttls", "none"},
               "How connections to ldap:// servers are encrypted; those to ldaps:// always are. With none no "
               "password is ever sent."),
        yesNo("ldap-check-certificate", true,
              "Whether a server must prove who it is. If not, no password is ever sent."),
        choice("ldap-scope", {"subtree", "one", "base"},
               "How far below ldap-base the directory is searched."),
        text("ldap-filter", "",
             "What all entries must match (RFC 4515); empty: (objectClass=person), and in Active Directory "
             "(objectCategory=person)."),
        number("ldap-size-limit", "entries", 1, 5000, 100,
               "How many entries of the directory one search shows."),
        number("ldap-connect-timeout", "s", 1, 60, 3,
               "How long a server may take until it can be asked; then the next one is tried."),
        number("ldap-search-timeout", "s", 1, 60, 10, "How long a whole search of the directory may take."),
        yesNo("ldap-nickname", false, "Whether a typed name is looked for among nicknames too."),
        attributes("nickname", "uid, in Active Directory mailNickname"),
        attributes("surname", "sn"),
        attributes("firstname", "givenName"),
        attributes("display-name", "displayName, cn"),
        attributes("office", "telephoneNumber"),
        attributes("office2", "otherTelephone, telephoneNumber (its second value), in Active Directory "
                              "otherTelephone"),
        attributes("mobile", "mobile"),
        attributes("private", "homePhone"),
        attributes("email", "mail"),
        attributes("company", "o, in Active Directory company"),
        attributes("jobfunction", "title"),
        attributes("address1", "street, postalAddress, in Active Directory streetAddress before them"),
        attributes("address2", "l"),
        number("ldap-search-trigger-timeout", "s", 0, 60, 3,
               "The corporate directory is searched when no key came for this long."),
        number("ldap-qualifier", "", 0, 9, 0,
               "What stands beside a name of the corporate directory; 0: nothing."),
        number("ldap-display-option", "", 0, 3, 0, "How names of the corporate directory are written."),
        number("mobility-mode", "", 0, 2, 0, "2: the phonebook belongs to whoever is logged on."),
        yesNo("disable-access-phonebook", false, "In mobility mode 2: the phonebook is being fetched."),
        yesNo("bt-enabled", false, "Whether contacts may be sent over Bluetooth."),
        text("bt-device", "",
             "Name or address of the paired device that contacts are sent to without a question."),
        number("log-level", "", 2, 5, 4,
               "What is logged: 2 errors, 3 refusals, 4 what the user sees, 5 everything."),
    };
}

std::string languageOfLocale(std::string_view locale)
{
    const auto end = locale.find_first_of("_.@-");
    std::string code(locale.substr(0, end));
    const bool letters = std::all_of(code.begin(), code.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return letters && (code.size() == 2 || code.size() == 3) ? code : "en";
}
