#include "Toolbox.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>

#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/ManageableData.h>

#include "PhonebookLog.h"

namespace {

constexpr char nSOURCE[] = "./src/Toolbox";

// Bytes of the UTF-8 character that `first` begins; 0 for a byte that begins none.
std::size_t characterBytes(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if ((first & 0xE0) == 0xC0)
        return 2;
    if ((first & 0xF0) == 0xE0)
        return 3;
    if ((first & 0xF8) == 0xF0)
        return 4;
    return 0;
}

unsigned int displayToIndex(unsigned int row, bool hasSoftKeyBar, unsigned int offset)
{
    if (row == 0 || hasSoftKeyBar)
        return row;
    return row - offset;
}

} // namespace

unsigned int Toolbox::displayToPhonebookIndex(unsigned int row, bool hasSoftKeyBar)
{
    PB_TRACE("Toolbox::displayToPhonebookIndex()");
    return displayToIndex(row, hasSoftKeyBar, nNO_SOFT_KEY_BAR_OFFSET);
}

unsigned int Toolbox::displayToGroupListIndex(unsigned int row, bool hasSoftKeyBar)
{
    PB_TRACE("Toolbox::displayToGroupListIndex()");
    return displayToIndex(row, hasSoftKeyBar, nNO_SOFT_KEY_BAR_GROUPS_OFFSET);
}

unsigned int Toolbox::phonebookToDisplayIndex(unsigned int index, bool hasSoftKeyBar)
{
    PB_TRACE("Toolbox::phonebookToDisplayIndex()");
    return hasSoftKeyBar ? index : index + nNO_SOFT_KEY_BAR_OFFSET;
}

int Toolbox::stoi(const std::string& text)
{
    PB_TRACE("Toolbox::stoi()");
    return std::atoi(text.c_str());
}

std::string Toolbox::itos(int number)
{
    PB_TRACE("Toolbox::itos()");
    std::ostringstream text;
    text.imbue(std::locale::classic()); // another locale may group the digits
    text << number;
    return text.str();
}

std::string Toolbox::truncateStringsProperly(std::string text, unsigned int maximum)
{
    PB_TRACE("Toolbox::truncateStringsProperly()");
    if (text.size() <= maximum)
        return text;
    std::size_t bytes = 0;
    for (unsigned int characters = 0; characters < maximum && bytes < text.size(); ++characters)
        bytes += characterBytes(static_cast<unsigned char>(text[bytes]));
    text.resize(std::min(bytes, text.size()));
    return text;
}

std::string Toolbox::removeLeadingSpaces(const std::string& text)
{
    PB_TRACE("Toolbox::removeLeadingSpaces()");
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? text : text.substr(first);
}

std::string Toolbox::removeTrailingSpaces(const std::string& text)
{
    PB_TRACE("Toolbox::removeTrailingSpaces()");
    const auto last = text.find_last_not_of(' ');
    return last == std::string::npos ? text : text.substr(0, last + 1);
}

std::string Toolbox::removeLeadingAndTrailingSpaces(const std::string& text)
{
    PB_TRACE("Toolbox::removeLeadingAndTrailingSpaces()");
    return removeTrailingSpaces(removeLeadingSpaces(text));
}

int Toolbox::getFieldSizeFromVector(const std::vector<std::pair<std::string, std::string>>& sizes,
                                    const std::string& field)
{
    PB_TRACE("Toolbox::getFieldSizeFromVector()");
    const auto size =
        std::find_if(sizes.begin(), sizes.end(), [&field](const auto& pair) { return pair.first == field; });
    if (size != sizes.end())
        return stoi(size->second);
    std::printf("Error - didn't find field %s in the field size vector\n", field.c_str());
    return -1;
}

std::string Toolbox::getValueFromOCMS(LocalMgmtIfc* localMgmt, const std::string& itemId)
{
    PB_TRACE("Toolbox::getValueFromOCMS()");
    constexpr char nNOT_FOUND[] = "???";
    if (!localMgmt)
        return nNOT_FOUND;
    ManageableData request;
    request.setRootId(itemId);
    if (!localMgmt->read(request))
        return nNOT_FOUND;
    const auto* node = request.interogate(itemId);
    return node ? node->getValue() : nNOT_FOUND;
}
