// Whatever a PBX sends is cut into messages and understood, or refused; what is understood can be written.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "calls/pbx/CstaFrame.h"
#include "calls/pbx/CstaMessages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CstaFrameReader reader;
    reader.append({reinterpret_cast<const char*>(data), size});
    for (;;) {
        const auto frame = reader.next();
        if (!frame || !frame.value())
            return 0;
        const auto message = readCsta(frame.value()->xml);
        if (!message)
            continue;
        static_cast<void>(eventIn(message.value()));
        static_cast<void>(systemStatusIn(message.value()));
        static_cast<void>(callsIn(message.value()));
        static_cast<void>(errorIn(message.value()));
        if (!readCsta(writeCsta(message.value())))
            std::abort();
    }
}
