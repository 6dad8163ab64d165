#include "app/PhoneKey.h"

#include <charconv>
#include <map>

using DisplayAPI::Key;

namespace {

const std::map<std::string_view, PhoneKey>& namedKeys()
{
    using Kind = PhoneKey::Kind;
    static const std::map<std::string_view, PhoneKey> keys{
        {"ok", PhoneKey::of(Key::of(Key::Kind::Ok))},
        {"back", PhoneKey::of(Key::of(Key::Kind::Back))},
        {"menu", PhoneKey::of(Key::of(Key::Kind::Context))},
        {"save", PhoneKey::of(Key::of(Key::Kind::Save))},
        {"up", PhoneKey::of(Key::of(Key::Kind::Up))},
        {"down", PhoneKey::of(Key::of(Key::Kind::Down))},
        {"left", PhoneKey::of(Key::of(Key::Kind::Left))},
        {"right", PhoneKey::of(Key::of(Key::Kind::Right))},
        {"clear", PhoneKey::of(Key::of(Key::Kind::Clear))},
        {"clearall", PhoneKey::of(Key::of(Key::Kind::ClearAll))},
        {"home", PhoneKey::of(Kind::Home)},
        {"phonebook", PhoneKey::of(Kind::Phonebook)},
        {"tab", PhoneKey::of(Kind::Phonebook)},
        {"hook", PhoneKey::of(Kind::Hook)},
        {"hangup", PhoneKey::of(Kind::HangUp)},
        {"dialpad", PhoneKey::of(Kind::DialPad)},
        {"answer", PhoneKey::of(Kind::Answer)},
        {"reject", PhoneKey::of(Kind::End)},
    };
    return keys;
}

// "row3" with the prefix "row" gives 2.
std::optional<int> indexAfter(std::string_view prefix, std::string_view word)
{
    if (!word.starts_with(prefix))
        return std::nullopt;
    const auto digits = word.substr(prefix.size());
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < 1)
        return std::nullopt;
    return number - 1;
}

std::vector<PhoneKey> typed(std::string_view text)
{
    std::vector<PhoneKey> keys;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t next = at + 1;
        while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80)
            ++next;
        keys.push_back(PhoneKey::of(Key::ofText(std::string(text.substr(at, next - at)))));
        at = next;
    }
    return keys;
}

} // namespace

std::optional<std::vector<PhoneKey>> keysFromWord(std::string_view word)
{
    constexpr std::string_view DIGITS = "0123456789*#";
    constexpr std::string_view TEXT = "text:";
    constexpr std::string_view ANSWER = "answer:";
    constexpr std::string_view END = "end:";

    if (const auto named = namedKeys().find(word); named != namedKeys().end())
        return std::vector{named->second};
    if (word.size() == 1 && DIGITS.find(word[0]) != DIGITS.npos)
        return std::vector{PhoneKey::of(Key::ofDigit(word[0]))};
    if (word.starts_with(TEXT))
        return typed(word.substr(TEXT.size()));
    if (word.starts_with(ANSWER) && word.size() > ANSWER.size())
        return std::vector{PhoneKey::of(PhoneKey::Kind::Answer, std::string(word.substr(ANSWER.size())))};
    if (word.starts_with(END) && word.size() > END.size())
        return std::vector{PhoneKey::of(PhoneKey::Kind::End, std::string(word.substr(END.size())))};
    if (const auto index = indexAfter("soft", word))
        return std::vector{PhoneKey::of(Key::of(Key::Kind::SoftKey, *index))};
    if (const auto index = indexAfter("row", word))
        return std::vector{PhoneKey::of(Key::of(Key::Kind::Row, *index))};
    if (const auto index = indexAfter("tab", word))
        return std::vector{PhoneKey::of(Key::of(Key::Kind::Tab, *index))};
    return std::nullopt;
}
