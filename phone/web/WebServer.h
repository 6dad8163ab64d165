// Serves the telephone's page, and carries frames and keys between it and the telephone.
//
// It listens on the loopback address only. The page itself holds no secret; what it drives the
// telephone with is a WebSocket at /face, which is opened only for requests that name this very
// server as Host and as Origin and that know the token, given as subprotocol "deskbook.<token>".
//
// Messages are JSON texts. From the telephone: {"texts": {...}, "language": "en"} first and after a
// change of language; {"frame": {...}, "acks": [[n, "taken"], ...]}, of which only the newest frame
// is ever waiting. From the page: {"n": 12, "key": "ok"}. A message that is neither, is larger than
// 1 KiB or comes faster than keys can be pressed closes the connection.
//
// One thread of its own; nothing of it runs on the caller's.

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "app/Result.h"

class PhoneFaceIfc;

class WebServer {
public:
    // Starts serving. `port` 0 takes any free one. `face` is not owned and outlives the server.
    static Result<std::unique_ptr<WebServer>> start(PhoneFaceIfc& face, std::uint16_t port,
                                                    std::string token);
    ~WebServer();

    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    std::uint16_t port() const;

    // The address to open, token included.
    std::string address() const;

private:
    class Impl;
    explicit WebServer(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};
