// Brings the cards of a file into the contact store.
//
// First all cards are read and compared with what there is: that alone changes nothing, and is the
// rehearsal. Then all of them are taken over at once, in one transaction.
//
// A card belongs to the contact that it was imported into before, else to the one with its UID, else
// to one of its name that shares a number with it or is the same in everything. A contact takes one
// card of a file only, so that no card is lost; a card that is twice in a file counts once. A card
// that has not changed since it was imported changes nothing, whatever the user made of the contact.

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Cards.h"
#include "ContactStore.h"
#include "OwnGroup.h"
#include "app/Result.h"

enum class CardFate { New, Changed, Same, Invalid };

struct PlannedCard {
    std::size_t line = 0; // of the file
    CardFate fate = CardFate::New;
    std::string reason; // why it is not simply new, for people
    Contact contact;    // as it will be stored
    std::vector<std::string> notShown;
    std::vector<std::string> problems;

    // For finding its contact.
    std::string uid;
    std::int64_t hash = 0;
    std::vector<std::string> groups;
    bool prefersNumber = false;
};

// "Miller, Ann"
std::string listedName(const Contact& contact);

class Importer {
public:
    // Pictures are kept in the folder `pictures`; there are `groupSlots` groups at most. The store
    // outlives the importer.
    Importer(ContactStore& store, std::filesystem::path pictures, int groupSlots,
             OwnGroup ownGroup = OwnGroup());
    ~Importer();

    Importer(const Importer&) = delete;
    Importer& operator=(const Importer&) = delete;

    // How far it is, of how much; false cancels.
    using Progress = std::function<bool(std::size_t done, std::size_t all)>;

    // Reads the cards. Memory grows with the contacts, not with their cards and pictures.
    Result<void> read(const std::filesystem::path& file, const Progress& progress);
    // In the order of the file, but for those that are the same as an earlier one.
    const std::vector<PlannedCard>& cards() const { return m_cards; }
    // Takes them over. After an error or a cancellation everything is as before.
    Result<void> apply(const Progress& progress);

private:
    struct Stage;

    void take(const CardRecord& record);
    Contact fit(const CardRecord& record, PlannedCard& card, ImportedCard& imported);
    std::string pictureName(const CardRecord& record, const Contact& contact, PlannedCard& card);
    bool isRepeated(const CardRecord& record, std::int64_t hash);
    void keep(const CardRecord& record, const ImportedCard& imported);

    Result<void> compare();
    void findUnchanged();
    void findByUid();
    void findByName();
    void claim(PlannedCard& card, const Contact& contact);
    std::optional<Contact> sameName(const PlannedCard& card);
    void settle(PlannedCard& card);
    int groupFor(PlannedCard& card);

    bool store(const Progress& progress);
    void storeOne(const PlannedCard& card, std::size_t index);
    Result<void> writePictures(const Progress& progress);
    void removeNewPictures();

    ContactStore& m_store;
    const std::filesystem::path m_pictures;
    const OwnGroup m_ownGroup;
    std::unique_ptr<Stage> m_pStage;
    std::vector<PlannedCard> m_cards;
    std::vector<std::optional<Contact>> m_before; // the contact that each card belongs to
    std::set<std::string> m_claimed;              // their ids
    std::vector<std::string> m_groupNames;
    std::set<int> m_newGroups;
    std::map<std::int64_t, std::string> m_pictureNames; // by the pictures' hashes
    std::set<std::string> m_takenPictureNames;
    std::vector<std::filesystem::path> m_newPictures;
};
