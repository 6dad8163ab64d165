// The files from which the SIP engine learns how to work: "config", "accounts" and "contacts".

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "app/Result.h"
#include "calls/sip/SipSettings.h"

// Whether the engine reads this text as it is between the quotes of an account's parameter.
bool canStandInAccount(std::string_view text);

// Whether it can be the user part of the line's own address.
bool isSipUser(std::string_view text);

// The line's account, as the engine takes it with the command "uanew"; the password stands in it.
std::string baresipAccount(const SipSettings& settings, const std::string& password);

// Writes the files into `folder`, which only its owner may enter from then on. The engine listens for
// commands on `controlPort` of this machine, and has no account until it is given one: what it did
// before it takes commands nobody would hear of.
Result<void> writeBaresipFiles(const SipSettings& settings, int controlPort,
                               const std::filesystem::path& folder);
