// What a directory server may answer to who we are and to a search (RFC 4511 4.1.9, appendix A), and
// what the screen makes of it.

#include "DirectoryFaults.h"

using namespace ldap_bytes;

namespace {

struct Answer {
    int code;
    const char* name;
    DirectoryStatus status;
    // Whether another server is asked then.
    bool nextIsAsked;
};

void PrintTo(const Answer& answer, std::ostream* out)
{
    *out << answer.name;
}

std::string nameOf(const testing::TestParamInfo<Answer>& answer)
{
    return answer.param.name;
}

class ResultCode : public DirectoryFaults, public testing::WithParamInterface<Answer> {
protected:
    void expectStatus(const FaultServer::Script& script)
    {
        FaultServer alone(script);
        expectSearchEnds(GetParam().status, alone);
        EXPECT_EQ(errors() == "", GetParam().status == DIRECTORY_TOO_MANY_MATCHES) << errors();

        FaultServer first(script);
        configurePlain(first.uri() + "," + s_good->uri());
        expectSearchEnds(GetParam().nextIsAsked ? DIRECTORY_SUCCESS : GetParam().status);
    }
};

const Answer nTO_WHO_WE_ARE[] = {
    {1, "OperationsError", DIRECTORY_CONNECTION_FAILURE, true},
    {2, "ProtocolError", DIRECTORY_CONNECTION_FAILURE, true},
    {7, "AuthMethodNotSupported", DIRECTORY_CREDENTIALS_REFUSED, false},
    {8, "StrongerAuthRequired", DIRECTORY_WRONG_BASE, true},
    {10, "Referral", DIRECTORY_CREDENTIALS_REFUSED, false},
    {13, "ConfidentialityRequired", DIRECTORY_WRONG_BASE, true},
    {19, "ConstraintViolation", DIRECTORY_CREDENTIALS_REFUSED, false},
    {32, "NoSuchObject", DIRECTORY_CREDENTIALS_REFUSED, false},
    {34, "InvalidDnSyntax", DIRECTORY_CREDENTIALS_REFUSED, false},
    {48, "InappropriateAuthentication", DIRECTORY_CREDENTIALS_REFUSED, false},
    {49, "InvalidCredentials", DIRECTORY_CREDENTIALS_REFUSED, false},
    {50, "InsufficientAccessRights", DIRECTORY_CREDENTIALS_REFUSED, false},
    {51, "Busy", DIRECTORY_CONNECTION_FAILURE, true},
    {52, "Unavailable", DIRECTORY_CONNECTION_FAILURE, true},
    {53, "UnwillingToPerform", DIRECTORY_CREDENTIALS_REFUSED, false},
    {80, "Other", DIRECTORY_CONNECTION_FAILURE, true},
    {123456, "Unknown", DIRECTORY_CONNECTION_FAILURE, true},
};

class ResultOfBind : public ResultCode {};

const Answer nTO_A_SEARCH[] = {
    {1, "OperationsError", DIRECTORY_CREDENTIALS_REFUSED, false},
    {2, "ProtocolError", DIRECTORY_CONNECTION_FAILURE, true},
    {3, "TimeLimitExceeded", DIRECTORY_TOO_MANY_MATCHES, false},
    {4, "SizeLimitExceeded", DIRECTORY_TOO_MANY_MATCHES, false},
    {8, "StrongerAuthRequired", DIRECTORY_WRONG_BASE, true},
    {10, "Referral", DIRECTORY_WRONG_BASE, false},
    {11, "AdminLimitExceeded", DIRECTORY_TOO_MANY_MATCHES, false},
    {13, "ConfidentialityRequired", DIRECTORY_WRONG_BASE, true},
    {17, "UndefinedAttributeType", DIRECTORY_WRONG_BASE, false},
    {18, "InappropriateMatching", DIRECTORY_WRONG_BASE, false},
    {21, "InvalidAttributeSyntax", DIRECTORY_WRONG_BASE, false},
    {32, "NoSuchObject", DIRECTORY_WRONG_BASE, false},
    {34, "InvalidDnSyntax", DIRECTORY_WRONG_BASE, false},
    {48, "InappropriateAuthentication", DIRECTORY_CREDENTIALS_REFUSED, false},
    {49, "InvalidCredentials", DIRECTORY_CREDENTIALS_REFUSED, false},
    {50, "InsufficientAccessRights", DIRECTORY_CREDENTIALS_REFUSED, false},
    {51, "Busy", DIRECTORY_CONNECTION_FAILURE, true},
    {52, "Unavailable", DIRECTORY_CONNECTION_FAILURE, true},
    {53, "UnwillingToPerform", DIRECTORY_CREDENTIALS_REFUSED, false},
    {80, "Other", DIRECTORY_CONNECTION_FAILURE, true},
    {123456, "Unknown", DIRECTORY_CONNECTION_FAILURE, true},
};

class ResultOfSearch : public ResultCode {};

} // namespace

TEST_P(ResultOfBind, HasItsStatus)
{
    expectStatus([](Conversation& c) {
        if (const auto bind = c.request())
            c.send(result(bind->id, BindResponse, GetParam().code));
        c.untilClosed();
    });
    EXPECT_TRUE(records.empty() || GetParam().nextIsAsked);
}

INSTANTIATE_TEST_SUITE_P(Is, ResultOfBind, testing::ValuesIn(nTO_WHO_WE_ARE), nameOf);

TEST_P(ResultOfSearch, HasItsStatus)
{
    expectStatus([](Conversation& c) {
        if (const auto bind = c.request())
            c.send(result(bind->id, BindResponse, 0));
        if (const auto search = c.request())
            c.send(entry(search->id, "cn=Eve", {{"sn", {"Miller"}}, {"givenName", {"Eve"}}}) +
                   result(search->id, SearchDone, GetParam().code));
        c.untilClosed();
    });
    // What came with a limit counts, what came with a fault does not.
    if (GetParam().status == DIRECTORY_TOO_MANY_MATCHES)
        EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Eve"});
    else if (GetParam().nextIsAsked)
        EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
    else
        EXPECT_TRUE(records.empty());
}

INSTANTIATE_TEST_SUITE_P(Is, ResultOfSearch, testing::ValuesIn(nTO_A_SEARCH), nameOf);
