#include "CstaXml.h"

#include <algorithm>
#include <memory>

#include <expat.h>

namespace {

constexpr std::size_t GREATEST_DEPTH = 32;
constexpr std::size_t MOST_ELEMENTS = 4096;
constexpr char SEPARATOR = ' '; // between namespace and name
constexpr std::string_view EDITIONS = "http://www.ecma-international.org/standards/ecma-323/csta/ed";

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

CstaElement::Kind kindOf(std::string_view space)
{
    if (space.starts_with(EDITIONS))
        return CstaElement::Kind::Csta;
    return space == PRIVATE_NAMESPACE ? CstaElement::Kind::Private : CstaElement::Kind::Foreign;
}

// Builds the tree while the parser goes through the text.
class Reader {
public:
    explicit Reader(XML_Parser parser)
        : m_parser(parser)
    {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, start, end);
        XML_SetCharacterDataHandler(parser, text);
        XML_SetStartDoctypeDeclHandler(parser, doctype);
    }

    Result<CstaElement> read(const std::string& xml)
    {
        const auto status = XML_Parse(m_parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
        if (m_refusal)
            return malformed(m_refusal);
        if (status != XML_STATUS_OK)
            return malformed(XML_ErrorString(XML_GetErrorCode(m_parser)));
        if (m_root.kind != CstaElement::Kind::Csta)
            return malformed("it is not CSTA");
        return std::move(m_root);
    }

    static Error malformed(const std::string& why)
    {
        return {ErrorCode::Malformed, "The PBX sent a message that cannot be read: " + why + "."};
    }

private:
    static Reader& self(void* user) { return *static_cast<Reader*>(user); }

    static void XMLCALL start(void* user, const XML_Char* name, const XML_Char**) { self(user).begin(name); }
    static void XMLCALL end(void* user, const XML_Char*) { self(user).finish(); }
    static void XMLCALL text(void* user, const XML_Char* characters, int length)
    {
        self(user).m_open.back().text.append(characters, static_cast<std::size_t>(length));
    }
    static void XMLCALL doctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int)
    {
        self(user).refuse("a document type is not allowed");
    }

    void refuse(const char* why)
    {
        m_refusal = why;
        XML_StopParser(m_parser, XML_FALSE);
    }

    void begin(std::string_view qualified)
    {
        if (m_open.size() == GREATEST_DEPTH)
            refuse("it is nested too deeply");
        if (++m_elements > MOST_ELEMENTS)
            refuse("it has too many elements");
        const auto at = qualified.rfind(SEPARATOR);
        const bool named = at != std::string_view::npos;
        CstaElement element;
        element.name = qualified.substr(named ? at + 1 : 0);
        element.kind = named ? kindOf(qualified.substr(0, at)) : CstaElement::Kind::Foreign;
        m_open.push_back(std::move(element));
    }

    // The white space between elements says nothing.
    void finish()
    {
        auto element = std::move(m_open.back());
        m_open.pop_back();
        if (!element.children.empty())
            element.text.clear();
        if (m_open.empty())
            m_root = std::move(element);
        else
            m_open.back().children.push_back(std::move(element));
    }

    const XML_Parser m_parser;
    std::vector<CstaElement> m_open; // the outermost first
    CstaElement m_root{"", {}, {}, CstaElement::Kind::Foreign};
    std::size_t m_elements = 0;
    const char* m_refusal = nullptr;
};

bool isInXml(char c)
{
    return static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r';
}

std::string escaped(const std::string& text)
{
    std::string safe;
    for (const char c : text) {
        if (c == '&')
            safe += "&amp;";
        else if (c == '<')
            safe += "&lt;";
        else if (c == '>')
            safe += "&gt;";
        else if (isInXml(c))
            safe += c;
    }
    return safe;
}

void write(const CstaElement& element, CstaElement::Kind around, std::string& xml)
{
    xml += '<' + element.name;
    if (element.kind != around)
        xml += " xmlns=\"" +
               std::string(element.kind == CstaElement::Kind::Csta ? CSTA_NAMESPACE : PRIVATE_NAMESPACE) +
               '"';
    if (element.text.empty() && element.children.empty()) {
        xml += "/>";
        return;
    }
    xml += '>' + escaped(element.text);
    for (const auto& child : element.children)
        write(child, element.kind, xml);
    xml += "</" + element.name + '>';
}

} // namespace

const CstaElement* CstaElement::find(std::string_view child) const
{
    const auto found = std::ranges::find_if(children, [&](const auto& element) {
        return element.name == child && element.kind != Kind::Foreign;
    });
    return found == children.end() ? nullptr : &*found;
}

const CstaElement* CstaElement::at(std::initializer_list<std::string_view> path) const
{
    const auto* element = this;
    for (const auto child : path) {
        element = element->find(child);
        if (!element)
            return nullptr;
    }
    return element;
}

std::string CstaElement::textAt(std::initializer_list<std::string_view> path) const
{
    const auto* element = at(path);
    return element ? element->text : "";
}

Result<CstaElement> readCsta(const std::string& xml)
{
    const Parser parser(XML_ParserCreateNS("UTF-8", SEPARATOR));
    if (!parser)
        return Reader::malformed("out of memory");
    return Reader(parser.get()).read(xml);
}

std::string writeCsta(const CstaElement& root)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    write(root, CstaElement::Kind::Foreign, xml);
    return xml;
}
