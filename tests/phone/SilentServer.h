// A server on this machine that takes every connection and never says a word.

#pragma once

#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

class SilentServer {
public:
    SilentServer()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(m_listener, any, size), 0);
        EXPECT_EQ(::listen(m_listener, 8), 0);
        EXPECT_EQ(::getsockname(m_listener, any, &size), 0);
        m_port = ntohs(address.sin_port);
    }
    ~SilentServer()
    {
        for (const int conversation : m_conversations)
            ::close(conversation);
        ::close(m_listener);
    }

    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    int port() const { return m_port; }

    // Waits until somebody has asked for something.
    void awaitQuestion()
    {
        m_conversations.push_back(::accept(m_listener, nullptr, nullptr));
        char first = 0;
        EXPECT_EQ(::recv(m_conversations.back(), &first, 1, MSG_PEEK), 1);
    }
    // Ends the conversations, as a server does that ends.
    void hangUp()
    {
        for (const int conversation : m_conversations)
            ::shutdown(conversation, SHUT_RDWR);
    }

private:
    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
    std::vector<int> m_conversations;
};
