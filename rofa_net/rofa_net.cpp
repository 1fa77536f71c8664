#include "rofa_net/rofa_net.h"

const char *const RofaDefaultServerURL = "http://localhost:3000/";
const char *const RofaDefaultSiteURL = "http://localhost:3000/";

rofa_net::rofa_net() : ServerURL(RofaDefaultServerURL) {}

void rofa_net::SetServerURL(zel_string URL)
{
    if (URL.GetLength() == 0 || URL[URL.GetLength() - 1] != '/')
        URL += "/";
    ServerURL = URL;
}
