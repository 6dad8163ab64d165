// The server against clients that behave, and against those that do not. Raw sockets: what goes over
// the wire is what counts.

#include "web/WebServer.h"

#include "web/PhoneFaceIfc.h"

#include <framework/display/Frame.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

constexpr const char* nTOKEN = "0123456789abcdef0123456789abcdef";
constexpr int nLONGEST_WAIT = 5000; // ms, for what is to come at once

class FakeFace final : public PhoneFaceIfc {
public:
    std::shared_ptr<const DisplayAPI::Frame> frame() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_frame;
    }
    void setFaceListener(std::function<void()> listener) override
    {
        const std::lock_guard lock(m_listening);
        m_listener = std::move(listener);
    }
    KeyVerdict press(std::string_view key) override
    {
        const std::lock_guard lock(m_mutex);
        m_keys.emplace_back(key);
        return key == "busy" ? KeyVerdict::Busy : KeyVerdict::Taken;
    }
    std::string language() const override { return "en"; }
    std::string text(const std::string& key) const override { return "<" + key + ">"; }

    std::string pictureId(const std::string& path) override { return path == "anna.png" ? "a1b2" : ""; }
    std::shared_ptr<const std::string> picture(const std::string& id) override
    {
        std::unique_lock lock(m_mutex);
        m_decoding = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_decodingTakesLong; });
        return id == "a1b2" ? std::make_shared<const std::string>("\x89PNG and so on") : nullptr;
    }
    // Decoding a picture does not end while it takes long.
    void decodingTakesLong(bool takesLong)
    {
        const std::lock_guard lock(m_mutex);
        m_decodingTakesLong = takesLong;
        m_changed.notify_all();
    }
    bool isDecoding()
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::milliseconds(nLONGEST_WAIT),
                                  [this] { return m_decoding; });
    }

    void show(const std::string& title)
    {
        {
            const std::lock_guard lock(m_mutex);
            auto frame = std::make_shared<DisplayAPI::Frame>();
            frame->number = ++m_number;
            frame->base.title = title;
            frame->base.image = "anna.png";
            m_frame = std::move(frame);
        }
        const std::lock_guard lock(m_listening);
        if (m_listener)
            m_listener();
    }
    std::vector<std::string> keys() const
    {
        const std::lock_guard lock(m_mutex);
        return m_keys;
    }

private:
    mutable std::mutex m_mutex;
    std::mutex m_listening;
    std::shared_ptr<const DisplayAPI::Frame> m_frame;
    std::uint64_t m_number = 0;
    std::vector<std::string> m_keys;
    std::function<void()> m_listener;
    std::condition_variable m_changed;
    bool m_decoding = false;
    bool m_decodingTakesLong = false;
};

// A connection that says exactly what it is told to.
class Client {
public:
    explicit Client(std::uint16_t port)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Client() { ::close(m_socket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool send(const std::string& bytes)
    {
        return ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(bytes.size());
    }

    // Reads until `wanted` is in what was read; false when the connection ended, or nothing came.
    bool readUntil(const std::string& wanted)
    {
        while (m_read.find(wanted) == std::string::npos)
            if (!readMore())
                return false;
        return true;
    }
    bool ends()
    {
        while (readMore()) {
        }
        return m_ended;
    }
    const std::string& read() const { return m_read; }
    void forget() { m_read.clear(); }

    // A text frame as a browser sends it: masked, here with zeros (RFC 6455 5.2).
    bool sendText(const std::string& text)
    {
        std::string frame = "\x81";
        if (text.size() < 126) {
            frame += static_cast<char>(0x80 | text.size());
        } else {
            frame += '\xFE';
            frame += static_cast<char>(text.size() >> 8);
            frame += static_cast<char>(text.size() & 0xFF);
        }
        return send(frame + std::string(4, '\0') + text);
    }

private:
    bool readMore()
    {
        pollfd descriptor = {m_socket, POLLIN, 0};
        if (::poll(&descriptor, 1, nLONGEST_WAIT) != 1)
            return false;
        char bytes[4096];
        const auto size = ::recv(m_socket, bytes, sizeof bytes, 0);
        if (size <= 0) {
            m_ended = true;
            return false;
        }
        m_read.append(bytes, static_cast<std::size_t>(size));
        return true;
    }

    int m_socket;
    bool m_ended = false;
    std::string m_read;
};

class PageServer : public testing::Test {
protected:
    PageServer()
        : m_server(std::move(WebServer::start(m_face, 0, nTOKEN)).value())
    {
    }

    std::string host() const { return "127.0.0.1:" + std::to_string(m_server->port()); }

    std::string get(const std::string& path, const std::string& host, const std::string& method = "GET")
    {
        Client client(m_server->port());
        client.send(method + " " + path + " HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
        client.ends();
        return client.read();
    }

    // Asks for the screen; what the server answered first.
    void upgrade(Client& client, const std::string& host, const std::string& origin, const std::string& token,
                 const std::string& path = "/face")
    {
        client.send("GET " + path + " HTTP/1.1\r\nHost: " + host + "\r\nOrigin: " + origin +
                    "\r\nConnection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"
                    "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Protocol: deskbook." +
                    token + "\r\n\r\n");
        client.readUntil("\r\n\r\n");
    }
    std::unique_ptr<Client> page()
    {
        auto client = std::make_unique<Client>(m_server->port());
        upgrade(*client, host(), "http://" + host(), nTOKEN);
        EXPECT_TRUE(client->read().starts_with("HTTP/1.1 101")) << client->read();
        return client;
    }

    FakeFace m_face;
    std::unique_ptr<WebServer> m_server;
};

TEST_F(PageServer, ServesThePageWithAStrictContentPolicy)
{
    const auto answer = get("/", host());
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 200"));
    EXPECT_NE(answer.find("Content-Security-Policy: default-src 'none'; script-src 'self';"),
              std::string::npos);
    EXPECT_NE(answer.find("X-Content-Type-Options: nosniff"), std::string::npos);
    EXPECT_NE(answer.find("<main class=\"phone\""), std::string::npos);
    EXPECT_EQ(answer.find(nTOKEN), std::string::npos);
}

TEST_F(PageServer, ServesItsScriptsAsScripts)
{
    EXPECT_NE(get("/phone.js", host()).find("Content-Type: text/javascript"), std::string::npos);
}

TEST_F(PageServer, KnowsNothingElse)
{
    EXPECT_TRUE(get("/../Token.cpp", host()).starts_with("HTTP/1.1 404"));
    EXPECT_TRUE(get("/page-access", host()).starts_with("HTTP/1.1 404"));
    EXPECT_TRUE(get("/", host(), "DELETE").starts_with("HTTP/1.1 405"));
}

TEST_F(PageServer, ServesPicturesToBeKept)
{
    const auto answer = get("/picture/a1b2", host());
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 200"));
    EXPECT_NE(answer.find("Content-Type: image/png\r\n"), std::string::npos);
    EXPECT_NE(answer.find("Cache-Control: private, max-age=31536000, immutable\r\n"), std::string::npos);
    EXPECT_NE(answer.find("X-Content-Type-Options: nosniff\r\n"), std::string::npos);
    EXPECT_NE(answer.find("Cross-Origin-Resource-Policy: same-origin\r\n"), std::string::npos);
    EXPECT_TRUE(answer.ends_with("\x89PNG and so on"));
    const auto head = get("/picture/a1b2", host(), "HEAD");
    EXPECT_TRUE(head.starts_with("HTTP/1.1 200"));
    EXPECT_TRUE(head.ends_with("\r\n\r\n"));
}

TEST_F(PageServer, KnowsOnlyPicturesThatItNamed)
{
    for (const std::string path : {"/picture/", "/picture/a1b", "/picture/anna.png", "/picture/../a1b2"}) {
        const auto answer = get(path, host());
        EXPECT_TRUE(answer.starts_with("HTTP/1.1 404")) << path;
        EXPECT_NE(answer.find("Cache-Control: no-cache"), std::string::npos);
    }
    EXPECT_TRUE(get("/picture/a1b2", host(), "POST").starts_with("HTTP/1.1 405"));
    EXPECT_TRUE(get("/picture/a1b2", "phone.example").starts_with("HTTP/1.1 403"));
}

TEST_F(PageServer, TellsPagesWhereThePicturesAre)
{
    m_face.show("first");
    EXPECT_TRUE(page()->readUntil(R"("image":"/picture/a1b2")"));
}

TEST_F(PageServer, SendsFramesWhileAPictureIsDecoded)
{
    const auto client = page();
    m_face.decodingTakesLong(true);
    Client other(m_server->port());
    other.send("GET /picture/a1b2 HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
    ASSERT_TRUE(m_face.isDecoding());

    m_face.show("meanwhile");
    EXPECT_TRUE(client->readUntil("meanwhile"));
    EXPECT_EQ(other.read(), "");
    m_face.decodingTakesLong(false);
    EXPECT_TRUE(other.readUntil("PNG and so on"));
}

TEST_F(PageServer, StopsWhileAPictureIsDecoded)
{
    m_face.decodingTakesLong(true);
    Client first(m_server->port());
    Client second(m_server->port());
    for (auto* client : {&first, &second})
        client->send("GET /picture/a1b2 HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
    ASSERT_TRUE(m_face.isDecoding());
    std::thread stopping([this] { m_server.reset(); });
    m_face.decodingTakesLong(false);
    stopping.join();
    EXPECT_TRUE(first.ends());
    EXPECT_TRUE(second.ends());
}

TEST_F(PageServer, RefusesAForeignHost)
{
    EXPECT_TRUE(get("/", "phone.example").starts_with("HTTP/1.1 403"));
    EXPECT_TRUE(get("/", "127.0.0.1:1").starts_with("HTTP/1.1 403"));
    Client client(m_server->port());
    upgrade(client, "phone.example", "http://" + host(), nTOKEN);
    EXPECT_TRUE(client.read().starts_with("HTTP/1.1 403"));
}

TEST_F(PageServer, RefusesAForeignOrigin)
{
    for (const std::string origin :
         {"http://evil.example", "null", "https://127.0.0.1", "http://127.0.0.1"}) {
        Client client(m_server->port());
        upgrade(client, host(), origin, nTOKEN);
        EXPECT_TRUE(client.read().starts_with("HTTP/1.1 403")) << origin;
    }
}

TEST_F(PageServer, RefusesAWrongToken)
{
    for (const std::string token : {"", "0123456789abcdef0123456789abcdee", "0123"}) {
        Client client(m_server->port());
        upgrade(client, host(), "http://" + host(), token);
        EXPECT_TRUE(client.read().starts_with("HTTP/1.1 401")) << token;
    }
    EXPECT_TRUE(m_face.keys().empty());
}

TEST_F(PageServer, SendsItsTextsAndThenFrames)
{
    m_face.show("first");
    const auto client = page();
    ASSERT_TRUE(client->readUntil("first"));
    EXPECT_LT(client->read().find("<phone.menu>"), client->read().find("first"));

    m_face.show("second");
    EXPECT_TRUE(client->readUntil("second"));
}

TEST_F(PageServer, AcknowledgesEveryKeyWithWhatBecameOfIt)
{
    const auto client = page();
    client->sendText(R"({"n":1,"key":"ok"})");
    ASSERT_TRUE(client->readUntil(R"([1,"taken"])"));
    client->sendText(R"({"n":2,"key":"busy"})");
    ASSERT_TRUE(client->readUntil(R"([2,"busy"])"));
    EXPECT_EQ(m_face.keys(), (std::vector<std::string>{"ok", "busy"}));
}

TEST_F(PageServer, ClosesAfterAMessageThatIsNone)
{
    for (const std::string text : {"", "ok", "[]", "{}", R"({"n":-1,"key":"ok"})", R"({"n":1,"key":7})"}) {
        const auto client = page();
        client->sendText(text);
        EXPECT_TRUE(client->ends()) << text;
    }
    EXPECT_TRUE(m_face.keys().empty());
}

TEST_F(PageServer, ClosesAfterAMessageThatIsTooLarge)
{
    const auto client = page();
    client->sendText(R"({"n":1,"key":"text:)" + std::string(2000, 'x') + "\"}");
    EXPECT_TRUE(client->ends());
    EXPECT_TRUE(m_face.keys().empty());
}

TEST_F(PageServer, ClosesWhenKeysComeFasterThanAnybodyPresses)
{
    const auto client = page();
    for (int i = 0; i < 500 && client->sendText(R"({"n":1,"key":"down"})"); ++i) {
    }
    EXPECT_TRUE(client->ends());
    EXPECT_LT(m_face.keys().size(), 120u);
}

TEST_F(PageServer, KeepsOnlyTheNewestFrameForAPageThatDoesNotRead)
{
    const auto client = page();
    const std::string large(100'000, 'x');
    for (int i = 0; i < 300; ++i)
        m_face.show(large);
    m_face.show("the last one");

    ASSERT_TRUE(client->readUntil("the last one"));
    // The socket's own buffers hold a few frames; had all been kept, 30 MB would have come.
    EXPECT_LT(client->read().size(), 20'000'000u);
}

TEST_F(PageServer, SaysWhichPortIsTaken)
{
    const auto second = WebServer::start(m_face, m_server->port(), nTOKEN);
    ASSERT_FALSE(second);
    EXPECT_NE(second.error().sentence.find(std::to_string(m_server->port())), std::string::npos);
}

TEST_F(PageServer, StopsWhilePagesAreOpen)
{
    const auto client = page();
    m_server.reset();
    EXPECT_TRUE(client->ends());
}

} // namespace
