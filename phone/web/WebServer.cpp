#include "web/WebServer.h"

#include "web/FrameJson.h"
#include "web/KeyMessage.h"
#include "web/PhoneFaceIfc.h"

#include <face_assets.h>

#include <framework/display/Frame.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>

#include <nlohmann/json.hpp>

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
namespace websocket = boost::beast::websocket;
using tcp = asio::ip::tcp;

namespace {

constexpr std::size_t nLARGEST_MESSAGE = 1024; // bytes
constexpr std::size_t nLARGEST_HEADER = 8 * 1024;
constexpr std::size_t nMOST_CONNECTIONS = 32;
constexpr std::size_t nMOST_ACKS = 256;
constexpr int nKEYS_AT_ONCE = 60;
constexpr int nKEYS_A_SECOND = 40;
constexpr std::chrono::seconds nHTTP_TIME{10};

constexpr std::string_view nPICTURES = "/picture/";
constexpr std::string_view nASK_EVERY_TIME = "no-cache";
// An address stands for one content of one file, for ever.
constexpr std::string_view nKEEP = "private, max-age=31536000, immutable";

// The texts that the page itself shows.
constexpr std::array nPAGE_TEXTS = {
    "phone.ok",
    "phone.menu",
    "phone.back",
    "phone.backSaves",
    "phone.select",
    "phone.phonebook",
    "phone.home",
    "phone.clear",
    "phone.hook",
    "phone.hangup",
    "phone.dialpad",
    "phone.up",
    "phone.down",
    "phone.left",
    "phone.right",
    "phone.tab",
    "phone.search",
    "phone.busyKeyDropped",
    "phone.reconnecting",
    "phone.wrongToken",
    "phone.title",
    "phone.keypad",
    "phone.softkeys",
    "phone.functions",
    "phone.arrows",
    "phone.callkeys",
    "phone.calls",
    "phone.call.answer",
    "phone.call.reject",
    "phone.screen",
    "phone.rows",
    "phone.help",
    "phone.ringHere",
    "phone.position",
    "phone.fieldFull",
    "phone.digitsOnly",
    "phone.offHook",
    "phone.dialPadOn",
    "phone.rowCount",
    "phone.searchHint",
    "picture",
    "dial",
    "business1",
    "business2",
    "mobile",
    "private",
};

const char* name(KeyVerdict verdict)
{
    switch (verdict) {
    case KeyVerdict::Taken:
        return "taken";
    case KeyVerdict::Busy:
        return "busy";
    case KeyVerdict::Closed:
        return "closed";
    case KeyVerdict::Unknown:
        return "unknown";
    }
    return "unknown";
}

// Compares in a time that does not tell how much of it was right.
bool isSecret(std::string_view given, std::string_view secret)
{
    unsigned difference = given.size() == secret.size() ? 0 : 1;
    for (std::size_t i = 0; i < secret.size(); ++i)
        difference |= static_cast<unsigned char>(i < given.size() ? given[i] : '\0') ^
                      static_cast<unsigned char>(secret[i]);
    return difference == 0;
}

// Allows a burst of keys, and then as many a second as a person can press.
class KeyRate {
public:
    bool allows()
    {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> passed = now - m_last;
        m_last = now;
        m_left = std::min<double>(nKEYS_AT_ONCE, m_left + nKEYS_A_SECOND * passed.count()) - 1;
        return m_left >= 0;
    }

private:
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
    double m_left = nKEYS_AT_ONCE;
};

} // namespace

class WebServer::Impl {
public:
    Impl(PhoneFaceIfc& face, std::string token)
        : m_face(face)
        , m_token(std::move(token))
        , m_acceptor(m_io)
    {
    }

    ~Impl()
    {
        m_face.setFaceListener(nullptr);
        asio::post(m_io, [this] {
            beast::error_code ignored;
            m_acceptor.close(ignored);
            closeConnections();
            m_io.stop();
        });
        if (m_thread.joinable())
            m_thread.join();
    }

    Result<void> listen(std::uint16_t port)
    {
        const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
        beast::error_code error;
        m_acceptor.open(endpoint.protocol(), error);
        if (!error)
            m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
        if (!error)
            m_acceptor.bind(endpoint, error);
        if (!error)
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error)
            return Error{ErrorCode::Unavailable, "The page's port " + std::to_string(port) +
                                                     " cannot be opened: " + error.message() +
                                                     ". Choose another one with --port."};
        m_port = m_acceptor.local_endpoint().port();
        return {};
    }

    void run()
    {
        accept();
        m_face.setFaceListener([this] { faceChanged(); });
        m_thread = std::thread([this] { m_io.run(); });
    }

    std::uint16_t port() const { return m_port; }
    const std::string& token() const { return m_token; }

private:
    class Page;
    class Request;

    void accept();
    void faceChanged();
    void closeConnections();
    bool namesThisServer(std::string_view host) const
    {
        const std::string port = ":" + std::to_string(m_port);
        return host == "127.0.0.1" + port || host == "localhost" + port;
    }

    PhoneFaceIfc& m_face;
    std::string m_token;
    std::uint16_t m_port = 0;
    std::set<Page*> m_pages;
    std::size_t m_connections = 0;
    std::atomic<bool> m_changePosted{false};
    asio::io_context m_io{1}; // its pending handlers own the connections: gone before what those count in
    tcp::acceptor m_acceptor;
    std::thread m_thread;
    // Where pictures are decoded, one at a time: frames do not wait for them. Gone before what its jobs use.
    asio::thread_pool m_decoder{1};
};

// A page's WebSocket.
class WebServer::Impl::Page : public std::enable_shared_from_this<Page> {
public:
    Page(Impl& server, beast::tcp_stream stream)
        : m_server(server)
        , m_socket(std::move(stream))
    {
    }

    ~Page()
    {
        m_server.m_pages.erase(this);
        --m_server.m_connections;
    }

    void open(const http::request<http::empty_body>& request, const std::string& protocol)
    {
        beast::get_lowest_layer(m_socket).expires_never();
        m_socket.set_option(websocket::stream_base::timeout::suggested(beast::role_type::server));
        m_socket.set_option(websocket::stream_base::decorator([protocol](websocket::response_type& response) {
            response.set(http::field::sec_websocket_protocol, protocol);
        }));
        m_socket.read_message_max(nLARGEST_MESSAGE);
        m_socket.text(true);
        m_socket.async_accept(request, [self = shared_from_this()](beast::error_code error) {
            if (error)
                return;
            self->m_server.m_pages.insert(self.get());
            self->m_open = true;
            self->read();
            self->send();
        });
    }

    // There may be something new to send.
    void send()
    {
        if (!m_open || m_writing)
            return;
        m_message = nextMessage();
        if (m_message.empty())
            return;
        m_writing = true;
        m_socket.async_write(asio::buffer(m_message),
                             [self = shared_from_this()](beast::error_code error, std::size_t) {
                                 self->m_writing = false;
                                 if (error)
                                     return self->drop();
                                 self->send();
                             });
    }

    void drop()
    {
        m_open = false;
        m_server.m_pages.erase(this);
        beast::error_code ignored;
        beast::get_lowest_layer(m_socket).socket().close(ignored);
    }

private:
    std::string nextMessage()
    {
        auto& face = m_server.m_face;
        if (const auto language = face.language(); language != m_language) {
            m_language = language;
            return textsMessage();
        }
        const auto frame = face.frame();
        const bool isNew = frame && frame->number != m_sentFrame;
        if (!isNew && m_acks.empty())
            return "";
        nlohmann::json acks = nlohmann::json::array();
        for (const auto& [number, verdict] : m_acks)
            acks.push_back({number, name(verdict)});
        m_acks.clear();
        std::string message = "{\"acks\":" + acks.dump();
        if (isNew) {
            m_sentFrame = frame->number;
            message += ",\"frame\":" + toJson(*frame, [&face](const std::string& path) {
                           const auto id = face.pictureId(path);
                           return id.empty() ? id : std::string(nPICTURES) + id;
                       });
        }
        return message + "}";
    }

    std::string textsMessage() const
    {
        nlohmann::json texts;
        for (const char* key : nPAGE_TEXTS)
            texts[key] = m_server.m_face.text(key);
        return nlohmann::json{{"language", m_language}, {"texts", texts}}.dump(
            -1, ' ', false, nlohmann::json::error_handler_t::replace);
    }

    void read()
    {
        m_socket.async_read(m_buffer, [self = shared_from_this()](beast::error_code error, std::size_t) {
            if (error || !self->m_open || !self->handle())
                return self->drop();
            self->m_buffer.consume(self->m_buffer.size());
            self->read();
        });
    }

    bool handle()
    {
        if (!m_socket.got_text() || !m_rate.allows() || m_acks.size() >= nMOST_ACKS)
            return false;
        const auto message = readKeyMessage(beast::buffers_to_string(m_buffer.data()));
        if (!message)
            return false;
        m_acks.emplace_back(message->number, m_server.m_face.press(message->key));
        send();
        return true;
    }

    Impl& m_server;
    websocket::stream<beast::tcp_stream> m_socket;
    beast::flat_buffer m_buffer;
    std::string m_message; // being written
    bool m_open = false;
    bool m_writing = false;
    std::optional<std::uint64_t> m_sentFrame;
    std::string m_language;
    std::vector<std::pair<std::uint64_t, KeyVerdict>> m_acks;
    KeyRate m_rate;
};

// One HTTP request, which may turn into a page's WebSocket.
class WebServer::Impl::Request : public std::enable_shared_from_this<Request> {
public:
    Request(Impl& server, tcp::socket socket)
        : m_server(server)
        , m_stream(std::move(socket))
    {
        ++m_server.m_connections;
    }

    ~Request()
    {
        if (!m_handedOn)
            --m_server.m_connections;
    }

    void read()
    {
        m_stream.expires_after(nHTTP_TIME);
        m_parser.header_limit(nLARGEST_HEADER);
        m_parser.body_limit(0);
        http::async_read(m_stream, m_buffer, m_parser,
                         [self = shared_from_this()](beast::error_code error, std::size_t) {
                             if (!error)
                                 self->answer();
                         });
    }

private:
    void answer()
    {
        const auto& request = m_parser.get();
        if (!m_server.namesThisServer(view(request[http::field::host])))
            return refuse(http::status::forbidden, "This address is not the telephone's.\n");
        if (websocket::is_upgrade(request))
            return upgrade(request);
        if (request.method() != http::verb::get && request.method() != http::verb::head)
            return refuse(http::status::method_not_allowed, "The telephone only shows its page here.\n");

        std::string_view path = view(request.target());
        path = path.substr(0, path.find('?'));
        if (path.starts_with(nPICTURES))
            return decode(std::string(path.substr(nPICTURES.size())));
        if (path == "/")
            path = "/index.html";
        const auto assets = faceAssets();
        const auto asset = std::find_if(assets.begin(), assets.end(),
                                        [&](const FaceAsset& a) { return path.substr(1) == a.path; });
        if (path.empty() || path.front() != '/' || asset == assets.end())
            return refuse(http::status::not_found, "There is nothing here.\n");
        send(http::status::ok, asset->mime, asset->body);
    }

    void decode(std::string id)
    {
        // Whoever asked is let go on the server's thread only, where it lives.
        asio::post(m_server.m_decoder, [self = shared_from_this(), id = std::move(id)]() mutable {
            auto picture = self->m_server.m_face.picture(id);
            auto& io = self->m_server.m_io;
            asio::post(io, [self = std::move(self), picture = std::move(picture)] { self->show(picture); });
        });
    }

    void show(const std::shared_ptr<const std::string>& picture)
    {
        m_stream.expires_after(nHTTP_TIME);
        if (!picture)
            return refuse(http::status::not_found, "There is no such picture.\n");
        send(http::status::ok, "image/png", *picture, nKEEP);
    }

    void upgrade(const http::request<http::empty_body>& request)
    {
        const std::string_view origin = view(request[http::field::origin]);
        constexpr std::string_view scheme = "http://";
        const std::string expected = "deskbook." + m_server.m_token;
        const std::string_view protocol = view(request[http::field::sec_websocket_protocol]);
        if (!origin.starts_with(scheme) || !m_server.namesThisServer(origin.substr(scheme.size())))
            return refuse(http::status::forbidden, "This page is not the telephone's.\n");
        if (request.target() != "/face" || !isSecret(protocol, expected))
            return refuse(http::status::unauthorized, "The token is not the telephone's.\n");
        m_handedOn = true;
        std::make_shared<Page>(m_server, std::move(m_stream))->open(request, expected);
    }

    void refuse(http::status status, std::string_view sentence)
    {
        send(status, "text/plain; charset=utf-8", sentence);
    }

    void send(http::status status, std::string_view type, std::string_view body,
              std::string_view caching = nASK_EVERY_TIME)
    {
        const bool head = m_parser.get().method() == http::verb::head;
        m_response.result(status);
        m_response.version(11);
        m_response.set(http::field::content_type, toBoost(type));
        m_response.set(http::field::cache_control, toBoost(caching));
        m_response.set(http::field::x_frame_options, "DENY");
        m_response.set("X-Content-Type-Options", "nosniff");
        m_response.set("Referrer-Policy", "no-referrer");
        m_response.set("Cross-Origin-Resource-Policy", "same-origin");
        m_response.set(
            "Content-Security-Policy",
            "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
            "base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
        m_response.body() = head ? "" : std::string(body);
        m_response.keep_alive(false);
        m_response.content_length(body.size());
        http::async_write(m_stream, m_response, [self = shared_from_this()](beast::error_code, std::size_t) {
            beast::error_code ignored;
            self->m_stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
        });
    }

    static std::string_view view(beast::string_view text) { return {text.data(), text.size()}; }
    static beast::string_view toBoost(std::string_view text) { return {text.data(), text.size()}; }

    Impl& m_server;
    beast::tcp_stream m_stream;
    beast::flat_buffer m_buffer;
    http::request_parser<http::empty_body> m_parser;
    http::response<http::string_body> m_response;
    bool m_handedOn = false;
};

void WebServer::Impl::accept()
{
    m_acceptor.async_accept([this](beast::error_code error, tcp::socket socket) {
        if (error == asio::error::operation_aborted)
            return;
        if (!error) // an acknowledgement is small, and awaited
            socket.set_option(tcp::no_delay(true), error);
        if (!error && m_connections < nMOST_CONNECTIONS)
            std::make_shared<Request>(*this, std::move(socket))->read();
        if (m_acceptor.is_open())
            accept();
    });
}

void WebServer::Impl::faceChanged()
{
    // Any number of changes makes one look at the newest frame.
    if (m_changePosted.exchange(true))
        return;
    asio::post(m_io, [this] {
        m_changePosted = false;
        for (Page* page : std::set<Page*>(m_pages))
            page->send();
    });
}

void WebServer::Impl::closeConnections()
{
    for (Page* page : std::set<Page*>(m_pages))
        page->drop();
}

Result<std::unique_ptr<WebServer>> WebServer::start(PhoneFaceIfc& face, std::uint16_t port, std::string token)
{
    auto impl = std::make_unique<Impl>(face, std::move(token));
    if (const auto listening = impl->listen(port); !listening)
        return listening.error();
    impl->run();
    return std::unique_ptr<WebServer>(new WebServer(std::move(impl)));
}

WebServer::WebServer(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl))
{
}

WebServer::~WebServer() = default;

std::uint16_t WebServer::port() const
{
    return m_impl->port();
}

std::string WebServer::address() const
{
    return "http://127.0.0.1:" + std::to_string(port()) + "/#" + m_impl->token();
}
