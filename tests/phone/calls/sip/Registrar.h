// A SIP registrar and proxy (Debian's kamailio) on a free port of this machine, with UDP and TCP. It wants
// a password from everybody, and knows nobody but those who have registered.

#pragma once

#include <string>

#include "ServerProcess.h"

#include "TemporaryFolder.h"

class Registrar {
public:
    static constexpr char PASSWORD[] = "se;cret <42>";

    Registrar()
    {
        want(PASSWORD);
        start();
    }

    // From its next start on.
    void want(const std::string& password) const { m_folder.write("kamailio.cfg", configuration(password)); }
    // As a crash would; its port is refused from then on.
    void kill() { m_process.kill(); }
    void start()
    {
        m_process.start({"/usr/sbin/kamailio", "-DD", "-E", "-f", m_folder / "kamailio.cfg", "-P",
                         m_folder / "pid", "-w", m_folder.path(), "-Y", m_folder.path(), "-m", "16", "-M",
                         "4"},
                        m_folder / "log", port, std::chrono::seconds(20));
    }

    const int port = freePort();

private:
    std::string configuration(const std::string& password) const
    {
        const auto address = ":127.0.0.1:" + std::to_string(port) + "\n";
        std::string text = R"(#!KAMAILIO
debug=1
log_stderror=yes
children=1
tcp_children=1
auto_aliases=no
loadmodule "tm.so"
loadmodule "sl.so"
loadmodule "rr.so"
loadmodule "pv.so"
loadmodule "siputils.so"
loadmodule "textops.so"
loadmodule "usrloc.so"
loadmodule "registrar.so"
loadmodule "auth.so"
modparam("registrar", "min_expires", 1)
request_route {
    if (is_method("CANCEL")) {
        if (t_check_trans()) t_relay();
        exit;
    }
    if (has_totag()) {
        if (loose_route() || is_method("ACK")) t_relay();
        exit;
    }
    if (is_method("REGISTER")) {
        if (!pv_www_authenticate("$td", "PASSWORD", "0")) { www_challenge("$td", "0"); exit; }
        save("location");
        exit;
    }
    if (is_method("INVITE")) {
        if (!pv_proxy_authenticate("$fd", "PASSWORD", "0")) { proxy_challenge("$fd", "0"); exit; }
        record_route();
    }
    if (!lookup("location")) { sl_send_reply("404", "Not Found"); exit; }
    t_relay();
}
)";
        const std::string placeholder = "\"PASSWORD\"";
        for (auto at = text.find(placeholder); at != text.npos; at = text.find(placeholder))
            text.replace(at, placeholder.size(), "\"" + password + "\"");
        return text + "listen=udp" + address + "listen=tcp" + address;
    }

    TemporaryFolder m_folder;
    ServerProcess m_process{SIGTERM};
};
