// Cards as the converter beside the telephone reads and writes them.

#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ChildProgram.h"
#include "ContactStore.h"

// One card of a file. Texts are as the card has them, of any length.
struct CardRecord {
    std::size_t line = 0; // where it begins
    std::size_t end = 0;  // bytes of the file that have been read with it
    std::string invalid;  // why it cannot be used; "" when it can
    std::string card;
    std::string uid;
    Contact contact; // texts and the preferred number only
    std::vector<std::string> groups;
    std::string photo; // bytes
    std::vector<std::string> notShown;
    std::vector<std::string> problems;
};

class CardReader {
public:
    static Result<std::unique_ptr<CardReader>> open(const std::filesystem::path& file);

    // Nothing at the end of the file.
    Result<std::optional<CardRecord>> next();

private:
    explicit CardReader(std::unique_ptr<ChildProgram> program);
    std::unique_ptr<ChildProgram> m_pProgram;
};

// What an import made of a card, for the export to tell what was changed on the telephone since.
struct ImportedCard {
    Contact contact;                 // as stored; only group, picture and default number are kept here
    std::vector<std::string> groups; // all that the card names
    std::string group;               // the one of them that the contact has
    // Fields that were too long, whole, by their names in nCARD_FIELDS.
    std::vector<std::pair<std::string, std::string>> whole;

    std::string toText() const;
    // What cannot be read gives an empty one.
    static ImportedCard fromText(const std::string& text);
};

class CardWriter {
public:
    // `version` is that of the cards: "2.1", "3.0" or "4.0".
    static Result<std::unique_ptr<CardWriter>> open(const std::filesystem::path& file,
                                                    const std::string& version);

    // Writes the contact into its kept card. `group` is its group's name; `photo` are the bytes of its
    // picture, if there are any to write.
    Result<void> write(const Contact& contact, const KeptCard& kept, const std::string& group,
                       const std::string& photo);
    Result<void> finish();

private:
    explicit CardWriter(std::unique_ptr<ChildProgram> program);
    std::unique_ptr<ChildProgram> m_pProgram;
};

// "image/png" or "image/jpeg", by the first bytes; "" for anything else.
std::string pictureMime(const std::string& bytes);
