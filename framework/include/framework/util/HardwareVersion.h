// Which hardware the telephone is.

#pragma once

#include <framework/Export.h>

class FRAMEWORK_API HardwareVersion {
public:
    // 1 by default. 10 and 11: TDM telephones, without a corporate directory. 4 to 7: displays that
    // cut long lines in the dialler.
    // [any-thread]
    static int getHWVariant();

    // For the telephone, before phonelets are loaded.
    static void setHWVariant(int variant);
};
