// Messages of the page, and the names of keys in them.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "app/PhoneKey.h"
#include "web/KeyMessage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto message = readKeyMessage(text))
        (void)keysFromWord(message->key);
    (void)keysFromWord(text);
    return 0;
}
