// Why a server's certificate was refused, in words.

#pragma once

#include <filesystem>
#include <string>

// What is wrong with `certificate` (DER) for a server called `host`, judged by the certificates in
// `caFile` (PEM): the end of the sentence "The certificate of the server ...", naming the item to
// change where there is one.
std::string whatIsWrongWith(const std::string& certificate, const std::string& host,
                            const std::filesystem::path& caFile);
