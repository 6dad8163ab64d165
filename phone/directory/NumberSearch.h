// Finding contacts by a number, in whatever form they have it.
//
// What a number means depends on the place's dial plan, so no file can be indexed by it. But whatever
// the form, a number ends in the same digits: the file is indexed by the last two of each number, and
// only contacts that share those are read and compared in full. Numbers with anything but digits and
// common separators in them are few, and are all compared. The index is the file's own: it is right
// whoever has changed the contacts, it costs no memory, and nothing is to be built when a call comes in.

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "app/Result.h"

class Database;

// The form of a number that is the same for all ways to write it.
using Canonical = std::function<std::string(const std::string& number)>;

// Adds the indexes to a file that has none yet. Throws SqliteError.
void indexNumbers(Database& contacts);

// The names of all contacts in a file that have `number`, each once, in their order. Opens the file by
// itself, whoever else works with it. [any-thread]
Result<std::vector<std::string>> namesWithNumber(const std::filesystem::path& file, const std::string& number,
                                                 const Canonical& canonical);
