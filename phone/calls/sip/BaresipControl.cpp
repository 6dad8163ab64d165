#include "calls/sip/BaresipControl.h"

#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>

#include <nlohmann/json.hpp>

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr std::chrono::milliseconds nBETWEEN_TRIES{5};

std::string netstringOf(const EngineCommand& command)
{
    nlohmann::json message{{"command", command.name}, {"token", command.token}};
    if (!command.parameter.empty())
        message["params"] = command.parameter;
    return toNetstring(message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

} // namespace

BaresipControl::BaresipControl(asio::io_context& io, std::chrono::milliseconds patience, Hooks hooks)
    : m_socket(io)
    , m_retry(io)
    , m_deadline(io)
    , m_patience(patience)
    , m_hooks(std::move(hooks))
{
}

void BaresipControl::connect(int port)
{
    m_engine = tcp::endpoint(asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port));
    watch();
    tryToConnect();
}

void BaresipControl::tryToConnect()
{
    m_socket.async_connect(m_engine, [self = shared_from_this()](const Error& error) {
        if (!self->m_open)
            return;
        if (!error && !self->isConnectedToItself()) {
            self->m_deadline.cancel();
            self->m_socket.set_option(tcp::no_delay(true));
            self->read();
            self->m_hooks.connected();
            return;
        }
        self->m_socket.close();
        self->m_retry.expires_after(nBETWEEN_TRIES);
        self->m_retry.async_wait([self](const Error& cancelled) {
            if (!cancelled && self->m_open)
                self->tryToConnect();
        });
    });
}

// That happens on one machine, where nobody listens on a port that is free for any purpose.
bool BaresipControl::isConnectedToItself() const
{
    Error ignored;
    return m_socket.local_endpoint(ignored) == m_engine;
}

void BaresipControl::close()
{
    m_open = false;
    Error ignored;
    m_socket.close(ignored);
    m_retry.cancel();
    m_deadline.cancel();
}

void BaresipControl::send(const std::vector<EngineCommand>& commands)
{
    if (!m_open)
        return;
    std::string all;
    for (const auto& command : commands)
        all += netstringOf(command);
    if (m_unanswered == 0)
        watch();
    m_unanswered += commands.size();
    m_toWrite.push_back(std::move(all));
    if (m_toWrite.size() == 1)
        write();
}

void BaresipControl::write()
{
    asio::async_write(m_socket, asio::buffer(m_toWrite.front()),
                      [self = shared_from_this()](const Error& error, std::size_t) {
                          if (!self->m_open)
                              return;
                          if (error)
                              return self->lose();
                          self->m_toWrite.pop_front();
                          if (!self->m_toWrite.empty())
                              self->write();
                      });
}

void BaresipControl::read()
{
    m_socket.async_read_some(asio::buffer(m_buffer),
                             [self = shared_from_this()](const Error& error, std::size_t bytes) {
                                 if (!self->m_open)
                                     return;
                                 if (error)
                                     return self->lose();
                                 self->take(bytes);
                                 if (self->m_open)
                                     self->read();
                             });
}

void BaresipControl::take(std::size_t bytes)
{
    const auto texts = m_reader.take({m_buffer.data(), bytes});
    if (!texts)
        return lose();
    for (const auto& text : *texts) {
        const auto message = engineMessageOf(text);
        if (std::holds_alternative<EngineResponse>(message) && m_unanswered > 0) {
            if (--m_unanswered == 0)
                m_deadline.cancel();
            else
                watch();
        }
        m_hooks.said(message);
        if (!m_open)
            return;
    }
}

// An engine that hangs looks like one that has nothing to tell, but for its responses.
void BaresipControl::watch()
{
    m_deadline.expires_after(m_patience);
    m_deadline.async_wait([self = shared_from_this()](const Error& cancelled) {
        if (!cancelled && self->m_open)
            self->lose();
    });
}

void BaresipControl::lose()
{
    close();
    m_hooks.lost();
}
