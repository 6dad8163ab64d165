// Why the corporate directory could not be asked.

#pragma once

#include <string>

#include <framework/services/DirectoryServiceIfc.h>

enum class LdapFailure {
    UnknownHost,        // the server's name leads nowhere
    Unreachable,        // nobody listens there, or there is no way
    NoAnswer,           // the time is over
    Disconnected,       // closed, or what came was no LDAP
    TlsFailed,          // no common way of encryption, or the handshake broke off
    StartTlsRefused,    // the server offers no encryption
    CaFileUnusable,     // the file of trusted certificates cannot be read
    CertificateRefused, // expired, of an unknown issuer, or of another host
    PasswordMissing,    // none is kept for a bind DN, its file may not be used, or it may not be sent
    CredentialsRefused, // the bind DN or password is not the server's
    AccessDenied,       // whoever asked may not search there
    BaseWrong,          // the base does not exist, or lies on another server
    FilterWrong,        // not a filter
    ServerBusy,         // the server says that it cannot answer now
    ServerFailed,       // any other refusal, such as a fault of its own
    Cancelled,          // given up by its user, or the telephone is being switched off
};

struct LdapFault {
    LdapFailure failure = LdapFailure::ServerFailed;
    // What happened and which item to change, in a whole sentence. What a server said is in it,
    // shortened and cleaned.
    std::string sentence;
};

// What the screen makes of it: 2 for what may pass, 3 to 5 for what an administrator must change.
DirectoryStatus statusOf(LdapFailure failure);

// Whether another server may do better: not when the same answer is to be expected there, and never
// with credentials that were refused once, or the account is locked.
bool isOfOneServer(LdapFailure failure);
