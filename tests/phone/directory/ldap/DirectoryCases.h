// What the client must do with any directory server, whoever made it.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "CorporateDirectory.h"

// One case. A directory server that holds people() below Slapd::base() is its input.
class DirectoryCase : public CorporateDirectory {
public:
    struct Server {
        std::string uri;
        std::string tlsUri;
        std::string caFile; // of who signed its certificate
    };
    using Table = std::map<std::string, std::function<std::unique_ptr<DirectoryCase>()>>;

    // Every case by its name.
    static Table& all();
    // LDIF
    static std::string people();

    // Searches this server, with a telephone as it comes from the factory.
    void run(const Server& server)
    {
        s_server = server;
        configure({});
        check();
    }

protected:
    virtual void check() = 0;

    Items common() const override;
    void keepPassword(const std::string& password);

    static inline Server s_server;

private:
    void TestBody() final {}
};
