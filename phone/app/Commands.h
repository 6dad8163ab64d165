// What the program does besides being a telephone: "deskphone config ...".
//
// Each returns the program's exit code, and says what it did or could not do.

#pragma once

#include <string>

#include "app/Profile.h"

constexpr int EXIT_DONE = 0;
constexpr int EXIT_REFUSED = 1; // what was asked for could not be done
constexpr int EXIT_USAGE = 2;   // it was not asked for properly

// Every item with its unit, value, default, range and what it is.
int listConfiguration(const Profile& profile);
int setConfiguration(const Profile& profile, const std::string& item, const std::string& value);
// Deletes the calls that were dialled.
int clearCalls(const Profile& profile);
int replaceToken(const Profile& profile);
