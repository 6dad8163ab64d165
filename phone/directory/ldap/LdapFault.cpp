#include "directory/ldap/LdapFault.h"

DirectoryStatus statusOf(LdapFailure failure)
{
    switch (failure) {
    case LdapFailure::UnknownHost:
    case LdapFailure::Unreachable:
    case LdapFailure::NoAnswer:
    case LdapFailure::Disconnected:
    case LdapFailure::TlsFailed:
    case LdapFailure::ServerBusy:
    case LdapFailure::ServerFailed:
    case LdapFailure::Cancelled:
        return DIRECTORY_CONNECTION_FAILURE;
    case LdapFailure::CaFileUnusable:
    case LdapFailure::PasswordMissing:
        return DIRECTORY_NOT_CONFIGURED;
    case LdapFailure::CredentialsRefused:
    case LdapFailure::AccessDenied:
        return DIRECTORY_CREDENTIALS_REFUSED;
    case LdapFailure::StartTlsRefused:
    case LdapFailure::CertificateRefused:
    case LdapFailure::BaseWrong:
    case LdapFailure::FilterWrong:
        return DIRECTORY_WRONG_BASE;
    }
    return DIRECTORY_CONNECTION_FAILURE;
}

bool isOfOneServer(LdapFailure failure)
{
    switch (failure) {
    case LdapFailure::UnknownHost:
    case LdapFailure::Unreachable:
    case LdapFailure::NoAnswer:
    case LdapFailure::Disconnected:
    case LdapFailure::TlsFailed:
    case LdapFailure::StartTlsRefused:
    case LdapFailure::CertificateRefused:
    case LdapFailure::ServerBusy:
    case LdapFailure::ServerFailed:
        return true;
    case LdapFailure::CaFileUnusable:
    case LdapFailure::PasswordMissing:
    case LdapFailure::CredentialsRefused:
    case LdapFailure::AccessDenied:
    case LdapFailure::BaseWrong:
    case LdapFailure::FilterWrong:
    case LdapFailure::Cancelled:
        return false;
    }
    return false;
}
