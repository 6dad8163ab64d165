#include <framework/util/Serializer.h>

namespace {

void appendEscaped(std::string& out, const std::string& text)
{
    for (const char c : text) {
        if (c == '\\' || c == '=' || c == ';')
            out += '\\';
        out += c;
    }
}

} // namespace

std::string Serializer::serialize(const Pairs& pairs)
{
    std::string out;
    for (const auto& [name, value] : pairs) {
        if (&name != &pairs.front().first)
            out += ';';
        appendEscaped(out, name);
        out += '=';
        appendEscaped(out, value);
    }
    return out;
}

bool Serializer::deserialize(const std::string& text, Pairs& pairs)
{
    if (text.empty())
        return true;

    Pairs found{{}};
    bool inValue = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        auto& target = inValue ? found.back().second : found.back().first;
        if (c == '\\') {
            if (++i == text.size())
                return false;
            target += text[i];
        } else if (c == '=') {
            if (inValue)
                return false;
            inValue = true;
        } else if (c == ';') {
            if (!inValue)
                return false;
            found.emplace_back();
            inValue = false;
        } else {
            target += c;
        }
    }
    if (!inValue)
        return false;
    pairs.insert(pairs.end(), found.begin(), found.end());
    return true;
}
