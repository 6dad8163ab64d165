#include "WriteFields.h"

#include <algorithm>

#include "ReadFields.h"
#include "Text.h"

namespace vcard {

namespace {

constexpr std::size_t nNAME_COMPONENTS = 5;
constexpr std::size_t nADDRESS_COMPONENTS = 7;

// The fields that compete for the same properties.
struct Family {
    std::vector<const char*> names;
    std::vector<Field> fields;
};

const std::vector<Family>& families()
{
    static const std::vector<Family> all{
        {{"TEL"}, {nNUMBERS.begin(), nNUMBERS.end()}}, {{"EMAIL"}, {Field::Email}},
        {{"ADR"}, {Field::Address, Field::Address2}},  {{"ORG"}, {Field::Company}},
        {{"TITLE", "ROLE"}, {Field::JobFunction}},
    };
    return all;
}

class FieldWriter {
public:
    FieldWriter(const ContactRecord& wanted, Card& card)
        : m_wanted(wanted)
        , m_card(card)
        , m_reading(readFields(card))
    {
    }

    void write()
    {
        if (m_wanted == m_reading.record)
            return;
        if (nameDiffers(m_reading.record))
            writeName();
        for (const Field number : nNUMBERS)
            writeText(number, "TEL");
        writeText(Field::Email, "EMAIL");
        writeCompany();
        writeText(Field::JobFunction, "TITLE");
        writeAddress();
        writeText(Field::Uid, "UID");
        writeGroups();
        writePhoto();
        markWhatReadsDifferently();
        writePreferred();
        // A card without a name is called by its company or number, which may be another now.
        if (nameDiffers(remaining().record))
            writeName();
        std::erase_if(m_card.properties, isRemoved);
    }

private:
    static bool isRemoved(const Property& property) { return property.name.empty(); }

    static void remove(Property& property) { property = Property(); }

    bool differs(Field field, const ContactRecord& from) const { return m_wanted[field] != from[field]; }

    bool nameDiffers(const ContactRecord& from) const
    {
        return differs(Field::Surname, from) || differs(Field::Firstname, from);
    }

    // How the card reads as it is now.
    CardReading remaining() const
    {
        Card card = m_card;
        std::erase_if(card.properties, isRemoved);
        return readFields(card);
    }

    Property* source(Field field)
    {
        const auto at = m_reading.sources.find(field);
        return at == m_reading.sources.end() ? nullptr : &m_card.properties[at->second];
    }

    Property& add(const std::string& name)
    {
        Property property;
        property.name = name;
        m_card.properties.push_back(std::move(property));
        return m_card.properties.back();
    }

    Property& sourceOrNew(Field field, const std::string& name)
    {
        if (auto* existing = source(field))
            return *existing;
        m_reading.sources[field] = m_card.properties.size();
        auto& property = add(name);
        if (const auto types = typesOf(field); !types.empty())
            property.setParameter("TYPE", types);
        return property;
    }

    static std::vector<std::string> typesOf(Field field)
    {
        switch (field) {
        case Field::Office:
        case Field::Office2:
            return {"WORK", "VOICE"};
        case Field::Mobile:
            return {"CELL", "VOICE"};
        case Field::Private:
            return {"HOME", "VOICE"};
        case Field::Email:
            return {"INTERNET"};
        case Field::Address:
            return {"WORK"};
        default:
            return {};
        }
    }

    void writeName()
    {
        auto& name = sourceOrNew(Field::Surname, "N");
        auto parts = name.components;
        parts.resize(std::max(parts.size(), nNAME_COMPONENTS));
        const bool middleNameStoodIn =
            parts[1].empty() && oneLine(parts[2]) == m_reading.record[Field::Firstname];
        if (middleNameStoodIn)
            parts[2].clear();
        parts[0] = m_wanted[Field::Surname];
        parts[1] = m_wanted[Field::Firstname];
        name.setComponents(parts);

        const auto whole = joinFilled({parts[3], parts[1], parts[2], parts[0], parts[4]}, " ");
        const auto formatted = std::find_if(m_card.properties.begin(), m_card.properties.end(),
                                            [](const Property& p) { return p.is("FN"); });
        (formatted == m_card.properties.end() ? add("FN") : *formatted).setText(whole);
    }

    void writeText(Field field, const std::string& name)
    {
        if (!differs(field, m_reading.record))
            return;
        if (m_wanted[field].empty()) {
            remove(*source(field));
            m_reading.sources.erase(field);
            return;
        }
        auto& property = sourceOrNew(field, name);
        if (property.is("TEL"))
            property.removeParameter("VALUE"); // a plain number, no "tel:" address any more
        property.setText(m_wanted[field]);
    }

    void writeCompany()
    {
        if (!differs(Field::Company, m_reading.record))
            return;
        auto& organisation = sourceOrNew(Field::Company, "ORG");
        auto parts = organisation.components;
        parts.resize(std::max<std::size_t>(parts.size(), 1));
        parts[0] = m_wanted[Field::Company];
        if (joinFilled(parts, "").empty())
            remove(organisation);
        else
            organisation.setComponents(parts);
    }

    void writeAddress()
    {
        if (!differs(Field::Address, m_reading.record) && !differs(Field::Address2, m_reading.record))
            return;
        auto& address = sourceOrNew(Field::Address, "ADR");
        if (m_wanted[Field::Address].empty() && m_wanted[Field::Address2].empty()) {
            remove(address);
            return;
        }
        auto parts = address.components;
        parts.resize(std::max(parts.size(), nADDRESS_COMPONENTS));
        if (differs(Field::Address, m_reading.record)) {
            std::fill_n(parts.begin(), 3, "");
            parts[2] = m_wanted[Field::Address]; // street
        }
        if (differs(Field::Address2, m_reading.record)) {
            std::fill(parts.begin() + 3, parts.end(), "");
            parts[3] = m_wanted[Field::Address2]; // town
        }
        address.setComponents(parts);
    }

    void writeGroups()
    {
        if (m_wanted.groups == m_reading.record.groups)
            return;
        auto list = std::find_if(m_card.properties.begin(), m_card.properties.end(), isGroupList);
        Property categories = list == m_card.properties.end() ? Property() : *list;
        std::for_each(m_card.properties.begin(), m_card.properties.end(), [](Property& property) {
            if (isGroupList(property))
                remove(property);
        });
        if (m_wanted.groups.empty())
            return;
        categories.name = "CATEGORIES";
        categories.setComponents(m_wanted.groups);
        m_card.properties.push_back(std::move(categories));
    }

    void writePhoto()
    {
        if (m_wanted.photo == m_reading.record.photo)
            return;
        if (m_reading.photoSource)
            remove(m_card.properties[*m_reading.photoSource]);
        if (!m_wanted.photo)
            return;
        auto& picture = add("PHOTO");
        const auto& mime = m_wanted.photo->mime;
        picture.setParameter("ENCODING", {"b"});
        picture.setParameter("TYPE", {upper(mime.substr(mime.find('/') + 1))});
        picture.value = m_wanted.photo->base64;
    }

    void writePreferred()
    {
        if (m_wanted.preferred == remaining().record.preferred)
            return;
        for (auto& property : m_card.properties) {
            if (!property.is("TEL"))
                continue;
            property.removeType("PREF");
            property.removeParameter("PREF");
        }
        auto* telephone = m_wanted.preferred ? source(*m_wanted.preferred) : nullptr;
        if (telephone == nullptr)
            return;
        auto types = telephone->types();
        types.push_back("PREF");
        telephone->setParameter("TYPE", std::move(types));
    }

    // A second office number without a first, or a fax number that would move up now that
    // the office number is gone: the card then says which property is which field.
    void markWhatReadsDifferently()
    {
        const auto record = remaining().record;
        for (const auto& family : families()) {
            const bool different = std::any_of(family.fields.begin(), family.fields.end(),
                                               [&](Field field) { return differs(field, record); });
            if (different)
                mark(family);
        }
    }

    void mark(const Family& family)
    {
        for (auto& property : m_card.properties) {
            const bool member = std::any_of(family.names.begin(), family.names.end(),
                                            [&](const char* name) { return property.is(name); });
            if (member)
                property.setParameter(nFIELD_PARAMETER, {"NONE"});
        }
        for (const Field field : family.fields) {
            auto* property = source(field);
            if (property != nullptr && !isRemoved(*property))
                property->setParameter(nFIELD_PARAMETER, {upper(fieldName(field))});
        }
    }

    const ContactRecord& m_wanted;
    Card& m_card;
    CardReading m_reading; // of the card as it was; sources follow what is written
};

} // namespace

void writeFields(const ContactRecord& record, Card& card)
{
    FieldWriter(record, card).write();
}

} // namespace vcard
