#include "app/IdleScreen.h"

#include <algorithm>
#include <memory>

#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

using DisplayAPI::Frame;
using DisplayAPI::FrameRole;
using DisplayAPI::Key;
using std::chrono::milliseconds;

namespace {

constexpr char KEY_PHONEBOOK[] = "phone.phonebook";

// The idle screen is no widget: its id is one that no widget has.
constexpr std::uint64_t IDLE_ID = ~std::uint64_t{0};

// `skeleton` names what is to be written (UTS #35), in the order and with the signs of the language.
std::string formatted(std::chrono::system_clock::time_point when, const std::string& language,
                      const char* skeleton)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale(language.c_str());
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status))
        return "";
    const icu::SimpleDateFormat format(generator->getBestPattern(skeleton, status), locale, status);
    if (U_FAILURE(status))
        return "";
    const auto since = std::chrono::duration_cast<milliseconds>(when.time_since_epoch());
    icu::UnicodeString written;
    format.format(static_cast<UDate>(since.count()), written);
    std::string text;
    return written.toUTF8String(text);
}

std::string filledIn(std::string text, const std::vector<std::string>& parameters)
{
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const auto place = "{" + std::to_string(i + 1) + "}";
        if (const auto at = text.find(place); at != std::string::npos)
            text.replace(at, place.size(), parameters[i]);
    }
    return text;
}

} // namespace

IdleScreen::IdleScreen(Parts parts)
    : m_parts(std::move(parts))
{
}

void IdleScreen::addNotice(std::string key, std::vector<std::string> parameters)
{
    Notice notice{std::move(key), std::move(parameters)};
    if (std::find(m_notices.begin(), m_notices.end(), notice) == m_notices.end())
        m_notices.push_back(std::move(notice));
}

Frame IdleScreen::paint() const
{
    tellTime();
    Frame frame;
    frame.visible = true;
    frame.base.role = FrameRole::Idle;
    frame.base.id = IDLE_ID;
    frame.base.title = m_time;
    frame.base.text = m_date + " \u00b7 " + m_parts.line();
    for (auto& text : texts()) {
        DisplayAPI::FrameRow row;
        row.position = static_cast<int>(frame.base.rows.size());
        row.text = std::move(text);
        frame.base.rows.push_back(std::move(row));
    }
    const auto phonebook = m_parts.translator.translate(KEY_PHONEBOOK);
    if (m_parts.variant.softKeyBar)
        frame.softKeys.push_back({phonebook});
    else
        frame.base.rows.push_back({static_cast<int>(frame.base.rows.size()), 0, phonebook, "", true});
    frame.base.rowCount = static_cast<int>(frame.base.rows.size());
    return frame;
}

std::vector<std::string> IdleScreen::texts() const
{
    std::vector<std::string> texts;
    if (!m_parts.dialler.digits().empty())
        texts.push_back(m_parts.translator.translate("phone.dialling", m_parts.dialler.digits()));
    if (!m_parts.dialler.refusal().empty())
        texts.push_back(m_parts.translator.translate(m_parts.dialler.refusal()));
    for (auto& advice : m_parts.advice())
        texts.push_back(std::move(advice));
    for (const auto& notice : m_notices)
        texts.push_back(filledIn(m_parts.translator.translate(notice.key), notice.parameters));
    return texts;
}

void IdleScreen::tellTime() const
{
    const auto minute = std::chrono::floor<std::chrono::minutes>(m_parts.clock.wallClock());
    const auto language = m_parts.language();
    if (minute == m_told && language == m_toldIn)
        return;
    m_told = minute;
    m_toldIn = language;
    m_time = formatted(minute, language, "Hm");
    m_date = formatted(minute, language, "EEEEdMMMM");
}

bool IdleScreen::keyPressed(const Key& key)
{
    if (!m_parts.dialler.digits().empty() && editsDigits(key.kind))
        return true;
    const auto opener = m_parts.variant.softKeyBar ? Key::Kind::SoftKey : Key::Kind::Ok;
    if (key.kind != opener || key.index != 0)
        return false;
    m_parts.openPhonebook();
    return true;
}

bool IdleScreen::editsDigits(Key::Kind kind)
{
    switch (kind) {
    case Key::Kind::Ok:
        m_parts.dialler.dial();
        return true;
    case Key::Kind::Clear:
        m_parts.dialler.clear();
        return true;
    case Key::Kind::ClearAll:
    case Key::Kind::Back:
        m_parts.dialler.clearAll();
        return true;
    default:
        return false;
    }
}

milliseconds IdleScreen::nextMinute() const
{
    const auto now = std::chrono::duration_cast<milliseconds>(m_parts.clock.wallClock().time_since_epoch());
    const auto minute = std::chrono::floor<std::chrono::minutes>(now) + std::chrono::minutes(1);
    return m_parts.clock.now() + (minute - now);
}
