#pragma once

#include "zel_basics/lwbase_object.h"
#include "zel_basics/zel_string.h"

// Where this deployment's server answers when the page names none. Both are deployment values.
extern const char *const RofaDefaultServerURL;
// The site that the browser is sent to for pages such as the plug-in update.
extern const char *const RofaDefaultSiteURL;

// The application's link to its web server: the server's address and the session the page runs in.
class rofa_net : public base_object
{
public:
    rofa_net();

    zel_string GetName() override { return "rofa_net"; }

    // A "/" is added when URL does not end in one, so that request paths can be put behind it.
    void SetServerURL(zel_string URL);
    zel_string GetServerURL() const { return ServerURL; }
    void SetSessionID(zel_string NewSessionID) { SessionID = NewSessionID; }
    zel_string GetSessionID() const { return SessionID; }

private:
    zel_string SessionID;
    zel_string ServerURL;
};
