#include <framework/host/TextScreen.h>

#include <cstddef>

namespace DisplayAPI {

namespace {

std::string marked(bool selected, const std::string& text)
{
    return (selected ? "> " : "  ") + text + '\n';
}

// The first `characters` code points of `text` in bytes.
std::size_t bytes(const std::string& text, int characters)
{
    std::size_t position = 0;
    for (; position < text.size(); ++position) {
        const auto begins = (static_cast<unsigned char>(text[position]) & 0xC0) != 0x80;
        if (begins && characters-- == 0)
            break;
    }
    return position;
}

std::string callText(const FrameCall& call)
{
    return "= " + call.name + (call.number.empty() ? "" : ", " + call.number) + ": " + call.text + '\n';
}

std::string fieldText(const FrameField& field)
{
    auto value = field.value;
    if (field.kind == FrameField::Kind::Selection)
        value = '<' + value + '>';
    else if (field.cursor >= 0)
        value.insert(bytes(value, field.cursor), "|");
    return field.label.empty() ? value : field.label + ": " + value;
}

std::string tabText(const Frame& frame)
{
    std::string line;
    for (std::size_t i = 0; i < frame.tabs.size(); ++i) {
        if (static_cast<int>(i) == frame.currentTab) {
            line += (frame.tabBarFocused ? "[>" : "[") + frame.tabs[i] + (frame.tabBarFocused ? "<]" : "]");
            continue;
        }
        if (line.empty() || line.back() != '|')
            line += '|';
        line += ' ' + frame.tabs[i] + " |";
    }
    return line.empty() ? line : line + '\n';
}

std::string headText(const FrameScreen& screen)
{
    std::string text;
    if (!screen.title.empty())
        text += screen.title + '\n';
    if (screen.waiting)
        text += "...\n";
    if (screen.searchOpen)
        text += '/' + screen.search + (screen.pending.empty() ? "" : '[' + screen.pending + ']') + '\n';
    return text;
}

std::string messageText(const FrameScreen& screen)
{
    if (screen.text.empty())
        return {};
    switch (screen.role) {
    case FrameRole::Question:
        return "? " + screen.text + '\n';
    case FrameRole::Notification:
        return "! " + screen.text + '\n';
    case FrameRole::Progress:
        return "~ " + screen.text + '\n';
    default:
        return screen.text + '\n';
    }
}

std::string diallerText(const FrameDialler& dialler)
{
    std::string text;
    const auto blank = dialler.prefix.empty() || dialler.line1.empty() ? "" : " ";
    for (const auto& line : {dialler.prefix + blank + dialler.line1, dialler.line2}) {
        if (!line.empty())
            text += line + '\n';
    }
    return text + '#' + dialler.edit + '\n';
}

std::string bodyText(const FrameScreen& screen)
{
    auto text = messageText(screen);
    if (screen.role == FrameRole::Dialler)
        text += diallerText(screen.dialler);
    for (const auto& row : screen.rows)
        text += marked(row.selected && screen.highlighted, row.text);
    for (const auto& field : screen.fields)
        text += marked(field.focused, fieldText(field));
    return text;
}

} // namespace

std::string toText(const FrameScreen& screen)
{
    return headText(screen) + bodyText(screen);
}

std::string toText(const Frame& frame)
{
    std::string text;
    for (const auto& call : frame.signs.calls)
        text += callText(call);
    text += tabText(frame) + headText(frame.base);
    text += frame.popups.empty() ? bodyText(frame.base) : toText(frame.popups.back());
    for (const auto& line : frame.systemWindow)
        text += line + '\n';
    for (const auto& softKey : frame.softKeys)
        text += "( " + softKey.label + " )";
    return frame.softKeys.empty() ? text : text + '\n';
}

} // namespace DisplayAPI
