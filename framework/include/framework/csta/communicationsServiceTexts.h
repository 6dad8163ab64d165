// The texts of private CSTA data that telephone and PBX agree on.

#pragma once

#include <string>

#include <framework/Export.h>

namespace communicationsServiceTexts {

FRAMEWORK_API extern const std::string content_feature_name_pbxphonebook;
FRAMEWORK_API extern const std::string content_feature_query;
FRAMEWORK_API extern const std::string content_localfeature_activate;
FRAMEWORK_API extern const std::string content_feature_available;
FRAMEWORK_API extern const std::string content_feature_unavailable;
FRAMEWORK_API extern const std::string systemState_enabled;
FRAMEWORK_API extern const std::string systemState_disabled;
FRAMEWORK_API extern const std::string systemState_partiallyDisabled;
FRAMEWORK_API extern const std::string content_displayIdDisplay;
FRAMEWORK_API extern const std::string content_displayIdMenu;

} // namespace communicationsServiceTexts
