#include "directory/ldap/LdapConnection.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <ldap.h>

#include <openldap.h>

#include "directory/ContactText.h"
#include "directory/ldap/LdapCertificate.h"
#include "directory/ldap/LdapFilter.h"

using std::chrono::milliseconds;

namespace {

using Clock = LdapWatchdog::Clock;
using Wait = LdapWatchdog::Wait;
using Guard = LdapWatchdog::Guard;

// A message that announces more is not waited for.
constexpr ber_len_t nLARGEST_MESSAGE = 4 * 1024 * 1024;
constexpr milliseconds nFAREWELL_TIME{200};
constexpr std::size_t nLONGEST_SERVERS_WORDS = 200;
constexpr char nNO_GOOD_TLS[] = "TLS 1.2 or later could not be agreed on";

struct MessageDeleter {
    void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
};
using Message = std::unique_ptr<LDAPMessage, MessageDeleter>;

struct MemoryDeleter {
    void operator()(void* memory) const { ldap_memfree(memory); }
};

timeval timeUntil(LdapWatchdog::Deadline deadline)
{
    const auto left = std::max(std::chrono::ceil<std::chrono::microseconds>(deadline - Clock::now()),
                               std::chrono::microseconds(0));
    return {static_cast<time_t>(left.count() / 1000000), static_cast<suseconds_t>(left.count() % 1000000)};
}

int scopeOf(LdapScope scope)
{
    switch (scope) {
    case LdapScope::Base:
        return LDAP_SCOPE_BASE;
    case LdapScope::OneLevel:
        return LDAP_SCOPE_ONELEVEL;
    case LdapScope::Subtree:
        break;
    }
    return LDAP_SCOPE_SUBTREE;
}

// libldap would connect again by itself, without TLS, when a connection is lost.
int refuseConnection(LDAP*, Sockbuf*, LDAPURLDesc*, sockaddr*, ldap_conncb*)
{
    return LDAP_UNAVAILABLE;
}

void forgetConnection(LDAP*, Sockbuf*, ldap_conncb*) {}

void setOption(int socket, int level, int option, int value)
{
    ::setsockopt(socket, level, option, &value, sizeof value);
}

// What must not be taken over from the computer's own ldap.conf.
void makeIndependent(LDAP* handle)
{
    static ldap_conncb callbacks{refuseConnection, forgetConnection, nullptr};
    const int version = LDAP_VERSION3;
    const int deref = LDAP_DEREF_NEVER;
    const int none = 0;
    ldap_set_option(handle, LDAP_OPT_PROTOCOL_VERSION, &version);
    ldap_set_option(handle, LDAP_OPT_DEREF, &deref);
    ldap_set_option(handle, LDAP_OPT_SIZELIMIT, &none);
    ldap_set_option(handle, LDAP_OPT_TIMELIMIT, &none);
    ldap_set_option(handle, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
    ldap_set_option(handle, LDAP_OPT_RESTART, LDAP_OPT_OFF);
    ldap_set_option(handle, LDAP_OPT_NETWORK_TIMEOUT, nullptr);
    ldap_set_option(handle, LDAP_OPT_TIMEOUT, nullptr);
    ldap_set_option(handle, LDAP_OPT_CONNECT_CB, &callbacks);

    Sockbuf* buffer = nullptr;
    ber_len_t largest = nLARGEST_MESSAGE;
    ldap_get_option(handle, LDAP_OPT_SOCKBUF, &buffer);
    ber_sockbuf_ctrl(buffer, LBER_SB_OPT_SET_MAX_INCOMING, &largest);
}

// The result inside an answer; negative when it is not understood.
int resultOf(LDAP* handle, LDAPMessage* message)
{
    int code = LDAP_DECODING_ERROR;
    if (ldap_parse_result(handle, message, &code, nullptr, nullptr, nullptr, nullptr, 0) != LDAP_SUCCESS)
        return LDAP_DECODING_ERROR;
    return code;
}

// The next message that has come, its type, and nothing else: libldap keeps whatever it is not asked
// for, without end. Not positive when none comes in time, or one that is no answer to request `id`.
int nextMessage(LDAP* handle, int id, timeval* time, Message& message)
{
    LDAPMessage* received = nullptr;
    const int type = ldap_result(handle, LDAP_RES_ANY, LDAP_MSG_ONE, time, &received);
    message.reset(received);
    return type > 0 && ldap_msgid(received) != id ? -1 : type;
}

// The result of an operation that has one message of `type` for an answer; negative when anything
// else comes.
int resultOfOnly(LDAP* handle, int id, int type)
{
    Message message;
    const int came = nextMessage(handle, id, nullptr, message);
    return came == type ? resultOf(handle, message.get()) : LDAP_DECODING_ERROR;
}

bool belongsToSearch(int type)
{
    return type == LDAP_RES_SEARCH_ENTRY || type == LDAP_RES_SEARCH_REFERENCE ||
           type == LDAP_RES_INTERMEDIATE;
}

} // namespace

void LdapEntryView::forEachValue(const std::function<void(std::string_view, std::string_view)>& use) const
{
    BerElement* position = nullptr;
    berval name{};
    if (ldap_get_dn_ber(m_handle, m_entry, &position, &name) != LDAP_SUCCESS)
        return;
    berval* values = nullptr;
    while (ldap_get_attribute_ber(m_handle, m_entry, position, &name, &values) == LDAP_SUCCESS &&
           name.bv_val) {
        const std::unique_ptr<berval, MemoryDeleter> freed(values);
        for (const auto* value = values; value && value->bv_val; ++value)
            use({name.bv_val, name.bv_len}, {value->bv_val, value->bv_len});
    }
    ber_free(position, 0);
}

LdapConnection::LdapConnection(LdapServer server, const LdapSettings& settings, LdapWatchdog& watchdog)
    : m_server(std::move(server))
    , m_settings(settings)
    , m_watchdog(watchdog)
{
}

LdapConnection::~LdapConnection()
{
    if (!m_pHandle)
        return;
    // A farewell that the network does not take is not waited for.
    if (!m_fit)
        ::shutdown(m_socket, SHUT_RDWR);
    const int duplicate = ::fcntl(m_socket, F_DUPFD_CLOEXEC, 0);
    {
        const Guard guard(m_watchdog, duplicate, Clock::now() + nFAREWELL_TIME);
        m_pHandle.reset();
    }
    ::close(duplicate);
}

void LdapConnection::Closer::operator()(ldap* handle) const
{
    ldap_unbind_ext(handle, nullptr, nullptr);
}

std::optional<LdapFault> LdapConnection::resolve(Deadline deadline)
{
    auto addresses = addressesOf(m_server.host, m_server.port, m_watchdog, deadline);
    if (addresses.end != Wait::Ready)
        return ended(addresses.end,
                     "looking up the name took too long; \"ldap-servers\" may name an address");
    m_addresses = std::move(addresses.found);
    if (m_addresses.empty())
        return fault(LdapFailure::UnknownHost, "the name is unknown (" + addresses.reason +
                                                   "): correct it in \"ldap-servers\", or ask who runs the "
                                                   "network's name service");
    return std::nullopt;
}

std::vector<std::string> LdapConnection::addresses() const
{
    std::vector<std::string> texts;
    for (const auto& address : m_addresses)
        texts.push_back(address.text());
    return texts;
}

std::optional<LdapFault> LdapConnection::connect(Deadline deadline)
{
    if (m_addresses.empty()) {
        if (auto failed = resolve(deadline))
            return failed;
    }
    std::optional<LdapFault> failed;
    auto left = static_cast<int>(m_addresses.size());
    for (const auto& address : m_addresses) {
        // Each gets its share: the first may be a hole.
        const auto now = Clock::now();
        failed = connectTo(address, now + (deadline - now) / left--);
        if (!failed || failed->failure == LdapFailure::Cancelled)
            break;
    }
    return failed;
}

std::optional<LdapFault> LdapConnection::connectTo(const LdapAddress& address, Deadline deadline)
{
    const int socket = ::socket(address.bytes.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const auto refused = [&](int reason) {
        ::close(socket);
        return fault(LdapFailure::Unreachable,
                     "there is no connection (" + std::generic_category().message(reason) +
                         "): correct host and port in \"ldap-servers\", or start the server");
    };
    if (socket < 0 ||
        (::connect(socket, reinterpret_cast<const sockaddr*>(&address.bytes), address.length) != 0 &&
         errno != EINPROGRESS))
        return refused(errno);
    if (const auto end = m_watchdog.waitFor(socket, POLLOUT, deadline); end != Wait::Ready) {
        ::close(socket);
        return ended(end, "nothing answers there: correct host and port in \"ldap-servers\", or look for a "
                          "firewall between");
    }
    int reason = 0;
    socklen_t size = sizeof reason;
    ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &reason, &size);
    if (reason != 0)
        return refused(reason);
    return adopt(socket);
}

std::optional<LdapFault> LdapConnection::adopt(int socket)
{
    // A kept connection whose other end has vanished is noticed after this time, not after minutes.
    setOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(m_settings.connectTime.count()));
    setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    setOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) & ~O_NONBLOCK);

    LDAP* handle = nullptr;
    if (const int code = ldap_init_fd(socket, LDAP_PROTO_TCP, m_server.uri.c_str(), &handle);
        code != LDAP_SUCCESS)
        return fault(LdapFailure::ServerFailed, ldap_err2string(code));
    m_pHandle.reset(handle);
    m_socket = socket;
    m_fit = true;
    makeIndependent(handle);
    return std::nullopt;
}

std::optional<LdapFault> LdapConnection::startTls(Deadline deadline)
{
    if (m_server.tls == LdapTls::None)
        return std::nullopt;
    if (auto failed = prepareTls())
        return failed;
    int code = LDAP_SUCCESS;
    {
        const Guard guard(m_watchdog, m_socket, deadline);
        code = requestTls();
    }
    const bool inPlace = code == LDAP_SUCCESS && ldap_tls_inplace(m_pHandle.get());
    if (inPlace && isTlsGood())
        return std::nullopt;
    m_fit = false;
    return inPlace ? fault(LdapFailure::TlsFailed, nNO_GOOD_TLS) : whyNoTls(code, deadline);
}

// libldap with GnuTLS ignores the least version that it is told, and loses memory with a priority.
bool LdapConnection::isTlsGood() const
{
    char* agreed = nullptr;
    ldap_get_option(m_pHandle.get(), LDAP_OPT_X_TLS_VERSION, &agreed);
    const std::unique_ptr<char, MemoryDeleter> freed(agreed);
    const std::string_view version(agreed ? agreed : "");
    return version == "TLS1.2" || version == "TLS1.3";
}

std::optional<LdapFault> LdapConnection::prepareTls()
{
    // What is no file, such as a pipe, could be read for ever.
    std::error_code failed;
    if (m_settings.checkCertificate && !std::filesystem::is_regular_file(m_settings.caFile, failed))
        return noTrustedCertificates();
    auto* handle = m_pHandle.get();
    const auto file = m_settings.checkCertificate ? m_settings.caFile.string() : std::string();
    const int require = m_settings.checkCertificate ? LDAP_OPT_X_TLS_DEMAND : LDAP_OPT_X_TLS_NEVER;
    // A certificate's common name counts only where it has no names of hosts (RFC 6125 6.4.4).
    const int host = m_settings.checkCertificate ? LDAP_OPT_X_TLS_TRY : LDAP_OPT_X_TLS_NEVER;
    const int noList = LDAP_OPT_X_TLS_CRL_NONE;
    const int client = 0;
    for (const int option :
         {LDAP_OPT_X_TLS_CACERTDIR, LDAP_OPT_X_TLS_CERTFILE, LDAP_OPT_X_TLS_KEYFILE, LDAP_OPT_X_TLS_CRLFILE})
        ldap_set_option(handle, option, "");
    ldap_set_option(handle, LDAP_OPT_X_TLS_PEERKEY_HASH, nullptr);
    ldap_set_option(handle, LDAP_OPT_X_TLS_CIPHER_SUITE, nullptr);
    ldap_set_option(handle, LDAP_OPT_X_TLS_CACERTFILE, file.c_str());
    ldap_set_option(handle, LDAP_OPT_X_TLS_REQUIRE_CERT, &require);
    ldap_set_option(handle, LDAP_OPT_X_TLS_REQUIRE_SAN, &host);
    ldap_set_option(handle, LDAP_OPT_X_TLS_CRLCHECK, &noList);
    if (ldap_set_option(handle, LDAP_OPT_X_TLS_NEWCTX, &client) == LDAP_OPT_SUCCESS)
        return std::nullopt;
    return noTrustedCertificates();
}

LdapFault LdapConnection::noTrustedCertificates() const
{
    return fault(LdapFailure::CaFileUnusable, "the trusted certificates cannot be read from \"" +
                                                  m_settings.caFile.string() +
                                                  "\": name a PEM file in \"ldap-ca-file\"");
}

int LdapConnection::requestTls()
{
    if (m_server.tls == LdapTls::FromStart)
        return ldap_install_tls(m_pHandle.get());
    int id = 0;
    int code = ldap_start_tls(m_pHandle.get(), nullptr, nullptr, &id);
    if (code == LDAP_SUCCESS)
        code = resultOfOnly(m_pHandle.get(), id, LDAP_RES_EXTENDED);
    return code == LDAP_SUCCESS ? ldap_install_tls(m_pHandle.get()) : code;
}

LdapFault LdapConnection::whyNoTls(int code, Deadline deadline)
{
    // Positive: the server's own answer to the request.
    if (code > LDAP_SUCCESS)
        return fault(LdapFailure::StartTlsRefused,
                     "the server offers no encryption" + inServersWords() +
                         ": set it up there, or name an ldaps:// server in \"ldap-servers\"");
    auto broke = broken(deadline, nNO_GOOD_TLS);
    if (broke.failure != LdapFailure::Disconnected)
        return broke;
    if (m_settings.checkCertificate) {
        if (!holdsCertificates(m_settings.caFile))
            return noTrustedCertificates();
        // Whoever is there, nothing but the request for TLS is said to it.
        auto settings = m_settings;
        settings.checkCertificate = false;
        LdapConnection unchecked(m_server, settings, m_watchdog);
        unchecked.m_addresses = m_addresses;
        if (!unchecked.connect(deadline) && !unchecked.startTls(deadline))
            return fault(LdapFailure::CertificateRefused,
                         "its certificate " +
                             whatIsWrongWith(unchecked.peerCertificate(), m_server.host, m_settings.caFile));
    }
    broke.failure = LdapFailure::TlsFailed;
    return broke;
}

std::string LdapConnection::peerCertificate() const
{
    berval certificate{};
    if (ldap_get_option(m_pHandle.get(), LDAP_OPT_X_TLS_PEERCERT, &certificate) != LDAP_OPT_SUCCESS ||
        !certificate.bv_val)
        return "";
    const std::unique_ptr<char, MemoryDeleter> freed(certificate.bv_val);
    return {certificate.bv_val, certificate.bv_len};
}

std::optional<LdapFault> LdapConnection::bind(Deadline deadline)
{
    std::string password;
    if (!m_settings.bindDn.empty()) {
        if (!m_settings.checkCertificate || !ldap_tls_inplace(m_pHandle.get()))
            return fault(LdapFailure::PasswordMissing, "no password is sent without TLS and a checked "
                                                       "certificate: correct \"ldap-security\" and "
                                                       "\"ldap-check-certificate\"");
        auto kept = m_settings.password.read(m_settings.hosts());
        if (!kept)
            return LdapFault{LdapFailure::PasswordMissing, kept.error().sentence};
        password = std::move(kept).value();
    }

    int code = LDAP_SUCCESS;
    {
        const Guard guard(m_watchdog, m_socket, deadline);
        berval credentials{static_cast<ber_len_t>(password.size()), password.data()};
        int id = 0;
        code = ldap_sasl_bind(m_pHandle.get(), m_settings.bindDn.c_str(), LDAP_SASL_SIMPLE, &credentials,
                              nullptr, nullptr, &id);
        explicit_bzero(password.data(), password.size());
        if (code == LDAP_SUCCESS)
            code = resultOfOnly(m_pHandle.get(), id, LDAP_RES_BIND);
    }
    if (code == LDAP_SUCCESS)
        return std::nullopt;
    if (code < 0)
        return broken(deadline, "the server did not say whether it knows us");
    m_fit = false;
    return bindFault(code);
}

LdapFault LdapConnection::bindFault(int code) const
{
    const auto words = inServersWords();
    switch (code) {
    case LDAP_BUSY:
    case LDAP_UNAVAILABLE:
        return fault(LdapFailure::ServerBusy, "the server has no time now" + words);
    case LDAP_CONFIDENTIALITY_REQUIRED:
    case LDAP_STRONG_AUTH_REQUIRED:
        return fault(LdapFailure::StartTlsRefused,
                     "the server wants an encrypted connection" + words +
                         ": set \"ldap-security\" to starttls, or name an ldaps:// server");
    case LDAP_INVALID_DN_SYNTAX:
    case LDAP_INVALID_CREDENTIALS:
    case LDAP_NO_SUCH_OBJECT:
        return fault(LdapFailure::CredentialsRefused,
                     "the name or the password is wrong" + words +
                         ": correct \"ldap-bind-dn\", or run \"deskphone ldap-password\"");
    case LDAP_REFERRAL:
    case LDAP_AUTH_METHOD_NOT_SUPPORTED:
    case LDAP_CONSTRAINT_VIOLATION: // after too many wrong passwords, of some servers
    case LDAP_INAPPROPRIATE_AUTH:
    case LDAP_INSUFFICIENT_ACCESS:
    case LDAP_UNWILLING_TO_PERFORM:
        break;
    default:
        return fault(LdapFailure::ServerFailed,
                     "the server cannot say whether it knows us: " + std::string(ldap_err2string(code)) +
                         words + "; look what its log says");
    }
    const auto who = m_settings.bindDn.empty() ? "nobody may ask unnamed: set \"ldap-bind-dn\", and run "
                                                 "\"deskphone ldap-password\""
                                               : "\"ldap-bind-dn\" may not ask: use another name";
    return fault(LdapFailure::CredentialsRefused, std::string(ldap_err2string(code)) + words + "; " + who);
}

std::optional<LdapFault> LdapConnection::open(Deadline deadline)
{
    for (const auto step : {&LdapConnection::connect, &LdapConnection::startTls, &LdapConnection::bind}) {
        if (auto failed = (this->*step)(deadline))
            return failed;
    }
    return std::nullopt;
}

LdapSearchEnd LdapConnection::search(const LdapSearch& what, Deadline deadline,
                                     const std::function<bool(const LdapEntryView&)>& show)
{
    if (!isOneFilter(what.filter))
        return {searchFault(LDAP_FILTER_ERROR, what), false};
    std::vector<char*> attributes;
    for (const auto& attribute : what.attributes)
        attributes.push_back(const_cast<char*>(attribute.c_str()));
    attributes.push_back(nullptr);

    auto* handle = m_pHandle.get();
    const Guard guard(m_watchdog, m_socket, deadline);
    auto left = timeUntil(deadline);
    // The server's limit is whole seconds, and 0 means none.
    timeval serversLimit{left.tv_sec + 1, 0};
    int id = 0;
    int code = ldap_search_ext(handle, what.base.c_str(), scopeOf(what.scope), what.filter.c_str(),
                               attributes.data(), 0, nullptr, nullptr, &serversLimit, what.sizeLimit, &id);
    if (code == LDAP_FILTER_ERROR)
        return {searchFault(code, what), false};
    const auto lost = [&] {
        return LdapSearchEnd{broken(deadline, "the server broke the search off"), false};
    };
    if (code != LDAP_SUCCESS)
        return lost();
    for (;;) {
        Message message;
        left = timeUntil(deadline);
        const int type = nextMessage(handle, id, &left, message);
        if (type == LDAP_RES_SEARCH_RESULT) {
            code = resultOf(handle, message.get());
            return code < 0 ? lost() : searchEnd(code, what);
        }
        if (!belongsToSearch(type))
            return lost();
        if (type == LDAP_RES_SEARCH_ENTRY && !show({handle, message.get()})) {
            m_fit = false; // the rest is on its way
            return {std::nullopt, true};
        }
        if (Clock::now() >= deadline)
            return lost();
    }
}

LdapSearchEnd LdapConnection::searchEnd(int code, const LdapSearch& what)
{
    switch (code) {
    case LDAP_SUCCESS:
        return {};
    case LDAP_SIZELIMIT_EXCEEDED:
    case LDAP_TIMELIMIT_EXCEEDED:
    case LDAP_ADMINLIMIT_EXCEEDED:
        return {std::nullopt, true};
    default:
        return {searchFault(code, what), false};
    }
}

LdapFault LdapConnection::searchFault(int code, const LdapSearch& what) const
{
    const auto words = inServersWords();
    const auto base = "\"" + what.base + "\"";
    switch (code) {
    case LDAP_NO_SUCH_OBJECT:
    case LDAP_INVALID_DN_SYNTAX:
        return fault(LdapFailure::BaseWrong, "there is no " + base + " to search in" + words +
                                                 ": correct \"ldap-base\" (or let \"ldap-bind-dn\" see it)");
    case LDAP_REFERRAL:
        return fault(LdapFailure::BaseWrong,
                     base + " lies on another server" + words +
                         ": name that one in \"ldap-servers\", or correct \"ldap-base\"");
    case LDAP_FILTER_ERROR:
    case LDAP_UNDEFINED_TYPE:
    case LDAP_INAPPROPRIATE_MATCHING:
    case LDAP_INVALID_SYNTAX:
        return fault(LdapFailure::FilterWrong,
                     "the filter is not understood" + words + ": correct \"ldap-filter\"");
    case LDAP_OPERATIONS_ERROR: // what Active Directory says to those who did not bind
    case LDAP_INSUFFICIENT_ACCESS:
    case LDAP_INAPPROPRIATE_AUTH:
    case LDAP_INVALID_CREDENTIALS:
    case LDAP_UNWILLING_TO_PERFORM:
        return fault(LdapFailure::AccessDenied,
                     std::string(m_settings.bindDn.empty() ? "nobody may search unnamed"
                                                           : "\"ldap-bind-dn\" may not search there") +
                         words + ": set another \"ldap-bind-dn\", and run \"deskphone ldap-password\"");
    case LDAP_CONFIDENTIALITY_REQUIRED:
    case LDAP_STRONG_AUTH_REQUIRED:
        return bindFault(code);
    case LDAP_BUSY:
    case LDAP_UNAVAILABLE:
        return fault(LdapFailure::ServerBusy, "the server has no time now" + words);
    default:
        return fault(LdapFailure::ServerFailed,
                     "the server refuses the search: " + std::string(ldap_err2string(code)) + words +
                         "; look what its log says");
    }
}

bool LdapConnection::isFit() const
{
    pollfd socket{m_socket, POLLIN | POLLRDHUP, 0};
    return m_pHandle && m_fit && ::poll(&socket, 1, 0) == 0;
}

LdapFault LdapConnection::fault(LdapFailure failure, const std::string& what) const
{
    return {failure, "Directory server " + m_server.uri + ": " + what + "."};
}

LdapFault LdapConnection::ended(LdapWatchdog::Wait end, const std::string& what) const
{
    return end == Wait::Cancelled ? fault(LdapFailure::Cancelled, "the search was given up")
                                  : fault(LdapFailure::NoAnswer, what);
}

LdapFault LdapConnection::broken(Deadline deadline, const std::string& what)
{
    m_fit = false;
    if (m_watchdog.cancelled())
        return ended(Wait::Cancelled, "");
    if (Clock::now() >= deadline)
        return ended(Wait::Late, what + " in time; \"ldap-connect-timeout\" and \"ldap-search-timeout\" say "
                                        "how long it may take");
    return fault(LdapFailure::Disconnected,
                 what + ": look whether \"ldap-servers\" has the server's port, with ldap:// or ldaps:// as "
                        "that wants it, and what the server's log says");
}

std::string LdapConnection::inServersWords() const
{
    char* words = nullptr;
    ldap_get_option(m_pHandle.get(), LDAP_OPT_DIAGNOSTIC_MESSAGE, &words);
    const std::unique_ptr<char, MemoryDeleter> freed(words);
    return words && *words ? " (\"" + fitText(words, nLONGEST_SERVERS_WORDS) + "\")" : "";
}
