#include "calls/sip/BaresipConfig.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "directory/NewFile.h"

namespace fs = std::filesystem;

namespace {

constexpr char nMODULES[] = "/usr/lib/baresip/modules";

std::string transportOf(const SipSettings& settings)
{
    const std::map<SipTransport, std::string> names{
        {SipTransport::Udp, "udp"}, {SipTransport::Tcp, "tcp"}, {SipTransport::Tls, "tls"}};
    return names.at(settings.transport);
}

// As a quoted-string of RFC 3261 25.1.
std::string quoted(const std::string& text)
{
    std::string all = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            all += '\\';
        all += c;
    }
    return all + "\"";
}

// Where calls come in, without a port. A server on this machine is reached from nowhere else.
std::string addressOf(const SipHost& server)
{
    if (server.isThisMachine())
        return server.isIpv6() ? "[::1]" : "127.0.0.1";
    return server.isIpv6() ? "[::]" : "0.0.0.0";
}

std::string configOf(const SipSettings& settings, int controlPort)
{
    const auto server = settings.nextHop();
    const bool sound = settings.sound == SipSound::Devices;
    // One bridge as source and player gives back what comes in, and never ends.
    const std::string device = sound ? "alsa,default" : "aubridge,line";
    std::ostringstream text;
    text << "poll_method epoll\n"
         << "sip_listen " << addressOf(server) << ":" << settings.port << "\n"
         << "sip_trans_def " << transportOf(settings) << "\n"
         << "call_local_timeout 120\n" // s
         // Who calls during a call is refused by the engine itself: were we to do that, a caller who gives up
         // just then would have us hang up the other call.
         << "call_max_calls 1\n"
         << "audio_player " << device << "\naudio_source " << device << "\naudio_alert "
         << (sound ? "alsa,default" : "aubridge,alert") << "\naudio_level no\n";
    // Its name would not do: only an address may be a loopback one.
    if (server.isThisMachine())
        text << "net_interface " << (server.isIpv6() ? "::1" : "127.0.0.1") << "\n";
    text << "module_path " << nMODULES << "\nmodule g711.so\nmodule "
         << (sound ? "alsa.so\nmodule aufile.so" : "aubridge.so")
         << "\nmodule_tmp uuid.so\nmodule_tmp account.so\nmodule_app menu.so\nmodule_app ctrl_tcp.so\n"
         << "ctrl_tcp_listen 127.0.0.1:" << controlPort << "\nstatmode_default off\n";
    return text.str();
}

Result<void> write(const fs::path& file, const std::string& text)
{
    // Made anew, so that its mode is ours and nobody else has it open.
    std::error_code failed;
    fs::remove(file, failed);
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return cannotBeWritten(file, std::error_code(errno, std::generic_category()));
    const auto written = ::write(descriptor, text.data(), text.size());
    ::close(descriptor);
    if (written != static_cast<ssize_t>(text.size()))
        return cannotBeWritten(file, std::make_error_code(std::errc::no_space_on_device));
    return {};
}

} // namespace

bool canStandInAccount(std::string_view text)
{
    const bool plain =
        std::ranges::none_of(text, [](unsigned char c) { return c < 0x20 || c == 0x7F || c == '"'; });
    return plain && !text.ends_with('\\');
}

bool isSipUser(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view("+-_.*#").find(c) != std::string_view::npos;
    });
}

std::string baresipAccount(const SipSettings& settings, const std::string& password)
{
    const auto transport = ";transport=" + transportOf(settings);
    std::ostringstream text;
    if (!settings.displayName.empty())
        text << quoted(settings.displayName) << ' ';
    const auto own = sipUriOf(settings.user, settings.domain()).value_or("");
    // A peer that could transfer a call would have the telephone call anybody, unseen and unheard.
    text << '<' << own << transport << ">;answermode=manual;call_transfer=no";
    if (!settings.registrar) {
        text << ";regint=0";
        return text.str();
    }
    // Everything goes that way, calls to other hosts too: who is reached directly may ask for the password,
    // and guess it from the answer.
    text << ";regint=" << settings.registrationTime.count() << ";auth_user=\"" << settings.authUser
         << "\";auth_pass=\"" << password << "\";outbound=\"sip:" << settings.nextHop().text() << transport
         << '"';
    return text.str();
}

Result<void> writeBaresipFiles(const SipSettings& settings, int controlPort, const fs::path& folder)
{
    std::error_code failed;
    fs::create_directories(folder, failed);
    fs::permissions(folder, fs::perms::owner_all, failed);
    if (failed)
        return cannotBeWritten(folder, failed);
    for (const auto& [name, text] :
         {std::pair("config", configOf(settings, controlPort)), std::pair("accounts", std::string()),
          std::pair("contacts", std::string())}) {
        if (auto written = write(folder / name, text); !written)
            return written;
    }
    return {};
}
