#include "PbxLink.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <map>
#include <thread>

#include <boost/asio/connect.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include <framework/csta/communicationsServiceTexts.h>

#include "CstaFrame.h"
#include "app/PhoneLog.h"

namespace asio = boost::asio;
using tcp = asio::ip::tcp;
using boost::system::error_code;
using std::chrono::milliseconds;

namespace {

constexpr char nSOURCE[] = "./phone/calls/pbx/PbxLink";

constexpr std::size_t MOST_REQUESTS = 64;    // that are under way
constexpr std::size_t MOST_TO_SEND = 256;    // messages that the PBX does not take
constexpr std::size_t PART_SIZE = 16 * 1024; // octets read at once
constexpr milliseconds LOOK_AGAIN{5};        // at a listener that is behind

FeatureData phonebookQuery()
{
    FeatureData feature;
    feature.featureName = communicationsServiceTexts::content_feature_name_pbxphonebook;
    feature.Action = communicationsServiceTexts::content_feature_query;
    return feature;
}

Error noAnswer(const std::string& why)
{
    return {ErrorCode::Unavailable, "The PBX gave no answer: " + why + "."};
}

bool isResponse(const CstaElement& message)
{
    return message.name == "CSTAErrorCode" || message.name.ends_with("Response");
}

} // namespace

class PbxLink::Impl : public std::enable_shared_from_this<Impl> {
public:
    Impl(PbxSettings settings, PbxListenerIfc& listener)
        : m_settings(std::move(settings))
        , m_listener(listener)
        , m_pause(m_settings.firstPause)
    {
    }

    void start()
    {
        asio::post(m_io, [this] { connect(); });
        m_thread = std::thread([this] {
            const auto work = asio::make_work_guard(m_io);
            m_io.run();
        });
    }

    void stop()
    {
        m_io.stop();
        if (!m_thread.joinable())
            return;
        m_thread.join();
        error_code ignored;
        if (m_connection)
            m_connection->socket.close(ignored);
    }

    void request(CstaElement message, Answer answer)
    {
        asio::post(m_io, [this, message = std::move(message), answer = std::move(answer)]() mutable {
            if (m_isUp)
                ask(message, std::move(answer));
            else
                answer(noAnswer("it is not connected"));
        });
    }

private:
    // One connection, from the attempt to the end. What belongs to an earlier one does nothing any more.
    struct Connection {
        explicit Connection(asio::io_context& io)
            : socket(io)
        {
        }
        tcp::socket socket;
        CstaFrameReader reader;
        std::array<char, PART_SIZE> part{};
        std::deque<std::string> toSend; // the first one is being sent
        unsigned long heard = 0;        // how often something came, or may have
    };
    using Current = std::shared_ptr<Connection>;

    struct Pending {
        std::string response; // the element that answers it
        Answer answer;
        std::unique_ptr<asio::steady_timer> limit;
        unsigned long number = 0;
    };

    // --- Connecting ---

    void connect()
    {
        m_connection = std::make_shared<Connection>(m_io);
        m_limit.expires_after(m_settings.requestTimeout);
        m_limit.async_wait([this, connection = m_connection](error_code error) {
            if (!error && connection == m_connection && !m_isConnected)
                drop("it cannot be reached in time");
        });
        lookUp();
    }

    // The system's resolver knows no time limit: it has a thread of its own, which may outlive the link.
    void lookUp()
    {
        error_code notNumeric;
        const auto address = asio::ip::make_address(m_settings.host, notNumeric);
        if (!notNumeric) {
            connectTo({tcp::endpoint(address, m_settings.port)}, m_connection);
            return;
        }
        std::thread([link = shared_from_this(), connection = m_connection] {
            error_code error;
            std::vector<tcp::endpoint> endpoints;
            const auto port = std::to_string(link->m_settings.port);
            for (const auto& found : tcp::resolver(link->m_io).resolve(link->m_settings.host, port, error))
                endpoints.push_back(found.endpoint());
            asio::post(link->m_io, [link = link.get(), endpoints, connection] {
                link->connectTo(endpoints, connection);
            });
        }).detach();
    }

    void connectTo(const std::vector<tcp::endpoint>& endpoints, const Current& connection)
    {
        if (connection != m_connection)
            return;
        if (endpoints.empty()) {
            drop("nobody knows its name");
            return;
        }
        asio::async_connect(connection->socket, endpoints,
                            [this, connection](error_code error, const tcp::endpoint&) {
                                if (connection != m_connection)
                                    return;
                                if (error)
                                    drop(error.message());
                                else
                                    connected();
                            });
    }

    void connected()
    {
        m_isConnected = true;
        m_limit.cancel();
        error_code ignored;
        m_connection->socket.set_option(tcp::no_delay(true), ignored);
        read(m_connection);
        ask(monitorStart(m_settings.device), [this](const Result<CstaElement>& answer) {
            if (!m_connection)
                return;
            if (!answer)
                drop(answer.error().sentence);
            else if (const auto error = errorIn(answer.value()))
                drop("it monitors no device " + m_settings.device + ": " + error->group + " " + error->value);
            else
                monitorStarted(answer.value().textAt({"monitorCrossRefID"}));
        });
    }

    void monitorStarted(const std::string& monitor)
    {
        if (monitor.empty()) {
            drop("its monitor has no number");
            return;
        }
        m_monitor = monitor;
        ask(requestSystemStatus(phonebookQuery()), [this](const Result<CstaElement>& answer) {
            if (!m_connection)
                return;
            if (!answer) {
                drop(answer.error().sentence);
                return;
            }
            PHONE_USER("the PBX %s is connected", m_settings.host.c_str());
            m_isUp = true;
            m_pause = m_settings.firstPause;
            m_listener.linkUp(systemStatusIn(answer.value()));
            probeLater();
        });
    }

    void probeLater()
    {
        m_limit.expires_after(m_settings.probeInterval);
        m_limit.async_wait([this, connection = m_connection](error_code error) {
            if (!error && connection == m_connection)
                probe();
        });
    }

    void probe()
    {
        ask(requestSystemStatus(phonebookQuery()), [this](const Result<CstaElement>& answer) {
            if (!m_isUp)
                return;
            if (answer)
                m_listener.received(systemStatusIn(answer.value()));
            probeLater();
        });
    }

    // Ends the connection, and begins another one after a pause. The PBX hears of the end last: then
    // everybody here knows.
    void drop(const std::string& why)
    {
        PHONE_ERROR("the PBX %s: %s; it is tried again in %lld ms", m_settings.host.c_str(), why.c_str(),
                    static_cast<long long>(m_pause.count()));
        const auto ended = std::exchange(m_connection, nullptr);
        m_limit.cancel();
        m_monitor.clear();
        m_isConnected = false;
        const bool wasUp = std::exchange(m_isUp, false);
        for (auto& [id, pending] : std::exchange(m_pending, {}))
            pending.answer(noAnswer("the connection ended"));
        if (wasUp)
            m_listener.linkDown();
        else
            m_listener.linkFailed();
        error_code ignored;
        ended->socket.close(ignored);
        m_retry.expires_after(m_pause);
        m_retry.async_wait([this](error_code error) {
            if (!error)
                connect();
        });
        m_pause = std::min(m_pause * 2, m_settings.longestPause);
    }

    // --- Sending ---

    void ask(const CstaElement& message, Answer answer)
    {
        if (m_pending.size() >= MOST_REQUESTS) {
            answer(noAnswer("too many requests are under way"));
            return;
        }
        const int id = freeId();
        auto octets = octetsOf({id, writeCsta(message)});
        if (!octets) {
            answer(octets.error());
            return;
        }
        auto limit = std::make_unique<asio::steady_timer>(m_io, m_settings.requestTimeout);
        const auto number = ++m_lastNumber;
        limit->async_wait([this, id, number, heard = m_connection->heard](error_code error) {
            if (!error)
                timedOut(id, number, heard);
        });
        m_pending[id] = {message.name + "Response", std::move(answer), std::move(limit), number};
        send(std::move(octets).value());
    }

    int freeId()
    {
        do
            m_lastId = m_lastId == CstaFrame::GREATEST_REQUEST_ID ? 0 : m_lastId + 1;
        while (m_pending.contains(m_lastId));
        return m_lastId;
    }

    void timedOut(int id, unsigned long number, unsigned long heard)
    {
        const auto found = m_pending.find(id);
        if (found == m_pending.end() || found->second.number != number)
            return;
        const bool isSilent = m_connection->heard == heard;
        settle(found, noAnswer("it took too long"));
        if (isSilent && m_connection)
            drop("it is silent");
    }

    void settle(std::map<int, Pending>::iterator which, const Result<CstaElement>& with)
    {
        const auto answer = std::move(which->second.answer);
        m_pending.erase(which);
        answer(with);
    }

    void reply(int id, const CstaElement& message)
    {
        if (id == CstaFrame::EVENT_ID)
            return;
        if (auto octets = octetsOf({id, writeCsta(message)}))
            send(std::move(octets).value());
    }

    void send(std::string octets)
    {
        auto& queue = m_connection->toSend;
        if (queue.size() == MOST_TO_SEND)
            return; // its requests time out, and then it is dropped
        queue.push_back(std::move(octets));
        if (queue.size() == 1)
            sendFirst(m_connection);
    }

    void sendFirst(const Current& connection)
    {
        asio::async_write(connection->socket, asio::buffer(connection->toSend.front()),
                          [this, connection](error_code error, std::size_t) {
                              if (connection != m_connection)
                                  return;
                              if (error) {
                                  drop(error.message());
                                  return;
                              }
                              connection->toSend.pop_front();
                              if (!connection->toSend.empty())
                                  sendFirst(connection);
                          });
    }

    // --- Receiving ---

    void read(const Current& connection)
    {
        if (m_listener.isBehind()) {
            ++connection->heard; // nobody listens: who knows what the PBX has said
            m_breather.expires_after(LOOK_AGAIN);
            m_breather.async_wait([this, connection](error_code error) {
                if (!error && connection == m_connection)
                    read(connection);
            });
            return;
        }
        connection->socket.async_read_some(asio::buffer(connection->part),
                                           [this, connection](error_code error, std::size_t size) {
                                               if (connection != m_connection)
                                                   return;
                                               if (error)
                                                   drop(error.message());
                                               else
                                                   arrived(connection, size);
                                           });
    }

    void arrived(const Current& connection, std::size_t size)
    {
        ++connection->heard;
        connection->reader.append({connection->part.data(), size});
        for (;;) {
            auto frame = connection->reader.next();
            if (!frame) {
                drop(frame.error().sentence);
                return;
            }
            if (!frame.value())
                break;
            understand(*frame.value());
            if (connection != m_connection)
                return;
        }
        read(connection);
    }

    void understand(const CstaFrame& frame)
    {
        const auto message = readCsta(frame.xml);
        const auto pending = m_pending.find(frame.invokeId);
        if (!message) {
            PHONE_REFUSED("%s", message.error().sentence.c_str());
            if (pending != m_pending.end())
                settle(pending, message.error());
        } else if (isResponse(message.value())) {
            answered(pending, frame.invokeId, message.value());
        } else {
            serve(frame.invokeId, message.value());
        }
    }

    void answered(std::map<int, Pending>::iterator pending, int id, const CstaElement& message)
    {
        if (pending == m_pending.end())
            PHONE_REFUSED("the PBX answered request %d, which nobody waits for", id);
        else if (errorIn(message) || message.name == pending->second.response)
            settle(pending, message);
        else
            settle(pending, noAnswer("it answered something else"));
    }

    // What the PBX itself asks or tells.
    void serve(int id, const CstaElement& message)
    {
        const auto monitor = message.textAt({"monitorCrossRefID"});
        const bool isOurs = monitor.empty() || monitor == m_monitor;
        if (message.name == "MonitorStop")
            stopMonitor(id, isOurs);
        else if (message.name == "RequestSystemStatus")
            reply(id, systemStatusResponse("normal"));
        else if (message.name == "SystemStatus") {
            reply(id, emptyResponse("SystemStatusResponse"));
            tell(message, isOurs);
        } else if (id == CstaFrame::EVENT_ID || message.name.ends_with("Event"))
            tell(message, isOurs);
        else {
            PHONE_REFUSED("the PBX asks for %s, which a telephone has not", message.name.c_str());
            reply(id, operationError("serviceNotSupported"));
        }
    }

    void stopMonitor(int id, bool isOurs)
    {
        if (!isOurs) {
            reply(id, operationError("invalidMonitorCrossRefID"));
            return;
        }
        reply(id, emptyResponse("MonitorStopResponse"));
        drop("it has ended the monitor");
    }

    void tell(const CstaElement& message, bool isOurs)
    {
        const auto event = eventIn(message);
        if (!isOurs || std::holds_alternative<std::monostate>(event))
            PHONE_TRACE("the PBX sent %s, which means nothing here", message.name.c_str());
        else if (m_isUp)
            m_listener.received(event);
    }

    const PbxSettings m_settings;
    PbxListenerIfc& m_listener;
    asio::io_context m_io{1};
    asio::steady_timer m_limit{m_io}; // until the connection stands, then until the next probe
    asio::steady_timer m_retry{m_io};
    asio::steady_timer m_breather{m_io};
    milliseconds m_pause;
    Current m_connection; // null between two
    bool m_isConnected = false;
    bool m_isUp = false;
    std::string m_monitor;
    std::map<int, Pending> m_pending;
    int m_lastId = 0;
    unsigned long m_lastNumber = 0;
    std::thread m_thread;
};

PbxLink::PbxLink(PbxSettings settings, PbxListenerIfc& listener)
    : m_impl(std::make_shared<Impl>(std::move(settings), listener))
{
}

PbxLink::~PbxLink()
{
    stop();
}

void PbxLink::start()
{
    m_impl->start();
}

void PbxLink::stop()
{
    m_impl->stop();
}

void PbxLink::request(CstaElement message, Answer answer)
{
    m_impl->request(std::move(message), std::move(answer));
}
