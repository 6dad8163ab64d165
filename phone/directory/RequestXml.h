// The XML messages of the directory service, from the service's side.

#pragma once

#include <optional>
#include <string>

#include "Contact.h"
#include "app/Result.h"

struct DirectoryRequest {
    enum class Kind { Read, Write, Delete };

    Kind kind = Kind::Read;
    Contact contact;          // its id is "" without a UniqueID
    std::optional<int> group; // the Group of a delete request without a UniqueID
};

// Understands one request. A document type, nesting or a size that no request has, a second entry
// and what is not well-formed are refused; elements that nobody knows are skipped.
// [any-thread]
Result<DirectoryRequest> parseDirectoryRequest(const std::string& xml);

// The answers. The reader takes the text of an element again at every closing tag that follows it,
// so there is no white space and no empty element behind a field.
std::string readAnswer(const Contact& contact);
std::string writeAnswer(const std::string& id);
std::string deleteAnswer();
std::string failureAnswer(const std::string& message);
