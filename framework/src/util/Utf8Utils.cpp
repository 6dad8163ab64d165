#include <framework/util/Utf8Utils.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace {

// A normal form is the mark, then one private-use character for each byte of the primary sort key:
// the order of their UTF-8 is the order of the keys, and a prefix of a key is a prefix of the text.
constexpr UChar32 nMARK = 0xE100;
constexpr UChar32 nFIRST_BYTE = 0xE000;
constexpr std::size_t nENCODED_SIZE = 3; // of each of these characters
constexpr std::string_view nENCODED_MARK = "\xEE\x84\x80";

void appendEncoded(std::string& out, UChar32 character)
{
    out += static_cast<char>(0xE0 | (character >> 12));
    out += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (character & 0x3F));
}

bool isEncoded(std::string_view text)
{
    if (text.size() % nENCODED_SIZE != 0)
        return false;
    for (std::size_t i = nENCODED_SIZE; i < text.size(); i += nENCODED_SIZE) {
        const auto second = static_cast<unsigned char>(text[i + 1]);
        const auto third = static_cast<unsigned char>(text[i + 2]);
        if (text[i] != '\xEE' || second < 0x80 || second > 0x83 || third < 0x80 || third > 0xBF)
            return false;
    }
    return true;
}

// Asked twice a comparison: raw text is nearly always known by its first byte.
inline bool mayBeNormal(std::string_view text)
{
    return !text.empty() && text[0] == nENCODED_MARK[0];
}

bool isNormal(std::string_view text)
{
    return text.starts_with(nENCODED_MARK) && isEncoded(text);
}

// One language's collation. It never changes once it is made, and lives as long as the program:
// comparisons on any thread need no lock.
class Collation {
public:
    explicit Collation(const std::string& language)
        : m_language(language)
        , m_order(make(language))
        , m_letters(make(language))
    {
        m_letters->setStrength(icu::Collator::PRIMARY);
    }

    // Below, equal or above 0.
    int compareRaw(std::string_view left, std::string_view right) const
    {
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult result =
            m_order->compareUTF8(icu::StringPiece(left.data(), static_cast<int32_t>(left.size())),
                                 icu::StringPiece(right.data(), static_cast<int32_t>(right.size())), status);
        return result != UCOL_EQUAL ? static_cast<int>(result) : left.compare(right);
    }

    std::string normalForm(std::string_view text) const
    {
        const auto characters =
            icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
        std::vector<uint8_t> key(64);
        auto size = m_letters->getSortKey(characters, key.data(), static_cast<int32_t>(key.size()));
        if (static_cast<std::size_t>(size) > key.size()) {
            key.resize(static_cast<std::size_t>(size));
            size = m_letters->getSortKey(characters, key.data(), size);
        }
        std::string normal;
        if (size <= 1) // the closing 0 only: nothing in the text counts
            return normal;
        normal.reserve(nENCODED_SIZE * static_cast<std::size_t>(size));
        appendEncoded(normal, nMARK);
        for (int32_t i = 0; i + 1 < size; ++i)
            appendEncoded(normal, nFIRST_BYTE + key[static_cast<std::size_t>(i)]);
        return normal;
    }

    std::string capital(const std::string& letter) const
    {
        auto text = icu::UnicodeString::fromUTF8(letter);
        const auto length = text.countChar32();
        text.toTitle(nullptr, icu::Locale::createCanonical(m_language.c_str()));
        std::string capital;
        text.toUTF8String(capital);
        return text.countChar32() == length ? capital : letter;
    }

private:
    static std::unique_ptr<icu::Collator> make(const std::string& language)
    {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(
            icu::Collator::createInstance(icu::Locale::createCanonical(language.c_str()), status));
        if (U_FAILURE(status)) {
            status = U_ZERO_ERROR;
            collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
        }
        // With punctuation ignored (the default of some languages) comparisons contradict the keys.
        collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
        collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
        return collator;
    }

    std::string m_language;
    std::unique_ptr<icu::Collator> m_order;
    std::unique_ptr<icu::Collator> m_letters;
};

const Collation& collationOf(const std::string& language)
{
    static std::mutex mutex;
    static std::map<std::string, Collation> collations;
    const std::string name = icu::Locale::createCanonical(language.c_str()).getName();
    const std::lock_guard lock(mutex);
    return collations.try_emplace(name, name).first->second;
}

std::atomic<const Collation*> s_current{nullptr};
// Read at every comparison; initial-exec spares the call that finds a thread's variable.
thread_local const Collation* t_steady [[gnu::tls_model("initial-exec")]] = nullptr;

const Collation& currentOfAll()
{
    const Collation* collation = s_current.load(std::memory_order_acquire);
    if (collation)
        return *collation;
    const Collation* root = &collationOf("root");
    return s_current.compare_exchange_strong(collation, root) ? *root : *collation;
}

inline const Collation& current()
{
    return t_steady ? *t_steady : currentOfAll();
}

bool compareNormal(std::string_view left, std::string_view right)
{
    const bool leftIsNormal = isNormal(left);
    const bool rightIsNormal = isNormal(right);
    const Collation& collation = current();
    if (leftIsNormal == rightIsNormal)
        return leftIsNormal ? left < right : collation.compareRaw(left, right) < 0;

    // A normal form stands before the raw texts that have it.
    const std::string other = collation.normalForm(leftIsNormal ? right : left);
    return leftIsNormal ? left <= other : other < right;
}

} // namespace

void Utf8Utils::create(const std::string& language)
{
    setSortOrder(language);
}

void Utf8Utils::destroy()
{
    setSortOrder("root");
}

void Utf8Utils::setSortOrder(const std::string& language)
{
    s_current.store(&collationOf(language.empty() ? "root" : language), std::memory_order_release);
}

Utf8Utils::SteadyOrder::SteadyOrder()
    : m_pBefore(t_steady)
{
    t_steady = &current();
}

Utf8Utils::SteadyOrder::~SteadyOrder()
{
    t_steady = static_cast<const Collation*>(m_pBefore);
}

bool Utf8Utils::compare(std::string_view left, std::string_view right)
{
    if (mayBeNormal(left) || mayBeNormal(right)) [[unlikely]]
        return compareNormal(left, right);
    return current().compareRaw(left, right) < 0;
}

void Utf8Utils::normalize(std::string& text)
{
    if (!isNormal(text))
        text = current().normalForm(text);
}

int Utf8Utils::find(const std::string& haystack, const std::string& needle)
{
    const auto position = haystack.find(needle);
    return position == std::string::npos ? -1 : static_cast<int>(position);
}

std::string Utf8Utils::getFirstUnicodeChar(const std::string& text)
{
    const auto size = static_cast<int32_t>(text.size());
    if (size == 0)
        return "";
    int32_t end = 0;
    UChar32 character = 0;
    U8_NEXT(text.data(), end, size, character);
    if (character < 0)
        return "\xEF\xBF\xBD";
    for (int32_t next = end; next < size; end = next) {
        U8_NEXT(text.data(), next, size, character);
        if (character < 0 || (U_GET_GC_MASK(character) & U_GC_M_MASK) == 0)
            break;
    }
    return text.substr(0, static_cast<std::size_t>(end));
}

std::string Utf8Utils::capital(const std::string& letter)
{
    return current().capital(letter);
}
