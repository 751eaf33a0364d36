#include "app/window/MakerAddresses.hpp"

namespace tessaly {

bool isSetByMaker(std::string_view address)
{
    return address.find(TESSALY_UNSET_HOST) == std::string_view::npos;
}

std::string makerWebsite()
{
    return TESSALY_WEBSITE;
}

std::string makerHelpPage()
{
    return makerWebsite() + "tessalyhelp.html";
}

std::string makerSupportPage()
{
    return makerWebsite() + "support.html";
}

std::string makerFacebookPage()
{
    return TESSALY_FACEBOOK_PAGE;
}

std::string makerTwitterPage()
{
    return TESSALY_TWITTER_PAGE;
}

std::string makerGooglePage()
{
    return TESSALY_GOOGLE_PAGE;
}

std::string storeIdentifier()
{
    return TESSALY_STORE_ID;
}

std::string storePage(std::string_view appId)
{
    return TESSALY_STORE_PAGES + std::string(appId);
}

} // namespace tessaly
