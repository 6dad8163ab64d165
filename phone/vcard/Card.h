// A card as its properties, whatever version it was written in.
//
// Text is decoded from its character set and from quoted-printable, pictures are base64
// with ENCODING=b, bare parameters of version 2.1 are TYPEs. Everything else stays as the
// card has it, so that what nobody understands can be written again.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CardReader.h"

namespace vcard {

enum class Version { V21, V30, V40 };

struct Parameter {
    std::string name;
    std::vector<std::string> values;
};

struct Property {
    std::string group; // "item1" of "item1.TEL", may be empty
    std::string name;  // as written
    std::vector<Parameter> parameters;
    std::string value;                   // escaped as versions 3.0 and 4.0 do
    std::vector<std::string> components; // `value` decoded and cut at its separators

    // Names of properties and parameters do not distinguish upper and lower case.
    bool is(std::string_view otherName) const;
    const Parameter* parameter(std::string_view otherName) const;
    void setParameter(std::string_view otherName, std::vector<std::string> values);
    void removeParameter(std::string_view otherName);

    // The first value of the parameter in upper case, "" without one.
    std::string parameterText(std::string_view otherName) const;

    // All values of TYPE in upper case, lists in quotes taken apart.
    std::vector<std::string> types() const;
    bool hasType(std::string_view type) const;
    void removeType(std::string_view type);

    // The whole decoded value, for properties that are one text.
    std::string text() const;
    std::string component(std::size_t index) const;

    // Both replace the value as well as its decoded form.
    void setText(const std::string& text);
    void setComponents(std::vector<std::string> parts);

    bool isBase64() const;
};

struct Card {
    Version version = Version::V30;
    std::vector<Property> properties;

    const Property* find(std::string_view name) const;
};

// A property that cannot be used is left out and named in `problems`, as
// "line 12: PHOTO: bad base64; property ignored".
Card parseCard(const SourceCard& source, const Limits& limits, std::vector<std::string>& problems);

// What a picture in base64 is, by its first bytes: "image/jpeg", "" when it is none known.
std::string pictureType(std::string_view base64);

} // namespace vcard
