#include "Card.h"

#include <algorithm>
#include <memory>

#include <libebook-contacts/libebook-contacts.h>

#include "Text.h"

namespace vcard {

namespace {

struct GObjectUnref {
    void operator()(EVCard* card) const { g_object_unref(card); }
};

class UnusableProperty {
public:
    explicit UnusableProperty(std::string reason)
        : m_reason(std::move(reason))
    {
    }
    const std::string& reason() const { return m_reason; }

private:
    std::string m_reason;
};

// What stands before the colon, its coding parameters taken out.
struct Head {
    std::string group;
    std::string name;
    std::vector<Parameter> parameters;
    std::string charset;
    bool quotedPrintable = false;
    bool base64 = false;
};

bool isName(std::string_view name)
{
    return !name.empty() && std::all_of(name.begin(), name.end(),
                                        [](char c) { return g_ascii_isalnum(c) || c == '-' || c == '_'; });
}

std::vector<std::string> valuesOf(std::string_view list)
{
    std::vector<std::string> values;
    for (const auto part : splitUnquoted(list, ',')) {
        values.push_back(oneLine(guessUtf8(part)));
        std::erase(values.back(), '"');
    }
    return values;
}

// Version 2.1 writes "TEL;WORK" for "TEL;TYPE=WORK". A parameter that is none is left out.
void addParameter(Head& head, const std::string& name, const std::vector<std::string>& values)
{
    if (values.empty() && isName(name)) {
        addParameter(head, "TYPE", {name});
        return;
    }
    if (!isName(name))
        return;
    const auto same = std::find_if(head.parameters.begin(), head.parameters.end(),
                                   [&](const Parameter& p) { return upper(p.name) == upper(name); });
    if (same == head.parameters.end())
        head.parameters.push_back({name, values});
    else
        same->values.insert(same->values.end(), values.begin(), values.end());
}

void readParameter(Head& head, std::string_view text)
{
    const auto equals = std::min(text.find('='), text.size());
    const std::string name(trimmed(text.substr(0, equals)));
    const auto values = equals < text.size() ? valuesOf(text.substr(equals + 1)) : std::vector<std::string>();
    const bool named = !values.empty();
    const auto value = upper(named ? values.front() : name);
    const bool encoding = named && upper(name) == "ENCODING";
    if (named && upper(name) == "CHARSET")
        head.charset = value;
    else if ((encoding || !named) && value == "QUOTED-PRINTABLE")
        head.quotedPrintable = true;
    else if (((encoding || !named) && value == "BASE64") || (encoding && value == "B"))
        head.base64 = true;
    else if (!encoding)
        addParameter(head, name, values);
}

// A quote that nobody closes would take the rest of the line with it.
std::string withClosedQuotes(std::string head)
{
    if (std::count(head.begin(), head.end(), '"') % 2 != 0)
        std::erase(head, '"');
    return head;
}

Head readHead(std::string_view text)
{
    Head head;
    auto parts = splitUnquoted(text, ';');
    const auto dot = parts.front().rfind('.');
    if (dot != std::string_view::npos)
        head.group = trimmed(parts.front().substr(0, dot));
    head.name = trimmed(parts.front().substr(dot + 1));
    if (!isName(head.name) || (!head.group.empty() && !isName(head.group)))
        throw UnusableProperty("not a property");
    for (std::size_t i = 1; i < parts.size(); ++i)
        readParameter(head, trimmed(parts[i]));
    return head;
}

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\' || c == ';' || c == ',')
            result += '\\';
        if (c == '\n')
            result += "\\n";
        else
            result += c;
    }
    return result;
}

char separatorOf(const Property& property)
{
    return property.is("CATEGORIES") ? ',' : ';';
}

std::vector<std::string> cleanValues(GList* values)
{
    std::vector<std::string> texts;
    for (const GList* value = values; value != nullptr; value = value->next)
        texts.push_back(clean(static_cast<const char*>(value->data)));
    return texts;
}

bool allUtf8(GList* values)
{
    for (const GList* value = values; value != nullptr; value = value->next) {
        if (!isUtf8(static_cast<const char*>(value->data)))
            return false;
    }
    return true;
}

// The library reads one value at a time, so that one it stumbles over costs no other; names
// and parameters are read here, for the library loses memory over odd ones.
class DecodedValue {
public:
    explicit DecodedValue(const std::string& line)
        : m_card(e_vcard_new_from_string(("BEGIN:VCARD\r\n" + line + "\r\nEND:VCARD\r\n").c_str()))
    {
        if (const GList* attributes = e_vcard_get_attributes(m_card.get()))
            m_values = e_vcard_attribute_get_values(static_cast<EVCardAttribute*>(attributes->data));
    }

    std::vector<std::string> cleaned() const { return cleanValues(m_values); }
    bool isUtf8() const { return allUtf8(m_values); }

private:
    std::unique_ptr<EVCard, GObjectUnref> m_card;
    GList* m_values = nullptr;
};

Property withHead(const Head& head)
{
    Property property;
    property.group = head.group;
    property.name = head.name;
    property.parameters = head.parameters;
    return property;
}

// Bytes above ASCII inside quoted-printable are coded like the rest, or the library would
// take them for UTF-8, and it would leave the code after a backslash alone. A lone "=" at the
// end would swallow what follows.
std::string pureQuotedPrintable(std::string_view value)
{
    constexpr char hex[] = "0123456789ABCDEF";
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        const auto next = value.substr(i + 1, 1);
        const bool beforeCode =
            c == '\\' && (next == "=" || (!next.empty() && static_cast<unsigned char>(next.front()) >= 0x80));
        if (c < 0x80 && !beforeCode)
            result += static_cast<char>(c);
        else
            result.append("=").append(1, hex[c >> 4]).append(1, hex[c & 15]);
    }
    const auto lastEquals = result.find_last_of('=');
    if (lastEquals != std::string::npos && lastEquals + 2 >= result.size())
        result.resize(lastEquals);
    return result;
}

Property parseQuotedPrintable(const Head& head, std::string_view value)
{
    const auto coded = pureQuotedPrintable(value);
    const auto decode = [&](const std::string& charset) {
        return DecodedValue(head.name + ";ENCODING=QUOTED-PRINTABLE;CHARSET=" + charset + ":" + coded);
    };
    const auto named = decode(isName(head.charset) ? head.charset : "UTF-8");
    auto property = withHead(head);
    property.setComponents(named.isUtf8() ? named.cleaned() : decode("WINDOWS-1252").cleaned());
    return property;
}

std::string withoutBlanks(std::string_view text)
{
    std::string result(text);
    std::erase_if(result, [](char c) { return g_ascii_isspace(c); });
    return result;
}

bool isBase64Text(std::string_view text)
{
    const auto end = std::min(text.find('='), text.size());
    const bool letters = std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end),
                                     [](char c) { return g_ascii_isalnum(c) || c == '+' || c == '/'; });
    return end > 0 && end % 4 != 1 && letters && text.find_first_not_of('=', end) == std::string_view::npos;
}

Property parseBase64(const Head& head, std::string_view value)
{
    auto property = withHead(head);
    property.value = withoutBlanks(value);
    if (!isBase64Text(property.value))
        throw UnusableProperty("bad base64");
    std::erase(property.value, '=');
    property.value.resize((property.value.size() + 3) / 4 * 4, '=');
    property.removeParameter("VALUE");
    property.setParameter("ENCODING", {"b"});
    return property;
}

Property parsePlain(const Head& head, std::string_view bytes)
{
    const auto known = head.charset.empty() ? std::nullopt : toUtf8(bytes, head.charset);
    auto property = withHead(head);
    property.value = clean(known ? *known : guessUtf8(bytes));
    std::replace(property.value.begin(), property.value.end(), '\n', ' ');
    property.components = DecodedValue(head.name + ":" + property.value).cleaned();
    return property;
}

// "data:image/png;base64,iVBOR..." of version 4.0 becomes what 3.0 calls ENCODING=b.
std::optional<Property> inlinePicture(const Property& property)
{
    const auto comma = property.value.find(',');
    if (!upper(property.value.substr(0, 5)).starts_with("DATA:") || comma == std::string::npos)
        return std::nullopt;
    const auto kind = upper(property.value.substr(0, comma));
    if (!kind.ends_with(";BASE64"))
        return std::nullopt;

    const std::unique_ptr<char, decltype(&g_free)> data(
        g_uri_unescape_string(property.value.c_str() + comma + 1, nullptr), g_free);
    auto picture =
        parseBase64(Head{property.group, property.name, {}, "", false, true}, data ? data.get() : "");
    const auto slash = kind.find('/');
    if (slash != std::string::npos)
        picture.setParameter("TYPE", {kind.substr(slash + 1, kind.find(';') - slash - 1)});
    return picture;
}

std::size_t decodedSize(std::string_view base64)
{
    return base64.size() / 4 * 3;
}

Property parseProperty(const SourceLine& line, const Limits& limits)
{
    const auto colon = findColon(line.text);
    if (colon == std::string::npos)
        throw UnusableProperty("not a property");
    const auto head = readHead(withClosedQuotes(line.text.substr(0, colon)));
    const auto value = std::string_view(line.text).substr(colon + 1);
    if (line.tooLong)
        throw UnusableProperty("longer than the phone takes");

    auto property = head.base64            ? parseBase64(head, value)
                    : head.quotedPrintable ? parseQuotedPrintable(head, value)
                                           : parsePlain(head, value);
    if (property.is("PHOTO")) {
        if (auto picture = inlinePicture(property))
            property = *picture;
    }
    if (property.isBase64() && decodedSize(property.value) > limits.photoBytes)
        throw UnusableProperty("larger than " + std::to_string(limits.photoBytes / 1024 / 1024) + " MB");
    return property;
}

std::string reportedName(std::string_view line)
{
    constexpr std::size_t longest = 40;
    return oneLine(guessUtf8(line.substr(0, std::min(line.find_first_of(":;"), longest))));
}

Version versionNamed(std::string_view number)
{
    if (number == "2.1")
        return Version::V21;
    return number == "4.0" ? Version::V40 : Version::V30;
}

bool equalNames(std::string_view a, std::string_view b)
{
    return upper(a) == upper(b);
}

} // namespace

bool Property::is(std::string_view otherName) const
{
    return equalNames(name, otherName);
}

const Parameter* Property::parameter(std::string_view otherName) const
{
    const auto at = std::find_if(parameters.begin(), parameters.end(),
                                 [&](const Parameter& p) { return equalNames(p.name, otherName); });
    return at == parameters.end() ? nullptr : &*at;
}

void Property::setParameter(std::string_view otherName, std::vector<std::string> values)
{
    removeParameter(otherName);
    parameters.push_back({std::string(otherName), std::move(values)});
}

void Property::removeParameter(std::string_view otherName)
{
    std::erase_if(parameters, [&](const Parameter& p) { return equalNames(p.name, otherName); });
}

std::string Property::parameterText(std::string_view otherName) const
{
    const auto* found = parameter(otherName);
    return found == nullptr || found->values.empty() ? "" : upper(found->values.front());
}

std::vector<std::string> Property::types() const
{
    std::vector<std::string> result;
    for (const auto& p : parameters) {
        if (!equalNames(p.name, "TYPE"))
            continue;
        for (const auto& list : p.values) {
            for (const auto part : splitUnquoted(list, ','))
                result.push_back(upper(trimmed(part)));
        }
    }
    return result;
}

bool Property::hasType(std::string_view type) const
{
    const auto all = types();
    return std::find(all.begin(), all.end(), type) != all.end();
}

void Property::removeType(std::string_view type)
{
    auto all = types();
    std::erase(all, type);
    removeParameter("TYPE");
    if (!all.empty())
        setParameter("TYPE", std::move(all));
}

std::string Property::text() const
{
    std::string whole;
    for (const auto& part : components) {
        if (&part != &components.front())
            whole += separatorOf(*this);
        whole += part;
    }
    return whole;
}

std::string Property::component(std::size_t index) const
{
    return index < components.size() ? components[index] : "";
}

void Property::setText(const std::string& text)
{
    components = {text};
    value = escaped(text);
}

void Property::setComponents(std::vector<std::string> parts)
{
    components = std::move(parts);
    value.clear();
    for (const auto& part : components) {
        if (&part != &components.front())
            value += separatorOf(*this);
        value += escaped(part);
    }
}

bool Property::isBase64() const
{
    return parameterText("ENCODING") == "B";
}

const Property* Card::find(std::string_view name) const
{
    const auto at =
        std::find_if(properties.begin(), properties.end(), [&](const Property& p) { return p.is(name); });
    return at == properties.end() ? nullptr : &*at;
}

Card parseCard(const SourceCard& source, const Limits& limits, std::vector<std::string>& problems)
{
    Card card;
    problems.insert(problems.end(), source.problems.begin(), source.problems.end());
    for (const auto& line : source.lines) {
        try {
            auto property = parseProperty(line, limits);
            if (property.is("VERSION"))
                card.version = versionNamed(trimmed(property.value));
            else
                card.properties.push_back(std::move(property));
        } catch (const UnusableProperty& unusable) {
            problems.push_back("line " + std::to_string(line.number) + ": " + reportedName(line.text) + ": " +
                               unusable.reason() + "; property ignored");
        }
    }
    return card;
}

std::string pictureType(std::string_view base64)
{
    constexpr std::size_t enough = 16;
    gsize size = 0;
    const std::unique_ptr<guchar, decltype(&g_free)> bytes(
        g_base64_decode(std::string(base64.substr(0, enough)).c_str(), &size), g_free);
    const std::string_view start(reinterpret_cast<const char*>(bytes.get()), size);
    if (start.starts_with("\xFF\xD8\xFF"))
        return "image/jpeg";
    if (start.starts_with("\x89PNG"))
        return "image/png";
    if (start.starts_with("GIF8"))
        return "image/gif";
    if (start.starts_with("BM"))
        return "image/bmp";
    if (start.starts_with("RIFF") && start.size() >= 12 && start.substr(8, 4) == "WEBP")
        return "image/webp";
    return "";
}

} // namespace vcard
