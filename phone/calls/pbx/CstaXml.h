// CSTA messages as XML (ECMA-323), read into small trees and written from them.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/Result.h"

// Elements of CSTA are of edition 3, which most PBXs speak, when they are written, and of any edition when
// they are read.
inline constexpr char CSTA_NAMESPACE[] = "http://www.ecma-international.org/standards/ecma-323/csta/ed3";
// Private elements of the telephone and its PBX: docs/formats.md describes them.
inline constexpr char PRIVATE_NAMESPACE[] = "urn:deskbook:csta:1";

struct CstaElement {
    enum class Kind {
        Csta,
        Private, // of PRIVATE_NAMESPACE
        Foreign, // of any other: nobody asks for it
    };

    std::string name; // without its prefix
    std::string text = {};
    std::vector<CstaElement> children = {};
    Kind kind = Kind::Csta;

    // The first such child; null if there is none.
    const CstaElement* find(std::string_view child) const;
    // What stands at the end of a path of names: "" when there is no such thing.
    std::string textAt(std::initializer_list<std::string_view> path) const;
    const CstaElement* at(std::initializer_list<std::string_view> path) const;
};

// A document type, deeper nesting than CSTA has, and what is not well-formed are refused.
// [any-thread]
Result<CstaElement> readCsta(const std::string& xml);

// One line, with an XML declaration. Characters that XML has not are left out.
// [any-thread]
std::string writeCsta(const CstaElement& root);
