// The attribute names of directory records: the first element of each pair of an attribute list.

#pragma once

#include <string>

#include <framework/Export.h>

namespace Utils {

FRAMEWORK_API extern const std::string SURNAME;
FRAMEWORK_API extern const std::string FIRSTNAME;
FRAMEWORK_API extern const std::string NICKNAME;
FRAMEWORK_API extern const std::string OFFICE;
FRAMEWORK_API extern const std::string OFFICE2;
FRAMEWORK_API extern const std::string MOBILE;
FRAMEWORK_API extern const std::string PRIVATE;
FRAMEWORK_API extern const std::string EMAIL;
FRAMEWORK_API extern const std::string COMPANY;
FRAMEWORK_API extern const std::string JOBFUNCTION;
FRAMEWORK_API extern const std::string ADDRESS1;
FRAMEWORK_API extern const std::string ADDRESS2;

} // namespace Utils
